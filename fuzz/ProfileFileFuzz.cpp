// A profile file (JDE.INI, jdelog.properties) of any bytes: reading, and writing a value into it. The input
// is two lines, a key and a value, and then the file.
#include "platform/CodePage.h"
#include "platform/ProfileFile.h"
#include "support/FuzzFile.h"

#include <algorithm>
#include <initializer_list>

using namespace carvelot;

namespace {

std::string_view TakeLine(std::string_view& input) {
    const std::size_t end = std::min(input.find('\n'), input.size());
    const std::string_view line = input.substr(0, end);
    input.remove_prefix(std::min(end + 1, input.size()));
    return line;
}

#ifndef _WIN32

// A text that comes back from a file as it went in.
bool IsPlain(std::string_view text) {
    return !text.empty() && text.size() < 100 && text.front() != ' ' && text.back() != ' ' &&
           text.find_first_of("\t\v\f\r\n\x1A=[];\"'") == std::string_view::npos &&
           text.find('\0') == std::string_view::npos && platform::IsAscii(text);
}

#endif

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::CFuzzFile file;
    std::string_view input = fuzz::AsText(data, size);
    const std::string key(TakeLine(input));
    const std::string value(TakeLine(input));
    if (key.find('\0') != std::string::npos || value.find('\0') != std::string::npos) {
        return 0;
    }
    file.Write(input);
    for (const std::size_t units : std::initializer_list<std::size_t>{0, 1, 2, 3, 17, 1024}) {
        const auto sections = platform::ReadProfileSections(units, file.Path());
        fuzz::Require(!sections.empty(), "there is always a first section name");
        for (const std::string& section : sections) {
            (void)platform::ReadProfileText(section, key, "default", units, file.Path());
            (void)platform::ReadProfileInt(section, key, 7, file.Path());
        }
    }
#ifndef _WIN32
    const std::vector<std::string> before = platform::ReadProfileSections(1024, file.Path());
    const std::string other = platform::ReadProfileText("DEBUG", "Output", "none", 1024, file.Path());
    fuzz::Require(platform::WriteProfileText("SVR", key, value, file.Path()), "a value can be written");
    const std::string after = file.Read();
    if (IsPlain(key) && IsPlain(value)) {
        fuzz::Require(platform::ReadProfileText("SVR", key, "", 1024, file.Path()) == value,
                      "what was written is read");
        fuzz::Require(platform::ReadProfileText("DEBUG", "Output", "none", 1024, file.Path()) == other,
                      "a write changes no other section");
        // Once it is there it is written in its place, and writing it again changes nothing.
        fuzz::Require(platform::WriteProfileText("SVR", key, value, file.Path()), "again");
        fuzz::Require(file.Read() == after, "the same value once more changes nothing");
        // All bytes of the file are still there, in their order, but for one earlier value. In UTF-16 bytes
        // are no characters.
        if (input.starts_with("\xFF\xFE") || input.starts_with("\xFE\xFF")) {
            return 0;
        }
        const std::string_view now = after;
        const std::size_t same = static_cast<std::size_t>(
            std::mismatch(input.begin(), input.end(), now.begin(), now.end()).first - input.begin());
        const std::size_t tail = static_cast<std::size_t>(
            std::mismatch(input.rbegin(), input.rend() - static_cast<std::ptrdiff_t>(same), now.rbegin(),
                          now.rend() - static_cast<std::ptrdiff_t>(same))
                .first -
            input.rbegin());
        const std::string_view gone = input.substr(same, input.size() - same - tail);
        fuzz::Require(gone.find('\n') == std::string_view::npos, "a write keeps every other line");
    }
#endif
    return 0;
}
