#include "ui/explore/KeptWidths.h"

#include "settings/AppSettings.h"
#include "ui/kit/StoredLayout.h"

#include <QEvent>
#include <QHeaderView>
#include <QTreeView>

#include <utility>
#include <vector>

namespace carvelot {

namespace {

constexpr int kLeastWidth = 16;
constexpr int kMostWidth = 10000; // a stored width beyond any screen is none

} // namespace

CKeptWidths::CKeptWidths(QTreeView& view, std::string name)
    : QObject(&view), m_view(view), m_strName(std::move(name)) {
    Read();
    connect(view.header(), &QHeaderView::sectionResized, this, [this] { m_bResized = true; });
    view.header()->viewport()->installEventFilter(this);
}

void CKeptWidths::Read() {
    const std::vector<int> widths = ReadCommands(GetWorkspaceString(m_strName, ""));
    const int columns = m_view.header()->count();
    if (widths.size() != static_cast<std::size_t>(columns)) {
        return; // none yet, or those of another table
    }
    for (int column = 0; column < columns; ++column) {
        const int width = widths[static_cast<std::size_t>(column)];
        if (width >= kLeastWidth && width <= kMostWidth) {
            m_view.header()->resizeSection(column, width);
        }
    }
}

void CKeptWidths::Keep() const {
    std::vector<int> widths;
    for (int column = 0; column < m_view.header()->count(); ++column) {
        widths.push_back(m_view.columnWidth(column));
    }
    WriteWorkspaceString(m_strName, WriteCommands(widths));
}

bool CKeptWidths::eventFilter(QObject* object, QEvent* event) {
    // What the user wished is the width at the end of a drag.
    if (event->type() == QEvent::MouseButtonRelease && std::exchange(m_bResized, false)) {
        Keep();
    }
    return QObject::eventFilter(object, event);
}

} // namespace carvelot
