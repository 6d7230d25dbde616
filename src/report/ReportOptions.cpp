#include "report/ReportOptions.h"

#include "Version.h"
#include "explore/ProfileExport.h"
#include "explore/Scope.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <ostream>

namespace carvelot {

namespace {

constexpr std::string_view kAutoDialects = "auto";

// Decimal seconds, 0 or more, as the 32-bit float that a load compares with.
std::optional<float> ParseSeconds(std::string_view text) {
    float seconds = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds);
    if (error == std::errc::result_out_of_range && stop == end && text.find("e-") == std::string_view::npos &&
        text.starts_with("0.")) {
        return 0.0F;
    }
    if (error != std::errc{} || stop != end || !std::isfinite(seconds) || seconds < 0) {
        return std::nullopt;
    }
    return seconds;
}

// Decimal seconds as microseconds; what stands behind the sixth place is cut off. Beyond what a clock can
// show it is the most or the least that it can.
std::optional<std::int64_t> ParseClock(std::string_view text) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max() / 2;
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const std::size_t point = std::min(text.find('.'), text.size());
    std::string digits(text.substr(0, point));
    if (point < text.size()) {
        digits.append(text.substr(point + 1));
    }
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (digits.empty() || !std::all_of(digits.begin(), digits.end(), isDigit)) {
        return std::nullopt;
    }
    digits.resize(point + 6, '0');
    std::int64_t value = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), value).ec != std::errc{} ||
        value > most) {
        value = most;
    }
    return negative ? -value : value;
}

// A year as people write it.
std::optional<int> ParseYear(std::string_view text) {
    constexpr int first = 1980;
    constexpr int last = 9999;
    int year = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, year);
    return error == std::errc{} && stop == end && year >= first && year <= last ? std::optional(year)
                                                                                : std::nullopt;
}

// A whole number from 1 on; beyond what can be counted it is the most that can.
std::optional<std::size_t> ParseTop(std::string_view text) {
    std::size_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (stop != end || error == std::errc::invalid_argument) {
        return std::nullopt;
    }
    if (error == std::errc::result_out_of_range) {
        return std::numeric_limits<std::size_t>::max();
    }
    return value > 0 ? std::optional(value) : std::nullopt;
}

bool IsGiven(const CLI::Option* option) { return option->count() > 0; }

// Of options at most one may be given. What is wrong, or nothing.
template <class Options> std::string ExcludedOption(const Options& options) {
    const auto first = std::find_if(options.begin(), options.end(), IsGiven);
    const auto second = first == options.end() ? first : std::find_if(first + 1, options.end(), IsGiven);
    return second == options.end() ? "" : (*second)->get_name() + " excludes " + (*first)->get_name();
}

// Each of the options needs one of others. What is wrong, or nothing.
template <class Options, class Needed>
std::string MissingOption(const Options& options, const Needed& needed) {
    const auto lacking = std::find_if(options.begin(), options.end(), IsGiven);
    if (lacking == options.end() || std::any_of(needed.begin(), needed.end(), IsGiven)) {
        return {};
    }
    std::string message = (*lacking)->get_name() + " requires ";
    for (std::size_t i = 0; i < needed.size(); ++i) {
        message.append(i == 0 ? "" : i + 1 < needed.size() ? ", " : " or ").append(needed[i]->get_name());
    }
    return message;
}

} // namespace

std::optional<ReportOptions> ReadReportOptions(const std::vector<std::string>& arguments, std::ostream& out,
                                               std::ostream& err, int& status) {
    ReportOptions options;
    std::string tree;
    std::string find;
    std::string exportFile;
    std::string threshold;
    std::string process;
    ExploreOptions asked;
    std::string base;
    std::string profileFile;
    std::string scope;
    std::string from;
    std::string to;
    std::string top;
    std::vector<std::string> dialects;
    std::string table;
    std::string database;
    std::string format;
    std::string year;
    RowsOptions rows;
    bool explore = false;
    bool noCacheAnalysis = false;

    CLI::App app{"Rebuilds what happened from a JD Edwards debug log or the log of its JAS web tier.",
                 "carvelot-report"};
    app.allow_windows_style_options(false); // a path may begin with a slash on any platform
    app.add_option(
           "LOG", options.logs,
           "The log: a file, plain or packed by gzip, zstd or zip; a pipe, or - for standard input, of "
           "any of these; several files are one log in pieces, in the order of their times")
        ->required()
        ->type_name("");
    CLI::Option* const memberOption =
        app.add_option(
               "--member", options.members,
               "Read this member of a zip archive; of several one after the other, in the order given")
            ->type_name("NAME")
            ->allow_extra_args(false);
    app.add_flag("--json", options.json, "Print the whole session as JSON");
    CLI::Option* const treeOption =
        app.add_option("--tree", tree, "Print the detail tree of process:PID, thread:PID/TID or user:NAME")
            ->type_name("SCOPE");
    CLI::Option* const findOption =
        app.add_option("--find", find, "Print the records whose text holds TEXT, in any case")
            ->type_name("TEXT");
    CLI::Option* const exportOption =
        app.add_option("--export-gaps", exportFile, "Write the timing gaps to FILE, .csv or .txt")
            ->type_name("FILE");
    CLI::Option* const exploreOption =
        app.add_flag("--explore", explore, "Print where the time went, and what asks for a look");
    CLI::Option* const compareOption =
        app.add_option("--compare", base, "Print what differs from another log, BASE")->type_name("BASE");
    CLI::Option* const profileOption =
        app.add_option("--export-profile", profileFile,
                       "Write where the time went to FILE, .folded, .speedscope.json, .trace.json or "
                       ".callgrind")
            ->type_name("FILE");
    CLI::Option* const rowsOption =
        app.add_option("--rows", table,
                       "Print the rows of TABLE: " + TableNames() + "; several files are a log each")
            ->type_name("TABLE");
    CLI::Option* const sqliteOption =
        app.add_option("--sqlite", database,
                       "Write all these tables, with views for questions, to the SQLite database FILE")
            ->type_name("FILE");
    treeOption->excludes(findOption)->excludes(exportOption);
    findOption->excludes(exportOption);
    // Each prints or writes something else than the report.
    const std::array instead{treeOption,    findOption,    exportOption, exploreOption,
                             compareOption, profileOption, rowsOption,   sqliteOption};
    CLI::Option* const scopeOption =
        app.add_option("--scope", scope, "Explore process:PID, thread:PID/TID or user:NAME only")
            ->type_name("SCOPE");
    CLI::Option* const fromOption =
        app.add_option("--from", from, "Explore from here on, in seconds behind the log's first time")
            ->type_name("SECONDS");
    CLI::Option* const toOption = app.add_option("--to", to, "Explore up to here")->type_name("SECONDS");
    CLI::Option* const topOption =
        app.add_option("--top", top, "Rows of each table of what is explored (default 10)")->type_name("N");
    CLI::Option* const formatOption =
        app.add_option("--format", format, "Print rows as csv (which is usual) or ndjson")
            ->type_name("FORMAT");
    CLI::Option* const hostOption =
        app.add_option("--host", rows.tables.host,
                       "The host that the logs are from, for the rows' column host")
            ->type_name("NAME");
    CLI::Option* const yearOption =
        app.add_option("--year", year, "The year of the first record, for the rows' days")->type_name("YEAR");
    CLI::Option* const shapesOption =
        app.add_flag("--shapes-only", rows.tables.shapesOnly,
                     "Leave out of the rows what may hold data: texts and values");
    CLI::Option* const appendOption = app.add_flag(
        "--append", rows.append, "Keep the logs that the database holds; one of them is replaced");
    const std::array ofRows{hostOption, yearOption, shapesOption};
    const std::array asRows{rowsOption, sqliteOption};
    const std::array ofPrinted{formatOption};
    const std::array printed{rowsOption};
    const std::array ofDatabase{appendOption};
    const std::array inDatabase{sqliteOption};
    const std::array partOptions{scopeOption, fromOption, toOption, topOption};
    const std::array exploring{exploreOption, compareOption, profileOption};
    CLI::Option* const thresholdOption =
        app.add_option("--threshold", threshold, "Long tasks and gaps last longer than this (default 1.0)")
            ->type_name("SECONDS");
    CLI::Option* const processOption =
        app.add_option("--process", process, "Keep only the debug records of this process")->type_name("PID");
    app.add_option("--dialect", dialects,
                   "Read the log with the dialect months, numbered or auto (those that read more of it); "
                   "may be repeated")
        ->type_name("NAME")
        ->allow_extra_args(false);
    app.add_flag("--as-given", options.asGiven,
                 "Read the pieces as they are given, with nothing put between");
    app.add_flag("--no-cache-analysis", noCacheAnalysis, "Leave cache records out of the analyses");
    app.set_help_flag("--help", "Print this help");
    app.set_version_flag("--version", std::string("carvelot-report ") + CARVELOT_VERSION,
                         "Print the version");

    status = REPORT_DONE;
    std::string problem;
    try {
        // The library takes its arguments last first.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::CallForHelp&) {
        out << app.help();
        return std::nullopt;
    } catch (const CLI::CallForVersion&) {
        out << app.version() << '\n';
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        problem = error.what();
    }
    if (problem.empty() && *thresholdOption) {
        const std::optional<float> seconds = ParseSeconds(threshold);
        options.settings.m_fThreshold = seconds.value_or(0);
        problem = seconds ? "" : "--threshold takes a number of seconds, 0 or more";
    }
    if (problem.empty() && *processOption) {
        const std::optional<std::uint32_t> id = ParseId(process);
        options.processFilter = id.value_or(0);
        problem = id ? "" : "--process takes a process number";
    }
    for (const std::string& name : dialects) {
        if (const std::optional<Dialect> dialect = DialectOf(name)) {
            options.dialects.Add(*dialect);
        } else if (name == kAutoDialects) {
            options.helpfulDialects = true;
        } else if (problem.empty()) {
            problem = "--dialect takes months, numbered or auto";
        }
    }
    if (problem.empty()) {
        problem = ExcludedOption(instead);
    }
    if (problem.empty() && *memberOption && options.logs.size() > 1) {
        problem = "--member takes one LOG";
    }
    if (problem.empty()) {
        problem = MissingOption(partOptions, exploring);
    }
    if (problem.empty()) {
        problem = MissingOption(ofRows, asRows);
    }
    if (problem.empty()) {
        problem = MissingOption(ofPrinted, printed);
    }
    if (problem.empty()) {
        problem = MissingOption(ofDatabase, inDatabase);
    }
    if (problem.empty() && *rowsOption) {
        rows.table = FindTable(table);
        problem = rows.table != nullptr ? "" : "--rows takes " + TableNames();
    }
    if (problem.empty() && *formatOption) {
        const std::optional<RowFormat> known = RowFormatOf(format);
        rows.format = known.value_or(RowFormat::Csv);
        problem = known ? "" : "--format takes csv or ndjson";
    }
    if (problem.empty() && *yearOption) {
        rows.tables.year = ParseYear(year);
        problem = rows.tables.year ? "" : "--year takes a year, 1980 to 9999";
    }
    if (*compareOption) {
        asked.compareWith = base;
    }
    if (*scopeOption) {
        asked.scope = scope;
    }
    const auto readClock = [&problem](const CLI::Option& option, const std::string& text,
                                      std::int64_t& clock) {
        if (problem.empty() && option) {
            const std::optional<std::int64_t> value = ParseClock(text);
            clock = value.value_or(0);
            problem = value ? "" : option.get_name() + " takes a number of seconds";
        }
    };
    readClock(*fromOption, from, asked.range.from);
    readClock(*toOption, to, asked.range.to);
    if (problem.empty() && *topOption) {
        const std::optional<std::size_t> rows = ParseTop(top);
        asked.top = rows.value_or(0);
        problem = rows ? "" : "--top takes a whole number, 1 or more";
    }
    if (!problem.empty()) {
        err << problem << "\n\n" << app.help();
        status = REPORT_USAGE;
        return std::nullopt;
    }
    if (*profileOption) {
        if (!ProfileFormatOf(profileFile)) {
            err << "The name of a profile's file ends with .folded, .speedscope.json, .trace.json or "
                   ".callgrind\n";
            status = REPORT_FAILED;
            return std::nullopt;
        }
        asked.exportProfile = profileFile;
    }
    if (*treeOption) {
        options.tree = tree;
    }
    if (*findOption) {
        options.find = find;
    }
    if (*exportOption) {
        options.exportGaps = exportFile;
    }
    if (explore || *compareOption || *profileOption) {
        options.explore = asked;
    }
    if (*sqliteOption) {
        rows.database = database;
    }
    if (*rowsOption || *sqliteOption) {
        options.rows = rows;
    }
    options.settings.m_bCacheAnalysis = !noCacheAnalysis;
    return options;
}

} // namespace carvelot
