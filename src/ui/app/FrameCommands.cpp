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
    QWidget* focus = QApplication::focusWidget();
    return qobject_cast<QLineEdit*>(focus) != nullptr || qobject_cast<QPlainTextEdit*>(focus) != nullptr
               ? focus
               : nullptr;
}

} // namespace

CFrameCommands::CFrameCommands(CMainFrame& frame) : m_frame(frame) {
    auto* lookGroup = new QActionGroup(this);
    lookGroup->setExclusionPolicy(QActionGroup::ExclusionPolicy::None);
    for (const CCommandInfo& command : AllCommands()) {
        auto* action = new QAction(CommandIcon(command.m_nId), ToQString(command.m_strText), &frame);
        action->setData(command.m_nId);
        action->setStatusTip(ToQString(StatusTip(command)));
        action->setToolTip(
            ToQString(command.m_strTip.empty() ? command.m_strText : ToolTip(command)).remove(u'&'));
        if (!command.m_strShortcut.empty()) {
            action->setShortcut(QKeySequence(ToQString(command.m_strShortcut), QKeySequence::PortableText));
            if (command.m_bShortcutShownOnly) {
                action->setShortcutContext(Qt::WidgetShortcut);
            }
        }
        const bool look = command.m_nId >= ID_APPLOOK_FIRST && command.m_nId <= ID_APPLOOK_LAST;
        action->setCheckable(look || command.m_nId == ID_VIEW_STATUS_BAR ||
                             command.m_nId == ID_VIEW_TOOLBAR || command.m_nId == ID_EXPLORE_FOLLOW);
        if (look) {
            lookGroup->addAction(action);
        }
        connect(action, &QAction::triggered, this, [this, id = command.m_nId] { Run(id); });
        m_mapActions[command.m_nId] = action;
        frame.addAction(action); // its key works whatever menus show
    }
    AddEditCommands();
}

void CFrameCommands::AddEditCommands() {
    // Edit commands go to the edit control with the focus.
    const auto call = [](const char* method) {
        if (QWidget* edit = EditWithFocus()) {
            QMetaObject::invokeMethod(edit, method);
        }
    };
    const auto selected = [] {
        QWidget* edit = EditWithFocus();
        if (const auto* line = qobject_cast<QLineEdit*>(edit)) {
            return line->hasSelectedText();
        }
        const auto* text = qobject_cast<QPlainTextEdit*>(edit);
        return text != nullptr && text->textCursor().hasSelection();
    };
    const auto writable = [] {
        QWidget* edit = EditWithFocus();
        return edit != nullptr && !edit->property("readOnly").toBool();
    };
    m_frame.AddCommand(
        ID_EDIT_COPY, [call] { call("copy"); }, selected);
    m_frame.AddCommand(
        ID_EDIT_CUT, [call] { call("cut"); }, [=] { return selected() && writable(); });
    m_frame.AddCommand(
        ID_EDIT_PASTE, [call] { call("paste"); },
        [=] { return writable() && !QApplication::clipboard()->text().isEmpty(); });
    m_frame.AddCommand(
        ID_EDIT_UNDO, [call] { call("undo"); },
        [=] {
            QWidget* edit = EditWithFocus();
            const auto* line = qobject_cast<QLineEdit*>(edit);
            return writable() && (line == nullptr || line->isUndoAvailable());
        });
}

const CCommandTarget::CHandler* CFrameCommands::FindHandler(int id) const {
    if (const CMDIChildWnd* child = m_frame.ActiveChild()) {
        if (const CCommandTarget::CHandler* handler = child->OwnHandler(id)) {
            return handler;
        }
        if (child->GetActiveDocument() != nullptr) {
            if (const CCommandTarget::CHandler* handler = child->GetActiveDocument()->OwnHandler(id)) {
                return handler;
            }
        }
    }
    const CCommandTarget::CHandler* handler = m_frame.OwnHandler(id);
    return handler != nullptr ? handler : theApp().OwnHandler(id);
}

QAction* CFrameCommands::Action(int id) const {
    const auto it = m_mapActions.find(id);
    return it != m_mapActions.end() ? it->second : nullptr;
}

bool CFrameCommands::Run(int id) {
    const CCommandTarget::CHandler* handler = FindHandler(id);
    if (handler == nullptr || (handler->m_fnEnabled && !handler->m_fnEnabled())) {
        return false;
    }
    const CCommandTarget::FHandler run = handler->m_fnRun; // the command may take its own handler away
    const QPointer<CFrameCommands> self(this);             // and it may close the window
    run();
    if (self != nullptr) {
        Update();
    }
    return true;
}

void CFrameCommands::Update() {
    m_bUpdateScheduled = false;
    for (const auto& [id, action] : m_mapActions) {
        const CCommandTarget::CHandler* handler = FindHandler(id);
        action->setEnabled(handler != nullptr && (!handler->m_fnEnabled || handler->m_fnEnabled()));
        if (handler != nullptr && handler->m_fnChecked) {
            action->setChecked(handler->m_fnChecked());
        } else if (id == ID_EXPLORE_FOLLOW) {
            action->setChecked(false); // no session is in front
        }
    }
}

void CFrameCommands::ScheduleUpdate() {
    if (m_bUpdateScheduled) {
        return;
    }
    m_bUpdateScheduled = true;
    QMetaObject::invokeMethod(this, &CFrameCommands::Update, Qt::QueuedConnection);
}

} // namespace carvelot
