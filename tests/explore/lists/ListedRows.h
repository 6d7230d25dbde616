// A test's log explored, and rows of lists as texts.
#pragma once

#include "explore/ExploredLog.h"
#include "explore/ExploredSession.h"
#include "explore/Findings.h"
#include "platform/CodePage.h"
#include "text/ListSource.h"
#include "text/RowSource.h"

#include <fstream>
#include <numeric>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace carvelot::test {

using Texts = std::vector<std::string>;

inline std::string SampleBytes(const std::string& name) {
    std::ifstream file(CARVELOT_SOURCE_FOLDER "/samples/" + name, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

struct Listed {
    explicit Listed(const Texts& lines, const ClockRange& range = {})
        : Listed(TestSession::Joined(lines), range) {}
    explicit Listed(const std::string& log, const ClockRange& range = {})
        : session(log), explored(session.m_doc, session.m_settings), scope(explored, {}, range),
          findings(FindAll(explored)) {}

    TestSession session;
    ExploredSession explored;
    ExploredScope scope;
    std::vector<Finding> findings;
};

// The cells of a row, divided by bars.
inline std::string RowText(const CListSource& source, std::size_t row, int columns) {
    std::string text;
    for (int column = 0; column < columns; ++column) {
        text.append(column == 0 ? "" : "|").append(source.Text(row, column));
    }
    return text;
}
template <class Source> Texts RowTexts(const Source& source, std::size_t columns) {
    Texts texts;
    for (std::size_t row = 0; row < source.RowCount(); ++row) {
        texts.push_back(RowText(source, row, static_cast<int>(columns)));
    }
    return texts;
}

// The same of rows in a list of their own columns.
template <class Row> Texts ListedTexts(std::vector<Row> rows) {
    CRowSource<Row> source;
    source.Show(std::move(rows));
    return RowTexts(source, Row::Columns().size());
}
// The rows as sorting by a column brings them: their numbers.
inline std::vector<std::size_t> Sorted(const CListSource& source, int column, bool descending = false) {
    std::vector<std::size_t> order(source.RowCount());
    std::iota(order.begin(), order.end(), std::size_t{0});
    source.Sort(order, column, descending);
    return order;
}
// The same of every column in its turn.
inline std::vector<std::vector<std::size_t>> SortedByEach(const CListSource& source, std::size_t columns) {
    std::vector<std::vector<std::size_t>> orders;
    for (std::size_t column = 0; column < columns; ++column) {
        orders.push_back(Sorted(source, static_cast<int>(column)));
    }
    return orders;
}
template <class Row> std::vector<std::vector<std::size_t>> SortedByEach(std::vector<Row> rows) {
    CRowSource<Row> source;
    source.Show(std::move(rows));
    return SortedByEach(source, Row::Columns().size());
}

} // namespace carvelot::test
