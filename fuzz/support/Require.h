// What a fuzz target demands beyond "no crash".
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace carvelot::fuzz {

// Ends the program with the message when a rule does not hold, in every kind of build.
inline void Require(bool holds, std::string_view rule) {
    if (!holds) {
        std::fprintf(stderr, "Rule broken: %.*s\n", static_cast<int>(rule.size()), rule.data());
        std::fflush(stderr);
        std::abort();
    }
}

} // namespace carvelot::fuzz
