#include "ui/app/CustomizeDlg.h"

#include "settings/Commands.h"
#include "ui/app/FrameToolBars.h"
#include "ui/app/MainFrame.h"
#include "ui/kit/PersonalMenu.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"
#include "ui/kit/ToolBar.h"
#include "ui/kit/UserInterface.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace carvelot {

namespace {

QPushButton* Button(const QString& strText, const char* pszName) {
    auto* pButton = new QPushButton(strText);
    pButton->setObjectName(QLatin1String(pszName));
    pButton->setAutoDefault(false);
    return pButton;
}

QString PlainText(const QAction& action) {
    QString strText = action.text();
    return strText.remove(QLatin1Char('&'));
}

} // namespace

CCustomizeDlg::CCustomizeDlg(CMainFrame& frame) : QDialog(&frame), m_frame(frame) {
    setWindowTitle(tr("Customize"));
    auto* pPages = new QTabWidget;
    pPages->addTab(CommandsPage(), tr("Commands"));
    pPages->addTab(ToolBarsPage(), tr("Toolbars"));
    pPages->addTab(OptionsPage(), tr("Options"));
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(pPages, 1);
    pLayout->addWidget(pButtons);
    FillToolBars();
    FillCommands();
    m_pCategories->setFocus();
    resize(640, 470);
}

QWidget* CCustomizeDlg::CommandsPage() {
    m_pCategories = new QComboBox;
    m_pCategories->setObjectName(QStringLiteral("Categories"));
    m_pCategories->addItem(tr("All Commands"));
    for (const CCommandInfo& command : AllCommands()) {
        const QString strCategory = ToQString(command.m_strCategory);
        if (m_pCategories->findText(strCategory) < 0)
            m_pCategories->addItem(strCategory);
    }
    m_pCommands = new QListWidget;
    m_pCommands->setObjectName(QStringLiteral("Commands"));
    m_pCommands->setAccessibleName(tr("Commands"));
    m_pCommands->setIconSize({16, 16});
    m_pDescription = PlainLabel();
    m_pDescription->setWordWrap(true);
    m_pDescription->setMinimumHeight(m_pDescription->fontMetrics().lineSpacing() * 2 + 2);
    m_pDescription->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_pImage = new QComboBox;
    m_pImage->setObjectName(QStringLiteral("Image"));
    m_pImage->setAccessibleName(tr("Button image"));

    m_pToolBarChoice = new QComboBox;
    m_pToolBarChoice->setObjectName(QStringLiteral("ToolBarChoice"));
    m_pButtons = new QListWidget;
    m_pButtons->setObjectName(QStringLiteral("Buttons"));
    m_pButtons->setAccessibleName(tr("Buttons of the toolbar"));
    m_pButtons->setIconSize({16, 16});
    m_pAdd = Button(tr("&Add >"), "Add");
    m_pRemove = Button(tr("< &Remove"), "Remove");
    m_pSeparator = Button(tr("Se&parator"), "Separator");
    m_pUp = Button(tr("Move &Up"), "Up");
    m_pDown = Button(tr("Move &Down"), "Down");

    auto* pMiddle = new QVBoxLayout;
    pMiddle->addStretch();
    for (QPushButton* pButton : {m_pAdd, m_pRemove, m_pSeparator, m_pUp, m_pDown})
        pMiddle->addWidget(pButton);
    pMiddle->addStretch();

    auto* pImageRow = new QHBoxLayout;
    auto* pImageLabel = new QLabel(tr("Button &image:"));
    pImageLabel->setBuddy(m_pImage);
    pImageRow->addWidget(pImageLabel);
    pImageRow->addWidget(m_pImage, 1);

    auto* pPage = new QWidget;
    auto* pGrid = new QGridLayout(pPage);
    auto* pCategoryLabel = new QLabel(tr("&Category:"));
    pCategoryLabel->setBuddy(m_pCategories);
    auto* pToolBarLabel = new QLabel(tr("&Toolbar:"));
    pToolBarLabel->setBuddy(m_pToolBarChoice);
    pGrid->addWidget(pCategoryLabel, 0, 0);
    pGrid->addWidget(m_pCategories, 1, 0);
    pGrid->addWidget(m_pCommands, 2, 0);
    pGrid->addLayout(pMiddle, 2, 1);
    pGrid->addWidget(pToolBarLabel, 0, 2);
    pGrid->addWidget(m_pToolBarChoice, 1, 2);
    pGrid->addWidget(m_pButtons, 2, 2);
    pGrid->addWidget(m_pDescription, 3, 0);
    pGrid->addLayout(pImageRow, 3, 2, Qt::AlignTop);
    pGrid->setColumnStretch(0, 1);
    pGrid->setColumnStretch(2, 1);

    connect(m_pCategories, &QComboBox::currentIndexChanged, this, &CCustomizeDlg::FillCommands);
    connect(m_pCommands, &QListWidget::currentRowChanged, this, &CCustomizeDlg::UpdateButtons);
    connect(m_pCommands, &QListWidget::itemDoubleClicked, this, &CCustomizeDlg::OnAdd);
    connect(m_pToolBarChoice, &QComboBox::currentIndexChanged, this, [this] { FillButtons(0); });
    connect(m_pButtons, &QListWidget::currentRowChanged, this, &CCustomizeDlg::UpdateButtons);
    connect(m_pAdd, &QPushButton::clicked, this, &CCustomizeDlg::OnAdd);
    connect(m_pRemove, &QPushButton::clicked, this, &CCustomizeDlg::OnRemove);
    connect(m_pSeparator, &QPushButton::clicked, this, &CCustomizeDlg::OnSeparator);
    connect(m_pUp, &QPushButton::clicked, this, [this] { OnMove(-1); });
    connect(m_pDown, &QPushButton::clicked, this, [this] { OnMove(1); });
    connect(m_pImage, &QComboBox::activated, this, [this](int nIndex) {
        m_frame.Bars().SetUserImage(CurrentCommand(), nIndex - 1);
        FillButtons(m_pButtons->currentRow());
        if (QListWidgetItem* pItem = m_pCommands->currentItem())
            pItem->setIcon(m_frame.CommandAction(CurrentCommand())->icon());
    });
    return pPage;
}

QWidget* CCustomizeDlg::ToolBarsPage() {
    m_pToolBars = new QListWidget;
    m_pToolBars->setObjectName(QStringLiteral("ToolBars"));
    m_pToolBars->setAccessibleName(tr("Toolbars"));
    auto* pNew = Button(tr("&New..."), "New");
    m_pRename = Button(tr("R&ename..."), "Rename");
    m_pDelete = Button(tr("&Delete"), "Delete");
    m_pReset = Button(tr("&Reset"), "Reset");
    auto* pLayoutButton = Button(tr("Restore Default &Layout"), "RestoreLayout");
    auto* pButtons = new QVBoxLayout;
    for (QPushButton* pButton : {pNew, m_pRename, m_pDelete, m_pReset, pLayoutButton})
        pButtons->addWidget(pButton);
    pButtons->addStretch();
    auto* pPage = new QWidget;
    auto* pGrid = new QGridLayout(pPage);
    auto* pLabel = new QLabel(tr("&Toolbars:"));
    pLabel->setBuddy(m_pToolBars);
    pGrid->addWidget(pLabel, 0, 0);
    pGrid->addWidget(m_pToolBars, 1, 0);
    pGrid->addLayout(pButtons, 1, 1);

    connect(m_pToolBars, &QListWidget::itemChanged, this, [this](const QListWidgetItem* pItem) {
        if (m_bFilling)
            return;
        m_frame.Bars().All()[m_pToolBars->row(pItem)]->setVisible(pItem->checkState() == Qt::Checked);
        m_frame.UpdateCommands();
    });
    connect(m_pToolBars, &QListWidget::currentRowChanged, this, &CCustomizeDlg::UpdateButtons);
    connect(pNew, &QPushButton::clicked, this, &CCustomizeDlg::OnNew);
    connect(m_pRename, &QPushButton::clicked, this, &CCustomizeDlg::OnRename);
    connect(m_pDelete, &QPushButton::clicked, this, &CCustomizeDlg::OnDelete);
    connect(m_pReset, &QPushButton::clicked, this, &CCustomizeDlg::OnReset);
    connect(pLayoutButton, &QPushButton::clicked, this, [this] {
        m_frame.RestoreDefaultLayout();
        FillToolBars();
    });
    return pPage;
}

QWidget* CCustomizeDlg::OptionsPage() {
    auto* pTips = new QCheckBox(tr("Show Screen&Tips on toolbars"));
    pTips->setObjectName(QStringLiteral("ToolTips"));
    pTips->setChecked(m_frame.Bars().ShowsToolTips());
    connect(pTips, &QCheckBox::toggled, this, [this](bool bOn) { m_frame.Bars().SetShowsToolTips(bOn); });

    CMenuHabits& habits = m_frame.MenuHabits();
    auto* pShort = new QCheckBox(tr("Me&nus show recently used commands first"));
    pShort->setObjectName(QStringLiteral("RecentlyUsedMenus"));
    pShort->setChecked(habits.m_bRecentlyUsedMenus);
    auto* pDelay = new QCheckBox(tr("Show f&ull menus after a short delay"));
    pDelay->setObjectName(QStringLiteral("FullMenusAfterDelay"));
    pDelay->setChecked(habits.m_bFullMenusAfterDelay);
    pDelay->setEnabled(habits.m_bRecentlyUsedMenus);
    auto* pForget = Button(tr("&Reset my usage data"), "ResetUsage");
    connect(pShort, &QCheckBox::toggled, this, [&habits, pDelay](bool bOn) {
        habits.m_bRecentlyUsedMenus = bOn;
        pDelay->setEnabled(bOn);
    });
    connect(pDelay, &QCheckBox::toggled, this, [&habits](bool bOn) { habits.m_bFullMenusAfterDelay = bOn; });
    connect(pForget, &QPushButton::clicked, this, [&habits] { habits.m_setUsed.clear(); });

    auto* pToolBarBox = new QGroupBox(tr("Toolbar"));
    (new QVBoxLayout(pToolBarBox))->addWidget(pTips);
    auto* pMenuBox = new QGroupBox(tr("Personalized Menus and Toolbars"));
    auto* pMenuLayout = new QVBoxLayout(pMenuBox);
    pMenuLayout->addWidget(pShort);
    pMenuLayout->addWidget(pDelay);
    pMenuLayout->addWidget(pForget, 0, Qt::AlignLeft);
    auto* pPage = new QWidget;
    auto* pLayout = new QVBoxLayout(pPage);
    pLayout->addWidget(pToolBarBox);
    pLayout->addWidget(pMenuBox);
    pLayout->addStretch();
    return pPage;
}

void CCustomizeDlg::FillCommands() {
    m_pCommands->clear();
    for (const CCommandInfo& command : AllCommands()) {
        if (m_pCategories->currentIndex() > 0 &&
            ToQString(command.m_strCategory) != m_pCategories->currentText())
            continue;
        const QAction& action = *m_frame.CommandAction(command.m_nId);
        auto* pItem = new QListWidgetItem(action.icon(), PlainText(action), m_pCommands);
        pItem->setData(Qt::UserRole, command.m_nId);
    }
    m_pCommands->setCurrentRow(0);
    UpdateButtons();
}

void CCustomizeDlg::FillToolBars() {
    const QScopedValueRollback filling(m_bFilling, true);
    const int nToolBar = m_pToolBars->currentRow();
    const int nChoice = m_pToolBarChoice->currentIndex();
    m_pToolBars->clear();
    m_pToolBarChoice->clear();
    for (const CToolBar* pToolBar : m_frame.Bars().All()) {
        auto* pItem = new QListWidgetItem(pToolBar->windowTitle(), m_pToolBars);
        pItem->setFlags(pItem->flags() | Qt::ItemIsUserCheckable);
        pItem->setCheckState(pToolBar->isHidden() ? Qt::Unchecked : Qt::Checked);
        m_pToolBarChoice->addItem(pToolBar->windowTitle());
    }
    const int nLast = static_cast<int>(m_frame.Bars().All().size()) - 1;
    m_pToolBars->setCurrentRow(std::clamp(nToolBar, 0, nLast));
    m_pToolBarChoice->setCurrentIndex(std::clamp(nChoice, 0, nLast));
    FillButtons(0);
}

void CCustomizeDlg::FillButtons(int nCurrent) {
    m_pButtons->clear();
    if (const CToolBar* pToolBar = EditedToolBar()) {
        for (const int nId : pToolBar->Commands()) {
            if (const QAction* pAction = m_frame.CommandAction(nId))
                m_pButtons->addItem(new QListWidgetItem(pAction->icon(), PlainText(*pAction)));
            else
                m_pButtons->addItem(tr("(Separator)"));
        }
    }
    m_pButtons->setCurrentRow(std::min(nCurrent, m_pButtons->count() - 1));
    UpdateButtons();
}

int CCustomizeDlg::CurrentCommand() const {
    const QListWidgetItem* pItem = m_pCommands->currentItem();
    return pItem != nullptr ? pItem->data(Qt::UserRole).toInt() : 0;
}

CToolBar* CCustomizeDlg::EditedToolBar() const {
    return m_frame.Bars().All().value(m_pToolBarChoice->currentIndex());
}

CToolBar* CCustomizeDlg::SelectedToolBar() const {
    return m_frame.Bars().All().value(m_pToolBars->currentRow());
}

void CCustomizeDlg::ShowImages() {
    const int nCommand = CurrentCommand();
    m_pImage->clear();
    m_pImage->addItem(tr("The command's own"));
    for (int n = 0; n < m_frame.Bars().UserImages().Count(); ++n)
        m_pImage->addItem(m_frame.Bars().UserImages().Icon(n), tr("User image %1").arg(n + 1));
    m_pImage->setCurrentIndex(std::clamp(m_frame.Bars().UserImage(nCommand) + 1, 0, m_pImage->count() - 1));
    m_pImage->setEnabled(m_pImage->count() > 1 && nCommand != 0);
}

void CCustomizeDlg::UpdateButtons() {
    const CCommandInfo* pCommand = FindCommand(CurrentCommand());
    m_pDescription->setText(pCommand != nullptr ? ToQString(StatusTip(*pCommand)) : QString());
    ShowImages();
    const int nRow = m_pButtons->currentRow();
    const CToolBar* pEdited = EditedToolBar();
    m_pAdd->setEnabled(pCommand != nullptr && pEdited != nullptr && !pEdited->HasCommand(CurrentCommand()));
    m_pSeparator->setEnabled(pEdited != nullptr);
    m_pRemove->setEnabled(nRow >= 0);
    m_pUp->setEnabled(nRow > 0);
    m_pDown->setEnabled(nRow >= 0 && nRow + 1 < m_pButtons->count());
    const CToolBar* pSelected = SelectedToolBar();
    const bool bUser = pSelected != nullptr && pSelected->IsUserToolBar();
    m_pRename->setEnabled(bUser);
    m_pDelete->setEnabled(bUser);
    m_pReset->setEnabled(pSelected != nullptr && !bUser);
}

void CCustomizeDlg::OnAdd() {
    CToolBar* pToolBar = EditedToolBar();
    if (pToolBar == nullptr || CurrentCommand() == 0)
        return;
    std::vector<int> listCommands = pToolBar->Commands();
    const auto itThere = std::ranges::find(listCommands, CurrentCommand());
    if (itThere != listCommands.end()) {
        m_pButtons->setCurrentRow(static_cast<int>(itThere - listCommands.begin()));
        return;
    }
    const int nPlace = m_pButtons->currentRow() + 1;
    listCommands.insert(listCommands.begin() + nPlace, CurrentCommand());
    pToolBar->SetCommands(listCommands);
    FillButtons(nPlace);
}

void CCustomizeDlg::OnSeparator() {
    CToolBar* pToolBar = EditedToolBar();
    std::vector<int> listCommands = pToolBar->Commands();
    const int nPlace = m_pButtons->currentRow() + 1;
    listCommands.insert(listCommands.begin() + nPlace, ID_SEPARATOR);
    pToolBar->SetCommands(listCommands);
    FillButtons(nPlace);
}

void CCustomizeDlg::OnRemove() {
    CToolBar* pToolBar = EditedToolBar();
    const int nRow = m_pButtons->currentRow();
    if (pToolBar == nullptr || nRow < 0)
        return;
    std::vector<int> listCommands = pToolBar->Commands();
    listCommands.erase(listCommands.begin() + nRow);
    pToolBar->SetCommands(listCommands);
    FillButtons(nRow);
}

void CCustomizeDlg::OnMove(int nStep) {
    CToolBar* pToolBar = EditedToolBar();
    const int nRow = m_pButtons->currentRow();
    const int nTo = nRow + nStep;
    if (pToolBar == nullptr || nRow < 0 || nTo < 0 || nTo >= m_pButtons->count())
        return;
    std::vector<int> listCommands = pToolBar->Commands();
    std::swap(listCommands[static_cast<std::size_t>(nRow)], listCommands[static_cast<std::size_t>(nTo)]);
    pToolBar->SetCommands(listCommands);
    FillButtons(nTo);
}

void CCustomizeDlg::OnNew() {
    const auto strTitle = UserInterface().AskText(tr("Toolbar Name"), tr("Toolbar name:"),
                                                  tr("Custom %1").arg(m_frame.Bars().All().size() - 1));
    if (!strTitle || strTitle->trimmed().isEmpty())
        return;
    if (m_frame.Bars().New(strTitle->trimmed()) == nullptr) {
        UserInterface().ShowMessage(tr("There can be ten toolbars of your own."));
        return;
    }
    FillToolBars();
    m_pToolBars->setCurrentRow(m_pToolBars->count() - 1);
    m_pToolBarChoice->setCurrentIndex(m_pToolBarChoice->count() - 1);
}

void CCustomizeDlg::OnRename() {
    CToolBar* pToolBar = SelectedToolBar();
    if (pToolBar == nullptr)
        return;
    const auto strTitle =
        UserInterface().AskText(tr("Toolbar Name"), tr("Toolbar name:"), pToolBar->windowTitle());
    if (!strTitle || strTitle->trimmed().isEmpty())
        return;
    pToolBar->setWindowTitle(strTitle->trimmed());
    pToolBar->setAccessibleName(strTitle->trimmed());
    FillToolBars();
}

void CCustomizeDlg::OnDelete() {
    m_frame.Bars().Delete(SelectedToolBar());
    FillToolBars();
}

void CCustomizeDlg::OnReset() {
    if (CToolBar* pToolBar = SelectedToolBar())
        pToolBar->Reset();
    FillButtons(0);
}

} // namespace carvelot
