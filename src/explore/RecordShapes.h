// The shape of each statement of a log.
#pragma once

#include "explore/ExploreProgress.h"
#include "records/DetailList.h"
#include "records/Interner.h"
#include "records/PageAllocator.h"

#include <cstdint>
#include <string_view>

namespace carvelot {

// Plain shapes show what is no literal, strict ones what cannot be a value (StrictShape.h).
enum class ShapeReading : std::uint8_t { Plain, Strict };

class CRecordShapes {
public:
    explicit CRecordShapes(const CDetailList& details, CExploreProgress* progress = nullptr,
                           ShapeReading reading = ShapeReading::Plain);

    // Shapes by first appearance.
    std::uint32_t Count() const { return static_cast<std::uint32_t>(m_shapes.Count()); }
    std::string_view Text(std::uint32_t shape) const { return m_shapes.Text(shape); }
    // Of each SQL record, by record.
    const CLargeVector<std::uint32_t>& OfStatements() const { return m_ofStatements; }

private:
    template <class ShapeAt>
    void Read(const CDetailList& details, CExploreProgress* progress, ShapeAt shapeAt);

    CInterner m_shapes; // a shape's number is its text's
    CLargeVector<std::uint32_t> m_ofStatements;
};

} // namespace carvelot
