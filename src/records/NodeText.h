// How times, durations and ids are written in every tree, list and export.
#pragma once

#include "records/LogDetail.h"

#include <cstdint>
#include <string>

namespace carvelot {

// "%02d:%02d:%02d.%06d    ": the time of day, the four blanks at the end are part of it.
std::string TimeStampText(const CLogDetail& detail);

// "%08.6f" of a duration in seconds, with a decimal point whatever the user's locale.
std::string SecondsText(double seconds);

// "%d/%d": ids print signed.
std::string ProcessThreadText(std::uint32_t process, std::uint32_t thread);

// "%d" of an unsigned id.
std::string IdText(std::uint32_t id);

// Whether a text sorts above a single blank, which is how the system asks whether there is a name at all.
inline bool IsAboveBlank(std::string_view text) { return text.compare(" ") > 0; }

} // namespace carvelot
