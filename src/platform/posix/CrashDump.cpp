#include "platform/CrashDump.h"

namespace carvelot::platform {

void KeepCrashDumps(ECrashNotice) {}

} // namespace carvelot::platform
