#include "text/TypedNumber.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace carvelot {

namespace {

// Steps over what the C library's conversions skip and takes the sign.
bool TakeSign(std::string_view& text) {
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    text.remove_prefix(start == std::string_view::npos ? text.size() : start);
    if (text.empty() || (text[0] != '+' && text[0] != '-')) {
        return false;
    }
    const bool negative = text[0] == '-';
    text.remove_prefix(1);
    return negative;
}

} // namespace

double TextToDouble(std::string_view text) {
    const bool negative = TakeSign(text);
    if (!text.empty() && text[0] == '-') {
        return 0.0; // from_chars would take a second sign
    }
    double number = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::invalid_argument) {
        return 0.0;
    }
    if (result.ec == std::errc::result_out_of_range) {
        const std::string_view taken(text.data(), static_cast<std::size_t>(result.ptr - text.data()));
        const bool tiny = taken.find("e-") != std::string_view::npos ||
                          taken.find("E-") != std::string_view::npos || taken.starts_with("0.");
        number = tiny ? 0.0 : HUGE_VAL;
    }
    return negative ? -number : number;
}

} // namespace carvelot
