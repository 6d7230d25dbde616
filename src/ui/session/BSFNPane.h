// BSFNPane.h - the pane "BSFN Calls": the business function statistics of the selection.
#pragma once

#include "lists/RowSource.h"
#include "ui/kit/DockablePane.h"
#include "ui/kit/ListCtrl.h"

namespace carvelot {

class CBSFNPane : public CDockablePane {
    Q_OBJECT

public:
    CBSFNPane();

    CListCtrl& List() { return *m_pList; }
    void FillList(const CBSFNAnalysis& analysis);
    void ClearList();
    QWidget* MainControl() const override { return m_pList; }

protected:
    void OnSize(int nWidth, int nHeight) override;

private:
    CRowSource<BSFNRow> m_rows;
    CListCtrl* m_pList;
};

} // namespace carvelot
