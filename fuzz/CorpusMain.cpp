// Feeds stored inputs to a fuzz target in an ordinary build:
//
//   fuzz_corpus TARGET PATH...      each path is an input or a folder of inputs
//
// Exit status 77: the target has no inputs.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#define CARVELOT_FUZZ_TARGET(name) extern "C" int name##_TestOneInput(const std::uint8_t*, std::size_t);
#include "FuzzTargets.inc"
#undef CARVELOT_FUZZ_TARGET

namespace {

struct Target {
    const char* name;
    int (*run)(const std::uint8_t*, std::size_t);
};

constexpr Target kTargets[] = {
#define CARVELOT_FUZZ_TARGET(name) {#name, name##_TestOneInput},
#include "FuzzTargets.inc"
#undef CARVELOT_FUZZ_TARGET
};

} // namespace

int main(int argc, char** argv) {
    const Target* target = nullptr;
    for (const Target& known : kTargets) {
        if (argc > 2 && std::strcmp(known.name, argv[1]) == 0) {
            target = &known;
        }
    }
    if (target == nullptr) {
        std::fprintf(stderr, "usage: fuzz_corpus TARGET PATH...\ntargets:");
        for (const Target& known : kTargets) {
            std::fprintf(stderr, " %s", known.name);
        }
        std::fprintf(stderr, "\n");
        return 2;
    }
    std::vector<std::filesystem::path> inputs;
    for (int i = 2; i < argc; ++i) {
        if (std::filesystem::is_directory(argv[i])) {
            for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
                inputs.push_back(entry.path());
            }
        } else if (std::filesystem::exists(argv[i])) {
            inputs.emplace_back(argv[i]);
        }
    }
    std::sort(inputs.begin(), inputs.end());
    for (const std::filesystem::path& path : inputs) {
        // Named first, so that the last one of a run that ends here is the culprit.
        std::printf("%s\n", path.filename().string().c_str());
        std::fflush(stdout);
        std::ifstream file(path, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        // A block of exactly the input's size, so that a sanitizer sees a step behind it.
        const auto block = std::make_unique<std::uint8_t[]>(bytes.size());
        std::memcpy(block.get(), bytes.data(), bytes.size());
        target->run(block.get(), bytes.size());
    }
    std::printf("%zu inputs\n", inputs.size());
    return inputs.empty() ? 77 : 0;
}
