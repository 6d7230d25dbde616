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
    const int tab = bar.tabAt(point);
    for (CDockablePane* pane : m_frame.Panes()) {
        if (tab >= 0 && pane->windowTitle() == bar.tabText(tab)) {
            return pane;
        }
    }
    return nullptr;
}

bool CPaneTabs::eventFilter(QObject* object, QEvent* event) {
    if (object == &m_frame) {
        // The toolkit makes the bars as groups come into being.
        if (event->type() == QEvent::ChildPolished) {
            if (auto* tabBar = qobject_cast<QTabBar*>(static_cast<QChildEvent*>(event)->child())) {
                tabBar->installEventFilter(this);
            }
        }
        return false;
    }
    auto& bar = static_cast<QTabBar&>(*object);
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto& press = static_cast<const QMouseEvent&>(*event);
        m_pDragged = press.button() == Qt::LeftButton ? PaneAt(bar, press.position().toPoint()) : nullptr;
        return false;
    }
    case QEvent::MouseMove: {
        const auto& move = static_cast<const QMouseEvent&>(*event);
        if (m_pDragged == nullptr || !move.buttons().testFlag(Qt::LeftButton) ||
            IsNearBar(bar, move.position().toPoint())) {
            return false;
        }
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
    const auto send = [&event](QWidget& widget, QEvent::Type type, const QPointF& point,
                               Qt::MouseButton button, Qt::MouseButtons buttons) {
        QMouseEvent sent(type, point, widget.mapToGlobal(point), button, buttons, event.modifiers());
        QCoreApplication::sendEvent(&widget, &sent);
    };
    send(bar, QEvent::MouseButtonRelease, event.position(), Qt::LeftButton, Qt::NoButton);
    const QPointF pointer = pane.mapFromGlobal(event.globalPosition());
    // Held where the pointer is from its side, the pane does not jump there.
    const QPointF title(std::clamp(pointer.x(), 0.0, pane.width() - 1.0), pane.widget()->y() / 2.0);
    send(pane, QEvent::MouseButtonPress, title, Qt::LeftButton, Qt::LeftButton);
    // Far enough to be a drag wherever the pointer is; from then on the pane has the mouse.
    const QPointF away(0, QApplication::startDragDistance() * 2);
    send(pane, QEvent::MouseMove, title + away, Qt::NoButton, Qt::LeftButton);
    send(pane, QEvent::MouseMove, pane.mapFromGlobal(event.globalPosition()), Qt::NoButton, Qt::LeftButton);
}

} // namespace carvelot
