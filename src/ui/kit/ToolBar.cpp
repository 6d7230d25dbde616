#include "ui/kit/ToolBar.h"

#include "settings/Commands.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/PersonalMenu.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"

#include <QEvent>
#include <QMenu>
#include <QStyle>
#include <QToolButton>

#include <algorithm>

namespace carvelot {

namespace {

// The narrow button at a toolbar's end.
class CCustomizeButton : public QToolButton {
public:
    explicit CCustomizeButton(QWidget* parent) : QToolButton(parent) {
        setArrowType(Qt::DownArrow);
        setAutoRaise(true);
        setPopupMode(QToolButton::InstantPopup);
        setFocusPolicy(Qt::TabFocus);
        setStyleSheet(QString());
    }
    QSize sizeHint() const override { return {12, 20}; }
    QSize minimumSizeHint() const override { return sizeHint(); }
};

} // namespace

CToolBar::CToolBar(CMainWindow& frame, int id, const QString& title, const QString& name,
                   std::vector<int> initial)
    : QToolBar(title), m_frame(frame), m_nId(id), m_listDefault(std::move(initial)) {
    setObjectName(name);
    setAccessibleName(title);
    toggleViewAction()->setText(PlainCaption(title));
    setAllowedAreas(Qt::AllToolBarAreas);
    setIconSize({16, 16});
    Reset();
}

bool CToolBar::event(QEvent* event) {
    const bool handled = QToolBar::event(event);
    if (event->type() == QEvent::WindowTitleChange) {
        // The toolkit's own entry takes "&" in a title for the mark of a key.
        toggleViewAction()->setText(PlainCaption(windowTitle()));
    }
    return handled;
}

bool CToolBar::IsUserToolBar() const {
    return m_nId >= ID_TOOLBAR_USER_FIRST && m_nId <= ID_TOOLBAR_USER_LAST;
}

bool CToolBar::HasCommand(int id) const {
    return std::ranges::find(m_listCommands, id) != m_listCommands.end();
}

void CToolBar::SetCommands(const std::vector<int>& commands) {
    // The toolkit takes its time to delete a button: it leaves the bar at once, or it would stand beside the
    // new one for whoever looks for it there.
    for (QAction* action : actions()) {
        QWidget* button = widgetForAction(action);
        removeAction(action);
        if (button != nullptr) {
            button->setParent(nullptr);
        }
        if (action->parent() == this) { // separators and the bar's options
            action->deleteLater();
        }
    }
    m_listCommands.clear();
    for (const int id : commands) {
        if (id == ID_SEPARATOR) {
            addSeparator();
        } else if (HasCommand(id)) {
            continue;
        } else if (QAction* action = m_frame.CommandAction(id)) {
            addAction(action);
        } else {
            continue;
        }
        m_listCommands.push_back(id);
    }
    auto* button = new CCustomizeButton(this);
    const CCommandInfo& customize = *FindCommand(ID_VIEW_CUSTOMIZE);
    button->setToolTip(tr("Toolbar options"));
    button->setAccessibleName(
        tr("%1 toolbar options: %2").arg(windowTitle(), ToQString(customize.m_strText)));
    auto* menu = new QMenu(button);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { FillCustomizeMenu(*menu); });
    button->setMenu(menu);
    addWidget(button);
}

void CToolBar::FillCustomizeMenu(QMenu& menu) {
    menu.clear();
    std::vector<int> offered = m_listDefault;
    for (const int id : m_listCommands) {
        if (std::ranges::find(offered, id) == offered.end()) {
            offered.push_back(id);
        }
    }
    for (const int id : offered) {
        const QAction* command = m_frame.CommandAction(id);
        if (command == nullptr) {
            continue;
        }
        QAction* entry = menu.addAction(command->icon(), command->text());
        entry->setCheckable(true);
        entry->setChecked(HasCommand(id));
        // The menu's own button goes with the change: act when the menu is gone.
        connect(
            entry, &QAction::toggled, this,
            [this, id](bool show) {
                std::vector<int> commands = m_listCommands;
                std::erase(commands, id);
                if (show) {
                    const auto home = std::ranges::find(m_listDefault, id);
                    const std::ptrdiff_t place = std::min(home - m_listDefault.begin(), std::ssize(commands));
                    commands.insert(commands.begin() + place, id);
                }
                SetCommands(commands);
            },
            Qt::QueuedConnection);
    }
    menu.addSeparator();
    QAction* reset = menu.addAction(tr("&Reset Toolbar"));
    reset->setEnabled(IsChanged() && !IsUserToolBar());
    connect(reset, &QAction::triggered, this, &CToolBar::Reset, Qt::QueuedConnection);
    NewEntry(*m_frame.CommandAction(ID_VIEW_CUSTOMIZE), menu);
}

} // namespace carvelot
