#include "platform/Processes.h"
#include "platform/windows/WindowsText.h"

// Below windows.h, whose types it needs.
#include <psapi.h>

namespace carvelot::platform {

bool EnumerateProcesses(std::vector<ProcessEntry>& processes) {
    processes.clear();
    DWORD numbers[1024];
    DWORD bytes = 0;
    if (!K32EnumProcesses(numbers, sizeof numbers, &bytes)) {
        return false;
    }
    for (DWORD index = 0; index < bytes / sizeof numbers[0]; ++index) {
        if (numbers[index] == 0) {
            continue;
        }
        const HANDLE process =
            OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, numbers[index]);
        if (process == nullptr) {
            continue;
        }
        // The first module is the executable.
        HMODULE module = nullptr;
        DWORD needed = 0;
        wchar_t name[260];
        if (K32EnumProcessModules(process, &module, sizeof module, &needed)) {
            const DWORD length = K32GetModuleBaseNameW(process, module, name, 260);
            processes.push_back({numbers[index], FromWide(std::wstring_view(name, length))});
        }
        CloseHandle(process);
    }
    return true;
}

} // namespace carvelot::platform
