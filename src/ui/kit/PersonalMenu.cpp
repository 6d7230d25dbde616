#include "ui/kit/PersonalMenu.h"

#include "settings/AppSettings.h"
#include "settings/Commands.h"
#include "ui/kit/StoredLayout.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace carvelot {

void CMenuHabits::Load() {
    m_bRecentlyUsedMenus = GetWorkspaceInt("RecentlyUsedMenus", 1) != 0;
    m_bFullMenusAfterDelay = GetWorkspaceInt("FullMenusAfterDelay", 1) != 0;
    const std::vector<int> used = ReadWorkspace(
        "UsedCommands", [](const std::string& stored) { return ReadCommands(stored); },
        WriteCommands<std::vector<int>>);
    m_setUsed = {used.begin(), used.end()};
}

void CMenuHabits::Save() const {
    WriteWorkspaceInt("RecentlyUsedMenus", m_bRecentlyUsedMenus ? 1 : 0);
    WriteWorkspaceInt("FullMenusAfterDelay", m_bFullMenusAfterDelay ? 1 : 0);
    WriteWorkspaceString("UsedCommands", WriteCommands(m_setUsed));
}

CPersonalMenu::CPersonalMenu(const QString& title, CMenuHabits& habits, QWidget* parent)
    : QMenu(title, parent), m_habits(habits), m_pChevron(new QAction(QStringLiteral("\u00BB"), this)) {
    m_pChevron->setStatusTip(tr("Show all commands of this menu"));
    m_pChevron->setToolTip(tr("Expand"));
    m_pChevron->setVisible(false);
    addAction(m_pChevron);
    m_timer.setSingleShot(true);
    m_timer.setInterval(700);
    connect(&m_timer, &QTimer::timeout, this, &CPersonalMenu::Expand);
    connect(this, &QMenu::aboutToShow, this, &CPersonalMenu::OnAboutToShow);
    connect(this, &QMenu::aboutToHide, this, [this] { m_timer.stop(); });
}

QAction* NewEntry(QAction& command, QMenu& menu, std::function<void()> chosen) {
    auto* entry = new QAction(&menu);
    const auto follow = [entry, action = &command] {
        entry->setText(action->text());
        entry->setIcon(action->icon());
        entry->setEnabled(action->isEnabled());
        entry->setCheckable(action->isCheckable());
        entry->setChecked(action->isChecked());
        entry->setStatusTip(action->statusTip());
        entry->setToolTip(action->toolTip());
        entry->setData(action->data());
    };
    follow();
    // The key is shown beside the entry and belongs to the command: while the menu is closed only that has
    // it. Of two the toolkit would take neither where the menu bar has the keyboard.
    entry->setShortcutContext(Qt::WidgetShortcut);
    QObject::connect(&menu, &QMenu::aboutToShow, entry, [entry, action = QPointer<QAction>(&command)] {
        entry->setShortcut(action != nullptr ? action->shortcut() : QKeySequence());
    });
    QObject::connect(&menu, &QMenu::aboutToHide, entry, [entry] { entry->setShortcut({}); });
    QObject::connect(&command, &QAction::changed, entry, follow);
    QObject::connect(entry, &QAction::triggered, &command,
                     [entry, action = &command, follow, chosen = std::move(chosen)] {
                         if (chosen) {
                             chosen();
                         }
                         const QPointer<QAction> alive = entry; // its menu may go with the command
                         action->trigger();
                         if (alive != nullptr) {
                             follow();
                         }
                     });
    menu.addAction(entry);
    return entry;
}

QAction* CPersonalMenu::AddCommand(QAction& command) {
    return NewEntry(command, *this,
                    [this, action = &command] { m_habits.m_setUsed.insert(action->data().toInt()); });
}

bool CPersonalMenu::IsExpanded() const { return !m_pChevron->isVisible(); }

void CPersonalMenu::OnAboutToShow() {
    removeAction(m_pChevron);
    addAction(m_pChevron);
    // Entries without a command number, such as submenus, files and windows, are always there.
    const auto shown = [this](const QAction* action) {
        const int id = action->data().toInt();
        return id == 0 || IsBasicCommand(id) || m_habits.m_setUsed.contains(id) || action->isChecked();
    };
    bool anyBasic = false;
    bool anyHidden = false;
    for (const QAction* action : actions()) {
        // A menu without a basic command of its own shows all it has.
        anyBasic = anyBasic || IsBasicCommand(action->data().toInt());
        anyHidden = anyHidden || !shown(action);
    }
    const bool shorten = m_habits.m_bRecentlyUsedMenus && anyBasic && anyHidden;
    for (QAction* action : actions()) {
        if (action != m_pChevron && !action->isSeparator()) {
            action->setVisible(!shorten || shown(action));
        }
    }
    m_pChevron->setVisible(shorten);
    if (shorten && m_habits.m_bFullMenusAfterDelay) {
        m_timer.start();
    }
}

void CPersonalMenu::Expand() {
    if (IsExpanded()) {
        return;
    }
    m_timer.stop();
    QAction* active = activeAction();
    for (QAction* action : actions()) {
        action->setVisible(action != m_pChevron);
    }
    if (isVisible()) {
        resize(sizeHint());
        if (active != nullptr && active != m_pChevron) {
            setActiveAction(active);
        }
        update();
    }
}

void CPersonalMenu::mouseReleaseEvent(QMouseEvent* event) {
    if (m_pChevron->isVisible() && actionAt(event->position().toPoint()) == m_pChevron) {
        Expand();
        return;
    }
    QMenu::mouseReleaseEvent(event);
}

void CPersonalMenu::keyPressEvent(QKeyEvent* event) {
    if (activeAction() == m_pChevron && m_pChevron->isVisible()) {
        switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
        case Qt::Key_Down:
            Expand();
            return;
        default:
            break;
        }
    }
    // The letter of an entry that is not shown yet reaches it all the same.
    const QString key = event->text().toUpper();
    if (key.size() == 1 && key.front().isLetterOrNumber() && !IsExpanded() &&
        std::ranges::none_of(actions(), [&key](const QAction* action) {
            return action->isVisible() && action->isEnabled() &&
                   QKeySequence::mnemonic(action->text()) == QKeySequence(QStringLiteral("Alt+") + key);
        })) {
        Expand();
    }
    QMenu::keyPressEvent(event);
}

} // namespace carvelot
