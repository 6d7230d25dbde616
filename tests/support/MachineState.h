// What of the machine a test replaces for itself: the settings store and the folder of JDE's libraries. Paths
// are UTF-8.
#pragma once

#include <string>

namespace carvelot::test {

/// The user's settings are those of this file from now on. On Windows, where settings lie in the registry,
/// each file's name stands for a key of its own below which the current user's settings are found: empty at
/// first, this process's alone, and gone with it. So tests run beside each other and leave the user's
/// settings alone.
void UseSettingsStore(const std::string& file);

/// Libraries are looked for in this folder and not in those that were named here before.
void UseLibraryFolder(const std::string& folder);

} // namespace carvelot::test
