// A log as a database stores it: the rows of the tables of Schema.h.
#pragma once

#include "records/NumberMap.h"
#include "records/PageAllocator.h"
#include "tables/Tables.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

class CStoredLog {
public:
    // Refers to the source. `id` is the log's number in the database.
    CStoredLog(const CTableSource& source, std::int64_t id);

    // What records share: that of a record, which stands for all of its kind.
    struct Origin {
        RecordIndex record;
        std::int64_t labelGoesOn; // 0: not; 1: with the text up to a tab; 2: with the detail's label
        // Told by the record's frame, or the shape of that; else by its detail, or not there.
        bool nameOfFrame;
        bool tableOfShape;
        bool durationOfFrame;
    };
    // From a record on, how far line numbers are ahead of record numbers.
    struct LineStep {
        RecordIndex record;
        std::uint32_t ahead;
    };
    // From a record on, the day and the clock at its midnight; none of either for records without a stamp.
    struct DayStep {
        RecordIndex record;
        std::optional<std::int64_t> day;
        std::int64_t midnight;
    };
    struct FindingRecord {
        std::uint32_t finding;
        std::uint32_t position;
    };

    const CTableSource& Source() const { return m_source; }
    std::int64_t Id() const { return m_nId; }
    std::uint32_t OriginOf(std::uint32_t record) const { return m_originOf[record]; }
    const Origin& WhereFrom(RecordIndex record) const { return m_origins[m_originOf[Number(record)]]; }
    // An earlier record of the same text, which has it itself; asked for by rising records.
    std::optional<RecordIndex> SameTextAs(RecordIndex record, std::string_view text) const;
    // A hash of all stamps and texts.
    std::uint64_t Hash() const { return m_nHash; }

    const std::vector<Origin>& Origins() const { return m_origins; }
    const std::vector<LineStep>& LineSteps() const { return m_lineSteps; }
    const std::vector<DayStep>& DaySteps() const { return m_daySteps; }
    const std::vector<RecordIndex>& Details() const { return m_details; } // records that have some
    // These are there once the frames have been counted.
    void TakeProfile();
    std::uint32_t FunctionOf(std::uint32_t key) const { return m_functionOf[key]; }
    std::uint32_t ShapeOf(std::uint32_t shape) const { return m_shapeOf[shape]; }
    const std::vector<FindingRecord>& FindingRecords() const { return m_findingRecords; }

    // What of a label is the record's own, beyond what its origin has.
    std::string_view OwnLabel(RecordIndex record) const;

private:
    // A text that was seen lately.
    struct KnownText {
        std::uint32_t hash = 0;
        RecordIndex record = kNoRecord;
    };

    void TakeRecord(RecordIndex record);
    std::int64_t LabelGoesOn(RecordIndex record) const;

    const CTableSource& m_source;
    const std::int64_t m_nId;
    CNumberMap m_originNumbers;
    CLargeVector<std::uint32_t> m_originOf; // by record
    std::vector<Origin> m_origins;
    std::vector<LineStep> m_lineSteps;
    std::vector<DayStep> m_daySteps;
    std::vector<RecordIndex> m_details;
    std::uint64_t m_nHash = 0;
    std::vector<std::uint32_t> m_tableOfShape; // number of a name, by shape
    mutable std::vector<KnownText> m_knownTexts;
    std::vector<std::uint32_t> m_functionOf; // by key
    std::vector<std::uint32_t> m_shapeOf;    // by number
    std::vector<FindingRecord> m_findingRecords;
};

// A column that is stored. Without a cell of its own it is that of the same name, or of another one, of the
// table that its rows are those of.
struct StoredColumn {
    std::string_view name;
    Cell (*cell)(const CStoredLog& log, std::uint32_t row, std::string& scratch) = nullptr;
    std::string_view sameAs = {};
};

struct StoredTable {
    std::string_view name;
    std::span<const StoredColumn> columns;        // in the table's order, behind `log`
    std::uint32_t (*rows)(const CStoredLog& log); // null: those of that table
    std::string_view rowsOf = {};
};

// All but `logs`.
std::span<const StoredTable> StoredTables();
// From here on they need what TakeProfile brings.
inline constexpr std::size_t kFirstOfProfile = 8;

} // namespace carvelot
