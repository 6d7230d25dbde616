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
    const std::vector<int> used = ReadCommands(GetWorkspaceString("UsedCommands", ""));
    m_setUsed = {used.begin(), used.end()};
}

void CMenuHabits::Save() const {
    WriteWorkspaceInt("RecentlyUsedMenus", m_bRecentlyUsedMenus ? 1 : 0);
    WriteWorkspaceInt("FullMenusAfterDelay", m_bFullMenusAfterDelay ? 1 : 0);
    WriteWorkspaceString("UsedCommands", WriteCommands(m_setUsed));
}

CPersonalMenu::CPersonalMenu(const QString& strTitle, CMenuHabits& habits, QWidget* pParent)
    : QMenu(strTitle, pParent), m_habits(habits), m_pChevron(new QAction(QStringLiteral("\u00BB"), this)) {
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

QAction* NewEntry(QAction& command, QMenu& menu, std::function<void()> fnChosen) {
    auto* pEntry = new QAction(&menu);
    const auto fnFollow = [pEntry, pCommand = &command] {
        pEntry->setText(pCommand->text());
        pEntry->setIcon(pCommand->icon());
        pEntry->setEnabled(pCommand->isEnabled());
        pEntry->setCheckable(pCommand->isCheckable());
        pEntry->setChecked(pCommand->isChecked());
        pEntry->setStatusTip(pCommand->statusTip());
        pEntry->setToolTip(pCommand->toolTip());
        // Shown beside the entry; the key itself belongs to the command.
        pEntry->setShortcut(pCommand->shortcut());
        pEntry->setShortcutContext(Qt::WidgetShortcut);
        pEntry->setData(pCommand->data());
    };
    fnFollow();
    QObject::connect(&command, &QAction::changed, pEntry, fnFollow);
    QObject::connect(pEntry, &QAction::triggered, &command,
                     [pEntry, pCommand = &command, fnFollow, fnChosen = std::move(fnChosen)] {
                         if (fnChosen)
                             fnChosen();
                         const QPointer<QAction> pAlive = pEntry; // its menu may go with the command
                         pCommand->trigger();
                         if (pAlive != nullptr)
                             fnFollow();
                     });
    menu.addAction(pEntry);
    return pEntry;
}

QAction* CPersonalMenu::AddCommand(QAction& command) {
    return NewEntry(command, *this,
                    [this, pCommand = &command] { m_habits.m_setUsed.insert(pCommand->data().toInt()); });
}

bool CPersonalMenu::IsExpanded() const { return !m_pChevron->isVisible(); }

void CPersonalMenu::OnAboutToShow() {
    removeAction(m_pChevron);
    addAction(m_pChevron);
    // Entries without a command number, such as submenus, files and windows, are always there.
    const auto fnShown = [this](const QAction* pAction) {
        const int nId = pAction->data().toInt();
        return nId == 0 || IsBasicCommand(nId) || m_habits.m_setUsed.contains(nId) || pAction->isChecked();
    };
    bool bAnyBasic = false;
    bool bAnyHidden = false;
    for (const QAction* pAction : actions()) {
        // A menu without a basic command of its own shows all it has.
        bAnyBasic = bAnyBasic || IsBasicCommand(pAction->data().toInt());
        bAnyHidden = bAnyHidden || !fnShown(pAction);
    }
    const bool bShorten = m_habits.m_bRecentlyUsedMenus && bAnyBasic && bAnyHidden;
    for (QAction* pAction : actions()) {
        if (pAction != m_pChevron && !pAction->isSeparator())
            pAction->setVisible(!bShorten || fnShown(pAction));
    }
    m_pChevron->setVisible(bShorten);
    if (bShorten && m_habits.m_bFullMenusAfterDelay)
        m_timer.start();
}

void CPersonalMenu::Expand() {
    if (IsExpanded())
        return;
    m_timer.stop();
    QAction* pActive = activeAction();
    for (QAction* pAction : actions())
        pAction->setVisible(pAction != m_pChevron);
    if (isVisible()) {
        resize(sizeHint());
        if (pActive != nullptr && pActive != m_pChevron)
            setActiveAction(pActive);
        update();
    }
}

void CPersonalMenu::mouseReleaseEvent(QMouseEvent* pEvent) {
    if (m_pChevron->isVisible() && actionAt(pEvent->position().toPoint()) == m_pChevron) {
        Expand();
        return;
    }
    QMenu::mouseReleaseEvent(pEvent);
}

void CPersonalMenu::keyPressEvent(QKeyEvent* pEvent) {
    if (activeAction() == m_pChevron && m_pChevron->isVisible()) {
        switch (pEvent->key()) {
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
    const QString strKey = pEvent->text().toUpper();
    if (strKey.size() == 1 && strKey.front().isLetterOrNumber() && !IsExpanded() &&
        std::ranges::none_of(actions(), [&strKey](const QAction* pAction) {
            return pAction->isVisible() && pAction->isEnabled() &&
                   QKeySequence::mnemonic(pAction->text()) == QKeySequence(QStringLiteral("Alt+") + strKey);
        }))
        Expand();
    QMenu::keyPressEvent(pEvent);
}

} // namespace carvelot
