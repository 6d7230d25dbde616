#include "session/Thread.h"

namespace carvelot {

CGapRule::CGapRule(float threshold) : m_fThreshold(threshold) {
    // A millionth below the threshold leaves room for both roundings of 32-bit seconds.
    const double surely = static_cast<double>(threshold) * 999'999.0 - 1.0;
    constexpr double most = 1e15;
    if (surely > 0) {
        m_nSurelyNone = static_cast<std::uint64_t>(surely < most ? surely : most);
    }
}

void CThread::AddAfterStep(CDetailList& details, const CGapRule& rule, std::vector<RecordIndex>& gaps,
                           RecordIndex record, LogKind kind, std::uint64_t time) {
    const bool lastIsNone = m_nLastKind == LOG_NONE;
    m_nLastKind = kind;
    if (!m_listDetails.empty() && m_nLastTime != 0) {
        float gap = 0;
        if (rule.IsGap(time, m_nLastTime, gap)) {
            if (lastIsNone) {
                details.SetKind(m_listDetails.back(), LOG_GAP);
            }
            if (kind == LOG_NONE) {
                details.SetKind(record, LOG_GAP);
                m_nLastKind = LOG_GAP;
            }
            details.SetGap(record, gap);
            gaps.push_back(record);
        } else if (lastIsNone) {
            m_listDetails.back() = record;
            m_nLastTime = time;
            return;
        }
    }
    m_listDetails.push_back(record);
    m_nLastTime = time;
}

} // namespace carvelot
