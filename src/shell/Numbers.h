// Numbers.h - numbers as the dialogs read them from what a user typed: nothing is refused.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

// Leading white space, a sign, digits up to the first character that is none; 0 without digits. What
// overflows saturates to 32 bits.
std::int32_t TextToInt(std::string_view strText);

// A decimal floating point number with the same leniency and an optional exponent; 0.0 where there is none.
double TextToDouble(std::string_view strText);

// printf's "%f": six decimals, the point whatever the locale.
std::string DoubleToText(double fNumber);

} // namespace carvelot
