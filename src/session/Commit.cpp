#include "session/Commit.h"

namespace carvelot {

CProcess& CCommit::ProcessOf(RecordContext& context, std::uint64_t time) {
    if (context.process == nullptr) {
        CProcess*& process = m_document.m_mapProcesses[context.processID];
        if (process == nullptr) {
            m_document.m_listProcesses.push_back(std::make_unique<CProcess>(context.processID, time));
            process = m_document.m_listProcesses.back().get();
        }
        context.process = process;
    }
    return *context.process;
}

void CCommit::CommitToThread(RecordIndex record, RecordContext& context, LogKind kind,
                             std::int32_t returnCode, std::uint64_t time) {
    CProcess& process = context.process != nullptr ? *context.process : ProcessOf(context, time);
    const bool isCall = kind == LOG_CALL || kind == LOG_RETURN;
    CallLine call;
    // A kind with a case below stands in kFeedThread, or its records would not come here.
    const std::uint32_t table = kind == LOG_SQL ? m_records.TableKey(record) : 0;
    switch (kind) {
    case LOG_ERROR:
    case LOG_JDB_ERROR:
        process.m_listErrors.push_back(record);
        break;
    case LOG_SQL:
        process.m_pSQLAnalysis.AddStatement(m_records, record, table);
        break;
    case LOG_CACHE:
        if (m_settings.m_bCacheAnalysis) {
            process.m_pCacheAnalysis.AddLine(m_records, record);
        }
        break;
    case LOG_CALL:
    case LOG_RETURN:
        call = ReadCallLine(m_records, kind, m_records.Text(record));
        process.m_pBSFNAnalysis.AddCall(m_records, m_settings, record, call);
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
    thread.AddDetail(m_records, m_gapRule, m_document.m_listGaps, record, kind, time);

    // AddDetail turns a LOG_NONE into a LOG_GAP and leaves every other kind, so the kinds below still hold.
    switch (kind) {
    case LOG_ERROR:
    case LOG_JDB_ERROR:
        thread.m_listErrors.push_back(record);
        break;
    case LOG_SQL:
        thread.m_pSQLAnalysis.AddStatement(m_records, record, table);
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
        thread.m_pBSFNAnalysis.AddCall(m_records, m_settings, record, call);
    }
    if (returnCode > 0) {
        process.m_listErrors.push_back(record);
        thread.m_listErrors.push_back(record);
    }
}

float CCommit::Measure(RecordIndex pending, std::uint64_t endTime) {
    const float seconds = ElapsedSeconds(endTime, m_records.Time(pending));
    m_records.SetDuration(pending, seconds);
    return seconds;
}

void CCommit::CommitTaskToUser(RecordIndex record, RecordContext& context, LogKind kind, std::uint64_t time) {
    if (context.jasUser == nullptr) {
        const std::string_view name = m_records[record].m_strUser;
        CJASUser*& known = m_document.m_mapUsers[name];
        if (known == nullptr) {
            m_document.m_listUsers.push_back(std::make_unique<CJASUser>(std::string(name)));
            known = m_document.m_listUsers.back().get();
        }
        context.jasUser = known;
    }
    CJASUser& user = *context.jasUser;

    // Both kinds of task last until the user's next record, whatever it is.
    if (user.m_pPendingObject != kNoRecord) {
        user.m_pBSFNAnalysis.EndObjectCall(m_records, m_settings, record, user.m_nPendingFunction);
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
        user.m_pSQLAnalysis.AddStatement(m_records, record, m_records.TableKey(record));
        user.m_pPendingSQL = record;
        break;
    case LOG_OBJECT_CALL:
        user.m_nPendingFunction = user.m_pBSFNAnalysis.AddObjectCall(m_records, record);
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
