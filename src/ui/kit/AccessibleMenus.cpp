#include "ui/kit/AccessibleMenus.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QApplication>
#include <QEvent>
#include <QMenu>
#include <QPointer>

namespace carvelot {

namespace {

// Whether a menu is no other menu's or menu bar's.
bool StandsAlone(QMenu& menu) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&menu);
    QAccessibleInterface* parent = accessible != nullptr ? accessible->parent() : nullptr;
    return parent == nullptr || parent->role() != QAccessible::MenuItem;
}

QList<QMenu*> PopUpMenus() {
    QList<QMenu*> menus;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* accessible = qobject_cast<QMenu*>(window);
        if (accessible != nullptr && accessible->isVisible() && StandsAlone(*accessible)) {
            menus << accessible;
        }
    }
    return menus;
}

// The root of the tree: the windows, and behind them the pop-up menus.
class CAccessibleApplication final : public QAccessibleApplication {
public:
    int childCount() const override {
        return QAccessibleApplication::childCount() + static_cast<int>(PopUpMenus().size());
    }
    QAccessibleInterface* child(int index) const override {
        const int windows = QAccessibleApplication::childCount();
        return index < windows ? QAccessibleApplication::child(index)
                               : QAccessible::queryAccessibleInterface(PopUpMenus().value(index - windows));
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        const qsizetype menu = PopUpMenus().indexOf(qobject_cast<QMenu*>(child->object()));
        return menu < 0 ? QAccessibleApplication::indexOfChild(child)
                        : QAccessibleApplication::childCount() + static_cast<int>(menu);
    }
};

QAccessibleInterface* MakeInterface(const QString& className, QObject* object) {
    return className == QLatin1String("QApplication") && object == qApp ? new CAccessibleApplication
                                                                        : nullptr;
}

void Tell(QObject* object, QAccessible::Event kind) {
    QAccessibleEvent event(object, kind);
    QAccessible::updateAccessibility(&event);
}

class CMenuWatch final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        const bool show = event->type() == QEvent::Show;
        auto* accessible = show || event->type() == QEvent::Hide ? qobject_cast<QMenu*>(object) : nullptr;
        if (accessible == nullptr || !StandsAlone(*accessible)) {
            return false;
        }
        if (show) {
            QMetaObject::invokeMethod(
                accessible, [accessible] { Enter(*accessible); }, Qt::QueuedConnection);
        } else if (QWidget* focus = QApplication::focusWidget()) {
            TellFocus(*focus);
        }
        return false;
    }

private:
    static void Enter(QMenu& menu) {
        if (!menu.isVisible()) {
            return;
        }
        Tell(&menu, QAccessible::ObjectCreated);
        if (menu.activeAction() != nullptr) {
            return;
        }
        for (QAction* action : menu.actions()) {
            if (action->isVisible() && action->isEnabled() && !action->isSeparator()) {
                menu.setActiveAction(action);
                return;
            }
        }
        Tell(&menu, QAccessible::Focus); // nothing in it can be chosen
    }
    // The focus never left the widget, as the toolkit sees it.
    static void TellFocus(QWidget& widget) {
        QAccessibleInterface* focus = QAccessible::queryAccessibleInterface(&widget);
        QAccessibleInterface* part = focus != nullptr ? focus->focusChild() : nullptr;
        if (part != nullptr && part != focus) {
            QAccessibleEvent event(part, QAccessible::Focus);
            QAccessible::updateAccessibility(&event);
        } else {
            Tell(&widget, QAccessible::Focus);
        }
    }
};

} // namespace

void ShowMenusToScreenReaders() {
    static QPointer<QObject> watch;
    if (watch != nullptr) {
        return;
    }
    QAccessible::installFactory(MakeInterface);
    watch = new CMenuWatch(qApp);
    qApp->installEventFilter(watch);
}

} // namespace carvelot
