// A log in several files is one session.
#include "support/SameSessions.h"
#include "support/TestFolder.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

struct PiecedSession {
    // Each a file with those bytes.
    PiecedSession(const std::vector<std::string>& pieces, bool beginLines) {
        std::vector<LogPiece> list;
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            const std::string name = "piece" + std::to_string(i);
            m_folder.Write(name, pieces[i]);
            list.push_back({m_folder.Path(name), beginLines});
        }
        m_doc.m_bNumberLines = true;
        m_bLoaded = m_doc.OnOpenPieces(std::move(list));
    }

    std::vector<std::uint32_t> FirstRecords() const {
        std::vector<std::uint32_t> records;
        for (const LogPiece& piece : m_doc.m_listPieces) {
            records.push_back(piece.firstRecord);
        }
        return records;
    }

    TestFolder m_folder;
    AnalysisSettings m_settings;
    PendingStatement m_pending;
    RecordingHost m_host;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
    bool m_bLoaded;
};

std::string UncutLog() {
    return TestSession::Joined(DebugLog({DebugLine("10:00:01.000000", "Calling Business function A", "1/1"),
                                         DebugLine("10:00:02.000000", "caf\xC3\xA9", "1/2"),
                                         DebugLine("10:00:03.000000", "Return value is 0 for A", "1/1")}));
}

using Numbers32 = std::vector<std::uint32_t>;

} // namespace

TEST(OnOpenPieces, GivesForALogThatWasCutAtAnyByteTheSessionOfTheWholeOne) {
    const std::string log = UncutLog();
    const PiecedSession whole({log}, false);
    ASSERT_TRUE(whole.m_bLoaded);
    for (std::size_t cut = 0; cut <= log.size(); ++cut) {
        const PiecedSession pieced({log.substr(0, cut), log.substr(cut)}, false);
        ASSERT_TRUE(pieced.m_bLoaded) << cut;
        ASSERT_EQ(DifferenceOf(whole.m_doc, pieced.m_doc), "") << cut;
        ASSERT_EQ(whole.m_doc.m_nLines, pieced.m_doc.m_nLines);
    }
    std::vector<std::string> bytes;
    for (const char byte : log) {
        bytes.emplace_back(1, byte);
    }
    EXPECT_EQ(DifferenceOf(whole.m_doc, PiecedSession(bytes, false).m_doc), "");
}

TEST(OnOpenPieces, TellsWithWhichRecordEachPieceBegins) {
    const std::string first = TestSession::Joined(DebugLog({}));
    const std::string one = DebugLine("10:00:01.000000", "One", "1/1") + "\n";
    const std::string two = DebugLine("10:00:02.000000", "Two", "1/1") + "\n";
    EXPECT_EQ(PiecedSession({first, one + two, two}, false).FirstRecords(), (Numbers32{0, 1, 3}));
    // A record belongs to the piece that its line begins in.
    EXPECT_EQ(PiecedSession({first, one + two.substr(0, 9), two.substr(9) + one}, false).FirstRecords(),
              (Numbers32{0, 1, 3}));
    EXPECT_EQ(
        PiecedSession({first + one.substr(0, 5), one.substr(5) + two.substr(0, 5), two.substr(5)}, false)
            .FirstRecords(),
        (Numbers32{0, 2, 3}));
    EXPECT_EQ(PiecedSession({first, "", one, "", ""}, false).FirstRecords(), (Numbers32{0, 1, 1, 2, 2}));
    EXPECT_EQ(PiecedSession({first, one.substr(0, one.size() - 1)}, false).FirstRecords(), (Numbers32{0, 1}));
}

TEST(PieceOf, IsTheOneThatARecordsLineBeginsIn) {
    const std::string first = TestSession::Joined(DebugLog({}));
    const std::string one = DebugLine("10:00:01.000000", "One", "1/1") + "\n";
    const PiecedSession session({first, "", one + one}, false);
    const auto pieceOf = [&](std::uint32_t record) {
        return session.m_doc.PieceOf(RecordIndex{record}) - session.m_doc.m_listPieces.data();
    };
    EXPECT_EQ(pieceOf(0), 0);
    EXPECT_EQ(pieceOf(1), 2);
    EXPECT_EQ(pieceOf(2), 2);
    EXPECT_EQ(TestSession(DebugLog({})).m_doc.PieceOf(RecordIndex{0}), nullptr);
}

TEST(OnOpenPieces, KeepsALineWithoutItsEndApartFromAPieceThatBeginsOne) {
    const std::string first = TestSession::Joined(DebugLog({}));
    const std::string one = DebugLine("10:00:01.000000", "One", "1/1");
    const std::string two = DebugLine("10:00:02.000000", "Two", "1/1") + "\n";
    EXPECT_EQ(PiecedSession({first + one, two}, false).m_doc.m_listDetails.Size(), 2U);
    const PiecedSession apart({first + one, two}, true);
    EXPECT_EQ(apart.m_doc.m_listDetails.Size(), 3U);
    EXPECT_EQ(apart.FirstRecords(), (Numbers32{0, 2}));
}

TEST(OnOpenPieces, TitlesTheSessionByItsFirstPiece) {
    const std::string first = TestSession::Joined(DebugLog({}));
    const PiecedSession three({first, first, first}, false);
    EXPECT_EQ(three.m_host.m_events,
              (std::vector<std::string>{"title " + three.m_folder.Path("piece0") + " and 2 more"}));
    const PiecedSession one({first}, false);
    EXPECT_EQ(one.m_host.m_events, (std::vector<std::string>{"title " + one.m_folder.Path("piece0")}));
}

TEST(OnOpenPieces, LeavesTheSessionAsItWasWhereAPieceCannotBeRead) {
    const std::string first = TestSession::Joined(DebugLog({}));
    PiecedSession session({first, first}, false);
    ASSERT_EQ(session.m_doc.m_listDetails.Size(), 2U);
    session.m_doc.m_listPieces[1].path += ".missing";
    EXPECT_FALSE(session.m_doc.LoadLog());
    EXPECT_EQ(session.m_host.m_messages, std::vector<std::string>{"Failed to open file."});
    EXPECT_EQ(session.m_doc.m_listDetails.Size(), 2U);
}

TEST(OnOpenDocument, MakesALogInPiecesOneOfAFileAgain) {
    const std::string first = TestSession::Joined(DebugLog({}));
    PiecedSession session({first, first}, false);
    ASSERT_TRUE(session.m_doc.OnOpenDocument(session.m_folder.Path("piece1")));
    EXPECT_EQ(session.m_doc.m_listDetails.Size(), 1U);
    EXPECT_TRUE(session.m_doc.m_listPieces.empty());
}

} // namespace carvelot::test
