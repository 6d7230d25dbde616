#include "analysis/SQLAnalysis.h"
#include "parse/StatementParts.h"

#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

std::string Table(std::string_view text) {
    std::string scratch;
    return std::string(SplitSQLStatement(text, scratch).table);
}

SqlOperation Operation(std::string_view text) {
    std::string scratch;
    return SplitSQLStatement(text, scratch).operation;
}

} // namespace

TEST(SplitSQLStatement, FindsOperationAndTable) {
    EXPECT_EQ(Table("SELECT * FROM F0101 WHERE AN8 = 1"), "F0101");
    EXPECT_EQ(Operation("SELECT * FROM F0101 WHERE AN8 = 1"), SQL_SELECT);
    EXPECT_EQ(Table("UPDATE F0101 SET X = 1"), "F0101");
    EXPECT_EQ(Operation("UPDATE F0101 SET X = 1"), SQL_UPDATE);
    EXPECT_EQ(Table("DELETE FROM F0101"), "F0101");
    EXPECT_EQ(Operation("DELETE FROM F0101"), SQL_DELETE);
    EXPECT_EQ(Operation("INSERT INTO F0101 (AN8) VALUES (1)"), SQL_INSERT);
}

TEST(SplitSQLStatement, LeavesOtherStatementsAlone) {
    for (const char* text :
         {"ALTER TABLE F0101", "DROP TABLE F0101", "CREATE TABLE F0101", "[JDBOLEDB] SELECT * FROM F0101"}) {
        EXPECT_EQ(Operation(text), SQL_NONE) << text;
        EXPECT_EQ(Table(text), "") << text;
    }
}

TEST(ExtractTableName, TakesTheWholeListOfAliasedTables) {
    EXPECT_EQ(Table("SELECT T0.AN8 FROM F0101 T0 WHERE T0.AN8 = 1"), "F0101 T0");
    EXPECT_EQ(Table("SELECT T0.A FROM F0101 T0, F0116 T1 WHERE T0.A = T1.A"), "F0101 T0, F0116 T1");
    EXPECT_EQ(Table("SELECT T0.AN8 FROM F0101 T0"), "F0101");
    EXPECT_EQ(Table("SELECT A FROM WHERE T0"), ""); // nothing stands ahead of WHERE
}

TEST(ExtractTableName, CutsAColumnListOff) {
    EXPECT_EQ(Table("INSERT INTO F0101(AN8) VALUES (1)"), "F0101");
    EXPECT_EQ(Table("INSERT INTO PRODDTA.F42199 (SLKCOO) VALUES (1)"), "PRODDTA.F42199");
}

TEST(ExtractTableName, StartsBehindTheKeywordsLengthWhereItIsMissing) {
    EXPECT_EQ(Table("SELECT COUNT(*)"), "CT");
}

TEST(ExtractTableName, IsMisledByAColumnThatHoldsTheKeyword) {
    EXPECT_EQ(Table("SELECT FROMDATE, B FROM F0101"), "ATE,");
}

TEST(ExtractTableName, KeepsTheSchema) {
    EXPECT_EQ(Table("SELECT A FROM PRODDTA/F4105 WHERE B = 1"), "PRODDTA/F4105");
    EXPECT_EQ(Table("SELECT A FROM JDE_CRP.CRPDTA.F4102 WITH (NOLOCK)"), "JDE_CRP.CRPDTA.F4102");
}

TEST(AddStatement, CountsByTableAndOperationInOrderOfFirstAppearance) {
    const TestSession session(DebugLog({
        DebugLine("09:00:00.000001", "SELECT A FROM f4211 WHERE B = 1"),
        DebugLine("09:00:00.000002", "UPDATE F0101 SET A = 1"),
        DebugLine("09:00:00.000003", "INSERT INTO F4211 (A) VALUES (1)"),
        DebugLine("09:00:00.000004", "DELETE FROM F4211"),
        DebugLine("09:00:00.000005", "DROP TABLE X"),
        DebugLine("09:00:00.000006", "[JDBOLEDB] SELECT"),
        DebugLine("09:00:00.000007", "SELECT A FROM F4211", "4120/9"),
    }));
    const auto& tables = session.Process(4120).m_pSQLAnalysis.m_listTables;
    ASSERT_EQ(tables.size(), 3U);
    EXPECT_EQ(tables[0].m_strTable, "f4211"); // the spelling seen first
    EXPECT_EQ(tables[0].m_nSelects, 2U);
    EXPECT_EQ(tables[0].m_nInserts, 1U);
    EXPECT_EQ(tables[0].m_nUpdates, 0U);
    EXPECT_EQ(tables[0].m_nDeletes, 1U);
    EXPECT_EQ(tables[1].m_strTable, "F0101");
    EXPECT_EQ(tables[1].m_nUpdates, 1U);
    EXPECT_EQ(tables[2].m_strTable, ""); // DROP and JDBOLEDB share the nameless one, which counts nothing
    EXPECT_EQ(tables[2].m_nSelects, 0U);
    EXPECT_EQ(session.Thread(4120, 9).m_pSQLAnalysis.m_listTables.size(), 1U);
}

} // namespace carvelot::test
