// TimingGapsPane.h - the pane "Timing Gaps": where a thread fell silent for longer than the threshold.
#pragma once

#include "analysis/panes/ui/DockablePane.h"
#include "analysis/panes/ui/ListCtrl.h"

namespace carvelot {

class CTimingGapsPane : public CDockablePane {
    Q_OBJECT

public:
    CTimingGapsPane();

    CListCtrl& List() { return *m_pList; }
    void ClearList();
    QWidget* MainControl() const override { return m_pList; }

protected:
    void OnSize(int nWidth, int nHeight) override;

private:
    CListCtrl* m_pList;
};

} // namespace carvelot
