#include "ui/explore/RememberedSplitter.h"

#include "settings/AppSettings.h"

#include <algorithm>

namespace carvelot {

namespace {

constexpr int kWhole = 1000;

} // namespace

CRememberedSplitter::CRememberedSplitter(Qt::Orientation orientation, std::string name, int share)
    : QSplitter(orientation), m_strName(std::move(name)),
      m_nShare(std::clamp(GetWorkspaceInt(m_strName, share), 50, kWhole - 50)) {
    setChildrenCollapsible(false);
    connect(this, &QSplitter::splitterMoved, this, [this] {
        const QList<int> parts = sizes();
        if (const int both = parts[0] + parts[1]; both > 0) {
            m_nShare = parts[0] * kWhole / both;
            m_bMoved = true;
        }
    });
}

CRememberedSplitter::~CRememberedSplitter() {
    if (m_bMoved) {
        WriteWorkspaceInt(m_strName, m_nShare);
    }
}

void CRememberedSplitter::SetParts(QWidget* first, QWidget* second) {
    addWidget(first);
    addWidget(second);
    setSizes({m_nShare, kWhole - m_nShare});
    setStretchFactor(0, m_nShare);
    setStretchFactor(1, kWhole - m_nShare);
}

} // namespace carvelot
