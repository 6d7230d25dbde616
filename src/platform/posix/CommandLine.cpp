#include "platform/CommandLine.h"

namespace carvelot::platform {

std::vector<std::string> Arguments(int argc, char** argv) {
    return std::vector<std::string>(argv, argv + argc);
}

} // namespace carvelot::platform
