// ChildFrame.h - the window of one session: thread tree on the left, detail tree on the right.
#pragma once

#include "ui/kit/Document.h"
#include "ui/session/DetailView.h"
#include "ui/session/ThreadView.h"

#include <QSplitter>

namespace carvelot {

class CSessionDocument;

class CChildFrame : public CMDIChildWnd {
    Q_OBJECT

public:
    explicit CChildFrame(CSessionDocument& document);

    CSessionDocument& SessionDocument() const { return m_document; }
    CThreadView& ThreadView() const { return *m_pThreadView; }
    CDetailView& DetailView() const { return *m_pDetailView; }

    QList<QWidget*> WindowPanes() const override { return {m_pThreadView, m_pDetailView}; }
    // Fills the shared panes from this session's selection.
    void OnSetFocus() override;
    // Empties the Find list when its rows are this session's, and all shared panes.
    void OnClose() override;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    CSessionDocument& m_document;
    QSplitter* m_wndSplitter;
    CThreadView* m_pThreadView;
    CDetailView* m_pDetailView;
    bool m_bDragged = false; // the splitter moves under the user's hand
};

} // namespace carvelot
