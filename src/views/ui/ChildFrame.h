// ChildFrame.h - the window of one session: thread tree on the left, detail tree on the right.
#pragma once

#include "shell/ui/Document.h"

#include <QSplitter>
#include <QTreeView>

namespace carvelot {

class CSessionDocument;

class CChildFrame : public CMDIChildWnd {
    Q_OBJECT

public:
    explicit CChildFrame(CSessionDocument& document);

    CSessionDocument& SessionDocument() const { return m_document; }
    QTreeView& ThreadTree() const { return *m_pThreadTree; }
    QTreeView& DetailTree() const { return *m_pDetailTree; }

    QList<QWidget*> WindowPanes() const override { return {m_pThreadTree, m_pDetailTree}; }
    // Empties the Find list when its rows are this session's, and all shared panes.
    void OnClose() override;

private:
    CSessionDocument& m_document;
    QSplitter* m_wndSplitter;
    QTreeView* m_pThreadTree;
    QTreeView* m_pDetailTree;
};

} // namespace carvelot
