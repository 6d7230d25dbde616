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

QPushButton* Button(const QString& text, const char* name) {
    auto* button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

QString PlainText(const QAction& action) {
    QString text = action.text();
    return text.remove(QLatin1Char('&'));
}

} // namespace

CCustomizeDlg::CCustomizeDlg(CMainFrame& frame) : QDialog(&frame), m_frame(frame) {
    setWindowTitle(tr("Customize"));
    auto* pages = new QTabWidget;
    pages->addTab(CommandsPage(), tr("Commands"));
    pages->addTab(ToolBarsPage(), tr("Toolbars"));
    pages->addTab(OptionsPage(), tr("Options"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(pages, 1);
    layout->addWidget(buttons);
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
        const QString category = ToQString(command.m_strCategory);
        if (m_pCategories->findText(category) < 0) {
            m_pCategories->addItem(category);
        }
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

    auto* middle = new QVBoxLayout;
    middle->addStretch();
    for (QPushButton* button : {m_pAdd, m_pRemove, m_pSeparator, m_pUp, m_pDown}) {
        middle->addWidget(button);
    }
    middle->addStretch();

    auto* imageRow = new QHBoxLayout;
    auto* imageLabel = new QLabel(tr("Button &image:"));
    imageLabel->setBuddy(m_pImage);
    imageRow->addWidget(imageLabel);
    imageRow->addWidget(m_pImage, 1);

    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    auto* categoryLabel = new QLabel(tr("&Category:"));
    categoryLabel->setBuddy(m_pCategories);
    auto* toolBarLabel = new QLabel(tr("&Toolbar:"));
    toolBarLabel->setBuddy(m_pToolBarChoice);
    grid->addWidget(categoryLabel, 0, 0);
    grid->addWidget(m_pCategories, 1, 0);
    grid->addWidget(m_pCommands, 2, 0);
    grid->addLayout(middle, 2, 1);
    grid->addWidget(toolBarLabel, 0, 2);
    grid->addWidget(m_pToolBarChoice, 1, 2);
    grid->addWidget(m_pButtons, 2, 2);
    grid->addWidget(m_pDescription, 3, 0);
    grid->addLayout(imageRow, 3, 2, Qt::AlignTop);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(2, 1);

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
    connect(m_pImage, &QComboBox::activated, this, [this](int index) {
        m_frame.Bars().SetUserImage(CurrentCommand(), index - 1);
        FillButtons(m_pButtons->currentRow());
        if (QListWidgetItem* item = m_pCommands->currentItem()) {
            item->setIcon(m_frame.CommandAction(CurrentCommand())->icon());
        }
    });
    return page;
}

QWidget* CCustomizeDlg::ToolBarsPage() {
    m_pToolBars = new QListWidget;
    m_pToolBars->setObjectName(QStringLiteral("ToolBars"));
    m_pToolBars->setAccessibleName(tr("Toolbars"));
    auto* added = Button(tr("&New..."), "New");
    m_pRename = Button(tr("R&ename..."), "Rename");
    m_pDelete = Button(tr("&Delete"), "Delete");
    m_pReset = Button(tr("&Reset"), "Reset");
    auto* layoutButton = Button(tr("Restore Default &Layout"), "RestoreLayout");
    auto* buttons = new QVBoxLayout;
    for (QPushButton* button : {added, m_pRename, m_pDelete, m_pReset, layoutButton}) {
        buttons->addWidget(button);
    }
    buttons->addStretch();
    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    auto* label = new QLabel(tr("&Toolbars:"));
    label->setBuddy(m_pToolBars);
    grid->addWidget(label, 0, 0);
    grid->addWidget(m_pToolBars, 1, 0);
    grid->addLayout(buttons, 1, 1);

    connect(m_pToolBars, &QListWidget::itemChanged, this, [this](const QListWidgetItem* item) {
        if (m_bFilling) {
            return;
        }
        m_frame.Bars().All()[m_pToolBars->row(item)]->setVisible(item->checkState() == Qt::Checked);
        m_frame.UpdateCommands();
    });
    connect(m_pToolBars, &QListWidget::currentRowChanged, this, &CCustomizeDlg::UpdateButtons);
    connect(added, &QPushButton::clicked, this, &CCustomizeDlg::OnNew);
    connect(m_pRename, &QPushButton::clicked, this, &CCustomizeDlg::OnRename);
    connect(m_pDelete, &QPushButton::clicked, this, &CCustomizeDlg::OnDelete);
    connect(m_pReset, &QPushButton::clicked, this, &CCustomizeDlg::OnReset);
    connect(layoutButton, &QPushButton::clicked, this, [this] {
        m_frame.RestoreDefaultLayout();
        FillToolBars();
    });
    return page;
}

QWidget* CCustomizeDlg::OptionsPage() {
    auto* tips = new QCheckBox(tr("Show Screen&Tips on toolbars"));
    tips->setObjectName(QStringLiteral("ToolTips"));
    tips->setChecked(m_frame.Bars().ShowsToolTips());
    connect(tips, &QCheckBox::toggled, this, [this](bool on) { m_frame.Bars().SetShowsToolTips(on); });

    CMenuHabits& habits = m_frame.MenuHabits();
    auto* shorter = new QCheckBox(tr("Me&nus show recently used commands first"));
    shorter->setObjectName(QStringLiteral("RecentlyUsedMenus"));
    shorter->setChecked(habits.m_bRecentlyUsedMenus);
    auto* delay = new QCheckBox(tr("Show f&ull menus after a short delay"));
    delay->setObjectName(QStringLiteral("FullMenusAfterDelay"));
    delay->setChecked(habits.m_bFullMenusAfterDelay);
    delay->setEnabled(habits.m_bRecentlyUsedMenus);
    auto* forget = Button(tr("&Reset my usage data"), "ResetUsage");
    connect(shorter, &QCheckBox::toggled, this, [&habits, delay](bool on) {
        habits.m_bRecentlyUsedMenus = on;
        delay->setEnabled(on);
    });
    connect(delay, &QCheckBox::toggled, this, [&habits](bool on) { habits.m_bFullMenusAfterDelay = on; });
    connect(forget, &QPushButton::clicked, this, [&habits] { habits.m_setUsed.clear(); });

    auto* toolBarBox = new QGroupBox(tr("Toolbar"));
    (new QVBoxLayout(toolBarBox))->addWidget(tips);
    auto* menuBox = new QGroupBox(tr("Personalized Menus and Toolbars"));
    auto* menuLayout = new QVBoxLayout(menuBox);
    menuLayout->addWidget(shorter);
    menuLayout->addWidget(delay);
    menuLayout->addWidget(forget, 0, Qt::AlignLeft);
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(toolBarBox);
    layout->addWidget(menuBox);
    layout->addStretch();
    return page;
}

void CCustomizeDlg::FillCommands() {
    m_pCommands->clear();
    for (const CCommandInfo& command : AllCommands()) {
        if (m_pCategories->currentIndex() > 0 &&
            ToQString(command.m_strCategory) != m_pCategories->currentText()) {
            continue;
        }
        const QAction& action = *m_frame.CommandAction(command.m_nId);
        auto* item = new QListWidgetItem(action.icon(), PlainText(action), m_pCommands);
        item->setData(Qt::UserRole, command.m_nId);
    }
    m_pCommands->setCurrentRow(0);
    UpdateButtons();
}

void CCustomizeDlg::FillToolBars() {
    const QScopedValueRollback filling(m_bFilling, true);
    const int toolBarRow = m_pToolBars->currentRow();
    const int choice = m_pToolBarChoice->currentIndex();
    m_pToolBars->clear();
    m_pToolBarChoice->clear();
    for (const CToolBar* toolBar : m_frame.Bars().All()) {
        auto* item = new QListWidgetItem(toolBar->windowTitle(), m_pToolBars);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(toolBar->isHidden() ? Qt::Unchecked : Qt::Checked);
        m_pToolBarChoice->addItem(toolBar->windowTitle());
    }
    const int last = static_cast<int>(m_frame.Bars().All().size()) - 1;
    m_pToolBars->setCurrentRow(std::clamp(toolBarRow, 0, last));
    m_pToolBarChoice->setCurrentIndex(std::clamp(choice, 0, last));
    FillButtons(0);
}

void CCustomizeDlg::FillButtons(int current) {
    m_pButtons->clear();
    if (const CToolBar* toolBar = EditedToolBar()) {
        for (const int id : toolBar->Commands()) {
            if (const QAction* action = m_frame.CommandAction(id)) {
                m_pButtons->addItem(new QListWidgetItem(action->icon(), PlainText(*action)));
            } else {
                m_pButtons->addItem(tr("(Separator)"));
            }
        }
    }
    m_pButtons->setCurrentRow(std::min(current, m_pButtons->count() - 1));
    UpdateButtons();
}

int CCustomizeDlg::CurrentCommand() const {
    const QListWidgetItem* item = m_pCommands->currentItem();
    return item != nullptr ? item->data(Qt::UserRole).toInt() : 0;
}

CToolBar* CCustomizeDlg::EditedToolBar() const {
    return m_frame.Bars().All().value(m_pToolBarChoice->currentIndex());
}

CToolBar* CCustomizeDlg::SelectedToolBar() const {
    return m_frame.Bars().All().value(m_pToolBars->currentRow());
}

void CCustomizeDlg::ShowImages() {
    const int command = CurrentCommand();
    m_pImage->clear();
    m_pImage->addItem(tr("The command's own"));
    for (int n = 0; n < m_frame.Bars().UserImages().Count(); ++n) {
        m_pImage->addItem(m_frame.Bars().UserImages().Icon(n), tr("User image %1").arg(n + 1));
    }
    m_pImage->setCurrentIndex(std::clamp(m_frame.Bars().UserImage(command) + 1, 0, m_pImage->count() - 1));
    m_pImage->setEnabled(m_pImage->count() > 1 && command != 0);
}

void CCustomizeDlg::UpdateButtons() {
    const CCommandInfo* command = FindCommand(CurrentCommand());
    m_pDescription->setText(command != nullptr ? ToQString(StatusTip(*command)) : QString());
    ShowImages();
    const int row = m_pButtons->currentRow();
    const CToolBar* edited = EditedToolBar();
    m_pAdd->setEnabled(command != nullptr && edited != nullptr && !edited->HasCommand(CurrentCommand()));
    m_pSeparator->setEnabled(edited != nullptr);
    m_pRemove->setEnabled(row >= 0);
    m_pUp->setEnabled(row > 0);
    m_pDown->setEnabled(row >= 0 && row + 1 < m_pButtons->count());
    const CToolBar* selected = SelectedToolBar();
    const bool user = selected != nullptr && selected->IsUserToolBar();
    m_pRename->setEnabled(user);
    m_pDelete->setEnabled(user);
    m_pReset->setEnabled(selected != nullptr && !user);
}

void CCustomizeDlg::OnAdd() {
    CToolBar* toolBar = EditedToolBar();
    if (toolBar == nullptr || CurrentCommand() == 0) {
        return;
    }
    std::vector<int> commands = toolBar->Commands();
    const auto there = std::ranges::find(commands, CurrentCommand());
    if (there != commands.end()) {
        m_pButtons->setCurrentRow(static_cast<int>(there - commands.begin()));
        return;
    }
    const int place = m_pButtons->currentRow() + 1;
    commands.insert(commands.begin() + place, CurrentCommand());
    toolBar->SetCommands(commands);
    FillButtons(place);
}

void CCustomizeDlg::OnSeparator() {
    CToolBar* toolBar = EditedToolBar();
    std::vector<int> commands = toolBar->Commands();
    const int place = m_pButtons->currentRow() + 1;
    commands.insert(commands.begin() + place, ID_SEPARATOR);
    toolBar->SetCommands(commands);
    FillButtons(place);
}

void CCustomizeDlg::OnRemove() {
    CToolBar* toolBar = EditedToolBar();
    const int row = m_pButtons->currentRow();
    if (toolBar == nullptr || row < 0) {
        return;
    }
    std::vector<int> commands = toolBar->Commands();
    commands.erase(commands.begin() + row);
    toolBar->SetCommands(commands);
    FillButtons(row);
}

void CCustomizeDlg::OnMove(int step) {
    CToolBar* toolBar = EditedToolBar();
    const int row = m_pButtons->currentRow();
    const int to = row + step;
    if (toolBar == nullptr || row < 0 || to < 0 || to >= m_pButtons->count()) {
        return;
    }
    std::vector<int> commands = toolBar->Commands();
    std::swap(commands[static_cast<std::size_t>(row)], commands[static_cast<std::size_t>(to)]);
    toolBar->SetCommands(commands);
    FillButtons(to);
}

void CCustomizeDlg::OnNew() {
    const auto title = UserInterface().AskText(tr("Toolbar Name"), tr("Toolbar name:"),
                                               tr("Custom %1").arg(m_frame.Bars().All().size() - 1));
    if (!title || title->trimmed().isEmpty()) {
        return;
    }
    if (m_frame.Bars().New(title->trimmed()) == nullptr) {
        UserInterface().ShowMessage(tr("There can be ten toolbars of your own."));
        return;
    }
    FillToolBars();
    m_pToolBars->setCurrentRow(m_pToolBars->count() - 1);
    m_pToolBarChoice->setCurrentIndex(m_pToolBarChoice->count() - 1);
}

void CCustomizeDlg::OnRename() {
    CToolBar* toolBar = SelectedToolBar();
    if (toolBar == nullptr) {
        return;
    }
    const auto title =
        UserInterface().AskText(tr("Toolbar Name"), tr("Toolbar name:"), toolBar->windowTitle());
    if (!title || title->trimmed().isEmpty()) {
        return;
    }
    toolBar->setWindowTitle(title->trimmed());
    toolBar->setAccessibleName(title->trimmed());
    FillToolBars();
}

void CCustomizeDlg::OnDelete() {
    m_frame.Bars().Delete(SelectedToolBar());
    FillToolBars();
}

void CCustomizeDlg::OnReset() {
    if (CToolBar* toolBar = SelectedToolBar()) {
        toolBar->Reset();
    }
    FillButtons(0);
}

} // namespace carvelot
