// Readings that someone must choose: what a log says without them and with them.
#include "parse/Dialects.h"

#include "sources/MemorySource.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

// A log in memory, read in either way.
struct Read {
    Read(const std::vector<std::string>& lines, CDialects dialects, bool plain = false) {
        m_doc.m_dialects = dialects;
        m_doc.m_bPlainParse = plain;
        CMemorySource source(m_content = TestSession::Joined(lines));
        EXPECT_TRUE(m_doc.LoadFrom(source));
    }

    // "day month source text" of the records behind the lead.
    std::vector<std::string> Records(std::uint32_t lead) const {
        std::vector<std::string> texts;
        for (std::uint32_t i = lead; i < m_doc.m_listDetails.Size(); ++i) {
            const CLogDetail detail = m_doc.m_listDetails[RecordIndex{i}];
            texts.push_back(std::to_string(detail.m_nDay) + ' ' + std::string(detail.m_strMonth) + " [" +
                            std::string(detail.m_strSource) + "] " + std::string(detail.m_strText));
        }
        return texts;
    }
    CDialects Helpful() const { return m_doc.Notes().m_helpful; }

    std::string m_content;
    AnalysisSettings m_settings;
    PendingStatement m_pending;
    RecordingHost m_host;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
};

constexpr CDialects kNone;
constexpr CDialects kMonths{Dialect::Months};
constexpr CDialects kNumbered{Dialect::Numbered};
constexpr CDialects kBoth{Dialect::Months, Dialect::Numbered};

using Texts = std::vector<std::string>;

std::vector<std::string> JASLinesOf(std::initializer_list<const char*> stamps) {
    std::vector<std::string> lines = JASLog({});
    for (const char* stamp : stamps) {
        lines.push_back(std::string(stamp) + " 09:12:03,250 [APP   ] ANNE - [BASE] x y");
    }
    return lines;
}

// What the lines of a JAS log's source say to either reading, in either way.
Texts Sources(const std::vector<std::string>& rests, CDialects dialects, CDialects& helpful) {
    std::vector<std::string> lines = JASLog({});
    for (const std::string& rest : rests) {
        lines.push_back("15 Jan 2024 09:12:03,250 [APP   ] ANNE - " + rest);
    }
    const Read fast(lines, dialects);
    const Read plain(lines, dialects, true);
    EXPECT_EQ(fast.Records(kJASLead), plain.Records(kJASLead));
    EXPECT_EQ(fast.Helpful(), plain.Helpful());
    helpful = fast.Helpful();
    return fast.Records(kJASLead);
}

} // namespace

TEST(Dialects, HaveNames) {
    EXPECT_EQ(DialectOf("months"), Dialect::Months);
    EXPECT_EQ(DialectOf("numbered"), Dialect::Numbered);
    for (const char* name : {"", "month", "Months", "months ", "auto"}) {
        EXPECT_EQ(DialectOf(name), std::nullopt) << name;
    }
    EXPECT_EQ(kNone.Names(), "");
    EXPECT_EQ(kNumbered.Names(), "numbered");
    EXPECT_EQ(kBoth.Names(), "months, numbered");
    for (const CDialects dialects : {kNone, kMonths, kNumbered, kBoth}) {
        EXPECT_EQ(CDialects::Named(dialects.Names()), dialects);
    }
    EXPECT_EQ(CDialects::Named("something, numbered, monthsx"), kNumbered);
    EXPECT_EQ(kBoth.Without(kMonths), kNumbered);
    EXPECT_TRUE(kBoth.Without(kBoth).Empty());
}

TEST(Dialects, MonthsMakeRecordsOfJASLinesOfOtherLanguages) {
    const auto lines =
        JASLinesOf({"15 Mär 2024", "16 févr. 2024", "17 ЯНВ. 2024", "18 12月 2024", "19 M\xE4rz 2024"});
    const Read without(lines, kNone);
    EXPECT_EQ(without.Records(kJASLead), Texts{});
    EXPECT_EQ(without.m_doc.Refused().noMonth, 5U);
    EXPECT_EQ(without.Helpful(), kMonths);
    const Read with(lines, kMonths);
    EXPECT_EQ(with.Records(kJASLead), (Texts{"15 Mar [BASE] x y", "16 Feb [BASE] x y", "17 Jan [BASE] x y",
                                             "18 Dec [BASE] x y", "19 Mar [BASE] x y"}));
    EXPECT_EQ(with.m_doc.Refused().noMonth, 0U);
    EXPECT_EQ(with.Helpful(), kNone);
}

TEST(Dialects, MonthsGiveDebugLinesOfOtherLanguagesTheirMonth) {
    const std::string rest = " 15 10:00:00.000001 - 4120/3388 Worker\tx y";
    const auto lines = DebugLog({"Mär" + rest, "sept." + rest, "Foo" + rest, "MONTH" + rest, "Febr" + rest});
    const Read without(lines, kNone);
    EXPECT_EQ(without.Records(1), (Texts{"15 MONTH [] x y", "15 MONTH [] x y", "15 MONTH [] x y",
                                         "15 MONTH [] x y", "15 MONTH [] x y"}));
    EXPECT_EQ(without.Helpful(), kMonths);
    const Read with(lines, kMonths);
    EXPECT_EQ(with.Records(1), (Texts{"15 Mar [] x y", "15 Sep [] x y", "15 MONTH [] x y", "15 MONTH [] x y",
                                      "15 Feb [] x y"}));
    EXPECT_EQ(with.Helpful(), kNone);
}

TEST(Dialects, MonthsLeaveEnglishLinesAsTheyAre) {
    const auto lines = JASLinesOf({"15 Jan 2024", "15 anF 2024", "15 J 2024"});
    EXPECT_EQ(Read(lines, kMonths).Records(kJASLead), Read(lines, kNone).Records(kJASLead));
    EXPECT_EQ(Read(lines, kNone).Helpful(), kNone);
}

TEST(Dialects, MonthsCountOnlyInAStamp) {
    // Many a word of another language is a month's name too.
    const auto jas =
        JASLog({"Fehler des Servers", "12 out of 30", "at mar 2024", "15 mai", "mai", "15 mai x"});
    for (const CDialects dialects : {kNone, kMonths}) {
        const Read read(jas, dialects);
        EXPECT_EQ(read.Records(kJASLead), Texts{"0  [] "}); // "mai", as any line of one word
        EXPECT_EQ(read.m_doc.Refused().noMonth, 5U);
        EXPECT_EQ(read.Helpful(), kNone);
    }
    const auto debug = DebugLog({"set x 10:00:00", "set 5", "mai", "set 5 x"});
    for (const CDialects dialects : {kNone, kMonths}) {
        const Read read(debug, dialects);
        EXPECT_EQ(read.Records(1), (Texts{"0 MONTH [] ", "5 MONTH [] ", "0 MONTH [] "}));
        EXPECT_EQ(read.m_doc.Refused().noTime, 1U);
        EXPECT_EQ(read.Helpful(), kNone);
    }
}

TEST(Dialects, NumberedTakesTheSourceBehindANumber) {
    const Texts lines{"[12345][JAS] x y", "[12345][RUNTIME] Calling Business function A", "[BASE] [x] y"};
    CDialects helpful;
    EXPECT_EQ(Sources(lines, kNone, helpful),
              (Texts{"15 Jan [12345] [JAS] x y", "15 Jan [12345] [RUNTIME] Calling Business function A",
                     "15 Jan [BASE] [x] y"}));
    EXPECT_EQ(helpful, kNumbered);
    EXPECT_EQ(
        Sources(lines, kNumbered, helpful),
        (Texts{"15 Jan [JAS] x y", "15 Jan [RUNTIME] Calling Business function A", "15 Jan [BASE] [x] y"}));
    EXPECT_EQ(helpful, kNone);
}

TEST(Dialects, NumberedLeavesAnyOtherSource) {
    const Texts lines{"[12345] x",   "[12345] [JAS] x", "[12345][] x", "[12345][JAS x", "[12345][JAS[ x",
                      "[1a][JAS] x", "[-1][JAS] x",     "[][JAS] x",   "[12345]JAS x",  "[12345]",
                      "[12345][",    "12345][JAS] x",   "[JAS][1] x",  "[ 1][JAS] x"};
    CDialects helpful;
    const Texts without = Sources(lines, kNone, helpful);
    EXPECT_EQ(helpful, kNumbered); // for the one without its first bracket
    EXPECT_EQ(without.size(), lines.size());
    Texts with = Sources(lines, kNumbered, helpful);
    EXPECT_EQ(with[11], "15 Jan [JAS] x");
    with[11] = without[11];
    EXPECT_EQ(with, without);
}

TEST(Dialects, NumberedLooksBehindTheNumberOfEveryLine) {
    // A beginning that is known says nothing of what stands behind the number.
    const Texts lines{"[12345] x", "[12345] y",      "[12345][JAS] x",
                      "[12345] z", "[12345][JAS] y", "[12345][] x"};
    CDialects helpful;
    EXPECT_EQ(Sources(lines, kNumbered, helpful),
              (Texts{"15 Jan [12345] x", "15 Jan [12345] y", "15 Jan [JAS] x", "15 Jan [12345] z",
                     "15 Jan [JAS] y", "15 Jan [12345] [] x"}));
    Sources(lines, kNone, helpful);
    EXPECT_EQ(helpful, kNumbered);
}

TEST(Dialects, MayBeChosenTogether) {
    const auto lines = JASLog({"15 janv. 2024 09:12:03,250 [APP   ] ANNE - [12345][JAS] x y",
                               "15 Jan 2024 09:12:03,250 [APP   ] ANNE - [12345][JAS] x y"});
    EXPECT_EQ(Read(lines, kBoth).Records(kJASLead), (Texts{"15 Jan [JAS] x y", "15 Jan [JAS] x y"}));
    EXPECT_EQ(Read(lines, kMonths).Helpful(), kNumbered);
    EXPECT_EQ(Read(lines, kNumbered).Helpful(), kMonths);
}

TEST(Dialects, AreNotedOfTheLatestLoadAlone) {
    Read read(JASLinesOf({"15 Mär 2024"}), kNone);
    EXPECT_EQ(read.Helpful(), kMonths);
    const std::string english = TestSession::Joined(JASLog({}));
    CMemorySource source(english);
    ASSERT_TRUE(read.m_doc.LoadFrom(source));
    EXPECT_EQ(read.Helpful(), kNone);
}

} // namespace carvelot::test
