// RecordListPane.h - a pane that lists records of the session in front, of which a double click leads to one.
#pragma once

#include "lists/RecordSource.h"
#include "ui/kit/ListPane.h"
#include "ui/kit/Text.h"
#include "ui/session/SessionReference.h"

namespace carvelot {

template <class TRow> class CRecordListPane : public CListPane<TRow, CRecordSource<TRow>> {
    using CBase = CListPane<TRow, CRecordSource<TRow>>;

public:
    void ClearList() {
        CBase::ClearList();
        m_session = {};
    }
    // To be called before a session's records go: empties the list if it shows them.
    void LetGo(const CCarvelotDoc& session) {
        if (this->m_rows.Session() == &session) {
            ClearList();
        }
    }

protected:
    CRecordListPane(const QString& title, const QString& name) : CBase(title, name, {100, 100}) {}
    void AddList() {
        CBase::AddList();
        this->m_pList->m_fnOpenRow = [this](int row) {
            // The way to the record can refill this list: what the row refers to is taken first.
            const CSessionReference session = m_session;
            session.ShowDetail(this->m_rows.m_listRows[this->SourceRow(row)].m_pRecord);
        };
    }
    void ShowRecords(CSessionDocument& document, std::vector<TRow> rows) {
        const CCarvelotDoc& session = document.Session();
        CBase::ShowRows(session, std::move(rows));
        this->m_pList->Model().SetColumnTitle(0, ToQString(OwnerTitle<TRow>(session.m_nLogFormat)));
        m_session = CSessionReference(document);
    }

private:
    CSessionReference m_session; // whose records the rows are
};

} // namespace carvelot
