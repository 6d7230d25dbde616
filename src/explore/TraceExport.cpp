#include "explore/ExportFormats.h"

#include "text/JsonWriter.h"

#include <unordered_set>

namespace carvelot {

namespace {

class CTraceJson {
public:
    CTraceJson(const ExportedProfile& profile, std::ostream& out)
        : m_profile(profile), m_details(profile.session.m_listDetails),
          m_bJAS(profile.session.m_nLogFormat == LOG_FORMAT_JAS), m_json(out) {}

    void Write() {
        const CJsonWriter::CObject whole(m_json);
        m_json.Member("displayTimeUnit", std::string_view("ms"));
        m_json.Key("traceEvents");
        const CJsonWriter::CArray events(m_json);
        const CFrames& frames = m_profile.cut.Frames();
        std::vector<bool> named(m_profile.streams.Count(), false);
        for (std::uint32_t i = 0; i < frames.Count(); ++i) {
            if (m_profile.cut.Holds(i)) {
                const std::uint32_t stream = frames[i].stream;
                const Place place = PlaceOf(stream, frames[i].record);
                if (!named[stream]) {
                    named[stream] = true;
                    WriteNames(place, m_profile.streams.Name(stream));
                }
                WriteFrame(place, i);
            }
        }
    }

private:
    struct Place {
        std::uint32_t process;
        std::uint32_t thread;
    };

    // The web tier's users run in its one process.
    Place PlaceOf(std::uint32_t stream, RecordIndex record) const {
        if (m_bJAS) {
            return {1, stream + 1};
        }
        const CThread& thread = *m_details.Context(record).thread;
        return {thread.m_nProcessID, thread.m_nThreadID};
    }

    void WriteNames(Place place, std::string_view stream) {
        if (m_processes.insert(place.process).second) {
            WriteName("process_name", place,
                      m_bJAS ? "web tier" : "process:" + std::to_string(place.process));
        }
        WriteName("thread_name", place, stream);
    }
    void WriteName(std::string_view what, Place place, std::string_view name) {
        const CJsonWriter::CObject event(m_json);
        m_json.Member("ph", std::string_view("M"));
        m_json.Member("name", what);
        // As a browser writes it: some readers need every event's category and time.
        m_json.Member("cat", std::string_view("__metadata"));
        WritePlace(place);
        m_json.Member("ts", std::int64_t{0});
        m_json.Key("args");
        const CJsonWriter::CObject args(m_json);
        m_json.Member("name", name);
    }

    void WriteFrame(Place place, std::uint32_t i) {
        const Frame& frame = m_profile.cut.Frames()[i];
        const CFrameKeys& keys = m_profile.cut.Frames().Keys();
        const CJsonWriter::CObject event(m_json);
        m_json.Member("ph", std::string_view("X"));
        m_json.Member("name", ExportedName(keys.Name(frame.key), m_strScratch));
        m_json.Member("cat", NameOf(keys.Kind(frame.key)));
        WritePlace(place);
        m_json.Member("ts", m_profile.cut.Start(i));
        m_json.Member("dur", m_profile.cut.Total(i));
        m_json.Key("args");
        const CJsonWriter::CObject args(m_json);
        m_json.Member("record", Number(frame.record));
        if (m_profile.lineNumbers != nullptr) {
            m_json.Member("line", (*m_profile.lineNumbers)[Number(frame.record)]);
        }
    }
    void WritePlace(Place place) {
        m_json.Member("pid", place.process);
        m_json.Member("tid", place.thread);
    }

    const ExportedProfile& m_profile;
    const CDetailList& m_details;
    const bool m_bJAS;
    std::unordered_set<std::uint32_t> m_processes; // that have a name
    std::string m_strScratch;
    CJsonWriter m_json;
};

} // namespace

void WriteTrace(const ExportedProfile& profile, std::ostream& out) { CTraceJson(profile, out).Write(); }

} // namespace carvelot
