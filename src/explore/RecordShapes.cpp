#include "explore/RecordShapes.h"

#include "explore/FrameNames.h"
#include "explore/StatementShape.h"

#include <algorithm>

namespace carvelot {

CRecordShapes::CRecordShapes(const CDetailList& details, CExploreProgress* progress) {
    CShapeText shapeText;
    // Statements to one table have few shapes, mostly that of the one before.
    std::vector<std::uint32_t> latest; // by table
    const auto count = static_cast<std::uint32_t>(details.Size());
    for (std::uint32_t i = 0; i < count; ++i) {
        CheckAt(progress, i);
        const RecordIndex record{i};
        if (details.Kind(record) != LOG_SQL) {
            continue;
        }
        const std::string_view shape = shapeText.Of(details.Text(record), OperationWordOf(details, record));
        const std::uint32_t table = details.TableNumber(record);
        if (table >= latest.size()) {
            latest.resize(std::max<std::size_t>(table + 1, latest.size() * 2), 0);
        }
        if (m_shapes.Text(latest[table]) != shape) {
            latest[table] = m_shapes.Id(shape);
        }
        m_ofStatements.push_back(latest[table]);
    }
    AddPart(progress, ExploreParts::kRecordShapes);
}

} // namespace carvelot
