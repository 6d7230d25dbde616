#include "ui/kit/AutoHideSlide.h"

#include "ui/kit/AutoHide.h"
#include "ui/kit/AutoHideBars.h"
#include "ui/kit/MainWindow.h"

#include <QKeyEvent>
#include <QMenuBar>
#include <QMouseEvent>
#include <QStatusBar>
#include <QToolBar>

#include <algorithm>

namespace carvelot {

namespace {

constexpr int kGrip = 5; // pixels at the slide's inner side that change its size

} // namespace

CAutoHideSlide::CAutoHideSlide(CAutoHide& owner, CMainWindow& frame)
    : QFrame(&frame), m_owner(owner), m_frame(frame) {
    setObjectName(QStringLiteral("AutoHideSlide"));
    setAutoFillBackground(true);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setMouseTracking(true);
    hide();
}

void CAutoHideSlide::SetPane(QWidget* pane, Qt::DockWidgetArea edge) {
    m_pPane = pane;
    m_nEdge = edge;
    setCursor(IsUpright(edge) ? Qt::SplitHCursor : Qt::SplitVCursor);
    if (pane != nullptr) {
        pane->setCursor(Qt::ArrowCursor);
    }
}

void CAutoHideSlide::Arrange() {
    if (m_pPane == nullptr) {
        return;
    }
    QRect rect = contentsRect();
    switch (m_nEdge) {
    case Qt::LeftDockWidgetArea:
        rect.adjust(0, 0, -kGrip, 0);
        break;
    case Qt::RightDockWidgetArea:
        rect.adjust(kGrip, 0, 0, 0);
        break;
    case Qt::TopDockWidgetArea:
        rect.adjust(0, 0, 0, -kGrip);
        break;
    default:
        rect.adjust(0, kGrip, 0, 0);
    }
    m_pPane->setGeometry(rect);
}

void CAutoHideSlide::resizeEvent(QResizeEvent*) { Arrange(); }

void CAutoHideSlide::mouseMoveEvent(QMouseEvent* event) {
    if ((event->buttons() & Qt::LeftButton) == 0) {
        return;
    }
    const QPoint point = event->position().toPoint();
    const int thickness = m_nEdge == Qt::LeftDockWidgetArea    ? point.x()
                          : m_nEdge == Qt::RightDockWidgetArea ? width() - point.x()
                          : m_nEdge == Qt::TopDockWidgetArea   ? point.y()
                                                               : height() - point.y();
    m_fnThickness(thickness);
}

void CAutoHideSlide::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) {
        return QFrame::keyPressEvent(event);
    }
    const CDockablePane* pane = m_owner.PaneOut();
    m_owner.SlideIn();
    if (pane != nullptr && m_owner.Tab(*pane) != nullptr) {
        m_owner.Tab(*pane)->setFocus(Qt::OtherFocusReason);
    }
}

// What the menu, the bars and the strips leave of the window. The panes themselves are no measure: the
// toolkit parks those behind tabs outside the window.
QRect CAutoHideSlide::Room() const {
    QRect room = m_frame.contentsRect();
    room.setTop(m_frame.menuBar()->geometry().bottom() + 1);
    if (!m_frame.statusBar()->isHidden()) {
        room.setBottom(m_frame.statusBar()->geometry().top() - 1);
    }
    for (const QToolBar* toolBar : m_frame.findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (toolBar->isHidden() || toolBar->isFloating()) {
            continue;
        }
        const QRect bar = toolBar->geometry();
        switch (m_frame.toolBarArea(toolBar)) {
        case Qt::LeftToolBarArea:
            room.setLeft(std::max(room.left(), bar.right() + 1));
            break;
        case Qt::RightToolBarArea:
            room.setRight(std::min(room.right(), bar.left() - 1));
            break;
        case Qt::TopToolBarArea:
            room.setTop(std::max(room.top(), bar.bottom() + 1));
            break;
        case Qt::BottomToolBarArea:
            room.setBottom(std::min(room.bottom(), bar.top() - 1));
            break;
        default:
            break;
        }
    }
    return room;
}

void CAutoHideSlide::Place(int thickness) {
    const QRect room = Room();
    QRect rect = room;
    const int width = std::min(std::max(StoredFold::kLeast, thickness), room.width() * 9 / 10);
    const int height = std::min(std::max(StoredFold::kLeast, thickness), room.height() * 9 / 10);
    switch (m_nEdge) {
    case Qt::LeftDockWidgetArea:
        rect.setWidth(width);
        break;
    case Qt::RightDockWidgetArea:
        rect.setLeft(room.right() - width + 1);
        break;
    case Qt::TopDockWidgetArea:
        rect.setHeight(height);
        break;
    default:
        rect.setTop(room.bottom() - height + 1);
    }
    setGeometry(rect);
    Arrange();
}

} // namespace carvelot
