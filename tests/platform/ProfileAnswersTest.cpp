// Reads of made-up profile files answer as the profile calls of Windows answer under Wine.
//
// profile-answers.txt holds those answers. To record them anew, run this test of the Windows build under Wine
// with CARVELOT_RECORD naming the file; both builds are held to it from then on.

#include "platform/ProfileFile.h"
#include "support/TestFolder.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

using namespace carvelot::platform;
using namespace carvelot::test;

namespace {

constexpr std::uint32_t kFiles = 200;

// The same numbers from the same seed with every library: its distributions are not.
class Dice {
public:
    explicit Dice(std::uint32_t seed) : m_engine(seed) {}
    std::uint32_t Below(std::uint32_t bound) { return static_cast<std::uint32_t>(m_engine()) % bound; }
    template <std::size_t N> std::u16string_view One(const std::array<std::u16string_view, N>& of) {
        return of[Below(N)];
    }

private:
    std::mt19937 m_engine;
};

constexpr std::array<std::u16string_view, 10> kSections{u"A", u"a",   u"B",   u"LOCALWEB", u"Two words",
                                                        u"",  u"B]x", u"B[x", u"\u00C4b",  u"\u00E4b"};
constexpr std::array<std::u16string_view, 10> kKeys{u"k",      u"K",  u"Key=", u"Level",  u"two words",
                                                    u"\u03C3", u"[k", u"",     u"; none", u"\u03A3"};
constexpr std::array<std::u16string_view, 26> kValues{
    u"",      u"v",       u"abcdef",     u"\"abcdef\"", u"'abcdef'",   u"\"abc'", u"\"\"",
    u"\"",    u"'",       u"a=b",        u"ALL|JAS",    u"C:\\x y",    u"6008",   u"-7",
    u"0x1F",  u"  in  ",  u"\" in \"",   u"3 ; no",     u"# no",       u"[v]",    u"]",
    u"12abc", u"\u65E5k", u"\"\u00E4\"", u"'a' b'",     u"99999999999"};
constexpr std::array<std::u16string_view, 6> kBlanks{u"", u"", u"", u" ", u"\t", u"  \t"};
constexpr std::array<std::u16string_view, 5> kLineEnds{u"\n", u"\r\n", u"\r\n", u"\r", u"\n\n"};
constexpr std::array<std::u16string_view, 4> kOther{u"; note", u"# note = 1", u"no value", u"[open"};

std::u16string MakeText(Dice& dice) {
    std::u16string text;
    const std::u16string_view lineEnd = dice.One(kLineEnds);
    const std::uint32_t lines = dice.Below(24);
    for (std::uint32_t line = 0; line < lines; ++line) {
        text += dice.One(kBlanks);
        switch (dice.Below(8)) {
        case 0:
        case 1:
            text.append(u"[").append(dice.One(kBlanks)).append(dice.One(kSections));
            text.append(dice.One(kBlanks)).append(u"]");
            break;
        case 2:
            text += dice.One(kOther);
            break;
        default:
            text.append(dice.One(kKeys)).append(dice.One(kBlanks)).append(u"=");
            text.append(dice.One(kBlanks)).append(dice.One(kValues));
        }
        text += dice.One(kBlanks);
        if (line + 1 < lines || dice.Below(2) == 0) {
            text += dice.Below(8) == 0 ? dice.One(kLineEnds) : lineEnd;
        }
    }
    if (dice.Below(8) == 0) {
        text += u'\x1A';
    }
    return text;
}

std::string ToUtf8(std::u16string_view text) {
    const auto utf8 = std::filesystem::path(text).u8string();
    return {utf8.begin(), utf8.end()};
}

// The text in one of the encodings with a mark; without one only if it has none but ASCII letters, because
// what stands for an ANSI code page is each platform's own.
std::string ToBytes(std::u16string_view text, Dice& dice) {
    const std::uint32_t choice = dice.Below(5);
    if (choice < 2) {
        const bool big = choice == 1;
        std::string bytes = big ? "\xFE\xFF" : "\xFF\xFE";
        for (const char16_t unit : text) {
            const char high = static_cast<char>(unit >> 8);
            const char low = static_cast<char>(unit & 0xFF);
            bytes.append({big ? high : low, big ? low : high});
        }
        return bytes;
    }
    const std::string utf8 = ToUtf8(text);
    const bool ascii = utf8.size() == text.size();
    return choice == 2 || !ascii ? "\xEF\xBB\xBF" + utf8 : utf8;
}

std::string Shown(std::string_view text) {
    std::string shown = "<";
    for (const char character : text) {
        constexpr std::string_view kDigits = "0123456789ABCDEF";
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20) {
            shown.push_back(character);
        } else {
            shown.append({'\\', kDigits[byte >> 4], kDigits[byte & 15]});
        }
    }
    return shown + ">";
}

// All answers for one file, a line each.
std::string AnswersOfFiles(std::uint32_t seed, const TestFolder& folder) {
    Dice dice(seed);
    const std::u16string text = MakeText(dice);
    const std::string file = folder.Write("f" + std::to_string(seed) + ".ini", ToBytes(text, dice));
    std::ostringstream answers;
    const std::string head = std::to_string(seed) + ' ';
    const std::size_t units = 1 + dice.Below(24);
    for (const std::size_t buffer : {std::size_t{1024}, units}) {
        answers << head << "sections " << buffer << ':';
        for (const std::string& name : ReadProfileSections(buffer, file)) {
            answers << ' ' << Shown(name);
        }
        answers << '\n';
    }
    for (int query = 0; query < 12; ++query) {
        const std::string section = ToUtf8(std::u16string(dice.One(kBlanks)).append(dice.One(kSections)));
        const std::string key = ToUtf8(std::u16string(dice.One(kKeys)).append(dice.One(kBlanks)));
        const std::size_t buffer = dice.Below(2) == 0 ? 256 : 1 + dice.Below(10);
        answers << head << Shown(section) << ' ' << Shown(key) << ' ' << buffer << ": "
                << Shown(ReadProfileText(section, key, "(none)", buffer, file)) << ' '
                << ReadProfileInt(section, key, 77, file) << '\n';
    }
    return answers.str();
}

} // namespace

TEST(ProfileAnswers, AreThoseOfTheProfileCalls) {
    const TestFolder folder;
    std::ostringstream all;
    for (std::uint32_t seed = 1; seed <= kFiles; ++seed) {
        all << AnswersOfFiles(seed, folder);
    }
    if (const char* const record = std::getenv("CARVELOT_RECORD")) {
        std::ofstream(record, std::ios::binary) << all.str();
        GTEST_SKIP() << "recorded " << record;
    }
    std::ifstream recorded(ToPath(CARVELOT_SOURCE_FOLDER "/tests/platform/profile-answers.txt"),
                           std::ios::binary);
    std::istringstream answers(all.str());
    std::size_t lines = 0;
    for (std::string expected, answer; std::getline(recorded, expected); ++lines) {
        ASSERT_TRUE(std::getline(answers, answer));
        EXPECT_EQ(answer, expected);
    }
    EXPECT_EQ(lines, kFiles * 14u);
}
