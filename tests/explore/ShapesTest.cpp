#include "explore/Shapes.h"
#include "explore/ExploredLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

using Texts = std::vector<std::string>;

class Shaped : public ExploredLog {
public:
    using ExploredLog::ExploredLog;

    // "SHAPE: SELECT F0101 3 runs, total, longest and p95 in seconds, first and longest record, top caller".
    Texts Shapes(const Selection& scope = {}, const ClockRange& range = {}) const {
        const CRecordShapes recordShapes(m_session.m_doc.m_listDetails);
        const CStatementShapes shapes(recordShapes, m_frames);
        Texts texts;
        for (const ShapeProfile& profile :
             ProfileShapes(m_session.m_doc, shapes, CCut(m_frames, m_streams, scope, range))) {
            std::string& text = texts.emplace_back(shapes.Text(profile.shape));
            text.append(": ").append(profile.operation).append(" ").append(profile.table);
            text.append(" ").append(std::to_string(profile.count));
            for (const std::int64_t time : {profile.total, profile.longest, profile.p95}) {
                text.append(" ").append(Seconds(time));
            }
            text.append(" ").append(std::to_string(Number(profile.firstRecord)));
            text.append(" ").append(std::to_string(Number(profile.longestRecord)));
            text.append(" ").append(KeyText(profile.topCaller));
        }
        return texts;
    }
    std::int64_t Clock(int second) const { return m_frames[0].start + second * 1'000'000LL; }
};

std::vector<std::string> ThreeShapes() {
    return DebugLog({At(0, "SELECT * FROM F1 WHERE A=1"), At(2, kSqlDone), At(3, CallText("F", 1)),
                     At(4, "SELECT * FROM F1 WHERE A=2"), At(7, kSqlDone), At(7, "DELETE FROM F2"),
                     At(11, kSqlDone), At(12, "SELECT  * FROM F1 WHERE A='x'"), At(15, kSqlDone),
                     At(16, ReturnText("F", 1)), At(17, "[JDBOLEDB] x DROP TABLE F3")});
}

} // namespace

TEST(ExploreShapes, AddUpTheStatementsOfAShape) {
    EXPECT_EQ(Shaped(ThreeShapes()).Shapes(),
              (Texts{"SELECT * FROM F1 WHERE A=?: SELECT F1 3 8 3 3 1 4 function F",
                     "DELETE FROM F2: DELETE F2 1 4 4 4 6 6 function F",
                     "DROP TABLE F3: DROP  1 0 0 0 11 11 none"}));
}

TEST(ExploreShapes, AreCutToScopeAndRange) {
    const Shaped log(ThreeShapes());
    EXPECT_EQ(log.Shapes({}, {log.Clock(5), log.Clock(13)}),
              (Texts{"DELETE FROM F2: DELETE F2 1 4 4 4 6 6 function F",
                     "SELECT * FROM F1 WHERE A=?: SELECT F1 2 3 2 2 4 4 function F"}));
    EXPECT_TRUE(log.Shapes(Selection(log.m_session.Process(1))).empty());
    EXPECT_EQ(log.Shapes(Selection(log.m_session.Process(4120))), log.Shapes());
}

TEST(ExploreShapes, OfOneTotalComeByCountThenText) {
    EXPECT_EQ(Shaped(DebugLog({At(0, "DROP B"), At(1, "DROP C"), At(2, "DROP A"), At(3, "DROP C")})).Shapes(),
              (Texts{"DROP C: DROP  2 0 0 0 2 2 none", "DROP A: DROP  1 0 0 0 3 3 none",
                     "DROP B: DROP  1 0 0 0 1 1 none"}));
}

TEST(ExploreShapes, NameTheCallerThatRanThemMostAndTheFirstSeenOfSeveral) {
    const auto topCaller = [](std::initializer_list<std::string> lines) {
        const std::string text = Shaped(DebugLog(lines)).Shapes().at(0);
        return text.substr(text.rfind(' ') + 1);
    };
    EXPECT_EQ(topCaller({At(0, "DROP A"), At(1, CallText("F", 1)), At(2, "DROP A")}), "none");
    EXPECT_EQ(topCaller({At(0, "DROP A"), At(1, CallText("F", 1)), At(2, "DROP A"), At(3, "DROP A")}), "F");
    EXPECT_EQ(topCaller({At(0, CallText("G", 1)), At(1, "DROP A"), At(2, CallText("F", 1)), At(3, "DROP A"),
                         At(4, CallText("G", 1)), At(5, "DROP A")}),
              "G");
}

TEST(ExploreShapes, OfAUsersStatementAreThoseOfItsValuesInPlace) {
    std::vector<std::string> lines =
        JASLog({UserAt(0, "SELECT * FROM F1 WHERE A=? AND B=?"), UserAt(1, "Param1: 5_Types.DECIMAL,"),
                UserAt(2, "Param2: x y_Types.VARCHAR,"), UserAt(5, "x")});
    EXPECT_EQ(Shaped(lines).Shapes(),
              Texts{"SELECT * FROM F1 WHERE A=? AND B=?: SELECT F1 1 3 3 3 8 8 none"});
}

TEST(ExploreShapes, OfManyAndOfLongTextsAreMadeByOneLookAtEach) {
    std::vector<std::string> lines = DebugLog({});
    for (int i = 0; i < 100'000; ++i) {
        lines.push_back(At(0, "DROP T" + std::to_string(i)));
    }
    const std::string many = "SELECT * FROM F1 WHERE A='" + std::string(7000, 'x') + "'";
    for (int i = 0; i < 1000; ++i) {
        lines.push_back(At(0, many));
    }
    const Texts shapes = Shaped(lines).Shapes();
    EXPECT_EQ(shapes.size(), 100'001U);
    EXPECT_EQ(shapes[0].substr(0, 43), "SELECT * FROM F1 WHERE A=?: SELECT F1 1000 ");
}

} // namespace carvelot::test
