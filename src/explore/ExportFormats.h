// The formats of exported profiles, a file each, and what they share: names as other tools take them, and the
// frames of a stream one in the other.
#pragma once

#include "explore/ProfileExport.h"

#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

void WriteFolded(const ExportedProfile& profile, std::ostream& out);
void WriteSpeedscope(const ExportedProfile& profile, std::ostream& out);
void WriteTrace(const ExportedProfile& profile, std::ostream& out);
void WriteCallgrind(const ExportedProfile& profile, std::ostream& out);

// The name of a frame, with "(no name)" for one that shows nothing and U+FFFD for what is no Unicode; in the
// argument or in the scratch string. No name holds an end of a line, for the reader of the log cuts there.
std::string_view ExportedName(std::string_view name, std::string& scratch);

// The frames of a cut, stream by stream.
class CFramesByStream {
public:
    explicit CFramesByStream(const ExportedProfile& profile);

    // In the order of their records.
    std::span<const std::uint32_t> Of(std::uint32_t stream) const {
        return std::span(m_frames).subspan(m_first[stream], m_first[stream + 1] - m_first[stream]);
    }

private:
    std::vector<std::size_t> m_first; // of each stream, and behind the last one
    std::vector<std::uint32_t> m_frames;
};

// Enters and leaves the frames of a stream in the order of time.
template <class Enter, class Leave>
void WalkStream(const CFrames& frames, std::span<const std::uint32_t> ofStream, Enter enter, Leave leave) {
    std::vector<std::uint32_t> entered;
    const auto leaveDownTo = [&](std::uint32_t frame) {
        while (!entered.empty() && entered.back() != frame) {
            leave(entered.back());
            entered.pop_back();
        }
    };
    for (const std::uint32_t frame : ofStream) {
        leaveDownTo(frames[frame].parent);
        enter(frame);
        entered.push_back(frame);
    }
    leaveDownTo(kNoFrame);
}

} // namespace carvelot
