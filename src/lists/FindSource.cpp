#include "lists/FindSource.h"

#include "lists/PaneRows.h"
#include "text/Release.h"

namespace carvelot {

void CFindSource::Show(const CCarvelotDoc& session, std::vector<RecordIndex> records) {
    Clear();
    m_pSession = &session;
    m_nLoadIdentity = session.LoadIdentity();
    m_listRecords = std::move(records);
}

void CFindSource::LetGo(const CCarvelotDoc& session) {
    if (Session() != &session)
        return;
    const CDetailList& listDetails = session.m_listDetails;
    std::size_t nBytes = 0;
    for (const RecordIndex record : m_listRecords)
        nBytes += listDetails.Text(record).size();
    m_strMessages.reserve(nBytes);
    m_listEnds.reserve(m_listRecords.size());
    m_listRowHeads.reserve(m_listRecords.size());
    std::vector<std::uint32_t> listHeadOf; // by the number of a context, 1 more than the head
    for (const RecordIndex record : m_listRecords) {
        m_strMessages.append(listDetails.Text(record));
        m_listEnds.push_back(m_strMessages.size());
        const std::uint32_t nContext = listDetails.ContextNumber(record);
        if (nContext >= listHeadOf.size())
            listHeadOf.resize(nContext + 1);
        if (listHeadOf[nContext] == 0) {
            const FindRow row{record};
            m_listHeads.push_back({row.Text(session, 0), row.Text(session, 1)});
            listHeadOf[nContext] = static_cast<std::uint32_t>(m_listHeads.size());
        }
        m_listRowHeads.push_back(listHeadOf[nContext] - 1);
    }
    m_pSession = nullptr;
    Release(m_listRecords);
}

void CFindSource::Clear() {
    m_pSession = nullptr;
    Release(m_listRecords);
    Release(m_strMessages);
    Release(m_listEnds);
    Release(m_listRowHeads);
    Release(m_listHeads);
}

const CCarvelotDoc* CFindSource::Session() const {
    return m_pSession != nullptr && m_pSession->LoadIdentity() == m_nLoadIdentity ? m_pSession : nullptr;
}

std::size_t CFindSource::RowCount() const {
    return m_pSession != nullptr ? m_listRecords.size() : m_listEnds.size();
}

std::string CFindSource::Text(std::size_t nRow, int nColumn) const {
    if (m_pSession != nullptr)
        return Session() != nullptr ? FindRow{m_listRecords[nRow]}.Text(*m_pSession, nColumn) : std::string();
    if (nColumn != kMessageColumn) {
        const CHead& head = m_listHeads[m_listRowHeads[nRow]];
        return nColumn == 0 ? head.m_strProcess : head.m_strThread;
    }
    const std::size_t nBegin = nRow == 0 ? 0 : m_listEnds[nRow - 1];
    return m_strMessages.substr(nBegin, m_listEnds[nRow] - nBegin);
}

} // namespace carvelot
