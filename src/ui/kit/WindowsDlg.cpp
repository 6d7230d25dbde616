#include "ui/kit/WindowsDlg.h"

#include "ui/kit/Document.h"
#include "ui/kit/ReportView.h"
#include "ui/kit/TabbedClientArea.h"

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

    auto* label = new QLabel(tr("&Select window:"));
    label->setBuddy(m_pList);
    auto* ok = new QPushButton(tr("OK"));
    m_pActivate->setAutoDefault(false);
    m_pClose->setAutoDefault(false);

    auto* buttons = new QVBoxLayout;
    buttons->addWidget(m_pActivate);
    buttons->addWidget(ok);
    buttons->addWidget(m_pClose);
    buttons->addStretch();
    auto* row = new QHBoxLayout;
    row->addWidget(m_pList, 1);
    row->addLayout(buttons);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addLayout(row);
    // In the dialog already: else it would forget it when the focus passes another button.
    ok->setDefault(true);
    resize(680, 340);

    Fill();
    connect(m_pList, &QTreeWidget::itemSelectionChanged, this, &CWindowsDlg::UpdateButtons);
    connect(m_pList, &QTreeWidget::itemDoubleClicked, this, &CWindowsDlg::OnActivate);
    connect(m_pActivate, &QPushButton::clicked, this, &CWindowsDlg::OnActivate);
    connect(m_pClose, &QPushButton::clicked, this, &CWindowsDlg::OnCloseWindows);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    m_pList->setFocus();
}

void CWindowsDlg::Fill() {
    m_pList->clear();
    for (CMDIChildWnd* child : m_area.Children()) {
        auto* item = new QTreeWidgetItem(m_pList);
        item->setText(0, child->windowTitle());
        item->setToolTip(0, child->windowTitle());
        item->setIcon(0, child->windowIcon());
        item->setText(1, child->GetActiveDocument()->GetPathName());
        item->setData(0, Qt::UserRole, QVariant::fromValue<QWidget*>(child));
        if (child == m_area.ActiveChild()) {
            m_pList->setCurrentItem(item);
            item->setSelected(true);
        }
    }
    UpdateButtons();
}

QList<CMDIChildWnd*> CWindowsDlg::Selected() const {
    QList<CMDIChildWnd*> children;
    for (int n = 0; n < m_pList->topLevelItemCount(); ++n) {
        const QTreeWidgetItem* item = m_pList->topLevelItem(n);
        if (item->isSelected()) {
            children << static_cast<CMDIChildWnd*>(item->data(0, Qt::UserRole).value<QWidget*>());
        }
    }
    return children;
}

void CWindowsDlg::UpdateButtons() {
    const qsizetype selected = Selected().size();
    m_pActivate->setEnabled(selected == 1);
    m_pClose->setEnabled(selected > 0);
}

void CWindowsDlg::OnActivate() {
    const QList<CMDIChildWnd*> children = Selected();
    if (children.size() != 1) {
        return;
    }
    accept();
    m_area.Activate(*children.constFirst());
}

void CWindowsDlg::OnCloseWindows() {
    for (CMDIChildWnd* child : Selected()) {
        child->CloseWindow();
    }
    Fill();
}

} // namespace carvelot
