// A thread of a process: the records worth showing, and what they add up to.
#pragma once

#include "analysis/BSFNAnalysis.h"
#include "analysis/SQLAnalysis.h"

#include <cstdint>
#include <vector>

namespace carvelot {

// Tells silences from steps in time that nobody cares about, which nearly all are.
class CGapRule {
public:
    explicit CGapRule(float threshold);

    // Whether a step is no silence for sure.
    bool IsSurelyNone(std::uint64_t time, std::uint64_t last) const {
        // Out of odd stamps a time can be any 64-bit number: a step back across 0 is still a step back.
        return time >= last && time - last < m_nSurelyNone;
    }
    // Whether a step is a silence; if so, `seconds` is set.
    bool IsGap(std::uint64_t time, std::uint64_t last, float& seconds) const {
        seconds = ElapsedSeconds(time, last);
        return seconds > m_fThreshold;
    }

private:
    float m_fThreshold;              // any number: the stored setting is taken as it is
    std::uint64_t m_nSurelyNone = 0; // shorter steps, in microseconds, are safely below the threshold
};

class CThread {
public:
    CThread(std::uint32_t processID, std::uint32_t id, std::uint64_t startTime)
        : m_nThreadID(id), m_nProcessID(processID), m_nStartTime(startTime) {}

    // Files a record: a LOG_NONE record stays only as the last of the list or beside a silence longer than
    // the threshold, where it becomes a LOG_GAP. The record behind a silence is appended to `gaps`.
    void AddDetail(CDetailList& details, const CGapRule& rule, std::vector<RecordIndex>& gaps,
                   RecordIndex record, LogKind kind, std::uint64_t time) {
        if (!rule.IsSurelyNone(time, m_nLastTime) || m_nLastTime == 0) {
            AddAfterStep(details, rule, gaps, record, kind, time);
        } else {
            AddDirectly(record, kind, time);
        }
    }

    std::vector<RecordIndex> m_listDetails;
    std::uint32_t m_nThreadID;
    std::uint32_t m_nProcessID;
    CSQLAnalysis m_pSQLAnalysis;
    CBSFNAnalysis m_pBSFNAnalysis;
    std::uint64_t m_nStartTime;
    std::uint64_t m_nEndTime = 0;
    RecordIndex m_pPendingSQL = kNoRecord; // the latest SQL record, measured by every end that follows it
    std::vector<RecordIndex> m_listErrors; // in log order

private:
    void AddAfterStep(CDetailList& details, const CGapRule& rule, std::vector<RecordIndex>& gaps,
                      RecordIndex record, LogKind kind, std::uint64_t time);
    void AddDirectly(RecordIndex record, LogKind kind, std::uint64_t time) {
        if (m_nLastKind == LOG_NONE) {
            m_listDetails.back() = record;
        } else {
            m_listDetails.push_back(record);
        }
        m_nLastKind = kind;
        m_nLastTime = time;
    }

    std::uint64_t m_nLastTime = 0; // of the last record of m_listDetails
    LogKind m_nLastKind = LOG_NONE;
};

} // namespace carvelot
