// What differs from one log to another: what stands in both, or in one alone, with its numbers on either
// side.
#pragma once

#include "explore/ExploredSession.h"
#include "explore/Findings.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace carvelot {

// A number of something that one side may lack: there it is 0. None is negative, so that each difference has
// its place in 64 bits.
struct ComparedNumber {
    std::int64_t base = 0;
    std::int64_t log = 0;

    std::int64_t Difference() const { return log - base; }
};

// Which of the two logs has it: at least one.
struct ComparedPresence {
    bool inBase = false;
    bool inLog = false;
};
std::string_view NameOf(ComparedPresence presence); // "both", "base" or "log"

// Names and texts are those of the sides.
struct ComparedFunction {
    FrameKind kind;
    std::string_view name;
    ComparedPresence in = {};
    ComparedNumber calls = {};
    ComparedNumber unclosed = {};
    ComparedNumber failed = {};
    ComparedNumber warned = {};
    ComparedNumber total = {};
    ComparedNumber self = {};
    ComparedNumber shortest = {};
    ComparedNumber longest = {};
    ComparedNumber p50 = {};
    ComparedNumber p95 = {};
};

struct ComparedShape {
    std::string_view text;
    ComparedPresence in = {};
    ComparedNumber count = {};
    ComparedNumber total = {};
    ComparedNumber longest = {};
    ComparedNumber p95 = {};
};

// All findings of one rule and subject.
struct ComparedFinding {
    FindingRule rule;
    std::string_view subject;
    ComparedPresence in = {};
    ComparedNumber count = {};
    ComparedNumber cost = {};
};

struct ComparedSide {
    const ExploredSession& explored;
    const ExploredScope& scope;
    const std::vector<Finding>& findings; // all of the session, whatever the scope
};

// Refers to both sides. The largest differences of total, of findings those of cost, come first; then names
// and kinds, shapes, subjects and rules tell the order.
struct Comparison {
    Comparison(const ComparedSide& base, const ComparedSide& log);

    const std::vector<ComparedFunction> functions;
    const std::vector<ComparedShape> shapes;
    const std::vector<ComparedFinding> findings;
};

} // namespace carvelot
