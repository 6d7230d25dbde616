#include "platform/Ole.h"

namespace carvelot::platform {

bool InitializeOle() { return true; }

void UninitializeOle() {}

} // namespace carvelot::platform
