#include "text/TypedNumber.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace carvelot {

namespace {

// Steps over what the C library's conversions skip and takes the sign.
bool TakeSign(std::string_view& strText) {
    const std::size_t nStart = strText.find_first_not_of(" \t\n\v\f\r");
    strText.remove_prefix(nStart == std::string_view::npos ? strText.size() : nStart);
    if (strText.empty() || (strText[0] != '+' && strText[0] != '-'))
        return false;
    const bool bNegative = strText[0] == '-';
    strText.remove_prefix(1);
    return bNegative;
}

} // namespace

double TextToDouble(std::string_view strText) {
    const bool bNegative = TakeSign(strText);
    if (!strText.empty() && strText[0] == '-')
        return 0.0; // from_chars would take a second sign
    double fNumber = 0.0;
    const auto result = std::from_chars(strText.data(), strText.data() + strText.size(), fNumber);
    if (result.ec == std::errc::invalid_argument)
        return 0.0;
    if (result.ec == std::errc::result_out_of_range) {
        const std::string_view strTaken(strText.data(),
                                        static_cast<std::size_t>(result.ptr - strText.data()));
        const bool bTiny = strTaken.find("e-") != std::string_view::npos ||
                           strTaken.find("E-") != std::string_view::npos || strTaken.starts_with("0.");
        fNumber = bTiny ? 0.0 : HUGE_VAL;
    }
    return bNegative ? -fNumber : fNumber;
}

} // namespace carvelot
