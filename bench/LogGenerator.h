// Makes logs of any size with the shapes of real ones: the same seed gives the same bytes on every machine.
#pragma once

#include <cstdint>
#include <iosfwd>

namespace carvelot::bench {

// A debug log of the newer stamp: several processes and threads, nested business function calls with
// parameters, SQL with its requests and fetches, caches, event rules, errors and continuation lines. About
// `size` bytes.
void WriteDebugLog(std::ostream& out, std::uint64_t size, std::uint64_t seed);

// A JAS log: users, prepared statements with their parameters, object calls, event rules, warnings and stack
// traces.
void WriteJASLog(std::ostream& out, std::uint64_t size, std::uint64_t seed);

} // namespace carvelot::bench
