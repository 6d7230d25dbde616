#include "settings/StartArguments.h"

namespace carvelot {

std::optional<std::string> FileToOpen(const std::vector<std::string>& arguments) {
#ifdef _WIN32
    constexpr bool slashSwitches = true;
#else
    constexpr bool slashSwitches = false; // a path begins with it
#endif
    bool switches = true;
    for (const std::string& argument : arguments) {
        if (argument.empty()) {
            continue;
        }
        if (switches && argument == "--") {
            switches = false;
            continue;
        }
        if (switches && (argument[0] == '-' || (slashSwitches && argument[0] == '/'))) {
            continue;
        }
        return argument;
    }
    return std::nullopt;
}

} // namespace carvelot
