#include "faults/schedules/Scenarios.h"

#include "cachebrowser/CacheDefinition.h"
#include "explore/PieceOrder.h"
#include "platform/ProfileFile.h"
#include "report/JsonReport.h"
#include "report/ReportRun.h"
#include "session/FollowedLog.h"
#include "settings/AppSettings.h"
#include "settings/RecentFiles.h"
#include "support/Archives.h"
#include "support/TestLog.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <fstream>
#include <new>
#include <set>
#include <sstream>
#include <streambuf>
#include <unistd.h>

namespace carvelot::test {

namespace {

using Strings = std::vector<std::string>;
using Messages = std::vector<Message>;
using Calls = std::vector<Call>;

// What is said, kept without any memory of the system's.
class CSaid : public std::streambuf {
public:
    CSaid() { setp(m_text.data(), m_text.data() + m_text.size()); }
    void Add(std::string_view text) { sputn(text.data(), static_cast<std::streamsize>(text.size())); }
    std::string Text() const { return {pbase(), pptr()}; }

private:
    std::array<char, 4096> m_text;
};

// The work with calls that count; what it throws is said.
template <class Work> bool Counted(CSaid& said, Work work) {
    try {
        const CountedCalls counted;
        return work();
    } catch (const std::bad_alloc&) {
        said.Add(kThrown);
        return false;
    }
}

std::string WithoutFolder(std::string text, const TestFolder& folder) {
    for (std::size_t at = text.find(folder.Path()); at != std::string::npos;
         at = text.find(folder.Path(), at)) {
        text.replace(at, folder.Path().size(), "DIR");
    }
    return text;
}

Result ResultOf(const TestFolder& folder, bool done, const CSaid& said, std::string shown) {
    return {done, WithoutFolder(said.Text(), folder), done ? WithoutFolder(std::move(shown), folder) : ""};
}

// --- What the logs hold

// A little of all that is analysed, twice over a silence of some seconds.
std::string DebugText() {
    Strings lines = DebugLog({});
    for (int i = 0; i < 2; ++i) {
        const std::string number = std::to_string(i);
        const std::string second = "10:00:" + std::to_string(10 + 20 * i);
        for (const std::string& text :
             {"Calling Business function F" + number + " from X for JDE. (BSFNLevel = 1)",
              "SELECT * FROM PRODDTA.F" + number + " WHERE (A = 1)", "Exiting DBPerformRequest" + number,
              "Entering jdeCacheInit - Name:[N" + number + "]", std::string("JDB9900401 - Failed"),
              "Return value is 2 for F" + number + ". (BSFNLevel = 1)"}) {
            lines.push_back(DebugLine(second + ".000000", text, "7/" + number));
        }
        lines.push_back(DebugLine(second + ".900000", "Entering JDB_CloseTable", "7/" + number));
    }
    return TestSession::Joined(lines);
}

std::string JASText() {
    Strings lines = JASLog({});
    for (const std::string& text :
         {std::string("SELECT A FROM T WHERE B = ?"), std::string("Param1: 5_Types.DECIMAL,"),
          std::string("Object Called: F1.G1"), std::string("ERROR x"), std::string("\xC3\xA4 \xFF warns")}) {
        lines.push_back(JASLine("10:00:10,000", "USER1", text));
    }
    return TestSession::Joined(lines);
}

// As a program that is not under test writes it: with its last line's end.
void Append(const std::string& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary | std::ios::app)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

auto Files(std::vector<std::pair<std::string, std::string>> files) {
    return [files = std::move(files)](const TestFolder& folder) {
        for (const auto& [name, bytes] : files) {
            folder.Write(name, bytes);
        }
    };
}

// --- Loads

class CSayingHost final : public ISessionHost {
public:
    explicit CSayingHost(CSaid& said) : m_said(said) {}
    void ShowMessage(std::string_view text) override {
        m_said.Add(text);
        m_said.Add("\n");
    }
    void PrintOutput(std::string_view text) override { m_said.Add(text); }

private:
    CSaid& m_said;
};

struct LoadedLog {
    CSaid said;
    CSayingHost host{said};
    AnalysisSettings settings;
    PendingStatement pending;
    CCarvelotDoc doc{settings, pending, host};

    std::string Json() const {
        std::ostringstream out;
        WriteSessionJson(doc, "log", out);
        return out.str();
    }
};

Result EndOfLoad(const TestFolder& folder, const LoadedLog& log, bool loaded) {
    Result result = ResultOf(folder, loaded, log.said, loaded ? log.Json() : "");
    // Who is thrown at lets the session go.
    if (!loaded && log.doc.m_listDetails.Size() != 0 && !result.said.ends_with(kThrown)) {
        result.said += "What was not loaded left records.\n";
    }
    return result;
}

auto Load(const char* name, BlockReading reading = {}) {
    return [=](const TestFolder& folder) {
        LoadedLog log;
        log.doc.m_blockReading = reading;
        const std::string path = folder.Path(name);
        const bool loaded = Counted(log.said, [&] { return log.doc.OnOpenDocument(path); });
        return EndOfLoad(folder, log, loaded);
    };
}

Result LoadPieces(const TestFolder& folder) {
    LoadedLog log;
    const Strings paths = {folder.Path("a.log.gz"), folder.Path("b.log"), folder.Path("c.log")};
    const bool loaded = Counted(log.said, [&] { return log.doc.OnOpenPieces(PiecesAsGiven(paths)); });
    return EndOfLoad(folder, log, loaded);
}

// One that can't be read ahead stays, in whichever place.
Result OrderPieces(const TestFolder& folder) {
    const Strings paths = {folder.Path("b.log"), folder.Path("a.log.gz"), folder.Path("c.log")};
    CSaid said;
    std::vector<LogPiece> pieces;
    const bool done = Counted(said, [&] {
        pieces = PiecesByTime(paths);
        return true;
    });
    std::set<std::string> stayed;
    for (const LogPiece& piece : pieces) {
        stayed.insert(piece.path);
    }
    return ResultOf(folder, done, said, std::to_string(stayed.size()));
}

const Messages kLoadMessages = {
    {Call::Memory, "There is not enough memory for this log.\n"},
    {Call::Memory, kThrown},
    {Call::Memory, std::string(kThrown) + "There is not enough memory for this log.\n"},
    {Call::Open, "Failed to open file.\n"},
    {Call::Open, "GetTempFileName failed (24)\n"},
};

// --- A log that grows, and then is another one

Result Follow(const TestFolder& folder) {
    const std::string path = folder.Write("log", DebugText());
    LoadedLog log;
    if (!log.doc.OnOpenDocument(path)) {
        return {};
    }
    CFollowedLog followed(log.doc);
    LogChange change = LogChange::None;
    const auto look = [&] {
        Counted(log.said, [&] {
            change = followed.Look();
            return true;
        });
    };
    Append(path, DebugLine("10:01:00.000000", "Entering JDB_OpenTable", "7/1") + "\n");
    look();
    folder.Write("next", JASText());
    std::filesystem::rename(folder.Path("next"), path);
    if (!EndsFollowing(change)) {
        look();
    }
    // What can't be had now, or was thrown out of a look, is seen by a later one.
    for (int i = 0; i < 3 && !EndsFollowing(change); ++i) {
        change = followed.Look();
    }
    LoadedLog fresh;
    if (!EndsFollowing(change) && fresh.doc.OnOpenDocument(path) && fresh.Json() == log.Json()) {
        return ResultOf(folder, true, CSaid(), log.Json());
    }
    return EndOfLoad(folder, log, false);
}

// --- carvelot-report

// With a file "out" for its standard output.
Result Report(const TestFolder& folder, Strings arguments) {
    for (std::string& argument : arguments) {
        if (argument.starts_with("DIR")) {
            argument.replace(0, 3, folder.Path());
        }
    }
    CSaid said;
    std::ostream err(&said);
    std::ofstream out(folder.Path("out"), std::ios::binary | std::ios::trunc);
    const bool done = Counted(said, [&] { return RunReport(arguments, out, err) == 0; });
    out.close();
    const Result result = ResultOf(folder, done, said, folder.Read("out"));
    std::filesystem::remove(folder.Path("out"));
    return result;
}

// The kinds of calls that are reached beside those of every report, and the file that it writes, if any.
Scenario ReportScenario(const char* name, const Strings& arguments, Calls reaches = {},
                        const std::string& file = {},
                        std::vector<std::pair<std::string, std::string>> files = {{"log", DebugText()}}) {
    if (!file.empty()) {
        files.emplace_back(file, "earlier");
    }
    for (const Call call : {Call::Memory, Call::Open, Call::Read, Call::Write, Call::Space}) {
        reaches.push_back(call);
    }
    Messages messages = kLoadMessages;
    const std::string failed = file.empty() ? "Failed to write the report.\n" : "DIR/" + file + ": ";
    const auto failsWith = [&](Call call, const char* error) {
        messages.push_back({call, file.empty() ? failed : failed + error + "\n"});
    };
    messages.push_back({Call::Memory, "There is not enough memory for this report.\n"});
    failsWith(Call::Write, "Input/output error");
    failsWith(Call::Space, "No space left on device");
    if (!file.empty()) {
        failsWith(Call::Open, "Too many open files");
        failsWith(Call::Sync, "Input/output error");
        failsWith(Call::Rename, "Permission denied");
        reaches.insert(reaches.end(), {Call::Sync, Call::Rename});
    }
    return {name,
            Files(std::move(files)),
            [arguments](const TestFolder& folder) { return Report(folder, arguments); },
            std::move(reaches),
            std::move(messages),
            true};
}

Scenario DatabaseScenario(const char* name, const Strings& arguments,
                          std::function<void(const TestFolder&)> prepare) {
    Scenario scenario = ReportScenario(name, arguments, {Call::Thread}, "logs.db");
    scenario.prepare = std::move(prepare);
    for (const char* const text : {"unable to open database file", "attempt to write a readonly database"}) {
        scenario.messages.push_back({Call::Open, std::string("DIR/logs.db: ") + text + "\n"});
    }
    // The library takes what a device can't read for damage.
    for (const char* const text : {"disk I/O error", "database disk image is malformed",
                                   "This is no database of logs, and is left as it is."}) {
        scenario.messages.push_back({Call::Read, std::string("DIR/logs.db: ") + text + "\n"});
    }
    scenario.messages.push_back({Call::Read, "DIR/logs.db: Input/output error\n"});
    scenario.messages.push_back({Call::Write, "DIR/logs.db: disk I/O error\n"});
    scenario.messages.push_back({Call::Space, "DIR/logs.db: database or disk is full\n"});
    return scenario;
}

// --- Settings

const char* const kStored = "[HKEY_CURRENT_USER\\Software\\Other]\n\"kept\"=\"value\"\n";

Result SaveSettings(const TestFolder& folder) {
    const EnvironmentGuard guard("CARVELOT_REGISTRY", folder.Path("registry.ini").c_str());
    CSaid said;
    const bool done = Counted(said, [] {
        CAppSettings settings;
        settings.LoadSettings();
        settings.m_nRefreshRate = 77;
        settings.m_traceApps = {{"app.exe", true}};
        settings.SaveOptions();
        return true;
    });
    CAppSettings again;
    if (done) {
        again.LoadSettings();
        again.LoadTraceApps();
    }
    return ResultOf(folder, done, said,
                    std::to_string(again.m_nRefreshRate) + " " + std::to_string(again.m_traceApps.size()));
}

Result SaveOneSetting(const TestFolder& folder) {
    const EnvironmentGuard guard("CARVELOT_REGISTRY", folder.Path("registry.ini").c_str());
    CSaid said;
    const bool done = Counted(said, [] {
        WriteWorkspaceInt("ApplicationLook", 77);
        return true;
    });
    return ResultOf(folder, done, said, done ? std::to_string(GetWorkspaceInt("ApplicationLook", 0)) : "");
}

Result SaveRecentFiles(const TestFolder& folder) {
    const EnvironmentGuard guard("CARVELOT_REGISTRY", folder.Path("registry.ini").c_str());
    CSaid said;
    const bool done = Counted(said, [] {
        CRecentFiles recent;
        recent.Load();
        recent.Add("/one/log");
        recent.Add("/other/log");
        recent.SetDialects("/one/log", "french");
        recent.Save();
        return true;
    });
    CRecentFiles again;
    again.Load();
    std::string shown;
    for (const std::string& path : again.m_listPaths) {
        shown += path + " " + again.Dialects(path) + "\n";
    }
    return ResultOf(folder, done, said, shown);
}

// --- Profile files

// Longer than what is read of one at once.
std::string ProfileBytes() {
    std::string bytes = "[A]\r\nk=v\r\n";
    while (bytes.size() < 150'000) {
        bytes += "; kept " + std::to_string(bytes.size()) + std::string(1000, '.') + "\r\n";
    }
    return bytes + "[Z]\r\nlast=one\r\n";
}

// By a bare name in another case than the file's.
Result WriteProfile(const TestFolder& folder) {
    const EnvironmentGuard guard("CARVELOT_PROFILE_DIR", folder.Path().c_str());
    CSaid said;
    const bool done =
        Counted(said, [] { return platform::WriteProfileText("Z", "last", "another", "jde.ini"); });
    return ResultOf(folder, done, said, "");
}

Result ReadProfile(const TestFolder& folder) {
    const std::string path = folder.Path("JDE.INI");
    CSaid said;
    std::string value;
    const bool done = Counted(said, [&] {
        value = platform::ReadProfileText("Z", "last", "none", 100, path);
        return value != "none"; // what can't be read has no values
    });
    return ResultOf(folder, done, said, value);
}

// --- Definition files

void DefineStructure(CCacheDS& structure, const std::string& suffix) {
    std::string text = "typedef struct {";
    for (int i = 0; i < 200; ++i) {
        text += "JCHAR szMember" + std::to_string(i) + suffix + "[10];";
    }
    text += "} DS;";
    structure.ParseTypedef(text);
}

void WriteDefinition(const TestFolder& folder) {
    CCacheDS structure;
    DefineStructure(structure, "Old");
    folder.Write("a.cds", WriteCacheDefinition(structure));
}

Result SaveDefinition(const TestFolder& folder) {
    CCacheDS structure;
    DefineStructure(structure, "New");
    CSaid said;
    const std::string path = folder.Path("a.cds");
    const bool done = Counted(said, [&] {
        const std::string problem = SaveCacheDefinition(path, structure);
        said.Add(problem);
        return problem.empty();
    });
    return ResultOf(folder, done, said, "");
}

Result LoadDefinition(const TestFolder& folder) {
    CCacheDS structure;
    CSaid said;
    const std::string path = folder.Path("a.cds");
    const bool done = Counted(said, [&] {
        const std::string problem = LoadCacheDefinition(path, structure);
        said.Add(problem);
        return problem.empty();
    });
    return ResultOf(folder, done, said, done ? WriteCacheDefinition(structure) : "");
}

// --- The log that is emptied

Result ClearLog(const TestFolder& folder) {
    LoadedLog log;
    log.doc.m_strLogPath = folder.Path("log");
    const bool done = Counted(log.said, [&] { return log.doc.OnClearDebugFile(); });
    return ResultOf(folder, done, log.said, "");
}

} // namespace

std::vector<Scenario> Scenarios() {
    const std::string debug = DebugText();
    const std::string large = LogOfLines(400);
    const Calls loads = {Call::Memory, Call::Open, Call::Read};
    const Calls writes = {Call::Memory, Call::Open, Call::Write, Call::Sync, Call::Rename, Call::Space};
    Messages settings = {{Call::Memory, kThrown}};
    Messages profile = {{Call::Memory, kThrown}};
    for (std::size_t call = 1; call < kCalls; ++call) {
        profile.push_back({static_cast<Call>(call), ""});
    }
    // A folder that can't be listed for want of memory is a call that fails, of which the answer tells.
    Messages writtenProfile = profile;
    writtenProfile.push_back({Call::Memory, ""});
    const auto pieces =
        Files({{"a.log.gz", Gzip(debug)},
               {"b.log", TestSession::Joined({DebugLine("11:00:00.000000", "On b", "7/1")})},
               {"c.log", TestSession::Joined({DebugLine("12:00:00.000000", "On c", "7/1")})}});
    const std::string accessing = "An error occurred while accessing DIR/a.cds. Error: ";

    std::vector<Scenario> all = {
        {"load debug log", Files({{"log", debug}}), Load("log"), loads, kLoadMessages, true},
        {"load JAS log", Files({{"log", JASText()}}), Load("log"), loads, kLoadMessages, true},
        {"load, reading ahead",
         Files({{"log", large}}),
         Load("log", {BlockReading::Way::Ahead, 16384, 2}),
         {Call::Memory, Call::Open, Call::Read, Call::Thread},
         kLoadMessages,
         true},
        {"load gzip", Files({{"log", Gzip(debug)}}), Load("log"), loads, kLoadMessages, true},
        {"load zstd", Files({{"log", Zstd(debug)}}), Load("log"), loads, kLoadMessages, true},
        // Its library ends the program where there is no memory for a name.
        {"load zip", Files({{"log", Zip({{"jdedebug.log", debug}})}}), Load("log"), loads, kLoadMessages,
         true, false, "Fatal Internal Error in libarchive: "},
        {"load pieces", pieces, LoadPieces, loads, kLoadMessages, true},
        {"pieces put in order", pieces, OrderPieces, loads, {{Call::Memory, kThrown}}},
        {"follow", [](const TestFolder&) {}, Follow, loads, kLoadMessages},
        {"clear log",
         Files({{"log", debug}}),
         ClearLog,
         {Call::Open, Call::Truncate},
         {{Call::Open, ""}, {Call::Truncate, ""}}},
        ReportScenario("summary", {"DIR/log"}),
        ReportScenario("--json", {"--json", "DIR/log"}),
        ReportScenario("--tree", {"--tree", "thread:7/1", "DIR/log"}),
        ReportScenario("--find", {"--json", "--find", "jde", "DIR/log"}),
        ReportScenario("--explore", {"--explore", "DIR/log"}, {Call::Thread}),
        ReportScenario("--explore --json", {"--explore", "--json", "DIR/log"}, {Call::Thread}),
        ReportScenario("--compare", {"--compare", "DIR/base", "DIR/log"}, {Call::Thread}, {},
                       {{"log", debug}, {"base", debug}}),
        ReportScenario("--rows csv", {"--rows", "frames", "DIR/log"}, {Call::Thread}),
        ReportScenario("--rows ndjson", {"--rows", "records", "--format", "ndjson", "DIR/log"},
                       {Call::Thread}),
        ReportScenario("export .folded", {"--export-profile", "DIR/p.folded", "DIR/log"}, {}, "p.folded"),
        ReportScenario("export .speedscope.json", {"--export-profile", "DIR/p.speedscope.json", "DIR/log"},
                       {}, "p.speedscope.json"),
        ReportScenario("export .trace.json", {"--export-profile", "DIR/p.trace.json", "DIR/log"}, {},
                       "p.trace.json"),
        ReportScenario("export .callgrind", {"--export-profile", "DIR/p.callgrind", "DIR/log"}, {},
                       "p.callgrind"),
        ReportScenario("export list .csv", {"--export-gaps", "DIR/gaps.csv", "DIR/log"}, {}, "gaps.csv"),
        ReportScenario("export list .txt", {"--export-gaps", "DIR/gaps.txt", "DIR/log"}, {}, "gaps.txt"),
        DatabaseScenario("database, new", {"--sqlite", "DIR/logs.db", "DIR/log"}, Files({{"log", debug}})),
        DatabaseScenario(
            "database, --append", {"--sqlite", "DIR/logs.db", "--append", "DIR/log"},
            [debug](const TestFolder& folder) {
                folder.Write("log", debug);
                folder.Write("other", JASText());
                std::ostringstream none;
                RunReport({"--sqlite", folder.Path("logs.db"), folder.Path("other")}, none, none);
            }),
        {"settings", Files({{"registry.ini", kStored}}), SaveSettings, writes, settings, false, true},
        {"settings, damaged file", Files({{"registry.ini", std::string("damaged\n") + kStored}}),
         SaveOneSetting, writes, settings, false, true},
        {"recent files", Files({{"registry.ini", kStored}}), SaveRecentFiles, writes, settings, false, true},
        {"profile value, written",
         Files({{"JDE.INI", ProfileBytes()}}),
         WriteProfile,
         {Call::Memory, Call::Open, Call::Read, Call::Write, Call::Sync, Call::Rename, Call::Space},
         writtenProfile},
        {"profile value, read",
         Files({{"JDE.INI", ProfileBytes()}}),
         ReadProfile,
         {Call::Memory, Call::Open, Call::Read},
         profile},
        {".cds, saved",
         WriteDefinition,
         SaveDefinition,
         writes,
         {{Call::Memory, kThrown},
          {Call::Open, accessing + "24"},
          {Call::Write, accessing + "5"},
          {Call::Sync, accessing + "5"},
          {Call::Rename, "Access to DIR/a.cds was denied."},
          {Call::Space, "Disk full while accessing DIR/a.cds."}}},
        {".cds, loaded",
         WriteDefinition,
         LoadDefinition,
         {Call::Memory, Call::Open, Call::Read},
         {{Call::Memory, kThrown}, {Call::Open, accessing + "24"}, {Call::Read, accessing + "5"}}},
    };
    return all;
}

// --- Scenarios that break the rules

namespace {

Scenario Broken(const char* name, std::function<Result(const TestFolder&)> run,
                Calls reaches = {Call::Open}) {
    return {
        name, Files({{"file", "earlier"}}), std::move(run), std::move(reaches), {{Call::Open, "Failed."}}};
}

bool Opens(const TestFolder& folder, int flags) {
    const std::string path = folder.Path("file");
    const CountedCalls counted;
    const int file = ::open(path.c_str(), flags | O_CLOEXEC, 0666);
    if (file >= 0) {
        ::close(file);
    }
    return file >= 0;
}

std::string* volatile s_pLost = nullptr;

Result Ended(bool done) { return {done, done ? "" : "Failed.", ""}; }

} // namespace

std::vector<BrokenScenario> BrokenScenarios() {
    return {
        {Broken("leak",
                [](const TestFolder& folder) {
                    const bool done = Opens(folder, O_RDONLY);
                    if (!done) {
                        for (int i = 0; i < 10; ++i) {
                            s_pLost = new std::string(100, 'x');
                        }
                        s_pLost = nullptr;
                    }
                    return Ended(done);
                }),
         "leaves a leak"},
        {Broken("open file",
                [](const TestFolder& folder) {
                    const bool done = Opens(folder, O_RDONLY);
                    return done || ::open("/dev/null", O_RDONLY | O_CLOEXEC) >= 0 ? Ended(done)
                                                                                  : Ended(false);
                }),
         "open files"},
        {Broken("half file",
                [](const TestFolder& folder) {
                    folder.Write("file", "half");
                    const bool done = Opens(folder, O_RDONLY);
                    folder.Write("file", done ? "half and half" : "half");
                    return Ended(done);
                }),
         "half of it"},
        {Broken("file left",
                [](const TestFolder& folder) {
                    const bool done = Opens(folder, O_RDONLY);
                    if (!done) {
                        folder.Write("file.tmp", "left");
                    }
                    return Ended(done);
                }),
         "should not be there"},
        {Broken("wrong message",
                [](const TestFolder& folder) {
                    const bool done = Opens(folder, O_RDONLY);
                    return Result{done, done ? "" : "Everything went well.", ""};
                }),
         "it said"},
        {Broken("silent failure",
                [](const TestFolder& folder) {
                    return Result{true, "", Opens(folder, O_RDONLY) ? "all of it" : "less"};
                }),
         "other than untouched"},
        {Broken("lasting damage",
                [](const TestFolder& folder) {
                    static bool s_bBroken = false;
                    s_bBroken = s_bBroken || !Opens(folder, O_RDONLY);
                    return Ended(!s_bBroken);
                }),
         "does not work again"},
        {Broken("crash",
                [](const TestFolder& folder) {
                    if (!Opens(folder, O_RDONLY)) {
                        std::abort();
                    }
                    return Ended(true);
                }),
         "crashed"},
        {Broken("hang",
                [](const TestFolder& folder) {
                    while (!Opens(folder, O_RDONLY)) {
                        ::usleep(1000);
                    }
                    return Ended(true);
                }),
         "hangs"},
        {Broken("not reached", [](const TestFolder& folder) { return Ended(Opens(folder, O_RDONLY)); },
                {Call::Open, Call::Rename}),
         "no call"},
    };
}

// --- What is compared

std::string ContentOf(const TestFolder& folder, const std::string& name) {
    if (!name.ends_with(".db")) {
        return WithoutFolder(folder.Read(name), folder);
    }
    sqlite3* database = nullptr;
    sqlite3_open_v2(folder.Path(name).c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
    const auto rowsOf = [&](const std::string& sql) {
        Strings rows;
        const auto take = [](void* to, int count, char** cells, char**) {
            std::string& row = static_cast<Strings*>(to)->emplace_back();
            for (int i = 0; i < count; ++i) {
                row.append(cells[i] != nullptr ? cells[i] : "NULL").push_back('|');
            }
            return 0;
        };
        char* error = nullptr;
        sqlite3_exec(database, sql.c_str(), take, &rows, &error);
        if (error != nullptr) {
            rows.push_back(std::string("damaged: ") + error);
        }
        sqlite3_free(error);
        std::sort(rows.begin(), rows.end());
        return rows;
    };
    std::string content;
    for (const std::string& row : rowsOf("PRAGMA integrity_check")) {
        content += row + "\n";
    }
    for (const std::string type : {"table", "index", "view"}) {
        for (std::string object : rowsOf("SELECT name FROM sqlite_schema WHERE type = '" + type + "'")) {
            content += object + "\n";
            object.pop_back();
            for (const std::string& row :
                 type == "table" ? rowsOf("SELECT * FROM \"" + object + "\"") : Strings()) {
                content += row + "\n";
            }
        }
    }
    sqlite3_close(database);
    return WithoutFolder(std::move(content), folder);
}

} // namespace carvelot::test
