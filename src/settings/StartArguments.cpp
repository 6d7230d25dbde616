#include "settings/StartArguments.h"

namespace carvelot {

std::optional<std::string> FileToOpen(const std::vector<std::string>& listArguments) {
#ifdef _WIN32
    constexpr bool bSlashSwitches = true;
#else
    constexpr bool bSlashSwitches = false; // a path begins with it
#endif
    bool bSwitches = true;
    for (const std::string& strArgument : listArguments) {
        if (strArgument.empty())
            continue;
        if (bSwitches && strArgument == "--") {
            bSwitches = false;
            continue;
        }
        if (bSwitches && (strArgument[0] == '-' || (bSlashSwitches && strArgument[0] == '/')))
            continue;
        return strArgument;
    }
    return std::nullopt;
}

} // namespace carvelot
