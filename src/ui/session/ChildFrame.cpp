#include "ui/session/ChildFrame.h"

#include "settings/AppSettings.h"
#include "ui/kit/MainWindow.h"
#include "ui/session/SessionDocument.h"
#include "ui/session/SessionPanes.h"

#include <QEvent>
#include <QVBoxLayout>

#include <utility>

namespace carvelot {

namespace {

constexpr char kThreadTreeWidth[] = "ThreadTreeWidth";
constexpr int kInitialWidth = 200;
constexpr int kMostWidth = 10000; // a stored width beyond any screen is none

int StoredThreadTreeWidth() {
    const int width = GetWorkspaceInt(kThreadTreeWidth, kInitialWidth);
    return width > 0 && width <= kMostWidth ? width : kInitialWidth;
}

} // namespace

CChildFrame::CChildFrame(CSessionDocument& document)
    : CMDIChildWnd(document), m_document(document), m_wndSplitter(new QSplitter(Qt::Horizontal)),
      m_pThreadView(new CThreadView(document)), m_pDetailView(new CDetailView(document)) {
    m_wndSplitter->setChildrenCollapsible(false);
    m_wndSplitter->addWidget(m_pThreadView);
    m_wndSplitter->addWidget(m_pDetailView);
    // The thread tree keeps its width when the window grows; the rest is the detail tree's.
    m_wndSplitter->setStretchFactor(0, 0);
    m_wndSplitter->setStretchFactor(1, 1);
    m_wndSplitter->setSizes({StoredThreadTreeWidth(), 1000});
    m_wndSplitter->handle(1)->installEventFilter(this);
    connect(m_wndSplitter, &QSplitter::splitterMoved, this, [this] { m_bDragged = true; });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_wndSplitter);
    for (QAbstractScrollArea* view :
         std::initializer_list<QAbstractScrollArea*>{m_pThreadView, m_pDetailView}) {
        view->installEventFilter(this);
        view->viewport()->installEventFilter(this);
    }
}

void CChildFrame::OnSetFocus() { m_pThreadView->RefreshPanes(); }

void CChildFrame::OnClose() {
    CSessionPanes* const panes = SessionPanes();
    if (panes == nullptr) {
        return;
    }
    if (panes->m_wndFindPane.Searched() == &m_document) {
        panes->m_wndFindPane.ClearList();
    }
    panes->ClearPanes();
}

bool CChildFrame::eventFilter(QObject* object, QEvent* event) {
    if (object == m_wndSplitter->handle(1)) {
        // What the user wished is the width at the end of a drag.
        if (event->type() == QEvent::MouseButtonRelease && std::exchange(m_bDragged, false)) {
            WriteWorkspaceInt(kThreadTreeWidth, m_pThreadView->width());
        }
        return false;
    }
    // The closing of another session has emptied the panes under this one: work in this window fills them
    // again.
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::MouseButtonPress) {
        const CMainWindow* const main = MainWindow();
        if (main != nullptr && main->ActiveChild() == this && SessionPanes()->m_pPanesOwner != this) {
            m_pThreadView->RefreshPanes();
        }
    }
    return CMDIChildWnd::eventFilter(object, event);
}

} // namespace carvelot
