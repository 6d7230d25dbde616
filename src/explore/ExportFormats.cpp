#include "explore/ExportFormats.h"

#include "platform/CodePage.h"
#include "text/TextColumns.h"

namespace carvelot {

std::string_view ExportedName(std::string_view name, std::string& scratch) {
    if (name.find_first_not_of(' ') == std::string_view::npos) {
        return "(no name)";
    }
    if (platform::IsValidUtf8(name)) {
        return name;
    }
    scratch = WithReplacements(name);
    return scratch;
}

CFramesByStream::CFramesByStream(const ExportedProfile& profile) : m_first(profile.streams.Count() + 1, 0) {
    const CFrames& frames = profile.cut.Frames();
    std::size_t held = 0;
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        if (profile.cut.Holds(i)) {
            ++m_first[frames[i].stream];
            ++held;
        }
    }
    // Each stream's end, which its frames, taken from the last one on, move to its first.
    std::size_t end = 0;
    for (std::size_t& first : m_first) {
        end += first;
        first = end;
    }
    m_frames.resize(held);
    for (std::uint32_t i = frames.Count(); i-- > 0;) {
        if (profile.cut.Holds(i)) {
            m_frames[--m_first[frames[i].stream]] = i;
        }
    }
}

} // namespace carvelot
