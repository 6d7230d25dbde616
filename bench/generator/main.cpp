// carvelot-make-log debug|jas MEGABYTES [SEED]: writes a generated log to standard output.
#include "../LogGenerator.h"

#include <charconv>
#include <cstring>
#include <iostream>

namespace {

bool ReadNumber(const char* text, std::uint64_t& value) {
    const char* const end = text + std::strlen(text);
    const auto [stop, error] = std::from_chars(text, end, value);
    return error == std::errc{} && stop == end;
}

} // namespace

int main(int argc, char** argv) {
    std::uint64_t megabytes = 0;
    std::uint64_t seed = 1;
    const bool debug = argc > 1 && std::strcmp(argv[1], "debug") == 0;
    const bool jas = argc > 1 && std::strcmp(argv[1], "jas") == 0;
    if ((!debug && !jas) || argc < 3 || argc > 4 || !ReadNumber(argv[2], megabytes) ||
        (argc == 4 && !ReadNumber(argv[3], seed))) {
        std::cerr << "usage: carvelot-make-log debug|jas MEGABYTES [SEED]\n";
        return 2;
    }
    std::ios::sync_with_stdio(false);
    if (debug) {
        carvelot::bench::WriteDebugLog(std::cout, megabytes << 20U, seed);
    } else {
        carvelot::bench::WriteJASLog(std::cout, megabytes << 20U, seed);
    }
    std::cout.flush();
    return std::cout ? 0 : 1;
}
