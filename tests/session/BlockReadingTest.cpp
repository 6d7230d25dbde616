// However the bytes of a log come, and whichever thread reads them: the session is the same.
#include "sources/MemorySource.h"
#include "support/SameSessions.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <new>

namespace carvelot::test {

namespace {

struct Loaded {
    explicit Loaded(ILogSource& source, const BlockReading& reading) {
        m_doc.m_blockReading = reading;
        m_doc.m_bNumberLines = true;
        m_bLoaded = m_doc.LoadFrom(source);
    }

    AnalysisSettings m_settings;
    PendingStatement m_pending;
    RecordingHost m_host;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
    bool m_bLoaded;
};

std::string ContentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Gives a log from its first bytes up to some place, and then fails.
class FailingSource : public ILogSource {
public:
    enum class Failure { End, OutOfMemory };

    FailingSource(std::string_view log, std::size_t good, Failure failure)
        : m_first(log.substr(0, good)), m_failure(failure) {}

    std::size_t Read(void* buffer, std::size_t size) override {
        const std::size_t got = m_first.Read(buffer, size);
        if (got < size && m_failure == Failure::OutOfMemory) {
            throw std::bad_alloc();
        }
        return got;
    }
    void Rewind() override { m_first.Rewind(); }
    std::uint64_t Size() const override { return 0; }
    SourceProgress Progress() const override { return {}; }

private:
    CMemorySource m_first;
    const Failure m_failure;
};

// A debug log of some megabytes.
std::string LargeLog() {
    std::string log = TestSession::Joined(DebugLog({}));
    const std::string line = DebugLine("10:00:00.000001", "On " + std::string(1000, 'x'), "5/6") + "\n";
    for (int i = 0; i < 9000; ++i) {
        log += line;
    }
    return log;
}

} // namespace

TEST(LoadFrom, GivesTheSameSessionInBlocksOfAnySizeReadByAnyThread) {
    using enum BlockReading::Way;
    std::size_t samples = 0;
    for (const auto& entry : std::filesystem::directory_iterator(CARVELOT_SOURCE_FOLDER "/samples")) {
        const std::string log = ContentOf(entry.path());
        if (entry.path().extension() != ".log" || log.size() > 200'000) {
            continue;
        }
        ++samples;
        for (const BlockReading& reading :
             {BlockReading{Here, 1, 2}, BlockReading{Ahead, 1, 2}, BlockReading{Ahead, 100, 3},
              BlockReading{Ahead, 4096, 8}, BlockReading{Ahead, 0, 8}, BlockReading{Here, 8192, 2},
              BlockReading{Here, 1, 2, true}, BlockReading{Here, 4096, 2, true},
              BlockReading{Ahead, 100, 3, true}, BlockReading{Ahead, 4096, 8, true}}) {
            // Two threads that take turns at single bytes need a second for some hundred thousand.
            CMemorySource source(std::string_view(log).substr(0, reading.bytes == 1 ? 6'000 : log.size()));
            const Loaded expected(source, {.way = Here});
            ASSERT_TRUE(expected.m_bLoaded) << entry.path();
            const Loaded loaded(source, reading);
            EXPECT_EQ(DifferenceOf(expected.m_doc, loaded.m_doc), "")
                << entry.path() << " in blocks of " << reading.bytes;
            EXPECT_EQ(loaded.m_doc.m_nLines, expected.m_doc.m_nLines);
        }
    }
    EXPECT_GE(samples, 8U);
}

TEST(LoadFrom, KeepsWhatCameAheadOfAReadErrorWhicheverThreadReads) {
    using enum BlockReading::Way;
    const std::string log = LargeLog();
    const std::size_t good = log.size() / 2;
    const std::string_view lines = std::string_view(log).substr(0, log.rfind('\n', good) + 1);
    CMemorySource firstHalf(lines);
    const Loaded expected(firstHalf, {.way = Here});
    for (const BlockReading::Way way : {Here, Ahead}) {
        FailingSource source(log, good, FailingSource::Failure::End);
        const Loaded loaded(source, {.way = way});
        EXPECT_TRUE(loaded.m_bLoaded);
        EXPECT_EQ(DifferenceOf(expected.m_doc, loaded.m_doc), "");
    }
}

TEST(LoadFrom, EndsWithAMessageWhereTheReadingThreadHasNoMemoryLeft) {
    using enum BlockReading::Way;
    const std::string log = LargeLog();
    for (const BlockReading::Way way : {Here, Ahead}) {
        FailingSource source(log, log.size() / 2, FailingSource::Failure::OutOfMemory);
        const Loaded loaded(source, {.way = way});
        EXPECT_FALSE(loaded.m_bLoaded);
        EXPECT_EQ(loaded.m_host.m_messages,
                  std::vector<std::string>{"There is not enough memory for this log."});
        EXPECT_EQ(loaded.m_doc.m_listDetails.Size(), 0U);
    }
}

TEST(LoadFrom, CanBeEndedFromItsProgressWhicheverThreadReads) {
    using enum BlockReading::Way;
    struct Ended {};
    class EndingHost : public RecordingHost {
    public:
        void LoadProgress(std::uint64_t, std::uint64_t) override { throw Ended(); }
    };
    const std::string log = LargeLog();
    for (const BlockReading::Way way : {Here, Ahead}) {
        const AnalysisSettings settings;
        PendingStatement pending;
        EndingHost host;
        CCarvelotDoc doc(settings, pending, host);
        doc.m_blockReading.way = way;
        CMemorySource source(log);
        EXPECT_THROW(doc.LoadFrom(source), Ended);
    }
}

} // namespace carvelot::test
