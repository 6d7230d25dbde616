#include "explore/RecordShapes.h"

#include "explore/FrameNames.h"
#include "explore/StatementShape.h"
#include "explore/StrictShape.h"
#include "parse/Classifier.h"

#include <algorithm>

namespace carvelot {

namespace {

// As a statement is that still awaits its values, and one beside a silence.
bool IsOfNoInterest(LogKind kind) { return kind == LOG_NONE || kind == LOG_GAP; }

} // namespace

CRecordShapes::CRecordShapes(const CDetailList& details, CExploreProgress* progress, ShapeReading reading) {
    if (reading == ShapeReading::Plain) {
        CShapeText shapeText;
        Read(details, progress, [&](RecordIndex record) {
            return shapeText.Of(details.Text(record), OperationWordOf(details, record));
        });
    } else {
        CStrictShapeText shapeText;
        CPreparedStatement prepared;
        std::uint32_t looked = 0;
        Read(details, progress, [&](RecordIndex record) {
            for (; looked < Number(record); ++looked) {
                const RecordIndex before{looked};
                if (IsOfNoInterest(details.Kind(before)) &&
                    !FindOperationWord(details.Text(before)).empty()) {
                    prepared.Prepare(details.Text(before));
                }
            }
            return shapeText.Of(prepared.TakeFor(details.Text(record)), OperationWordOf(details, record));
        });
    }
    AddPart(progress, ExploreParts::kRecordShapes);
}

template <class ShapeAt>
void CRecordShapes::Read(const CDetailList& details, CExploreProgress* progress, ShapeAt shapeAt) {
    // Statements to one table have few shapes, mostly that of the one before.
    std::vector<std::uint32_t> latest; // by table
    const auto count = static_cast<std::uint32_t>(details.Size());
    for (std::uint32_t i = 0; i < count; ++i) {
        CheckAt(progress, i);
        const RecordIndex record{i};
        if (details.Kind(record) != LOG_SQL) {
            continue;
        }
        const std::string_view shape = shapeAt(record);
        const std::uint32_t table = details.TableNumber(record);
        if (table >= latest.size()) {
            latest.resize(std::max<std::size_t>(table + 1, latest.size() * 2), 0);
        }
        if (m_shapes.Text(latest[table]) != shape) {
            latest[table] = m_shapes.Id(shape);
        }
        m_ofStatements.push_back(latest[table]);
    }
}

} // namespace carvelot
