#include "views/ui/ThreadView.h"

#include "resources/ui/Icons.h"
#include "shell/ui/MainFrame.h"
#include "shell/ui/Text.h"
#include "shell/ui/UserInterface.h"
#include "views/ThreadTree.h"
#include "views/ui/ChildFrame.h"
#include "views/ui/DetailView.h"
#include "views/ui/MessageDlg.h"
#include "views/ui/SessionDocument.h"

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
    if (CMainFrame* pMain = MainFrame())
        pMain->LetGo(m_document.Session());
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
    const CCarvelotDoc& session = m_document.Session();
    CDetailView* pDetails = DetailView();
    const QModelIndex index = SelectedIndex();
    if (pDetails == nullptr)
        return;
    if (const CProcess* pProcess = m_model.Process(index)) {
        pDetails->SetRedraw(false);
        pDetails->ResetTree();
        m_document.SetTitle(ToQString(ProcessTitle(session, *pProcess)));
        // One thread after the other: they are not merged by time.
        for (const auto& pThread : pProcess->m_listThreads)
            pDetails->FillDetails(false, pThread->m_listDetails);
        pDetails->SetRedraw(true);
    } else if (const CThread* pThread = m_model.Thread(index)) {
        m_document.SetTitle(ToQString(ThreadTitle(session, *pThread)));
        pDetails->FillDetails(true, pThread->m_listDetails);
    } else if (const CJASUser* pUser = m_model.User(index)) {
        m_document.SetTitle(ToQString(UserTitle(session, *pUser)));
        pDetails->FillDetails(true, pUser->m_listDetails);
    }
    RefreshPanes();
}

void CThreadView::RefreshPanes() {
    CMainFrame* pMain = MainFrame();
    if (pMain == nullptr)
        return;
    const CCarvelotDoc& session = m_document.Session();
    pMain->m_wndFindPane.DressForUsers(session.m_nLogFormat == LOG_FORMAT_JAS);
    const QModelIndex index = SelectedIndex();
    if (const CJASUser* pUser = m_model.User(index)) {
        pMain->m_wndSQLPane.FillList(pUser->m_pSQLAnalysis);
        pMain->m_wndBSFNPane.FillList(pUser->m_pBSFNAnalysis);
        const QString strCaption = ToQString(UserCaption(*pUser));
        pMain->m_wndBSFNPane.SetCaption(strCaption);
        pMain->m_wndSQLPane.SetCaption(strCaption);
        pMain->m_wndCachePane.SetCaption(strCaption);
        pMain->m_wndLongTasksPane.SetCaption(strCaption);
        pMain->m_wndErrorPane.SetCaption(strCaption);
        pMain->m_wndLongTasksPane.FillList(m_document, pUser->m_pBSFNAnalysis, pUser->m_pSQLAnalysis);
        pMain->m_wndErrorPane.FillList(m_document, pUser->m_listErrors);
        pMain->m_wndTimingGapsPane.FillList(m_document);
        pMain->m_wndCachePane.ClearTree();
    } else if (const CProcess* pProcess = m_model.Process(index)) {
        pMain->m_wndSQLPane.FillList(pProcess->m_pSQLAnalysis);
        pMain->m_wndCachePane.FillTree(m_document, pProcess->m_pCacheAnalysis);
        pMain->m_wndBSFNPane.FillList(pProcess->m_pBSFNAnalysis);
        pMain->m_wndLongTasksPane.FillList(m_document, pProcess->m_pBSFNAnalysis, pProcess->m_pSQLAnalysis);
        pMain->m_wndErrorPane.FillList(m_document, pProcess->m_listErrors);
        pMain->m_wndTimingGapsPane.FillList(m_document);
        const QString strCaption = ToQString(ProcessCaption(*pProcess));
        pMain->m_wndBSFNPane.SetCaption(strCaption);
        pMain->m_wndSQLPane.SetCaption(strCaption);
        pMain->m_wndCachePane.SetCaption(strCaption);
        pMain->m_wndLongTasksPane.SetCaption(strCaption);
        pMain->m_wndErrorPane.SetCaption(strCaption);
    } else if (const CThread* pThread = m_model.Thread(index)) {
        // A thread has no caches and no gaps of its own: those two panes stay as they are.
        pMain->m_wndSQLPane.FillList(pThread->m_pSQLAnalysis);
        pMain->m_wndBSFNPane.FillList(pThread->m_pBSFNAnalysis);
        pMain->m_wndLongTasksPane.FillList(m_document, pThread->m_pBSFNAnalysis, pThread->m_pSQLAnalysis);
        pMain->m_wndErrorPane.FillList(m_document, pThread->m_listErrors);
        const QString strCaption = ToQString(ThreadCaption(*pThread));
        pMain->m_wndBSFNPane.SetCaption(strCaption);
        pMain->m_wndSQLPane.SetCaption(strCaption);
        pMain->m_wndLongTasksPane.SetCaption(strCaption);
        pMain->m_wndErrorPane.SetCaption(strCaption);
    } else {
        pMain->ClearPanes();
    }
    pMain->m_pPanesOwner = m_document.GetFrame();
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
