#include "ui/app/FrameCommands.h"

#include "settings/Commands.h"
#include "ui/app/CarvelotApp.h"
#include "ui/app/MainFrame.h"
#include "ui/kit/Icons.h"
#include "ui/kit/Text.h"

#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>

namespace carvelot {

namespace {

QWidget* EditWithFocus() {
    QWidget* pFocus = QApplication::focusWidget();
    return qobject_cast<QLineEdit*>(pFocus) != nullptr || qobject_cast<QPlainTextEdit*>(pFocus) != nullptr
               ? pFocus
               : nullptr;
}

} // namespace

CFrameCommands::CFrameCommands(CMainFrame& frame) : m_frame(frame) {
    auto* pLookGroup = new QActionGroup(this);
    pLookGroup->setExclusionPolicy(QActionGroup::ExclusionPolicy::None);
    for (const CCommandInfo& command : AllCommands()) {
        auto* pAction = new QAction(CommandIcon(command.m_nId), ToQString(command.m_strText), &frame);
        pAction->setData(command.m_nId);
        pAction->setStatusTip(ToQString(StatusTip(command)));
        pAction->setToolTip(
            ToQString(command.m_strTip.empty() ? command.m_strText : ToolTip(command)).remove(u'&'));
        if (!command.m_strShortcut.empty()) {
            pAction->setShortcut(QKeySequence(ToQString(command.m_strShortcut), QKeySequence::PortableText));
            if (command.m_bShortcutShownOnly)
                pAction->setShortcutContext(Qt::WidgetShortcut);
        }
        const bool bLook = command.m_nId >= ID_APPLOOK_FIRST && command.m_nId <= ID_APPLOOK_LAST;
        pAction->setCheckable(bLook || command.m_nId == ID_VIEW_STATUS_BAR ||
                              command.m_nId == ID_VIEW_TOOLBAR);
        if (bLook)
            pLookGroup->addAction(pAction);
        connect(pAction, &QAction::triggered, this, [this, nId = command.m_nId] { Run(nId); });
        m_mapActions[command.m_nId] = pAction;
        frame.addAction(pAction); // its key works whatever menus show
    }
    AddEditCommands();
}

void CFrameCommands::AddEditCommands() {
    // Edit commands go to the edit control with the focus.
    const auto fnCall = [](const char* pszMethod) {
        if (QWidget* pEdit = EditWithFocus())
            QMetaObject::invokeMethod(pEdit, pszMethod);
    };
    const auto fnSelected = [] {
        QWidget* pEdit = EditWithFocus();
        if (const auto* pLine = qobject_cast<QLineEdit*>(pEdit))
            return pLine->hasSelectedText();
        const auto* pText = qobject_cast<QPlainTextEdit*>(pEdit);
        return pText != nullptr && pText->textCursor().hasSelection();
    };
    const auto fnWritable = [] {
        QWidget* pEdit = EditWithFocus();
        return pEdit != nullptr && !pEdit->property("readOnly").toBool();
    };
    m_frame.AddCommand(
        ID_EDIT_COPY, [fnCall] { fnCall("copy"); }, fnSelected);
    m_frame.AddCommand(
        ID_EDIT_CUT, [fnCall] { fnCall("cut"); }, [=] { return fnSelected() && fnWritable(); });
    m_frame.AddCommand(
        ID_EDIT_PASTE, [fnCall] { fnCall("paste"); },
        [=] { return fnWritable() && !QApplication::clipboard()->text().isEmpty(); });
    m_frame.AddCommand(
        ID_EDIT_UNDO, [fnCall] { fnCall("undo"); },
        [=] {
            QWidget* pEdit = EditWithFocus();
            const auto* pLine = qobject_cast<QLineEdit*>(pEdit);
            return fnWritable() && (pLine == nullptr || pLine->isUndoAvailable());
        });
}

const CCommandTarget::CHandler* CFrameCommands::FindHandler(int nId) const {
    if (const CMDIChildWnd* pChild = m_frame.ActiveChild()) {
        if (const CCommandTarget::CHandler* pHandler = pChild->OwnHandler(nId))
            return pHandler;
        if (pChild->GetActiveDocument() != nullptr) {
            if (const CCommandTarget::CHandler* pHandler = pChild->GetActiveDocument()->OwnHandler(nId))
                return pHandler;
        }
    }
    const CCommandTarget::CHandler* pHandler = m_frame.OwnHandler(nId);
    return pHandler != nullptr ? pHandler : theApp().OwnHandler(nId);
}

QAction* CFrameCommands::Action(int nId) const {
    const auto it = m_mapActions.find(nId);
    return it != m_mapActions.end() ? it->second : nullptr;
}

bool CFrameCommands::Run(int nId) {
    const CCommandTarget::CHandler* pHandler = FindHandler(nId);
    if (pHandler == nullptr || (pHandler->m_fnEnabled && !pHandler->m_fnEnabled()))
        return false;
    const CCommandTarget::FHandler fnRun = pHandler->m_fnRun; // the command may take its own handler away
    const QPointer<CFrameCommands> self(this);                // and it may close the window
    fnRun();
    if (self != nullptr) {
        Update();
    }
    return true;
}

void CFrameCommands::Update() {
    m_bUpdateScheduled = false;
    for (const auto& [nId, pAction] : m_mapActions) {
        const CCommandTarget::CHandler* pHandler = FindHandler(nId);
        pAction->setEnabled(pHandler != nullptr && (!pHandler->m_fnEnabled || pHandler->m_fnEnabled()));
        if (pHandler != nullptr && pHandler->m_fnChecked) {
            pAction->setChecked(pHandler->m_fnChecked());
        }
    }
}

void CFrameCommands::ScheduleUpdate() {
    if (m_bUpdateScheduled)
        return;
    m_bUpdateScheduled = true;
    QMetaObject::invokeMethod(this, &CFrameCommands::Update, Qt::QueuedConnection);
}

} // namespace carvelot
