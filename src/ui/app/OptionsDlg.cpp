#include "ui/app/OptionsDlg.h"

#include "ui/kit/ReportView.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"

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

QLineEdit* Edit(const char* name, const QString& accessible, int characters, bool readOnly = false) {
    auto* edit = new QLineEdit;
    edit->setObjectName(QLatin1String(name));
    edit->setAccessibleName(accessible);
    edit->setReadOnly(readOnly);
    if (characters > 0) {
        edit->setFixedWidth(edit->fontMetrics().averageCharWidth() * characters + 24);
    }
    return edit;
}

QPushButton* Button(const QString& text, const char* name) {
    auto* button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

} // namespace

COptionsDlg::COptionsDlg(CAppSettings& settings)
    : QDialog(QApplication::activeWindow()), m_settings(settings), m_model(settings) {
    setWindowTitle(tr("Carvelot Options"));

    m_pAutoRefresh = new QCheckBox(tr("Auto Refresh Process List"));
    m_pAutoRefresh->setObjectName(QStringLiteral("AutoRefresh"));
    m_pRate = Edit("Rate", tr("Refresh rate in seconds"), 8);
    auto* refresh = new QGroupBox(tr("Refresh"));
    auto* refreshLayout = new QHBoxLayout(refresh);
    refreshLayout->addWidget(m_pAutoRefresh);
    refreshLayout->addSpacing(24);
    refreshLayout->addWidget(m_pRate);
    auto* rateLabel = new QLabel(tr("Seconds"));
    rateLabel->setBuddy(m_pRate);
    refreshLayout->addWidget(rateLabel);
    refreshLayout->addStretch();

    m_pApplication = Edit("Application", tr("Application name"), 0);
    auto* add = Button(tr("Add"), "Add");
    auto* remove = Button(tr("Remove"), "Remove");
    auto* toggle = Button(tr("Toggle Status"), "ToggleStatus");
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
    auto* applications = new QGroupBox(tr("Applications"));
    auto* applicationsLayout = new QVBoxLayout(applications);
    auto* row = new QHBoxLayout;
    row->addWidget(m_pApplication, 1);
    row->addWidget(add);
    row->addWidget(remove);
    row->addWidget(toggle);
    applicationsLayout->addLayout(row);
    applicationsLayout->addWidget(m_pList);

    m_pFontName = Edit("FontName", tr("Font name"), 0, true);
    m_pFontHeight = Edit("FontHeight", tr("Font height"), 6, true);
    auto* choose = Button(tr("Choose Font"), "ChooseFont");
    auto* fonts = new QGroupBox(tr("Fonts"));
    auto* fontsLayout = new QHBoxLayout(fonts);
    fontsLayout->addWidget(m_pFontName, 1);
    fontsLayout->addWidget(m_pFontHeight);
    fontsLayout->addWidget(choose);

    m_pThreshold = Edit("Threshold", tr("Threshold in seconds"), 12);
    auto* longTasks = new QGroupBox(tr("Long Running Operations"));
    auto* longLayout = new QHBoxLayout(longTasks);
    auto* thresholdLabel = new QLabel(tr("Threshold"));
    thresholdLabel->setBuddy(m_pThreshold);
    longLayout->addWidget(thresholdLabel);
    longLayout->addWidget(m_pThreshold);
    longLayout->addWidget(new QLabel(tr("Seconds")));
    longLayout->addStretch();

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);

    auto* layout = new QVBoxLayout(this);
    for (QWidget* part : std::initializer_list<QWidget*>{refresh, applications, fonts, longTasks, buttons}) {
        layout->addWidget(part, part == applications ? 1 : 0);
    }
    // In the dialog already: else it would forget it when the focus passes another button.
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);

    m_pAutoRefresh->setChecked(m_model.m_bAutoRefresh);
    m_pRate->setText(ToQString(m_model.m_strRate));
    // Decided here and only here: the box does not switch the edit while the dialog is open.
    m_pRate->setEnabled(m_model.m_bRateEnabled);
    m_pFontName->setText(ToQString(m_model.m_strFontName));
    m_pFontHeight->setText(ToQString(m_model.m_strFontHeight));
    m_pThreshold->setText(ToQString(m_model.m_strThreshold));
    ShowRows();

    connect(add, &QPushButton::clicked, this, &COptionsDlg::OnAdd);
    connect(remove, &QPushButton::clicked, this, &COptionsDlg::OnRemove);
    connect(toggle, &QPushButton::clicked, this, &COptionsDlg::OnToggleStatus);
    connect(choose, &QPushButton::clicked, this, &COptionsDlg::OnChooseFont);
    connect(buttons, &QDialogButtonBox::accepted, this, &COptionsDlg::OnOk);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void COptionsDlg::ReadSelection() {
    for (int n = 0; n < m_pList->topLevelItemCount(); ++n) {
        m_model.m_listRows[static_cast<std::size_t>(n)].m_bSelected = m_pList->topLevelItem(n)->isSelected();
    }
}

void COptionsDlg::ShowRows() {
    m_pList->clear();
    for (const COptionsModel::CRow& row : m_model.m_listRows) {
        auto* item = new QTreeWidgetItem(
            m_pList, QStringList{ToQString(row.m_strApplication), ToQString(row.m_strStatus)});
        item->setSelected(row.m_bSelected);
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
    if (m_settings.m_nFontHeight != 0) {
        initial.setPointSize(std::min(std::abs(std::max(m_settings.m_nFontHeight, -1000)), 1000));
    }
    const auto chosen = UserInterface().AskFont(initial);
    if (!chosen) {
        return;
    }
    m_pFontName->setText(chosen->family());
    // The size in tenths of a point, cut down to whole points.
    const int tenths = static_cast<int>(std::lround(chosen->pointSizeF() * 10));
    m_pFontHeight->setText(QString::number(tenths / 10));
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
