#include "tables/Tables.h"

#include "explore/FrameNames.h"
#include "lists/PaneRows.h"
#include "platform/CodePage.h"
#include "text/TextColumns.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace carvelot {

namespace {

using enum ColumnType;
using Source = CTableSource;

// --- Cells of all kinds

Cell Whole(std::int64_t number) { return number; }
Cell Whole(std::optional<std::uint32_t> number) { return number ? Cell(std::int64_t{*number}) : Cell(); }
Cell WholeOrNone(std::uint32_t number, std::uint32_t none) {
    return number == none ? Cell() : Cell(std::int64_t{number});
}

Cell NameOrNone(const Source& source, std::string_view name, std::string& scratch) {
    return TextCell(source.ShownName(name, scratch));
}

// What rows of different logs have in common.
Cell KeyCell(std::uint64_t key, std::string& scratch) {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(key));
    return std::string_view(scratch.assign(text, 16));
}

Cell DayCell(const Source& source, std::optional<std::int64_t> day, std::string& scratch) {
    return day ? Cell(std::string_view(scratch = source.DayText(*day))) : Cell();
}

Cell LogCell(const Source& source, std::uint32_t, std::string&) { return std::string_view(source.Log()); }
Cell HostCell(const Source& source, std::uint32_t, std::string&) {
    return std::string_view(source.Options().host);
}
Cell FirstDayCell(const Source& source, std::uint32_t, std::string& scratch) {
    return DayCell(source, source.FirstDay(), scratch);
}
Cell RowNumber(const Source&, std::uint32_t row, std::string&) { return std::int64_t{row}; }

constexpr TableColumn kLog{"log", Text, "",
                           "The log: its path as it was given, of a zip archive with !member", LogCell};
constexpr TableColumn kHost{"host", Text, "", "The host that the log is from, as --host says; empty without",
                            HostCell};

// --- Cells of what belongs to a record

template <RecordIndex (*recordOf)(const Source&, std::uint32_t)> struct OfRecord {
    static Cell RecordNumber(const Source& source, std::uint32_t row, std::string&) {
        return WholeOrNone(Number(recordOf(source, row)), Number(kNoRecord));
    }
    static Cell Line(const Source& source, std::uint32_t row, std::string&) {
        return Whole(source.Line(recordOf(source, row)));
    }
    static Cell Clock(const Source& source, std::uint32_t row, std::string&) {
        return Whole(source.Explored().clock[recordOf(source, row)]);
    }
    static Cell Day(const Source& source, std::uint32_t row, std::string& scratch) {
        const RecordIndex record = recordOf(source, row);
        return record == kNoRecord ? Cell() : DayCell(source, source.DayNumber(record), scratch);
    }
    static Cell Time(const Source& source, std::uint32_t row, std::string&) {
        const RecordIndex record = recordOf(source, row);
        const bool isStamped = record != kNoRecord && StampedDayOf(source.Records(), record).has_value();
        return isStamped ? Whole(static_cast<std::int64_t>(source.Records().Time(record))) : Cell();
    }
    static Cell Kind(const Source& source, std::uint32_t row, std::string&) {
        return KindName(source.Records().Kind(recordOf(source, row)));
    }
    static Cell Process(const Source& source, std::uint32_t row, std::string&) {
        return Whole(std::int64_t{source.Records().Context(recordOf(source, row)).processID});
    }
    static Cell Thread(const Source& source, std::uint32_t row, std::string&) {
        return Whole(std::int64_t{source.Records().Context(recordOf(source, row)).threadID});
    }
    static Cell Stream(const Source& source, std::uint32_t row, std::string& scratch) {
        return source.StreamName(source.Explored().streams.Of(recordOf(source, row)), scratch);
    }
    static Cell User(const Source& source, std::uint32_t row, std::string&) {
        return TextCell(source.Records().User(recordOf(source, row)));
    }
    static Cell ReturnCode(const Source& source, std::uint32_t row, std::string&) {
        return Whole(std::int64_t{source.Records().ReturnCode(recordOf(source, row))});
    }
    static Cell Gap(const Source& source, std::uint32_t row, std::string&) {
        return SecondsCell(source.Records().Gap(recordOf(source, row)));
    }
    static Cell Text(const Source& source, std::uint32_t row, std::string&) {
        const std::optional<std::string_view> text = source.ShownText(recordOf(source, row));
        return text ? Cell(*text) : Cell();
    }
};

// --- records

RecordIndex RecordOfRow(const Source&, std::uint32_t row) { return RecordIndex{row}; }
using R = OfRecord<RecordOfRow>;

Cell RecordLevel(const Source& source, std::uint32_t row, std::string& scratch) {
    return NameOrNone(source, source.Records()[RecordIndex{row}].m_strLevel, scratch);
}
Cell RecordSource(const Source& source, std::uint32_t row, std::string& scratch) {
    return NameOrNone(source, source.Records()[RecordIndex{row}].m_strSource, scratch);
}
Cell RecordLabel(const Source& source, std::uint32_t row, std::string& scratch) {
    if (source.Options().shapesOnly) {
        return {};
    }
    scratch = source.Records()[RecordIndex{row}].m_strThreadLabel.Joined();
    return TextCell(TrimRight(scratch, " "));
}
Cell RecordName(const Source& source, std::uint32_t row, std::string& scratch) {
    return NameOrNone(source, source.Records().DisplayName(RecordIndex{row}), scratch);
}
Cell RecordTable(const Source& source, std::uint32_t row, std::string& scratch) {
    const bool isStatement = source.Records().Kind(RecordIndex{row}) == LOG_SQL;
    return isStatement ? NameOrNone(source, source.Records().TableName(RecordIndex{row}), scratch) : Cell();
}
Cell RecordOperation(const Source& source, std::uint32_t row, std::string&) {
    const bool isStatement = source.Records().Kind(RecordIndex{row}) == LOG_SQL;
    return isStatement ? TextCell(OperationWordOf(source.Records(), RecordIndex{row})) : Cell();
}
Cell RecordShape(const Source& source, std::uint32_t row, std::string& scratch) {
    return ShapeKeyCell(source, source.ShapeAt(RecordIndex{row}), scratch);
}
Cell RecordDuration(const Source& source, std::uint32_t row, std::string&) {
    return SecondsCell(source.Records().Duration(RecordIndex{row}));
}
Cell RecordUBELevel(const Source& source, std::uint32_t row, std::string&) {
    const RecordIndex record{row};
    return source.Records().IsUBE(record) ? Whole(std::int64_t{source.Records().UBELevel(record)}) : Cell();
}

constexpr std::array kRecordColumns{
    kLog,
    kHost,
    TableColumn{"record", Integer, "", "Number of the record in its log, from 0 on", R::RecordNumber},
    TableColumn{"line", Integer, "", "Line of the log in which it begins, from 1 on", R::Line},
    TableColumn{"clock", Integer, "us", "Time since the log's first stamp, counted on over midnights",
                R::Clock},
    TableColumn{"day", Text, "",
                "Day of its stamp: 2026-01-15 with --year, --01-15 without; none for a stamp that is no time",
                R::Day},
    TableColumn{"time", Integer, "us", "Time of its stamp since midnight; none where there is no day",
                R::Time},
    TableColumn{"kind", Text, "",
                "What the record is, as the summary names it: SQL, BSFN call, return, ERROR, ...", R::Kind},
    TableColumn{"process", Integer, "", "Process number; 0 in a log of the web tier", R::Process},
    TableColumn{"thread", Integer, "", "Thread number; 0 in a log of the web tier", R::Thread},
    TableColumn{"stream", Text, "",
                "What it runs in: thread:PROCESS/THREAD, or user:NAME in a log of the web tier", R::Stream},
    TableColumn{"user", Text, "", "User of the web tier", R::User},
    TableColumn{"level", Text, "", "Level of the web tier: APP, WARN, SEVERE, ...", RecordLevel},
    TableColumn{"source", Text, "", "Component of the web tier that wrote it", RecordSource},
    TableColumn{"label", Text, "", "Label of a debug log's line; none with --shapes-only", RecordLabel},
    TableColumn{"name", Text, "", "Name of an event rule that starts", RecordName},
    TableColumn{"operation", Text, "", "First word of a statement: SELECT, UPDATE, ...", RecordOperation},
    TableColumn{"table_name", Text, "", "Table of a statement, with its owner", RecordTable},
    TableColumn{"shape_key", Text, "", "Key of a statement's shape, as in shapes", RecordShape},
    TableColumn{"return_code", Integer, "", "Return code of a return, else 0", R::ReturnCode},
    TableColumn{"duration", Real, "s", "How long a statement or object call took, where that was measured",
                RecordDuration},
    TableColumn{"gap", Real, "s", "Silence ahead of it, where it is longer than the threshold", R::Gap},
    TableColumn{"ube_level", Integer, "", "Level of a batch job's line", RecordUBELevel},
    TableColumn{"text", Text, "",
                "Its text; with --shapes-only the shape of a statement, and none of any other", R::Text},
};
std::uint32_t RecordRows(const Source& source) { return static_cast<std::uint32_t>(source.Records().Size()); }

// --- frames

const Frame& FrameOf(const Source& source, std::uint32_t row) { return source.Explored().frames[row]; }
RecordIndex RecordOfFrame(const Source& source, std::uint32_t row) { return FrameOf(source, row).record; }
using F = OfRecord<RecordOfFrame>;

const CFrameKeys& KeysOf(const Source& source) { return source.Explored().frames.Keys(); }
Cell KindOfKey(const Source& source, std::uint32_t key) {
    return key == kNoKey ? Cell() : Cell(NameOf(KeysOf(source).Kind(key)));
}
Cell NameOfKey(const Source& source, std::uint32_t key, std::string& scratch) {
    return key == kNoKey ? Cell() : Cell(source.ShownName(KeysOf(source).Name(key), scratch));
}

Cell FrameParent(const Source& source, std::uint32_t row, std::string&) {
    return WholeOrNone(FrameOf(source, row).parent, kNoFrame);
}
Cell FrameKindCell(const Source& source, std::uint32_t row, std::string&) {
    return KindOfKey(source, FrameOf(source, row).key);
}
Cell FrameName(const Source& source, std::uint32_t row, std::string& scratch) {
    return NameOfKey(source, FrameOf(source, row).key, scratch);
}
Cell FrameFunctionKey(const Source& source, std::uint32_t row, std::string& scratch) {
    return FunctionKeyCell(source, FrameOf(source, row).key, scratch);
}
Cell FrameShape(const Source& source, std::uint32_t row, std::string& scratch) {
    return ShapeKeyCell(source, source.Explored().shapes.Of(row), scratch);
}
Cell FrameStart(const Source& source, std::uint32_t row, std::string&) {
    return Whole(FrameOf(source, row).start);
}
Cell FrameEnd(const Source& source, std::uint32_t row, std::string&) {
    return Whole(FrameOf(source, row).end);
}
Cell FrameTotal(const Source& source, std::uint32_t row, std::string&) {
    return Whole(FrameOf(source, row).Total());
}
Cell FrameSelf(const Source& source, std::uint32_t row, std::string&) { return source.SelfTimes()[row]; }
Cell FrameClosed(const Source& source, std::uint32_t row, std::string&) {
    return std::int64_t{FrameOf(source, row).closed ? 1 : 0};
}
Cell FrameResult(const Source& source, std::uint32_t row, std::string&) {
    const std::int8_t result = FrameOf(source, row).result;
    return result == kNoResult ? Cell() : Cell(std::int64_t{result});
}

constexpr std::array kFrameColumns{
    kLog,
    kHost,
    TableColumn{"frame", Integer, "",
                "Number of the frame in its log, from 0 on, in the order of their records", RowNumber},
    TableColumn{"record", Integer, "", "Record with which it begins", F::RecordNumber},
    TableColumn{"parent", Integer, "", "Frame in which it stands; none at the top", FrameParent},
    TableColumn{"stream", Text, "", "What it runs in, as in records", F::Stream},
    TableColumn{"kind", Text, "", "function, event, statement or object", FrameKindCell},
    TableColumn{"name", Text, "",
                "Name of the function, event or object; of a statement its operation and table", FrameName},
    TableColumn{"function_key", Text, "", "Key of kind and name, as in functions", FrameFunctionKey},
    TableColumn{"shape_key", Text, "", "Key of a statement's shape, as in shapes", FrameShape},
    TableColumn{"day", Text, "", "Day on which it begins, as in records", F::Day},
    TableColumn{"time", Integer, "us", "Time since midnight at which it begins, as in records", F::Time},
    TableColumn{"start_clock", Integer, "us", "Its stream's time at its begin", FrameStart},
    TableColumn{"end_clock", Integer, "us", "Its stream's time at its end", FrameEnd},
    TableColumn{"total", Integer, "us", "Time from begin to end", FrameTotal},
    TableColumn{"self", Integer, "us", "That time without the frames directly below", FrameSelf},
    TableColumn{"closed", Integer, "", "1 when an end of its own was read, else 0", FrameClosed},
    TableColumn{"result", Integer, "", "Return code of the return that closed it", FrameResult},
};
std::uint32_t FrameRows(const Source& source) { return source.Explored().frames.Count(); }

// --- functions

const FunctionProfile& FunctionOf(const Source& source, std::uint32_t row) {
    return source.Scope().profile.m_functions[row];
}
Cell FunctionKind(const Source& source, std::uint32_t row, std::string&) {
    return KindOfKey(source, FunctionOf(source, row).key);
}
Cell FunctionName(const Source& source, std::uint32_t row, std::string& scratch) {
    return NameOfKey(source, FunctionOf(source, row).key, scratch);
}
Cell KeyOfFunction(const Source& source, std::uint32_t row, std::string& scratch) {
    return FunctionKeyCell(source, FunctionOf(source, row).key, scratch);
}
template <auto member> Cell FunctionNumber(const Source& source, std::uint32_t row, std::string&) {
    return std::int64_t{FunctionOf(source, row).*member};
}
using FP = FunctionProfile;

constexpr std::array kFunctionColumns{
    kLog,
    kHost,
    TableColumn{"function_key", Text, "", "Key of kind and name, the same in every log", KeyOfFunction},
    TableColumn{"kind", Text, "", "function, event, statement or object", FunctionKind},
    TableColumn{"name", Text, "",
                "Name of the function, event or object; of a statement its operation and table",
                FunctionName},
    TableColumn{"day", Text, "", "Day on which the log begins, as in records", FirstDayCell},
    TableColumn{"calls", Integer, "", "Frames of this kind and name", FunctionNumber<&FP::calls>},
    TableColumn{"unclosed", Integer, "", "Those of which no end was read", FunctionNumber<&FP::unclosed>},
    TableColumn{"failed", Integer, "", "Those that returned 2 or more", FunctionNumber<&FP::failed>},
    TableColumn{"warned", Integer, "", "Those that returned 1", FunctionNumber<&FP::warned>},
    TableColumn{"total", Integer, "us", "Time of those that stand in none of the same kind and name",
                FunctionNumber<&FP::total>},
    TableColumn{"self", Integer, "us", "Time of all without the frames directly below",
                FunctionNumber<&FP::self>},
    TableColumn{"shortest", Integer, "us", "Time of the shortest", FunctionNumber<&FP::shortest>},
    TableColumn{"longest", Integer, "us", "Time of the longest", FunctionNumber<&FP::longest>},
    TableColumn{"p50", Integer, "us", "Half of them took at most this", FunctionNumber<&FP::p50>},
    TableColumn{"p95", Integer, "us", "95 of a hundred took at most this", FunctionNumber<&FP::p95>},
};
std::uint32_t FunctionRows(const Source& source) {
    return static_cast<std::uint32_t>(source.Scope().profile.m_functions.size());
}

// --- shapes

const ShapeProfile& ShapeOfRow(const Source& source, std::uint32_t row) { return source.Scope().shapes[row]; }
Cell KeyOfShape(const Source& source, std::uint32_t row, std::string& scratch) {
    return ShapeKeyCell(source, ShapeOfRow(source, row).shape, scratch);
}
Cell ShapeTextCell(const Source& source, std::uint32_t row, std::string&) {
    return source.Explored().shapes.Text(ShapeOfRow(source, row).shape);
}
Cell ShapeOperation(const Source& source, std::uint32_t row, std::string&) {
    return TextCell(ShapeOfRow(source, row).operation);
}
Cell ShapeTable(const Source& source, std::uint32_t row, std::string& scratch) {
    return NameOrNone(source, ShapeOfRow(source, row).table, scratch);
}
template <auto member> Cell ShapeNumber(const Source& source, std::uint32_t row, std::string&) {
    return std::int64_t{ShapeOfRow(source, row).*member};
}
template <auto member> Cell ShapeRecord(const Source& source, std::uint32_t row, std::string&) {
    return std::int64_t{Number(ShapeOfRow(source, row).*member)};
}
Cell CallerKind(const Source& source, std::uint32_t row, std::string&) {
    return KindOfKey(source, ShapeOfRow(source, row).topCaller);
}
Cell CallerName(const Source& source, std::uint32_t row, std::string& scratch) {
    return NameOfKey(source, ShapeOfRow(source, row).topCaller, scratch);
}
Cell CallerKey(const Source& source, std::uint32_t row, std::string& scratch) {
    return FunctionKeyCell(source, ShapeOfRow(source, row).topCaller, scratch);
}
using SP = ShapeProfile;

constexpr std::array kShapeColumns{
    kLog,
    kHost,
    TableColumn{"shape_key", Text, "", "Key of the shape, the same in every log", KeyOfShape},
    TableColumn{"shape", Text, "", "The statement with ? for each value", ShapeTextCell},
    TableColumn{"operation", Text, "", "First word of its first execution", ShapeOperation},
    TableColumn{"table_name", Text, "", "Table of its first execution, with its owner", ShapeTable},
    TableColumn{"day", Text, "", "Day on which the log begins, as in records", FirstDayCell},
    TableColumn{"count", Integer, "", "Executions", ShapeNumber<&SP::count>},
    TableColumn{"total", Integer, "us", "Time of all", ShapeNumber<&SP::total>},
    TableColumn{"longest", Integer, "us", "Time of the longest", ShapeNumber<&SP::longest>},
    TableColumn{"p95", Integer, "us", "95 of a hundred took at most this", ShapeNumber<&SP::p95>},
    TableColumn{"first_record", Integer, "", "Record of the first execution", ShapeRecord<&SP::firstRecord>},
    TableColumn{"longest_record", Integer, "", "Record of the longest one", ShapeRecord<&SP::longestRecord>},
    TableColumn{"top_caller_key", Text, "", "Key of what ran it most often, as in functions; none at the top",
                CallerKey},
    TableColumn{"top_caller_kind", Text, "", "Its kind", CallerKind},
    TableColumn{"top_caller_name", Text, "", "Its name", CallerName},
};
std::uint32_t ShapeRows(const Source& source) {
    return static_cast<std::uint32_t>(source.Scope().shapes.size());
}

// --- findings

const Finding& FindingOf(const Source& source, std::uint32_t row) { return source.Findings()[row]; }
RecordIndex RecordOfFinding(const Source& source, std::uint32_t row) {
    const std::vector<RecordIndex>& records = FindingOf(source, row).records;
    return records.empty() ? kNoRecord : records.front();
}
using FI = OfRecord<RecordOfFinding>;

Cell FindingRuleName(const Source& source, std::uint32_t row, std::string&) {
    return NameOf(FindingOf(source, row).rule);
}
Cell FindingSeverity(const Source& source, std::uint32_t row, std::string&) {
    return NameOf(SeverityOf(FindingOf(source, row).rule));
}
Cell FindingSubject(const Source& source, std::uint32_t row, std::string& scratch) {
    return source.ShownName(FindingOf(source, row).subject, scratch);
}
Cell FindingCount(const Source& source, std::uint32_t row, std::string&) {
    return static_cast<std::int64_t>(FindingOf(source, row).count);
}
Cell FindingCost(const Source& source, std::uint32_t row, std::string&) {
    return FindingOf(source, row).cost;
}
Cell FindingRecords(const Source& source, std::uint32_t row, std::string& scratch) {
    scratch.clear();
    for (const RecordIndex record : FindingOf(source, row).records) {
        scratch.append(scratch.empty() ? "" : " ").append(std::to_string(Number(record)));
    }
    return std::string_view(scratch);
}
Cell FindingMeaning(const Source& source, std::uint32_t row, std::string&) {
    return MeaningOf(FindingOf(source, row).rule);
}

constexpr std::array kFindingColumns{
    kLog,
    kHost,
    TableColumn{"finding", Integer, "", "Number of the finding in its log, from 0 on, the worst first",
                RowNumber},
    TableColumn{"rule", Text, "", "What was found: repeated-statement, first-cause, ...", FindingRuleName},
    TableColumn{"severity", Text, "", "error, warning or note", FindingSeverity},
    TableColumn{"subject", Text, "", "What it is about: a function, a statement's shape, a cache, ...",
                FindingSubject},
    TableColumn{"count", Integer, "", "How often", FindingCount},
    TableColumn{"cost", Integer, "us", "How long it took, where it took time", FindingCost},
    TableColumn{"record", Integer, "", "First of its records", FI::RecordNumber},
    TableColumn{"records", Text, "", "Its records, a hundred at most, with a blank between each two",
                FindingRecords},
    TableColumn{"day", Text, "", "Day of the first record, as in records", FI::Day},
    TableColumn{"time", Integer, "us", "Time of the first record since midnight, as in records", FI::Time},
    TableColumn{"text", Text, "", "One sentence that says what it means", FindingMeaning},
};
std::uint32_t FindingRows(const Source& source) {
    return static_cast<std::uint32_t>(source.Findings().size());
}

// --- gaps

RecordIndex RecordOfGap(const Source& source, std::uint32_t row) { return source.Session().m_listGaps[row]; }
using G = OfRecord<RecordOfGap>;

constexpr std::array kGapColumns{
    kLog,
    kHost,
    TableColumn{"record", Integer, "", "Record behind the silence", G::RecordNumber},
    TableColumn{"line", Integer, "", "Its line, as in records", G::Line},
    TableColumn{"clock", Integer, "us", "Its clock, as in records", G::Clock},
    TableColumn{"day", Text, "", "Its day, as in records", G::Day},
    TableColumn{"time", Integer, "us", "Its time since midnight, as in records", G::Time},
    TableColumn{"process", Integer, "", "Its process, as in records", G::Process},
    TableColumn{"thread", Integer, "", "Its thread, as in records", G::Thread},
    TableColumn{"stream", Text, "", "What it runs in, as in records", G::Stream},
    TableColumn{"user", Text, "", "Its user, as in records", G::User},
    TableColumn{"gap", Real, "s", "How long the silence was", G::Gap},
    TableColumn{"text", Text, "", "Its text, as in records", G::Text},
};
std::uint32_t GapRows(const Source& source) {
    return static_cast<std::uint32_t>(source.Session().m_listGaps.size());
}

// --- errors

RecordIndex RecordOfError(const Source& source, std::uint32_t row) { return source.Errors()[row]; }
using E = OfRecord<RecordOfError>;

Cell ErrorTypeCell(const Source& source, std::uint32_t row, std::string&) {
    const RecordIndex record = RecordOfError(source, row);
    return ErrorType(source.Records().Kind(record), source.Records().ReturnCode(record));
}

constexpr std::array kErrorColumns{
    kLog,
    kHost,
    TableColumn{"record", Integer, "", "Record that tells of the error", E::RecordNumber},
    TableColumn{"line", Integer, "", "Its line, as in records", E::Line},
    TableColumn{"clock", Integer, "us", "Its clock, as in records", E::Clock},
    TableColumn{"day", Text, "", "Its day, as in records", E::Day},
    TableColumn{"time", Integer, "us", "Its time since midnight, as in records", E::Time},
    TableColumn{"process", Integer, "", "Its process, as in records", E::Process},
    TableColumn{"thread", Integer, "", "Its thread, as in records", E::Thread},
    TableColumn{"stream", Text, "", "What it runs in, as in records", E::Stream},
    TableColumn{"user", Text, "", "Its user, as in records", E::User},
    TableColumn{"kind", Text, "", "What the record is, as in records", E::Kind},
    TableColumn{"type", Text, "",
                "As the pane Errors/Warnings names it: BSFN Error, BSFN Warning, GBR Error or ERROR",
                ErrorTypeCell},
    TableColumn{"return_code", Integer, "", "Return code of a return, else 0", E::ReturnCode},
    TableColumn{"text", Text, "", "Its text, as in records", E::Text},
};
std::uint32_t ErrorRows(const Source& source) { return static_cast<std::uint32_t>(source.Errors().size()); }

constexpr std::array<Table, 7> kTables{{
    {"records", "Every line of the log that is a record, in the log's order.", kRecordColumns, RecordRows},
    {"frames", "Every call of a function, event, statement and object, below the one that it stands in.",
     kFrameColumns, FrameRows},
    {"functions", "The frames of each kind and name together, by total time.", kFunctionColumns,
     FunctionRows},
    {"shapes", "The statements that are alike but for their values together, by total time.", kShapeColumns,
     ShapeRows},
    {"findings", "What asks for a look, the worst first.", kFindingColumns, FindingRows},
    {"gaps", "The silences of the log, in its order.", kGapColumns, GapRows},
    {"errors", "What failed or warned, in the log's order.", kErrorColumns, ErrorRows},
}};

} // namespace

Cell SecondsCell(float seconds) {
    if (seconds == 0) {
        return {};
    }
    std::array<char, 64> digits{};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), seconds).ptr;
    double value = 0;
    std::from_chars(digits.data(), end, value);
    return value;
}

Cell TextCell(std::string_view text) { return text.empty() ? Cell() : Cell(text); }

Cell ShapeKeyCell(const CTableSource& source, std::uint32_t shape, std::string& scratch) {
    return shape == kNoShape ? Cell() : KeyCell(StableNumber(source.Explored().shapes.Text(shape)), scratch);
}

Cell FunctionKeyCell(const CTableSource& source, std::uint32_t key, std::string& scratch) {
    if (key == kNoKey) {
        return {};
    }
    const std::uint64_t ofKind = StableNumber(NameOf(KeysOf(source).Kind(key)));
    const std::string_view name = source.ShownName(KeysOf(source).Name(key), scratch);
    return KeyCell(StableNumber(name, StableNumber(" ", ofKind)), scratch);
}

std::string_view NameOf(ColumnType type) {
    constexpr std::array<std::string_view, 3> names{"text", "integer", "real"};
    return names[static_cast<std::size_t>(type)];
}

std::span<const Table> Tables() { return kTables; }

const Table* FindTable(std::string_view name) {
    const auto found = std::find_if(kTables.begin(), kTables.end(),
                                    [name](const Table& table) { return table.name == name; });
    return found == kTables.end() ? nullptr : &*found;
}

std::string TableNames() {
    std::string names;
    for (std::size_t i = 0; i < kTables.size(); ++i) {
        names.append(i == 0 ? "" : i + 1 < kTables.size() ? ", " : " or ").append(kTables[i].name);
    }
    return names;
}

std::string_view ValidText(std::string_view text, std::string& scratch) {
    return platform::IsValidUtf8(text) ? text : scratch = WithReplacements(text);
}

} // namespace carvelot
