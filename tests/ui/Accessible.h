// What a screen reader says of the window's parts, and what their tips say.
#pragma once

#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QTreeView>

#include <algorithm>

namespace carvelot::test {

// What a screen reader says.
inline QString Said(QAccessibleInterface* pInterface, QAccessible::Text nText = QAccessible::Name) {
    return pInterface != nullptr ? pInterface->text(nText) : QStringLiteral("(nothing)");
}

inline QString Said(QObject* pObject, QAccessible::Text nText = QAccessible::Name) {
    return Said(QAccessible::queryAccessibleInterface(pObject), nText);
}

inline QString SaidCell(QTreeView& view, int nRow, int nColumn) {
    (void)view.indexAt(QPoint(0, 0)); // lays it out, as painting does
    QAccessibleInterface* pInterface = QAccessible::queryAccessibleInterface(&view);
    QAccessibleTableInterface* pTable = pInterface != nullptr ? pInterface->tableInterface() : nullptr;
    return Said(pTable != nullptr ? pTable->cellAt(nRow, nColumn) : nullptr);
}

// All that is said of a widget's parts.
inline QStringList SaidOfParts(QObject* pObject) {
    QStringList listSaid;
    QAccessibleInterface* pInterface = QAccessible::queryAccessibleInterface(pObject);
    for (int n = 0; pInterface != nullptr && n < pInterface->childCount(); ++n)
        listSaid << Said(pInterface->child(n));
    return listSaid;
}

// The tip that is on the screen.
inline QWidget* Tip() {
    for (QWidget* pWindow : QApplication::topLevelWidgets()) {
        if (pWindow->isVisible() && pWindow->inherits("QTipLabel"))
            return pWindow;
    }
    return nullptr;
}

// What the tip says that comes up at a place; nothing without one.
inline QString SaidByTip(QWidget& widget, const QPoint& point) {
    // The toolkit lets an old tip fade away.
    if (QWidget* pOld = Tip())
        pOld->hide();
    QHelpEvent event(QEvent::ToolTip, point, widget.mapToGlobal(point));
    QApplication::sendEvent(&widget, &event);
    QWidget* pTip = Tip();
    return pTip != nullptr ? Said(pTip) : QString();
}

inline QString SaidByTip(QTreeView& view, int nRow, int nColumn) {
    const QModelIndex index = view.model()->index(nRow, nColumn);
    view.scrollTo(index);
    const QRect cell = view.visualRect(index);
    return SaidByTip(*view.viewport(), QPoint(std::max(cell.left(), 0) + 4, cell.center().y()));
}

inline QString SaidByTip(QHeaderView& header, int nSection) {
    return SaidByTip(*header.viewport(), QPoint(header.sectionViewportPosition(nSection) + 4, 4));
}

} // namespace carvelot::test
