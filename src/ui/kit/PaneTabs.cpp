#include "ui/kit/PaneTabs.h"

#include "ui/kit/DockablePane.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/TabbedClientArea.h"

#include <QApplication>
#include <QChildEvent>
#include <QMouseEvent>
#include <QTabBar>

#include <algorithm>
#include <utility>

namespace carvelot {

CPaneTabs::CPaneTabs(CMainWindow& frame) : QObject(&frame), m_frame(frame) { frame.installEventFilter(this); }

CDockablePane* CPaneTabs::PaneAt(const QTabBar& bar, const QPoint& point) const {
    const int nTab = bar.tabAt(point);
    for (CDockablePane* pPane : m_frame.Panes()) {
        if (nTab >= 0 && pPane->windowTitle() == bar.tabText(nTab))
            return pPane;
    }
    return nullptr;
}

bool CPaneTabs::eventFilter(QObject* pObject, QEvent* pEvent) {
    if (pObject == &m_frame) {
        // The toolkit makes the bars as groups come into being.
        if (pEvent->type() == QEvent::ChildPolished) {
            if (auto* pBar = qobject_cast<QTabBar*>(static_cast<QChildEvent*>(pEvent)->child()))
                pBar->installEventFilter(this);
        }
        return false;
    }
    auto& bar = static_cast<QTabBar&>(*pObject);
    switch (pEvent->type()) {
    case QEvent::MouseButtonPress: {
        const auto& press = static_cast<const QMouseEvent&>(*pEvent);
        m_pDragged = press.button() == Qt::LeftButton ? PaneAt(bar, press.position().toPoint()) : nullptr;
        return false;
    }
    case QEvent::MouseMove: {
        const auto& move = static_cast<const QMouseEvent&>(*pEvent);
        if (m_pDragged == nullptr || !move.buttons().testFlag(Qt::LeftButton) ||
            IsNearBar(bar, move.position().toPoint()))
            return false;
        TearOff(bar, move);
        return true;
    }
    case QEvent::MouseButtonRelease:
        m_pDragged = nullptr;
        return false;
    default:
        return false;
    }
}

// The hand lets go of the tab and takes the pane by its title instead.
void CPaneTabs::TearOff(QTabBar& bar, const QMouseEvent& event) {
    CDockablePane& pane = *std::exchange(m_pDragged, nullptr);
    const auto fnSend = [&event](QWidget& widget, QEvent::Type nType, const QPointF& point,
                                 Qt::MouseButton nButton, Qt::MouseButtons nButtons) {
        QMouseEvent sent(nType, point, widget.mapToGlobal(point), nButton, nButtons, event.modifiers());
        QCoreApplication::sendEvent(&widget, &sent);
    };
    fnSend(bar, QEvent::MouseButtonRelease, event.position(), Qt::LeftButton, Qt::NoButton);
    const QPointF pointer = pane.mapFromGlobal(event.globalPosition());
    // Held where the pointer is from its side, the pane does not jump there.
    const QPointF title(std::clamp(pointer.x(), 0.0, pane.width() - 1.0), pane.widget()->y() / 2);
    fnSend(pane, QEvent::MouseButtonPress, title, Qt::LeftButton, Qt::LeftButton);
    // Far enough to be a drag wherever the pointer is; from then on the pane has the mouse.
    const QPointF away(0, QApplication::startDragDistance() * 2);
    fnSend(pane, QEvent::MouseMove, title + away, Qt::NoButton, Qt::LeftButton);
    fnSend(pane, QEvent::MouseMove, pane.mapFromGlobal(event.globalPosition()), Qt::NoButton, Qt::LeftButton);
}

} // namespace carvelot
