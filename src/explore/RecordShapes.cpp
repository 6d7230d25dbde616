#include "explore/RecordShapes.h"

#include "explore/FrameNames.h"
#include "explore/StatementShape.h"
#include "explore/StrictShape.h"
#include "explore/TextsAhead.h"
#include "parse/Classifier.h"

#include <algorithm>
#include <array>

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
    // Statements to one table have few shapes: mostly one of its latest, which a look tells more quickly than
    // a look-up of the whole text does.
    struct Latest {
        std::array<std::uint32_t, 4> shapes{};
        std::size_t oldest = 0; // of them, by place
    };
    std::vector<Latest> latestOf; // by table
    const auto count = static_cast<std::uint32_t>(details.Size());
    for (std::uint32_t i = 0; i < count; ++i) {
        CheckAt(progress, i);
        FetchTextAhead(details, i, CKindSet{LOG_SQL});
        const RecordIndex record{i};
        if (details.Kind(record) != LOG_SQL) {
            continue;
        }
        const std::string_view shape = shapeAt(record);
        const std::uint32_t table = details.TableNumber(record);
        if (table >= latestOf.size()) {
            latestOf.resize(std::max<std::size_t>(table + 1, latestOf.size() * 2));
        }
        Latest& latest = latestOf[table];
        auto found = std::find_if(latest.shapes.begin(), latest.shapes.end(),
                                  [&](std::uint32_t number) { return m_shapes.Text(number) == shape; });
        if (found == latest.shapes.end()) {
            found = latest.shapes.begin() + static_cast<std::ptrdiff_t>(latest.oldest);
            *found = m_shapes.Id(shape);
            latest.oldest = (latest.oldest + 1) % latest.shapes.size();
        }
        m_ofStatements.push_back(*found);
    }
}

} // namespace carvelot
