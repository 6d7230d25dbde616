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
    QList<QIcon> images;
    LoadImageStrip("TreeImages", images);
    return images;
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
    emit m_document.RecordsGo();
    if (CSessionPanes* const panes = SessionPanes()) {
        panes->LetGo(m_document.Session());
    }
    m_model.Clear();
}

void CThreadView::FillProcessTree() {
    setUpdatesEnabled(false);
    m_model.ShowProcesses();
    expandAll();
    setUpdatesEnabled(true);
    emit m_document.RecordsCame();
}

void CThreadView::FillUserTree() {
    setUpdatesEnabled(false);
    m_model.ShowUsers();
    setUpdatesEnabled(true);
    emit m_document.RecordsCame();
}

bool CThreadView::IsProcessSelected(std::uint32_t processID) const {
    const CProcess* process = m_model.Process(SelectedIndex());
    return process != nullptr && process->m_nProcessID == processID;
}

void CThreadView::SelectThread(const CThread& thread) { SelectIndex(m_model.IndexOf(thread)); }

void CThreadView::SelectUser(const CJASUser& user) { SelectIndex(m_model.IndexOf(user)); }

CDetailView* CThreadView::DetailView() const {
    return static_cast<CDetailView*>(m_document.Session().m_pDetailView);
}

void CThreadView::OnSelectionChanged() {
    CDetailView* const details = DetailView();
    if (details == nullptr) {
        return;
    }
    const Selection selection = m_model.Selected(SelectedIndex());
    if (selection.What() != Selection::Kind::Nothing) {
        m_document.SetTitle(ToQString(TitleOf(m_document.Session(), selection)));
    }
    details->Show(selection);
    RefreshPanes();
    emit m_document.SelectionChanged(selection);
}

void CThreadView::RefreshPanes() {
    if (CSessionPanes* const panes = SessionPanes()) {
        panes->Show(m_document, m_model.Selected(SelectedIndex()));
    }
}

void CThreadView::ShowGrowth() {
    const int processes = m_model.rowCount();
    ChangeInPlace([&] {
        m_model.ShowGrowth();
        for (int row = processes; row < m_model.rowCount(); ++row) {
            expand(m_model.index(row, 0));
        }
    });
    const Selection selection = m_model.Selected(SelectedIndex());
    if (CDetailView* const details = DetailView()) {
        details->ShowGrowth(selection);
    }
    if (CSessionPanes* const panes = SessionPanes()) {
        panes->ShowGrowth(m_document, selection);
    }
    emit m_document.RecordsGrew();
}

void CThreadView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::RightButton) {
        CTreeCtrl::mousePressEvent(event);
        return;
    }
    event->accept();
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.parent().isValid()) {
        ShowMenu(index, event->globalPosition().toPoint());
    }
}

void CThreadView::contextMenuEvent(QContextMenuEvent* event) {
    // The mouse has had its menu when the button went down.
    event->accept();
    const QModelIndex index = SelectedIndex();
    if (event->reason() == QContextMenuEvent::Keyboard && index.parent().isValid()) {
        ShowMenu(index, MenuPoint(index));
    }
}

void CThreadView::ShowMenu(const QModelIndex& index, const QPoint& screen) {
    SelectIndex(index);
    // By value: the dialog runs a message loop of its own, in which the session may be closed.
    const CThread* const thread = m_model.Thread(index);
    if (thread == nullptr) {
        return;
    }
    const std::uint32_t process = thread->m_nProcessID;
    const std::uint32_t threadID = thread->m_nThreadID;
    const std::string logPath = m_document.Session().m_strLogPath;
    QMenu menu;
    QAction* const write = menu.addAction(tr("Write Message"));
    write->setEnabled(!m_document.Session().IsPacked());
    if (UserInterface().RunMenu(menu, screen) == write) {
        WriteTraceMessage(logPath, process, threadID);
    }
}

} // namespace carvelot
