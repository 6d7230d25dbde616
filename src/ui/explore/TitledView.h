// TitledView.h - a list or a tree of a window below its title.
#pragma once

#include "ui/kit/PlainText.h"

#include <QLabel>
#include <QTreeView>
#include <QVBoxLayout>

namespace carvelot {

// The title's letter behind its "&" leads to the view.
inline QWidget* Titled(const QString& title, QTreeView& view) {
    auto* part = new QWidget;
    auto* column = new QVBoxLayout(part);
    column->setContentsMargins(4, 2, 4, 2);
    column->setSpacing(2);
    QLabel* const label = PlainLabel(title);
    label->setBuddy(&view);
    column->addWidget(label);
    column->addWidget(&view, 1);
    return part;
}

} // namespace carvelot
