// A log that grows while its session is open: looked at now and then, it brings the session up to what the
// log holds, as a fresh load of its whole lines would.
#pragma once

#include "parse/LogFormat.h"
#include "session/CarvelotDoc.h"
#include "sources/LogSource.h"

#include <cstdint>

namespace carvelot {

// What a look has found. Unless nothing else is said the session is up to date, and following goes on.
enum class LogChange {
    None,
    Grew,
    // These read it anew from its start.
    Shrank,
    Replaced,      // by another file, or by other bytes
    OtherFormat,   // more lines tell another format, or another place of the text
    OtherSettings, // of the user, by which its lines are analysed
    // The session stays as it is.
    NotToBeHad, // at present
    Vanished,   // for good: following ends
    Packed,     // an archive stands in the log's place: following ends
    // The session is empty, too large or ended by the host, which knows: following ends.
    NotRead,
};

inline bool EndsFollowing(LogChange change) { return change >= LogChange::Vanished; }

class CFollowedLog {
public:
    // The session must outlive this object. One that is no single plain file cannot be followed.
    explicit CFollowedLog(CCarvelotDoc& session) : m_session(session) {}
    static bool CanFollow(const CCarvelotDoc& session);

    // Looks at the session's file. Where its size and identity are known already it is not opened.
    LogChange Look();
    // The same for a log whose bytes and identity are at hand, of a source that seeks.
    LogChange LookAt(ILogSource& grows, const platform::FileIdentity& identity);

private:
    LogChange ChangeOf(ILogSource& source, const platform::FileIdentity& identity);
    bool FormatIsToldOtherwise(ILogSource& source);

    CCarvelotDoc& m_session;
    bool m_bMissed = false;            // by the latest look
    std::uint64_t m_nLoadIdentity = 0; // of the load that the look below is at
    FormatLook m_format;
};

} // namespace carvelot
