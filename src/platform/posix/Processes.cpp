#include "platform/Processes.h"
#include "platform/posix/PosixFile.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace carvelot::platform {

namespace {

constexpr std::size_t kMost = 1024;

std::string_view BaseName(std::string_view path) {
    const std::size_t slash = path.find_last_of("/\\");
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

bool IsWindowsProgram(std::string_view name) {
    if (name.size() < 5) {
        return false;
    }
    std::string end(name.substr(name.size() - 4));
    std::transform(end.begin(), end.end(), end.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? char(character + 32) : character;
    });
    return end == ".exe";
}

// The name of the Windows program that a Wine process runs: the first of its arguments that is one.
std::string WindowsProgram(const std::string& folder) {
    const Descriptor file = OpenRegular(folder + "/cmdline", O_RDONLY, nullptr);
    if (!file) {
        return {};
    }
    char buffer[4096];
    std::string_view rest(buffer, ReadFully(file.Get(), buffer, sizeof buffer));
    while (!rest.empty()) {
        const std::string_view argument = rest.substr(0, rest.find('\0'));
        if (IsWindowsProgram(argument)) {
            return std::string(BaseName(argument));
        }
        rest.remove_prefix(std::min(argument.size() + 1, rest.size()));
    }
    return {};
}

std::string ImageName(const std::string& folder) {
    char buffer[PATH_MAX];
    const ssize_t length = ::readlink((folder + "/exe").c_str(), buffer, sizeof buffer);
    if (length <= 0) {
        return {};
    }
    std::string_view path(buffer, static_cast<std::size_t>(length));
    // A program that was replaced while it runs.
    constexpr std::string_view kDeleted = " (deleted)";
    if (path.ends_with(kDeleted)) {
        path.remove_suffix(kDeleted.size());
    }
    const std::string_view name = BaseName(path);
    if (name.starts_with("wine")) {
        std::string program = WindowsProgram(folder);
        if (!program.empty()) {
            return program;
        }
    }
    return std::string(name);
}

} // namespace

bool EnumerateProcesses(std::vector<ProcessEntry>& processes) {
    processes.clear();
    const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir("/proc"), ::closedir);
    if (open == nullptr) {
        return false;
    }
    std::vector<std::uint32_t> numbers;
    while (const dirent* const entry = ::readdir(open.get())) {
        const std::string_view name = entry->d_name;
        std::uint32_t number = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
        if (error == std::errc() && end == name.data() + name.size() && number != 0) {
            numbers.push_back(number);
        }
    }
    std::sort(numbers.begin(), numbers.end());
    for (const std::uint32_t number : numbers) {
        if (processes.size() == kMost) {
            break;
        }
        // A thread of the kernel, another user's process and one that has just ended show no executable.
        std::string name = ImageName("/proc/" + std::to_string(number));
        if (!name.empty()) {
            processes.push_back({number, std::move(name)});
        }
    }
    return true;
}

} // namespace carvelot::platform
