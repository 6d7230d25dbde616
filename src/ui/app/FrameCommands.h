// FrameCommands.h - the main frame's commands: an action each, with its key and its state, and who answers
// it.
#pragma once

#include "ui/kit/CommandTarget.h"

#include <QObject>

#include <map>

class QAction;

namespace carvelot {

class CMainFrame;

// A command goes to the window in front, its document, the main frame and the application, in this order: the
// first that knows it answers. The edit commands go to the edit control with the focus.
class CFrameCommands : public QObject {
    Q_OBJECT

public:
    explicit CFrameCommands(CMainFrame& frame);

    QAction* Action(int id) const; // null for a number that is no command
    bool Run(int id);
    // Brings every command's state up to date; at once, or with Schedule when the present event is done.
    void Update();
    void ScheduleUpdate();

private:
    void AddEditCommands();
    const CCommandTarget::CHandler* FindHandler(int id) const;

    CMainFrame& m_frame;
    std::map<int, QAction*> m_mapActions;
    bool m_bUpdateScheduled = false;
};

} // namespace carvelot
