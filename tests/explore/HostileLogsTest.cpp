// Logs that nobody wrote well: as deep, as many and as long as a log can be. What is explored of them is
// right, on a small stack. The logs of a million lines in hostile_logs.py show that no walk is quadratic.
#include "explore/ExploredSession.h"
#include "explore/Findings.h"
#include "report/ReportRun.h"
#include "sources/MemorySource.h"
#include "support/Sanitizer.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#ifndef _WIN32
#include <pthread.h>
#endif

namespace carvelot::test {

namespace {

constexpr std::uint32_t kMany = 100'000;

// Runs something on a stack that a call for each of a hundred thousand steps would leave far behind.
void OnSmallStack(const std::function<void()>& run) {
#ifdef _WIN32
    run();
#else
    constexpr std::size_t size = kSanitized ? 1024 * 1024 : 256 * 1024;
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, size), 0);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(
                  &thread, &attributes,
                  [](void* task) -> void* {
                      (*static_cast<const std::function<void()>*>(task))();
                      return nullptr;
                  },
                  const_cast<std::function<void()>*>(&run)),
              0);
    EXPECT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
#endif
}

std::string Name(std::uint32_t i) { return "F" + std::to_string(i); }

// A debug log, a line at a time.
class HostileLog {
public:
    // The first line tells the format; it is record 0, of a thread of its own.
    explicit HostileLog(std::string_view month = "Jan") : m_month(month) {
        Add(0, "Entering JDB_OpenTable", "1/1");
    }

    // A line so many microseconds behind ten o'clock.
    void Add(std::uint64_t microseconds, std::string_view text, const char* ids = "4120/3388") {
        const std::uint64_t seconds = microseconds / 1'000'000;
        char beginning[128];
        std::snprintf(beginning, sizeof beginning, "%s 15 %02d:%02d:%02d.%06d - %s Worker\t", m_month.c_str(),
                      static_cast<int>(10 + seconds / 3600), static_cast<int>(seconds / 60 % 60),
                      static_cast<int>(seconds % 60), static_cast<int>(microseconds % 1'000'000), ids);
        m_text.append(beginning).append(text).push_back('\n');
    }
    void Call(std::uint64_t at, const std::string& name, std::uint32_t level) {
        char text[128];
        std::snprintf(text, sizeof text, "Calling Business function %s from Level 1 (BSFNLevel = %u)",
                      name.c_str(), level);
        Add(at, text);
    }
    void Return(std::uint64_t at, const std::string& name, std::uint32_t level, int code = 0) {
        char text[128];
        std::snprintf(text, sizeof text, "Return value is %d for %s. (BSFNLevel = %u)", code, name.c_str(),
                      level);
        Add(at, text);
    }

    const std::string m_month;
    std::string m_text;
};

// All that can be asked of a log.
class Explored {
public:
    explicit Explored(std::string_view log) {
        CMemorySource source(log);
        EXPECT_TRUE(m_doc.LoadFrom(source));
        m_explored = std::make_unique<ExploredSession>(m_doc, m_settings);
        m_scope = std::make_unique<ExploredScope>(*m_explored, Selection(), ClockRange());
        m_findings = FindAll(*m_explored);
    }

    const CFrames& Frames() const { return m_explored->frames; }
    const CProfile& Profile() const { return m_scope->profile; }
    std::string_view NameOfKey(std::uint32_t key) const { return Frames().Keys().Name(key); }
    std::size_t FindingsOf(FindingRule rule) const {
        return static_cast<std::size_t>(
            std::count_if(m_findings.begin(), m_findings.end(),
                          [&](const Finding& finding) { return finding.rule == rule; }));
    }
    std::size_t Depth() const {
        std::vector<std::size_t> depths;
        for (const CallTreeNode& node : Profile().m_tree) {
            depths.push_back(node.parent == CallTreeNode::kNone ? 1 : depths[node.parent] + 1);
        }
        return depths.empty() ? 0 : *std::max_element(depths.begin(), depths.end());
    }

    AnalysisSettings m_settings;
    PendingStatement m_pending;
    RecordingHost m_host;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
    std::unique_ptr<ExploredSession> m_explored;
    std::unique_ptr<ExploredScope> m_scope;
    std::vector<Finding> m_findings;
};

// Calls below one another, a microsecond each, and their returns.
template <class NameOf> std::string NestedCalls(std::uint32_t count, NameOf nameOf) {
    HostileLog log;
    for (std::uint32_t i = 0; i < count; ++i) {
        log.Call(i, nameOf(i), i + 1);
    }
    for (std::uint32_t i = count; i-- > 0;) {
        log.Return(2 * count - i, nameOf(i), i + 1);
    }
    return std::move(log.m_text);
}

// What the report prints.
std::string Told(const std::vector<std::string>& arguments) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(RunReport(arguments, out, err), 0) << err.str();
    return out.str();
}

// Of strings: their search is compiled with the library, and quick in tests too.
std::size_t Occurrences(const std::string& part, const std::string& text) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

} // namespace

TEST(HostileLogs, NestCallsAHundredThousandDeep) {
    const std::string log = NestedCalls(kMany, Name);
    OnSmallStack([&] {
        const Explored explored(log);
        ASSERT_EQ(explored.Frames().Count(), kMany);
        // The first call opens at 0, the deepest returns at kMany + 1, the first one at 2 * kMany.
        for (std::uint32_t i = 0; i < kMany; ++i) {
            const Frame& frame = explored.Frames()[i];
            ASSERT_EQ(frame.parent, i == 0 ? kNoFrame : i - 1);
            ASSERT_EQ(frame.Total(), 2 * (std::int64_t{kMany} - i));
            ASSERT_TRUE(frame.closed);
        }
        ASSERT_EQ(explored.Profile().m_functions.size(), kMany);
        for (std::uint32_t i = 0; i < kMany; ++i) {
            const FunctionProfile& function = explored.Profile().m_functions[i];
            ASSERT_EQ(explored.NameOfKey(function.key), Name(i));
            ASSERT_EQ(function.total, 2 * (std::int64_t{kMany} - i));
            ASSERT_EQ(function.self, 2);
        }
        EXPECT_EQ(explored.Profile().m_edges.size(), kMany);
        EXPECT_EQ(explored.Profile().m_tree.size(), kMany);
        EXPECT_EQ(explored.Depth(), kMany);
        EXPECT_TRUE(explored.m_findings.empty());
    });
}

TEST(HostileLogs, CallOneFunctionWithinItselfAHundredThousandTimes) {
    const std::string log = NestedCalls(kMany, [](std::uint32_t) { return std::string("F"); });
    OnSmallStack([&] {
        const Explored explored(log);
        ASSERT_EQ(explored.Profile().m_functions.size(), 1U);
        const FunctionProfile& function = explored.Profile().m_functions[0];
        EXPECT_EQ(function.calls, kMany);
        EXPECT_EQ(function.total, 2 * std::int64_t{kMany});
        EXPECT_EQ(function.self, 2 * std::int64_t{kMany});
        EXPECT_EQ(function.p50, std::int64_t{kMany});
        // At the top, and within itself.
        ASSERT_EQ(explored.Profile().m_edges.size(), 2U);
        EXPECT_EQ(explored.Profile().m_edges[0].calls, kMany - 1);
        EXPECT_EQ(explored.Profile().m_edges[1].calls, 1U);
        EXPECT_EQ(explored.Depth(), kMany);
    });
}

TEST(HostileLogs, OfDeepCallsAreTold) {
    const TestFile log(NestedCalls(kMany, Name));
    const std::string other = std::string(CARVELOT_SOURCE_FOLDER) + "/samples/order-well.log";
    OnSmallStack([&] {
        const std::string json = Told({"--explore", "--json", log.Path()});
        std::size_t depth = 0;
        std::size_t deepest = 0;
        for (std::size_t at = json.find_first_of("{[]}"); at != std::string::npos;
             at = json.find_first_of("{[]}", at + 1)) {
            json[at] == '{' || json[at] == '[' ? ++depth : --depth;
            deepest = std::max(deepest, depth);
        }
        EXPECT_EQ(depth, 0U);
        // The whole, the tree, and of each node an object and the list of its children.
        EXPECT_EQ(deepest, 2 + 2 * std::size_t{kMany});
        EXPECT_EQ(Occurrences("\"name\":\"" + Name(kMany - 1) +
                                  "\",\"calls\":1,\"total\":2,\"self\":2,\"children\":[]",
                              json),
                  1U);

        EXPECT_EQ(Occurrences("by self time (100,000)", Told({"--explore", log.Path()})), 1U);
        const std::string same = Told({"--compare", log.Path(), "--json", log.Path()});
        EXPECT_EQ(Occurrences("\"in\":\"both\"", same), kMany);
        EXPECT_EQ(Occurrences("\"difference\":", same), 10 * kMany);
        EXPECT_EQ(Occurrences("\"difference\":0}", same), 10 * kMany);
        EXPECT_EQ(Occurrences("\"in\":\"log\"", Told({"--compare", other, "--json", log.Path()})), kMany);
    });
}

TEST(HostileLogs, OfDeepCallsAreExported) {
    const TestFile log(NestedCalls(kMany, Name));
    OnSmallStack([&] {
        const auto exported = [&](const std::string& ending) {
            const TestFile file;
            const std::string path = file.Path() + ending;
            EXPECT_EQ(Told({"--export-profile", path, log.Path()}), "");
            std::ifstream in(path, std::ios::binary);
            std::ostringstream text;
            text << in.rdbuf();
            in.close();
            platform::DeleteFileAt(path);
            return text.str();
        };
        // A path names 500 frames; what is deeper counts for the last one.
        const std::string folded = exported(".folded");
        EXPECT_EQ(Occurrences("\n", folded), 500U);
        EXPECT_EQ(Occurrences(";F498;F499 " + std::to_string(2 * (kMany - 499)) + "\n", folded), 1U);
        const std::string speedscope = exported(".speedscope.json");
        EXPECT_EQ(Occurrences("\"type\":\"O\"", speedscope), kMany);
        EXPECT_EQ(Occurrences("\"type\":\"C\"", speedscope), kMany);
        EXPECT_EQ(Occurrences("\"ph\":\"X\"", exported(".trace.json")), kMany);
        const std::string callgrind = exported(".callgrind");
        EXPECT_EQ(Occurrences("\ncalls=1 ", callgrind), kMany);
        EXPECT_EQ(Occurrences("\ntotals: " + std::to_string(2 * kMany) + "\n", callgrind), 1U);
    });
}

TEST(HostileLogs, LeaveAHundredThousandCallsOpen) {
    HostileLog log;
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Call(i, Name(i), i + 1);
    }
    log.Add(kMany, "Fetched the record");
    OnSmallStack([&] {
        const Explored explored(log.m_text);
        EXPECT_EQ(explored.FindingsOf(FindingRule::CallWithoutReturn), kMany);
        ASSERT_EQ(explored.m_findings.size(), kMany);
        // The costliest first.
        EXPECT_EQ(explored.m_findings.front().subject, "F0");
        EXPECT_EQ(explored.m_findings.front().cost, std::int64_t{kMany});
        EXPECT_EQ(explored.m_findings.back().subject, Name(kMany - 1));
        EXPECT_EQ(explored.m_findings.back().cost, 1);
        EXPECT_EQ(explored.Frames()[0].closed, false);
    });
}

TEST(HostileLogs, LeaveAHundredThousandEventsOpenAndCallBelowThem) {
    HostileLog log;
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Add(0, "RT: >>>Beginning ER:\tE\t");
    }
    // Each call ends the one before it, each end an event that opened right ahead of it.
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Call(i, "F", 1);
        log.Add(i, "RT: >>>Beginning ER:\tE2\t");
        log.Add(i, "RT: <<<Finished  ER:\t");
    }
    OnSmallStack([&] {
        const Explored explored(log.m_text);
        ASSERT_EQ(explored.Frames().Count(), 3 * kMany);
        ASSERT_EQ(explored.Profile().m_functions.size(), 3U);
        const FunctionProfile& event = explored.Profile().m_functions[0];
        EXPECT_EQ(explored.NameOfKey(event.key), "E");
        EXPECT_EQ(event.unclosed, kMany);
        EXPECT_EQ(event.total, kMany - 1);
        EXPECT_EQ(event.self, 0);
        const FunctionProfile& function = explored.Profile().m_functions[1];
        EXPECT_EQ(explored.NameOfKey(function.key), "F");
        EXPECT_EQ(function.unclosed, kMany);
        EXPECT_EQ(function.self, kMany - 1);
        EXPECT_EQ(explored.Profile().m_functions[2].unclosed, 0U);
        EXPECT_EQ(explored.Depth(), kMany + 2);
    });
}

TEST(HostileLogs, EndEventsBelowAHundredThousandCalls) {
    HostileLog log;
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Add(i, "RT: >>>Beginning ER:\tE\t");
        log.Call(i, "F", 0);
    }
    // The topmost event each time, with the call above it.
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Add(kMany + i, "RT: <<<Finished  ER:\t");
    }
    OnSmallStack([&] {
        const Explored explored(log.m_text);
        ASSERT_EQ(explored.Frames().Count(), 2 * kMany);
        for (std::uint32_t i = 0; i < kMany; ++i) {
            const Frame& event = explored.Frames()[2 * i];
            const Frame& call = explored.Frames()[2 * i + 1];
            ASSERT_TRUE(event.closed);
            ASSERT_EQ(event.end, 2 * std::int64_t{kMany} - 1 - i);
            ASSERT_FALSE(call.closed);
            ASSERT_EQ(call.end, event.end);
        }
        ASSERT_EQ(explored.m_findings.size(), 1U);
        EXPECT_EQ(explored.m_findings[0].count, kMany);
    });
}

TEST(HostileLogs, ReturnAHundredThousandTimesWithoutACall) {
    HostileLog log;
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Return(i, Name(i), 1);
        log.Return(i, "F", 1);
    }
    const Explored explored(log.m_text);
    EXPECT_EQ(explored.Frames().Count(), 0U);
    ASSERT_EQ(explored.m_findings.size(), kMany + 1);
    EXPECT_EQ(explored.FindingsOf(FindingRule::OrphanReturn), kMany + 1);
    EXPECT_EQ(explored.m_findings[0].subject, "F");
    EXPECT_EQ(explored.m_findings[0].count, kMany);
    ASSERT_EQ(explored.m_findings[0].records.size(), Finding::kMostRecords);
    EXPECT_EQ(Number(explored.m_findings[0].records.back()), 200U);
    EXPECT_EQ(explored.m_findings[1].subject, "F0");
    EXPECT_EQ(explored.m_findings[1].count, 1U);
}

TEST(HostileLogs, ReturnWhatIsNotOpenAboveAHundredThousandCalls) {
    HostileLog log;
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Call(0, "F", i + 1);
    }
    // Another name, a level that none has.
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Return(1, "G", i + 1);
        log.Return(1, "F", kMany + 1 + i);
    }
    const Explored explored(log.m_text);
    EXPECT_EQ(explored.Frames().Count(), kMany);
    ASSERT_EQ(explored.m_findings.size(), 3U);
    EXPECT_EQ(explored.m_findings[0].rule, FindingRule::CallWithoutReturn);
    EXPECT_EQ(explored.m_findings[0].count, kMany);
    EXPECT_EQ(explored.m_findings[0].cost, kMany);
    EXPECT_EQ(explored.m_findings[1].subject, "F");
    EXPECT_EQ(explored.m_findings[1].count, kMany);
    EXPECT_EQ(explored.m_findings[2].subject, "G");
    EXPECT_EQ(explored.m_findings[2].count, kMany);
}

TEST(HostileLogs, FailAHundredThousandCallsDeep) {
    HostileLog log;
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Call(i, Name(i), i + 1);
    }
    log.Add(kMany, "ERROR: it is here");
    for (std::uint32_t i = kMany; i-- > 0;) {
        log.Return(2 * kMany - i, Name(i), i + 1, 2);
    }
    const Explored explored(log.m_text);
    ASSERT_EQ(explored.m_findings.size(), 1U);
    EXPECT_EQ(explored.m_findings[0].rule, FindingRule::FirstCause);
    EXPECT_EQ(explored.m_findings[0].subject, "F0");
    EXPECT_EQ(explored.m_findings[0].cost, 2 * std::int64_t{kMany});
    EXPECT_EQ(Numbers(explored.m_findings[0].records), (std::vector<std::uint32_t>{kMany + 1, 1}));
}

TEST(HostileLogs, NameAHundredThousandFunctions) {
    HostileLog log;
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Call(2 * i, Name(i), 1);
        log.Return(2 * i + 1, Name(i), 1);
    }
    const Explored explored(log.m_text);
    ASSERT_EQ(explored.Profile().m_functions.size(), kMany);
    EXPECT_TRUE(std::all_of(
        explored.Profile().m_functions.begin(), explored.Profile().m_functions.end(),
        [](const FunctionProfile& function) { return function.calls == 1 && function.total == 1; }));
    // Of equal totals the names decide.
    EXPECT_EQ(explored.NameOfKey(explored.Profile().m_functions[2].key), "F10");
    EXPECT_EQ(explored.NameOfKey(explored.Profile().m_functions[3].key), "F100");
    EXPECT_EQ(explored.Profile().m_edges.size(), kMany);
    EXPECT_EQ(explored.Profile().m_tree.size(), kMany);
    EXPECT_EQ(explored.Depth(), 1U);
}

TEST(HostileLogs, RunAStatementOf8KilobytesAThousandTimes) {
    constexpr std::uint32_t count = 1000;
    constexpr std::size_t length = 8000;
    struct Way {
        std::string begin;
        std::string piece; // again and again
        std::string shape;
    };
    const std::vector<Way> ways{
        {"SELECT A FROM T WHERE B IN (1", ", 2", "SELECT A FROM T WHERE B IN (?, ..."},
        {"SELECT A FROM T WHERE B='", "it''s ", "SELECT A FROM T WHERE B=?"},
        {"SELECT A FROM T WHERE B=", "''", "SELECT A FROM T WHERE B=?"},
        {"SELECT A FROM T WHERE B=", "0", "SELECT A FROM T WHERE B=?"},
        {"SELECT A FROM T WHERE B=1", " ", "SELECT A FROM T WHERE B=?"},
    };
    for (const Way& way : ways) {
        std::string statement = way.begin;
        while (statement.size() < length) {
            statement += way.piece;
        }
        HostileLog log;
        for (std::uint32_t i = 0; i < count; ++i) {
            log.Add(i * 10, statement);
            log.Add(i * 10 + i % 10, "Exiting DBPerformRequest");
        }
        const Explored explored(log.m_text);
        ASSERT_EQ(explored.m_scope->shapes.size(), 1U) << way.piece;
        const ShapeProfile& shape = explored.m_scope->shapes[0];
        EXPECT_EQ(explored.m_explored->shapes.Text(shape.shape), way.shape);
        EXPECT_EQ(shape.count, count);
        EXPECT_EQ(shape.total, 4500);
        EXPECT_EQ(shape.longest, 9);
        EXPECT_EQ(shape.p95, 9);
        EXPECT_EQ(Number(shape.longestRecord), 19U);
        ASSERT_EQ(explored.m_findings.size(), 1U);
        EXPECT_EQ(explored.m_findings[0].subject, "(top) > " + way.shape);
        EXPECT_EQ(explored.m_findings[0].count, count);
        EXPECT_EQ(explored.m_findings[0].cost, 4500);
    }
}

TEST(HostileLogs, RunStatementsOfTheirOwnShapeEachAtEveryDepth) {
    // Each shape ten times, at neighbouring depths: the share of the one of them that all ten stand below.
    HostileLog log;
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Call(i, Name(i), i + 1);
        log.Add(i, "DROP T" + std::to_string(i / 10) + "X");
    }
    OnSmallStack([&] {
        const Explored explored(log.m_text);
        EXPECT_EQ(explored.FindingsOf(FindingRule::RepeatedStatement), kMany / 10);
        EXPECT_EQ(explored.m_scope->shapes.size(), kMany / 10);
        std::size_t whole = 0;
        for (const Finding& finding : explored.m_findings) {
            if (finding.rule == FindingRule::RepeatedStatement) {
                const std::uint32_t number = (Number(finding.records[0]) - 1) / 2;
                whole +=
                    finding.count == 10 && number % 10 == 0 &&
                            finding.subject == Name(number) + " > DROP T" + std::to_string(number / 10) + "X"
                        ? 1U
                        : 0U;
            }
        }
        EXPECT_EQ(whole, kMany / 10);
    });
}

TEST(HostileLogs, SetTheClockBackAgainAndAgain) {
    // Five seconds at twelve, five at eleven, and so on: an hour forward counts, an hour back does not.
    constexpr std::uint64_t hour = 3'600'000'000;
    constexpr std::uint64_t second = 1'000'000;
    constexpr std::uint32_t groups = 20'000;
    HostileLog log;
    for (std::uint32_t group = 0; group < groups; ++group) {
        for (std::uint64_t i = 0; i < 5; ++i) {
            const std::uint64_t at = (group % 2 == 0 ? 2 * hour : hour) + i * second;
            if (i == 0) {
                log.Call(at, "F", 1);
            } else if (i == 4) {
                log.Return(at, "F", 1);
            } else {
                log.Add(at, "Fetched the record");
            }
        }
    }
    const Explored explored(log.m_text);
    ASSERT_EQ(explored.Frames().Count(), groups);
    std::int64_t length = 2 * hour; // from the first line, at ten
    for (std::uint32_t group = 0; group < groups; ++group) {
        if (group != 0) {
            length += group % 2 == 0 ? static_cast<std::int64_t>(hour - 4 * second) : 0;
        }
        ASSERT_EQ(explored.Frames()[group].start, length) << group;
        length += static_cast<std::int64_t>(4 * second);
        ASSERT_EQ(explored.Frames()[group].end, length) << group;
    }
    EXPECT_EQ(explored.m_explored->clock.Length(), length);
}

TEST(HostileLogs, HoldOneOddStampInTwo) {
    // Each second line is an hour off: all of these are strays.
    HostileLog log;
    for (std::uint32_t i = 0; i <= kMany; ++i) {
        log.Add(i + (i % 2 == 0 ? 0U : 3'600'000'000U), "Fetched the record");
    }
    const Explored explored(log.m_text);
    for (std::uint32_t i = 0; i <= kMany; ++i) {
        ASSERT_EQ(explored.m_explored->clock[RecordIndex{i + 1}], i - i % 2);
    }
}

TEST(HostileLogs, BearNoStampAtAll) {
    HostileLog log("Foo");
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Call(i * 1000, Name(i % 10), 1);
    }
    const Explored explored(log.m_text);
    EXPECT_EQ(explored.m_doc.m_listDetails.Size(), kMany + 1);
    EXPECT_FALSE(explored.m_explored->clock.FirstRecord().has_value());
    EXPECT_EQ(explored.m_explored->clock.Length(), 0);
    ASSERT_EQ(explored.Profile().m_functions.size(), 10U);
    EXPECT_EQ(explored.Profile().m_functions[0].calls, kMany / 10);
    EXPECT_EQ(explored.Profile().m_functions[0].total, 0);
    EXPECT_EQ(explored.FindingsOf(FindingRule::CallWithoutReturn), 10U);
    EXPECT_EQ(explored.m_findings.size(), 10U);
}

TEST(HostileLogs, AreOfAThreadEachLine) {
    HostileLog log;
    for (std::uint32_t i = 0; i < kMany; ++i) {
        log.Add(i, "Calling Business function F from Level 1 (BSFNLevel = 1)",
                ("7/" + std::to_string(i + 1)).c_str());
    }
    const Explored explored(log.m_text);
    EXPECT_EQ(explored.m_explored->streams.Count(), kMany + 1);
    EXPECT_EQ(explored.m_explored->streams.Name(kMany), "thread:7/" + std::to_string(kMany));
    ASSERT_EQ(explored.m_findings.size(), 1U);
    EXPECT_EQ(explored.m_findings[0].count, kMany);
    EXPECT_EQ(explored.m_findings[0].cost, 0);
    ASSERT_EQ(explored.Profile().m_tree.size(), 1U);
    EXPECT_EQ(explored.Profile().m_tree[0].calls, kMany);
}

TEST(HostileLogs, AreOfAUserEachLine) {
    constexpr std::uint32_t count = kMany / 5;
    std::string log;
    for (std::uint32_t i = 0; i < count + kJASLead; ++i) {
        log += JASLine("08:00:00,000", "U" + std::to_string(i), "Object Called: A.B") + "\n";
    }
    const Explored explored(log);
    EXPECT_EQ(explored.m_explored->streams.Count(), count + kJASLead);
    EXPECT_EQ(explored.m_explored->streams.Name(count), "user:U" + std::to_string(count));
    EXPECT_EQ(explored.Frames().Count(), count + kJASLead);
    ASSERT_EQ(explored.Profile().m_functions.size(), 1U);
    EXPECT_EQ(explored.Profile().m_functions[0].unclosed, count + kJASLead);
}

} // namespace carvelot::test
