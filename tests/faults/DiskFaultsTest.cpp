// Exports and settings on a disk that is full or fails, and settings that two programs write at once.
#include "cachebrowser/CacheDefinition.h"
#include "faults/Faults.h"
#include "lists/GapExport.h"
#include "platform/AtomicFile.h"
#include "platform/ProfileFile.h"
#include "platform/TemporaryFile.h"
#include "report/ReportRun.h"
#include "session/TraceMessage.h"
#include "settings/AppSettings.h"
#include "settings/RecentFiles.h"
#include "support/SettingsStore.h"
#include "support/TestFolder.h"
#include "support/TestLog.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace carvelot::test {

namespace {

using Strings = std::vector<std::string>;

const std::string kLong(300'000, 'x');

// How the end of a disk shows itself: at once, in the middle of a block, when the file is flushed, or only
// when it takes its place.
struct Fault {
    const char* name;
    int writeError;
    std::uint64_t writable;
    int syncError;
    int renameError;
};
constexpr Fault kFaults[] = {
    {"full", ENOSPC, 0, 0, 0},
    {"full in the middle", ENOSPC, 10, 0, 0},
    {"over quota", EDQUOT, 5, 0, 0},
    {"device error", EIO, 3, 0, 0},
    {"full when flushed", 0, 0, ENOSPC, 0},
    {"no replacing", 0, 0, 0, EACCES},
};

void Apply(Faults& faults, const Fault& fault) {
    faults.m_nWriteError = fault.writeError;
    faults.m_nWritableBytes = fault.writable;
    faults.m_nSyncError = fault.syncError;
    faults.m_nRenameError = fault.renameError;
}

int ErrorOf(const Fault& fault) {
    return fault.writeError != 0  ? fault.writeError
           : fault.syncError != 0 ? fault.syncError
                                  : fault.renameError;
}

} // namespace

TEST(DiskFaults, AnExportThatFailsLeavesTheEarlierFileAndNothingElse) {
    const TestFolder folder;
    const std::string path = folder.Write("gaps.csv", "earlier");
    for (const Fault& fault : kFaults) {
        Faults faults;
        Apply(faults, fault);
        int error = 0;
        EXPECT_FALSE(WriteGapExport(path, kLong, error)) << fault.name;
        EXPECT_EQ(error, ErrorOf(fault)) << fault.name;
        EXPECT_EQ(folder.Names(), Strings{"gaps.csv"}) << fault.name;
        EXPECT_EQ(folder.Read("gaps.csv"), "earlier") << fault.name;
    }
    int error = 0;
    EXPECT_TRUE(WriteGapExport(path, kLong, error));
    EXPECT_EQ(folder.Read("gaps.csv"), kLong);
}

TEST(DiskFaults, WhereNoFileCanBeMadeForWantOfRoomTheEarlierOneIsNotWrittenOver) {
    // In its place half of the new one would stand when the disk is full.
    const TestFolder folder;
    const std::string path = folder.Write("gaps.csv", "earlier");
    for (const int number : {ENOSPC, EDQUOT, EIO, EMFILE, ENFILE, ENOMEM}) {
        Faults faults;
        faults.m_nMakeError = number;
        int error = 0;
        EXPECT_FALSE(WriteGapExport(path, kLong, error)) << number;
        EXPECT_EQ(error, number);
        EXPECT_EQ(folder.Read("gaps.csv"), "earlier") << number;
    }
    // One that is protected, and not the file in it, says nothing of the room.
    Faults faults;
    faults.m_nMakeError = EACCES;
    int error = 0;
    EXPECT_TRUE(WriteGapExport(path, kLong, error));
    EXPECT_EQ(folder.Read("gaps.csv"), kLong);
}

TEST(DiskFaults, TheReportTellsThatItsExportFailedAndMakesNoFile) {
    const TestFolder folder;
    const TestFile log(TestSession::Joined(DebugLog({DebugLine("10:00:00.000000", "On x", "1/1")})));
    for (const Fault& fault : kFaults) {
        std::ostringstream out;
        std::ostringstream err;
        Faults faults;
        Apply(faults, fault);
        const std::string path = folder.Path("gaps.txt");
        EXPECT_EQ(RunReport({"--export-gaps", path, log.Path()}, out, err), 1) << fault.name;
        EXPECT_EQ(err.str(), path + ": " + std::strerror(ErrorOf(fault)) + "\n");
        EXPECT_EQ(out.str(), "");
        EXPECT_EQ(folder.Names(), Strings{}) << fault.name;
    }
}

TEST(DiskFaults, AProfileThatCannotBeWrittenLeavesTheEarlierFileAndNothingElse) {
    std::vector<std::string> lines = DebugLog({});
    for (int i = 0; i < 1000; ++i) {
        const std::string call = "Calling Business function F" + std::to_string(i) + " from";
        lines.push_back(DebugLine("10:00:00.000000", call, "1/1"));
    }
    const TestFile log(TestSession::Joined(lines));
    for (const char* const name : {"p.folded", "p.speedscope.json", "p.trace.json", "p.callgrind"}) {
        const TestFolder folder;
        const std::string path = folder.Write(name, "earlier");
        for (const Fault& fault : kFaults) {
            std::ostringstream out;
            std::ostringstream err;
            Faults faults;
            Apply(faults, fault);
            EXPECT_EQ(RunReport({"--export-profile", path, log.Path()}, out, err), 1) << fault.name;
            EXPECT_EQ(err.str(), path + ": " + std::strerror(ErrorOf(fault)) + "\n");
            EXPECT_EQ(out.str(), "");
            EXPECT_EQ(folder.Names(), Strings{name}) << fault.name;
            EXPECT_EQ(folder.Read(name), "earlier") << fault.name;
        }
        std::ostringstream none;
        EXPECT_EQ(RunReport({"--export-profile", path, log.Path()}, none, none), 0);
        EXPECT_GT(folder.Read(name).size(), 30'000U);
    }
}

TEST(DiskFaults, AProfileIntoAFullDeviceFails) {
    const TestFolder folder;
    const std::string path = folder.Path("p.folded");
    ASSERT_EQ(::symlink("/dev/full", path.c_str()), 0);
    std::ostringstream out;
    std::ostringstream err;
    const TestFile log(TestSession::Joined(
        DebugLog({DebugLine("10:00:00.000000", "Calling Business function F from", "1/1")})));
    EXPECT_EQ(RunReport({"--export-profile", path, log.Path()}, out, err), 1);
    EXPECT_EQ(err.str(), path + ": " + std::strerror(ENOSPC) + "\n");
}

TEST(DiskFaults, AReportIntoAFullDeviceFails) {
    std::ofstream full("/dev/full");
    ASSERT_TRUE(full);
    std::ostringstream err;
    const TestFile log(TestSession::Joined(DebugLog({})));
    EXPECT_EQ(RunReport({"--json", log.Path()}, full, err), 1);
    EXPECT_NE(err.str(), "");
}

TEST(DiskFaults, ASettingThatCannotBeStoredHoldsForTheRunAndTheFileStandsAsItWas) {
    for (const Fault& fault : kFaults) {
        const SettingsStore store;
        CAppSettings settings;
        settings.LoadSettings();
        const std::string before = store.Folder().Read("registry.ini");
        {
            Faults faults;
            Apply(faults, fault);
            settings.m_nRefreshRate = 77;
            settings.SaveOptions();
        }
        EXPECT_EQ(store.Folder().Names(), Strings{"registry.ini"}) << fault.name;
        EXPECT_EQ(store.Folder().Read("registry.ini"), before) << fault.name;
        CAppSettings again;
        again.LoadSettings();
        EXPECT_EQ(again.m_nRefreshRate, 77) << fault.name;
    }
}

TEST(DiskFaults, AProfileValueThatCannotBeStoredLeavesTheFileAsItWas) {
    const TestFolder folder;
    const std::string path = folder.Write("JDE.INI", "[A]\r\nk=v\r\n");
    for (const Fault& fault : kFaults) {
        Faults faults;
        Apply(faults, fault);
        EXPECT_FALSE(platform::WriteProfileText("A", "k", kLong, path)) << fault.name;
        EXPECT_EQ(folder.Names(), Strings{"JDE.INI"}) << fault.name;
        EXPECT_EQ(folder.Read("JDE.INI"), "[A]\r\nk=v\r\n") << fault.name;
    }
}

TEST(DiskFaults, AProfileFileThatCannotBeReadWholeIsNotWritten) {
    const TestFolder folder;
    const std::string bytes = "[A]\r\nk=v\r\n;" + kLong + "\r\n[Z]\r\nlast=one\r\n";
    const std::string path = folder.Write("JDE.INI", bytes);
    for (const std::uint64_t readable : {std::uint64_t{0}, std::uint64_t{100'000}}) {
        Faults faults;
        faults.m_nReadError = EIO;
        faults.m_nReadableBytes = readable;
        EXPECT_FALSE(platform::WriteProfileText("A", "k", "new", path)) << readable;
        EXPECT_EQ(platform::ReadProfileText("A", "k", "none", 100, path), "none") << readable;
    }
    EXPECT_EQ(folder.Read("JDE.INI"), bytes);
}

TEST(DiskFaults, AProfileFileThatCannotBeLookedForIsNotMade) {
    // In a folder that can't be listed it may stand in another case.
    const TestFolder folder;
    folder.Write("JDE.INI", "[A]\r\nk=v\r\n");
    const EnvironmentGuard guard("CARVELOT_PROFILE_DIR", folder.Path().c_str());
    for (int Faults::*const error : {&Faults::m_nListError, &Faults::m_nListReadError}) {
        Faults faults;
        faults.*error = EMFILE;
        EXPECT_FALSE(platform::WriteProfileText("A", "k", "new", "jde.ini"));
    }
    EXPECT_EQ(folder.Names(), Strings{"JDE.INI"});
    EXPECT_TRUE(platform::WriteProfileText("A", "k", "new", "jde.ini"));
    EXPECT_EQ(folder.Read("JDE.INI"), "[A]\r\nk=new\r\n");
}

TEST(DiskFaults, ADefinitionThatCannotBeReadIsNotToldToBeTooShort) {
    const TestFolder folder;
    CCacheDS structure;
    std::string text = "typedef struct { int a; } D;";
    structure.ParseTypedef(text);
    const std::string path = folder.Write("a.cds", WriteCacheDefinition(structure));
    Faults faults;
    faults.m_nReadError = EIO;
    faults.m_nReadableBytes = 0;
    EXPECT_EQ(LoadCacheDefinition(path, structure),
              "An error occurred while accessing " + path + ". Error: " + std::to_string(EIO));
}

TEST(DiskFaults, ATemporaryCopyThatDoesNotFitIsNone) {
    const TestFolder folder;
    const std::string from = folder.Write("from", kLong);
    Faults faults;
    faults.m_nWriteError = ENOSPC;
    faults.m_nWritableBytes = 1000;
    EXPECT_FALSE(platform::CopyFileOver(from, folder.Path("to")));
    EXPECT_EQ(folder.Read("from"), kLong);
}

TEST(DiskFaults, AMessageForTheLogIsWrittenWholeOrIsTornOnlyByTheDiskItself) {
    const TestFolder folder;
    const std::string path = folder.Write("jdedebug.log", "line\n");
    CTraceMessage message;
    ASSERT_TRUE(message.Open(path));
    Faults faults;
    faults.m_nWriteError = ENOSPC;
    faults.m_nWritableBytes = 0;
    message.Write(1, 2, "note");
    EXPECT_EQ(folder.Read("jdedebug.log"), "line\n");
}

TEST(DiskFaults, OnADiskThatIsReallyFullExportSettingsAndProfilesStandAsTheyWere) {
    const TestFolder folder;
    if (::mount("none", folder.Path().c_str(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "no disk can be mounted here: " << std::strerror(errno);
    }
    const std::string gaps = folder.Write("gaps.csv", "earlier");
    const std::string ini = folder.Write("JDE.INI", "[A]\nk=v\n");
    // Settings, and then a file that takes all of the rest.
    const EnvironmentGuard guard("CARVELOT_REGISTRY", folder.Path("registry.ini").c_str());
    CAppSettings settings;
    settings.LoadSettings();
    const std::string stored = folder.Read("registry.ini");
    std::ofstream(folder.Path("filler"), std::ios::binary) << kLong;
    const Strings names = folder.Names();

    int error = 0;
    EXPECT_FALSE(WriteGapExport(gaps, kLong, error));
    EXPECT_EQ(error, ENOSPC);
    EXPECT_FALSE(platform::WriteProfileText("A", "k", kLong, ini));
    settings.m_nRefreshRate = 77;
    settings.SaveOptions();
    EXPECT_EQ(folder.Read("gaps.csv"), "earlier");
    EXPECT_EQ(folder.Read("JDE.INI"), "[A]\nk=v\n");
    EXPECT_EQ(folder.Read("registry.ini"), stored);
    EXPECT_EQ(folder.Names(), names);
    EXPECT_EQ(::umount(folder.Path().c_str()), 0);
}

TEST(TwoPrograms, WriteOneSettingsFileAndLoseNoValueOfEither) {
    const SettingsStore store;
    SettingsStore::Key("Shared").SetString("first", "always there");
    constexpr int kPrograms = 3;
    constexpr int kValues = 60;
    std::vector<pid_t> children;
    for (int program = 0; program < kPrograms; ++program) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            platform::CRegistryKey key = SettingsStore::Key("Shared");
            for (int i = 0; i < kValues; ++i) {
                key.SetDword("p" + std::to_string(program) + "v" + std::to_string(i),
                             static_cast<std::uint32_t>(i));
                key.SetString("last", std::string(static_cast<std::size_t>(100 + i), 'x'));
            }
            ::_exit(0);
        }
        children.push_back(child);
    }
    // Meanwhile a third one reads: never half a file, never a file without what was there.
    for (std::size_t running = children.size(); running > 0;) {
        platform::CRegistryKey key;
        ASSERT_TRUE(key.Open(platform::ERegRoot::CurrentUser, "Shared", platform::ERegAccess::Read));
        platform::CRegValue value;
        ASSERT_EQ(key.QueryValue("first", value), platform::ERegStatus::Ok);
        ASSERT_EQ(value.m_strText, "always there");
        int status = 0;
        if (::waitpid(-1, &status, WNOHANG) > 0) {
            EXPECT_EQ(status, 0);
            --running;
        }
    }
    platform::CRegistryKey key = SettingsStore::Key("Shared");
    for (int program = 0; program < kPrograms; ++program) {
        for (int i = 0; i < kValues; ++i) {
            std::uint32_t number = 0;
            const std::string name = "p" + std::to_string(program) + "v" + std::to_string(i);
            EXPECT_EQ(key.QueryRaw32(name, number), platform::ERegStatus::Ok) << name;
            EXPECT_EQ(number, static_cast<std::uint32_t>(i)) << name;
        }
    }
    EXPECT_EQ(store.Folder().Names(), Strings{"registry.ini"});
}

TEST(TwoPrograms, WriteOneProfileFileAndLoseNoValueOfEither) {
    const TestFolder folder;
    const std::string path = folder.Write("JDE.INI", "; kept\r\n[A]\r\nk=v\r\n");
    constexpr int kPrograms = 3;
    constexpr int kValues = 40;
    for (int program = 0; program < kPrograms; ++program) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (int i = 0; i < kValues; ++i) {
                platform::WriteProfileText("P" + std::to_string(program), "v" + std::to_string(i),
                                           std::to_string(i), path);
            }
            ::_exit(0);
        }
    }
    for (int running = kPrograms; running > 0;) {
        ASSERT_EQ(platform::ReadProfileText("A", "k", "torn", 100, path), "v");
        running -= ::waitpid(-1, nullptr, WNOHANG) > 0 ? 1 : 0;
    }
    for (int program = 0; program < kPrograms; ++program) {
        for (int i = 0; i < kValues; ++i) {
            EXPECT_EQ(
                platform::ReadProfileInt("P" + std::to_string(program), "v" + std::to_string(i), -1, path),
                i);
        }
    }
    EXPECT_TRUE(folder.Read("JDE.INI").starts_with("; kept\r\n[A]\r\nk=v\r\n"));
    EXPECT_EQ(folder.Names(), Strings{"JDE.INI"});
}

TEST(TwoPrograms, AStoreThatAnotherHoldsForeverIsWrittenAllTheSame) {
    // Whoever keeps the lock must not keep the user from working.
    const SettingsStore store;
    SettingsStore::Key("K").SetDword("a", 1);
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const int folder = ::open(store.Folder().Path().c_str(), O_RDONLY | O_DIRECTORY);
        if (::flock(folder, LOCK_EX) == 0 && ::write(ready[1], "x", 1) == 1) {
            ::pause();
        }
        ::_exit(1);
    }
    ::close(ready[1]);
    char byte = 0;
    const bool held = ::read(ready[0], &byte, 1) == 1;
    EXPECT_TRUE(held);
    EXPECT_TRUE(SettingsStore::Key("K").SetDword("a", 2));
    std::uint32_t number = 0;
    EXPECT_EQ(SettingsStore::Key("K").QueryRaw32("a", number), platform::ERegStatus::Ok);
    EXPECT_EQ(number, 2U);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(ready[0]);
}

} // namespace carvelot::test
