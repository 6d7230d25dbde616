// Ole.h - the component system that clipboard and drag and drop need.
#pragma once

namespace carvelot::platform {

// Starts it for this thread; false when that fails. Nothing to do off Windows.
bool InitializeOle();
void UninitializeOle();

} // namespace carvelot::platform
