#include "parse/BlockLines.h"

#include "platform/CodePage.h"

namespace carvelot {

void CBlockLines::LookForNulAndUpperHalf(LogLine& line) {
    line.bytes = line.bytes.substr(0, line.bytes.find('\0'));
    line.ascii = platform::IsAscii(line.bytes);
}

} // namespace carvelot
