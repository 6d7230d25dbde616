#include "sqlite/StoredLog.h"

#include "lists/PaneRows.h"
#include "text/TextColumns.h"

#include <array>
#include <bit>
#include <cstring>

namespace carvelot {

namespace {

constexpr std::uint32_t kNoRow = 0xFFFFFFFF;
constexpr std::size_t kBlocks = 4;
constexpr std::size_t kRecordsOfBlock = 4096;
// Texts that come again do so soon, mostly.
constexpr std::size_t kKnownTexts = std::size_t{1} << 16U;
// A shorter text takes no more room than the number of a record.
constexpr std::size_t kLeastSharedText = 5;

// Eight bytes at a time, as a log's texts are long.
std::uint64_t HashOn(std::uint64_t hash, std::uint64_t value) {
    return std::rotl((hash ^ value) * 0x9E3779B97F4A7C15U, 29);
}
std::uint64_t HashOn(std::uint64_t hash, std::string_view text) {
    hash = HashOn(hash, std::uint64_t{text.size()});
    for (; text.size() >= 8; text.remove_prefix(8)) {
        hash = HashOn(hash, Load64(text.data()));
    }
    std::uint64_t rest = 0;
    for (const char c : text) {
        rest = rest << 8U | static_cast<unsigned char>(c);
    }
    return HashOn(hash, rest);
}

} // namespace

CStoredLog::CStoredLog(const CTableSource& source, std::int64_t id)
    : m_source(source), m_nId(id), m_nRecords(static_cast<std::uint32_t>(source.Records().Size())),
      m_tableOfShape(source.Explored().shapes.Count(), kNoRow), m_knownTexts(kKnownTexts), m_ring(kBlocks),
      m_ahead(
          m_ring, [this](Block& block, const Block*, const CReadAhead<Block>&) { return FillBlock(block); },
          m_nRecords > kRecordsOfBlock) {}

const CStoredLog::StoredRecord& CStoredLog::RecordAt(std::uint32_t row) const {
    while (row >= m_nBlockEnd) {
        m_pBlock = m_ahead.Next();
        m_nBlockBegin = m_nBlockEnd;
        m_nBlockEnd += static_cast<std::uint32_t>(m_pBlock->size());
    }
    return (*m_pBlock)[row - m_nBlockBegin];
}

bool CStoredLog::FillBlock(Block& block) {
    block.clear();
    block.reserve(kRecordsOfBlock);
    while (m_nNextRecord < m_nRecords && block.size() < kRecordsOfBlock) {
        block.push_back(TakeRecord(RecordIndex{m_nNextRecord++}));
    }
    return !block.empty();
}

CStoredLog::StoredRecord CStoredLog::TakeRecord(RecordIndex record) {
    const CDetailList& records = m_source.Records();
    Origin where{record, records.MayHaveOwnLabel(record) ? LabelGoesOn(record) : 0, false, false, false};
    TakeFrame(record, where);
    const auto flag = [](bool is, unsigned place) { return std::uint64_t{is ? 1U : 0U} << place; };
    const std::uint64_t shared =
        (std::uint64_t{records.ContextNumber(record)} << 16U) | (std::uint64_t{records.Kind(record)} << 9U) |
        (static_cast<std::uint64_t>(records.ReturnCode(record)) << 5U) | flag(where.nameOfFrame, 4) |
        flag(where.tableOfShape, 3) | flag(where.durationOfFrame, 2) |
        static_cast<std::uint64_t>(where.labelGoesOn);
    const auto [origin, isNew] =
        m_originNumbers.FindOrAdd(shared, static_cast<std::uint32_t>(m_origins.size()));
    if (isNew) {
        m_origins.push_back(where);
    }
    if ((records.TableNumber(record) != 0 && !where.nameOfFrame && !where.tableOfShape) ||
        (records.Duration(record) != 0 && !where.durationOfFrame) || records.Gap(record) != 0 ||
        records.IsUBE(record) || where.labelGoesOn == 2) {
        m_details.push_back({record, origin});
    }
    if (const std::optional<std::uint32_t> line = m_source.Line(record)) {
        const std::uint32_t ahead = *line - Number(record);
        if (m_lineSteps.empty() || m_lineSteps.back().ahead != ahead) {
            m_lineSteps.push_back({record, ahead});
        }
    }

    const std::optional<std::int64_t> day = m_source.DayNumber(record);
    const std::uint64_t time = records.Time(record);
    const std::int64_t clock = m_source.Explored().clock[record];
    const std::int64_t midnight = day ? clock - static_cast<std::int64_t>(time) : 0;
    if (m_daySteps.empty() || m_daySteps.back().day != day || m_daySteps.back().midnight != midnight) {
        m_daySteps.push_back({record, day, midnight});
    }

    const std::string_view text = records.Text(record);
    const std::uint64_t hash = HashOn(0, text);
    m_nHash = HashOn(HashOn(m_nHash, time), hash);
    const std::optional<std::string_view> shown = m_source.ShownText(record);
    return {clock, origin, shown ? SameTextAs(record, *shown, hash) : kNoRecord, shown};
}

void CStoredLog::TakeFrame(RecordIndex record, Origin& where) {
    const CDetailList& records = m_source.Records();
    const ExploredSession& explored = m_source.Explored();
    if (m_nNextFrame == explored.frames.Count() || explored.frames[m_nNextFrame].record != record) {
        return;
    }
    const Frame& frame = explored.frames[m_nNextFrame];
    const std::uint32_t shape = explored.shapes.Of(m_nNextFrame);
    const std::string_view name = records.DisplayName(record);
    where.nameOfFrame = !name.empty() && name == explored.frames.Keys().Name(frame.key);
    if (shape != kNoShape) {
        // The table of a shape is that of its first execution.
        std::uint32_t& table = m_tableOfShape[shape];
        table = table == kNoRow ? records.TableNumber(record) : table;
        where.tableOfShape = table == records.TableNumber(record);
    }
    const Cell duration = SecondsCell(records.Duration(record));
    const auto* const seconds = std::get_if<double>(&duration);
    where.durationOfFrame =
        seconds != nullptr && *seconds == static_cast<double>(frame.Total()) / 1'000'000.0;
    ++m_nNextFrame;
}

RecordIndex CStoredLog::SameTextAs(RecordIndex record, std::string_view text, std::uint64_t hash) {
    if (text.size() < kLeastSharedText) {
        return kNoRecord;
    }
    KnownText& known = m_knownTexts[hash & (kKnownTexts - 1)];
    const auto tag = static_cast<std::uint32_t>(hash >> 32U);
    if (known.record != kNoRecord && known.hash == tag && m_source.ShownText(known.record) == text) {
        return known.record;
    }
    known = {tag, record};
    return kNoRecord;
}

std::string_view CStoredLog::OwnLabel(RecordIndex record) const {
    return m_source.Options().shapesOnly ? std::string_view()
                                         : TrimRight(m_source.Records()[record].m_strThreadLabel.own, " ");
}

std::int64_t CStoredLog::LabelGoesOn(RecordIndex record) const {
    const std::string_view own = OwnLabel(record);
    const std::string_view text = m_source.Records().Text(record);
    return own.empty() ? 0 : own == TrimRight(text.substr(0, text.find('\t')), " ") ? 1 : 2;
}

void CStoredLog::TakeProfile() {
    const std::vector<FunctionProfile>& functions = m_source.Scope().profile.m_functions;
    m_functionOf.assign(m_source.Explored().frames.Keys().Count(), kNoRow);
    for (std::uint32_t row = 0; row < functions.size(); ++row) {
        m_functionOf[functions[row].key] = row;
    }
    const std::vector<ShapeProfile>& shapes = m_source.Scope().shapes;
    m_shapeOf.assign(m_source.Explored().shapes.Count(), kNoRow);
    for (std::uint32_t row = 0; row < shapes.size(); ++row) {
        m_shapeOf[shapes[row].shape] = row;
    }
    const std::vector<Finding>& findings = m_source.Findings();
    for (std::uint32_t finding = 0; finding < findings.size(); ++finding) {
        for (std::uint32_t position = 0; position < findings[finding].records.size(); ++position) {
            m_findingRecords.push_back({finding, position});
        }
    }
}

namespace {

using Log = CStoredLog;

template <class List> std::uint32_t CountOf(const List& list) {
    return static_cast<std::uint32_t>(list.size());
}
Cell Int(std::int64_t number) { return number; }
Cell Int(RecordIndex record) { return std::int64_t{Number(record)}; }
Cell Shown(const Log& log, std::string_view name, std::string& scratch) {
    return TextCell(log.Source().ShownName(name, scratch));
}
CLogDetail DetailOf(const Log& log, RecordIndex record) { return log.Source().Records()[record]; }

// --- log_stream

Cell StreamName(const Log& log, std::uint32_t row, std::string& scratch) {
    return log.Source().StreamName(row, scratch);
}
constexpr std::array<StoredColumn, 2> kStream{{RowItself("stream"), {"name", StreamName}}};
std::uint32_t StreamRows(const Log& log) { return log.Source().Explored().streams.Count(); }

// --- log_origin

RecordIndex OriginRecord(const Log& log, std::uint32_t row) { return log.Origins()[row].record; }
Cell OriginKind(const Log& log, std::uint32_t row, std::string&) {
    return KindName(log.Source().Records().Kind(OriginRecord(log, row)));
}
Cell OriginProcess(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.Source().Records().Context(OriginRecord(log, row)).processID};
}
Cell OriginThread(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.Source().Records().Context(OriginRecord(log, row)).threadID};
}
Cell OriginStream(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.Source().Explored().streams.Of(OriginRecord(log, row))};
}
Cell OriginUser(const Log& log, std::uint32_t row, std::string&) {
    return TextCell(DetailOf(log, OriginRecord(log, row)).m_strUser);
}
Cell OriginLevel(const Log& log, std::uint32_t row, std::string& scratch) {
    return Shown(log, DetailOf(log, OriginRecord(log, row)).m_strLevel, scratch);
}
Cell OriginSource(const Log& log, std::uint32_t row, std::string& scratch) {
    return Shown(log, DetailOf(log, OriginRecord(log, row)).m_strSource, scratch);
}
Cell OriginLabel(const Log& log, std::uint32_t row, std::string&) {
    const bool isShown = !log.Source().Options().shapesOnly;
    return isShown ? TextCell(DetailOf(log, OriginRecord(log, row)).m_strThreadLabel.shared) : Cell();
}
Cell OriginLabelGoesOn(const Log& log, std::uint32_t row, std::string&) {
    return log.Origins()[row].labelGoesOn;
}
Cell OriginReturnCode(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.Source().Records().ReturnCode(OriginRecord(log, row))};
}
Cell OriginNameOfFrame(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.Origins()[row].nameOfFrame ? 1 : 0};
}
Cell OriginTableOfShape(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.Origins()[row].tableOfShape ? 1 : 0};
}
Cell OriginDurationOfFrame(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.Origins()[row].durationOfFrame ? 1 : 0};
}
constexpr std::array<StoredColumn, 14> kOrigin{{RowItself("origin"),
                                                {"kind", OriginKind},
                                                {"process", OriginProcess},
                                                {"thread", OriginThread},
                                                {"stream", OriginStream},
                                                {"user", OriginUser},
                                                {"level", OriginLevel},
                                                {"source", OriginSource},
                                                {"label", OriginLabel},
                                                {"label_goes_on", OriginLabelGoesOn},
                                                {"return_code", OriginReturnCode},
                                                {"name_of_frame", OriginNameOfFrame},
                                                {"table_of_shape", OriginTableOfShape},
                                                {"duration_of_frame", OriginDurationOfFrame}}};
std::uint32_t OriginRows(const Log& log) { return CountOf(log.Origins()); }

// --- log_record

Cell RecordClock(const Log& log, std::uint32_t row, std::string&) { return log.RecordAt(row).clock; }
Cell RecordOrigin(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.RecordAt(row).origin};
}
Cell RecordText(const Log& log, std::uint32_t row, std::string&) {
    const CStoredLog::StoredRecord& record = log.RecordAt(row);
    return record.sameText != kNoRecord ? Int(record.sameText) : record.text ? Cell(*record.text) : Cell();
}
constexpr std::array<StoredColumn, 4> kRecord{
    {RowItself("record"), {"clock", RecordClock}, {"origin", RecordOrigin}, {"text", RecordText}}};

// --- log_detail

RecordIndex DetailRecord(const Log& log, std::uint32_t row) { return log.Details()[row].record; }
const CStoredLog::Origin& DetailOrigin(const Log& log, std::uint32_t row) {
    return log.Origins()[log.Details()[row].origin];
}
Cell DetailNumber(const Log& log, std::uint32_t row, std::string&) { return Int(DetailRecord(log, row)); }
Cell DetailName(const Log& log, std::uint32_t row, std::string& scratch) {
    if (DetailOrigin(log, row).nameOfFrame) {
        return {};
    }
    return Shown(log, log.Source().Records().DisplayName(DetailRecord(log, row)), scratch);
}
Cell DetailTable(const Log& log, std::uint32_t row, std::string& scratch) {
    const RecordIndex record = DetailRecord(log, row);
    const bool isToldHere =
        log.Source().Records().Kind(record) == LOG_SQL && !DetailOrigin(log, row).tableOfShape;
    return isToldHere ? Shown(log, log.Source().Records().TableName(record), scratch) : Cell();
}
Cell DetailDuration(const Log& log, std::uint32_t row, std::string&) {
    const RecordIndex record = DetailRecord(log, row);
    return DetailOrigin(log, row).durationOfFrame ? Cell()
                                                  : SecondsCell(log.Source().Records().Duration(record));
}
Cell DetailGap(const Log& log, std::uint32_t row, std::string&) {
    return SecondsCell(log.Source().Records().Gap(DetailRecord(log, row)));
}
Cell DetailUBELevel(const Log& log, std::uint32_t row, std::string&) {
    const RecordIndex record = DetailRecord(log, row);
    return log.Source().Records().IsUBE(record) ? Int(log.Source().Records().UBELevel(record)) : Cell();
}
Cell DetailLabel(const Log& log, std::uint32_t row, std::string&) {
    const RecordIndex record = DetailRecord(log, row);
    const bool isItsOwn = DetailOrigin(log, row).labelGoesOn == 2;
    return isItsOwn ? TextCell(log.OwnLabel(record)) : Cell();
}
constexpr std::array<StoredColumn, 7> kDetail{{{"record", DetailNumber},
                                               {"name", DetailName},
                                               {"table_name", DetailTable},
                                               {"duration", DetailDuration},
                                               {"gap", DetailGap},
                                               {"ube_level", DetailUBELevel},
                                               {"label", DetailLabel}}};
std::uint32_t DetailRows(const Log& log) { return CountOf(log.Details()); }

// --- log_line, log_day

Cell LineRecord(const Log& log, std::uint32_t row, std::string&) { return Int(log.LineSteps()[row].record); }
Cell LineAhead(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.LineSteps()[row].ahead};
}
constexpr std::array<StoredColumn, 2> kLine{{{"record", LineRecord}, {"ahead", LineAhead}}};
std::uint32_t LineRows(const Log& log) { return CountOf(log.LineSteps()); }

Cell DayRecord(const Log& log, std::uint32_t row, std::string&) { return Int(log.DaySteps()[row].record); }
Cell DayName(const Log& log, std::uint32_t row, std::string& scratch) {
    const std::optional<std::int64_t> day = log.DaySteps()[row].day;
    return day ? Cell(std::string_view(scratch = log.Source().DayText(*day))) : Cell();
}
Cell DayMidnight(const Log& log, std::uint32_t row, std::string&) {
    const CStoredLog::DayStep& step = log.DaySteps()[row];
    return step.day ? Int(step.midnight) : Cell();
}
constexpr std::array<StoredColumn, 3> kDay{
    {{"record", DayRecord}, {"day", DayName}, {"midnight", DayMidnight}}};
std::uint32_t DayRows(const Log& log) { return CountOf(log.DaySteps()); }

// --- log_function

constexpr std::array<StoredColumn, 14> kFunction{{RowItself("function"),
                                                  {"function_key"},
                                                  {"kind"},
                                                  {"name"},
                                                  {"calls"},
                                                  {"unclosed"},
                                                  {"failed"},
                                                  {"warned"},
                                                  {"total"},
                                                  {"self"},
                                                  {"shortest"},
                                                  {"longest"},
                                                  {"p50"},
                                                  {"p95"}}};

// --- log_shape

Cell ShapeCaller(const Log& log, std::uint32_t row, std::string&) {
    const std::uint32_t caller = log.Source().Scope().shapes[row].topCaller;
    return caller == kNoKey ? Cell() : Cell(std::int64_t{log.FunctionOf(caller)});
}
constexpr std::array<StoredColumn, 12> kShape{{RowItself("shape"),
                                               {"shape_key"},
                                               {"text", nullptr, "shape"},
                                               {"operation"},
                                               {"table_name"},
                                               {"count"},
                                               {"total"},
                                               {"longest"},
                                               {"p95"},
                                               {"first_record"},
                                               {"longest_record"},
                                               {"top_caller", ShapeCaller}}};

// --- log_frame

Cell FrameParent(const Log& log, std::uint32_t row, std::string&) {
    const CFrames& frames = log.Source().Explored().frames;
    const std::uint32_t parent = frames[row].parent;
    return parent == kNoFrame ? Cell() : Int(frames[parent].record);
}
Cell FrameFunction(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.FunctionOf(log.Source().Explored().frames[row].key)};
}
Cell FrameShape(const Log& log, std::uint32_t row, std::string&) {
    const std::uint32_t shape = log.Source().Explored().shapes.Of(row);
    return shape == kNoShape ? Cell() : Cell(std::int64_t{log.ShapeOf(shape)});
}
constexpr std::array<StoredColumn, 10> kFrame{{{"record"},
                                               RowItself("frame"),
                                               {"parent", FrameParent},
                                               {"function", FrameFunction},
                                               {"shape", FrameShape},
                                               {"start_clock"},
                                               {"total"},
                                               {"self"},
                                               {"closed"},
                                               {"result"}}};

// --- log_finding

constexpr std::array<StoredColumn, 7> kFinding{
    {RowItself("finding"), {"rule"}, {"severity"}, {"subject"}, {"count"}, {"cost"}, {"text"}}};

Cell LinkFinding(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.FindingRecords()[row].finding};
}
Cell LinkPosition(const Log& log, std::uint32_t row, std::string&) {
    return std::int64_t{log.FindingRecords()[row].position};
}
Cell LinkRecord(const Log& log, std::uint32_t row, std::string&) {
    const CStoredLog::FindingRecord& link = log.FindingRecords()[row];
    return Int(log.Source().Findings()[link.finding].records[link.position]);
}
constexpr std::array<StoredColumn, 3> kFindingRecord{
    {{"finding", LinkFinding}, {"position", LinkPosition}, {"record", LinkRecord}}};
std::uint32_t FindingRecordRows(const Log& log) { return CountOf(log.FindingRecords()); }

// --- log_gap, log_error

constexpr std::array<StoredColumn, 2> kGap{{RowItself("gap"), {"record"}}};
constexpr std::array<StoredColumn, 3> kError{{RowItself("error"), {"record"}, {"type"}}};

constexpr std::array<StoredTable, 13> kStored{{
    {"log_stream", kStream, StreamRows},
    {"log_record", kRecord, nullptr, "records"},
    {"log_origin", kOrigin, OriginRows},
    {"log_detail", kDetail, DetailRows},
    {"log_line", kLine, LineRows},
    {"log_day", kDay, DayRows},
    {"log_gap", kGap, nullptr, "gaps"},
    {"log_error", kError, nullptr, "errors"},
    {"log_function", kFunction, nullptr, "functions"},
    {"log_shape", kShape, nullptr, "shapes"},
    {"log_frame", kFrame, nullptr, "frames"},
    {"log_finding", kFinding, nullptr, "findings"},
    {"log_finding_record", kFindingRecord, FindingRecordRows},
}};

} // namespace

std::span<const StoredTable> StoredTables() { return kStored; }

} // namespace carvelot
