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
    QAccessibleInterface* pMenu = QAccessible::queryAccessibleInterface(&menu);
    QAccessibleInterface* pParent = pMenu != nullptr ? pMenu->parent() : nullptr;
    return pParent == nullptr || pParent->role() != QAccessible::MenuItem;
}

QList<QMenu*> PopUpMenus() {
    QList<QMenu*> listMenus;
    for (QWidget* pWindow : QApplication::topLevelWidgets()) {
        auto* pMenu = qobject_cast<QMenu*>(pWindow);
        if (pMenu != nullptr && pMenu->isVisible() && StandsAlone(*pMenu))
            listMenus << pMenu;
    }
    return listMenus;
}

// The root of the tree: the windows, and behind them the pop-up menus.
class CAccessibleApplication final : public QAccessibleApplication {
public:
    int childCount() const override {
        return QAccessibleApplication::childCount() + static_cast<int>(PopUpMenus().size());
    }
    QAccessibleInterface* child(int nIndex) const override {
        const int nWindows = QAccessibleApplication::childCount();
        return nIndex < nWindows
                   ? QAccessibleApplication::child(nIndex)
                   : QAccessible::queryAccessibleInterface(PopUpMenus().value(nIndex - nWindows));
    }
    int indexOfChild(const QAccessibleInterface* pChild) const override {
        const qsizetype nMenu = PopUpMenus().indexOf(qobject_cast<QMenu*>(pChild->object()));
        return nMenu < 0 ? QAccessibleApplication::indexOfChild(pChild)
                         : QAccessibleApplication::childCount() + static_cast<int>(nMenu);
    }
};

QAccessibleInterface* MakeInterface(const QString& strClass, QObject* pObject) {
    return strClass == QLatin1String("QApplication") && pObject == qApp ? new CAccessibleApplication
                                                                        : nullptr;
}

void Tell(QObject* pObject, QAccessible::Event nEvent) {
    QAccessibleEvent event(pObject, nEvent);
    QAccessible::updateAccessibility(&event);
}

class CMenuWatch final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override {
        const bool bShow = pEvent->type() == QEvent::Show;
        auto* pMenu = bShow || pEvent->type() == QEvent::Hide ? qobject_cast<QMenu*>(pObject) : nullptr;
        if (pMenu == nullptr || !StandsAlone(*pMenu))
            return false;
        if (bShow)
            QMetaObject::invokeMethod(
                pMenu, [pMenu] { Enter(*pMenu); }, Qt::QueuedConnection);
        else if (QWidget* pFocus = QApplication::focusWidget())
            TellFocus(*pFocus);
        return false;
    }

private:
    static void Enter(QMenu& menu) {
        if (!menu.isVisible())
            return;
        Tell(&menu, QAccessible::ObjectCreated);
        if (menu.activeAction() != nullptr)
            return;
        for (QAction* pAction : menu.actions()) {
            if (pAction->isVisible() && pAction->isEnabled() && !pAction->isSeparator()) {
                menu.setActiveAction(pAction);
                return;
            }
        }
        Tell(&menu, QAccessible::Focus); // nothing in it can be chosen
    }
    // The focus never left the widget, as the toolkit sees it.
    static void TellFocus(QWidget& widget) {
        QAccessibleInterface* pFocus = QAccessible::queryAccessibleInterface(&widget);
        QAccessibleInterface* pPart = pFocus != nullptr ? pFocus->focusChild() : nullptr;
        if (pPart != nullptr && pPart != pFocus) {
            QAccessibleEvent event(pPart, QAccessible::Focus);
            QAccessible::updateAccessibility(&event);
        } else {
            Tell(&widget, QAccessible::Focus);
        }
    }
};

} // namespace

void ShowMenusToScreenReaders() {
    static QPointer<QObject> pWatch;
    if (pWatch != nullptr)
        return;
    QAccessible::installFactory(MakeInterface);
    pWatch = new CMenuWatch(qApp);
    qApp->installEventFilter(pWatch);
}

} // namespace carvelot
