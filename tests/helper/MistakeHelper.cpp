// mistake_helper MISTAKE: makes a mistake on purpose, so that whoever asks can see that the sanitizer of this
// build finds it. Ends with 0 where nothing found it, with 2 where there is no such mistake.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <string>
#include <thread>
#include <zlib.h>

namespace {

// What no compiler works out ahead.
volatile int g_one = 1;
int g_shared = 0;
void* volatile g_kept = nullptr;

// Of two cells one is set, and the other looked at.
int UnsetValue() {
    auto* const cells = static_cast<int*>(std::malloc(2 * sizeof(int)));
    cells[0] = g_one;
    std::puts(cells[g_one] > 1 ? "more" : "less");
    std::free(cells);
    return 0;
}

// The standard library alone looks at it, where a path is taken apart: found if that library, too, is built
// so that it is.
int UnsetInTheStandardLibrary() {
    auto* const bytes = static_cast<char*>(std::malloc(16));
    const std::filesystem::path path(std::string(bytes, 16));
    std::free(bytes);
    return path.filename().native().size() > 16 ? 3 : 0;
}

// What a library of C makes of it is as unset.
int UnsetInAnotherLibrary() {
    auto* const bytes = static_cast<unsigned char*>(std::malloc(16));
    std::puts(::crc32(0, bytes, 16) > 1 ? "more" : "less");
    std::free(bytes);
    return 0;
}

int UseAfterFree() {
    int* const cell = new int(g_one);
    int* volatile const kept = cell;
    delete cell;
    return *kept > 1 ? 3 : 0;
}

// Several: one may still stand in a register at the end.
int Leak() {
    for (int n = 0; n < 8; ++n) {
        g_kept = std::malloc(static_cast<std::size_t>(64 * g_one));
    }
    g_kept = nullptr;
    return 0;
}

int Overflow() {
    volatile int sum = std::numeric_limits<int>::max();
    sum = sum + g_one;
    return 0;
}

int Race() {
    std::thread other([] { g_shared += g_one; });
    g_shared += g_one;
    other.join();
    return 0;
}

struct Mistake {
    const char* m_szName;
    int (*m_fnMake)();
};

constexpr Mistake kMistakes[] = {{"unset-value", UnsetValue},
                                 {"unset-in-the-standard-library", UnsetInTheStandardLibrary},
                                 {"unset-in-another-library", UnsetInAnotherLibrary},
                                 {"use-after-free", UseAfterFree},
                                 {"leak", Leak},
                                 {"overflow", Overflow},
                                 {"race", Race}};

} // namespace

int main(int count, char** arguments) {
    for (const Mistake& mistake : kMistakes) {
        if (count == 2 && std::strcmp(arguments[1], mistake.m_szName) == 0) {
            return mistake.m_fnMake();
        }
    }
    std::fputs("usage: mistake_helper MISTAKE, of:", stderr);
    for (const Mistake& mistake : kMistakes) {
        std::fprintf(stderr, " %s", mistake.m_szName);
    }
    std::fputs("\n", stderr);
    return 2;
}
