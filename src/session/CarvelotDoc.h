// One open log file and everything parsed from it.
#pragma once

#include "parse/Classifier.h"
#include "parse/DebugLine.h"
#include "parse/Dialects.h"
#include "parse/JASLine.h"
#include "parse/LogReader.h"
#include "platform/SharedFile.h"
#include "records/AnalysisSettings.h"
#include "records/DetailList.h"
#include "records/PagedArray.h"
#include "session/JASUser.h"
#include "session/Process.h"
#include "session/SessionHost.h"
#include "sources/LogSource.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace carvelot {

// One of several files that are read as one log.
struct LogPiece {
    std::string path;
    bool beginsLine = false;       // where the piece before lacks its last line end, one is put between
    std::uint32_t firstRecord = 0; // that begins in it, or the first behind it
};

// What the latest reading of a log left, so that it can go on when the log has grown.
struct LogTrace {
    // Of the first bytes that were read, and of those up to the place, so many are kept.
    static constexpr std::size_t kKept = 4096;

    platform::FileIdentity identity; // of a log that is a file
    std::uint64_t size = 0;          // of the log, as far as it was read
    LogPlace place;                  // behind the last whole line
    std::string first;
    std::string last;
    AnalysisSettings settings;
    bool told = false; // the format, without which no line was read
};

class CFileSource;

class CCarvelotDoc {
    CDebugLineParser m_debugParser;

public:
    // `settings` and `pending` belong to the application and outlive every session.
    CCarvelotDoc(const AnalysisSettings& settings, PendingStatement& pending, ISessionHost& host);
    ~CCarvelotDoc();
    CCarvelotDoc(const CCarvelotDoc&) = delete;
    CCarvelotDoc& operator=(const CCarvelotDoc&) = delete;

    // Opens a file by hand: path, load, title, tree, recent files. True when the model holds the log.
    // `members`: those to be read of a zip archive, where they are known.
    bool OnOpenDocument(const std::string& path, std::vector<std::string> members = {});
    // The same for a log in pieces, at least one, which stand in the order in which they are read.
    bool OnOpenPieces(std::vector<LogPiece> pieces);
    // File New: asks for a file and opens it.
    bool OnNewDocument();
    // Reads m_strLogPath, or the pieces where there are some. On a file that cannot be opened the earlier
    // content stands; on one whose format cannot be told, or that is more than the memory or a session can
    // hold, the session is empty. All are reported to the host.
    bool LoadLog();
    // The same for a log that is no file, or no file of its own. m_strLogPath is not looked at.
    bool LoadFrom(ILogSource& source);
    // The same for bytes that may be packed. Of a zip archive the members m_listMembers are read; without
    // these its only one, or those that the host chooses. On an archive that can't be read the earlier
    // content stands.
    bool LoadPackedOrPlain(ILogSource& bytes);
    // Whether the latest load found an archive, which nothing can be written to.
    bool IsPacked() const { return m_bPacked; }

    // Reads the lines that a log has gained since it was read last, which needs a source that seeks: the
    // session stays the one it is, and grows. False where it is more than the memory or a session can hold,
    // which the host is told, or the host has ended it; the session is then empty.
    bool ReadOn(ILogSource& source);
    // Reads a log from its start as a new session would, and says nothing where its format cannot be told
    // yet: the session is then empty. False as above.
    bool ReadAnew(ILogSource& source, const platform::FileIdentity& identity);
    // Whether a log that may have grown still holds the bytes that were read first and last; nothing where it
    // can't be read. Of a short one more is kept from now on.
    std::optional<bool> StillHolds(ILogSource& source);
    const LogTrace& Trace() const { return m_trace; }
    // A log of which reading failed ahead of its format is one that has not been looked at.
    void NoteFailure(const CFileSource& source);
    // A log whose format cannot be told has been looked at up to here.
    void HasBeenLookedAt(std::uint64_t size) { m_trace.size = size; }

    // The path, of a packed log's members with their names: PATH!MEMBER.
    std::string LogName() const;
    // Why the latest load ended ahead of the log's end, in a sentence that the host has been told; empty when
    // it did not.
    const std::string& LoadFailure() const { return m_strLoadFailure; }
    // Empties the model. What was learnt about format and columns stays.
    bool ClearSession();
    // Rereads the same file.
    void OnAnalyze();
    // Empties the log file; the model stays as it is. False, without a message, when the file cannot be
    // opened, or is an archive.
    bool OnClearDebugFile();
    void OnOpenAsText();

    // What the next load would read of the user's settings.
    const AnalysisSettings& Settings() const { return m_settings; }

    // Fills the thread tree for the session's format.
    void FillThreadTree();
    // Brings a record up in the session's two trees.
    void ShowDetail(RecordIndex record);
    // Records of any kind but LOG_NONE whose text holds `text`, without regard to case, in log order. An
    // empty text is held by all.
    std::vector<RecordIndex> FindDetails(std::string_view text) const;

    // The piece in which the record's line begins; null for one of a log that is one file, and for none.
    const LogPiece* PieceOf(RecordIndex record) const;
    const CProcess* FindProcess(std::uint32_t id) const;
    const CJASUser* FindUser(std::string_view name) const;

    CDetailList m_listDetails;                              // every record made, in file order
    std::vector<std::unique_ptr<CProcess>> m_listProcesses; // in order of first appearance
    std::unordered_map<std::uint32_t, CProcess*> m_mapProcesses;
    std::vector<std::unique_ptr<CJASUser>> m_listUsers; // JAS logs only, in order of first appearance
    std::unordered_map<std::string_view, CJASUser*> m_mapUsers;
    std::vector<RecordIndex> m_listGaps; // records that follow a silence, in file order

    std::string m_strProcessName; // of the running process analysed; empty for a file opened by hand
    std::string m_strLogPath;     // of a log in pieces, the first one's
    std::vector<LogPiece> m_listPieces;
    std::vector<std::string> m_listMembers; // of a zip archive, those that are one after the other this log
    std::uint32_t m_nProcessFilter =
        0; // 0 keeps all; else only debug records of this process, and no JAS record
    // Reads every line word by word, as if no earlier one had begun so and nothing were known of where its
    // words stand. The outcome is the same, later.
    bool m_bPlainParse = false;
    BlockReading m_blockReading;
    // The readings beyond the plain one that were chosen for this log.
    CDialects m_dialects;
    std::uint64_t m_nBytes = 0; // of the log
    std::uint64_t m_nLines = 0; // of the log, as an editor counts them
    // Numbers the records' lines. Without it the next one stays empty, for it costs time and memory.
    bool m_bNumberLines = false;
    CPagedArray<std::uint32_t, 12> m_listLineNumbers; // by record, the first line being 1
    LogFormat m_nLogFormat = LOG_FORMAT_DEBUG;
    // What the parser of debug lines has learnt.
    std::int32_t& m_nTextColumn = m_debugParser.m_nTextColumn;
    std::int32_t& m_nTabCount = m_debugParser.m_nTabCount;
    bool& m_bDashForm = m_debugParser.m_bDashForm;
    bool& m_bUBELog = m_debugParser.m_bUBELog;
    std::uint32_t& m_nUBEProcessID = m_debugParser.m_nUBEProcessID;
    std::uint32_t& m_nUBEThreadID = m_debugParser.m_nUBEThreadID;

    IThreadTreeView* m_pThreadView = nullptr; // the views enter themselves
    IDetailTreeView* m_pDetailView = nullptr;

    // Tells this session and this load of it from all others in the run, so that rows which outlive a session
    // know that their records are gone.
    std::uint64_t LoadIdentity() const { return m_nLoadIdentity; }

    // Of the latest load, the lines with a word that became no record.
    const RefusedLines& Refused() const { return Notes().m_refused; }
    // And what else was noted beside the records.
    const CLineReading& Notes() const {
        if (m_nLogFormat == LOG_FORMAT_DEBUG) {
            return m_debugParser;
        }
        return m_jasParser;
    }

private:
    bool LoadPieces();
    bool ReadLog(ILogSource& source);
    void ReadLines(ILogSource& source, const LogPlace& start);
    void EnterEndTimes();
    void LetViewsGo();
    template <class Load> bool LoadInMemory(Load load);

    const AnalysisSettings& m_settings;
    CJASLineParser m_jasParser;
    ISessionHost& m_host;
    platform::SharedFile m_pLogFile;
    bool m_bPacked = false;
    std::string m_strLoadFailure;
    LogTrace m_trace;
    // Other sessions read statements too: as the latest load of this one found the one that awaits its
    // parameters, and as its lines left it.
    PendingStatement m_pendingAhead;
    PendingStatement m_pendingBehind;
    std::uint64_t m_nLoadIdentity;
};

} // namespace carvelot
