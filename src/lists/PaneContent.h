// What each of the panes that sessions share shows for a selection: one table.
#pragma once

#include "session/Selection.h"

#include <string>

namespace carvelot {

enum class SharedPane { SQL, Cache, BSFN, LongTasks, Errors, Gaps };

enum class PaneAction {
    Clear, // the pane is emptied
    Keep,  // it stays as it is, its caption too
    Show,  // it shows what belongs to the selection
};

// A thread has no caches and no gaps of its own: those two panes stay on what was shown before. A user has no
// caches; gaps are always the whole session's.
PaneAction ActionOf(SharedPane pane, Selection::Kind selected);

// Whether a pane has a caption that tells what it is shown for, and takes it for this selection.
bool TakesCaption(SharedPane pane, Selection::Kind selected);

// " Process: %d", " Process: %d Thread: %d", " User: %s"; empty for nothing.
std::string CaptionOf(const Selection& selection);

} // namespace carvelot
