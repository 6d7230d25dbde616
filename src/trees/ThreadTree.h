// What the thread tree shows: processes with their threads, or users.
#pragma once

#include "session/CarvelotDoc.h"

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

// The session's window title after a selection.
std::string ProcessTitle(const CCarvelotDoc& session, const CProcess& process);
std::string ThreadTitle(const CCarvelotDoc& session, const CThread& thread);
std::string UserTitle(const CCarvelotDoc& session, const CJASUser& user);

// The captions of the analysis panes after a selection.
std::string ProcessCaption(const CProcess& process);
std::string ThreadCaption(const CThread& thread);
std::string UserCaption(const CJASUser& user);

} // namespace carvelot
