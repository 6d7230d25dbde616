#include "explore/StatementShape.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

std::string Shape(std::string_view text) { return ShapeOf(text, "SELECT"); }
// Of what stands behind "SELECT ".
std::string Behind(std::string_view text) {
    const std::string shape = Shape(std::string("SELECT ").append(text));
    return shape.size() < 7 ? shape : shape.substr(7);
}

} // namespace

TEST(StatementShape, BeginsWithTheOperationWord) {
    EXPECT_EQ(Shape("[JDBOLEDB] 7 'x' SELECT a SELECT"), "SELECT a SELECT");
    EXPECT_EQ(ShapeOf("UPDATE a", "SELECT"), "UPDATE a");
    EXPECT_EQ(ShapeOf(" UPDATE a ", ""), "UPDATE a");
}

TEST(StatementShape, HasSingleBlanksForWhiteSpaceAndNoneAtItsEnds) {
    EXPECT_EQ(Shape("SELECT  * \t FROM\r\n\v\fT  "), "SELECT * FROM T");
    EXPECT_EQ(Shape("SELECT\xC2\xA0 x"), "SELECT\xC2\xA0 x"); // white space is ASCII's
    EXPECT_EQ(Shape("SELECT  'a  b'  'c'"), "SELECT ? ?");
}

TEST(StatementShape, HasAMarkForEachLiteral) {
    EXPECT_EQ(Behind("A='x' AND B=''"), "A=? AND B=?");
    EXPECT_EQ(Behind("A='it''s' X"), "A=? X");
    EXPECT_EQ(Behind("A='''' X"), "A=? X");
    EXPECT_EQ(Behind("A='a''b''' X'c'"), "A=? X?");
}

TEST(StatementShape, HasAMarkForALiteralThatNothingEnds) {
    EXPECT_EQ(Behind("A='x AND B=7 "), "A=?");
    EXPECT_EQ(Behind("A='x''"), "A=?");
    EXPECT_EQ(Behind("A='"), "A=?");
}

TEST(StatementShape, HasAMarkForEachNumber) {
    EXPECT_EQ(Behind("A=7 AND B=1.50 AND C=.5"), "A=? AND B=? AND C=?");
    EXPECT_EQ(Behind("A=1e5 AND B=1.5E-3 AND C=.5e+07"), "A=? AND B=? AND C=?");
    EXPECT_EQ(Behind("7*8"), "?*?");
    EXPECT_EQ(Behind("A=7;"), "A=?;");
}

TEST(StatementShape, TakesANumberAsLongAsItCanBe) {
    EXPECT_EQ(Behind("A=7."), "A=?.");     // no fraction
    EXPECT_EQ(Behind("A=1.2.3"), "A=?.3"); // the second fraction has a digit ahead
    EXPECT_EQ(Behind("A=1e"), "A=1e");     // no exponent, but a letter behind
    EXPECT_EQ(Behind("A=1e+"), "A=1e+");
    EXPECT_EQ(Behind("A=1e5e6"), "A=1e5e6");
    EXPECT_EQ(Behind("A=1.e5"), "A=?.e5");
}

TEST(StatementShape, LeavesNumbersThatArePartOfANameOrStandBehindADot) {
    EXPECT_EQ(Behind("F4211 T0.X1 _5 #5 $5 @5 T.5 \xC3\xA4"
                     "5"),
              "F4211 T0.X1 _5 #5 $5 @5 T.5 \xC3\xA4"
              "5");
    EXPECT_EQ(Behind("5A 5_ 5# 5$ 5@ 5\xC3\xA4 1.5x .5x"), "5A 5_ 5# 5$ 5@ 5\xC3\xA4 1.5x .5x");
    EXPECT_EQ(Behind("A..5"), "A..5");
    EXPECT_EQ(Behind("[5] \"5\" (5)"), "[?] \"?\" (?)");
}

TEST(StatementShape, TakesASignToItsNumberBehindSomeCharactersAndWords) {
    EXPECT_EQ(Behind("(-5 x, +5 =-5 < -5 >-5"), "(? x, ? =? < ? >?");
    EXPECT_EQ(Behind("A AND -5 BETWEEN -1 THEN +1 ELSE -.5 LIKE -2 "),
              "A AND ? BETWEEN ? THEN ? ELSE ? LIKE ?");
    EXPECT_EQ(Shape("SELECT -5"), "SELECT ?");
}

TEST(StatementShape, LeavesASignThatStandsElsewhere) {
    EXPECT_EQ(Behind("A-5 B - 5 C -5 )-5 *-5"), "A-? B - ? C -? )-? *-?");
    EXPECT_EQ(Behind("A=?-5 B=--5 C=- 5"), "A=?-? B=--? C=- ?");
    EXPECT_EQ(Behind("BRAND -5 X_AND -5 and -5 ANDY -5 OR -5"), "BRAND -? X_AND -? and -? ANDY -? OR -?");
    EXPECT_EQ(ShapeOf("-5", ""), "-?");
}

TEST(StatementShape, LeavesASignedNumberThatIsPartOfAName) {
    EXPECT_EQ(Behind("A=-5A"), "A=-5A");
    EXPECT_EQ(Behind("A AND-5"), "A AND-5"); // the letter stands right ahead of the sign that is the number's
}

TEST(StatementShape, HasAMarkForANumberedMark) {
    EXPECT_EQ(Behind("A=?1 AND B=?22 AND C=?"), "A=? AND B=? AND C=?");
    EXPECT_EQ(Behind("A=?1x B?5"), "A=?x B?");
    EXPECT_EQ(Behind("A='x'7"), "A=?");   // the literal's mark has digits behind it
    EXPECT_EQ(Behind("A=?1.5"), "A=?.5"); // the digit ahead of the dot is that of the text
}

TEST(StatementShape, LooksAtTheTextAheadOfTheNumbersStepForWhatStandsBesides) {
    EXPECT_EQ(Behind("A=1-2 B=1+2.5"), "A=?-? B=?+?");
    EXPECT_EQ(Behind("A=1 -2"), "A=? -?");
}

TEST(StatementShape, MergesMarksWithACommaBetweenThem) {
    EXPECT_EQ(Behind("A IN ('x','y' , 'z')"), "A IN (?, ...)");
    EXPECT_EQ(Behind("VALUES (1,2 ,3, ?4)"), "VALUES (?, ...)");
    EXPECT_EQ(Behind("A IN (1) OR B IN (1,2)"), "A IN (?) OR B IN (?, ...)");
    EXPECT_EQ(Behind("1,,2 , x, 3 ,4"), "?,,? , x, ?, ...");
    EXPECT_EQ(Behind("1 2,3"), "? ?, ...");
    EXPECT_EQ(Behind("1,-2,+3"), "?, ...");
    EXPECT_EQ(Behind("1 ,"), "? ,");
}

TEST(StatementShape, KeepsCaseAndOwner) {
    EXPECT_EQ(Shape("SELECT a,B FROM PRODDTA.F0101 t0 WHERE A=1"),
              "SELECT a,B FROM PRODDTA.F0101 t0 WHERE A=?");
}

TEST(StatementShape, OfLongTextsTakesOneLook) {
    // Each of these would take minutes by a second look at what stands ahead or behind.
    const std::size_t size = 2'000'000;
    for (const std::string piece : {"1", "1.", "1e", "?", "' ", "''", "-", "= ", ", ", "1,", "A1 ", ". "}) {
        std::string text = "SELECT ";
        while (text.size() < size) {
            text += piece;
        }
        EXPECT_FALSE(Shape(text).empty()) << piece;
    }
}

} // namespace carvelot::test
