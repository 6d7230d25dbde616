#include "ui/kit/WindowsDlg.h"

#include "ui/kit/Document.h"
#include "ui/kit/TabbedClientArea.h"
#include "ui/kit/ReportView.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

namespace carvelot {

CWindowsDlg::CWindowsDlg(CTabbedClientArea& area)
    : QDialog(QApplication::activeWindow()), m_area(area), m_pList(new QTreeWidget),
      m_pActivate(new QPushButton(tr("&Activate"))), m_pClose(new QPushButton(tr("&Close Window(s)"))) {
    setWindowTitle(tr("Windows"));
    m_pList->setObjectName(QStringLiteral("Windows"));
    m_pList->setAccessibleName(tr("Select window"));
    m_pList->setHeaderLabels({tr("Window"), tr("File")});
    m_pList->setRootIsDecorated(false);
    m_pList->setUniformRowHeights(true);
    m_pList->setAllColumnsShowFocus(true);
    m_pList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_pList->setTextElideMode(Qt::ElideMiddle);
    m_pList->header()->resizeSection(0, 300);
    CopyRowsByKey(*m_pList);
    m_pActivate->setObjectName(QStringLiteral("Activate"));
    m_pClose->setObjectName(QStringLiteral("CloseWindows"));

    auto* pLabel = new QLabel(tr("&Select window:"));
    pLabel->setBuddy(m_pList);
    auto* pOk = new QPushButton(tr("OK"));
    m_pActivate->setAutoDefault(false);
    m_pClose->setAutoDefault(false);

    auto* pButtons = new QVBoxLayout;
    pButtons->addWidget(m_pActivate);
    pButtons->addWidget(pOk);
    pButtons->addWidget(m_pClose);
    pButtons->addStretch();
    auto* pRow = new QHBoxLayout;
    pRow->addWidget(m_pList, 1);
    pRow->addLayout(pButtons);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(pLabel);
    pLayout->addLayout(pRow);
    // In the dialog already: else it would forget it when the focus passes another button.
    pOk->setDefault(true);
    resize(680, 340);

    Fill();
    connect(m_pList, &QTreeWidget::itemSelectionChanged, this, &CWindowsDlg::UpdateButtons);
    connect(m_pList, &QTreeWidget::itemDoubleClicked, this, &CWindowsDlg::OnActivate);
    connect(m_pActivate, &QPushButton::clicked, this, &CWindowsDlg::OnActivate);
    connect(m_pClose, &QPushButton::clicked, this, &CWindowsDlg::OnCloseWindows);
    connect(pOk, &QPushButton::clicked, this, &QDialog::accept);
    m_pList->setFocus();
}

void CWindowsDlg::Fill() {
    m_pList->clear();
    for (CMDIChildWnd* pChild : m_area.Children()) {
        auto* pItem = new QTreeWidgetItem(m_pList);
        pItem->setText(0, pChild->windowTitle());
        pItem->setToolTip(0, pChild->windowTitle());
        pItem->setIcon(0, pChild->windowIcon());
        pItem->setText(1, pChild->GetActiveDocument()->GetPathName());
        pItem->setData(0, Qt::UserRole, QVariant::fromValue<QWidget*>(pChild));
        if (pChild == m_area.ActiveChild()) {
            m_pList->setCurrentItem(pItem);
            pItem->setSelected(true);
        }
    }
    UpdateButtons();
}

QList<CMDIChildWnd*> CWindowsDlg::Selected() const {
    QList<CMDIChildWnd*> listChildren;
    for (int n = 0; n < m_pList->topLevelItemCount(); ++n) {
        const QTreeWidgetItem* pItem = m_pList->topLevelItem(n);
        if (pItem->isSelected())
            listChildren << static_cast<CMDIChildWnd*>(pItem->data(0, Qt::UserRole).value<QWidget*>());
    }
    return listChildren;
}

void CWindowsDlg::UpdateButtons() {
    const qsizetype nSelected = Selected().size();
    m_pActivate->setEnabled(nSelected == 1);
    m_pClose->setEnabled(nSelected > 0);
}

void CWindowsDlg::OnActivate() {
    const QList<CMDIChildWnd*> listChildren = Selected();
    if (listChildren.size() != 1)
        return;
    accept();
    m_area.Activate(*listChildren.constFirst());
}

void CWindowsDlg::OnCloseWindows() {
    for (CMDIChildWnd* pChild : Selected())
        pChild->CloseWindow();
    Fill();
}

} // namespace carvelot
