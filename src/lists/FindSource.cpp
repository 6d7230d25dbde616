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
    if (Session() != &session) {
        return;
    }
    const CDetailList& details = session.m_listDetails;
    std::size_t bytes = 0;
    for (const RecordIndex record : m_listRecords) {
        bytes += details.Text(record).size();
    }
    m_strMessages.reserve(bytes);
    m_listEnds.reserve(m_listRecords.size());
    m_listRowOwners.reserve(m_listRecords.size());
    std::vector<std::uint32_t> ownerOf; // by the number of a context, 1 more than the owner
    for (const RecordIndex record : m_listRecords) {
        m_strMessages.append(details.Text(record));
        m_listEnds.push_back(m_strMessages.size());
        const std::uint32_t context = details.ContextNumber(record);
        if (context >= ownerOf.size()) {
            ownerOf.resize(context + 1);
        }
        if (ownerOf[context] == 0) {
            const FindRow row{record};
            m_listOwners.push_back(
                {CellText(row, FindRow::OWNER, session), CellText(row, FindRow::THREAD, session)});
            ownerOf[context] = static_cast<std::uint32_t>(m_listOwners.size());
        }
        m_listRowOwners.push_back(ownerOf[context] - 1);
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

std::string CFindSource::Text(std::size_t row, int column) const {
    if (m_pSession != nullptr) {
        return Session() != nullptr ? CellText(FindRow{m_listRecords[row]}, column, *m_pSession)
                                    : std::string();
    }
    if (column != FindRow::MESSAGE) {
        const COwner& owner = m_listOwners[m_listRowOwners[row]];
        return column == FindRow::OWNER ? owner.m_strProcess : owner.m_strThread;
    }
    const std::size_t begin = row == 0 ? 0 : m_listEnds[row - 1];
    return m_strMessages.substr(begin, m_listEnds[row] - begin);
}

} // namespace carvelot
