#include "platform/CommandLine.h"
#include "platform/windows/WindowsText.h"

#include <shellapi.h>

namespace carvelot::platform {

std::vector<std::string> Arguments(int argc, char** argv) {
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr) {
        return std::vector<std::string>(argv, argv + argc);
    }
    std::vector<std::string> arguments;
    for (int index = 0; index < count; ++index) {
        arguments.push_back(FromWide(wide[index]));
    }
    LocalFree(wide);
    return arguments;
}

} // namespace carvelot::platform
