// Enters the records of a load into their session's model: under process and thread, under a user, and into
// every analysis that they feed.
#pragma once

#include "records/AnalysisSettings.h"
#include "session/CarvelotDoc.h"

#include <cstdint>

namespace carvelot {

// For one load, by the settings at its start.
class CCommit {
public:
    CCommit(CCarvelotDoc& document, const AnalysisSettings& settings)
        : m_document(document), m_records(document.m_listDetails), m_settings(settings),
          m_gapRule(settings.m_fThreshold) {}

    // Each files a record that stands in m_listDetails, its context, kind, return code and time at hand.
    void CommitDetail(RecordIndex record, RecordContext& context, LogKind kind, std::int32_t returnCode,
                      std::uint64_t time) {
        if (!kFeedThread.Has(kind) && context.thread != nullptr) {
            context.thread->AddDetail(m_records, m_gapRule, m_document.m_listGaps, record, kind, time);
        } else {
            CommitToThread(record, context, kind, returnCode, time);
        }
    }
    void CommitToUser(RecordIndex record, RecordContext& context, LogKind kind, std::uint64_t time) {
        CJASUser* const user = context.jasUser;
        if (!kFeedUser.Has(kind) && user != nullptr && user->m_pPendingObject == kNoRecord &&
            user->m_pPendingSQL == kNoRecord) {
            user->m_listDetails.push_back(record);
        } else {
            CommitTaskToUser(record, context, kind, time);
        }
    }

private:
    // The kinds of which more is known than that they are one of the thread's or user's records. Only a
    // LOG_RETURN has a return code.
    static constexpr CKindSet kFeedThread{LOG_ERROR, LOG_JDB_ERROR, LOG_SQL,   LOG_SQL_DONE,
                                          LOG_CACHE, LOG_CALL,      LOG_RETURN};
    static constexpr CKindSet kFeedUser{LOG_SQL, LOG_OBJECT_CALL, LOG_WARN, LOG_SEVERE};

    void CommitToThread(RecordIndex record, RecordContext& context, LogKind kind, std::int32_t returnCode,
                        std::uint64_t time);
    void CommitTaskToUser(RecordIndex record, RecordContext& context, LogKind kind, std::uint64_t time);
    // Sets the duration of a record from its own time to `endTime`.
    float Measure(RecordIndex pending, std::uint64_t endTime);
    CProcess& ProcessOf(RecordContext& context, std::uint64_t time);

    CCarvelotDoc& m_document;
    CDetailList& m_records;
    const AnalysisSettings& m_settings;
    CGapRule m_gapRule;
};

} // namespace carvelot
