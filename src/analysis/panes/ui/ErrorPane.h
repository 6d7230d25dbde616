// ErrorPane.h - the pane "Errors/Warnings": the errors and warnings of the selection.
#pragma once

#include "analysis/panes/ui/DockablePane.h"
#include "analysis/panes/ui/ListCtrl.h"

namespace carvelot {

class CErrorPane : public CDockablePane {
    Q_OBJECT

public:
    CErrorPane();

    CListCtrl& List() { return *m_pList; }
    void ClearList();
    QWidget* MainControl() const override { return m_pList; }

protected:
    void OnSize(int nWidth, int nHeight) override;

private:
    CListCtrl* m_pList;
};

} // namespace carvelot
