#include "ui/session/DetailView.h"

#include "ui/kit/Icons.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/PathText.h"
#include "ui/kit/TabbedClientArea.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/kit/WaitCursor.h"
#include "ui/session/ChildFrame.h"
#include "ui/session/SessionDocument.h"
#include "ui/session/SessionPanes.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
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

CDetailView::CDetailView(CSessionDocument& document)
    : CTreeCtrl(tr("Calls")), m_document(document), m_tree(document.Session()),
      m_model(m_tree, TreeImages()) {
    setModel(&m_model);
    document.Session().m_pDetailView = this;
}

CDetailView::~CDetailView() {
    m_document.Session().m_pDetailView = nullptr;
    setModel(nullptr); // the model goes before the view's base
}

void CDetailView::SetRedraw(bool redraw) {
    if (redraw == m_bRedraw) {
        return;
    }
    m_bRedraw = redraw;
    if (redraw) {
        m_model.EndChange();
        return;
    }
    if (!m_bFont) {
        TakeFont(); // a view must not be laid out in the middle of a change
    }
    m_model.BeginChange();
}

void CDetailView::TakeFont() {
    m_bFont = true;
    setFont(SettingsFont());
}

void CDetailView::ResetTree() {
    const CWaitCursor wait;
    if (m_bRedraw) {
        m_model.BeginChange();
    }
    m_tree.ResetTree();
    if (m_bRedraw) {
        m_model.EndChange();
    }
}

void CDetailView::FillDetails(bool singleThread, std::span<const RecordIndex> records) {
    const CWaitCursor wait;
    if (singleThread || !m_bFont) {
        TakeFont();
    }
    if (m_bRedraw) {
        m_model.BeginChange();
    }
    m_tree.FillDetails(singleThread, records);
    if (m_bRedraw) {
        m_model.EndChange();
    }
}

void CDetailView::Show(const Selection& selection) {
    if (const CProcess* const process = selection.Process()) {
        SetRedraw(false);
        ResetTree();
        // One thread after the other: they are not merged by time.
        for (const auto& thread : process->m_listThreads) {
            FillDetails(false, thread->m_listDetails);
        }
        SetRedraw(true);
    } else if (const CThread* const thread = selection.Thread()) {
        FillDetails(true, thread->m_listDetails);
    } else if (const CJASUser* const user = selection.User()) {
        FillDetails(true, user->m_listDetails);
    }
}

void CDetailView::ShowGrowth(const Selection& selection) {
    if (selection.What() == Selection::Kind::Nothing) {
        return;
    }
    ChangeInPlace([&] {
        m_model.BeginGrowth();
        if (const CProcess* const process = selection.Process()) {
            m_tree.ResetTree();
            for (const auto& thread : process->m_listThreads) {
                m_tree.FillDetails(false, thread->m_listDetails);
            }
        } else if (const CThread* const thread = selection.Thread()) {
            m_tree.FillDetails(true, thread->m_listDetails);
        } else if (const CJASUser* const user = selection.User()) {
            m_tree.FillDetails(true, user->m_listDetails);
        }
        m_model.EndGrowth();
    });
}

void CDetailView::SelectRecord(RecordIndex record) {
    const CDetailTree::Node node = m_tree.NodeOf(record);
    if (node == CDetailTree::kRoot) {
        selectionModel()->clear();
    } else {
        SelectIndex(m_model.IndexOf(node));
    }
}

void CDetailView::SetFocusToTree() {
    CMainWindow* main = MainWindow();
    CMDIChildWnd* frame = m_document.GetFrame();
    // The session of a row need not be the one in front.
    if (main != nullptr && frame != nullptr && main->ActiveChild() != frame) {
        main->ClientArea().Activate(*frame);
    }
    window()->activateWindow();
    setFocus(Qt::OtherFocusReason);
}

void CDetailView::OnSelectionChanged() {
    const CDetailTree::Node node = m_model.Node(SelectedIndex());
    const RecordIndex record = node == CDetailTree::kRoot ? kNoRecord : m_tree.Record(node);
    if (CSessionPanes* const panes = SessionPanes()) {
        panes->m_wndRawDataPane.SetText(ToQString(m_tree.RawText(node)));
        const LogPiece* const piece = m_document.Session().PieceOf(record);
        panes->m_wndRawDataPane.SetPiece(piece == nullptr ? QString() : PathToQString(piece->path));
    }
    if (record != kNoRecord) {
        emit m_document.RecordSelected(record);
    }
}

void CDetailView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::RightButton) {
        CTreeCtrl::mousePressEvent(event);
        return;
    }
    event->accept();
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid()) {
        SelectIndex(index);
    }
}

void CDetailView::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    const QModelIndex index = SelectedIndex();
    if (!index.isValid() || !m_tree.OffersCopyParms(m_model.Node(index))) {
        return;
    }
    QMenu menu;
    connect(menu.addAction(tr("Copy Parms")), &QAction::triggered, this, &CDetailView::OnCopyParms);
    UserInterface().RunMenu(menu, event->reason() == QContextMenuEvent::Keyboard ? MenuPoint(index)
                                                                                 : event->globalPos());
}

void CDetailView::OnCopyParms() {
    const QModelIndex index = SelectedIndex();
    if (index.isValid()) {
        QGuiApplication::clipboard()->setText(ToQString(m_tree.CopyParmsText(m_model.Node(index))));
    }
}

} // namespace carvelot
