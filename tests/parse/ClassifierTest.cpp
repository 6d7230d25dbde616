#include "parse/Classifier.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

std::string g_name; // for the latest Classification's name

Classification Debug(std::string_view text) { return ClassifyDebugStatement(text, g_name); }

LogKind DebugKind(std::string_view text) { return Debug(text).kind; }

Classification JAS(std::string_view text, std::string_view level = "APP") {
    if (const LogKind levelKind = KindOfLevel(level); levelKind != LOG_NONE) {
        return {levelKind, Classification::Made::Nothing, 0};
    }
    PendingStatement pending;
    return ClassifyJASStatement(text, pending, g_name);
}

LogKind JASKind(std::string_view text, std::string_view level = "APP") { return JAS(text, level).kind; }

} // namespace

TEST(ClassifyDebugStatement, TakesSQLByItsFirstWord) {
    for (const char* word : {"SELECT", "UPDATE", "DELETE", "ALTER", "DROP", "CREATE", "INSERT"}) {
        EXPECT_EQ(DebugKind(std::string(word) + " x"), LOG_SQL) << word;
        EXPECT_EQ(DebugKind(word), LOG_NONE) << word; // one word is no first word
        EXPECT_EQ(DebugKind(std::string(word) + "S x"), LOG_NONE) << word;
    }
    EXPECT_EQ(DebugKind("select x"), LOG_NONE);
}

TEST(ClassifyDebugStatement, LooksBehindJDBOLEDBForAStatement) {
    EXPECT_EQ(DebugKind("[JDBOLEDB] it did DROP something"), LOG_SQL);
    EXPECT_EQ(DebugKind("[JDBOLEDB] jdeCache and JDB3100001 hide nothing"), LOG_NONE);
    EXPECT_EQ(DebugKind("[JDBOLEDB]"), LOG_NONE);
}

TEST(ClassifyDebugStatement, TakesCallsButTwoWholeTexts) {
    EXPECT_EQ(DebugKind("Calling Business function X"), LOG_CALL);
    EXPECT_EQ(DebugKind("Calling legacy API"), LOG_NONE);
    EXPECT_EQ(DebugKind("Calling sqlplus.exe"), LOG_NONE);
    EXPECT_EQ(DebugKind("Calling legacy API now"), LOG_CALL);
    EXPECT_EQ(DebugKind("Calling"), LOG_NONE);
}

TEST(ClassifyDebugStatement, ReadsOneDigitAtColumn16OfAReturn) {
    EXPECT_EQ(Debug("Return value is 1 for X").kind, LOG_RETURN);
    EXPECT_EQ(Debug("Return value is 1 for X").returnCode, 1);
    EXPECT_EQ(Debug("Return value is 25 for X").returnCode, 2);
    EXPECT_EQ(Debug("Return value is -1 for X").returnCode, 0);
    EXPECT_EQ(Debug("Return code").kind, LOG_RETURN);
    EXPECT_EQ(Debug("Return code").returnCode, 0);
    EXPECT_EQ(Debug("Return \xC3\xA9"
                    "alue is 3 for X")
                  .returnCode,
              3);
}

TEST(ClassifyDebugStatement, TakesTheOtherFirstWords) {
    EXPECT_EQ(DebugKind("On something"), LOG_ON);
    EXPECT_EQ(DebugKind("Only something"), LOG_NONE);
    EXPECT_EQ(DebugKind("ERRORS found"), LOG_ERROR);
    EXPECT_EQ(DebugKind("ERROR: x"), LOG_ERROR);
    EXPECT_EQ(DebugKind("ERRORS"), LOG_NONE);
    EXPECT_EQ(DebugKind("IN->[ 1] x"), LOG_PARM_IN);
    EXPECT_EQ(DebugKind("IN->[1]"), LOG_NONE);
    EXPECT_EQ(DebugKind("OUT->[ 1] x"), LOG_PARM_OUT);
    EXPECT_EQ(DebugKind("[CARVELOT MESSAGE]hello"), LOG_MESSAGE);
}

TEST(ClassifyDebugStatement, TakesOnlyTheListedCodesInsideAText) {
    for (const char* code :
         {"CAC0001111", "CAC0001025", "CAC0001036", "JDB3100001", "JDB3100060", "JDB3100076", "JDB3100080",
          "JDB3300020", "JDB3400009", "JDB3500011", "JDB3600011", "JDB3700001", "JDB4100005", "JDB4100006",
          "JDB9900401", "JDB9901232"}) {
        EXPECT_EQ(DebugKind(std::string("the code ") + code + " stands here"), LOG_JDB_ERROR) << code;
    }
    EXPECT_EQ(DebugKind("the code JDB9900402 is not listed"), LOG_NONE);
    EXPECT_EQ(DebugKind("the code CAC0001112 is not listed"), LOG_NONE);
    EXPECT_EQ(DebugKind("JDB whatever"), LOG_JDB_ERROR);
    EXPECT_EQ(DebugKind("JDB"), LOG_JDB_ERROR);
    EXPECT_EQ(DebugKind("jdeCache has JDB3100001"), LOG_JDB_ERROR);
}

TEST(ClassifyDebugStatement, TakesCacheWordsAnywhere) {
    EXPECT_EQ(DebugKind("Entering jdeCacheInit"), LOG_CACHE);
    EXPECT_EQ(DebugKind("x hCache:[1]"), LOG_CACHE);
    EXPECT_EQ(DebugKind("hCursor:[1]"), LOG_CACHE);
    EXPECT_EQ(DebugKind("   Found existing cache, total"), LOG_CACHE);
    EXPECT_EQ(DebugKind("Exiting DBPerformRequest hCache:"), LOG_CACHE);
    EXPECT_EQ(DebugKind("Exiting DBPerformRequest"), LOG_SQL_DONE);
    EXPECT_EQ(DebugKind("x--UBE--"), LOG_UBE);
    EXPECT_EQ(DebugKind("jdecache"), LOG_NONE);
    EXPECT_EQ(DebugKind(""), LOG_NONE);
}

TEST(ClassifyEventRules, BuildsTheDisplayName) {
    EXPECT_EQ(Debug("RT: >>>Beginning ER:\tOK Button\tForm: W4210A\t").kind, LOG_EVENT_START);
    EXPECT_EQ(Debug("RT: >>>Beginning ER:\tOK Button\tForm: W4210A\t").Name(g_name),
              "Form:  W4210A - OK Button");
    EXPECT_EQ(Debug("RT: >>>Beginning ER:\tOK Button\tForm: W4210A").Name(g_name),
              "OK Button"); // no closing tab, no form
    EXPECT_EQ(Debug("RT: >>>Beginning ER:\tOK Button").Name(g_name), "");
    EXPECT_EQ(Debug("RT: >>>Beginning ER:\tOK Button\tForm: \t").Name(g_name),
              "OK Button"); // no more than a blank
    EXPECT_EQ(Debug("RT: <<<Finished  ER:\tOK Button").kind, LOG_EVENT_END);
    EXPECT_EQ(Debug("RT: <<<Finished ER:\tOK Button").kind, LOG_NONE); // one blank
    EXPECT_EQ(Debug("RT: >>>Beginning ER:").kind, LOG_NONE);
    EXPECT_EQ(Debug("RT: other jdeCache\t").kind, LOG_NONE); // nothing further is tested
}

TEST(ClassifyJASStatement, LetsTheLevelDecideFirst) {
    EXPECT_EQ(JASKind("SELECT A FROM T", "WARN"), LOG_WARN);
    EXPECT_EQ(JASKind("x", "SEVERE"), LOG_SEVERE);
    EXPECT_EQ(JASKind("x", "MANDATORY"), LOG_MANDATORY);
    EXPECT_EQ(JASKind("x", "WARNING"), LOG_NONE);
}

TEST(ClassifyJASStatement, TakesTheTextByItsOwnTests) {
    EXPECT_EQ(JASKind("SELECT A FROM T"), LOG_SQL);
    EXPECT_EQ(JASKind("Calling Business function X"), LOG_CALL);
    EXPECT_EQ(JASKind("Calling legacy API"), LOG_NONE);
    EXPECT_EQ(JASKind("Calling the Calling server component"), LOG_NONE);
    EXPECT_EQ(JASKind("Calling sqlplus.exe"), LOG_CALL);
    EXPECT_EQ(JAS("Return value is 2 for X").returnCode, 2);
    EXPECT_EQ(JASKind("On x"), LOG_ON);
    EXPECT_EQ(JASKind("ERRORS x"), LOG_ERROR);
    EXPECT_EQ(JASKind("IN->[1] x"), LOG_PARM_IN);
    EXPECT_EQ(JASKind("OUT->[1] x"), LOG_PARM_OUT);
    EXPECT_EQ(JASKind("P0411, Event Starts :Post"), LOG_EVENT_START);
    EXPECT_EQ(JASKind("P0411, Event Ends:Post"), LOG_EVENT_END);
    EXPECT_EQ(JASKind("x at ER Line 5"), LOG_ER_LINE);
    EXPECT_EQ(JASKind("Object Called: F4211.F"), LOG_OBJECT_CALL);
    EXPECT_EQ(JASKind("RT: >>>Beginning ER:\tA\t"), LOG_EVENT_START);
    EXPECT_EQ(JASKind("a jdeCache line"), LOG_CACHE);
    EXPECT_EQ(JASKind("holds JDB3100001"), LOG_NONE); // no code list here
    EXPECT_EQ(JASKind("Exiting DBPerformRequest"), LOG_NONE);
}

TEST(FindOperationWord, IsTheFirstWordOfASQLTextOrTheFirstKnownOneBehindJDBOLEDB) {
    EXPECT_EQ(FindOperationWord("DROP TABLE SELECT"), "DROP");
    const std::string_view text = "[JDBOLEDB] INSERT x SELECT y";
    EXPECT_EQ(FindOperationWord(text).data(), text.data() + 20); // the list's order, not the text's
    EXPECT_EQ(FindOperationWord(text), "SELECT");
    EXPECT_EQ(FindOperationWord("[JDBOLEDB] x"), "");
    EXPECT_EQ(FindOperationWord("SELECTED x"), "");
    EXPECT_EQ(FindOperationWord("SELECT"), ""); // without a blank there is no first word
    EXPECT_EQ(FindOperationWord(""), "");
}

} // namespace carvelot::test
