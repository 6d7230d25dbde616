// A packed log is the session of the bytes inside.
#include "sources/MemorySource.h"
#include "sources/PackedFile.h"
#include "support/Archives.h"
#include "support/SameSessions.h"
#include "support/TestFolder.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <iterator>

namespace carvelot::test {

namespace {

using Strings = std::vector<std::string>;

class ChoosingHost : public RecordingHost {
public:
    std::vector<std::size_t> ChooseMembers(const CCarvelotDoc&,
                                           const std::vector<PackedMember>& members) override {
        for (const PackedMember& member : members) {
            m_offered.push_back(member.name);
        }
        return m_chosen;
    }

    Strings m_offered;
    std::vector<std::size_t> m_chosen;
};

struct Session {
    bool Open(const std::string& path, Strings members = {}) {
        return m_doc.OnOpenDocument(path, std::move(members));
    }
    bool Load(std::string_view bytes) {
        CMemorySource source(bytes);
        return m_doc.LoadPackedOrPlain(source);
    }
    std::size_t Count() const { return m_doc.m_listDetails.Size(); }

    AnalysisSettings m_settings;
    PendingStatement m_pending;
    ChoosingHost m_host;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
};

std::string SampleLog(const char* name) {
    std::ifstream file(std::string(CARVELOT_SOURCE_FOLDER) + "/samples/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Strings AllKinds(const std::string& log) {
    return {Gzip(log), Zstd(log), Zip({{"a.log", log}}), Zip({{"a.log", log}}, "zip:compression=store")};
}

} // namespace

TEST(PackedLog, IsTheSessionOfTheBytesInside) {
    for (const char* sample : {"order-entry.log", "jas-web.log", "windows-1252.log", "utf-8.log"}) {
        const std::string log = SampleLog(sample);
        ASSERT_GT(log.size(), 1000U);
        Session plain;
        ASSERT_TRUE(plain.Load(log));
        EXPECT_FALSE(plain.m_doc.IsPacked());
        for (const std::string& archive : AllKinds(log)) {
            for (const BlockReading& reading : {BlockReading{BlockReading::Way::Here, 1, 2},
                                                BlockReading{BlockReading::Way::Ahead, 0, 2}}) {
                Session packed;
                packed.m_doc.m_blockReading = reading;
                ASSERT_TRUE(packed.Load(archive));
                EXPECT_TRUE(packed.m_doc.IsPacked());
                EXPECT_EQ(DifferenceOf(plain.m_doc, packed.m_doc), "") << sample << ' ' << reading.bytes;
                EXPECT_EQ(packed.m_host.m_messages, Strings{});
            }
        }
    }
}

TEST(PackedLog, ShowsItsPathAndItsMembersName) {
    const TestFolder folder;
    const std::string log = TestSession::Joined(DebugLog({}));
    Session session;
    const std::string gzip = folder.Write("any name", Gzip(log));
    ASSERT_TRUE(session.Open(gzip));
    const std::string zip = folder.Write("x.log", Zip({{"logs/a.log", log}}));
    ASSERT_TRUE(session.Open(zip));
    EXPECT_EQ(session.m_host.m_events,
              (Strings{"title " + gzip, "recent " + gzip, "title " + zip + "!logs/a.log", "recent " + zip}));
    EXPECT_EQ(session.m_doc.m_strLogPath, zip);
    const std::string plain = folder.Write("y.gz", log);
    ASSERT_TRUE(session.Open(plain)) << "the name tells nothing";
    EXPECT_EQ(session.m_doc.LogName(), plain);
}

TEST(PackedLog, OfSeveralMembersIsWhatTheHostChooses) {
    const TestFolder folder;
    const std::string first = TestSession::Joined(DebugLog({}));
    const std::string more = DebugLine("10:00:00.000001", "On x", "5/6") + "\n";
    const std::string path =
        folder.Write("logs.zip", Zip({{"a.log", first}, {"b.log", more}, {"c.log", more}}));
    Session session;
    EXPECT_FALSE(session.Open(path)) << "none by default";
    EXPECT_EQ(session.m_host.m_offered, (Strings{"a.log", "b.log", "c.log"}));
    EXPECT_EQ(session.m_host.m_messages, Strings{});
    EXPECT_EQ(session.m_host.m_events, Strings{});
    session.m_host.m_chosen = {0, 2};
    ASSERT_TRUE(session.Open(path));
    EXPECT_EQ(session.Count(), 2U);
    EXPECT_EQ(session.m_doc.LogName(), path + "!a.log, c.log");
    session.m_host.m_offered.clear();
    session.m_doc.OnAnalyze();
    EXPECT_EQ(session.m_host.m_offered, Strings{}) << "it is known which";
    EXPECT_EQ(session.Count(), 2U);
    ASSERT_TRUE(session.Open(path, {"a.log", "b.log", "c.log"}));
    EXPECT_EQ(session.Count(), 3U);
    EXPECT_EQ(session.m_host.m_offered, Strings{});
}

TEST(PackedLog, ThatIsNotReadLeavesTheEarlierSession) {
    const std::string log = TestSession::Joined(DebugLog({}));
    Session session;
    ASSERT_TRUE(session.Load(log));
    EXPECT_FALSE(session.Load(Gzip(Gzip(log))));
    EXPECT_FALSE(session.Load(Zip({})));
    session.m_doc.m_listMembers = {"b.log"};
    EXPECT_FALSE(session.Load(Zip({{"a.log", log}})));
    EXPECT_FALSE(session.Load(Gzip(log)));
    EXPECT_EQ(session.m_host.m_messages,
              (Strings{"An archive in an archive can't be read.", "The archive holds no log.",
                       "The archive has no member b.log.", "Only a zip archive has members."}));
    EXPECT_EQ(session.Count(), 1U);
}

TEST(PackedLog, ThatIsDamagedIsTheWholeLinesAheadOfTheDamageAndAMessage) {
    const std::string log = LogOfLines(2000);
    for (const std::string& archive : AllKinds(log)) {
        for (std::size_t part = 1; part < 20; ++part) {
            const std::string_view cut = std::string_view(archive).substr(0, archive.size() * part / 20);
            CMemorySource bytes(cut);
            CPackedSource source(bytes, PackedKindOf(bytes));
            ASSERT_EQ(source.Open(), "");
            std::string out(log.size() + 1, '\0');
            out.resize(source.Read(out.data(), out.size()));
            Session expected;
            const bool any = out.find('\n') != std::string::npos;
            EXPECT_EQ(expected.Load(out.substr(0, out.rfind('\n') + 1)), any);

            Session session;
            EXPECT_EQ(session.Load(cut), any);
            const Strings message{"The archive is damaged: " + std::to_string(out.size()) +
                                  " bytes were read."};
            EXPECT_EQ(session.m_host.m_messages, message);
            EXPECT_EQ(session.m_doc.LoadFailure(), message[0]);
            EXPECT_EQ(DifferenceOf(expected.m_doc, session.m_doc), "");
        }
    }
    Session session;
    EXPECT_FALSE(session.Load(Gzip(log).substr(0, 100)));
    ASSERT_TRUE(session.Load(Gzip(log)));
    EXPECT_EQ(session.m_doc.LoadFailure(), "") << "of the latest load";
}

TEST(PackedLog, IsNeverWrittenTo) {
    const TestFolder folder;
    const std::string log = TestSession::Joined(DebugLog({}));
    for (const std::string& archive : AllKinds(log)) {
        Session session;
        ASSERT_TRUE(session.Open(folder.Write("log", archive)));
        EXPECT_FALSE(session.m_doc.OnClearDebugFile());
        EXPECT_EQ(folder.Read("log"), archive);
    }
    Session session;
    ASSERT_TRUE(session.Open(folder.Write("log", log)));
    EXPECT_TRUE(session.m_doc.OnClearDebugFile());
    EXPECT_EQ(folder.Names(), Strings{"log"}) << "and nothing is made beside it";
}

TEST(PackedLog, OfTenGigabytesCanBeEndedByTheHost) {
    class EndingHost : public RecordingHost {
    public:
        void LoadProgress(std::uint64_t done, std::uint64_t total) override {
            m_done = done;
            m_total = total;
            throw LoadEnded();
        }
        std::uint64_t m_done = 0;
        std::uint64_t m_total = 0;
    };
    const std::string tenMegabytes = Gzip(std::string(10 << 20, 'x'));
    std::string bomb = Gzip(TestSession::Joined(DebugLog({})));
    for (int i = 0; i < 1000; ++i) {
        bomb += tenMegabytes;
    }
    const AnalysisSettings settings;
    PendingStatement pending;
    EndingHost host;
    CCarvelotDoc doc(settings, pending, host);
    CMemorySource bytes(bomb);
    EXPECT_FALSE(doc.LoadPackedOrPlain(bytes));
    EXPECT_EQ(doc.m_listDetails.Size(), 0U);
    EXPECT_TRUE(doc.m_listProcesses.empty());
    EXPECT_TRUE(host.m_messages.empty()) << "whoever ended it knows";
    EXPECT_EQ(host.m_total, bomb.size());
    EXPECT_LT(host.m_done, bomb.size() / 100) << "packed bytes";
}

} // namespace carvelot::test
