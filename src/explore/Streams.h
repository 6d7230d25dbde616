// A stream is what runs one step after the other: a thread of a debug log, a user of a JAS log. All its
// records, of whatever kind, in file order.
#pragma once

#include "session/Selection.h"

#include <cstdint>
#include <string>
#include <vector>

namespace carvelot {

class CStreams {
public:
    // Of a session whose load has ended; refers to it.
    explicit CStreams(const CCarvelotDoc& session);

    std::uint32_t Count() const { return static_cast<std::uint32_t>(m_owners.size()); } // by first record
    std::uint32_t Of(RecordIndex record) const { return m_byContext[m_details.ContextNumber(record)]; }
    // "thread:PID/TID" or "user:NAME".
    std::string Name(std::uint32_t stream) const;
    // Whether a stream is part of a process, thread or user, or of the whole log. All users of a JAS log run
    // in its one process and thread.
    bool IsIn(std::uint32_t stream, const Selection& scope) const;

private:
    struct Owner {
        const CThread* thread;
        const CJASUser* user; // null in a debug log
    };

    const CDetailList& m_details;
    std::vector<std::uint32_t> m_byContext;
    std::vector<Owner> m_owners;
};

} // namespace carvelot
