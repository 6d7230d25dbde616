// A log that grows, shrinks or is replaced: after each look the session is that of a fresh load.
#include "session/FollowedLog.h"
#include "sources/MemorySource.h"
#include "support/FileHelper.h"
#include "support/SameSessions.h"
#include "support/TestFolder.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <random>

namespace carvelot::test {

namespace {

struct ReadingOptions {
    AnalysisSettings settings;
    std::uint32_t processFilter = 0;
    CDialects dialects;
    BlockReading reading;
};

struct OptionedSession {
    explicit OptionedSession(const ReadingOptions& options) : m_settings(options.settings) {
        m_doc.m_nProcessFilter = options.processFilter;
        m_doc.m_dialects = options.dialects;
        m_doc.m_blockReading = options.reading;
        m_doc.m_bNumberLines = true;
    }

    AnalysisSettings m_settings;
    PendingStatement m_pending;
    RecordingHost m_host;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
};

// What a fresh load of the bytes holds that a session does not.
std::string DifferenceFromFreshLoad(const CCarvelotDoc& doc, const PendingStatement& pending,
                                    std::string_view log, const ReadingOptions& options) {
    OptionedSession fresh(options);
    CMemorySource source(log);
    fresh.m_doc.LoadFrom(source);
    if (doc.m_nBytes != fresh.m_doc.m_nBytes) {
        return "the bytes";
    }
    if (pending.statement != fresh.m_pending.statement || pending.parameters != fresh.m_pending.parameters) {
        return "the statement that awaits its parameters";
    }
    return DifferenceOf(doc, fresh.m_doc);
}

// A log in memory that a session follows.
class FollowedBytes {
public:
    explicit FollowedBytes(std::string_view log, const ReadingOptions& options = {})
        : m_options(options), m_session(options) {
        CMemorySource source(log);
        m_session.m_doc.LoadFrom(source);
        m_session.m_host.m_messages.clear();
    }

    LogChange LookAt(std::string_view log, std::uint64_t file = 0) {
        CMemorySource source(log);
        return m_followed.LookAt(source, {0, file});
    }
    std::string DifferenceFrom(std::string_view log) const {
        return DifferenceFromFreshLoad(m_session.m_doc, m_session.m_pending, log, m_options);
    }

    ReadingOptions m_options;
    OptionedSession m_session;
    CCarvelotDoc& m_doc = m_session.m_doc;
    CFollowedLog m_followed{m_session.m_doc};
};

// Grows a log by parts of one size, from nothing to all of it.
void ExpectFreshLoadsWhileItGrows(const std::string& log, std::size_t step,
                                  const ReadingOptions& options = {}) {
    FollowedBytes followed("", options);
    for (std::size_t size = step; size < log.size() + step; size += step) {
        const std::string_view bytes = std::string_view(log).substr(0, size);
        followed.LookAt(bytes);
        ASSERT_EQ(followed.DifferenceFrom(bytes), "") << "in steps of " << step << " at byte " << size;
    }
    EXPECT_TRUE(followed.m_session.m_host.m_messages.empty());
}

void ExpectFreshLoadsWhileItGrows(const std::string& log, const ReadingOptions& options = {}) {
    for (const std::size_t step : {1U, 2U, 7U, 64U, 1000U}) {
        ExpectFreshLoadsWhileItGrows(log, step, options);
    }
}

std::string WithReturns(std::string log) {
    for (std::size_t at = 0; (at = log.find('\n', at)) != std::string::npos; at += 2) {
        log.insert(at, 1, '\r');
    }
    return log;
}

// Lines of all kinds: calls, statements that end later, errors, caches, silences and lines that nobody needs.
std::string DebugBytes() {
    return TestSession::Joined(DebugLog({
        DebugLine("10:00:00.000000", "noise"),
        DebugLine("10:00:00.100000", "noise that takes its place"),
        DebugLine("10:00:00.200000", "SELECT * FROM F0101 WHERE A = 1"),
        DebugLine("10:00:00.300000", "Calling Business function A from B (BSFNLevel = 1)", "4120/9"),
        "a continuation line",
        DebugLine("10:00:05.000000", "Exiting DBPerformRequest"),
        DebugLine("10:00:05.000001", "Return value is 2 for A (BSFNLevel = 1)", "4120/9"),
        DebugLine("10:00:05.500000", "jdeCacheInit: hCache:[0A] Nm:[X]"),
        DebugLine("10:00:06.000000", "caf\xC3\xA9 noise", "7/7"),
        DebugLine("10:00:06.000000", "caf\xE9 noise", "7/8"),
        DebugLine("10:00:09.000000", "JDB3100001 - failed", "7/7"),
        DebugLine("09:00:00.000000", "noise at the end"),
    }));
}

std::string JASBytes() {
    return TestSession::Joined(
        JASLog({JASLine("08:00:01,000", "ANNA", "SELECT A FROM F0101 WHERE B = ? AND C = ?"),
                JASLine("08:00:01,100", "ANNA", "Param1: 1000_Types.DECIMAL,"),
                JASLine("08:00:01,200", "ANNA", "Param2: X_Types.CHAR,"), "java.lang.Exception",
                JASLine("08:00:04,000", "BERT", "Object Called: N0100"),
                JASLine("08:00:09,000", "BERT", "done", "SEVERE"), JASLine("08:00:09,500", "", "nobody's"),
                JASLine("08:00:09,900", "ANNA", "on")}));
}

std::string BytesOfFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST(CFollowedLog, BringsADebugLogThatGrowsByAnyPartsToWhatAFreshLoadHolds) {
    ExpectFreshLoadsWhileItGrows(DebugBytes());
    ExpectFreshLoadsWhileItGrows(WithReturns(DebugBytes()));
    std::string returns = DebugBytes();
    std::replace(returns.begin(), returns.end(), '\n', '\r');
    ExpectFreshLoadsWhileItGrows(returns);
}

TEST(CFollowedLog, BringsAJASLogThatGrowsByAnyPartsToWhatAFreshLoadHolds) {
    ExpectFreshLoadsWhileItGrows(JASBytes());
    ExpectFreshLoadsWhileItGrows(WithReturns(JASBytes()));
}

TEST(CFollowedLog, HoldsForEverySampleLog) {
    std::size_t samples = 0;
    for (const char* const folder : {"/samples", "/tests/golden"}) {
        for (const auto& entry :
             std::filesystem::directory_iterator(std::string(CARVELOT_SOURCE_FOLDER) + folder)) {
            if (entry.path().extension() != ".log") {
                continue;
            }
            ++samples;
            SCOPED_TRACE(entry.path().string());
            const std::string log = BytesOfFile(entry.path()).substr(0, 60'000);
            ExpectFreshLoadsWhileItGrows(log, log.size() / 40 + 7);
        }
    }
    EXPECT_GE(samples, 12U);
}

TEST(CFollowedLog, HoldsUnderAProcessFilterWithDialectsAndOtherSettings) {
    ReadingOptions options;
    options.processFilter = 4120;
    ExpectFreshLoadsWhileItGrows(DebugBytes(), 7, options);
    ExpectFreshLoadsWhileItGrows(JASBytes(), 7, options);
    options.processFilter = 0;
    options.settings = {0.0F, false};
    ExpectFreshLoadsWhileItGrows(DebugBytes(), 7, options);
    options.settings = {std::numeric_limits<float>::quiet_NaN(), true};
    ExpectFreshLoadsWhileItGrows(DebugBytes(), 7, options);
    options.settings = {};
    options.dialects.Add(Dialect::Months);
    options.dialects.Add(Dialect::Numbered);
    for (const char* const sample : {"jas-german", "jas-numbered", "french-order"}) {
        const std::string log =
            BytesOfFile(std::string(CARVELOT_SOURCE_FOLDER "/samples/") + sample + ".log").substr(0, 20'000);
        ASSERT_FALSE(log.empty());
        ExpectFreshLoadsWhileItGrows(log, 500, options);
    }
}

TEST(CFollowedLog, HoldsForTextBehindTabsBehindAColumnAndForBatchJobs) {
    const std::string tabs = "Jan 15 08:00:00.000001 - 1/1 W\tx\tEntering JDB_OpenTable\n"
                             "Jan 15 08:00:01.000001 - 1/1 W\tx\tCalling Business function A\n"
                             "Jan 15 08:00:02.000001 - 1/1 W\tx\tReturn value is 0 for A\n";
    ExpectFreshLoadsWhileItGrows(tabs);
    // The dash behind a tab fixes the column from there on.
    ExpectFreshLoadsWhileItGrows("Jan 15 08:00:00.000001 - 1/1 W\tEntering JDB_OpenTable\n"
                                 "Jan 15 08:00:01.000001 - 1/1 W\t - Calling Business function A\n"
                                 "Jan 15 08:00:02.000001 - 1/1 WW\t - Return value is 0 for A\n" +
                                 tabs);
    ExpectFreshLoadsWhileItGrows("Jan 15 08:00:00 ** 12/34  Entering JDB_OpenTable\n"
                                 "Jan 15 08:00:01 ** 12/34  SELECT * FROM F0005\n"
                                 "Jan 15 08:00:04 ** 12/34  Exiting DBPerformRequest\n");
    ExpectFreshLoadsWhileItGrows("Jan 15 08:00:00 ** 12/34  Entering JDB_OpenTable\n"
                                 "--UBE--[2] 08:00:01 ** 12/34 Section\n"
                                 "--UBE--[3] 08:00:02 ** 12/34 Section\n");
}

TEST(CFollowedLog, TakesALongLineInTheSamePiecesAsALoad) {
    const std::string lead = DebugBytes();
    for (const std::size_t length : {8191U, 8192U, 8193U, 16384U, 20000U}) {
        const std::string log =
            lead + DebugLine("11:00:00.000000", std::string(length - 39, 'x')) + "\n" + lead;
        for (const std::size_t step : {333U, 4096U, 8192U}) {
            ExpectFreshLoadsWhileItGrows(log, step);
        }
    }
}

TEST(CFollowedLog, TakesANulAndTwoEndsOfALineAsALoadDoes) {
    std::string log = DebugBytes();
    log.insert(log.find("noise that") + 3, 1, '\0');
    log.insert(log.find("SELECT") + 3, std::string("\r\n\n\r\r\n", 6));
    log.push_back('\0');
    ExpectFreshLoadsWhileItGrows(log, 1);
    ExpectFreshLoadsWhileItGrows(log + "\n" + DebugBytes(), 13);
}

TEST(CFollowedLog, HoldsInBlocksOfAnySizeReadByAnyThread) {
    using enum BlockReading::Way;
    for (const BlockReading& reading :
         {BlockReading{Here, 1, 2}, BlockReading{Ahead, 1, 2}, BlockReading{Ahead, 100, 3}}) {
        ReadingOptions options;
        options.reading = reading;
        ExpectFreshLoadsWhileItGrows(DebugBytes(), 50, options);
        ExpectFreshLoadsWhileItGrows(JASBytes(), 50, options);
    }
}

TEST(CFollowedLog, ReadsOnlyWhatIsNew) {
    class Counting : public ILogSource {
    public:
        explicit Counting(std::string_view log) : m_log(log) {}
        std::size_t Read(void* buffer, std::size_t size) override {
            const std::size_t got = m_log.Read(buffer, size);
            m_nRead += got;
            return got;
        }
        void Rewind() override { m_log.Rewind(); }
        bool Seek(std::uint64_t position) override { return m_log.Seek(position); }
        std::uint64_t Size() const override { return m_log.Size(); }
        SourceProgress Progress() const override { return m_log.Progress(); }
        std::size_t m_nRead = 0;

    private:
        CMemorySource m_log;
    };

    std::string log = DebugBytes();
    const std::string line = DebugLine("11:00:00.000000", std::string(400, 'x')) + "\n";
    for (int i = 0; i < 6000; ++i) {
        log += line;
    }
    FollowedBytes followed(log);
    const std::uint64_t identity = followed.m_doc.LoadIdentity();
    // At the first look the format is looked at once more, in what was read then.
    EXPECT_EQ(followed.LookAt(log += line), LogChange::Grew);
    log += line;
    Counting source(log);
    EXPECT_EQ(followed.m_followed.LookAt(source, {}), LogChange::Grew);
    EXPECT_EQ(source.m_nRead, 2 * LogTrace::kKept + line.size());
    EXPECT_EQ(followed.DifferenceFrom(log), "");
    EXPECT_EQ(followed.m_doc.LoadIdentity(), identity);
}

TEST(CFollowedLog, TellsWhyALogIsReadAnew) {
    const std::string log = DebugBytes();
    const std::string more = log + log;
    FollowedBytes followed(more);
    const auto expect = [&](std::string_view bytes, LogChange change, std::uint64_t file = 0) {
        const std::uint64_t identity = followed.m_doc.LoadIdentity();
        EXPECT_EQ(followed.LookAt(bytes, file), change);
        EXPECT_EQ(followed.DifferenceFrom(bytes), "");
        const bool stays = change == LogChange::None || change == LogChange::Grew;
        EXPECT_EQ(followed.m_doc.LoadIdentity() == identity, stays);
    };
    expect(more, LogChange::None);
    expect(log, LogChange::Shrank);
    expect(log + log, LogChange::Grew);
    expect(log + log, LogChange::Replaced, 1);
    // Another one that begins alike and is larger.
    std::string other = log + log + log;
    other[log.size() + 100] = '!';
    expect(other, LogChange::Replaced, 1);
    other[100] = '!';
    expect(other, LogChange::Replaced, 1);
    expect("", LogChange::Shrank, 1);
    EXPECT_TRUE(followed.m_session.m_host.m_messages.empty());
}

TEST(CFollowedLog, WaitsInAnEmptySessionUntilTheFormatIsTold) {
    FollowedBytes followed(DebugBytes());
    EXPECT_EQ(followed.LookAt(""), LogChange::Shrank);
    EXPECT_EQ(followed.m_doc.m_listDetails.Size(), 0U);
    const std::string log = JASBytes();
    const std::size_t sixth = [&] {
        std::size_t at = 0;
        for (int line = 0; line < 6; ++line) {
            at = log.find('\n', at) + 1;
        }
        return at;
    }();
    EXPECT_EQ(followed.LookAt(log.substr(0, sixth - 1)), LogChange::None);
    EXPECT_EQ(followed.DifferenceFrom(log.substr(0, sixth - 1)), "");
    EXPECT_EQ(followed.LookAt(log.substr(0, sixth)), LogChange::Grew);
    EXPECT_EQ(followed.m_doc.m_listDetails.Size(), 6U);
    EXPECT_EQ(followed.m_doc.m_nLogFormat, LOG_FORMAT_JAS);
    EXPECT_TRUE(followed.m_session.m_host.m_messages.empty());
}

TEST(CFollowedLog, ReadsALogAnewWhoseLaterLinesTellOtherwise) {
    // Lines of a web log that then turns out to be a debug log with a column, and then with tabs.
    std::string log = JASBytes();
    FollowedBytes followed(log);
    ASSERT_EQ(followed.m_doc.m_nLogFormat, LOG_FORMAT_JAS);
    log += "Jan 15 08:00:00 ** 12/34  Entering JDB_OpenTable\n";
    EXPECT_EQ(followed.LookAt(log), LogChange::OtherFormat);
    EXPECT_EQ(followed.DifferenceFrom(log), "");
    EXPECT_EQ(followed.m_doc.m_nTextColumn, 26);
    log += "Jan 15 08:00:01 - 12/34 W\tEntering JDB_OpenTable\n";
    EXPECT_EQ(followed.LookAt(log), LogChange::OtherFormat);
    EXPECT_EQ(followed.DifferenceFrom(log), "");
    // The first 5001 lines tell, no later one.
    for (int line = 0; line < 5001; ++line) {
        log += "Jan 15 08:00:01 - 12/34 W\tnoise\n";
    }
    EXPECT_EQ(followed.LookAt(log), LogChange::Grew);
    log += "Jan 15 08:00:01 - 12/34 W\tx\ty\tEntering JDB_OpenTable\n";
    EXPECT_EQ(followed.LookAt(log), LogChange::Grew);
    EXPECT_EQ(followed.DifferenceFrom(log), "");
}

TEST(CFollowedLog, ReadsALogAnewUnderSettingsThatWereChanged) {
    const std::string log = DebugBytes();
    FollowedBytes followed(log);
    followed.m_session.m_settings = followed.m_options.settings = {0.05F, false};
    EXPECT_EQ(followed.LookAt(log), LogChange::OtherSettings);
    EXPECT_EQ(followed.DifferenceFrom(log), "");
    EXPECT_EQ(followed.LookAt(log), LogChange::None);
}

TEST(CFollowedLog, GoesOnWithItsOwnStatementWhateverOtherSessionsRead) {
    const std::string log = JASBytes();
    const std::size_t cut = log.find("Param1");
    const std::string first = log.substr(0, log.rfind('\n', cut) + 1);
    FollowedBytes followed(first);
    // One that reads a statement of its own in between.
    CCarvelotDoc other(followed.m_session.m_settings, followed.m_session.m_pending,
                       followed.m_session.m_host);
    const std::string theirs =
        TestSession::Joined(JASLog({JASLine("08:00:01,000", "EVE", "DELETE FROM F9 WHERE X = ?")}));
    CMemorySource source(theirs);
    ASSERT_TRUE(other.LoadFrom(source));
    EXPECT_EQ(followed.LookAt(log), LogChange::Grew);
    EXPECT_EQ(followed.DifferenceFrom(log), "");
    ASSERT_TRUE(other.LoadFrom(source));
    EXPECT_EQ(followed.LookAt(log, 1), LogChange::Replaced);
    EXPECT_EQ(followed.DifferenceFrom(log), "");
}

TEST(CFollowedLog, EndsWithAMessageWhereASessionCannotHoldTheLogAnyMore) {
    std::string log = DebugBytes();
    FollowedBytes followed(log);
    followed.m_doc.m_listDetails.LimitTo(std::size_t{1} << 18U, std::size_t{1} << 22U);
    for (int line = 0; line < 6000; ++line) {
        log += DebugLine("11:00:00.000000", std::string(1000, 'x')) + "\n";
    }
    const LogChange change = followed.LookAt(log);
    EXPECT_EQ(change, LogChange::NotRead);
    EXPECT_TRUE(EndsFollowing(change));
    EXPECT_EQ(followed.m_session.m_host.m_messages,
              std::vector<std::string>{"This log is too large: it holds more than a session can."});
    EXPECT_EQ(followed.m_doc.m_listDetails.Size(), 0U);
    // Followed once more, with more room, it is read from its start.
    followed.m_doc.m_listDetails.LimitTo(std::size_t{1} << 18U, std::size_t{1} << 30U);
    EXPECT_EQ(followed.LookAt(log), LogChange::Grew);
    EXPECT_EQ(followed.DifferenceFrom(log), "");
}

namespace {

// A log in a file that a session follows.
class FollowedFile {
public:
    explicit FollowedFile(std::string_view log) {
        m_session.m_doc.m_strLogPath = m_folder.Write("log", log);
        m_session.m_doc.LoadLog();
    }
    void Append(std::string_view bytes) const {
        std::ofstream(ToPath(m_folder.Path("log")), std::ios::binary | std::ios::app) << bytes;
    }
    std::string Difference() const {
        return DifferenceFromFreshLoad(m_session.m_doc, m_session.m_pending, m_folder.Read("log"), {});
    }

    TestFolder m_folder;
    OptionedSession m_session{{}};
    CFollowedLog m_followed{m_session.m_doc};
};

} // namespace

TEST(CFollowedLog, LooksAtTheFileOfItsSession) {
    const FollowedFile none("");
    FollowedFile log(DebugBytes());
    EXPECT_TRUE(CFollowedLog::CanFollow(log.m_session.m_doc));
    EXPECT_EQ(log.m_followed.Look(), LogChange::None);
    log.Append(DebugBytes().substr(0, 100));
    EXPECT_EQ(log.m_followed.Look(), LogChange::Grew);
    EXPECT_EQ(log.Difference(), "");
    EXPECT_EQ(log.m_followed.Look(), LogChange::None);
    log.m_folder.Write("log", JASBytes());
    EXPECT_EQ(log.m_followed.Look(), LogChange::Shrank);
    EXPECT_EQ(log.Difference(), "");
    // A rotation: the old file is elsewhere, a new one takes its place.
    std::filesystem::rename(ToPath(log.m_folder.Path("log")), ToPath(log.m_folder.Path("log.1")));
    EXPECT_EQ(log.m_followed.Look(), LogChange::NotToBeHad);
    log.m_folder.Write("log", JASBytes());
    EXPECT_EQ(log.m_followed.Look(), LogChange::Replaced);
    EXPECT_EQ(log.Difference(), "");
}

TEST(CFollowedLog, EndsWithAFileThatIsMissingTwice) {
    FollowedFile log(DebugBytes());
    const std::size_t records = log.m_session.m_doc.m_listDetails.Size();
    std::filesystem::remove(ToPath(log.m_folder.Path("log")));
    EXPECT_EQ(log.m_followed.Look(), LogChange::NotToBeHad);
    const LogChange change = log.m_followed.Look();
    EXPECT_EQ(change, LogChange::Vanished);
    EXPECT_TRUE(EndsFollowing(change));
    EXPECT_FALSE(EndsFollowing(LogChange::NotToBeHad));
    EXPECT_EQ(log.m_session.m_doc.m_listDetails.Size(), records);
}

TEST(CFollowedLog, WaitsWhereSomethingElseStandsInTheFilesPlace) {
    FollowedFile log(DebugBytes());
    std::filesystem::remove(ToPath(log.m_folder.Path("log")));
    std::filesystem::create_directory(ToPath(log.m_folder.Path("log")));
    for (int look = 0; look < 3; ++look) {
        EXPECT_EQ(log.m_followed.Look(), LogChange::NotToBeHad);
    }
}

TEST(CFollowedLog, EndsWhereAnArchiveTakesTheLogsPlace) {
    FollowedFile log(DebugBytes());
    const std::size_t records = log.m_session.m_doc.m_listDetails.Size();
    log.m_folder.Write("log", std::string("\x1F\x8B\x08\x00", 4) + DebugBytes());
    const LogChange change = log.m_followed.Look();
    EXPECT_EQ(change, LogChange::Packed);
    EXPECT_TRUE(EndsFollowing(change));
    EXPECT_EQ(log.m_session.m_doc.m_listDetails.Size(), records);
}

TEST(CFollowedLog, KeepsUpWithAProcessThatWritesInPartsOfAnySizeAndHoldsItsLogOpen) {
    // One that ends inside a line, and one whose lines end with two bytes that come apart.
    for (const std::string& bytes : {DebugBytes() + "Jan 15 10:0", WithReturns(JASBytes())}) {
        FollowedFile log("");
        FileHelper writer(log.m_folder.Path("log"));
        ASSERT_TRUE(writer.Do("open"));
        std::mt19937 random(1);
        for (std::size_t at = 0; at < bytes.size();) {
            constexpr std::size_t kSizes[] = {1, 1, 2, 3, 40, 200};
            const std::size_t size = kSizes[random() % std::size(kSizes)];
            ASSERT_TRUE(writer.Write(std::string_view(bytes).substr(at, size)));
            at += size;
            const LogChange change = log.m_followed.Look();
            ASSERT_TRUE(change == LogChange::Grew || change == LogChange::None) << at;
            ASSERT_EQ(log.Difference(), "") << at;
        }
        EXPECT_GT(log.m_session.m_doc.m_listDetails.Size(), 5U);
    }
}

TEST(CFollowedLog, KeepsUpWithAProcessThatEmptiesRotatesAndRemovesItsLog) {
    FollowedFile log("");
    FileHelper writer(log.m_folder.Path("log"));
    const auto expect = [&log](LogChange change) {
        EXPECT_EQ(log.m_followed.Look(), change);
        EXPECT_EQ(log.Difference(), "");
    };
    const std::string bytes = DebugBytes();
    const std::string half = bytes.substr(0, bytes.size() / 2);
    ASSERT_TRUE(writer.Do("open"));
    ASSERT_TRUE(writer.Write(bytes));
    expect(LogChange::Grew);
    // Emptied while it is open, and written on: less than there was, nothing, and more.
    ASSERT_TRUE(writer.Do("empty"));
    ASSERT_TRUE(writer.Write(half));
    expect(LogChange::Shrank);
    ASSERT_TRUE(writer.Do("empty"));
    expect(LogChange::Shrank);
    ASSERT_TRUE(writer.Write(half));
    expect(LogChange::Grew);
    ASSERT_TRUE(writer.Do("empty"));
    ASSERT_TRUE(writer.Write(WithReturns(JASBytes())));
    expect(LogChange::Replaced);
    // What is written to a file that was given another name is no longer the log.
    ASSERT_TRUE(writer.Do("close"));
    ASSERT_TRUE(writer.Do("rename"));
    EXPECT_EQ(log.m_followed.Look(), LogChange::NotToBeHad);
    ASSERT_TRUE(writer.Do("open"));
    ASSERT_TRUE(writer.Write(bytes));
    expect(LogChange::Replaced);
    ASSERT_TRUE(writer.Write(bytes));
    expect(LogChange::Grew);
    // It vanishes, and comes back within a look and between two.
    for (const bool seen : {false, true}) {
        ASSERT_TRUE(writer.Do("close"));
        ASSERT_TRUE(writer.Do("remove"));
        if (seen) {
            EXPECT_EQ(log.m_followed.Look(), LogChange::NotToBeHad);
        }
        ASSERT_TRUE(writer.Do("open"));
        ASSERT_TRUE(writer.Write("Jan 15 11:00:00.000000 - 7/7 Worker\tEntering JDB_OpenTable\r"));
        const LogChange change = log.m_followed.Look();
        // The new file may have been given the old one's place on the disk.
        EXPECT_TRUE(change == LogChange::Replaced || change == LogChange::Shrank);
        EXPECT_EQ(log.Difference(), "");
        ASSERT_TRUE(writer.Write("\n" + half));
        expect(LogChange::Grew);
    }
    ASSERT_TRUE(writer.Do("close"));
    ASSERT_TRUE(writer.Do("remove"));
    EXPECT_EQ(log.m_followed.Look(), LogChange::NotToBeHad);
    EXPECT_EQ(log.m_followed.Look(), LogChange::Vanished);
}

TEST(CFollowedLog, FollowsNoLogInPiecesAndNoPackedOne) {
    const FollowedFile log(DebugBytes());
    OptionedSession pieces({});
    ASSERT_TRUE(pieces.m_doc.OnOpenPieces({{log.m_folder.Path("log")}, {log.m_folder.Path("log")}}));
    EXPECT_FALSE(CFollowedLog::CanFollow(pieces.m_doc));
}

} // namespace carvelot::test
