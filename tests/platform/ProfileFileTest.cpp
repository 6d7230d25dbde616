#include "platform/ProfileFile.h"
#include "support/TestFolder.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#else
#include "platform/posix/ConfigFolder.h"
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace carvelot::platform;
using namespace carvelot::test;

namespace {

using Names = std::vector<std::string>;

// What stands for "the default came back".
constexpr const char* kDefault = "(default)";

std::string Read(const std::string& file, std::string_view section, std::string_view key) {
    return ReadProfileText(section, key, kDefault, 256, file);
}

std::string Utf16(std::u16string_view text, bool big) {
    std::string bytes = big ? "\xFE\xFF" : "\xFF\xFE";
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes.push_back(big ? high : low);
        bytes.push_back(big ? low : high);
    }
    return bytes;
}

} // namespace

// What reading says holds on every platform: under Wine these tests ask the real calls.

TEST(ProfileFile, SectionsAndKeysCompareWithoutCaseAndBlanksAroundThemDoNotCount) {
    const TestFolder folder;
    const std::string file =
        folder.Write("f.ini", "[Debug]\r\n  Output =\tFILE  \r\n\t[ UBE ]\r\nUBEDebugLevel=6\r\n");
    EXPECT_EQ(Read(file, "DEBUG", "output"), "FILE");
    EXPECT_EQ(Read(file, " debug ", " OUTPUT "), "FILE");
    EXPECT_EQ(Read(file, "UBE", "UBEDebugLevel"), "6");
    EXPECT_EQ(Read(file, "UBE", "Output"), kDefault);
    EXPECT_EQ(Read(file, "Debug2", "Output"), kDefault);
}

TEST(ProfileFile, OfSectionsAndKeysThatRepeatTheFirstWins) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A]\nk=1\nK=2\n[a]\nk=3\nother=4\n");
    EXPECT_EQ(Read(file, "A", "k"), "1");
    EXPECT_EQ(Read(file, "A", "other"), kDefault) << "a second section of the name is never looked at";
}

TEST(ProfileFile, CommentsAreNoKeysAndEndNoValue) {
    const TestFolder folder;
    const std::string file =
        folder.Write("f.ini", "[A]\n;k=1\n#k=2\n; text\n# text\nk=3 ; not a comment # nor this\n");
    EXPECT_EQ(Read(file, "A", "k"), "3 ; not a comment # nor this");
}

TEST(ProfileFile, AMissingFileSectionOrKeyGivesTheDefaultWithoutItsTrailingBlanks) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A]\nk=\nnovalue\n");
    EXPECT_EQ(ReadProfileText("A", "x", "  d  ", 256, file), "  d");
    EXPECT_EQ(ReadProfileText("B", "k", "d", 256, file), "d");
    EXPECT_EQ(ReadProfileText("A", "novalue", "d", 256, file), "d");
    EXPECT_EQ(ReadProfileText("A", "k", "d", 256, file), "") << "an empty value is a value";
    EXPECT_EQ(ReadProfileText("A", "k", "d", 256, folder.Path("missing.ini")), "d");
    EXPECT_EQ(ReadProfileText("A", "k", "", 256, folder.Path("missing.ini")), "");
    EXPECT_EQ(ReadProfileText("A", "k", "d", 256, folder.Path()), "d") << "a folder is no file";
}

TEST(ProfileFile, OnePairOfQuotesAroundAValueIsLeftOut) {
    const TestFolder folder;
    const std::string file = folder.Write(
        "f.ini", "[A]\na=\"v w\"\nb='v'\nc=\"v'\nd=\"\"\ne=\"\nf=\"'v'\"\ng=v\"w\"\nh=\" v \"\n");
    EXPECT_EQ(Read(file, "A", "a"), "v w");
    EXPECT_EQ(Read(file, "A", "b"), "v");
    EXPECT_EQ(Read(file, "A", "c"), "\"v'");
    EXPECT_EQ(Read(file, "A", "d"), "");
    EXPECT_EQ(Read(file, "A", "e"), "\"");
    EXPECT_EQ(Read(file, "A", "f"), "'v'");
    EXPECT_EQ(Read(file, "A", "g"), "v\"w\"");
    EXPECT_EQ(Read(file, "A", "h"), " v ");
}

TEST(ProfileFile, AValueBeginsBehindTheFirstEqualsSign) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A]\nk=a=b=c\n=empty\nx==\n");
    EXPECT_EQ(Read(file, "A", "k"), "a=b=c");
    EXPECT_EQ(Read(file, "A", "x"), "=");
}

TEST(ProfileFile, ALongValueIsCutToOneLessThanTheBufferHolds) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A]\nk=" + std::string(300, 'v') + "\n");
    EXPECT_EQ(ReadProfileText("A", "k", "", 256, file), std::string(255, 'v'));
    EXPECT_EQ(ReadProfileText("A", "k", "", 301, file), std::string(300, 'v'));
    EXPECT_EQ(ReadProfileText("A", "x", "default", 4, file), "def");
    EXPECT_EQ(ReadProfileText("A", "k", "", 1, file), "");
}

TEST(ProfileFile, AQuotedValueThatJustFillsTheBufferLosesItsLastCharacter) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A]\nk=\"abcdef\"\n");
    EXPECT_EQ(ReadProfileText("A", "k", "", 8, file), "abcdef");
    EXPECT_EQ(ReadProfileText("A", "k", "", 7, file), "abcde");
    EXPECT_EQ(ReadProfileText("A", "k", "", 6, file), "abcde");
    EXPECT_EQ(ReadProfileText("A", "k", "", 2, file), "a");
}

TEST(ProfileFile, NamesCompareWithoutCaseWhereTheirLettersAreOfAscii) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", Utf16(u"[\u00C4rger]\r\n\u03C3=x\u00FC\r\n", false));
    EXPECT_EQ(Read(file, "\xC3\x84RGER", "\xCF\x83"), "x\xC3\xBC");
    EXPECT_EQ(Read(file, "\xC3\xA4rger", "\xCF\x83"), kDefault);
    EXPECT_EQ(Read(file, "\xC3\x84rger", "\xCE\xA3"), kDefault);
}

TEST(ProfileFile, EveryLineEndAndNoneEndsALine) {
    const TestFolder folder;
    for (const char* text :
         {"[A]\nk=v\nl=w", "[A]\r\nk=v\r\nl=w\r\n", "[A]\rk=v\rl=w", "\n\n[A]\n\r\nk=v\n\nl=w\x1A"}) {
        const std::string file = folder.Write("f.ini", text);
        EXPECT_EQ(Read(file, "A", "k"), "v") << text;
        EXPECT_EQ(Read(file, "A", "l"), "w") << text;
        std::filesystem::remove(ToPath(file)); // so that no answer comes from a cache
    }
}

TEST(ProfileFile, FilesWithAMarkAreUtf16OfEitherOrderOrUtf8) {
    const TestFolder folder;
    const std::u16string_view text = u"[A]\r\nk=\u65E5\u672C \u00E4\r\n";
    for (const std::string& bytes :
         {Utf16(text, false), Utf16(text, true),
          std::string("\xEF\xBB\xBF[A]\r\nk=\xE6\x97\xA5\xE6\x9C\xAC \xC3\xA4\r\n")}) {
        const std::string file = folder.Write("f.ini", bytes);
        EXPECT_EQ(Read(file, "A", "k"), "\xE6\x97\xA5\xE6\x9C\xAC \xC3\xA4");
        EXPECT_EQ(ReadProfileSections(256, file), Names{"A"});
        std::filesystem::remove(ToPath(file));
    }
}

TEST(ProfileFile, LinesAboveTheFirstHeaderBelongToNoSection) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "LEVEL=APP\nk=1\n");
    EXPECT_EQ(Read(file, "", "LEVEL"), kDefault);
    EXPECT_EQ(ReadProfileInt("", "k", 7, file), 7);
    EXPECT_EQ(ReadProfileSections(256, file), Names{""});
}

TEST(ProfileFile, ASectionWithoutANameHasNoValues) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[]\nLEVEL=APP\nk=1\n");
    EXPECT_EQ(Read(file, "", "LEVEL"), kDefault);
    EXPECT_EQ(ReadProfileInt(" ", "k", 7, file), 7);
    EXPECT_EQ(ReadProfileSections(256, file), Names{""});
}

TEST(ProfileFile, AHeaderEndsAtItsLastBracketAndWithoutOneIsNoHeader) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A] ; text\nk=1\n[B\nl=2\n[C]]\nm=3\n[D]x]\nn=4\n");
    EXPECT_EQ(ReadProfileSections(256, file), (Names{"A", "C]", "D]x"}));
    EXPECT_EQ(Read(file, "A", "l"), "2");
    EXPECT_EQ(Read(file, "C]", "m"), "3");
    EXPECT_EQ(Read(file, "D]x", "n"), "4");
}

TEST(ProfileFile, SectionsAreListedInFileOrderWithTheirRepeats) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[Z]\n[a]\nk=1\n[M]\n[a]\n");
    EXPECT_EQ(ReadProfileSections(1024, file), (Names{"Z", "a", "M", "a"}));
}

TEST(ProfileFile, WithoutSectionsThereIsOneEmptyName) {
    const TestFolder folder;
    EXPECT_EQ(ReadProfileSections(1024, folder.Path("missing.ini")), Names{""});
    EXPECT_EQ(ReadProfileSections(1024, folder.Write("empty.ini", "")), Names{""});
}

TEST(ProfileFile, TheRowOfSectionNamesIsCutToTheBuffer) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[abc]\n[defgh]\n[i]\n");
    EXPECT_EQ(ReadProfileSections(12, file), (Names{"abc", "defgh"}));
    EXPECT_EQ(ReadProfileSections(10, file), (Names{"abc", "defg"}));
    EXPECT_EQ(ReadProfileSections(4, file), Names{"ab"});
    EXPECT_EQ(ReadProfileSections(2, file), Names{""});
}

TEST(ProfileFile, ANumberIsWhatTheValueBeginsWith) {
    const TestFolder folder;
    const std::string file = folder.Write(
        "f.ini", "[A]\na=6008\nb=-7\nc=+9\nd=12abc\ne=abc\nf=0x1F\ng=0o17\nh=0b101\ni=\nj= \"42\" \n"
                 "k=4294967295\nl=4294967296\nm=- 5\nn=-0x10\no=0X1F\np=6 7\n");
    const auto read = [&file](const char* key) { return ReadProfileInt("A", key, 77, file); };
    EXPECT_EQ(read("a"), 6008);
    EXPECT_EQ(read("b"), -7);
    EXPECT_EQ(read("c"), 9);
    EXPECT_EQ(read("d"), 12);
    EXPECT_EQ(read("e"), 0);
    EXPECT_EQ(read("f"), 31);
    EXPECT_EQ(read("g"), 15);
    EXPECT_EQ(read("h"), 5);
    EXPECT_EQ(read("i"), 77) << "an empty value counts as none";
    EXPECT_EQ(read("j"), 42);
    EXPECT_EQ(read("k"), -1) << "what overflows wraps";
    EXPECT_EQ(read("l"), 0);
    EXPECT_EQ(read("m"), 0);
    EXPECT_EQ(read("n"), -16);
    EXPECT_EQ(read("o"), 0);
    EXPECT_EQ(read("p"), 6);
    EXPECT_EQ(read("missing"), 77);
}

TEST(ProfileFile, WhatIsWrittenIsReadBack) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[DEBUG]\r\nOutput=FILE\r\n");
    EXPECT_TRUE(WriteProfileText("DEBUG", "Output", "NONE", file));
    EXPECT_TRUE(WriteProfileText("DEBUG", "Level", "BSFN,EVENTS", file));
    EXPECT_TRUE(WriteProfileText("JDENET", "serviceNameListen", "abc", file));
    EXPECT_EQ(Read(file, "DEBUG", "Output"), "NONE");
    EXPECT_EQ(Read(file, "DEBUG", "Level"), "BSFN,EVENTS");
    EXPECT_EQ(Read(file, "JDENET", "serviceNameListen"), "abc");
    EXPECT_EQ(ReadProfileInt("JDENET", "serviceNameListen", 5, file), 0);
}

#ifdef _WIN32
TEST(ProfileFile, OnWindowsABareNameIsAFileOfTheWindowsFolder) {
    wchar_t windows[MAX_PATH];
    GetWindowsDirectoryW(windows, MAX_PATH);
    const std::filesystem::path path = std::filesystem::path(windows) / "carvelot-test.ini";
    EXPECT_TRUE(WriteProfileText("A", "k", "v", "carvelot-test.ini"));
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(Read("CARVELOT-TEST.INI", "A", "k"), "v");
    std::filesystem::remove(path);
}

TEST(ProfileFile, OnWindowsBytesWithoutAMarkAreOfTheAnsiCodePage) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A]\nold=\xFC\nnew=\xC3\xBC\n");
    if (GetACP() != 1252) {
        GTEST_SKIP() << "the bytes are other letters in code page " << GetACP();
    }
    EXPECT_EQ(Read(file, "A", "old"), "\xC3\xBC");
    EXPECT_EQ(Read(file, "A", "new"), "\xC3\x83\xC2\xBC");
}
#else

// There is no ANSI code page here: the machine's own texts are UTF-8, as a log's lines are.
TEST(ProfileFile, BytesWithoutAMarkAreUtf8WhereTheyCanBeAndWindows1252Else) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A]\nold=\xFC\nnew=\xC3\xBC\n");
    EXPECT_EQ(Read(file, "A", "old"), "\xC3\xBC");
    EXPECT_EQ(Read(file, "A", "new"), "\xC3\xBC");
}

// How a write changes the bytes of a file. (On Windows that is the platform's own affair.)

TEST(ProfileFile, AWriteChangesOneLineAndLeavesEveryOtherByteAlone) {
    const TestFolder folder;
    const std::string before =
        "; head\r\n\r\n[A]\r\n  Key =  old \r\n# note\n[a]\nKey=2\r\nbin=\xFF\xFE\x80\n\x1A";
    const std::string file = folder.Write("f.ini", before);
    EXPECT_TRUE(WriteProfileText("a", "KEY", "new", file));
    EXPECT_EQ(folder.Read("f.ini"),
              "; head\r\n\r\n[A]\r\n  Key =  new\r\n# note\n[a]\nKey=2\r\nbin=\xFF\xFE\x80\n\x1A");
}

TEST(ProfileFile, ANewKeyStandsBehindItsSectionsLastLine) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A]\r\nk=1\r\n\r\n[B]\r\nm=2\r\n");
    EXPECT_TRUE(WriteProfileText("A", "l", "3", file));
    EXPECT_EQ(folder.Read("f.ini"), "[A]\r\nk=1\r\nl=3\r\n\r\n[B]\r\nm=2\r\n");
    EXPECT_TRUE(WriteProfileText("B", "n", "4", file));
    EXPECT_EQ(folder.Read("f.ini"), "[A]\r\nk=1\r\nl=3\r\n\r\n[B]\r\nm=2\r\nn=4\r\n");
}

TEST(ProfileFile, ANewSectionStandsAtTheEndWithTheLineEndsOfTheFile) {
    const TestFolder folder;
    const std::string crlf = folder.Write("crlf.ini", "[A]\r\nk=1\r\n");
    EXPECT_TRUE(WriteProfileText("B", "m", "2", crlf));
    EXPECT_EQ(folder.Read("crlf.ini"), "[A]\r\nk=1\r\n[B]\r\nm=2\r\n");
    const std::string lf = folder.Write("lf.ini", "[A]\nk=1\n");
    EXPECT_TRUE(WriteProfileText("B", "m", "2", lf));
    EXPECT_EQ(folder.Read("lf.ini"), "[A]\nk=1\n[B]\nm=2\n");
}

TEST(ProfileFile, ANewLineTakesTheEndThatMostLinesOfTheFileHave) {
    const TestFolder folder;
    for (const auto& [before, after] : {
             std::pair{"[A]\nk=1\r\nl=2\r\n", "[A]\nk=1\r\nl=2\r\nm=3\r\n"},
             std::pair{"[A]\r\nk=1\nl=2\n", "[A]\r\nk=1\nl=2\nm=3\n"},
             std::pair{"[A]\rk=1\rl=2\n", "[A]\rk=1\rl=2\nm=3\r"},
             std::pair{"[A]\nk=1\r\n", "[A]\nk=1\r\nm=3\n"},
         }) {
        const std::string file = folder.Write("f.ini", before);
        EXPECT_TRUE(WriteProfileText("A", "m", "3", file));
        EXPECT_EQ(folder.Read("f.ini"), after);
        EXPECT_EQ(Read(file, "A", "m"), "3");
    }
}

TEST(ProfileFile, WhatStandsBehindAnEndOfFileMarkStaysThere) {
    const TestFolder folder;
    for (const char* mark :
         {"\x1A", "\x1A\r\n", "\x1Arest", "\x1A\r\nrest=1\r\n\r\n", "\x1A[X]\r\ny=1\r\n"}) {
        const std::string file = folder.Write("f.ini", std::string("[A]\r\nk=1\r\n\r\n") + mark);
        EXPECT_TRUE(WriteProfileText("A", "l", "2", file));
        EXPECT_EQ(folder.Read("f.ini"), std::string("[A]\r\nk=1\r\nl=2\r\n\r\n") + mark);
        EXPECT_TRUE(WriteProfileText("B", "m", "3", file));
        EXPECT_EQ(folder.Read("f.ini"), std::string("[A]\r\nk=1\r\nl=2\r\n\r\n[B]\r\nm=3\r\n") + mark);
        EXPECT_TRUE(WriteProfileText("B", "m", "4", file));
        EXPECT_EQ(folder.Read("f.ini"), std::string("[A]\r\nk=1\r\nl=2\r\n\r\n[B]\r\nm=4\r\n") + mark);
    }
    const std::string value = folder.Write("f.ini", "[A]\nk=1 \x1A");
    EXPECT_TRUE(WriteProfileText("A", "k", "2", value));
    EXPECT_EQ(folder.Read("f.ini"), "[A]\nk=2\x1A");
    EXPECT_EQ(Read(value, "A", "k"), "2");
}

TEST(ProfileFile, AMissingFinalLineEndIsMadeOnlyWhereALineFollows) {
    const TestFolder folder;
    const std::string changed = folder.Write("changed.ini", "[A]\r\nk=1");
    EXPECT_TRUE(WriteProfileText("A", "k", "2", changed));
    EXPECT_EQ(folder.Read("changed.ini"), "[A]\r\nk=2");
    const std::string key = folder.Write("key.ini", "[A]\r\nk=1");
    EXPECT_TRUE(WriteProfileText("A", "l", "2", key));
    EXPECT_EQ(folder.Read("key.ini"), "[A]\r\nk=1\r\nl=2");
    const std::string section = folder.Write("section.ini", "[A]\r\nk=1");
    EXPECT_TRUE(WriteProfileText("B", "l", "2", section));
    EXPECT_EQ(folder.Read("section.ini"), "[A]\r\nk=1\r\n[B]\r\nl=2\r\n");
}

TEST(ProfileFile, AWriteToAMissingFileMakesIt) {
    const TestFolder folder;
    EXPECT_TRUE(WriteProfileText("A", "k", "v", folder.Path("new.ini")));
    EXPECT_EQ(folder.Read("new.ini"), "[A]\nk=v\n");
}

TEST(ProfileFile, AWriteToASectionWithoutANameMakesThatSection) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A]\nk=1\n");
    EXPECT_TRUE(WriteProfileText("", "LEVEL", "APP", file));
    EXPECT_EQ(folder.Read("f.ini"), "[A]\nk=1\n[]\nLEVEL=APP\n");
}

TEST(ProfileFile, AUtf16FileStaysOneOfTheSameOrder) {
    const TestFolder folder;
    for (const bool big : {false, true}) {
        const std::string file = folder.Write("f.ini", Utf16(u"[A]\r\nk=\u65E5\r\nl=2", big));
        EXPECT_TRUE(WriteProfileText("A", "k", "\xF0\x9F\x98\x80 \xC3\xA4", file));
        EXPECT_TRUE(WriteProfileText("B", "m", "3", file));
        EXPECT_EQ(folder.Read("f.ini"), Utf16(u"[A]\r\nk=\U0001F600 \u00E4\r\nl=2\r\n[B]\r\nm=3\r\n", big));
    }
}

TEST(ProfileFile, HalfASurrogatePairOfAUtf16FileIsReadAsAReplacementCharacter) {
    const TestFolder folder;
    std::u16string text = u"[A]\nk=x";
    text.push_back(u'\xD83D'); // the first half of a pair
    text.append(u"y\nwhole=\U0001F600\n");
    for (const bool big : {false, true}) {
        const std::string file = folder.Write("f.ini", Utf16(text, big));
        EXPECT_EQ(Read(file, "A", "k"), "x\xEF\xBF\xBDy");
        EXPECT_EQ(Read(file, "A", "whole"), "\xF0\x9F\x98\x80");
    }
}

TEST(ProfileFile, AKeyThatStandsAloneGetsItsValue) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A]\nk\nother=1\n");
    EXPECT_TRUE(WriteProfileText("A", "k", "v", file));
    EXPECT_EQ(folder.Read("f.ini"), "[A]\nk=v\nother=1\n");
    EXPECT_EQ(Read(file, "A", "k"), "v");
}

TEST(ProfileFile, AnOddLastByteOfAUtf16FileStaysTheLast) {
    const TestFolder folder;
    for (const bool big : {false, true}) {
        const std::string file = folder.Write("f.ini", Utf16(u"[A]\r\nk=1\r\n", big) + "x");
        EXPECT_TRUE(WriteProfileText("A", "k", "2", file));
        EXPECT_TRUE(WriteProfileText("A", "l", "3", file));
        EXPECT_TRUE(WriteProfileText("B", "m", "4", file));
        EXPECT_EQ(folder.Read("f.ini"), Utf16(u"[A]\r\nk=2\r\nl=3\r\n[B]\r\nm=4\r\n", big) + "x");
        EXPECT_EQ(Read(file, "B", "m"), "4");
    }
}

TEST(ProfileFile, AWriteOfTheSameValueLeavesTheFileUntouched) {
    const TestFolder folder;
    const std::string file = folder.Write("f.ini", "[A]\nk=1\n");
    struct stat before {};
    struct stat after {};
    ASSERT_EQ(stat(file.c_str(), &before), 0);
    EXPECT_TRUE(WriteProfileText("A", "k", "1", file));
    ASSERT_EQ(stat(file.c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST(ProfileFile, AWriteThatFailsLeavesEverythingAsItWas) {
    const TestFolder folder;
    const std::string path = folder.Write("file", "[A]\nk=1\n");
    EXPECT_FALSE(WriteProfileText("A", "k", "2", path + "/below.ini"));
    EXPECT_FALSE(WriteProfileText("A", "k", "2", folder.Path()));
    EXPECT_FALSE(WriteProfileText("A", "k", "2", folder.Path("missing/f.ini")));
    EXPECT_EQ(folder.Read("file"), "[A]\nk=1\n");
    EXPECT_EQ(folder.Names(), Names{"file"});
}

TEST(ProfileFile, ABareNameIsLookedForInTheProfileFolderWhateverItsCase) {
    const TestFolder folder;
    const EnvironmentGuard profiles("CARVELOT_PROFILE_DIR", folder.Path().c_str());
    folder.Write("Jde.ini", "[DEBUG]\nOutput=FILE\n");
    EXPECT_EQ(Read("JDE.INI", "DEBUG", "Output"), "FILE");
    EXPECT_EQ(Read("jde.ini", "DEBUG", "Output"), "FILE");
    EXPECT_TRUE(WriteProfileText("DEBUG", "Output", "NONE", "JDE.INI"));
    EXPECT_EQ(folder.Read("Jde.ini"), "[DEBUG]\nOutput=NONE\n");
    EXPECT_EQ(folder.Names(), Names{"Jde.ini"});
    folder.Write("JDE.INI", "[DEBUG]\nOutput=EXCEL\n");
    EXPECT_EQ(Read("JDE.INI", "DEBUG", "Output"), "EXCEL") << "the exact name comes first";
}

TEST(ProfileFile, WithoutAProfileFolderABareNameLiesInTheUsersConfiguration) {
    const TestFolder folder;
    const EnvironmentGuard profiles("CARVELOT_PROFILE_DIR", nullptr);
    const EnvironmentGuard config("XDG_CONFIG_HOME", folder.Path("config").c_str());
    EXPECT_EQ(Read("JDE.INI", "DEBUG", "Output"), kDefault);
    EXPECT_TRUE(WriteProfileText("DEBUG", "Output", "FILE", "JDE.INI"));
    EXPECT_EQ(folder.Read("config/carvelot/JDE.INI"), "[DEBUG]\nOutput=FILE\n");
    EXPECT_EQ(Read("jde.ini", "DEBUG", "Output"), "FILE");
}

TEST(ProfileFile, WithoutAHomeTheConfigurationIsThatOfTheUsersAccount) {
    const EnvironmentGuard config("XDG_CONFIG_HOME", nullptr);
    {
        const EnvironmentGuard home("HOME", "/home/somebody");
        EXPECT_EQ(ConfigFolder(), "/home/somebody/.config/carvelot");
    }
    const EnvironmentGuard home("HOME", "");
    const passwd* const user = getpwuid(getuid());
    ASSERT_NE(user, nullptr);
    EXPECT_EQ(ConfigFolder(), std::string(user->pw_dir) + "/.config/carvelot");
}
#endif
