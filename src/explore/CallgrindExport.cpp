#include "explore/ExportFormats.h"
#include "explore/Profile.h"

#include <algorithm>
#include <ostream>

namespace carvelot {

namespace {

class CCallgrindText {
public:
    CCallgrindText(const ExportedProfile& profile, std::ostream& out)
        : m_keys(profile.cut.Frames().Keys()), m_profile(profile.cut), m_named(m_keys.Count(), false),
          m_out(out) {
        // Calls stand with their caller, those of none first.
        std::stable_sort(m_profile.m_edges.begin(), m_profile.m_edges.end(),
                         [](const CallEdge& one, const CallEdge& other) {
                             return one.caller + kNoneFirst < other.caller + kNoneFirst;
                         });
    }

    void Write() {
        std::int64_t total = 0;
        for (const FunctionProfile& function : m_profile.m_functions) {
            total = AddTimes(total, function.self);
        }
        m_out << "# callgrind format\nversion: 1\ncreator: carvelot\npositions: line\n"
                 "event: us : Microseconds\nevents: us\nsummary: "
              << total << '\n';
        // Readers take what a function costs from its calls, so those that nothing called need a caller too.
        if (!m_profile.m_functions.empty()) {
            m_out << "\nfl=(top)\nfn=(top)\n0 0\n";
            WriteCalls(kNoKey);
        }
        for (const FunctionProfile& function : m_profile.m_functions) {
            m_out << '\n';
            WriteKey("fl=", "fn=", function.key);
            m_out << "0 " << function.self << '\n';
            WriteCalls(function.key);
        }
        m_out << "\ntotals: " << total << '\n';
    }

private:
    static constexpr std::uint32_t kNoneFirst = 0U - kNoKey;

    void WriteCalls(std::uint32_t caller) {
        const auto [first, end] =
            std::equal_range(m_profile.m_edges.begin(), m_profile.m_edges.end(), CallEdge{caller},
                             [](const CallEdge& one, const CallEdge& other) {
                                 return one.caller + kNoneFirst < other.caller + kNoneFirst;
                             });
        for (auto edge = first; edge != end; ++edge) {
            WriteKey("cfl=", "cfn=", edge->callee);
            m_out << "calls=" << edge->calls << " 0\n0 " << edge->total << '\n';
        }
    }

    // A number stands for a name from its second place on. So a name that looks like a number is none; but
    // readers pass over blanks behind a number, and a name that begins with some stands alone.
    void WriteKey(std::string_view file, std::string_view function, std::uint32_t key) {
        m_out << file << NameOf(m_keys.Kind(key)) << '\n' << function;
        const std::string_view name = ExportedName(m_keys.Name(key), m_strScratch);
        constexpr std::string_view space = " \t\v\f";
        if (space.find(name.front()) != std::string_view::npos) {
            m_out << name << '\n';
            return;
        }
        m_out << '(' << key + 1 << ')';
        if (!m_named[key]) {
            m_named[key] = true;
            m_out << ' ' << name;
        }
        m_out << '\n';
    }

    const CFrameKeys& m_keys;
    CProfile m_profile;
    std::vector<bool> m_named; // by key
    std::string m_strScratch;
    std::ostream& m_out;
};

} // namespace

void WriteCallgrind(const ExportedProfile& profile, std::ostream& out) {
    CCallgrindText(profile, out).Write();
}

} // namespace carvelot
