#include "shell/ui/CarvelotApp.h"

namespace carvelot {

void AddDocTemplates(CCarvelotApp&) {}

} // namespace carvelot
