#include "ui/session/ThreadView.h"

#include "trees/ThreadTree.h"
#include "ui/kit/Icons.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/session/ChildFrame.h"
#include "ui/session/DetailView.h"
#include "ui/session/MessageDlg.h"
#include "ui/session/SessionDocument.h"
#include "ui/session/SessionPanes.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>

namespace carvelot {

namespace {

QList<QIcon> TreeImages() {
    QList<QIcon> listImages;
    LoadImageStrip("TreeImages", listImages);
    return listImages;
}

} // namespace

CThreadView::CThreadView(CSessionDocument& document)
    : CTreeCtrl(tr("Processes and threads")), m_document(document),
      m_model(document.Session(), TreeImages()) {
    setModel(&m_model);
    document.Session().m_pThreadView = this;
}

CThreadView::~CThreadView() {
    m_document.Session().m_pThreadView = nullptr;
    setModel(nullptr); // the model goes before the view's base
}

void CThreadView::ClearTree() {
    // The records go next.
    if (CSessionPanes* const pPanes = SessionPanes())
        pPanes->LetGo(m_document.Session());
    m_model.Clear();
}

void CThreadView::FillProcessTree() {
    setUpdatesEnabled(false);
    m_model.ShowProcesses();
    expandAll();
    setUpdatesEnabled(true);
}

void CThreadView::FillUserTree() {
    setUpdatesEnabled(false);
    m_model.ShowUsers();
    setUpdatesEnabled(true);
}

bool CThreadView::IsProcessSelected(std::uint32_t processID) const {
    const CProcess* pProcess = m_model.Process(SelectedIndex());
    return pProcess != nullptr && pProcess->m_nProcessID == processID;
}

void CThreadView::SelectThread(const CThread& thread) { SelectIndex(m_model.IndexOf(thread)); }

void CThreadView::SelectUser(const CJASUser& user) { SelectIndex(m_model.IndexOf(user)); }

CDetailView* CThreadView::DetailView() const {
    return static_cast<CDetailView*>(m_document.Session().m_pDetailView);
}

void CThreadView::OnSelectionChanged() {
    CDetailView* const pDetails = DetailView();
    if (pDetails == nullptr)
        return;
    const Selection selection = m_model.Selected(SelectedIndex());
    if (selection.What() != Selection::Kind::Nothing)
        m_document.SetTitle(ToQString(TitleOf(m_document.Session(), selection)));
    pDetails->Show(selection);
    RefreshPanes();
}

void CThreadView::RefreshPanes() {
    if (CSessionPanes* const pPanes = SessionPanes())
        pPanes->Show(m_document, m_model.Selected(SelectedIndex()));
}

void CThreadView::mousePressEvent(QMouseEvent* pEvent) {
    if (pEvent->button() != Qt::RightButton) {
        CTreeCtrl::mousePressEvent(pEvent);
        return;
    }
    pEvent->accept();
    const QModelIndex index = indexAt(pEvent->position().toPoint());
    if (index.parent().isValid())
        ShowMenu(index, pEvent->globalPosition().toPoint());
}

void CThreadView::contextMenuEvent(QContextMenuEvent* pEvent) {
    // The mouse has had its menu when the button went down.
    pEvent->accept();
    const QModelIndex index = SelectedIndex();
    if (pEvent->reason() == QContextMenuEvent::Keyboard && index.parent().isValid())
        ShowMenu(index, MenuPoint(index));
}

void CThreadView::ShowMenu(const QModelIndex& index, const QPoint& screen) {
    SelectIndex(index);
    // By value: the dialog runs a message loop of its own, in which the session may be closed.
    const CThread* const pThread = m_model.Thread(index);
    if (pThread == nullptr)
        return;
    const std::uint32_t nProcess = pThread->m_nProcessID;
    const std::uint32_t nThread = pThread->m_nThreadID;
    const std::string strLogPath = m_document.Session().m_strLogPath;
    QMenu menu;
    const QAction* const pWrite = menu.addAction(tr("Write Message"));
    if (UserInterface().RunMenu(menu, screen) == pWrite)
        WriteTraceMessage(strLogPath, nProcess, nThread);
}

} // namespace carvelot
