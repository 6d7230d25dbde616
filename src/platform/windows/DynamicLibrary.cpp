#include "platform/DynamicLibrary.h"
#include "platform/windows/WindowsText.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace carvelot::platform {

namespace {

// What one of the calls that fill a buffer with a folder's path says.
template <typename Call> std::wstring FolderOf(Call call) {
    std::wstring buffer(MAX_PATH, L'\0');
    DWORD length = call(buffer.data(), static_cast<DWORD>(buffer.size()));
    while (length >= buffer.size()) {
        buffer.resize(buffer.size() * 2);
        length = call(buffer.data(), static_cast<DWORD>(buffer.size()));
    }
    buffer.resize(length);
    return buffer;
}

bool IsWholePath(std::wstring_view path) {
    const auto slash = [&path](std::size_t at) { return path[at] == L'\\' || path[at] == L'/'; };
    return path.size() >= 3 && ((path[1] == L':' && slash(2)) || (slash(0) && slash(1)));
}

// Where the system looks for a library, in its order, but for the current folder: that is also what an entry
// of PATH names which is no whole path.
std::vector<std::wstring> LibraryFolders() {
    std::wstring program =
        FolderOf([](wchar_t* buffer, DWORD size) { return GetModuleFileNameW(nullptr, buffer, size); });
    program.resize(std::min(program.find_last_of(L"\\/"), program.size()));
    std::vector<std::wstring> folders{std::move(program), FolderOf(GetSystemDirectoryW),
                                      FolderOf(GetWindowsDirectoryW)};
    const std::wstring path =
        FolderOf([](wchar_t* buffer, DWORD size) { return GetEnvironmentVariableW(L"PATH", buffer, size); });
    for (std::size_t begin = 0; begin < path.size();) {
        const std::size_t end = std::min(path.find(L';', begin), path.size());
        std::wstring folder = path.substr(begin, end - begin);
        std::erase(folder, L'"');
        if (IsWholePath(folder)) {
            folders.push_back(std::move(folder));
        }
        begin = end + 1;
    }
    return folders;
}

} // namespace

void CloseLibrarySearch() {
    // A folder that is named takes the current one's place. An empty name would just take that out, but does
    // not under Wine.
    SetDllDirectoryW(FolderOf(GetSystemDirectoryW).c_str());
}

CDynamicLibrary& CDynamicLibrary::operator=(CDynamicLibrary&& other) noexcept {
    std::swap(m_hModule, other.m_hModule);
    return *this;
}

bool CDynamicLibrary::Load(std::string_view name, std::uint32_t& error) {
    Free();
    error = ERROR_MOD_NOT_FOUND;
    for (const std::wstring& folder : LibraryFolders()) {
        const std::wstring file = folder + L'\\' + ToWide(name);
        const DWORD attributes = GetFileAttributesW(file.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            continue;
        }
        // What the library needs itself is looked for in its own folder first.
        m_hModule = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
        error = m_hModule != nullptr ? 0 : GetLastError();
        break;
    }
    return m_hModule != nullptr;
}

CDynamicLibrary::FPointer CDynamicLibrary::Symbol(const char* name, std::uint32_t& error) const {
    if (m_hModule == nullptr) {
        error = ERROR_INVALID_HANDLE;
        return nullptr;
    }
    const FARPROC found = GetProcAddress(static_cast<HMODULE>(m_hModule), name);
    error = found != nullptr ? 0 : GetLastError();
    return reinterpret_cast<FPointer>(reinterpret_cast<void*>(found));
}

void CDynamicLibrary::Free() {
    if (m_hModule != nullptr) {
        FreeLibrary(static_cast<HMODULE>(m_hModule));
    }
    m_hModule = nullptr;
}

} // namespace carvelot::platform
