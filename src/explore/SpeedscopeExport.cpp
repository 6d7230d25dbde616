#include "explore/ExportFormats.h"

#include "text/JsonWriter.h"

namespace carvelot {

namespace {

class CSpeedscopeJson {
public:
    CSpeedscopeJson(const ExportedProfile& profile, std::ostream& out)
        : m_profile(profile), m_frames(profile.cut.Frames()), m_byStream(profile), m_json(out) {}

    void Write() {
        const CJsonWriter::CObject whole(m_json);
        m_json.Member("$schema", std::string_view("https://www.speedscope.app/file-format-schema.json"));
        m_json.Member("exporter", std::string_view("carvelot"));
        WriteNames();
        m_json.Key("profiles");
        const CJsonWriter::CArray profiles(m_json);
        for (std::uint32_t stream = 0; stream < m_profile.streams.Count(); ++stream) {
            const std::span<const std::uint32_t> frames = m_byStream.Of(stream);
            if (!frames.empty()) {
                WriteStream(m_profile.streams.Name(stream), frames);
            }
        }
    }

private:
    // Those of a frame each, by the first one.
    void WriteNames() {
        m_numbers.assign(m_frames.Keys().Count(), kNoKey);
        m_json.Key("shared");
        const CJsonWriter::CObject shared(m_json);
        m_json.Key("frames");
        const CJsonWriter::CArray names(m_json);
        std::uint32_t count = 0;
        std::string scratch;
        for (std::uint32_t i = 0; i < m_frames.Count(); ++i) {
            const std::uint32_t key = m_frames[i].key;
            if (m_profile.cut.Holds(i) && m_numbers[key] == kNoKey) {
                m_numbers[key] = count++;
                const CJsonWriter::CObject name(m_json);
                m_json.Member("name", ExportedName(m_frames.Keys().Name(key), scratch));
                m_json.Member("file", NameOf(m_frames.Keys().Kind(key)));
            }
        }
    }

    void WriteStream(std::string_view name, std::span<const std::uint32_t> frames) {
        std::int64_t end = m_profile.cut.End(frames.front());
        for (const std::uint32_t frame : frames) {
            end = std::max(end, m_profile.cut.End(frame));
        }
        const CJsonWriter::CObject profile(m_json);
        m_json.Member("type", std::string_view("evented"));
        m_json.Member("name", name);
        m_json.Member("unit", std::string_view("microseconds"));
        m_json.Member("startValue", m_profile.cut.Start(frames.front()));
        m_json.Member("endValue", end);
        m_json.Key("events");
        const CJsonWriter::CArray events(m_json);
        WalkStream(
            m_frames, frames,
            [this](std::uint32_t frame) { WriteEvent("O", frame, m_profile.cut.Start(frame)); },
            [this](std::uint32_t frame) { WriteEvent("C", frame, m_profile.cut.End(frame)); });
    }

    void WriteEvent(std::string_view type, std::uint32_t frame, std::int64_t at) {
        const CJsonWriter::CObject event(m_json);
        m_json.Member("type", type);
        m_json.Member("frame", m_numbers[m_frames[frame].key]);
        m_json.Member("at", at);
    }

    const ExportedProfile& m_profile;
    const CFrames& m_frames;
    const CFramesByStream m_byStream;
    std::vector<std::uint32_t> m_numbers; // by key: its place in the file
    CJsonWriter m_json;
};

} // namespace

void WriteSpeedscope(const ExportedProfile& profile, std::ostream& out) {
    CSpeedscopeJson(profile, out).Write();
}

} // namespace carvelot
