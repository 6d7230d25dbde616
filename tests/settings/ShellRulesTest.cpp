#include "records/NodeText.h"
#include "settings/Commands.h"
#include "settings/RecentFiles.h"
#include "settings/StartArguments.h"
#include "support/SettingsStore.h"
#include "text/Integers.h"
#include "text/TypedNumber.h"

#include <gtest/gtest.h>

#include <cmath>

namespace carvelot {
namespace {

TEST(Numbers, IntegersEndAtTheFirstCharacterThatIsNoDigit) {
    EXPECT_EQ(ReadInteger("12 apples"), 12);
    EXPECT_EQ(ReadInteger("  -7"), -7);
    EXPECT_EQ(ReadInteger("+3"), 3);
    EXPECT_EQ(ReadInteger(""), 0);
    EXPECT_EQ(ReadInteger("abc"), 0);
    EXPECT_EQ(ReadInteger("- 3"), 0);
}

TEST(Numbers, IntegersSaturateTo32Bits) {
    EXPECT_EQ(ReadInteger("2147483647"), 2147483647);
    EXPECT_EQ(ReadInteger("2147483648"), 2147483647);
    EXPECT_EQ(ReadInteger("99999999999999999999999"), 2147483647);
    EXPECT_EQ(ReadInteger("-2147483648"), -2147483647 - 1);
    EXPECT_EQ(ReadInteger("-99999999999999999999999"), -2147483647 - 1);
}

TEST(Numbers, FloatingPointNumbersAreReadAsFarAsTheyGo) {
    EXPECT_EQ(TextToDouble("0.5"), 0.5);
    EXPECT_EQ(TextToDouble(" -1.25x"), -1.25);
    EXPECT_EQ(TextToDouble("+2e3"), 2000.0);
    EXPECT_EQ(TextToDouble(".5"), 0.5);
    EXPECT_EQ(TextToDouble("1,5"), 1.0);
    EXPECT_EQ(TextToDouble("seconds"), 0.0);
    EXPECT_EQ(TextToDouble("+-3"), 0.0);
    EXPECT_TRUE(std::isinf(TextToDouble("1e999")));
    EXPECT_EQ(TextToDouble("1e-999"), 0.0);
}

TEST(Numbers, FloatingPointNumbersPrintWithSixDecimals) {
    EXPECT_EQ(SecondsText(1.0), "1.000000");
    EXPECT_EQ(SecondsText(0.0000005), "0.000000");
    EXPECT_EQ(SecondsText(-2.5), "-2.500000");
    EXPECT_EQ(SecondsText(TextToDouble("1e999")), "inf");
}

TEST(RecentFiles, FourAreKeptNewestFirst) {
    CRecentFiles files;
    for (const char* path : {"a", "b", "c", "d", "e"}) {
        files.Add(path);
    }
    EXPECT_EQ(files.m_listPaths, (std::vector<std::string>{"e", "d", "c", "b"}));
}

TEST(RecentFiles, AFileOpenedAgainMovesUp) {
    CRecentFiles files;
    for (const char* path : {"a", "b", "a"}) {
        files.Add(path);
    }
    EXPECT_EQ(files.m_listPaths, (std::vector<std::string>{"a", "b"}));
    files.Add(files.m_listPaths.back());
    EXPECT_EQ(files.m_listPaths, (std::vector<std::string>{"b", "a"}));
}

TEST(RecentFiles, TheListComesBackAtTheNextStart) {
    const test::SettingsStore store;
    CRecentFiles files;
    for (const char* path : {"a", "b", "c"}) {
        files.Add(path);
    }
    files.Save();
    files.Remove("b");
    files.Save();
    CRecentFiles read;
    read.Load();
    EXPECT_EQ(read.m_listPaths, (std::vector<std::string>{"c", "a"}));
}

TEST(RecentFiles, KeepTheDialectsThatTheyWereReadWith) {
    const test::SettingsStore store;
    CRecentFiles files;
    for (const char* path : {"a", "b", "c"}) {
        files.Add(path);
    }
    files.SetDialects("a", "months");
    files.SetDialects("c", "months, numbered");
    files.SetDialects("no recent file", "months");
    EXPECT_EQ(files.Dialects("no recent file"), "");
    files.Add("a"); // moves up with what it has
    files.Save();
    CRecentFiles read;
    read.Load();
    EXPECT_EQ(read.m_listPaths, (std::vector<std::string>{"a", "c", "b"}));
    EXPECT_EQ(read.Dialects("a"), "months");
    EXPECT_EQ(read.Dialects("b"), "");
    EXPECT_EQ(read.Dialects("c"), "months, numbered");
    read.SetDialects("a", "");
    read.Remove("c");
    read.Add("c");
    EXPECT_EQ(read.Dialects("c"), "");
    read.Save();
    files.Load();
    EXPECT_EQ(files.m_listPaths, (std::vector<std::string>{"c", "a", "b"}));
    for (const char* path : {"a", "b", "c"}) {
        EXPECT_EQ(files.Dialects(path), "") << path;
    }
}

TEST(RecentFiles, LoseTheirDialectsWhenTheyFallOut) {
    CRecentFiles files;
    files.Add("a");
    files.SetDialects("a", "months");
    for (const char* path : {"b", "c", "d", "e", "a"}) {
        files.Add(path);
    }
    EXPECT_EQ(files.Dialects("a"), "");
}

TEST(StartArguments, TheFirstArgumentThatIsNoSwitchIsTheLog) {
    EXPECT_EQ(FileToOpen({}), std::nullopt);
    EXPECT_EQ(FileToOpen({"-x", "a.log", "b.log"}), "a.log");
    EXPECT_EQ(FileToOpen({""}), std::nullopt);
    EXPECT_EQ(FileToOpen({"--", "-odd.log"}), "-odd.log");
}

#ifndef _WIN32
TEST(StartArguments, ASlashBeginsAPathHere) {
    EXPECT_EQ(FileToOpen({"/var/log/jde.log"}), "/var/log/jde.log");
}
#endif

TEST(Commands, OfExploreHaveALetterOfTheirOwnEach) {
    std::string letters;
    for (const CCommandInfo& command : AllCommands()) {
        if (command.m_strCategory == "Explore") {
            const std::string_view text = command.m_strText;
            const std::size_t mark = text.find('&');
            ASSERT_NE(mark, std::string_view::npos) << text;
            const char letter = static_cast<char>(text[mark + 1] | 0x20);
            EXPECT_EQ(letters.find(letter), std::string::npos) << text;
            letters.push_back(letter);
        }
    }
    EXPECT_GE(letters.size(), 13U);
}

TEST(Commands, TipsStandBeforeAndAfterTheLineBreak) {
    const CCommandInfo& open = *FindCommand(ID_FILE_OPEN);
    EXPECT_EQ(StatusTip(open), "Open debug log file");
    EXPECT_EQ(ToolTip(open), "Open");
    EXPECT_EQ(ToolTip(*FindCommand(ID_WINDOW_CLOSE_ALL)), "");
}

TEST(Commands, EveryLookHasACommandAndTheNumbersBetweenHaveNone) {
    for (const int id : {205, 206, 207, 208, 209, 210, 215, 216, 217, 218, 219}) {
        EXPECT_NE(FindCommand(id), nullptr) << id;
    }
    for (const int id : {211, 212, 213, 214}) {
        EXPECT_EQ(FindCommand(id), nullptr) << id;
    }
}

TEST(Commands, TheStandardToolbarHasItsButtonsInOrder) {
    const std::vector<int> expected{ID_FILE_OPEN,
                                    ID_SESSION_ANALYZE,
                                    ID_SESSION_CLEAR_DEBUG_FILE,
                                    ID_SESSION_OPEN_AS_TEXT,
                                    ID_SEPARATOR,
                                    ID_TOOLS_GLOBAL_TABLES,
                                    ID_TOOLS_CONVERT_DATES,
                                    ID_TOOLS_OPTIONS,
                                    ID_TOOLS_JDE_SETTINGS,
                                    ID_SEPARATOR,
                                    ID_APP_ABOUT};
    EXPECT_EQ(std::vector<int>(StandardToolBar().begin(), StandardToolBar().end()), expected);
}

TEST(Commands, EachStateHasItsMenus) {
    const auto Names = [](EMenuState state) {
        std::string names;
        for (const EMenu menu : MenusOf(state)) {
            names += std::string(MenuText(menu)) + " ";
        }
        return names;
    };
    EXPECT_EQ(Names(EMenuState::NoWindow), "&File &Tools &View &Help ");
    EXPECT_EQ(Names(EMenuState::Session), "&File &Session &Explore &Tools &View &Window &Help ");
    EXPECT_EQ(Names(EMenuState::Cache), "&File &Cache &Tools &View &Window &Help ");
}

} // namespace
} // namespace carvelot
