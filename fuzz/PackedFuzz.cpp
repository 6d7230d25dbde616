// An archive: what it lists, what comes out of it in pieces of whatever size, of a source that seeks and of
// one that only goes forward; and the session of it.
#include "sources/PackedFile.h"
#include "support/FuzzSession.h"

using namespace carvelot;

namespace {

// More of what a few bytes can claim to be is not asked for.
constexpr std::size_t kMost = 4U << 20U;
constexpr std::size_t kMostMembers = 3;

class CForwardSource final : public ILogSource {
public:
    explicit CForwardSource(std::string_view bytes) : m_bytes(bytes) {}
    std::size_t Read(void* buffer, std::size_t size) override { return m_bytes.Read(buffer, size); }
    void Rewind() override { m_bytes.Rewind(); }
    std::uint64_t Size() const override { return 0; }
    SourceProgress Progress() const override { return m_bytes.Progress(); }

private:
    CMemorySource m_bytes;
};

struct Unpacked {
    std::string problem;
    std::string bytes;
    std::string failure;
    bool all = false;
};

Unpacked Unpack(ILogSource& packed, PackedKind kind, const std::vector<std::string>& members,
                std::size_t piece) {
    Unpacked unpacked;
    CPackedSource source(packed, kind, members);
    unpacked.problem = source.Open();
    std::string buffer(piece, '\0');
    while (unpacked.problem.empty() && !unpacked.all && unpacked.bytes.size() < kMost) {
        const std::size_t got = source.Read(buffer.data(), piece);
        unpacked.bytes.append(buffer, 0, got);
        unpacked.all = got < piece;
    }
    unpacked.failure = source.Failure();
    fuzz::Require(unpacked.all || unpacked.failure.empty(), "only an end has a reason");
    return unpacked;
}

void RequireSame(const Unpacked& one, const Unpacked& other) {
    fuzz::Require(one.problem == other.problem, "an archive is refused for one reason");
    const std::size_t both = std::min(one.bytes.size(), other.bytes.size());
    fuzz::Require(one.bytes.compare(0, both, other.bytes, 0, both) == 0, "pieces of any size hold the same");
    fuzz::Require(one.all != other.all || !one.all ||
                      (one.bytes.size() == other.bytes.size() && one.failure == other.failure),
                  "pieces of any size end at one place, for one reason");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    const PackedKind kind = PackedKindOf(input);
    if (kind == PackedKind::None) {
        return 0;
    }
    CMemorySource packed(input);
    std::vector<std::vector<std::string>> choices(1);
    if (kind == PackedKind::Zip) {
        const PackedMembers list = ListMembers(packed);
        fuzz::Require(list.members.empty() != list.problem.empty(), "an archive has members or a problem");
        for (std::size_t i = 0; i < std::min(list.members.size(), kMostMembers); ++i) {
            choices.push_back({list.members[i].name});
        }
    }
    std::size_t most = 0;
    for (const std::vector<std::string>& members : choices) {
        const Unpacked unpacked = Unpack(packed, kind, members, 128 * 1024);
        RequireSame(unpacked, Unpack(packed, kind, members, 1000));
        CForwardSource forward(input);
        Unpack(forward, kind, members, 10'000);
        most = std::max(most, unpacked.bytes.size());
    }
    if (most < 64 * 1024) {
        static fuzz::CFuzzSession session;
        CMemorySource source(input);
        session.m_host.m_nMessages = 0;
        session.m_doc.m_listMembers = choices.back(); // of several none would be chosen
        const bool loaded = session.m_doc.LoadPackedOrPlain(source);
        const bool whole = loaded && session.m_doc.LoadFailure().empty();
        fuzz::Require(session.m_host.m_nMessages == (whole ? 0 : 1),
                      "what is not loaded or not whole says so once");
    }
    return 0;
}
