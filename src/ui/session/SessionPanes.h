// SessionPanes.h - the panes that all sessions share. They belong to none and show the one in front.
#pragma once

#include "lists/PaneContent.h"
#include "ui/session/CachePane.h"
#include "ui/session/FindPane.h"
#include "ui/session/ListPanes.h"
#include "ui/session/RawDataPane.h"
#include "ui/session/TimingGapsPane.h"

#include <QPointer>

namespace carvelot {

class CSessionPanes {
public:
    CSessionPanes();
    ~CSessionPanes();
    CSessionPanes(const CSessionPanes&) = delete;
    CSessionPanes& operator=(const CSessionPanes&) = delete;

    CSQLPane m_wndSQLPane;
    CFindPane m_wndFindPane;
    CErrorPane m_wndErrorPane;
    CBSFNPane m_wndBSFNPane;
    CTimingGapsPane m_wndTimingGapsPane;
    CRawDataPane m_wndRawDataPane;
    CLongTasksPane m_wndLongTasksPane;
    CCachePane m_wndCachePane;

    // The window whose selection they show; null after they were emptied.
    QPointer<CMDIChildWnd> m_pPanesOwner;

    // Shows what belongs to a selection.
    void Show(CSessionDocument& document, const Selection& selection);
    // The same after the session has grown, where they show it: each keeps its order, its selection and where
    // it stands.
    void ShowGrowth(CSessionDocument& document, const Selection& selection);
    // Empties them, and their captions. Find and Raw Data stay as they are.
    void ClearPanes();
    // To be called before a session's records go: the panes that show them are emptied, and Find keeps what
    // it shows.
    void LetGo(const CCarvelotDoc& session);

protected:
    // From here on there are none: their owner goes.
    void Leave();

private:
    void Show(CSessionDocument& document, const Selection& selection, SharedPane pane);
    void Clear(SharedPane pane);
    CDockablePane& Pane(SharedPane pane);
};

// The panes of the main window, or null before it is made and after it is gone.
CSessionPanes* SessionPanes();

} // namespace carvelot
