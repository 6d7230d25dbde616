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
    m_listRowOwners.reserve(m_listRecords.size());
    std::vector<std::uint32_t> listOwnerOf; // by the number of a context, 1 more than the owner
    for (const RecordIndex record : m_listRecords) {
        m_strMessages.append(listDetails.Text(record));
        m_listEnds.push_back(m_strMessages.size());
        const std::uint32_t nContext = listDetails.ContextNumber(record);
        if (nContext >= listOwnerOf.size())
            listOwnerOf.resize(nContext + 1);
        if (listOwnerOf[nContext] == 0) {
            const FindRow row{record};
            m_listOwners.push_back(
                {CellText(row, FindRow::OWNER, session), CellText(row, FindRow::THREAD, session)});
            listOwnerOf[nContext] = static_cast<std::uint32_t>(m_listOwners.size());
        }
        m_listRowOwners.push_back(listOwnerOf[nContext] - 1);
    }
    m_pSession = nullptr;
    Release(m_listRecords);
}

void CFindSource::Clear() {
    m_pSession = nullptr;
    Release(m_listRecords);
    Release(m_strMessages);
    Release(m_listEnds);
    Release(m_listRowOwners);
    Release(m_listOwners);
}

const CCarvelotDoc* CFindSource::Session() const {
    return m_pSession != nullptr && m_pSession->LoadIdentity() == m_nLoadIdentity ? m_pSession : nullptr;
}

std::size_t CFindSource::RowCount() const {
    return m_pSession != nullptr ? m_listRecords.size() : m_listEnds.size();
}

std::string CFindSource::Text(std::size_t nRow, int nColumn) const {
    if (m_pSession != nullptr)
        return Session() != nullptr ? CellText(FindRow{m_listRecords[nRow]}, nColumn, *m_pSession)
                                    : std::string();
    if (nColumn != FindRow::MESSAGE) {
        const COwner& owner = m_listOwners[m_listRowOwners[nRow]];
        return nColumn == FindRow::OWNER ? owner.m_strProcess : owner.m_strThread;
    }
    const std::size_t nBegin = nRow == 0 ? 0 : m_listEnds[nRow - 1];
    return m_strMessages.substr(nBegin, m_listEnds[nRow] - nBegin);
}

} // namespace carvelot
