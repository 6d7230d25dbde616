#include "analysis/panes/ui/FindPane.h"

#include "resources/ui/Icons.h"
#include "shell/Commands.h"

#include <QAction>

#include <algorithm>

namespace carvelot {

namespace {

constexpr CColumnSpec kColumns[] = {
    {"Process", 60},
    {"Thread", 60},
    {"Message", 500},
};

} // namespace

CFindPane::CFindPane() : CDockablePane(tr("Find"), QStringLiteral("FindPane"), {200, 100}) {
    m_pToolBar = new QToolBar(Client());
    m_pToolBar->setMovable(false);
    m_pToolBar->setIconSize({16, 16});
    m_pToolBar->setAccessibleName(tr("Find commands"));
    QAction* pFind = m_pToolBar->addAction(CommandIcon(ID_FIND_FIND), tr("Find"));
    pFind->setStatusTip(tr("Find"));
    pFind->setData(ID_FIND_FIND);
    connect(pFind, &QAction::triggered, this, [this] {
        if (m_fnFind)
            m_fnFind();
    });

    m_pSearch = new QLineEdit(Client());
    m_pSearch->setAccessibleName(tr("Search text"));
    QFont font(QStringLiteral("MS Sans Serif"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSize(8);
    m_pSearch->setFont(font);

    m_pList = new CListCtrl(kColumns, windowTitle(), Client());
    m_pList->Model().SetSortable(false);
}

void CFindPane::ClearList() { m_pList->Fill(nullptr); }

void CFindPane::DressForUsers(bool bUsers) {
    m_pList->Model().SetColumnTitle(0, bUsers ? tr("User") : tr("Process"));
    m_pList->SetColumnWidth(1, bUsers ? 0 : 60);
}

void CFindPane::OnSize(int nWidth, int nHeight) {
    const int nToolBar = m_pToolBar->sizeHint().height();
    const int nSearch = std::max(20, m_pSearch->fontMetrics().height() + 4);
    m_pToolBar->setGeometry(0, 0, nWidth, nToolBar);
    m_pSearch->setGeometry(0, nToolBar, nWidth, nSearch);
    m_pList->setGeometry(0, nToolBar + nSearch, nWidth, std::max(0, nHeight - nToolBar - nSearch));
}

} // namespace carvelot
