// Where the bytes of a log come from: a file, a packed one, pieces, memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace carvelot {

// How far a source has been read.
struct SourceProgress {
    // In bytes of what lies on the disk: of a packed log, packed ones. `all` is 0 when it can't be told.
    std::uint64_t done = 0;
    std::uint64_t all = 0;
    // Of a log in pieces, the one that was read last, and at which of the log's bytes it begins.
    std::size_t piece = 0;
    std::uint64_t pieceBegin = 0;
};

// Read by one thread at a time.
class ILogSource {
public:
    virtual ~ILogSource() = default;

    // Reads up to `size` bytes, of one piece only; none at the end, or where reading fails.
    virtual std::size_t Read(void* buffer, std::size_t size) = 0;
    // Starts over from the first byte.
    virtual void Rewind() = 0;
    // Starts over for the last time: nobody will ask for what has been read once more.
    virtual void RewindForGood() { Rewind(); }
    // Goes on at a byte, counted from the first. False, with nothing done, where the source only goes
    // forward.
    virtual bool Seek(std::uint64_t /*position*/) { return false; }
    // How many bytes there are to read, as far as is known at this moment; 0 when it can't be told.
    virtual std::uint64_t Size() const = 0;
    virtual SourceProgress Progress() const = 0;
    // Why there are no more bytes, in a sentence for the user; empty as long as there are some, and at the
    // log's usual end.
    virtual std::string Failure() const { return {}; }
};

} // namespace carvelot
