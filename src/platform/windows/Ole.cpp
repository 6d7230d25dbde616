#include "platform/Ole.h"

#include <windows.h>

#include <ole2.h>

namespace carvelot::platform {

bool InitializeOle() { return SUCCEEDED(OleInitialize(nullptr)); }

void UninitializeOle() { OleUninitialize(); }

} // namespace carvelot::platform
