// A log that changes, goes, or comes slowly while it is read.
#include "faults/Faults.h"
#include "report/JsonReport.h"
#include "session/FollowedLog.h"
#include "support/FileHelper.h"
#include "support/TestFolder.h"
#include "support/TestLog.h"

#include <cerrno>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <unistd.h>

namespace carvelot::test {

namespace {

std::string Sample(const char* name) {
    std::ifstream file(std::string(CARVELOT_SOURCE_FOLDER) + "/samples/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A log of that many lines of a kilobyte behind the line that tells its format, and what loads it.
class GrownLog {
public:
    explicit GrownLog(std::size_t count) : m_folder(), m_strPath(m_folder.Path("jdedebug.log")) {
        m_strLine = DebugLine("10:00:00.000001", "On " + std::string(1000, 'x'), "5/6") + "\n";
        std::string content = TestSession::Joined(DebugLog({}));
        for (std::size_t i = 0; i < count; ++i) {
            content += m_strLine;
        }
        m_nSize = content.size();
        m_folder.Write("jdedebug.log", content);
    }

    // Loads the log; the function runs at the first sign of progress.
    bool Load(std::function<void()> meanwhile) {
        class ChangingHost : public RecordingHost {
        public:
            void LoadProgress(std::uint64_t, std::uint64_t) override {
                if (m_fnMeanwhile) {
                    std::exchange(m_fnMeanwhile, nullptr)();
                }
            }
            std::function<void()> m_fnMeanwhile;
        };
        ChangingHost host;
        host.m_fnMeanwhile = std::move(meanwhile);
        const AnalysisSettings settings;
        PendingStatement pending;
        CCarvelotDoc doc(settings, pending, host);
        doc.m_strLogPath = m_strPath;
        const bool loaded = doc.LoadLog();
        m_nRecords = doc.m_listDetails.Size();
        m_listMessages = host.m_messages;
        return loaded;
    }

    TestFolder m_folder;
    std::string m_strPath;
    std::string m_strLine;
    std::size_t m_nSize = 0;
    std::size_t m_nRecords = 0;
    std::vector<std::string> m_listMessages;
};

constexpr std::size_t kLines = 12'000;

std::string JsonOf(const std::string& path) {
    const AnalysisSettings settings;
    PendingStatement pending;
    RecordingHost host;
    CCarvelotDoc doc(settings, pending, host);
    EXPECT_TRUE(doc.OnOpenDocument(path));
    std::ostringstream out;
    WriteSessionJson(doc, "log", out);
    return out.str();
}

} // namespace

TEST(ReadFaults, AFileThatShrinksUnderTheReaderIsReadUpToItsNewEnd) {
    GrownLog log(kLines);
    ASSERT_TRUE(log.Load([&] { std::filesystem::resize_file(log.m_strPath, log.m_nSize / 2); }));
    EXPECT_NEAR(static_cast<double>(log.m_nRecords), kLines / 2.0, 2.0);
    EXPECT_TRUE(log.m_listMessages.empty());
}

TEST(ReadFaults, AFileThatItsWriterEmptiesAndFillsAnewIsReadToWhereverItEnds) {
    // The writer is another process, as JDE is.
    GrownLog log(kLines);
    FileHelper writer(log.m_strPath);
    ASSERT_TRUE(writer.Do("open"));
    ASSERT_TRUE(log.Load([&] {
        EXPECT_TRUE(writer.Do("empty"));
        EXPECT_TRUE(writer.Do("append Jan 15 10:00:01.000000 - 5/6 Worker\tOn new"));
    }));
    EXPECT_GE(log.m_nRecords, 4000U); // what had been read by then
    EXPECT_LT(log.m_nRecords, 6000U); // and what had been read ahead
    // The next Analyze reads what is there now, which is too little to tell the format.
    EXPECT_FALSE(log.Load({}));
    EXPECT_EQ(log.m_listMessages, std::vector<std::string>{"Error: Cannot determine tracing log format"});
    EXPECT_EQ(log.m_nRecords, 0U);
}

TEST(ReadFaults, AFileThatVanishesWhileItIsReadIsReadToItsEnd) {
    GrownLog log(kLines);
    ASSERT_TRUE(log.Load([&] { std::filesystem::remove(log.m_strPath); }));
    EXPECT_EQ(log.m_nRecords, kLines + 1);
    EXPECT_FALSE(log.Load({}));
    EXPECT_EQ(log.m_listMessages, std::vector<std::string>{"Failed to open file."});
}

TEST(ReadFaults, AFileThatIsClosedToUsWhileItIsReadIsReadToItsEnd) {
    GrownLog log(kLines);
    const auto forbid = [&] { std::filesystem::permissions(log.m_strPath, std::filesystem::perms::none); };
    ASSERT_TRUE(log.Load(forbid));
    EXPECT_EQ(log.m_nRecords, kLines + 1);
    if (::access(log.m_strPath.c_str(), R_OK) != 0) { // a superuser may read all the same
        EXPECT_FALSE(log.Load({}));
        EXPECT_EQ(log.m_listMessages, std::vector<std::string>{"Failed to open file."});
    }
}

TEST(ReadFaults, WhatWasReadBeforeADeviceFailedStays) {
    // As the standard library's reads end, so does the load: at the error, without a message.
    GrownLog log(kLines);
    Faults faults;
    faults.m_nReadError = EIO;
    // The format takes a pass of its own over the first 5001 lines.
    faults.m_nReadableBytes = 5001 * log.m_strLine.size() + log.m_nSize / 2;
    ASSERT_TRUE(log.Load({}));
    EXPECT_GT(log.m_nRecords, kLines / 3);
    EXPECT_LT(log.m_nRecords, kLines * 2 / 3);
}

TEST(ReadFaults, AFileThatCannotBeReadAtAllHasNoFormat) {
    GrownLog log(10);
    Faults faults;
    faults.m_nReadError = EIO;
    faults.m_nReadableBytes = 0;
    EXPECT_FALSE(log.Load({}));
    EXPECT_EQ(log.m_listMessages, std::vector<std::string>{"Error: Cannot determine tracing log format"});
}

TEST(ReadFaults, AFollowedLogThatCannotBeReadForAMomentKeepsItsSession) {
    GrownLog log(10);
    const AnalysisSettings settings;
    PendingStatement pending;
    RecordingHost host;
    CCarvelotDoc doc(settings, pending, host);
    ASSERT_TRUE(doc.OnOpenDocument(log.m_strPath));
    const std::uint64_t load = doc.LoadIdentity();
    CFollowedLog followed(doc);
    std::ofstream(log.m_strPath, std::ios::binary | std::ios::app) << log.m_strLine;
    {
        Faults faults;
        faults.m_nReadError = EIO;
        faults.m_nReadableBytes = 0;
        EXPECT_EQ(followed.Look(), LogChange::NotToBeHad);
    }
    EXPECT_EQ(doc.LoadIdentity(), load);
    EXPECT_EQ(doc.m_listDetails.Size(), 11U);
    EXPECT_EQ(followed.Look(), LogChange::Grew);
    EXPECT_EQ(doc.m_listDetails.Size(), 12U);
}

TEST(ReadFaults, AFollowedLogThatWasReplacedAndCouldNotBeReadIsReadByTheNextLook) {
    // All reads of a look fail, or one of them.
    for (std::uint64_t number = 0; number <= 10; ++number) {
        GrownLog log(10);
        const AnalysisSettings settings;
        PendingStatement pending;
        RecordingHost host;
        CCarvelotDoc doc(settings, pending, host);
        ASSERT_TRUE(doc.OnOpenDocument(log.m_strPath));
        CFollowedLog followed(doc);
        log.m_folder.Write("next", TestSession::Joined(JASLog({})));
        std::filesystem::rename(log.m_folder.Path("next"), log.m_strPath);
        {
            Faults faults;
            faults.m_nFailingRead = number;
            if (number == 0) {
                faults.m_nReadError = EIO;
                faults.m_nReadableBytes = 0;
            }
            followed.Look();
        }
        followed.Look();
        EXPECT_EQ(doc.m_listDetails.Size(), kJASLead) << number;
        EXPECT_EQ(followed.Look(), LogChange::None) << number;
    }
}

TEST(ReadFaults, AFileThatComesInDribletsGivesTheSameModel) {
    for (const char* name : {"order-entry.log", "jas-web.log", "utf-8.log", "ube-batch.log"}) {
        const TestFile file(Sample(name));
        const std::string whole = JsonOf(file.Path());
        std::mt19937 random(7);
        Faults faults;
        faults.m_nInterruptEach = 5;
        faults.m_fnReadAtMost = [&](std::size_t) { return random() % 97 + 1; };
        EXPECT_EQ(JsonOf(file.Path()), whole) << name;
        EXPECT_GT(faults.m_nReads, 1000U);
    }
}

TEST(ReadFaults, ASlowFileGivesTheSameModel) {
    const TestFile file(Sample("order-entry.log"));
    const std::string whole = JsonOf(file.Path());
    Faults faults;
    faults.m_fnReadAtMost = [](std::size_t) {
        ::usleep(2000);
        return std::size_t{8192};
    };
    EXPECT_EQ(JsonOf(file.Path()), whole);
    EXPECT_GT(faults.m_nReads, 50U);
}

TEST(ReadFaults, ASizeThatLiesCostsNothing) {
    // The size serves the progress bar alone: a file that claims to hold nothing, or more than there is
    // memory in the world, is read to its end.
    GrownLog log(100);
    for (const std::int64_t size : {std::int64_t{0}, std::int64_t{1} << 62U}) {
        Faults faults;
        faults.m_nClaimedSize = size;
        ASSERT_TRUE(log.Load({})) << size;
        EXPECT_EQ(log.m_nRecords, 101U) << size;
    }
}

} // namespace carvelot::test
