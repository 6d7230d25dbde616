#include "session/CarvelotDoc.h"

#include "parse/LineNumbering.h"
#include "parse/LogFormat.h"
#include "parse/LogReader.h"
#include "parse/fast/FastDebugLines.h"
#include "parse/fast/FastJASLines.h"
#include "platform/TemporaryFile.h"
#include "session/Commit.h"
#include "sources/FileSource.h"
#include "sources/PackedFile.h"
#include "sources/PiecesSource.h"
#include "sources/TracedSource.h"
#include "text/FindText.h"
#include "text/Release.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <optional>
#include <stdexcept>

namespace carvelot {

namespace {

// How often a load tells how far it has come.
constexpr std::uint64_t kProgressStep = 4U << 20U;

// Bytes of a log whose records surely fill what is left of a page when the next one is asked for: nearer to
// the log's end a page made ready might never be needed.
constexpr std::uint64_t kFillsAPage = 8U << 20U;

// Sessions may be loaded side by side.
std::uint64_t NextLoadIdentity() {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

// Shows the wait cursor for as long as it lives.
class CWaitCursor {
public:
    explicit CWaitCursor(ISessionHost& host) : m_host(host) { m_host.BeginWaitCursor(); }
    ~CWaitCursor() { m_host.EndWaitCursor(); }
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;

private:
    ISessionHost& m_host;
};

// Ends the progress that a load has told of, however it ends.
class CToldProgress {
public:
    explicit CToldProgress(ISessionHost& host) : m_host(host) {}
    ~CToldProgress() {
        if (m_bTold) {
            m_host.EndLoadProgress();
        }
    }
    CToldProgress(const CToldProgress&) = delete;
    CToldProgress& operator=(const CToldProgress&) = delete;

    void Tell(const SourceProgress& progress) {
        m_bTold = true;
        m_host.LoadProgress(progress.done, progress.all);
    }

private:
    ISessionHost& m_host;
    bool m_bTold = false;
};

// A file that is removed when it is no longer needed.
class CTemporaryCopy {
public:
    ~CTemporaryCopy() {
        if (!m_strPath.empty()) {
            platform::DeleteFileAt(m_strPath);
        }
    }
    std::string m_strPath;
};

// Opens a log; that of a writer that shares nothing through a copy. What fails is told to the host.
platform::SharedFile OpenLog(const std::string& path, CTemporaryCopy& copy, ISessionHost& host) {
    platform::SharedFile file = platform::SharedFile::OpenForReading(path);
    if (file) {
        return file;
    }
    int error = 0;
    const std::optional<std::string> name = platform::MakeTemporaryName("NEW", &error);
    if (!name) {
        host.PrintOutput("GetTempFileName failed (" + std::to_string(error) + ")\n");
        return file;
    }
    copy.m_strPath = *name;
    if (platform::CopyFileOver(path, copy.m_strPath)) {
        file = platform::SharedFile::OpenForReading(copy.m_strPath);
    }
    if (!file) {
        host.ShowMessage("Failed to open file.");
    }
    return file;
}

// One of several files that are one log.
class CPieceSource final : public ILogSource {
public:
    CPieceSource(const std::string& path, ISessionHost& host)
        : m_file(OpenLog(path, m_copy, host)), m_source(m_file) {}

    bool IsOpen() const { return static_cast<bool>(m_file); }
    std::size_t Read(void* buffer, std::size_t size) override { return m_source.Read(buffer, size); }
    void Rewind() override { m_source.Rewind(); }
    std::uint64_t Size() const override { return m_source.Size(); }
    SourceProgress Progress() const override { return m_source.Progress(); }

private:
    CTemporaryCopy m_copy; // goes last
    platform::SharedFile m_file;
    CFileSource m_source;
};

// Where the lines of a load go: into the list of records, and from there into the model.
class CDebugRecords {
public:
    CDebugRecords(CDetailList& records, CCommit& commit) : m_records(records), m_commit(commit) {}

    void AddUsual(const UsualLine& line) {
        const RecordIndex record = m_records.AppendUsual(line);
        m_commit.CommitDetail(record, m_records.ContextOfNumber(line.context), line.kind, line.returnCode,
                              line.stamp.time + line.fraction);
    }
    std::uint32_t Add(const CLogDetail& detail, bool ascii) {
        const RecordIndex record = m_records.Append(detail, ascii);
        m_commit.CommitDetail(record, m_records.Context(record), detail.m_nKind, detail.m_nReturnCode,
                              detail.m_nTime);
        return m_records.IsUsual(record) ? m_records.ContextNumber(record) : kNoContext;
    }

private:
    CDetailList& m_records;
    CCommit& m_commit;
};

class CJASRecords {
public:
    CJASRecords(CDetailList& records, CCommit& commit) : m_records(records), m_commit(commit) {}

    void AddUsual(const UsualLine& line) {
        const RecordIndex record = m_records.AppendUsual(line);
        RecordContext& context = m_records.ContextOfNumber(line.context);
        const std::uint64_t time = line.stamp.time + line.fraction;
        m_commit.CommitToUser(record, context, line.kind, time);
        m_commit.CommitDetail(record, context, line.kind, line.returnCode, time);
    }
    std::uint32_t Add(CLogDetail& detail, bool ascii) {
        if (detail.m_strUser.empty()) {
            detail.m_strUser = kSystemLevelUser;
        }
        const RecordIndex record = m_records.Append(detail, ascii);
        RecordContext& context = m_records.Context(record);
        m_commit.CommitToUser(record, context, detail.m_nKind, detail.m_nTime);
        m_commit.CommitDetail(record, context, detail.m_nKind, detail.m_nReturnCode, detail.m_nTime);
        return m_records.IsUsual(record) ? m_records.ContextNumber(record) : kNoContext;
    }

private:
    CDetailList& m_records;
    CCommit& m_commit;
};

} // namespace

CCarvelotDoc::CCarvelotDoc(const AnalysisSettings& settings, PendingStatement& pending, ISessionHost& host)
    : m_settings(settings), m_jasParser(pending), m_host(host), m_nLoadIdentity(NextLoadIdentity()) {}

CCarvelotDoc::~CCarvelotDoc() { ClearSession(); }

bool CCarvelotDoc::OnOpenDocument(const std::string& path, std::vector<std::string> members) {
    m_listPieces.clear();
    m_strLogPath = path;
    m_listMembers = std::move(members);
    const CWaitCursor wait(m_host);
    if (!LoadLog()) {
        return false;
    }
    m_host.SetTitle(*this, LogName());
    FillThreadTree();
    m_host.AddToRecentFileList(path);
    return true;
}

bool CCarvelotDoc::OnOpenPieces(std::vector<LogPiece> pieces) {
    m_listPieces = std::move(pieces);
    m_strLogPath = m_listPieces.front().path;
    const CWaitCursor wait(m_host);
    if (!LoadLog()) {
        return false;
    }
    const std::size_t more = m_listPieces.size() - 1;
    m_host.SetTitle(*this,
                    more == 0 ? m_strLogPath : m_strLogPath + " and " + std::to_string(more) + " more");
    FillThreadTree();
    return true;
}

bool CCarvelotDoc::OnNewDocument() {
    const std::optional<std::string> path = m_host.AskForLog();
    return path && OnOpenDocument(*path);
}

bool CCarvelotDoc::LoadLog() {
    if (!m_listPieces.empty()) {
        return LoadPieces();
    }
    CTemporaryCopy copy;
    m_pLogFile.Close();
    platform::SharedFile file = OpenLog(m_strLogPath, copy, m_host);
    if (!file) {
        return false;
    }
    m_pLogFile = std::move(file);
    CFileSource source(m_pLogFile);
    const bool read = LoadPackedOrPlain(source);
    m_trace.identity = m_pLogFile.State().identity;
    NoteFailure(source);
    m_pLogFile.Close();
    return read;
}

bool CCarvelotDoc::LoadPieces() {
    std::vector<SourcePiece> opened;
    m_listMembers.clear();
    m_bPacked = false;
    for (const LogPiece& piece : m_listPieces) {
        auto source = std::make_unique<CPieceSource>(piece.path, m_host);
        if (!source->IsOpen()) {
            return false;
        }
        const PackedKind kind = PackedKindOf(*source);
        if (kind == PackedKind::None) {
            opened.push_back({std::move(source), piece.beginsLine});
            continue;
        }
        m_bPacked = true;
        auto unpacked = std::make_unique<CPackedPiece>(std::move(source), kind);
        if (const std::string problem = unpacked->Open(); !problem.empty()) {
            m_host.ShowMessage(problem);
            return false;
        }
        opened.push_back({std::move(unpacked), piece.beginsLine});
    }
    CPiecesSource source(std::move(opened));
    return LoadFrom(source);
}

// So that no row or node outlives what it shows.
void CCarvelotDoc::LetViewsGo() {
    if (m_pThreadView != nullptr) {
        m_pThreadView->ClearTree();
    }
    if (m_pDetailView != nullptr) {
        m_pDetailView->ResetTree();
    }
}

// What a load has no memory for is not left half done.
template <class Load> bool CCarvelotDoc::LoadInMemory(Load load) {
    const char* failure = nullptr;
    bool read = false;
    bool ended = false;
    try {
        read = load();
    } catch (const LoadEnded&) {
        ended = true;
    } catch (const std::bad_alloc&) {
        failure = "There is not enough memory for this log.";
    } catch (const std::length_error&) {
        failure = "This log is too large: it holds more than a session can.";
    }
    if (ended || failure != nullptr) {
        // Half a record may have been filed; what is left of the memory is needed for the message.
        LetViewsGo();
        ClearSession();
    }
    if (failure != nullptr) {
        m_host.ShowMessage(failure);
    }
    return read;
}

bool CCarvelotDoc::LoadFrom(ILogSource& source) {
    LetViewsGo();
    return LoadInMemory([&] {
        ClearSession();
        const bool read = ReadLog(source);
        m_strLoadFailure = source.Failure();
        if (!m_strLoadFailure.empty()) {
            m_host.ShowMessage(m_strLoadFailure);
        } else if (!read) {
            m_host.ShowMessage("Error: Cannot determine tracing log format");
        }
        return read;
    });
}

bool CCarvelotDoc::LoadPackedOrPlain(ILogSource& bytes) {
    const PackedKind kind = PackedKindOf(bytes);
    m_bPacked = kind != PackedKind::None;
    if (kind != PackedKind::Zip && !m_listMembers.empty()) {
        m_host.ShowMessage("Only a zip archive has members.");
        return false;
    }
    if (!m_bPacked) {
        return LoadFrom(bytes);
    }
    std::optional<CPackedSource> source;
    const bool opened = LoadInMemory([&] {
        std::string problem;
        // The members of an archive that only goes by are not to be listed.
        if (kind == PackedKind::Zip && m_listMembers.empty() && bytes.Seek(0)) {
            const PackedMembers list = ListMembers(bytes);
            problem = list.problem;
            if (list.members.size() == 1) {
                m_listMembers.push_back(list.members.front().name);
            } else if (problem.empty()) {
                for (const std::size_t chosen : m_host.ChooseMembers(*this, list.members)) {
                    m_listMembers.push_back(list.members[chosen].name);
                }
                if (m_listMembers.empty()) {
                    return false;
                }
            }
        }
        if (problem.empty()) {
            problem = source.emplace(bytes, kind, m_listMembers).Open();
        }
        if (!problem.empty()) {
            m_host.ShowMessage(problem);
        }
        return problem.empty();
    });
    return opened && LoadFrom(*source);
}

std::string CCarvelotDoc::LogName() const {
    std::string name = m_strLogPath;
    const char* between = "!";
    for (const std::string& member : m_listMembers) {
        name.append(between).append(member);
        between = ", ";
    }
    return name;
}

bool CCarvelotDoc::ReadLog(ILogSource& source) {
    m_trace.size = source.Size();
    m_trace.settings = m_settings;
    m_pendingAhead = m_jasParser.m_pending;
    {
        CLogReader reader(source);
        m_trace.told = DetectLogFormat(reader, m_nLogFormat, m_debugParser);
    }
    if (m_trace.told) {
        source.RewindForGood();
        ReadLines(source, {});
    }
    return m_trace.told;
}

void CCarvelotDoc::NoteFailure(const CFileSource& source) {
    if (source.HasFailed() && !m_trace.told) {
        m_trace.size = 0;
    }
}

bool CCarvelotDoc::ReadOn(ILogSource& source) {
    std::optional<CWaitCursor> wait; // for no less than a load tells of
    if (source.Size() >= m_trace.place.position + kProgressStep) {
        wait.emplace(m_host);
    }
    return LoadInMemory([&] {
        m_jasParser.m_pending = m_pendingBehind;
        ReadLines(source, m_trace.place);
        return true;
    });
}

bool CCarvelotDoc::ReadAnew(ILogSource& source, const platform::FileIdentity& identity) {
    const CWaitCursor wait(m_host);
    LetViewsGo();
    return LoadInMemory([&] {
        ClearSession();
        m_debugParser = {};
        m_nLogFormat = LOG_FORMAT_DEBUG;
        m_jasParser.m_pending = m_pendingAhead;
        ReadLog(source);
        m_trace.identity = identity;
        return true;
    });
}

std::optional<bool> CCarvelotDoc::StillHolds(ILogSource& source) {
    std::string bytes(std::min<std::uint64_t>(LogTrace::kKept, source.Size()), '\0');
    source.Rewind();
    if (source.Read(bytes.data(), bytes.size()) < bytes.size()) {
        return std::nullopt;
    }
    if (!bytes.starts_with(m_trace.first)) {
        return false;
    }
    m_trace.first = bytes;
    bytes.resize(m_trace.last.size());
    if (!source.Seek(m_trace.place.position - bytes.size()) ||
        source.Read(bytes.data(), bytes.size()) < bytes.size()) {
        return std::nullopt;
    }
    return bytes == m_trace.last;
}

void CCarvelotDoc::ReadLines(ILogSource& source, const LogPlace& start) {
    CTracedSource traced(source, LogTrace::kKept, LogTrace::kKept + CLogReader::kLongestLine);
    const auto readLines = [&](auto& lines, CLineReading& notes, auto parse) {
        notes.m_dialects = m_dialects;
        const auto providePages = [this](const SourceProgress& read) {
            if (read.all > read.done + kFillsAPage) {
                m_listDetails.ProvidePages();
            }
        };
        const auto prepare = [&lines](CBlockLines block, PreparedLines& prepared) {
            lines.PrepareLines(block, prepared);
        };
        CLogReader reader(traced, lines.Scan(), m_blockReading, start, {providePages, prepare});
        const std::uint64_t size = reader.Progress().all;
        CToldProgress told(m_host);
        std::uint64_t nextProgress = start.position + kProgressStep;
        CLineNumbering numbering(start);
        std::size_t piecesBegun = 0;
        LogLine line;
        for (std::uint64_t begin = start.position; reader.ReadLogLine(line); begin = reader.Position()) {
            for (; piecesBegun < m_listPieces.size() && piecesBegun < reader.PieceBegins().size() &&
                   reader.PieceBegins()[piecesBegun] <= begin;
                 ++piecesBegun) {
                m_listPieces[piecesBegun].firstRecord = static_cast<std::uint32_t>(m_listDetails.Size());
            }
            parse(line);
            if (notes.m_refused.unplaced) [[unlikely]] {
                notes.m_refused.Place(reader.LineNumber());
            }
            if (m_bNumberLines) {
                const auto number = static_cast<std::uint32_t>(numbering.Take(reader));
                if (m_listLineNumbers.Size() < m_listDetails.Size()) {
                    m_listLineNumbers.Add(number);
                }
            }
            if (reader.Position() >= nextProgress) {
                told.Tell({reader.Progress().done, size});
                nextProgress = reader.Position() + kProgressStep;
            }
        }
        m_nLines = reader.LinesEnded();
        m_nBytes = m_trace.size = reader.BytesRead();
        m_trace.place = reader.Place();
        for (; piecesBegun < m_listPieces.size(); ++piecesBegun) {
            m_listPieces[piecesBegun].firstRecord = static_cast<std::uint32_t>(m_listDetails.Size());
        }
    };
    const ParseWay way = m_bPlainParse ? ParseWay::Plain : ParseWay::Fast;
    CCommit commit(*this, m_settings);
    if (m_nLogFormat == LOG_FORMAT_DEBUG) {
        const auto lines = std::make_unique<CFastDebugLines>(m_debugParser, way);
        CDebugRecords records{m_listDetails, commit};
        readLines(*lines, m_debugParser,
                  [&](const LogLine& line) { lines->ParseDebugLine(line, m_nProcessFilter, records); });
    } else {
        const auto lines = std::make_unique<CFastJASLines>(m_jasParser, way);
        CJASRecords records{m_listDetails, commit};
        readLines(*lines, m_jasParser,
                  [&](const LogLine& line) { lines->ParseJASLine(line, m_nProcessFilter, records); });
    }
    m_pendingBehind = m_jasParser.m_pending;
    if (start.position == 0) {
        m_trace.first = traced.First();
    }
    m_trace.last += traced.Last();
    m_trace.last.resize(m_trace.last.size() -
                        static_cast<std::size_t>(traced.Position() - m_trace.place.position));
    m_trace.last.erase(0, m_trace.last.size() - std::min(m_trace.last.size(), LogTrace::kKept));
    EnterEndTimes();
}

void CCarvelotDoc::EnterEndTimes() {
    // A plain comparison: a log that passes midnight ends at its largest time of day, not at its last line.
    for (const auto& process : m_listProcesses) {
        process->m_nEndTime = 0;
        for (const auto& thread : process->m_listThreads) {
            thread->m_nEndTime = m_listDetails.Time(thread->m_listDetails.back());
            process->m_nEndTime = std::max(process->m_nEndTime, thread->m_nEndTime);
        }
    }
}

bool CCarvelotDoc::ClearSession() {
    m_nLoadIdentity = NextLoadIdentity();
    m_trace = {}; // nothing is left that could be read on
    m_mapProcesses.clear();
    m_listProcesses.clear();
    Release(m_listGaps);
    m_listDetails.Clear();
    m_nLines = 0;
    m_nBytes = 0;
    for (LogPiece& piece : m_listPieces) {
        piece.firstRecord = 0;
    }
    m_listLineNumbers.Clear();
    m_strLoadFailure.clear();
    m_debugParser.ForgetNotes();
    m_jasParser.ForgetNotes();
    m_mapUsers.clear();
    m_listUsers.clear();
    return true;
}

void CCarvelotDoc::FillThreadTree() {
    if (m_pThreadView != nullptr) {
        if (m_nLogFormat == LOG_FORMAT_DEBUG) {
            m_pThreadView->FillProcessTree();
        } else {
            m_pThreadView->FillUserTree();
        }
    }
}

void CCarvelotDoc::OnAnalyze() {
    const CWaitCursor wait(m_host);
    m_host.ClearPanes();
    if (m_pDetailView != nullptr) {
        m_pDetailView->ResetTree();
    }
    LoadLog();
    FillThreadTree();
    m_host.ActivateSession(*this);
}

bool CCarvelotDoc::OnClearDebugFile() { return !m_bPacked && platform::TruncateShared(m_strLogPath); }

void CCarvelotDoc::OnOpenAsText() { m_host.OpenInShell(m_strLogPath); }

const LogPiece* CCarvelotDoc::PieceOf(RecordIndex record) const {
    if (Number(record) >= m_listDetails.Size()) {
        return nullptr;
    }
    const auto behind = std::upper_bound(
        m_listPieces.begin(), m_listPieces.end(), Number(record),
        [](std::uint32_t number, const LogPiece& piece) { return number < piece.firstRecord; });
    return behind == m_listPieces.begin() ? nullptr : &*(behind - 1);
}

const CProcess* CCarvelotDoc::FindProcess(std::uint32_t id) const {
    const auto found = m_mapProcesses.find(id);
    return found == m_mapProcesses.end() ? nullptr : found->second;
}

const CJASUser* CCarvelotDoc::FindUser(std::string_view name) const {
    const auto found = m_mapUsers.find(name);
    return found == m_mapUsers.end() ? nullptr : found->second;
}

void CCarvelotDoc::ShowDetail(RecordIndex record) {
    if (m_pThreadView == nullptr || m_pDetailView == nullptr || Number(record) >= m_listDetails.Size()) {
        return;
    }
    const RecordContext& context = m_listDetails.Context(record);
    if (m_nLogFormat == LOG_FORMAT_DEBUG) {
        if (context.thread == nullptr) {
            return;
        }
        // While the record's whole process is shown, its node is there already.
        if (!m_pThreadView->IsProcessSelected(context.processID)) {
            m_pThreadView->SelectThread(*context.thread);
        }
    } else {
        if (context.jasUser == nullptr) {
            return;
        }
        m_pThreadView->SelectUser(*context.jasUser);
    }
    m_pDetailView->SelectRecord(record);
    m_pDetailView->SetFocusToTree();
}

std::vector<RecordIndex> CCarvelotDoc::FindDetails(std::string_view text) const {
    const CFindText find(text);
    std::vector<RecordIndex> hits;
    for (std::uint32_t i = 0; i < m_listDetails.Size(); ++i) {
        const RecordIndex record{i};
        if (m_listDetails.Kind(record) != LOG_NONE &&
            find.IsIn(m_listDetails.Text(record), m_listDetails.TextIsAscii(record))) {
            hits.push_back(record);
        }
    }
    return hits;
}

} // namespace carvelot
