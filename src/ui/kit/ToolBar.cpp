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
    explicit CCustomizeButton(QWidget* pParent) : QToolButton(pParent) {
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

CToolBar::CToolBar(CMainWindow& frame, int nId, const QString& strTitle, const QString& strName,
                   std::vector<int> listDefault)
    : QToolBar(strTitle), m_frame(frame), m_nId(nId), m_listDefault(std::move(listDefault)) {
    setObjectName(strName);
    setAccessibleName(strTitle);
    toggleViewAction()->setText(PlainCaption(strTitle));
    setAllowedAreas(Qt::AllToolBarAreas);
    setIconSize({16, 16});
    Reset();
}

bool CToolBar::event(QEvent* pEvent) {
    const bool bHandled = QToolBar::event(pEvent);
    if (pEvent->type() == QEvent::WindowTitleChange) {
        // The toolkit's own entry takes "&" in a title for the mark of a key.
        toggleViewAction()->setText(PlainCaption(windowTitle()));
    }
    return bHandled;
}

bool CToolBar::IsUserToolBar() const {
    return m_nId >= ID_TOOLBAR_USER_FIRST && m_nId <= ID_TOOLBAR_USER_LAST;
}

bool CToolBar::HasCommand(int nId) const {
    return std::ranges::find(m_listCommands, nId) != m_listCommands.end();
}

void CToolBar::SetCommands(const std::vector<int>& listCommands) {
    // The toolkit takes its time to delete a button: it leaves the bar at once, or it would stand beside the
    // new one for whoever looks for it there.
    for (QAction* pAction : actions()) {
        QWidget* pButton = widgetForAction(pAction);
        removeAction(pAction);
        if (pButton != nullptr)
            pButton->setParent(nullptr);
        if (pAction->parent() == this) // separators and the bar's options
            pAction->deleteLater();
    }
    m_listCommands.clear();
    for (const int nId : listCommands) {
        if (nId == ID_SEPARATOR)
            addSeparator();
        else if (HasCommand(nId))
            continue;
        else if (QAction* pAction = m_frame.CommandAction(nId))
            addAction(pAction);
        else
            continue;
        m_listCommands.push_back(nId);
    }
    auto* pButton = new CCustomizeButton(this);
    const CCommandInfo& customize = *FindCommand(ID_VIEW_CUSTOMIZE);
    pButton->setToolTip(tr("Toolbar options"));
    pButton->setAccessibleName(
        tr("%1 toolbar options: %2").arg(windowTitle(), ToQString(customize.m_strText)));
    auto* pMenu = new QMenu(pButton);
    connect(pMenu, &QMenu::aboutToShow, this, [this, pMenu] { FillCustomizeMenu(*pMenu); });
    pButton->setMenu(pMenu);
    addWidget(pButton);
}

void CToolBar::FillCustomizeMenu(QMenu& menu) {
    menu.clear();
    std::vector<int> listOffered = m_listDefault;
    for (const int nId : m_listCommands) {
        if (std::ranges::find(listOffered, nId) == listOffered.end())
            listOffered.push_back(nId);
    }
    for (const int nId : listOffered) {
        const QAction* pCommand = m_frame.CommandAction(nId);
        if (pCommand == nullptr)
            continue;
        QAction* pEntry = menu.addAction(pCommand->icon(), pCommand->text());
        pEntry->setCheckable(true);
        pEntry->setChecked(HasCommand(nId));
        // The menu's own button goes with the change: act when the menu is gone.
        connect(
            pEntry, &QAction::toggled, this,
            [this, nId](bool bShow) {
                std::vector<int> listCommands = m_listCommands;
                std::erase(listCommands, nId);
                if (bShow) {
                    const auto itDefault = std::ranges::find(m_listDefault, nId);
                    const std::ptrdiff_t nPlace =
                        std::min(itDefault - m_listDefault.begin(), std::ssize(listCommands));
                    listCommands.insert(listCommands.begin() + nPlace, nId);
                }
                SetCommands(listCommands);
            },
            Qt::QueuedConnection);
    }
    menu.addSeparator();
    QAction* pReset = menu.addAction(tr("&Reset Toolbar"));
    pReset->setEnabled(IsChanged() && !IsUserToolBar());
    connect(pReset, &QAction::triggered, this, &CToolBar::Reset, Qt::QueuedConnection);
    NewEntry(*m_frame.CommandAction(ID_VIEW_CUSTOMIZE), menu);
}

} // namespace carvelot
