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
inline QString Said(QAccessibleInterface* userInterface, QAccessible::Text text = QAccessible::Name) {
    return userInterface != nullptr ? userInterface->text(text) : QStringLiteral("(nothing)");
}

inline QString Said(QObject* object, QAccessible::Text text = QAccessible::Name) {
    return Said(QAccessible::queryAccessibleInterface(object), text);
}

inline QString SaidCell(QTreeView& view, int row, int column) {
    (void)view.indexAt(QPoint(0, 0)); // lays it out, as painting does
    QAccessibleInterface* userInterface = QAccessible::queryAccessibleInterface(&view);
    QAccessibleTableInterface* table = userInterface != nullptr ? userInterface->tableInterface() : nullptr;
    return Said(table != nullptr ? table->cellAt(row, column) : nullptr);
}

// All that is said of a widget's parts.
inline QStringList SaidOfParts(QObject* object) {
    QStringList said;
    QAccessibleInterface* userInterface = QAccessible::queryAccessibleInterface(object);
    for (int n = 0; userInterface != nullptr && n < userInterface->childCount(); ++n) {
        said << Said(userInterface->child(n));
    }
    return said;
}

// The tip that is on the screen.
inline QWidget* Tip() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->inherits("QTipLabel")) {
            return window;
        }
    }
    return nullptr;
}

// What the tip says that comes up at a place; nothing without one.
inline QString SaidByTip(QWidget& widget, const QPoint& point) {
    // The toolkit lets an old tip fade away.
    if (QWidget* old = Tip()) {
        old->hide();
    }
    QHelpEvent event(QEvent::ToolTip, point, widget.mapToGlobal(point));
    QApplication::sendEvent(&widget, &event);
    QWidget* tip = Tip();
    return tip != nullptr ? Said(tip) : QString();
}

inline QString SaidByTip(QTreeView& view, int row, int column) {
    const QModelIndex index = view.model()->index(row, column);
    view.scrollTo(index);
    const QRect cell = view.visualRect(index);
    return SaidByTip(*view.viewport(), QPoint(std::max(cell.left(), 0) + 4, cell.center().y()));
}

inline QString SaidByTip(QHeaderView& header, int section) {
    return SaidByTip(*header.viewport(), QPoint(header.sectionViewportPosition(section) + 4, 4));
}

} // namespace carvelot::test
