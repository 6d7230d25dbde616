#include "analysis/panes/FindSource.h"

#include "analysis/panes/PaneRows.h"

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
    m_listEnds.reserve(m_listRecords.size() * kColumns);
    for (const RecordIndex record : m_listRecords) {
        const FindRow row = MakeFindRow(session, record);
        for (int nColumn = 0; nColumn < static_cast<int>(kColumns); ++nColumn) {
            m_strTexts.append(row.Text(nColumn));
            m_listEnds.push_back(m_strTexts.size());
        }
    }
    m_pSession = nullptr;
    m_listRecords = {};
}

void CFindSource::Clear() {
    m_pSession = nullptr;
    m_listRecords = {};
    m_strTexts = {};
    m_listEnds = {};
}

const CCarvelotDoc* CFindSource::Session() const {
    return m_pSession != nullptr && m_pSession->LoadIdentity() == m_nLoadIdentity ? m_pSession : nullptr;
}

std::size_t CFindSource::RowCount() const {
    return m_pSession != nullptr ? m_listRecords.size() : m_listEnds.size() / kColumns;
}

std::string CFindSource::Text(std::size_t nRow, int nColumn) const {
    if (m_pSession != nullptr)
        return Session() != nullptr ? MakeFindRow(*m_pSession, m_listRecords[nRow]).Text(nColumn)
                                    : std::string();
    const std::size_t nText = nRow * kColumns + static_cast<std::size_t>(nColumn);
    const std::size_t nBegin = nText == 0 ? 0 : m_listEnds[nText - 1];
    return m_strTexts.substr(nBegin, m_listEnds[nText] - nBegin);
}

} // namespace carvelot
