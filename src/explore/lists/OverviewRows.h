// What one reads first of a log: what it is, what asks for a look, and where most of its time went.
#pragma once

#include "explore/Findings.h"
#include "text/ColumnTable.h"

#include <cstdint>
#include <string>
#include <vector>

namespace carvelot {

// "debug log · 1 m 22.510 s · 3 processes, 5 threads · 2,023 records · 12 lines unread".
std::string OverviewLine(const ExploredSession& explored);

inline constexpr std::size_t kOverviewRows = 10; // of each list of costs

struct OverviewFinding {
    std::string sentence;
    std::uint64_t count = 0;
    std::int64_t cost = 0;   // microseconds
    std::size_t finding = 0; // its place among all

    static CColumnTable<OverviewFinding> Columns();
};
std::vector<OverviewFinding> MakeOverviewFindings(const ExploredSession& explored,
                                                  const std::vector<Finding>& findings);

// A function or a statement shape with what it took.
struct OverviewCost {
    std::string name;
    std::int64_t time = 0; // microseconds: of a function its own
    std::uint64_t count = 0;
    double share = 0;         // of the largest of the list
    std::uint32_t number = 0; // its key, or its shape

    static CColumnTable<OverviewCost> Columns();
};
// By own time, the most first; those that took none are left out.
std::vector<OverviewCost> MakeOverviewFunctions(const ExploredSession& explored, const CProfile& profile);
// By total time.
std::vector<OverviewCost> MakeOverviewStatements(const ExploredSession& explored,
                                                 const std::vector<ShapeProfile>& shapes);

} // namespace carvelot
