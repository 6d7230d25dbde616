// A log in either format, explored: its frames, what a part of it adds up to, compares with and exports. The
// first bytes choose the settings, the part and its range, the rest is the log.
#include "explore/Comparison.h"
#include "explore/ExploredSession.h"
#include "explore/ExportFormats.h"
#include "explore/Findings.h"
#include "report/ExploreJson.h"
#include "support/FuzzSession.h"

#include <rapidjson/document.h>

#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <set>
#include <sstream>
#include <tuple>
#include <utility>

using namespace carvelot;
using fuzz::Require;

namespace {

constexpr std::size_t kLead = 4;

using Selfs = decltype(std::declval<const CCut&>().SelfTimes());

// Frames of a key, or of an edge.
struct Sum {
    std::uint64_t calls = 0;
    std::int64_t total = 0;

    void Add(std::uint64_t moreCalls, std::int64_t moreTotal) {
        calls += moreCalls;
        total += moreTotal;
    }
    bool operator==(const Sum&) const = default;
};
using Sums = std::map<std::uint32_t, Sum>;

std::uint64_t CountLines(std::string_view log) {
    std::uint64_t lines = 0;
    for (std::size_t i = 0; i < log.size(); ++i) {
        const bool isFirstOfPair = log[i] == '\r' && i + 1 < log.size() && log[i + 1] == '\n';
        lines += (log[i] == '\n' || log[i] == '\r') && !isFirstOfPair ? 1U : 0U;
    }
    return lines;
}

void CheckLines(const CCarvelotDoc& doc, std::string_view log) {
    Require(doc.m_nLines == CountLines(log), "lines are counted as an editor does");
    Require(doc.m_listLineNumbers.Size() == doc.m_listDetails.Size(), "each record has a line");
    std::uint32_t before = 1;
    for (std::uint32_t i = 0; i < doc.m_listLineNumbers.Size(); ++i) {
        const std::uint32_t line = doc.m_listLineNumbers[i];
        Require(line >= before && line <= doc.m_nLines + 1, "lines of records rise");
        before = line;
    }
    // What ends a line, and what cuts a long one.
    const std::uint64_t pieces =
        doc.m_nLines + 1 + static_cast<std::uint64_t>(log.size() / CLogReader::kLongestLine);
    Require(doc.m_listDetails.Size() + doc.Refused().Count() <= pieces,
            "a line becomes a record, or is refused, once");
}

void CheckClock(const ExploredSession& explored, bool inPieces) {
    const auto records = static_cast<std::uint32_t>(explored.session.m_listDetails.Size());
    std::int64_t largest = 0;
    std::int64_t before = 0;
    for (std::uint32_t i = 0; i < records; ++i) {
        const std::int64_t clock = explored.clock[RecordIndex{i}];
        // Ten minutes back are lines out of order; more is a clock that was set.
        Require(inPieces || clock >= before - 600'000'000, "the clock goes back by ten minutes at most");
        largest = i == 0 ? clock : std::max(largest, clock);
        before = clock;
    }
    Require(explored.clock.Length() == largest, "the length is the largest clock");
    if (const std::optional<RecordIndex> first = explored.clock.FirstRecord()) {
        Require(Number(*first) < records && explored.clock[*first] == 0, "time begins with its first record");
    }
}

void CheckFrames(const ExploredSession& explored) {
    const CFrames& frames = explored.frames;
    const CStreams& streams = explored.streams;
    const auto records = static_cast<std::uint32_t>(explored.session.m_listDetails.Size());
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        const Frame& frame = frames[i];
        Require(Number(frame.record) < records, "a frame names a record");
        Require(i == 0 || Number(frames[i - 1].record) < Number(frame.record), "a record opens one frame");
        Require(frame.start <= frame.end, "no frame ends ahead of its start");
        Require(frame.start >= explored.clock[frame.record], "a stream's time is no clock behind");
        const FrameKind kind = frames.Keys().Kind(frame.key);
        Require((frame.result == kNoResult) == !(kind == FrameKind::Function && frame.closed),
                "functions that returned have results, nothing else has");
        Require((explored.shapes.Of(i) != kNoShape) == (kind == FrameKind::Statement),
                "statements have shapes, nothing else has");
        bool isWithin = false;
        for (std::uint32_t up = frame.parent; up != kNoFrame && !isWithin; up = frames[up].parent) {
            isWithin = frames[up].key == frame.key;
        }
        Require(frame.withinItsKey == isWithin, "a frame tells that it stands in one of its key");
        if (frame.parent == kNoFrame) {
            continue;
        }
        Require(frame.parent < i, "a frame's parent comes ahead of it");
        const Frame& parent = frames[frame.parent];
        Require(streams.Of(parent.record) == streams.Of(frame.record), "a frame is of its parent's stream");
        Require(parent.start <= frame.start && frame.end <= parent.end, "a frame lies within its parent");
        const FrameKind above = frames.Keys().Kind(parent.key);
        Require(above == FrameKind::Function || above == FrameKind::Event,
                "frames stand in functions and events");
    }
}

void CheckFunctions(const ExploredSession& explored, const CCut& cut, const Selfs& selfs,
                    const CProfile& profile) {
    const auto& functions = profile.m_functions;
    const CFrames& frames = explored.frames;
    struct Expected {
        FunctionProfile numbers;
        std::vector<std::int64_t> totals;
    };
    std::map<std::uint32_t, Expected> expected;
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        if (cut.Holds(i)) {
            Expected& one = expected[frames[i].key];
            ++one.numbers.calls;
            one.numbers.unclosed += frames[i].closed ? 0U : 1U;
            one.numbers.failed += frames[i].IsFailed() ? 1U : 0U;
            one.numbers.warned += frames[i].IsWarned() ? 1U : 0U;
            one.numbers.total += frames[i].withinItsKey ? 0 : cut.Total(i);
            one.numbers.self += selfs[i];
            one.totals.push_back(cut.Total(i));
        }
    }
    Require(expected.size() == functions.size(), "each key has one row");
    for (std::size_t i = 0; i < functions.size(); ++i) {
        const FunctionProfile& row = functions[i];
        Require(expected.count(row.key) == 1, "a row is of a key that frames have");
        Expected& one = expected[row.key];
        std::sort(one.totals.begin(), one.totals.end());
        const auto percentile = [&](std::size_t n) {
            return one.totals[(n * one.totals.size() + 99) / 100 - 1];
        };
        Require(row.calls == one.numbers.calls && row.unclosed == one.numbers.unclosed &&
                    row.failed == one.numbers.failed && row.warned == one.numbers.warned,
                "calls add up to frames");
        Require(row.total == one.numbers.total && row.self == one.numbers.self, "times add up to frames'");
        Require(row.shortest == one.totals.front() && row.longest == one.totals.back() &&
                    row.p50 == percentile(50) && row.p95 == percentile(95),
                "percentiles are those of the frames");
        Require(row.shortest <= row.p50 && row.p50 <= row.p95 && row.p95 <= row.longest,
                "percentiles lie between the shortest and the longest");
        Require(
            i == 0 || functions[i - 1].total > row.total ||
                (functions[i - 1].total == row.total && frames.Keys().Less(functions[i - 1].key, row.key)),
            "functions are sorted");
    }
}

void CheckEdges(const ExploredSession& explored, const CCut& cut, const CProfile& profile) {
    const auto& edges = profile.m_edges;
    const CFrames& frames = explored.frames;
    std::map<std::pair<std::uint32_t, std::uint32_t>, Sum> expected;
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        if (cut.Holds(i)) {
            const std::uint32_t caller = frames[i].parent == kNoFrame ? kNoKey : frames[frames[i].parent].key;
            expected[{caller, frames[i].key}].Add(1, cut.Total(i));
        }
    }
    std::map<std::pair<std::uint32_t, std::uint32_t>, Sum> told;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        told[{edges[i].caller, edges[i].callee}].Add(edges[i].calls, edges[i].total);
        Require(i == 0 || edges[i - 1].total >= edges[i].total, "edges are sorted");
    }
    Require(told.size() == edges.size(), "an edge is told once");
    Require(told == expected, "edges add up to frames");
}

void CheckTree(const ExploredSession& explored, const CCut& cut, const Selfs& selfs,
               const CProfile& profile) {
    const auto& tree = profile.m_tree;
    const CFrames& frames = explored.frames;
    Sums expected;
    std::int64_t roots = 0;
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        if (cut.Holds(i)) {
            expected[frames[i].key].Add(1, selfs[i]);
            roots += frames[i].parent == kNoFrame ? cut.Total(i) : 0;
        }
    }
    Sums told;
    std::int64_t toldRoots = 0;
    std::vector<std::int64_t> below(tree.size(), 0);
    for (std::uint32_t i = 0; i < tree.size(); ++i) {
        told[tree[i].key].Add(tree[i].calls, tree[i].self);
        Require(tree[i].parent == CallTreeNode::kNone || tree[i].parent < i,
                "a node's parent comes ahead of it");
        (tree[i].parent == CallTreeNode::kNone ? toldRoots : below[tree[i].parent]) += tree[i].total;
    }
    Require(told == expected, "the tree adds up to frames");
    Require(roots == toldRoots, "the tree's roots add up to those of the frames");
    // The children of a node, or the nodes at the top.
    const auto checkSiblings = [&](std::uint32_t first, std::uint32_t parent, std::int64_t total) {
        std::set<std::uint32_t> keys;
        for (std::uint32_t node = first; node != CallTreeNode::kNone; node = tree[node].nextSibling) {
            Require(tree[node].parent == parent, "a child names its parent");
            Require(keys.insert(tree[node].key).second, "siblings are of different keys");
            Require(tree[node].nextSibling == CallTreeNode::kNone || tree[node].nextSibling > node,
                    "siblings stand as they first appeared");
            total -= tree[node].total;
        }
        Require(total == 0, "all siblings are listed");
    };
    checkSiblings(tree.empty() ? CallTreeNode::kNone : 0, CallTreeNode::kNone, roots);
    for (std::uint32_t i = 0; i < tree.size(); ++i) {
        Require(tree[i].self >= 0 && tree[i].total == tree[i].self + below[i],
                "a node's total is its own and its children's");
        checkSiblings(tree[i].firstChild, i, below[i]);
    }
}

void CheckShapes(const ExploredSession& explored, const CCut& cut, const std::vector<ShapeProfile>& shapes) {
    Sums expected;
    for (std::uint32_t i = 0; i < explored.frames.Count(); ++i) {
        if (cut.Holds(i) && explored.shapes.Of(i) != kNoShape) {
            expected[explored.shapes.Of(i)].Add(1, cut.Total(i));
        }
    }
    Sums told;
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        const ShapeProfile& shape = shapes[i];
        told[shape.shape].Add(shape.count, shape.total);
        Require(shape.p95 <= shape.longest && shape.longest <= shape.total, "the longest is one of all");
        Require(Number(shape.firstRecord) <= Number(shape.longestRecord), "the first comes first");
        Require(explored.shapes.Text(shape.shape).starts_with(shape.operation),
                "a shape begins with its operation");
        Require(i == 0 || std::tuple(-shapes[i - 1].total, -std::int64_t{shapes[i - 1].count},
                                     explored.shapes.Text(shapes[i - 1].shape)) <
                              std::tuple(-shape.total, -std::int64_t{shape.count},
                                         explored.shapes.Text(shape.shape)),
                "shapes are sorted");
    }
    Require(told == expected, "shapes add up to statements");
}

// Which frames stay, by the rule alone.
void CheckCut(const ExploredSession& explored, const CCut& cut, const Selection& scope,
              const ClockRange& range) {
    const CFrames& frames = explored.frames;
    std::vector<bool> stays(frames.Count(), false);
    for (std::uint32_t i = frames.Count(); i-- > 0;) {
        const Frame& frame = frames[i];
        const bool reaches =
            range.from < range.to && frame.start < range.to &&
            (frame.end > range.from || (frame.start == frame.end && frame.start >= range.from));
        stays[i] = stays[i] || (reaches && explored.streams.IsIn(explored.streams.Of(frame.record), scope));
        if (stays[i] && frame.parent != kNoFrame) {
            stays[frame.parent] = true;
        }
        Require(cut.Holds(i) == stays[i], "what reaches into a range stays, and what it stands in");
    }
}

void CheckScope(const ExploredSession& explored, const Selection& selection, const ClockRange& range) {
    const ExploredScope scope(explored, selection, range);
    CheckCut(explored, scope.cut, selection, range);
    const Selfs selfs = scope.cut.SelfTimes();
    std::int64_t roots = 0;
    std::int64_t all = 0;
    for (std::uint32_t i = 0; i < explored.frames.Count(); ++i) {
        Require(selfs[i] >= 0, "no frame's own time is negative");
        all += selfs[i];
        if (scope.cut.Holds(i)) {
            Require(scope.cut.Total(i) >= 0 && scope.cut.Total(i) <= explored.frames[i].Total(),
                    "a cut frame is no longer than it was");
            roots += explored.frames[i].parent == kNoFrame ? scope.cut.Total(i) : 0;
        }
    }
    Require(all == roots, "own times add up to the streams' roots");
    CheckFunctions(explored, scope.cut, selfs, scope.profile);
    CheckEdges(explored, scope.cut, scope.profile);
    CheckTree(explored, scope.cut, selfs, scope.profile);
    CheckShapes(explored, scope.cut, scope.shapes);
}

// Sums of own times; what a log is cut into adds up to the log again.
std::int64_t OwnTime(const ExploredSession& explored, const Selection& scope, const ClockRange& range) {
    const Selfs selfs = CCut(explored.frames, explored.streams, scope, range).SelfTimes();
    return std::accumulate(selfs.begin(), selfs.end(), std::int64_t{0});
}

std::vector<Selection> Streams(const CCarvelotDoc& doc) {
    std::vector<Selection> streams;
    for (const auto& user : doc.m_listUsers) {
        streams.emplace_back(*user);
    }
    for (const auto& process : doc.m_listProcesses) {
        for (const auto& thread : process->m_listThreads) {
            if (doc.m_nLogFormat == LOG_FORMAT_DEBUG) {
                streams.emplace_back(*thread);
            }
        }
    }
    return streams;
}

void CheckParts(const ExploredSession& explored, const Selection& scope, std::int64_t middle) {
    const std::int64_t whole = OwnTime(explored, scope, {});
    Require(OwnTime(explored, scope, {ClockRange::kOpenFrom, middle}) +
                    OwnTime(explored, scope, {middle, ClockRange::kOpenTo}) ==
                whole,
            "two ranges add up to the whole");
    Require(OwnTime(explored, scope, {middle, middle}) == 0, "an empty range holds nothing");
    std::int64_t streams = 0;
    for (const Selection& stream : Streams(explored.session)) {
        streams += OwnTime(explored, stream, {});
    }
    Require(streams == OwnTime(explored, {}, {}), "the streams add up to the log");
}

// Executions that repeat, counted the long way.
Sum RepeatedStatements(const ExploredSession& explored) {
    constexpr std::uint64_t many = 10;
    constexpr std::int64_t pause = 1'000'000;
    const CFrames& frames = explored.frames;
    using Executions = std::vector<std::uint32_t>;
    std::vector<std::map<std::uint32_t, Executions>> below(frames.Count());
    std::vector<std::map<std::uint32_t, Executions>> shares(frames.Count());
    Sum sum;
    std::set<std::uint32_t> counted;
    for (std::uint32_t i = frames.Count(); i-- > 0;) {
        if (const std::uint32_t shape = explored.shapes.Of(i); shape != kNoShape) {
            below[i][shape] = {i};
        }
        const bool isStatement = frames.Keys().Kind(frames[i].key) == FrameKind::Statement;
        for (const auto& [shape, share] : shares[i]) {
            if (share.size() >= many) {
                for (const std::uint32_t execution : share) {
                    sum.Add(1, frames[execution].Total());
                    counted.insert(execution);
                }
            }
        }
        if (frames[i].parent != kNoFrame) {
            for (const auto& [shape, executions] : below[i]) {
                const auto append = [&more = executions](Executions& to) {
                    to.insert(to.end(), more.begin(), more.end());
                };
                append(below[frames[i].parent][shape]);
                if (isStatement || executions.size() < many) {
                    append(shares[frames[i].parent][shape]);
                }
            }
        }
    }
    std::map<std::pair<std::uint32_t, std::uint32_t>, Executions> runs; // by stream and shape
    const auto endRun = [&](Executions& run) {
        for (const std::uint32_t execution : run) {
            sum.Add(run.size() >= many ? 1 : 0, run.size() >= many ? frames[execution].Total() : 0);
        }
        run.clear();
    };
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        if (explored.shapes.Of(i) != kNoShape && counted.count(i) == 0) {
            Executions& run = runs[{explored.streams.Of(frames[i].record), explored.shapes.Of(i)}];
            if (!run.empty() && frames[i].start - frames[run.back()].end > pause) {
                endRun(run);
            }
            run.push_back(i);
        }
    }
    for (auto& run : runs) {
        endRun(run.second);
    }
    return sum;
}

void CheckFindings(const ExploredSession& explored, const std::vector<Finding>& findings) {
    const CFrames& frames = explored.frames;
    std::array<std::uint64_t, 9> counts{};
    std::int64_t repeated = 0;
    for (const Finding& finding : findings) {
        counts[static_cast<std::size_t>(finding.rule)] += finding.count;
        repeated += finding.rule == FindingRule::RepeatedStatement ? finding.cost : 0;
        Require(finding.count > 0 && finding.cost >= 0, "a finding found something");
        Require(finding.records.size() <= Finding::kMostRecords, "a finding names a hundred records at most");
        Require(!MeaningOf(finding.rule).empty(), "a finding has a meaning");
        for (const RecordIndex record : finding.records) {
            Require(Number(record) < explored.session.m_listDetails.Size(), "a finding names records");
        }
    }
    const auto order = [](const Finding& finding) {
        return std::tuple(SeverityOf(finding.rule), -finding.cost, -static_cast<std::int64_t>(finding.count),
                          std::string_view(finding.subject), NameOf(finding.rule), finding.records);
    };
    Require(
        std::is_sorted(findings.begin(), findings.end(),
                       [&](const Finding& one, const Finding& other) { return order(one) < order(other); }),
        "findings are sorted");
    std::uint64_t open = 0;
    std::uint64_t causes = 0;
    std::vector<bool> failed;
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        const Frame& frame = frames[i];
        const FrameKind kind = frames.Keys().Kind(frame.key);
        const bool isBelowFailed = frame.parent != kNoFrame && failed[frame.parent];
        open += kind == FrameKind::Function && !frame.closed ? 1U : 0U;
        causes += frame.IsFailed() && !isBelowFailed ? 1U : 0U;
        failed.push_back(frame.IsFailed() || isBelowFailed);
    }
    const auto count = [&](FindingRule rule) { return counts[static_cast<std::size_t>(rule)]; };
    Require(count(FindingRule::CallWithoutReturn) == open, "each open call is found");
    Require(count(FindingRule::OrphanReturn) == frames.OrphanReturns().size(), "each orphan is found");
    Require(count(FindingRule::FirstCause) == causes, "each failure has its cause");
    Require(RepeatedStatements(explored) == Sum{count(FindingRule::RepeatedStatement), repeated},
            "each statement that repeats is found");
    Require(count(FindingRule::UnreadLines) == explored.session.Refused().Count(),
            "each unread line is found");
}

// Each number of a comparison.
template <class Take> void ForEachNumber(const Comparison& comparison, Take take) {
    for (const ComparedFunction& one : comparison.functions) {
        const std::string name = std::string(NameOf(one.kind)).append(" ").append(one.name);
        int number = 0;
        for (const ComparedNumber& compared : {one.calls, one.unclosed, one.failed, one.warned, one.total,
                                               one.self, one.shortest, one.longest, one.p50, one.p95}) {
            take(name + " " + std::to_string(number++), compared);
        }
    }
    for (const ComparedShape& one : comparison.shapes) {
        int number = 0;
        for (const ComparedNumber& compared : {one.count, one.total, one.longest, one.p95}) {
            take("shape " + std::string(one.text) + " " + std::to_string(number++), compared);
        }
    }
    for (const ComparedFinding& one : comparison.findings) {
        const std::string name = std::string(NameOf(one.rule)).append(" ").append(one.subject);
        take(name + " count", one.count);
        take(name + " cost", one.cost);
    }
}

void CheckComparison(const ExploredSession& explored, const ExploredScope& whole, const ExploredScope& part,
                     const std::vector<Finding>& findings) {
    const std::vector<Finding> none;
    const ComparedSide base{explored, whole, findings};
    const ComparedSide log{explored, part, none};
    ForEachNumber(Comparison(base, base), [](const std::string&, const ComparedNumber& number) {
        Require(number.base == number.log, "a log differs in nothing from itself");
    });
    std::map<std::string, std::int64_t> differences;
    const Comparison forth(base, log);
    ForEachNumber(forth, [&](const std::string& name, const ComparedNumber& number) {
        Require(number.base >= 0 && number.log >= 0, "no compared number is negative");
        Require(differences.emplace(name, number.Difference()).second, "what is compared stands there once");
    });
    ForEachNumber(Comparison(log, base), [&](const std::string& name, const ComparedNumber& number) {
        const auto found = differences.find(name);
        Require(found != differences.end() && found->second == -number.Difference(),
                "to swap the sides turns each difference round");
        differences.erase(found);
    });
    Require(differences.empty(), "to swap the sides leaves nothing out");
    for (std::size_t i = 1; i < forth.functions.size(); ++i) {
        Require(std::abs(forth.functions[i - 1].total.Difference()) >=
                    std::abs(forth.functions[i].total.Difference()),
                "the largest difference comes first");
    }
}

template <class Write> std::string Exported(const ExportedProfile& profile, Write write) {
    std::ostringstream out;
    write(profile, out);
    return out.str();
}

// The number behind a line's last blank.
std::int64_t LastNumber(const std::string& line) { return std::stoll(line.substr(line.rfind(' ') + 1)); }

// Events of a profile open and close in turn, and time does not fall.
void CheckSpeedscope(const std::string& text, std::size_t frames) {
    rapidjson::Document json;
    json.Parse<rapidjson::kParseValidateEncodingFlag>(text.c_str());
    Require(!json.HasParseError(), "speedscope's file is JSON");
    std::size_t opened = 0;
    for (const auto& profile : json["profiles"].GetArray()) {
        std::vector<std::int64_t> open;
        std::int64_t now = profile["startValue"].GetInt64();
        for (const auto& event : profile["events"].GetArray()) {
            Require(event["at"].GetInt64() >= now, "the events of a profile are in order");
            now = event["at"].GetInt64();
            if (event["type"] == "O") {
                ++opened;
                open.push_back(event["frame"].GetInt64());
            } else {
                Require(!open.empty() && open.back() == event["frame"].GetInt64(), "the last to open closes");
                open.pop_back();
            }
        }
        Require(open.empty() && now <= profile["endValue"].GetInt64(), "all that opens closes");
    }
    Require(opened == frames, "each frame is in speedscope's file");
}

void CheckExports(const ExploredSession& explored, const CCut& cut) {
    const ExportedProfile profile{explored.session, explored.streams, cut,
                                  &explored.session.m_listLineNumbers};
    const Selfs selfs = cut.SelfTimes();
    const std::int64_t all = std::accumulate(selfs.begin(), selfs.end(), std::int64_t{0});
    std::size_t frames = 0;
    for (std::uint32_t i = 0; i < explored.frames.Count(); ++i) {
        frames += cut.Holds(i) ? 1U : 0U;
    }

    std::istringstream folded(Exported(profile, WriteFolded));
    std::int64_t sum = 0;
    for (std::string line; std::getline(folded, line);) {
        sum += LastNumber(line);
    }
    Require(sum == all, "the folded lines add up");

    std::istringstream callgrind(Exported(profile, WriteCallgrind));
    sum = 0;
    bool isCall = false;
    for (std::string line; std::getline(callgrind, line); isCall = line.starts_with("calls=")) {
        if (line.starts_with("totals: ")) {
            Require(LastNumber(line) == all, "callgrind's totals are the log's");
        } else if (line.starts_with("0 ") && !isCall) {
            sum += LastNumber(line);
        }
    }
    Require(sum == all, "callgrind's own costs add up");

    CheckSpeedscope(Exported(profile, WriteSpeedscope), frames);
    rapidjson::Document trace;
    trace.Parse<rapidjson::kParseValidateEncodingFlag>(Exported(profile, WriteTrace).c_str());
    Require(!trace.HasParseError(), "the trace is JSON");
    std::size_t events = 0;
    for (const auto& event : trace["traceEvents"].GetArray()) {
        if (event["ph"] == "X") {
            ++events;
            const RecordIndex record{event["args"]["record"].GetUint()};
            Require(event["args"]["line"].GetUint() == explored.session.m_listLineNumbers[Number(record)],
                    "an event names its record's line");
        }
    }
    Require(events == frames, "each frame is in the trace");
}

void RequireJson(const ExploredSession& explored, const ExploredScope& scope,
                 const std::vector<Finding>& findings) {
    std::ostringstream out;
    WriteExploredJson(explored, scope, findings, "log", out);
    fuzz::RequireJson(out.str());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < kLead) {
        return 0;
    }
    const std::string_view log = fuzz::AsText(data, size).substr(kLead);
    fuzz::CFuzzSession::Options options;
    options.settings.m_fThreshold = (data[0] & 1) != 0 ? 0.0F : 1.0F;
    options.settings.m_bCacheAnalysis = (data[0] & 2) == 0;
    options.processFilter = (data[0] & 4) != 0 ? 4120 : 0;
    options.numberLines = true;
    const bool inPieces = (data[0] & 8) != 0;
    static fuzz::CFuzzSession session;
    session.m_doc.m_listPieces.clear();
    session.Load(log, options);
    if (!session.m_bLoaded) {
        return 0;
    }
    const CCarvelotDoc& doc = session.m_doc;
    const auto records = static_cast<std::uint32_t>(doc.m_listDetails.Size());
    if (inPieces) {
        session.m_doc.m_listPieces = {{"first", false, 0}, {"second", false, records * data[1] / 255}};
    }
    const ExploredSession explored(doc, options.settings);

    CheckLines(doc, log);
    CheckClock(explored, inPieces);
    CheckFrames(explored);
    const std::vector<Finding> findings = FindAll(explored);
    CheckFindings(explored, findings);

    // A part of the log between where frames start and end, or any clock; 255 leaves the range open.
    const std::vector<Selection> streams = Streams(doc);
    const Selection scope =
        data[1] % 4 == 0 || streams.empty() ? Selection() : streams[data[1] / 4U % streams.size()];
    const auto clockOf = [&](std::uint8_t part) {
        if (explored.frames.Count() == 0 || part % 4 == 0) {
            return explored.clock.Length() * (part - 64) / 128;
        }
        const Frame& frame = explored.frames[part / 4U % explored.frames.Count()];
        return (part % 4 == 1 ? frame.start : frame.end) + (part % 4 == 3 ? 1 : 0);
    };
    ClockRange range;
    range.from = data[2] == 255 ? range.from : clockOf(data[2]);
    range.to = data[3] == 255 ? range.to : clockOf(data[3]);
    CheckScope(explored, {}, {});
    CheckScope(explored, scope, range);
    CheckParts(explored, scope, clockOf(data[2]));
    const ExploredScope part(explored, scope, range);
    CheckComparison(explored, ExploredScope(explored, {}, {}), part, findings);
    CheckExports(explored, part.cut);
    RequireJson(explored, part, findings);
    return 0;
}
