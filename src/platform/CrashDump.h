// CrashDump.h - what a crash leaves for whoever mends it: where the program was, in a file that the system's
// debuggers read. Off Windows the system's own core dumps serve, and nothing is done here.
#pragma once

namespace carvelot::platform {

// How the user is told: by one message box of the system's own, or by a line on standard error.
enum class ECrashNotice { Box, Line };

// From now on a crash of any thread writes a minidump below %LOCALAPPDATA%\Tamrisk\Carvelot\CrashDumps and
// says where, or that it could not; then it goes on as it would have. The newest five of a program stay.
// Only the first crash counts: what else fails meanwhile shows nothing. First of all that main does.
void KeepCrashDumps(ECrashNotice notice);

} // namespace carvelot::platform
