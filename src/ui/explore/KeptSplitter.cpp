#include "ui/explore/KeptSplitter.h"

#include "settings/AppSettings.h"
#include "ui/kit/StoredLayout.h"

#include <QEvent>

#include <algorithm>
#include <utility>
#include <vector>

namespace carvelot {

namespace {

constexpr int kMostSize = 10000; // a stored size beyond any screen is none

} // namespace

CKeptSplitter::CKeptSplitter(Qt::Orientation orientation, std::string name, QList<int> parts)
    : QSplitter(orientation), m_strName(std::move(name)), m_listParts(std::move(parts)) {
    setChildrenCollapsible(false);
    connect(this, &QSplitter::splitterMoved, this, [this] { m_bDragged = true; });
}

void CKeptSplitter::TakeSizes() {
    const std::vector<int> stored = ReadCommands(GetWorkspaceString(m_strName, ""));
    const bool isUsable = stored.size() == static_cast<std::size_t>(count()) &&
                          std::ranges::all_of(stored, [](int size) { return size > 0 && size <= kMostSize; });
    setSizes(isUsable ? QList<int>(stored.begin(), stored.end()) : m_listParts);
}

QSplitterHandle* CKeptSplitter::createHandle() {
    QSplitterHandle* const handle = QSplitter::createHandle();
    handle->installEventFilter(this);
    return handle;
}

bool CKeptSplitter::eventFilter(QObject* object, QEvent* event) {
    // What the user wished is where a drag ends.
    if (event->type() == QEvent::MouseButtonRelease && std::exchange(m_bDragged, false)) {
        WriteWorkspaceString(m_strName, WriteCommands(sizes()));
    }
    return QSplitter::eventFilter(object, event);
}

} // namespace carvelot
