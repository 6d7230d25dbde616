#include "platform/AtomicFile.h"
#include "platform/windows/WindowsText.h"

namespace carvelot::platform {

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 16;

void SetError(int* error, DWORD number) {
    if (error != nullptr) {
        *error = static_cast<int>(number);
    }
}

// The path of an open file with all links followed.
std::wstring FinalPath(HANDLE file, const std::wstring& path) {
    std::wstring final(GetFinalPathNameByHandleW(file, nullptr, 0, FILE_NAME_NORMALIZED), L'\0');
    if (final.empty()) {
        return path;
    }
    final.resize(GetFinalPathNameByHandleW(file, final.data(), static_cast<DWORD>(final.size()),
                                           FILE_NAME_NORMALIZED));
    return final.empty() ? path : final;
}

// Whether a file can't be made for a reason that would let a write to another fail just so.
bool IsOutOfRoom(DWORD number) {
    return number == ERROR_DISK_FULL || number == ERROR_HANDLE_DISK_FULL ||
           number == ERROR_TOO_MANY_OPEN_FILES || number == ERROR_NOT_ENOUGH_MEMORY ||
           number == ERROR_NO_SYSTEM_RESOURCES || number == ERROR_IO_DEVICE;
}

WindowsHandle MakeBeside(const std::wstring& target, std::wstring& path, DWORD* number) {
    const std::size_t slash = target.find_last_of(L"\\/:");
    const std::wstring folder = slash == std::wstring::npos ? std::wstring() : target.substr(0, slash + 1);
    static unsigned counter = 0;
    for (int attempt = 0; attempt < 1000; ++attempt) {
        path = folder + L"~carvelot-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
               std::to_wstring(counter++) + L".tmp";
        WindowsHandle file(
            CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file) {
            return file;
        }
        *number = GetLastError();
        if (*number != ERROR_FILE_EXISTS && *number != ERROR_ALREADY_EXISTS) {
            break;
        }
    }
    return WindowsHandle();
}

} // namespace

struct AtomicFile::State {
    enum class Way { Replace, Direct, Collect };

    Way m_way = Way::Replace;
    bool m_bExists = false;
    std::wstring m_strTarget;
    std::wstring m_strTemporary;
    WindowsHandle m_file;
    std::string m_strBuffer;
    DWORD m_nError = ERROR_SUCCESS;

    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        m_file.Close();
        if (!m_strTemporary.empty()) {
            DeleteFileW(m_strTemporary.c_str());
        }
    }

    void Flush() {
        if (m_nError == ERROR_SUCCESS) {
            m_nError = WriteFully(m_file.Get(), m_strBuffer);
        }
        m_strBuffer.clear();
    }

    void Check(bool done) {
        if (!done && m_nError == ERROR_SUCCESS) {
            m_nError = GetLastError();
        }
    }

    void Finish() {
        if (m_way == Way::Collect) {
            m_file = WindowsHandle(CreateFileW(m_strTarget.c_str(), GENERIC_WRITE,
                                               FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, TRUNCATE_EXISTING,
                                               FILE_ATTRIBUTE_NORMAL, nullptr));
            Check(static_cast<bool>(m_file));
            if (!m_file) {
                return;
            }
        }
        if (!m_file) {
            // Someone else wrote it.
            m_file = WindowsHandle(CreateFileW(m_strTemporary.c_str(), GENERIC_WRITE, 0, nullptr,
                                               OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
            Check(static_cast<bool>(m_file));
            if (!m_file) {
                return;
            }
        }
        Flush();
        if (m_nError == ERROR_SUCCESS && m_way != Way::Direct) {
            Check(FlushFileBuffers(m_file.Get()) != 0);
        }
        Check(m_file.Close());
        if (m_nError != ERROR_SUCCESS || m_way != Way::Replace) {
            return;
        }
        // ReplaceFile keeps the attributes and rights of what is replaced; not every file system can.
        if ((m_bExists && ReplaceFileW(m_strTarget.c_str(), m_strTemporary.c_str(), nullptr,
                                       REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr)) ||
            MoveFileExW(m_strTemporary.c_str(), m_strTarget.c_str(),
                        MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
            m_strTemporary.clear();
        } else {
            m_nError = GetLastError();
        }
    }
};

AtomicFile::AtomicFile() noexcept = default;
AtomicFile::AtomicFile(AtomicFile&& other) noexcept = default;
AtomicFile& AtomicFile::operator=(AtomicFile&& other) noexcept = default;
AtomicFile::~AtomicFile() = default;

AtomicFile AtomicFile::Create(const std::string& path, int* error) {
    AtomicFile result;
    int number = 0;
    // Opened for writing, so that a protected file and a folder fail here and not at the end.
    WindowsHandle existing = OpenShared(path, GENERIC_WRITE, OPEN_EXISTING, &number);
    if (!existing && number != ERROR_FILE_NOT_FOUND) {
        SetError(error, static_cast<DWORD>(number));
        return result;
    }
    if (path.empty() || path.find('\0') != std::string::npos) {
        SetError(error, ERROR_PATH_NOT_FOUND);
        return result;
    }
    auto state = std::make_unique<State>();
    state->m_strTarget = ToWidePath(path);
    state->m_bExists = static_cast<bool>(existing);
    if (existing && GetFileType(existing.Get()) != FILE_TYPE_DISK) {
        state->m_way = State::Way::Direct;
        state->m_file = std::move(existing);
    } else {
        if (existing) {
            state->m_strTarget = FinalPath(existing.Get(), state->m_strTarget);
        }
        existing.Close();
        DWORD failure = ERROR_SUCCESS;
        state->m_file = MakeBeside(state->m_strTarget, state->m_strTemporary, &failure);
        if (!state->m_file) {
            state->m_strTemporary.clear();
            if (!state->m_bExists || IsOutOfRoom(failure)) {
                SetError(error, failure);
                return result;
            }
            state->m_way = State::Way::Collect;
        }
    }
    result.m_pState = std::move(state);
    return result;
}

bool AtomicFile::Write(std::string_view bytes) {
    if (m_pState == nullptr || m_pState->m_nError != ERROR_SUCCESS) {
        return false;
    }
    m_pState->m_strBuffer.append(bytes);
    if (m_pState->m_way != State::Way::Collect && m_pState->m_strBuffer.size() >= kBlock) {
        m_pState->Flush();
    }
    return m_pState->m_nError == ERROR_SUCCESS;
}

std::string AtomicFile::LeaveToOther() {
    if (m_pState == nullptr || m_pState->m_strTemporary.empty()) {
        return {};
    }
    m_pState->m_file.Close();
    return FromWide(m_pState->m_strTemporary);
}

bool AtomicFile::Commit(int* error) {
    if (m_pState == nullptr) {
        SetError(error, ERROR_INVALID_HANDLE);
        return false;
    }
    const std::unique_ptr<State> state = std::move(m_pState);
    if (state->m_nError == ERROR_SUCCESS) {
        state->Finish();
    }
    SetError(error, state->m_nError);
    return state->m_nError == ERROR_SUCCESS;
}

} // namespace carvelot::platform
