#include "platform/NameLocale.h"

namespace carvelot::platform {

Utf8Names::Utf8Names() = default;
Utf8Names::~Utf8Names() = default;

} // namespace carvelot::platform
