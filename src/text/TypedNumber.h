// TypedNumber.h - numbers as the dialogs read them from what a user typed: nothing is refused.
#pragma once

#include <string_view>

namespace carvelot {

// A decimal floating point number with the same leniency and an optional exponent; 0.0 where there is none.
double TextToDouble(std::string_view text);

} // namespace carvelot
