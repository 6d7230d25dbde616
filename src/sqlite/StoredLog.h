// A log as a database stores it: the rows of the tables of Schema.h.
#pragma once

#include "records/NumberMap.h"
#include "sources/ReadAhead.h"
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
    struct StoredRecord {
        std::int64_t clock;
        std::uint32_t origin;
        RecordIndex sameText; // an earlier record that has the text itself, or none
        std::optional<std::string_view> text;
    };
    // A record of which more is to be told than its origin and its frame do.
    struct Detail {
        RecordIndex record;
        std::uint32_t origin;
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
    // By rising rows, each once, for a thread makes them ahead. What follows is there when the last one was
    // asked for.
    const StoredRecord& RecordAt(std::uint32_t row) const;
    // A hash of all stamps and texts.
    std::uint64_t Hash() const { return m_nHash; }
    const std::vector<Origin>& Origins() const { return m_origins; }
    const std::vector<LineStep>& LineSteps() const { return m_lineSteps; }
    const std::vector<DayStep>& DaySteps() const { return m_daySteps; }
    const std::vector<Detail>& Details() const { return m_details; }
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

    using Block = std::vector<StoredRecord>;

    bool FillBlock(Block& block);
    StoredRecord TakeRecord(RecordIndex record);
    void TakeFrame(RecordIndex record, Origin& where);
    std::int64_t LabelGoesOn(RecordIndex record) const;
    RecordIndex SameTextAs(RecordIndex record, std::string_view text, std::uint64_t hash);

    const CTableSource& m_source;
    const std::int64_t m_nId;
    const std::uint32_t m_nRecords;

    // What the thread that makes records has come to.
    std::uint32_t m_nNextRecord = 0;
    std::uint32_t m_nNextFrame = 0;
    CNumberMap m_originNumbers;
    std::vector<Origin> m_origins;
    std::vector<LineStep> m_lineSteps;
    std::vector<DayStep> m_daySteps;
    std::vector<Detail> m_details;
    std::uint64_t m_nHash = 0;
    std::vector<std::uint32_t> m_tableOfShape; // number of a name, by shape
    std::vector<KnownText> m_knownTexts;       // by hash

    std::vector<std::uint32_t> m_functionOf; // by key
    std::vector<std::uint32_t> m_shapeOf;    // by number
    std::vector<FindingRecord> m_findingRecords;

    mutable const Block* m_pBlock = nullptr; // that is being asked for
    mutable std::uint32_t m_nBlockBegin = 0;
    mutable std::uint32_t m_nBlockEnd = 0;
    std::vector<Block> m_ring;
    mutable CReadAhead<Block> m_ahead; // the last, for its thread works with all others
};

// A column that is stored. Without a cell of its own it is that of the same name, or of another one, of the
// table that its rows are those of, or the number of the row.
struct StoredColumn {
    std::string_view name;
    Cell (*cell)(const CStoredLog& log, std::uint32_t row, std::string& scratch) = nullptr;
    std::string_view sameAs = {};
    bool isRow = false;
};
constexpr StoredColumn RowItself(std::string_view name) { return {name, nullptr, {}, true}; }

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
