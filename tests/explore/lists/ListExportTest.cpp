#include "explore/lists/ListExport.h"

#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <sstream>

namespace carvelot::test {

namespace {

class CTexts final : public CListSource {
public:
    explicit CTexts(std::vector<std::vector<std::string>> rows) : m_rows(std::move(rows)) {}

    std::size_t RowCount() const override { return m_rows.size(); }
    std::string Text(std::size_t row, int column) const override {
        return m_rows[row][static_cast<std::size_t>(column)];
    }

private:
    std::vector<std::vector<std::string>> m_rows;
};

std::string Exported(const ShownList& list, ListExportFormat format) {
    const TestFile file("earlier");
    int error = 0;
    EXPECT_TRUE(WriteListExport(file.Path(), format, list, error)) << error;
    std::ostringstream bytes;
    bytes << std::ifstream(file.Path(), std::ios::binary).rdbuf();
    return bytes.str();
}

} // namespace

TEST(ListExport, CsvQuotesWhatDividesCellsAndEndsLinesWithCrLf) {
    const CTexts source({{"plain", "a,b"}, {"say \"x\"", "two\r\nlines"}, {" blank ", ""}});
    EXPECT_EQ(Exported({source, {{"One", 0}, {"T,wo", 1}}, {0, 1, 2}}, ListExportFormat::Csv),
              "One,\"T,wo\"\r\nplain,\"a,b\"\r\n\"say \"\"x\"\"\",\"two\r\nlines\"\r\n\" blank \",\r\n");
}

TEST(ListExport, TextDividesCellsByTabsAndKeepsARowOnALine) {
    const CTexts source({{"a\tb", "say \"x\""}, {"c\r\nd", ""}});
    EXPECT_EQ(Exported({source, {{"One", 0}, {"Two", 1}}, {0, 1}}, ListExportFormat::Text),
              "One\tTwo\na b\tsay \"x\"\nc  d\t\n");
}

TEST(ListExport, RowsAndColumnsStandAsTheyAreShown) {
    const CTexts source({{"a", "b", "c"}, {"d", "e", "f"}});
    EXPECT_EQ(Exported({source, {{"Third", 2}, {"First", 0}}, {1, 0}}, ListExportFormat::Text),
              "Third\tFirst\nf\td\nc\ta\n");
}

TEST(ListExport, AnEmptyListIsItsTitles) {
    const CTexts source(std::vector<std::vector<std::string>>{});
    EXPECT_EQ(Exported({source, {{"One", 0}}, {}}, ListExportFormat::Csv), "One\r\n");
}

TEST(ListExport, TheFileIsUtf8WhateverTheLogHolds) {
    const CTexts source({std::vector<std::string>{"\xC3\xA4 \xFF", "\xED\xA0\x80"}});
    EXPECT_EQ(Exported({source, {{"A", 0}, {"B", 1}}, {0}}, ListExportFormat::Csv).substr(0, 10),
              "A,B\r\n\xC3\xA4 \xEF\xBF");
    EXPECT_EQ(Exported({source, {{"A", 0}, {"B", 1}}, {0}}, ListExportFormat::Csv).find('\xFF'),
              std::string::npos);
}

TEST(ListExport, AFileThatCannotBeWrittenTellsWhy) {
    const CTexts source(std::vector<std::vector<std::string>>{});
    int error = 0;
    EXPECT_FALSE(WriteListExport("/no/such/folder/a.csv", ListExportFormat::Csv, {source, {}, {}}, error));
    EXPECT_NE(error, 0);
}

TEST(ListExport, TheEndingTellsTheFormat) {
    EXPECT_EQ(ListExportFormatOf("/a.b/List.CSV"), ListExportFormat::Csv);
    EXPECT_EQ(ListExportFormatOf("C:\\a\\list.txt"), ListExportFormat::Text);
    EXPECT_EQ(ListExportFormatOf("/a.csv/list"), std::nullopt);
    EXPECT_EQ(ListExportFormatOf("list.xlsx"), std::nullopt);
}

} // namespace carvelot::test
