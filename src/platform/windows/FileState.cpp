#include "platform/FileState.h"

#include "platform/SharedFile.h"
#include "platform/windows/WindowsText.h"

namespace carvelot::platform {

namespace {

FileState StateOf(HANDLE file) {
    FileState state;
    BY_HANDLE_FILE_INFORMATION information{};
    if (GetFileInformationByHandle(file, &information)) {
        const auto joined = [](DWORD high, DWORD low) { return (std::uint64_t{high} << 32U) | low; };
        state.presence = FileState::Presence::There;
        state.size = joined(information.nFileSizeHigh, information.nFileSizeLow);
        state.identity = {information.dwVolumeSerialNumber,
                          joined(information.nFileIndexHigh, information.nFileIndexLow)};
    }
    return state;
}

} // namespace

FileState LookAtFile(const std::string& path) {
    int error = 0;
    // To ask for attributes alone is let pass where others share nothing.
    const WindowsHandle file = OpenSharedRegular(path, FILE_READ_ATTRIBUTES, &error);
    if (file) {
        return StateOf(file.Get());
    }
    FileState state;
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
        state.presence = FileState::Presence::Missing;
    }
    return state;
}

FileState SharedFile::State() const { return StateOf(reinterpret_cast<HANDLE>(m_hFile)); }

} // namespace carvelot::platform
