// Tells a debug log from a JAS log by its first lines, and learns where a debug log's statement text stands.
#pragma once

#include "parse/DebugLine.h"
#include "parse/LogReader.h"
#include "records/LogDetail.h"

namespace carvelot {

// Looks at at most 5001 lines, twice. False when they are of neither format. What an earlier log of the same
// session told stands where this one does not tell otherwise: a JAS session stays one, and a text column that
// is known makes a debug log of any.
bool DetectLogFormat(CLogReader& reader, LogFormat& format, CDebugLineParser& parser);

} // namespace carvelot
