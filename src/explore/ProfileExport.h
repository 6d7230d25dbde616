// The profile of a part of a log as a file that other tools open.
#pragma once

#include "explore/Cut.h"
#include "explore/ExploreProgress.h"

#include <optional>
#include <string>

namespace carvelot {

enum class ProfileFormat { Folded, Speedscope, Trace, Callgrind };

// By how the file's name ends, in any case: ".folded", ".speedscope.json", ".trace.json" or ".callgrind".
std::optional<ProfileFormat> ProfileFormatOf(const std::string& path);

// What is exported: the frames that a cut holds.
struct ExportedProfile {
    const CCarvelotDoc& session;
    const CStreams& streams;
    const CCut& cut;
    // By record, where the trace is to tell them: those of the session, if it numbered its lines.
    const CPagedArray<std::uint32_t, 12>* lineNumbers = nullptr;
};

// Writes the file as a whole or not at all, and as it comes: no more of it than a block is in memory. False
// with the system's error number. Where `progress` ends it, it throws ExploringEnded and leaves no file.
bool WriteProfileExport(const std::string& path, ProfileFormat format, const ExportedProfile& profile,
                        int& error, const CExploreProgress* progress = nullptr);

} // namespace carvelot
