#include "support/TestLog.h"
#include "trees/DetailTree.h"
#include "trees/ThreadTree.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

// The tree as indented lines of text, each with its image in front.
void Print(const CDetailTree& tree, CDetailTree::Node parent, int depth, std::string& out) {
    for (std::size_t row = 0; row < tree.ChildCount(parent); ++row) {
        const CDetailTree::Node node = tree.Child(parent, row);
        out.append(static_cast<std::size_t>(depth) * 2, ' ');
        std::string text = tree.Text(node);
        // The time of day of the test's lines is of no interest.
        if (text.size() >= 19 && text[2] == ':' && text[5] == ':') {
            text.erase(0, 19);
        }
        out.append(std::to_string(tree.Image(node))).append(" ").append(text).append("\n");
        Print(tree, node, depth + 1, out);
    }
}

std::string Tree(const TestSession& session, std::uint32_t process, std::uint32_t thread) {
    CDetailTree tree(session.m_doc);
    tree.FillDetails(true, session.Thread(process, thread).m_listDetails);
    std::string out;
    Print(tree, CDetailTree::kRoot, 0, out);
    return out;
}

// Lines of one thread, a microsecond apart.
TestSession ThreadSession(std::initializer_list<const char*> texts, bool ube = false) {
    std::vector<std::string> lines = DebugLog({});
    int number = 0;
    for (const char* text : texts) {
        const std::string ids = ube ? "0/0" : "5/6";
        // A line of a UBE is a line of its own.
        const bool whole = std::string_view(text).find("--UBE--") != std::string_view::npos;
        lines.push_back(whole ? text : DebugLine("10:00:00.0000" + std::to_string(10 + number), text, ids));
        ++number;
    }
    return TestSession(lines);
}

} // namespace

TEST(FillDetails, NestsCallsAndShowsHowTheyEnded) {
    const TestSession session = ThreadSession({
        "Calling Business function A from Level 1 (BSFNLevel = 1)",
        "IN->[  1] a",
        "IN->[  2] b",
        "SELECT X FROM T",
        "Calling Business function B from A (BSFNLevel = 2)",
        "Return value is 2 for B. (BSFNLevel = 2)",
        "OUT->[ 1] c",
        "Return value is 0 for A. (BSFNLevel = 1)",
        "On x",
    });
    EXPECT_EQ(Tree(session, 5, 6), "10 (0.000007) Calling Business function A from Level 1 (BSFNLevel = 1)\n"
                                   "  4 PARMS IN\n"
                                   "    4 IN->[  1] a\n"
                                   "    4 IN->[  2] b\n"
                                   "  3 SELECT X FROM T\n"
                                   "  0 (0.000001) Calling Business function B from A (BSFNLevel = 2)\n"
                                   "    0 Return value is 2 for B. (BSFNLevel = 2)\n"
                                   "  5 PARMS OUT\n"
                                   "    5 OUT->[ 1] c\n"
                                   "  2 Return value is 0 for A. (BSFNLevel = 1)\n"
                                   "2 On x\n");
}

TEST(FillDetails, MarksACallThatReturned1AboveAFailure) {
    const TestSession session = ThreadSession({
        "Calling Business function A from Level 1 (BSFNLevel = 1)",
        "Calling Business function B from A (BSFNLevel = 2)",
        "Return value is 2 for B. (BSFNLevel = 2)",
        "Return value is 1 for A. (BSFNLevel = 1)",
    });
    EXPECT_EQ(Tree(session, 5, 6).substr(0, 3), "11 ");
}

TEST(FillDetails, MarksNoAncestorForAReturnOf3) {
    const TestSession session = ThreadSession({
        "Calling Business function A from Level 1 (BSFNLevel = 1)",
        "Calling Business function B from A (BSFNLevel = 2)",
        "Return value is 3 for B. (BSFNLevel = 2)",
        "Return value is 0 for A. (BSFNLevel = 1)",
    });
    const std::string tree = Tree(session, 5, 6);
    EXPECT_EQ(tree.substr(0, 2), "2 ");
    EXPECT_NE(tree.find("\n  0 (0.000001) Calling Business function B"), std::string::npos);
}

TEST(FillDetails, LeavesAReturnWithoutACallAtTheRoot) {
    const TestSession session = ThreadSession({"Return value is 2 for B. (BSFNLevel = 2)", "On x", "On y"});
    EXPECT_EQ(Tree(session, 5, 6), "0 Return value is 2 for B. (BSFNLevel = 2)\n0 On x\n  0 On y\n");
}

TEST(FillDetails, LetsACallThatNeverReturnsKeepTheImageBeforeIt) {
    const TestSession session =
        ThreadSession({"SELECT X FROM T", "Calling Business function A from Level 1"});
    EXPECT_EQ(Tree(session, 5, 6), "3 SELECT X FROM T\n3 Calling Business function A from Level 1\n");
}

TEST(FillDetails, HidesEndsButLetsThemCloseTheirLevelAndPassTheirImageOn) {
    const TestSession session = ThreadSession({
        "RT: >>>Beginning ER:\tOK\tForm: W1\t",
        "On inner",
        "RT: <<<Finished  ER:\tOK",
        "RT: <<<Finished  ER:\tOK",
        "On outer",
    });
    EXPECT_EQ(Tree(session, 5, 6), "6 Form:  W1 - OK\n  6 On inner\n6 On outer\n");
}

TEST(FillDetails, ShowsAnEndBehindAGap) {
    const TestSession session(DebugLog({DebugLine("10:00:00.000000", "SELECT X FROM T", "5/6"),
                                        DebugLine("10:00:09.000000", "Exiting DBPerformRequest", "5/6")}));
    EXPECT_EQ(Tree(session, 5, 6), "3 (9.000000) SELECT X FROM T\n3 Exiting DBPerformRequest\n");
}

TEST(FillDetails, GivesEachKindItsImage) {
    const TestSession session =
        ThreadSession({"ERROR a", "JDB9900401 b", "a hCache:[1] c", "[CARVELOT MESSAGE]d", "On e"});
    EXPECT_EQ(Tree(session, 5, 6),
              "0 ERROR a\n0 JDB9900401 b\n17 a hCache:[1] c\n12 [CARVELOT MESSAGE]d\n12 On e\n");
}

TEST(FillDetails, HangsUBELinesBelowTheLatestOfLevel2) {
    const TestSession session =
        ThreadSession({"--UBE--[1] a", "--UBE--[2] b", "--UBE--[3] c", "--UBE--[2] d", "--UBE--[4] e"}, true);
    EXPECT_EQ(Tree(session, 0, 0), "21 UBE\n"
                                   "  21 --UBE--[1] a\n"
                                   "  21 --UBE--[2] b\n"
                                   "    21 --UBE--[3] c\n"
                                   "  21 --UBE--[2] d\n"
                                   "    21 --UBE--[4] e\n");
    // A thread without a UBE line loses its UBE node again.
    EXPECT_EQ(Tree(session, 1, 1), "");
}

TEST(FillDetails, DoesNotEndAParameterGroupAtAUBELine) {
    const TestSession session = ThreadSession({"IN->[ 1] a", "--UBE--[1] u", "IN->[ 2] b"}, true);
    EXPECT_EQ(Tree(session, 0, 0), "21 UBE\n  21 --UBE--[1] u\n4 PARMS IN\n  4 IN->[ 1] a\n  4 IN->[ 2] b\n");
}

TEST(FillDetails, PutsAUBELineBelowNoNodeAtTheTop) {
    // A line of level 2 that is not shown, with no node before it that could stand for it.
    const TestSession session(
        std::vector<std::string>{"--UBE--[2] 3 10:00:00 Exiting DBPerformRequest", "--UBE--[1] a"});
    EXPECT_EQ(Tree(session, 0, 0), "21 --UBE--[1] a\n");
}

TEST(FillDetails, TheNodeUBEHasNoRecordThatCouldBeMarked) {
    // The last return stands behind the call of the UBE, at the node "UBE".
    const char* const calls[] = {
        "--UBE--[1] a", "Calling 3 10:00:00 --UBE--", "Calling Business function B from A (BSFNLevel = 2)",
        "Return value is 2 for B. (BSFNLevel = 2)", "Return value is 0 for A. (BSFNLevel = 1)"};
    for (const auto& [code, image] : {std::pair("0", "2"), std::pair("1", "1")}) {
        const std::string last = std::string("Return value is ") + code + " for A. (BSFNLevel = 1)";
        const TestSession session =
            ThreadSession({calls[0], calls[1], calls[2], calls[3], calls[4], last.c_str()}, true);
        EXPECT_EQ(Tree(session, 0, 0),
                  std::string(image) + " UBE\n" +
                      "  21 --UBE--[1] a\n"
                      "  10 Calling 3 10:00:00 --UBE--\n"
                      "    0 (0.000001) Calling Business function B from A (BSFNLevel = 2)\n"
                      "      0 Return value is 2 for B. (BSFNLevel = 2)\n"
                      "    2 Return value is 0 for A. (BSFNLevel = 1)\n"
                      "  " +
                      image + " " + last + "\n");
    }
}

TEST(FillDetails, TheNodeParmsOutHasNoRecordThatCouldBeMarked) {
    // A line of level 2 that is not shown lets the next lines of the UBE hang below the parameter.
    const TestSession session = ThreadSession(
        {"OUT->[ 1] c", "--UBE--[2] 2 10:00:00.500000 Exiting DBPerformRequest",
         "Calling 3 10:00:00.500000 --UBE--", "Calling Business function B from A (BSFNLevel = 2)",
         "Return value is 2 for B. (BSFNLevel = 2)", "Return value is 0 for A. (BSFNLevel = 1)",
         "Return value is 0 for A. (BSFNLevel = 1)", "Return value is 0 for A. (BSFNLevel = 1)"},
        true);
    EXPECT_EQ(Tree(session, 0, 0), "2 PARMS OUT\n"
                                   "  10 OUT->[ 1] c\n"
                                   "    10 Calling 3 10:00:00.500000 --UBE--\n"
                                   "      0 (0.000001) Calling Business function B from A (BSFNLevel = 2)\n"
                                   "        0 Return value is 2 for B. (BSFNLevel = 2)\n"
                                   "      2 Return value is 0 for A. (BSFNLevel = 1)\n"
                                   "    2 Return value is 0 for A. (BSFNLevel = 1)\n"
                                   "  2 Return value is 0 for A. (BSFNLevel = 1)\n");
}

TEST(FillDetails, KeepsTheMarkOfAFailureFromFillToFill) {
    // The second call below the line of the UBE fails when that line has its image already.
    TestSession session = ThreadSession(
        {"--UBE--[2] a", "Calling 3 10:00:00 --UBE--", "Return value is 0 for A. (BSFNLevel = 1)",
         "Return value is 0 for A. (BSFNLevel = 1)", "Calling 4 10:00:00 --UBE--",
         "Calling Business function B from A (BSFNLevel = 2)", "Return value is 2 for B. (BSFNLevel = 2)"},
        true);
    CDetailTree tree(session.m_doc);
    const auto fill = [&] {
        tree.FillDetails(true, session.Thread(0, 0).m_listDetails);
        const CDetailTree::Node ube = tree.Child(CDetailTree::kRoot, 0);
        EXPECT_EQ(tree.Text(tree.Child(ube, 0)), "--UBE--[2] a");
        return tree.Image(tree.Child(ube, 0));
    };
    EXPECT_EQ(fill(), IMAGE_OK);
    EXPECT_EQ(fill(), IMAGE_OK_FAILED_BELOW);
    // The records of another load have no marks yet.
    ASSERT_TRUE(session.m_doc.LoadLog());
    EXPECT_EQ(fill(), IMAGE_OK);
}

TEST(FillDetails, ShowsTheThreadsOfAProcessOneAfterTheOther) {
    const TestSession session(DebugLog({
        DebugLine("10:00:00.000001", "Calling Business function A from Level 1", "5/1"),
        DebugLine("10:00:00.000002", "On b", "5/-2"),
        DebugLine("10:00:00.000003", "On c", "5/1"),
    }));
    CDetailTree tree(session.m_doc);
    for (const auto& thread : session.Process(5).m_listThreads) {
        tree.FillDetails(false, thread->m_listDetails);
    }
    ASSERT_EQ(tree.ChildCount(CDetailTree::kRoot), 2U);
    const auto call = tree.Child(CDetailTree::kRoot, 0);
    EXPECT_EQ(tree.Text(call), "(1)10:00:00.000001    Calling Business function A from Level 1");
    EXPECT_EQ(tree.Text(tree.Child(call, 0)), "(1)10:00:00.000003    On c");
    EXPECT_EQ(tree.Text(tree.Child(CDetailTree::kRoot, 1)), "(-2)10:00:00.000002    On b");
    EXPECT_EQ(tree.NodeOf(RecordIndex{2}), tree.Child(CDetailTree::kRoot, 1));
    EXPECT_EQ(tree.NodeOf(RecordIndex{0}), CDetailTree::kRoot); // of another process
    EXPECT_EQ(tree.Row(tree.Child(CDetailTree::kRoot, 1)), 1U);
    EXPECT_EQ(tree.Parent(tree.Child(call, 0)), call);
}

TEST(FillDetails, ShowsTheSourceInAJASLog) {
    const TestSession session(JASLog({JASLine("08:00:00,001", "A", "Object Called: X.Y")}));
    CDetailTree tree(session.m_doc);
    tree.FillDetails(true, session.User("A").m_listDetails);
    EXPECT_EQ(tree.Text(tree.Child(CDetailTree::kRoot, 0)),
              "08:00:00.001000    [RUNTIME] Object Called: X.Y");
    EXPECT_EQ(tree.Image(tree.Child(CDetailTree::kRoot, 0)), 15);
}

TEST(FillDetails, StaysEmptyForAnEmptyList) {
    const TestSession session(DebugLog({}));
    CDetailTree tree(session.m_doc);
    tree.FillDetails(true, {});
    EXPECT_EQ(tree.ChildCount(CDetailTree::kRoot), 0U);
}

TEST(FillDetails, NestsAHundredThousandCallsWithoutEffort) {
    std::vector<std::string> lines = DebugLog({});
    constexpr int depth = 100'000;
    for (int i = 0; i < depth; ++i) {
        lines.push_back(
            DebugLine("10:00:00.000001", "Calling Business function A from A (BSFNLevel = 1)", "5/6"));
    }
    for (int i = 0; i < depth; ++i) {
        lines.push_back(DebugLine("10:00:00.000002", "Return value is 2 for A. (BSFNLevel = 1)", "5/6"));
    }
    const TestSession session(lines);
    CDetailTree tree(session.m_doc);
    tree.FillDetails(true, session.Thread(5, 6).m_listDetails);
    int levels = 0;
    for (auto node = CDetailTree::kRoot; tree.ChildCount(node) > 0; node = tree.Child(node, 0)) {
        ++levels;
    }
    EXPECT_EQ(levels, depth + 1);
}

TEST(RawText, ShowsTheRecordsStatementOrTheNodesWords) {
    const TestSession session = ThreadSession({"IN->[ 1] a", "OUT->[ 1] b"});
    CDetailTree tree(session.m_doc);
    tree.FillDetails(true, session.Thread(5, 6).m_listDetails);
    const auto in = tree.Child(CDetailTree::kRoot, 0);
    const auto out = tree.Child(CDetailTree::kRoot, 1);
    EXPECT_EQ(tree.RawText(in), "IN->[ 1] a"); // the first parameter
    EXPECT_EQ(tree.RawText(out), "PARMS OUT");
    EXPECT_TRUE(tree.OffersCopyParms(in));
    EXPECT_FALSE(tree.OffersCopyParms(out));
    EXPECT_TRUE(tree.OffersCopyParms(tree.Child(in, 0)));
    EXPECT_FALSE(tree.OffersCopyParms(tree.Child(out, 0)));
}

TEST(CopyParms, TakesTheWholeGroupWithThreeBlanksAheadAndTwoBehind) {
    const TestSession session = ThreadSession({"IN->[ 1] a", "IN->[ 2] b"});
    CDetailTree tree(session.m_doc);
    tree.FillDetails(true, session.Thread(5, 6).m_listDetails);
    const auto group = tree.Child(CDetailTree::kRoot, 0);
    EXPECT_EQ(tree.CopyParmsText(group), "   IN->[ 1] a   IN->[ 2] b  ");
    EXPECT_EQ(tree.CopyParmsText(tree.Child(group, 1)), "   IN->[ 1] a   IN->[ 2] b  ");
}

TEST(ThreadTree, WritesIdsAndElapsedSeconds) {
    TestSession session(DebugLog(
        {DebugLine("12:59:59.000000", "On x", "5/-6"), DebugLine("00:00:01.000000", "On y", "5/-6")}));
    EXPECT_EQ(ThreadNodeText(session.Thread(5, static_cast<std::uint32_t>(-6))), "Thread - -6 (1.999999)");
    EXPECT_EQ(ProcessNodeText(session.m_doc, session.Process(5)), "Process - 5 (1.999999)");
    session.m_doc.m_strProcessName = "activconsole.exe";
    EXPECT_EQ(ProcessNodeText(session.m_doc, session.Process(5)),
              "Process - 5 - activconsole.exe (1.999999)");
    EXPECT_EQ(ProcessNodeText(session.m_doc, session.Process(1)),
              "Process - 1 - activconsole.exe (0.000000)");
}

TEST(ThreadTree, ShowsABackwardStepOfMoreThan13HoursAsAnEnormousNumber) {
    const TestSession session(
        DebugLog({DebugLine("23:59:59.000000", "On x", "5/6"), DebugLine("00:00:01.000000", "On y", "5/6")}));
    EXPECT_EQ(ThreadNodeText(session.Thread(5, 6)), "Thread - 6 (18446744027136.000000)");
}

TEST(ThreadTree, CarriesTheMonitorOnToTheUsersBehindTheSystemLevel) {
    const TestSession session(
        JASLog({JASLine("08:00:00,000", "", "x"), JASLine("08:00:00,000", "ZOE", "x")}));
    EXPECT_EQ(UserImages(session.m_doc), (std::vector<int>{13, 14, 14}));
}

TEST(ThreadTree, TitlesTheSession) {
    const TestSession session(DebugLog({DebugLine("10:00:00.000000", "On x", "5/6")}));
    const std::string path = session.m_file.Path();
    EXPECT_EQ(TitleOf(session.m_doc, Selection(session.Process(5))), path + " - Process: 5");
    EXPECT_EQ(TitleOf(session.m_doc, Selection(session.Thread(5, 6))), path + " - Process: 5 Thread: 6");
    EXPECT_EQ(TitleOf(session.m_doc, Selection()), path);
    const TestSession jas(JASLog({JASLine("08:00:00,000", "ZOE", "x")}));
    EXPECT_EQ(TitleOf(jas.m_doc, Selection(jas.User("ZOE"))), jas.m_file.Path() + " - User: ZOE");
}

} // namespace carvelot::test
