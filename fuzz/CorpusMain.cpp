// Feeds stored inputs to a fuzz target in an ordinary build:
//
//   fuzz_corpus TARGET PATH...              each path is an input or a folder of inputs
//   fuzz_corpus --rounds N TARGET PATH...   N inputs made out of those instead, the same ones in each run
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
#include <random>
#include <string>
#include <string_view>
#include <vector>

#define CARVELOT_FUZZ_TARGET(name) extern "C" int name##_TestOneInput(const std::uint8_t*, std::size_t);
#include "FuzzTargets.inc"
#undef CARVELOT_FUZZ_TARGET

using namespace std::string_view_literals;

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

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void Run(const Target& target, std::string_view bytes) {
    // A block of exactly the input's size, so that a sanitizer sees a step behind it.
    const auto block = std::make_unique<std::uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), block.get());
    target.run(block.get(), bytes.size());
}

// Makes new inputs of stored ones by a few changes each.
class Mutator {
public:
    explicit Mutator(std::vector<std::string> inputs) : m_inputs(std::move(inputs)) {}

    std::string Next() {
        std::string bytes = Any();
        for (std::size_t changes = 1 + Below(4); changes > 0; --changes) {
            Change(bytes);
        }
        constexpr std::size_t longest = 16 * 1024;
        return bytes.substr(0, longest);
    }

private:
    std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(m_random() % bound); }
    const std::string& Any() { return m_inputs[Below(m_inputs.size())]; }

    void Change(std::string& bytes) {
        constexpr std::string_view telling = "\0\t\n\r \x1a\x7f\x80\xc3\xff"
                                             "0-[]\"'=|"sv;
        const std::size_t at = Below(bytes.size() + 1);
        const std::size_t length = Below(std::min<std::size_t>(bytes.size() - at, 40) + 1);
        switch (Below(6)) {
        case 0:
            bytes.insert(at, 1, telling[Below(telling.size())]);
            break;
        case 1:
            if (at < bytes.size()) {
                bytes[at] = static_cast<char>(Below(256));
            }
            break;
        case 2:
            bytes.erase(at, length);
            break;
        case 3:
            bytes.insert(Below(bytes.size() + 1), bytes.substr(at, length));
            break;
        case 4: {
            const std::string& other = Any();
            const std::size_t from = Below(other.size() + 1);
            bytes.replace(at, length, other, from, 1 + Below(200));
            break;
        }
        default:
            bytes.resize(at);
            break;
        }
    }

    std::vector<std::string> m_inputs;
    std::mt19937 m_random{1};
};

} // namespace

int main(int argc, char** argv) {
    unsigned rounds = 0;
    if (argc > 2 && std::strcmp(argv[1], "--rounds") == 0) {
        rounds = static_cast<unsigned>(std::stoul(argv[2]));
        argc -= 2;
        argv += 2;
    }
    const Target* target = nullptr;
    for (const Target& known : kTargets) {
        if (argc > 2 && std::strcmp(known.name, argv[1]) == 0) {
            target = &known;
        }
    }
    if (target == nullptr) {
        std::fprintf(stderr, "usage: fuzz_corpus [--rounds N] TARGET PATH...\ntargets:");
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
    // Each is named before it is run, so that the last one of a run that ends here is the culprit.
    if (rounds > 0 && !inputs.empty()) {
        std::vector<std::string> all;
        std::transform(inputs.begin(), inputs.end(), std::back_inserter(all), ReadFile);
        Mutator mutator(std::move(all));
        for (unsigned round = 1; round <= rounds; ++round) {
            std::printf("round %u\n", round);
            std::fflush(stdout);
            Run(*target, mutator.Next());
        }
    } else {
        for (const std::filesystem::path& path : inputs) {
            std::printf("%s\n", path.filename().string().c_str());
            std::fflush(stdout);
            Run(*target, ReadFile(path));
        }
    }
    std::printf("%zu inputs\n", inputs.size());
    return inputs.empty() ? 77 : 0;
}
