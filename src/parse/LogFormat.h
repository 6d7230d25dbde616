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

// What the same look tells whom no earlier log has told anything.
struct FormatLook {
    bool told = false; // the format
    LogFormat format = LOG_FORMAT_DEBUG;
    std::int32_t textColumn = 0;
    std::int32_t tabCount = 0;
    bool sawEnd = false; // of the log: more lines may tell otherwise

    bool TellsTheSame(const FormatLook& other) const {
        return told == other.told && format == other.format && textColumn == other.textColumn &&
               tabCount == other.tabCount;
    }
};
FormatLook LookAtFormat(CLogReader& reader);

} // namespace carvelot
