// SQLPane.h - the pane "SQL Table Access": how often each table was read and written by the selection.
#pragma once

#include "lists/RowSource.h"
#include "ui/kit/DockablePane.h"
#include "ui/kit/ListCtrl.h"

namespace carvelot {

class CSQLPane : public CDockablePane {
    Q_OBJECT

public:
    CSQLPane();

    CListCtrl& List() { return *m_pList; }
    void FillList(const CSQLAnalysis& analysis);
    void ClearList();
    QWidget* MainControl() const override { return m_pList; }

protected:
    void OnSize(int nWidth, int nHeight) override;

private:
    CRowSource<TableRow> m_rows;
    CListCtrl* m_pList;
};

} // namespace carvelot
