#include "ui/app/OptionsDlg.h"

#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/kit/ReportView.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <cmath>

namespace carvelot {

namespace {

QLineEdit* Edit(const char* pszName, const QString& strAccessible, int nCharacters, bool bReadOnly = false) {
    auto* pEdit = new QLineEdit;
    pEdit->setObjectName(QLatin1String(pszName));
    pEdit->setAccessibleName(strAccessible);
    pEdit->setReadOnly(bReadOnly);
    if (nCharacters > 0)
        pEdit->setFixedWidth(pEdit->fontMetrics().averageCharWidth() * nCharacters + 24);
    return pEdit;
}

QPushButton* Button(const QString& strText, const char* pszName) {
    auto* pButton = new QPushButton(strText);
    pButton->setObjectName(QLatin1String(pszName));
    pButton->setAutoDefault(false);
    return pButton;
}

} // namespace

COptionsDlg::COptionsDlg(CAppSettings& settings)
    : QDialog(QApplication::activeWindow()), m_settings(settings), m_model(settings) {
    setWindowTitle(tr("Carvelot Options"));

    m_pAutoRefresh = new QCheckBox(tr("Auto Refresh Process List"));
    m_pAutoRefresh->setObjectName(QStringLiteral("AutoRefresh"));
    m_pRate = Edit("Rate", tr("Refresh rate in seconds"), 8);
    auto* pRefresh = new QGroupBox(tr("Refresh"));
    auto* pRefreshLayout = new QHBoxLayout(pRefresh);
    pRefreshLayout->addWidget(m_pAutoRefresh);
    pRefreshLayout->addSpacing(24);
    pRefreshLayout->addWidget(m_pRate);
    auto* pRateLabel = new QLabel(tr("Seconds"));
    pRateLabel->setBuddy(m_pRate);
    pRefreshLayout->addWidget(pRateLabel);
    pRefreshLayout->addStretch();

    m_pApplication = Edit("Application", tr("Application name"), 0);
    auto* pAdd = Button(tr("Add"), "Add");
    auto* pRemove = Button(tr("Remove"), "Remove");
    auto* pToggle = Button(tr("Toggle Status"), "ToggleStatus");
    m_pList = new QTreeWidget;
    m_pList->setObjectName(QStringLiteral("Applications"));
    m_pList->setAccessibleName(tr("Applications"));
    m_pList->setColumnCount(2);
    m_pList->setHeaderLabels({tr("Application"), tr("Status")});
    m_pList->setRootIsDecorated(false);
    m_pList->setUniformRowHeights(true);
    m_pList->setAllColumnsShowFocus(true);
    m_pList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_pList->header()->setStretchLastSection(false);
    m_pList->header()->setSectionsMovable(false);
    m_pList->header()->resizeSection(0, 200);
    m_pList->header()->resizeSection(1, 300);
    m_pList->setMinimumSize(524, 150);
    CopyRowsByKey(*m_pList);
    auto* pApplications = new QGroupBox(tr("Applications"));
    auto* pApplicationsLayout = new QVBoxLayout(pApplications);
    auto* pRow = new QHBoxLayout;
    pRow->addWidget(m_pApplication, 1);
    pRow->addWidget(pAdd);
    pRow->addWidget(pRemove);
    pRow->addWidget(pToggle);
    pApplicationsLayout->addLayout(pRow);
    pApplicationsLayout->addWidget(m_pList);

    m_pFontName = Edit("FontName", tr("Font name"), 0, true);
    m_pFontHeight = Edit("FontHeight", tr("Font height"), 6, true);
    auto* pChoose = Button(tr("Choose Font"), "ChooseFont");
    auto* pFonts = new QGroupBox(tr("Fonts"));
    auto* pFontsLayout = new QHBoxLayout(pFonts);
    pFontsLayout->addWidget(m_pFontName, 1);
    pFontsLayout->addWidget(m_pFontHeight);
    pFontsLayout->addWidget(pChoose);

    m_pThreshold = Edit("Threshold", tr("Threshold in seconds"), 12);
    auto* pLong = new QGroupBox(tr("Long Running Operations"));
    auto* pLongLayout = new QHBoxLayout(pLong);
    auto* pThresholdLabel = new QLabel(tr("Threshold"));
    pThresholdLabel->setBuddy(m_pThreshold);
    pLongLayout->addWidget(pThresholdLabel);
    pLongLayout->addWidget(m_pThreshold);
    pLongLayout->addWidget(new QLabel(tr("Seconds")));
    pLongLayout->addStretch();

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);

    auto* pLayout = new QVBoxLayout(this);
    for (QWidget* pPart : std::initializer_list<QWidget*>{pRefresh, pApplications, pFonts, pLong, pButtons})
        pLayout->addWidget(pPart, pPart == pApplications ? 1 : 0);
    // In the dialog already: else it would forget it when the focus passes another button.
    pButtons->button(QDialogButtonBox::Ok)->setDefault(true);

    m_pAutoRefresh->setChecked(m_model.m_bAutoRefresh);
    m_pRate->setText(ToQString(m_model.m_strRate));
    // Decided here and only here: the box does not switch the edit while the dialog is open.
    m_pRate->setEnabled(m_model.m_bRateEnabled);
    m_pFontName->setText(ToQString(m_model.m_strFontName));
    m_pFontHeight->setText(ToQString(m_model.m_strFontHeight));
    m_pThreshold->setText(ToQString(m_model.m_strThreshold));
    ShowRows();

    connect(pAdd, &QPushButton::clicked, this, &COptionsDlg::OnAdd);
    connect(pRemove, &QPushButton::clicked, this, &COptionsDlg::OnRemove);
    connect(pToggle, &QPushButton::clicked, this, &COptionsDlg::OnToggleStatus);
    connect(pChoose, &QPushButton::clicked, this, &COptionsDlg::OnChooseFont);
    connect(pButtons, &QDialogButtonBox::accepted, this, &COptionsDlg::OnOk);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void COptionsDlg::ReadSelection() {
    for (int n = 0; n < m_pList->topLevelItemCount(); ++n)
        m_model.m_listRows[static_cast<std::size_t>(n)].m_bSelected = m_pList->topLevelItem(n)->isSelected();
}

void COptionsDlg::ShowRows() {
    m_pList->clear();
    for (const COptionsModel::CRow& row : m_model.m_listRows) {
        auto* pItem = new QTreeWidgetItem(
            m_pList, QStringList{ToQString(row.m_strApplication), ToQString(row.m_strStatus)});
        pItem->setSelected(row.m_bSelected);
    }
}

void COptionsDlg::OnAdd() {
    ReadSelection();
    m_model.Add(ToUtf8(m_pApplication->text()));
    ShowRows();
}

void COptionsDlg::OnRemove() {
    ReadSelection();
    m_model.Remove();
    ShowRows();
}

void COptionsDlg::OnToggleStatus() {
    ReadSelection();
    m_model.ToggleStatus();
    ShowRows();
}

void COptionsDlg::OnChooseFont() {
    // Here the height counts as points, while the trees and lists take it as pixels.
    QFont initial(ToQString(m_settings.m_strFontName));
    initial.setStyleHint(QFont::TypeWriter); // as trees and lists look for it
    if (m_settings.m_nFontHeight != 0)
        initial.setPointSize(std::min(std::abs(std::max(m_settings.m_nFontHeight, -1000)), 1000));
    const auto chosen = UserInterface().AskFont(initial);
    if (!chosen)
        return;
    m_pFontName->setText(chosen->family());
    // The size in tenths of a point, cut down to whole points.
    const int nTenths = static_cast<int>(std::lround(chosen->pointSizeF() * 10));
    m_pFontHeight->setText(QString::number(nTenths / 10));
}

void COptionsDlg::OnOk() {
    m_model.m_bAutoRefresh = m_pAutoRefresh->checkState() == Qt::Checked;
    m_model.m_strRate = ToUtf8(m_pRate->text());
    m_model.m_strThreshold = ToUtf8(m_pThreshold->text());
    m_model.m_strFontName = ToUtf8(m_pFontName->text());
    m_model.m_strFontHeight = ToUtf8(m_pFontHeight->text());
    m_model.Commit(m_settings);
    accept();
}

} // namespace carvelot
