// How a line becomes a record and enters the model: its process and thread, its user, and every analysis that
// it feeds.
#include "session/CarvelotDoc.h"

namespace carvelot {

bool CCarvelotDoc::ParseUsualDebugLine(const LogLine& line) {
    return m_debugParser.ParseUsual(line, [this](const UsualLine& usual) {
        const RecordIndex record = m_listDetails.AppendUsual(usual);
        CommitDetail(record, m_listDetails.ContextOfNumber(usual.context), usual.kind, usual.returnCode,
                     usual.stamp.time + usual.fraction);
    });
}

void CCarvelotDoc::ParseDebugLine(LogLine& line) {
    CLogDetail detail;
    if (!m_debugParser.Parse(line, m_nProcessFilter, detail)) {
        return;
    }
    const RecordIndex record = m_listDetails.Append(detail, line.ascii);
    if (m_listDetails.IsUsual(record)) {
        m_debugParser.Learn(line, detail, m_listDetails.ContextNumber(record));
    }
    CommitDetail(record, m_listDetails.Context(record), detail.m_nKind, detail.m_nReturnCode, detail.m_nTime);
}

bool CCarvelotDoc::ParseUsualJASLine(const LogLine& line) {
    return m_jasParser.ParseUsual(line, [this](const UsualLine& usual) {
        const RecordIndex record = m_listDetails.AppendUsual(usual);
        RecordContext& context = m_listDetails.ContextOfNumber(usual.context);
        const std::uint64_t time = usual.stamp.time + usual.fraction;
        CommitToUser(record, context, usual.kind, time);
        CommitDetail(record, context, usual.kind, usual.returnCode, time);
    });
}

void CCarvelotDoc::ParseJASLine(LogLine& line) {
    CLogDetail detail;
    bool ascii = false;
    if (!m_jasParser.Parse(line, m_nProcessFilter, detail, ascii)) {
        return;
    }
    if (detail.m_strUser.empty()) {
        detail.m_strUser = kSystemLevelUser;
    }
    const RecordIndex record = m_listDetails.Append(detail, ascii);
    m_jasParser.Learn(line, detail, m_listDetails.ContextNumber(record));
    CommitToUser(record, m_listDetails.Context(record), detail.m_nKind, detail.m_nTime);
    CommitDetail(record, m_listDetails.Context(record), detail.m_nKind, detail.m_nReturnCode, detail.m_nTime);
}

CProcess& CCarvelotDoc::ProcessOf(RecordContext& context, std::uint64_t time) {
    if (context.process == nullptr) {
        CProcess*& process = m_processByID[context.processID];
        if (process == nullptr) {
            m_listProcesses.push_back(std::make_unique<CProcess>(context.processID, time));
            process = m_listProcesses.back().get();
        }
        context.process = process;
    }
    return *context.process;
}

void CCarvelotDoc::CommitToThread(RecordIndex record, RecordContext& context, LogKind kind,
                                  std::int32_t returnCode, std::uint64_t time) {
    CProcess& process = context.process != nullptr ? *context.process : ProcessOf(context, time);
    const bool isCall = kind == LOG_CALL || kind == LOG_RETURN;
    CallLine call;
    // A kind with a case below stands in kFeedThread, or its records would not come here.
    const std::uint32_t table = kind == LOG_SQL ? m_listDetails.TableKey(record) : 0;
    switch (kind) {
    case LOG_ERROR:
    case LOG_JDB_ERROR:
        process.m_listErrors.push_back(record);
        break;
    case LOG_SQL:
        process.m_pSQLAnalysis.AddStatement(m_listDetails, record, table);
        break;
    case LOG_CACHE:
        if (m_settings.m_bCacheAnalysis) {
            process.m_pCacheAnalysis.AddLine(m_listDetails, record);
        }
        break;
    case LOG_CALL:
    case LOG_RETURN:
        call = ReadCallLine(m_listDetails, kind, m_listDetails.Text(record));
        process.m_pBSFNAnalysis.AddCall(m_listDetails, m_settings, record, call);
        break;
    default:
        break;
    }

    if (context.thread == nullptr) {
        CThread*& known = process.m_mapThreads[context.threadID];
        if (known == nullptr) {
            process.m_listThreads.push_back(
                std::make_unique<CThread>(context.processID, context.threadID, time));
            known = process.m_listThreads.back().get();
        }
        context.thread = known;
    }
    CThread& thread = *context.thread;
    thread.AddDetail(m_listDetails, m_gapRule, m_listGaps, record, kind, time);

    // AddDetail turns a LOG_NONE into a LOG_GAP and leaves every other kind, so the kinds below still hold.
    switch (kind) {
    case LOG_ERROR:
    case LOG_JDB_ERROR:
        thread.m_listErrors.push_back(record);
        break;
    case LOG_SQL:
        thread.m_pSQLAnalysis.AddStatement(m_listDetails, record, table);
        thread.m_pPendingSQL = record;
        break;
    case LOG_SQL_DONE:
        // The statement stays pending: a second end measures it again and may list it twice.
        if (thread.m_pPendingSQL != kNoRecord &&
            Measure(thread.m_pPendingSQL, time) > m_settings.m_fThreshold) {
            thread.m_pSQLAnalysis.m_listLongTasks.AddHead(thread.m_pPendingSQL);
            process.m_pSQLAnalysis.m_listLongTasks.AddHead(thread.m_pPendingSQL);
        }
        break;
    default:
        break;
    }
    if (isCall) {
        thread.m_pBSFNAnalysis.AddCall(m_listDetails, m_settings, record, call);
    }
    if (returnCode > 0) {
        process.m_listErrors.push_back(record);
        thread.m_listErrors.push_back(record);
    }
}

float CCarvelotDoc::Measure(RecordIndex pending, std::uint64_t endTime) {
    const float seconds = ElapsedSeconds(endTime, m_listDetails.Time(pending));
    m_listDetails.SetDuration(pending, seconds);
    return seconds;
}

void CCarvelotDoc::CommitTaskToUser(RecordIndex record, RecordContext& context, LogKind kind,
                                    std::uint64_t time) {
    if (context.jasUser == nullptr) {
        const std::string_view name = m_listDetails[record].m_strUser;
        CJASUser*& known = m_mapUsers[name];
        if (known == nullptr) {
            m_listUsers.push_back(std::make_unique<CJASUser>(std::string(name)));
            known = m_listUsers.back().get();
        }
        context.jasUser = known;
    }
    CJASUser& user = *context.jasUser;

    // Both kinds of task last until the user's next record, whatever it is.
    if (user.m_pPendingObject != kNoRecord) {
        user.m_pBSFNAnalysis.EndObjectCall(m_listDetails, m_settings, record, user.m_nPendingFunction);
        Measure(user.m_pPendingObject, time);
        user.m_pPendingObject = kNoRecord;
    }
    if (user.m_pPendingSQL != kNoRecord) {
        if (Measure(user.m_pPendingSQL, time) > m_settings.m_fThreshold) {
            user.m_pSQLAnalysis.m_listLongTasks.AddHead(user.m_pPendingSQL);
        }
        user.m_pPendingSQL = kNoRecord;
    }
    switch (kind) {
    case LOG_SQL:
        user.m_pSQLAnalysis.AddStatement(m_listDetails, record, m_listDetails.TableKey(record));
        user.m_pPendingSQL = record;
        break;
    case LOG_OBJECT_CALL:
        user.m_nPendingFunction = user.m_pBSFNAnalysis.AddObjectCall(m_listDetails, record);
        user.m_pPendingObject = record;
        break;
    case LOG_WARN:
    case LOG_SEVERE:
        user.m_listErrors.AddHead(record);
        break;
    default:
        break;
    }
    user.m_listDetails.push_back(record);
}

} // namespace carvelot
