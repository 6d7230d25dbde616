#include "platform/CodePage.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <random>

namespace carvelot::test {

TEST(ParseJASLine, ReadsEveryField) {
    const TestSession session(
        JASLog({"15 Jan 2024 09:12:03,250 [INFO  ] USER1 - [RUNTIME]      Calling Business function X  "}));
    const CLogDetail record = session.Last();
    EXPECT_EQ(record.m_nDay, 15);
    EXPECT_EQ(record.m_strMonth, "Jan");
    EXPECT_EQ(record.m_nHour, 9);
    EXPECT_EQ(record.m_nMinute, 12);
    EXPECT_EQ(record.m_nSecond, 3);
    EXPECT_EQ(record.m_nMicrosecond, 250000); // milliseconds
    EXPECT_EQ(record.m_nTime, LogTime(9, 12, 3, 250000));
    EXPECT_EQ(record.m_strLevel, "INFO");
    EXPECT_EQ(record.m_strUser, "USER1");
    EXPECT_EQ(record.m_strSource, "RUNTIME");
    EXPECT_EQ(record.m_strText, "Calling Business function X");
    EXPECT_EQ(record.m_nKind, LOG_CALL);
    EXPECT_EQ(record.m_nProcessID, 0U);
    EXPECT_EQ(record.m_nThreadID, 0U);
    EXPECT_EQ(record.m_strThreadLabel.Joined(), "");
}

TEST(ParseJASLine, GivesALineWithoutAUserToTheSystemLevel) {
    const TestSession session(JASLog({"15 Jan 2024 09:12:03,250 [WARN  ] - [BASE] x"}));
    EXPECT_EQ(session.Last().m_strLevel, "WARN");
    EXPECT_EQ(session.Last().m_nKind, LOG_WARN);
    EXPECT_EQ(session.Last().m_strUser, "SYSTEM LEVEL");
    EXPECT_EQ(Numbers(session.User("SYSTEM LEVEL").m_listDetails), std::vector<std::uint32_t>{kJASLead});
}

TEST(ParseJASLine, TakesTheLastOfSeveralWordsForTheUser) {
    const TestSession session(JASLog({"15 Jan 2024 09:12:03,250 [APP] ONE TWO - [BASE] x"}));
    EXPECT_EQ(session.Last().m_strUser, "TWO");
}

TEST(ParseJASLine, UsesUpALineWithoutADash) {
    const TestSession session(JASLog({"15 Jan 2024 09:12:03,250 [APP] many words and no dash"}));
    EXPECT_EQ(session.Last().m_strUser, "dash");
    EXPECT_EQ(session.Last().m_strText, "");
    EXPECT_EQ(session.Last().m_strSource, "");
}

TEST(ParseJASLine, DropsALineWhoseSecondWordIsNoMonth) {
    const TestSession session(JASLog({"at Foo.bar(Foo:12)", "\tat com.example.Foo", "Caused by: x"}));
    // A tab is no delimiter of the first word: "\tat" is the day, and "com.example.Foo" no month.
    EXPECT_EQ(session.Count(), kJASLead);
}

TEST(ParseJASLine, MakesARecordOfAShortLine) {
    const TestSession session(JASLog({"oneword", "15 Jan", "15 Jan 2024", "15 Jan 2024 09:12:03,250"}));
    ASSERT_EQ(session.Count(), kJASLead + 4);
    EXPECT_EQ(session.Record(kJASLead).m_nTime, 0U);
    EXPECT_EQ(session.Record(kJASLead).m_strMonth, "");
    EXPECT_EQ(session.Record(kJASLead + 1).m_strMonth, "Jan");
    EXPECT_EQ(session.Record(kJASLead + 2).m_nTime, 0U);
    EXPECT_EQ(session.Record(kJASLead + 3).m_nTime, LogTime(9, 12, 3, 250000));
    EXPECT_EQ(session.Last().m_strUser, "SYSTEM LEVEL");
}

TEST(ParseJASLine, EmptiesTheLevelWhereTwoBlanksStandAheadOfIt) {
    const TestSession session(JASLog({"15 Jan 2024 08:00:00,250  [WARN] USER1 - [BASE] x"}));
    EXPECT_EQ(session.Last().m_strLevel, "");
    EXPECT_EQ(session.Last().m_nKind, LOG_NONE);
    EXPECT_EQ(session.Last().m_strUser, "USER1");
    EXPECT_EQ(session.Last().m_strText, "x");
}

TEST(ParseJASLine, SaturatesMillisecondsThatNoClockHas) {
    const TestSession session(JASLog({JASLine("09:12:03,99999999", "U", "x")}));
    EXPECT_EQ(session.Last().m_nMicrosecond, 2147483647);
}

TEST(ParseJASLine, YieldsNothingUnderAProcessFilter) {
    TestSession session(JASLog({JASLine("09:12:03,250", "U", "x")}));
    session.m_doc.m_nProcessFilter = 12;
    EXPECT_TRUE(session.m_doc.LoadLog());
    EXPECT_EQ(session.Count(), 0U);
    EXPECT_TRUE(session.m_doc.m_listProcesses.empty());
    EXPECT_TRUE(session.m_doc.m_listUsers.empty());
}

namespace {

std::int32_t IndexOf(std::string_view line) {
    std::string scratch;
    return ParseJASParam(line, scratch).index;
}

// As it comes to stand in a statement.
std::string ValueOf(std::string_view line) {
    std::string scratch;
    const JASParam param = ParseJASParam(line, scratch);
    const std::string quote = param.quoted ? "'" : "";
    return quote + std::string(param.value) + quote;
}

} // namespace

TEST(ParseJASParam, ReadsIndexValueAndType) {
    EXPECT_EQ(IndexOf("Param2: 1000_Types.DECIMAL,"), 2);
    EXPECT_EQ(ValueOf("Param2: 1000_Types.DECIMAL,"), "1000");
    EXPECT_EQ(ValueOf("Param1: 52_Types.VARCHAR, "), "'52'");
    EXPECT_EQ(ValueOf("Param1: a b_Types.LONGVARCHAR"), "'a b'");
    EXPECT_EQ(IndexOf("Param12: x_Types.CHAR"), 12);
}

TEST(ParseJASParam, KeepsADotOfTheValueAndEndsItAtTheFirstTypesWord) {
    EXPECT_EQ(ValueOf("Param1: 1.5_Types.DECIMAL,"), "1.5");
    EXPECT_EQ(ValueOf("Param1: a_Types.b_Types.VARCHAR"), "'a'");
}

TEST(ParseJASParam, IsEmptyWithoutADotAndHasNoIndexWithoutAColon) {
    EXPECT_EQ(IndexOf("Param1: x"), 0);
    EXPECT_EQ(ValueOf("Param1: x"), "");
    EXPECT_EQ(IndexOf("Param1 x_Types.DECIMAL"), 0);
    EXPECT_EQ(ValueOf("Param1 x_Types.DECIMAL"), "");
    EXPECT_EQ(ValueOf("Param1 x_Types.VARCHAR"), "''");
}

TEST(PreparedStatement, ComesToLifeOnTheLineOfItsLastParameter) {
    const TestSession session(
        JASLog({JASLine("08:00:00,001", "U", "SELECT * FROM F4211 WHERE A = ? AND B = ?"),
                JASLine("08:00:00,002", "U", "SQL statement parameter marker values are :"),
                JASLine("08:00:00,003", "U", "Param1: 52_Types.VARCHAR,"),
                JASLine("08:00:00,004", "U", "Param2: 7_Types.DECIMAL,")}));
    EXPECT_EQ(session.Kind(kJASLead), LOG_NONE);
    EXPECT_EQ(session.Text(kJASLead), "SELECT * FROM F4211 WHERE A = ?1 AND B = ?2");
    EXPECT_EQ(session.Kind(kJASLead + 1), LOG_NONE);
    EXPECT_EQ(session.Kind(kJASLead + 2), LOG_NONE);
    EXPECT_EQ(session.Last().m_nKind, LOG_SQL);
    EXPECT_EQ(session.Last().m_strText, "SELECT * FROM F4211 WHERE A = '52' AND B = 7");
    EXPECT_EQ(session.Last().m_strTable, "F4211");
    EXPECT_EQ(session.Last().m_nTime, LogTime(8, 0, 0, 4000));
}

TEST(PreparedStatement, ReplacesTheLeftmostHitOfAMark) {
    // "?1" is found in "?10" too once the first one is gone.
    std::string statement = "SELECT X FROM T WHERE A IN (?";
    for (int i = 1; i < 10; ++i) {
        statement.append(",?");
    }
    TestSession session(JASLog({}));
    PendingStatement pending;
    std::string scratch;
    std::string_view text = statement;
    ClassifyJASStatement(text, pending, scratch);
    EXPECT_EQ(pending.parameters, 10);
    for (int i = 0; i < 2; ++i) {
        text = "Param1: v_Types.CHAR";
        ClassifyJASStatement(text, pending, scratch);
    }
    EXPECT_EQ(pending.statement, "SELECT X FROM T WHERE A IN (v,?2,?3,?4,?5,?6,?7,?8,?9,v0");
}

TEST(PreparedStatement, FillsInValuesThatHoldMarksThemselves) {
    std::mt19937 random(3);
    const std::vector<std::string> values{"7", "?", "?1", "?2x?", "", "a longer value than most", "1"};
    for (int run = 0; run < 3000; ++run) {
        std::string statement = "UPDATE ";
        std::string expected = statement;
        int marks = 0;
        for (std::size_t part = random() % 24; part > 0; --part) {
            const std::string piece =
                random() % 2 == 0 ? "?" : std::vector<std::string>{"1", " A = ", "0"}[random() % 3];
            statement += piece;
            expected += piece == "?" ? "?" + std::to_string(++marks) : piece;
        }
        PendingStatement pending;
        std::string scratch;
        std::string_view text = statement;
        const LogKind kind = ClassifyJASStatement(text, pending, scratch).kind;
        EXPECT_EQ(kind, marks == 0 ? LOG_SQL : LOG_NONE);
        for (int left = marks; left > 0; --left) {
            const std::string index = std::to_string(1 + random() % 12);
            const std::string& value = values[random() % values.size()];
            const bool quoted = random() % 2 == 0;
            const std::string line =
                "Param" + index + ": " + value + (quoted ? "_Types.VARCHAR," : "_Types.DECIMAL,");
            text = line;
            if (random() % 2 == 0) {
                ClassifyJASStatement(text, {}, pending, scratch);
            } else {
                ClassifyJASStatement(text, pending, scratch);
            }
            if (const std::size_t place = expected.find("?" + index); place != std::string::npos) {
                expected.replace(place, 1 + index.size(), quoted ? "'" + value + "'" : value);
            }
            EXPECT_EQ(pending.statement, expected) << statement;
        }
    }
}

TEST(PreparedStatement, IsSearchedByAllItsCharactersWhicheverLineBroughtThem) {
    const std::string ascii = "SELECT A FROM T WHERE B = ? AND C = ?";
    // Log bytes are of the system's code page.
    const std::string umlaut = platform::Utf8ToBytes("SELECT A\xC3\x9C FROM T WHERE B = ? AND C = ?");
    const std::string plainValue = ": x_Types.VARCHAR";
    const std::string umlautValue = platform::Utf8ToBytes(": \xC3\xBC_Types.VARCHAR");
    struct Case {
        std::string statement;
        std::string first;
        std::string second;
        bool holdsUmlaut;
    };
    std::vector<std::string> lines = JASLog({});
    std::vector<std::uint32_t> found;
    const std::vector<Case> cases = {{ascii, plainValue, plainValue, false},
                                     {ascii, umlautValue, plainValue, true},
                                     {ascii, plainValue, umlautValue, true},
                                     {umlaut, plainValue, plainValue, true},
                                     {ascii, plainValue, plainValue, false}};
    for (const Case& one : cases) {
        lines.push_back(JASLine("08:00:00,000", "INIT", one.statement));
        lines.push_back(JASLine("08:00:00,000", "INIT", "Param1" + one.first));
        lines.push_back(JASLine("08:00:00,000", "INIT", "Param2" + one.second));
        if (one.holdsUmlaut) {
            found.push_back(static_cast<std::uint32_t>(lines.size() - 1));
        }
    }
    const TestSession session(lines);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const RecordIndex record{static_cast<std::uint32_t>(kJASLead + 3 * i + 2)};
        EXPECT_EQ(session.m_doc.m_listDetails.Kind(record), LOG_SQL) << i;
        EXPECT_EQ(session.m_doc.m_listDetails.TextIsAscii(record), !cases[i].holdsUmlaut) << i;
    }
    EXPECT_EQ(Numbers(session.m_doc.FindDetails("\xC3\x9C")), found);
    EXPECT_EQ(Numbers(session.m_doc.FindDetails("\xC3\xBC")), found);
}

TEST(PreparedStatement, SilencesTheLowerTestsUntilItsParametersCome) {
    PendingStatement pending;
    TestSession session(JASLog({}));
    const auto classify = [&](std::string_view level, std::string_view text) {
        std::string scratch;
        const LogKind levelKind = KindOfLevel(level);
        return levelKind != LOG_NONE ? levelKind : ClassifyJASStatement(text, pending, scratch).kind;
    };
    EXPECT_EQ(classify("APP", "UPDATE T SET A = ?"), LOG_NONE);
    EXPECT_EQ(classify("APP", "Calling Business function X"), LOG_NONE);
    EXPECT_EQ(classify("WARN", "SELECT A FROM T"), LOG_WARN); // leaves the pending statement alone
    EXPECT_EQ(pending.parameters, 1);
    EXPECT_EQ(classify("APP", "SELECT A FROM T"), LOG_SQL); // forgets what it awaited
    EXPECT_EQ(classify("APP", "Calling Business function X"), LOG_CALL);
}

TEST(PreparedStatement, OutlivesItsSession) {
    TestSession session(JASLog({JASLine("09:00:01,000", "U", "SELECT * FROM F0101 WHERE A = ?")}));
    EXPECT_EQ(session.m_pending.parameters, 1);
    session.m_file.Write(
        TestSession::Joined(JASLog({JASLine("09:00:01,000", "U", "Param1: 5_Types.DECIMAL")})));
    ASSERT_TRUE(session.m_doc.LoadLog());
    EXPECT_EQ(session.Last().m_nKind, LOG_SQL);
    EXPECT_EQ(session.Last().m_strText, "SELECT * FROM F0101 WHERE A = 5");
}

} // namespace carvelot::test
