// A lock between programs that change files of one folder.
#pragma once

#include "platform/posix/PosixFile.h"

#include <string>

namespace carvelot::platform {

/// Keeps every other FolderLock of that folder waiting for as long as it lives. One that never lets go is
/// waited for two seconds, once in a run, and then passed over, while busy ones that change the folder in
/// turn are waited for; where there is no folder or no locking, nothing is locked.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder);

private:
    Descriptor m_folder;
};

} // namespace carvelot::platform
