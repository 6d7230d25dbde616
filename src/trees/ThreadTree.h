// What the thread tree shows: processes with their threads, or users.
#pragma once

#include "session/Selection.h"

#include <string>
#include <vector>

namespace carvelot {

// "Process - %d (%08f)": id and seconds from its first to its last record; with the image name of the running
// process when the session was opened from one.
std::string ProcessNodeText(const CCarvelotDoc& session, const CProcess& process);

// "Thread - %d (%08f)".
std::string ThreadNodeText(const CThread& thread);

// Images of the users in the order of the walk: "SYSTEM LEVEL" and every user behind it show the monitor.
std::vector<int> UserImages(const CCarvelotDoc& session);

// The session's window title after a selection; the path alone for nothing.
std::string TitleOf(const CCarvelotDoc& session, const Selection& selection);

} // namespace carvelot
