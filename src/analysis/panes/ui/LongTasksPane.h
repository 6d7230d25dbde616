// LongTasksPane.h - the pane "Long Tasks": calls and statements of the selection that took longer than the threshold.
#pragma once

#include "analysis/panes/ui/DockablePane.h"
#include "analysis/panes/ui/ListCtrl.h"

namespace carvelot {

class CLongTasksPane : public CDockablePane {
    Q_OBJECT

public:
    CLongTasksPane();

    CListCtrl& List() { return *m_pList; }
    void ClearList();
    QWidget* MainControl() const override { return m_pList; }

protected:
    void OnSize(int nWidth, int nHeight) override;

private:
    CListCtrl* m_pList;
};

} // namespace carvelot
