// Temporary copies of files, and deletion. Paths are UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace carvelot::platform {

/// Makes an empty file of a new, unique name in the temporary folder and returns its path. On failure `error`
/// receives the system's error number.
std::optional<std::string> MakeTemporaryName(std::string_view prefix, int* error = nullptr);

/// Copies the content of a regular file over another file, which is made when it is missing.
bool CopyFileOver(const std::string& from, const std::string& to);

bool DeleteFileAt(const std::string& path);

} // namespace carvelot::platform
