#include "session/FollowedLog.h"

#include "parse/LogReader.h"
#include "platform/FileState.h"
#include "sources/FileSource.h"

#include <algorithm>
#include <bit>

namespace carvelot {

namespace {

// The first bytes of another source: a log may go on growing while it is read.
class CFirstBytes final : public ILogSource {
public:
    CFirstBytes(ILogSource& source, std::uint64_t size) : m_source(source), m_nSize(size) {}

    std::size_t Read(void* buffer, std::size_t size) override {
        const std::uint64_t left = m_nSize - m_nRead;
        const std::size_t got =
            left == 0 ? 0
                      : m_source.Read(buffer, static_cast<std::size_t>(std::min<std::uint64_t>(size, left)));
        m_nRead += got;
        return got;
    }
    void Rewind() override {
        m_source.Rewind();
        m_nRead = 0;
    }
    bool Seek(std::uint64_t position) override {
        const bool there = position <= m_nSize && m_source.Seek(position);
        m_nRead = there ? position : m_nRead;
        return there;
    }
    std::uint64_t Size() const override { return m_nSize; }
    SourceProgress Progress() const override { return {m_nRead, m_nSize}; }

private:
    ILogSource& m_source;
    const std::uint64_t m_nSize;
    std::uint64_t m_nRead = 0;
};

FormatLook LookAtFormatOf(ILogSource& source) {
    CLogReader reader(source);
    return LookAtFormat(reader);
}

// A threshold may be any number, and one that is none too.
bool Same(const AnalysisSettings& one, const AnalysisSettings& other) {
    return std::bit_cast<std::uint32_t>(one.m_fThreshold) ==
               std::bit_cast<std::uint32_t>(other.m_fThreshold) &&
           one.m_bCacheAnalysis == other.m_bCacheAnalysis;
}

} // namespace

bool CFollowedLog::CanFollow(const CCarvelotDoc& session) {
    return !session.IsPacked() && session.m_listPieces.empty() && !session.m_strLogPath.empty();
}

LogChange CFollowedLog::Look() {
    const platform::FileState state = platform::LookAtFile(m_session.m_strLogPath);
    const bool missed = m_bMissed;
    m_bMissed = state.presence == platform::FileState::Presence::Missing;
    if (m_bMissed) {
        // Between the two steps of a rotation there is no file for a moment.
        return missed ? LogChange::Vanished : LogChange::NotToBeHad;
    }
    if (state.presence != platform::FileState::Presence::There) {
        return LogChange::NotToBeHad;
    }
    const LogTrace& trace = m_session.Trace();
    if (state.identity == trace.identity && state.size == trace.size &&
        Same(trace.settings, m_session.Settings())) {
        return LogChange::None;
    }
    platform::SharedFile file = platform::SharedFile::OpenForReading(m_session.m_strLogPath);
    if (!file) {
        return LogChange::NotToBeHad;
    }
    CFileSource source(file);
    const LogChange change = LookAt(source, file.State().identity);
    m_session.NoteFailure(source);
    return change;
}

LogChange CFollowedLog::LookAt(ILogSource& grows, const platform::FileIdentity& identity) {
    CFirstBytes source(grows, grows.Size());
    const LogChange change = ChangeOf(source, identity);
    if (change == LogChange::None || change == LogChange::NotToBeHad) {
        return change;
    }
    const bool wasTold = m_session.Trace().told;
    if (change == LogChange::Grew && wasTold) {
        return m_session.ReadOn(source) ? change : LogChange::NotRead;
    }
    if (change == LogChange::Grew) {
        m_session.HasBeenLookedAt(source.Size());
        return LogChange::None;
    }
    if (PackedKindOf(source) != PackedKind::None) {
        return LogChange::Packed;
    }
    if (!m_session.ReadAnew(source, identity)) {
        return LogChange::NotRead;
    }
    // Lines that come to a log which had none are no change of the format.
    return change == LogChange::OtherFormat && !wasTold ? LogChange::Grew : change;
}

LogChange CFollowedLog::ChangeOf(ILogSource& source, const platform::FileIdentity& identity) {
    const LogTrace& trace = m_session.Trace();
    const std::uint64_t size = source.Size();
    if (!(identity == trace.identity)) {
        return LogChange::Replaced;
    }
    if (size < trace.size) {
        return LogChange::Shrank;
    }
    const std::optional<bool> holds = m_session.StillHolds(source);
    if (!holds) {
        return LogChange::NotToBeHad;
    }
    if (!*holds) {
        return LogChange::Replaced;
    }
    if (!Same(trace.settings, m_session.Settings())) {
        return LogChange::OtherSettings;
    }
    if (size == trace.size) {
        return LogChange::None;
    }
    return FormatIsToldOtherwise(source) ? LogChange::OtherFormat : LogChange::Grew;
}

bool CFollowedLog::FormatIsToldOtherwise(ILogSource& source) {
    if (m_nLoadIdentity != m_session.LoadIdentity()) {
        m_nLoadIdentity = m_session.LoadIdentity();
        CFirstBytes read(source, m_session.Trace().place.position);
        m_format = LookAtFormatOf(read);
    }
    if (!m_format.sawEnd) {
        return false;
    }
    const FormatLook before = m_format;
    m_format = LookAtFormatOf(source);
    return !m_format.TellsTheSame(before);
}

} // namespace carvelot
