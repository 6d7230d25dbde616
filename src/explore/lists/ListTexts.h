// What the lists of an explored log show of a record, of a caller and of a part.
#pragma once

#include "explore/FrameKeys.h"
#include "session/CarvelotDoc.h"

#include <string>
#include <string_view>

namespace carvelot {

// "09:12:03.250000": the time of day that the record bears.
std::string StampOf(const CDetailList& details, RecordIndex record);
// Who wrote it: "4576/3268" in a debug log, the user in a JAS log.
std::string OwnerOf(const CCarvelotDoc& session, RecordIndex record);
// What heads a column of them.
std::string_view OwnersTitle(LogFormat format);
// A text with a blank in the place of each line end and tab.
std::string OnOneLine(std::string_view text);

// A statement as it ran, its values in their places, from its operation word on: what a database tool takes.
// Statements of a JAS log get the values of their marks when the log is read. Any other record's text stands
// whole.
std::string_view StatementText(const CDetailList& details, RecordIndex record);

// A key with its kind ahead of its name: "F  B4200310BeginDoc"; "(top)" of none.
std::string NamedKey(const CFrameKeys& keys, std::uint32_t key);

// How long the bar of a part is; none of nothing.
constexpr double PartOf(std::int64_t part, std::int64_t whole) {
    return whole != 0 ? static_cast<double>(part) / static_cast<double>(whole) : 0;
}

} // namespace carvelot
