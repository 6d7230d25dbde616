#include "platform/posix/ConfigFolder.h"

#include <cstdlib>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace carvelot::platform {

std::string ConfigFolder() {
    const char* const config = std::getenv("XDG_CONFIG_HOME");
    // The standard has relative paths ignored.
    if (config != nullptr && *config == '/') {
        return std::string(config) + "/carvelot";
    }
    if (const char* const home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return std::string(home) + "/.config/carvelot";
    }
    const passwd* const user = ::getpwuid(::getuid());
    return std::string(user != nullptr ? user->pw_dir : "") + "/.config/carvelot";
}

bool MakeFolders(const std::string& path) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1)) {
        ::mkdir(path.substr(0, slash).c_str(), 0777);
    }
    ::mkdir(path.c_str(), 0777);
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace carvelot::platform
