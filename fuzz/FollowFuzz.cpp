// A log that grows, shrinks and is replaced while a session follows it: after each step the session is that
// of a fresh load. The first byte chooses the settings, the second how many steps there are; a step takes two
// bytes; the rest is what the log is made of.
#include "session/FollowedLog.h"
#include "support/FuzzSession.h"
#include "support/SameSessions.h"

using namespace carvelot;

namespace {

constexpr std::size_t kMostSteps = 16; // a power of two
constexpr std::size_t kMostBytes = 64 * 1024;

// A log in memory to which things happen.
class CChangingLog {
public:
    explicit CChangingLog(std::string_view material) : m_material(material) {}

    // `amount` is up to 255.
    void Change(unsigned what, std::size_t amount) {
        switch (what % 8) {
        case 0:
        case 1:
        case 2:
            Grow(amount);
            break;
        case 3:
        case 4:
            Grow(amount * 16);
            break;
        case 5:
            m_bytes.resize(m_bytes.size() * amount / 256);
            break;
        case 6: // by another file
            ++m_nFile;
            m_bytes = m_material.substr(m_material.size() * amount / 256);
            m_nTaken = 0;
            break;
        default: // by other bytes in the same file, which end elsewhere
            if (!m_bytes.empty()) {
                char& byte = m_bytes[std::min(amount, m_bytes.size() - 1)];
                byte = static_cast<char>(byte ^ 1);
            }
            Grow(1);
            break;
        }
    }
    const std::string& Bytes() const { return m_bytes; }
    platform::FileIdentity Identity() const { return {0, m_nFile}; }

private:
    // By what comes next of the material, again and again.
    void Grow(std::size_t size) {
        if (m_material.empty()) {
            return;
        }
        for (; size > 0 && m_bytes.size() < kMostBytes; m_nTaken %= m_material.size()) {
            const std::string_view next = m_material.substr(m_nTaken, size);
            m_bytes.append(next);
            m_nTaken += next.size();
            size -= next.size();
        }
    }

    const std::string_view m_material;
    std::string m_bytes;
    std::size_t m_nTaken = 0;
    std::uint64_t m_nFile = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    if (input.size() < 2) {
        return 0;
    }
    const std::size_t steps =
        std::min<std::size_t>(static_cast<unsigned char>(input[1]) % kMostSteps + 1, (input.size() - 2) / 2);
    const fuzz::CFuzzSession::Options options = fuzz::OptionsOf(input[0]);
    CChangingLog log(input.substr(2 + 2 * steps));
    static fuzz::CFuzzSession session;
    static fuzz::CFuzzSession fresh;
    session.Load({}, options);
    session.m_host.m_nMessages = 0;
    CFollowedLog followed(session.m_doc);
    for (std::size_t step = 0; step < steps; ++step) {
        log.Change(data[2 + 2 * step], data[3 + 2 * step]);
        CMemorySource source(log.Bytes());
        const LogChange change = followed.LookAt(source, log.Identity());
        if (change == LogChange::Packed) {
            break; // the session stays what it was
        }
        fuzz::Require(!EndsFollowing(change), "a log in memory can be followed");
        fresh.Load(log.Bytes(), options);
        const std::string difference = test::DifferenceOf(session.m_doc, fresh.m_doc);
        fuzz::Require(difference.empty(), "followed, another outcome: " + difference);
        fuzz::Require(session.m_doc.m_nBytes == fresh.m_doc.m_nBytes, "as many bytes as a fresh load");
        fuzz::Require(session.m_pending.statement == fresh.m_pending.statement &&
                          session.m_pending.parameters == fresh.m_pending.parameters,
                      "the same statement awaits its parameters");
        fuzz::Require(followed.LookAt(source, log.Identity()) == LogChange::None,
                      "where nothing has happened nothing is found");
    }
    fuzz::Require(session.m_host.m_nMessages == 0, "what happens to a log is told by the look alone");
    return 0;
}
