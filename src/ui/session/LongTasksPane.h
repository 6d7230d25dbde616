// LongTasksPane.h - the pane "Long Tasks": calls and statements of the selection that took longer than the
// threshold.
#pragma once

#include "lists/RowSource.h"
#include "ui/kit/DockablePane.h"
#include "ui/kit/ListCtrl.h"
#include "ui/session/SessionReference.h"

namespace carvelot {

class CLongTasksPane : public CDockablePane {
    Q_OBJECT

public:
    CLongTasksPane();

    CListCtrl& List() { return *m_pList; }
    // Longest first.
    void FillList(CSessionDocument& document, const CBSFNAnalysis& functions, const CSQLAnalysis& statements);
    void ClearList();
    // To be called before a session's records go: empties the list if it shows them.
    void LetGo(const CCarvelotDoc& session);
    QWidget* MainControl() const override { return m_pList; }

protected:
    void OnSize(int nWidth, int nHeight) override;

private:
    void ShowRows(CSessionDocument& document, std::vector<TaskRow> listRows);

    CRecordSource<TaskRow> m_rows;
    CSessionReference m_session; // whose records the rows are
    CListCtrl* m_pList;
};

} // namespace carvelot
