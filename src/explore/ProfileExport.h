// The profile of a part of a log as a file that other tools open.
#pragma once

#include "explore/Cut.h"

#include <optional>
#include <string>

namespace carvelot {

enum class ProfileFormat { Folded, Speedscope, Trace, Callgrind };

// By how the file's name ends, in any case: ".folded", ".speedscope.json", ".trace.json" or ".callgrind".
std::optional<ProfileFormat> ProfileFormatOf(const std::string& path);

// What is exported: the frames that a cut holds.
struct ExportedProfile {
    const CCarvelotDoc& session; // with numbered lines, where the trace is to tell them
    const CStreams& streams;
    const CCut& cut;
};

// Writes the file as a whole or not at all, and as it comes: no more of it than a block is in memory. False
// with the system's error number.
bool WriteProfileExport(const std::string& path, ProfileFormat format, const ExportedProfile& profile,
                        int& error);

} // namespace carvelot
