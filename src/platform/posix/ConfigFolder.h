// Where the files lie that stand for what Windows keeps itself.
#pragma once

#include <string>

namespace carvelot::platform {

/// $XDG_CONFIG_HOME/carvelot, else ~/.config/carvelot. It need not exist.
std::string ConfigFolder();

/// Makes a folder and those above it; true if it is there afterwards.
bool MakeFolders(const std::string& path);

} // namespace carvelot::platform
