#include "ui/session/LongTasksPane.h"

#include "ui/kit/Text.h"

namespace carvelot {

CLongTasksPane::CLongTasksPane()
    : CDockablePane(tr("Long Tasks"), QStringLiteral("LongTasksPane"), {100, 100}) {
    AddCaption();
    m_pList = new CListCtrl(ColumnsOf<TaskRow>(), windowTitle(), Client());
    m_pList->Model().SetRightAligned(2);
    m_pList->m_fnOpenRow = [this](int nRow) {
        // The way to the record can refill this list: what the row refers to is taken first.
        const CSessionReference session = m_session;
        session.ShowDetail(m_rows.m_listRows[m_pList->Model().SourceRow(nRow)].m_pRecord);
    };
}

void CLongTasksPane::FillList(CSessionDocument& document, const CBSFNAnalysis& functions,
                              const CSQLAnalysis& statements) {
    ShowRows(document, MakeTaskRows(document.Session(), functions, statements));
    m_pList->SortBy(2, Qt::DescendingOrder);
}

void CLongTasksPane::ShowRows(CSessionDocument& document, std::vector<TaskRow> listRows) {
    ClearList();
    m_pList->Model().SetColumnTitle(0, ToQString(ProcessOrUserTitle(document.Session().m_nLogFormat)));
    m_session = CSessionReference(document);
    m_rows.Show(document.Session(), std::move(listRows));
    m_pList->Fill(&m_rows);
}

void CLongTasksPane::ClearList() {
    m_pList->Fill(nullptr);
    m_session = {};
    m_rows.Clear();
}

void CLongTasksPane::LetGo(const CCarvelotDoc& session) {
    if (m_rows.Session() == &session)
        ClearList();
}

void CLongTasksPane::OnSize(int nWidth, int nHeight) { LayOutBelowCaption(m_pList, nWidth, nHeight); }

} // namespace carvelot
