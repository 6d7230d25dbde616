// Lines that begin as earlier ones did take a short way, and words are looked for where the scan of a block
// says that they may stand; a thread that reads ahead prepares such lines. With all that switched off the
// same bytes must give the same session.
#include "report/JsonReport.h"
#include "sources/MemorySource.h"
#include "support/SameSessions.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

namespace carvelot::test {

namespace {

struct Reading {
    Reading(std::string_view log, bool plain, const BlockReading& blocks, std::uint32_t filter,
            CDialects dialects) {
        m_doc.m_bPlainParse = plain;
        m_doc.m_blockReading = blocks;
        m_doc.m_dialects = dialects;
        m_doc.m_nProcessFilter = filter;
        m_doc.m_bNumberLines = true;
        CMemorySource source(log);
        m_bLoaded = m_doc.LoadFrom(source);
    }

    std::string Json() const {
        std::ostringstream out;
        WriteSessionJson(m_doc, "log", out);
        return out.str();
    }
    std::string Refused() const {
        std::string text;
        for (const RefusedLine& line : m_doc.Refused().first) {
            text += std::to_string(line.number) + ' ' + line.text + '\n';
        }
        return text + std::to_string(m_doc.Refused().Count());
    }

    AnalysisSettings m_settings;
    PendingStatement m_pending;
    RecordingHost m_host;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
    bool m_bLoaded;
};

void ExpectSameBothWays(const std::string& log, std::uint32_t filter, CDialects dialects = {}) {
    const Reading plain(log, true, {}, filter, dialects);
    // In blocks of some lines each, so that what the first ones teach prepares the others.
    const BlockReading prepared{
        .way = BlockReading::Way::Here, .bytes = log.size() / 6 + 1, .prepareAlways = true};
    for (const BlockReading& blocks : {BlockReading{}, prepared}) {
        const Reading usual(log, false, blocks, filter, dialects);
        SCOPED_TRACE((blocks.prepareAlways ? "prepared, of process " : "of process ") +
                     std::to_string(filter) + " in\n" + log);
        ASSERT_EQ(usual.m_bLoaded, plain.m_bLoaded);
        ASSERT_EQ(DifferenceOf(usual.m_doc, plain.m_doc), "");
        ASSERT_EQ(usual.Json(), plain.Json());
        ASSERT_EQ(usual.Refused(), plain.Refused());
        ASSERT_EQ(usual.m_doc.Notes().m_helpful, plain.m_doc.Notes().m_helpful);
        ASSERT_EQ(usual.m_pending.statement, plain.m_pending.statement);
        ASSERT_EQ(usual.m_pending.parameters, plain.m_pending.parameters);
    }
}

// How lines begin and go on, and the line that tells the format.
struct Form {
    std::string lead;
    std::vector<std::string> beginnings;
    std::vector<std::string> texts;
};

const std::vector<std::string> kDebugTexts = {
    "Calling Business function A from Level 1 (BSFNLevel = 1)",
    "Return value is 2 for A. (BSFNLevel = 1)",
    " SELECT A FROM T ",
    "IN->[  1] mnA [5] ",
    "RT: >>>Beginning ER:\tOK\tForm:W1\t",
    "RT: <<<Finished  ER:\tOK\t",
    "  hCache:[1A] Nm:[9X]",
    "Exiting DBPerformRequest",
    "x JDB3100001 y",
    "On x",
    " - y",
    "\tz",
    "",
    "   ",
    "a\tb\tc",
};

// Lines with a month, a clock and one of two markers; every process number is of two digits.
Form DebugForm(const std::string& behind) {
    Form form;
    for (const char* stamp :
         {"Jan 15 08:00:00.000001 - ", "Feb 15 08:00:00.000002 - ", "Jan 15 08:00:01.5 - ",
          "Jan  5 09:00:00.000001 - ", "Jan 15 08:00:00.000003 ** "}) {
        for (const char* ids : {"12/34 Worker", "12/35 Worker", "77/1 WRK:Starting jdeCallObject"}) {
            form.beginnings.push_back(std::string(stamp) + ids + behind);
        }
    }
    form.lead = form.beginnings[0] + "Entering JDB_OpenTable\n";
    form.texts = kDebugTexts;
    return form;
}

Form ColumnForm() {
    Form form = DebugForm("");
    for (std::string& beginning : form.beginnings) {
        beginning.resize(60, ' ');
    }
    form.lead = form.beginnings[0] + "Entering JDB_OpenTable\n";
    return form;
}

Form UBEForm(Form form) {
    form.lead += "--UBE--[2] Started\n";
    form.beginnings.insert(form.beginnings.end(),
                           {"--UBE--[2] ", "--UBE--[3] 3 10:00:00 ", "Calling 3 10:00:00 --UBE--"});
    form.texts.insert(form.texts.end(), {"--UBE--", "x--UBE--[2]", "-UBE--"});
    return form;
}

Form JASForm() {
    Form form;
    for (const char* stamp :
         {"15 Jan 2024 08:00:00,001 ", "5 Feb 2024 08:00:00,002 ", "15 Jan 2024 08:00:01,5 "}) {
        for (const char* rest : {"[APP   ] SMITH - [JDBJ]   ", "[APP   ] - [BASE] ",
                                 "[WARN  ] SMITH - [JDBJ] ", "[DEBUG ] A B - [RUNTIME]\t"}) {
            form.beginnings.push_back(std::string(stamp) + rest);
        }
    }
    for (int i = 0; i < 6; ++i) {
        form.lead += form.beginnings[0] + "started\n";
    }
    form.texts = {"SELECT A FROM T WHERE B = ? AND C = ?",
                  "SELECT A FROM T",
                  "Param1: 1_Types.DECIMAL,",
                  "Param2: \xC3\x9C_Types.VARCHAR,",
                  "Object Called: F4211.F",
                  "P0, Event Starts :x",
                  "P0, Event Ends:x",
                  "x at ER Line 5",
                  "Calling server component X",
                  "Calling Business function A x",
                  "Return value is 1 for A. x",
                  "  hCache:[1A]",
                  "",
                  "  "};
    return form;
}

// Logs of a form, each line at most a few small steps from it.
class CNearMisses {
public:
    explicit CNearMisses(Form form) : m_form(std::move(form)) {}

    std::string Next() {
        std::string log = m_form.lead;
        for (std::size_t lines = 5 + Below(40); lines > 0; --lines) {
            std::string line = Any(m_form.beginnings) + Any(m_form.texts);
            for (std::size_t steps = Below(4); steps > 1; --steps) {
                Step(line);
            }
            log.append(line).append(Below(8) == 0 ? "\r\n" : "\n");
        }
        return log;
    }

private:
    std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(m_random() % bound); }
    const std::string& Any(const std::vector<std::string>& list) { return list[Below(list.size())]; }

    void Step(std::string& line) {
        static const std::vector<std::string> pieces = {
            " ", "\t", "-", "*", "/",   ".",        ",",    ":",
            "[", "]",  "7", "x", " - ", "\xC3\xA9", "\xE9", std::string(1, '\0')};
        const std::size_t at = Below(std::min<std::size_t>(line.size() + 1, 80));
        switch (Below(4)) {
        case 0:
            line.insert(at, Any(pieces));
            break;
        case 1:
            line.erase(at, 1 + Below(2));
            break;
        case 2:
            line.replace(at, 1, Any(pieces));
            break;
        default:
            line.insert(at, line.substr(at, 1));
            break;
        }
    }

    Form m_form;
    std::mt19937 m_random{1};
};

void ExpectSameOfNearMisses(const Form& form, CDialects dialects = {}) {
    CNearMisses logs(form);
    for (int i = 0; i < 100; ++i) {
        const std::string log = logs.Next();
        for (const std::uint32_t filter : {0U, 12U}) {
            ExpectSameBothWays(log, filter, dialects);
            if (testing::Test::HasFatalFailure()) {
                return;
            }
        }
    }
}

} // namespace

TEST(PlainParse, ReadsLinesWithATabAsTheShortWayDoes) { ExpectSameOfNearMisses(DebugForm("\t")); }

TEST(PlainParse, ReadsLinesWithSeveralTabsAsTheShortWayDoes) {
    // Beginnings with fewer tabs than the first line teaches, and with more.
    Form form = DebugForm("\tx\ty\t");
    for (const char* behind : {"\t", "\tx\t", "\tx\ty\tz\t", " "}) {
        const Form other = DebugForm(behind);
        form.beginnings.insert(form.beginnings.end(), other.beginnings.begin(), other.beginnings.end());
    }
    ExpectSameOfNearMisses(form);
}

TEST(PlainParse, ReadsLinesWithAFixedColumnAsTheShortWayDoes) { ExpectSameOfNearMisses(ColumnForm()); }

TEST(PlainParse, ReadsLinesWhoseDashFixesTheColumnAsTheShortWayDoes) {
    Form form = DebugForm("\t");
    form.lead += form.beginnings[0] + "On x\n" + form.beginnings[0] + " - On y\n";
    ExpectSameOfNearMisses(form);
}

TEST(PlainParse, ReadsLinesOfAUBEAsTheShortWayDoes) {
    ExpectSameOfNearMisses(UBEForm(DebugForm("\t")));
    ExpectSameOfNearMisses(UBEForm(ColumnForm()));
}

TEST(PlainParse, ReadsJASLinesAsTheShortWayDoes) { ExpectSameOfNearMisses(JASForm()); }

TEST(PlainParse, ReadsEachDialectAsTheShortWayDoes) {
    Form debug = DebugForm("\t");
    Form jas = JASForm();
    for (const char* month :
         {"M\xC3\xA4r", "M\xE4rz", "janv.", "jan", "Sept", "12\xE6\x9C\x88", "JanF", "out"}) {
        debug.beginnings.push_back(std::string(month) + " 15 08:00:00.000001 - 12/34 Worker\t");
        for (const char* source : {"[JDBJ]   ", "[123][JDBJ] ", "[123] "}) {
            jas.beginnings.push_back("15 " + std::string(month) + " 2024 08:00:00,001 [APP   ] SMITH - " +
                                     source);
        }
    }
    for (const char* source :
         {"[123]", "[123][JDBJ] ", "[123] [JDBJ] ", "[123][JDBJ", "[77][BASE]", "[1][2][BASE] "}) {
        jas.beginnings.push_back("15 Jan 2024 08:00:00,001 [APP   ] SMITH - " + std::string(source));
    }
    for (const CDialects dialects : {CDialects{}, CDialects{Dialect::Months}, CDialects{Dialect::Numbered},
                                     CDialects{Dialect::Months, Dialect::Numbered}}) {
        ExpectSameOfNearMisses(debug, dialects);
        ExpectSameOfNearMisses(jas, dialects);
    }
}

TEST(PlainParse, ReadsTheSamplesAsTheShortWayDoes) {
    for (const char* name : {"order-entry", "order-fails", "old-style", "ube-batch", "night-batch",
                             "cache-trace", "jas-web", "jas-slow", "utf-8", "windows-1252", "jas-languages",
                             "jas-german", "french-order", "jas-numbered"}) {
        std::ifstream file(std::string(CARVELOT_SOURCE_FOLDER) + "/samples/" + name + ".log",
                           std::ios::binary);
        const std::string log{std::istreambuf_iterator<char>(file), {}};
        for (const std::uint32_t filter : {0U, 4576U}) {
            ExpectSameBothWays(log, filter);
            ExpectSameBothWays(log, filter, {Dialect::Months, Dialect::Numbered});
        }
    }
}

} // namespace carvelot::test
