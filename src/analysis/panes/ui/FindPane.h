// FindPane.h - the pane "Find": a search through all records of the session in front.
#pragma once

#include "analysis/panes/ui/DockablePane.h"
#include "analysis/panes/ui/ListCtrl.h"
#include "shell/ui/Document.h"

#include <QPointer>
#include <QToolBar>

#include <functional>

namespace carvelot {

class CFindPane : public CDockablePane {
    Q_OBJECT

public:
    CFindPane();

    CListCtrl& List() { return *m_pList; }
    QLineEdit& SearchEdit() { return *m_pSearch; }
    void ClearList();
    // Titles and columns for a log of processes and threads, or for one of users.
    void DressForUsers(bool bUsers);
    QWidget* MainControl() const override { return m_pSearch; }

    // Whose records the rows are.
    QPointer<CDocument> m_pSearched;

    // The search that the "Find" button and Enter run.
    std::function<void()> m_fnFind;

protected:
    void OnSize(int nWidth, int nHeight) override;

private:
    QToolBar* m_pToolBar; // the CFindPaneToolBar
    QLineEdit* m_pSearch;
    CListCtrl* m_pList;
};

} // namespace carvelot
