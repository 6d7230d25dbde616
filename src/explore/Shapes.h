// Statements by their shape: how often, how long, and who ran them.
#pragma once

#include "explore/Cut.h"
#include "explore/RecordShapes.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace carvelot {

inline constexpr std::uint32_t kNoShape = 0xFFFFFFFF;

// The shape of each statement frame of a log.
class CStatementShapes {
public:
    // Refers to the shapes.
    CStatementShapes(const CRecordShapes& shapes, const CFrames& frames,
                     CExploreProgress* progress = nullptr);

    std::uint32_t Of(std::uint32_t frame) const { return m_byFrame[frame]; } // kNoShape of no statement
    std::uint32_t Count() const { return m_shapes.Count(); }
    std::string_view Text(std::uint32_t shape) const { return m_shapes.Text(shape); }

private:
    const CRecordShapes& m_shapes;
    CLargeVector<std::uint32_t> m_byFrame;
};

// All statements of a shape in a part of a log. Times are microseconds.
struct ShapeProfile {
    std::uint32_t shape = kNoShape;
    std::uint32_t count = 0;
    std::int64_t total = 0;
    std::int64_t longest = 0;
    std::int64_t p95 = 0;
    std::string_view operation; // of its first execution, as the table
    std::string_view table;
    RecordIndex firstRecord = kNoRecord;
    RecordIndex longestRecord = kNoRecord; // the first of those that took longest
    std::uint32_t topCaller =
        kNoKey; // the key that ran it most often, none at the top; the first seen of several
};

// By total falling, then count falling, then text.
std::vector<ShapeProfile> ProfileShapes(const CCarvelotDoc& session, const CStatementShapes& shapes,
                                        const CCut& cut, CExploreProgress* progress = nullptr);

} // namespace carvelot
