// The stand-in for the JDE library: formats the MATH_NUMERICs of simulated processes.
#include "simulator/Export.h"
#include "simulator/ProcessState.h"
#include "simulator/Rows.h"

#ifndef WITHOUT_FormatMathNumeric
// Fills a zeroed block of 128 bytes with the number's text, UTF-16. With the switch "fail FormatMathNumeric
// CODE" the block stays as it is.
SIMULATOR_EXPORT std::int32_t FormatMathNumeric(char16_t* text, const void* number) {
    if (const std::int32_t code = simulator::FailureCode("FormatMathNumeric", 0); code != 0) {
        return code;
    }
    std::size_t n = 0;
    for (const char ch : simulator::MathNumericText(static_cast<const unsigned char*>(number))) {
        if (n < 63) {
            text[n++] = static_cast<unsigned char>(ch);
        }
    }
    text[n] = u'\0';
    return 0;
}
#else
SIMULATOR_EXPORT std::int32_t FormatMathNumericToo(char16_t*, const void*) { return 0; }
#endif
