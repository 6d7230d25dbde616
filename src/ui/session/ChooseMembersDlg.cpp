#include "ui/session/ChooseMembersDlg.h"

#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace carvelot {

CChooseMembersDlg::CChooseMembersDlg(const QString& archive, const std::vector<PackedMember>& members)
    : m_pList(new QTreeWidget), m_pAsOne(new QRadioButton(tr("As &one log, in this order"))) {
    setWindowTitle(tr("Choose Members"));
    QLabel* const label = PlainLabel(tr("This archive holds several files:\n%1").arg(archive));
    label->setWordWrap(true);
    m_pList->setAccessibleName(tr("Members"));
    m_pList->setHeaderLabels({tr("Name"), tr("Size"), tr("Date")});
    m_pList->setRootIsDecorated(false);
    m_pList->setUniformRowHeights(true);
    for (const PackedMember& member : members) {
        auto* const item = new QTreeWidgetItem(m_pList);
        item->setText(0, ToQString(member.name).simplified());
        if (member.size) {
            item->setText(1, locale().toString(static_cast<qulonglong>(*member.size)));
        }
        if (member.date) {
            item->setText(
                2, locale().toString(QDateTime::fromSecsSinceEpoch(*member.date), QLocale::ShortFormat));
        }
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(0, Qt::Checked);
    }
    m_pList->setCurrentItem(m_pList->topLevelItem(0));
    m_pList->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_pList->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_pList->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    m_pList->header()->setStretchLastSection(false);
    auto* const eachForItself = new QRadioButton(tr("&Each for itself"));
    m_pAsOne->setChecked(true);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_pOK = buttons->button(QDialogButtonBox::Ok);
    m_pOK->setDefault(true);
    connect(m_pList, &QTreeWidget::itemChanged, this, &CChooseMembersDlg::EnableOK);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(m_pList);
    layout->addWidget(m_pAsOne);
    layout->addWidget(eachForItself);
    layout->addWidget(buttons);
    resize(560, 340);
}

std::vector<std::size_t> CChooseMembersDlg::Chosen() const {
    std::vector<std::size_t> chosen;
    for (int i = 0; i < m_pList->topLevelItemCount(); ++i) {
        if (m_pList->topLevelItem(i)->checkState(0) == Qt::Checked) {
            chosen.push_back(static_cast<std::size_t>(i));
        }
    }
    return chosen;
}

bool CChooseMembersDlg::AsOneLog() const { return m_pAsOne->isChecked(); }

void CChooseMembersDlg::EnableOK() { m_pOK->setEnabled(!Chosen().empty()); }

} // namespace carvelot
