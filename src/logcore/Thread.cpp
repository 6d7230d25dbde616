#include "logcore/Thread.h"

namespace carvelot {

void CThread::AddDetail(CDetailList& details, const AnalysisSettings& settings,
                        std::vector<RecordIndex>& gaps, RecordIndex record, std::uint64_t time) {
    if (!m_listDetails.empty() && m_nLastTime != 0) {
        const RecordIndex last = m_listDetails.back();
        const float gap = ElapsedSeconds(time, m_nLastTime);
        if (gap > settings.m_fThreshold) {
            if (details.Kind(last) == LOG_NONE) {
                details.SetKind(last, LOG_GAP);
            }
            if (details.Kind(record) == LOG_NONE) {
                details.SetKind(record, LOG_GAP);
            }
            details.SetGap(record, gap);
            gaps.push_back(record);
        } else if (details.Kind(last) == LOG_NONE) {
            m_listDetails.pop_back();
        }
    }
    m_listDetails.push_back(record);
    m_nLastTime = time;
}

} // namespace carvelot
