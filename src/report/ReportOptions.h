// What the command line of carvelot-report asks for.
#pragma once

#include "explore/Cut.h"
#include "parse/Dialects.h"
#include "records/AnalysisSettings.h"
#include "tables/RowWriter.h"
#include "tables/Tables.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace carvelot {

// What is asked about where the time went.
struct ExploreOptions {
    static constexpr std::size_t kUsualTop = 10;

    std::optional<std::string> compareWith; // the path of another log
    std::optional<std::string> scope;       // process:PID, thread:PID/TID or user:NAME
    ClockRange range;
    std::optional<std::string> exportProfile; // a file that other tools read, in place of the report
    std::size_t top = kUsualTop;              // rows of each table of the text
};

// What is asked of a log as rows: printed, or in a database.
struct RowsOptions {
    const Table* table = nullptr; // printed
    RowFormat format = RowFormat::Csv;
    std::optional<std::string> database; // the file that takes all tables, in place of that
    bool append = false;                 // beside the logs that it holds
    TableOptions tables;
};

struct ReportOptions {
    static constexpr std::size_t kUsualWidth = 120;

    std::vector<std::string> logs; // several are the pieces of one, or one each as rows; - is standard input
    std::vector<std::string> members; // of a zip archive, those that are the log
    bool asGiven = false;             // they stand in their order
    bool json = false;
    std::optional<std::string> tree; // a scope
    std::optional<std::string> find;
    std::optional<std::string> exportGaps;
    std::optional<ExploreOptions> explore;
    std::optional<RowsOptions> rows;
    std::uint32_t processFilter = 0;
    CDialects dialects;
    bool helpfulDialects = false; // those, too, that read more of the log
    AnalysisSettings settings;
    std::size_t width = kUsualWidth; // of the lines of a text that has a choice, in characters
};

// Exit statuses of carvelot-report.
enum ReportStatus { REPORT_DONE = 0, REPORT_FAILED = 1, REPORT_USAGE = 2 };

// Reads the arguments (without the program's name). Without a value the command line is dealt with already,
// as by --help or wrong usage: then `status` tells how the program ends.
std::optional<ReportOptions> ReadReportOptions(const std::vector<std::string>& arguments, std::ostream& out,
                                               std::ostream& err, int& status);

} // namespace carvelot
