// A call tree that is filled again when its log has grown.
#include "session/FollowedLog.h"
#include "sources/MemorySource.h"
#include "support/TestLog.h"
#include "trees/DetailTree.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

// A session of a log that grows, and the tree of its thread 5/6 or its process 5.
struct GrowingTree {
    explicit GrowingTree(std::string log) : m_strLog(std::move(log)), m_session(m_strLog) {}

    void Grow(const std::string& more) {
        m_strLog += more;
        CMemorySource source(m_strLog);
        CFollowedLog followed(m_session.m_doc);
        followed.LookAt(source, m_session.m_doc.Trace().identity);
    }
    void FillThread() { m_tree.FillDetails(true, m_session.Thread(5, 6).m_listDetails); }
    void FillProcess() {
        m_tree.ResetTree();
        for (const auto& thread : m_session.Process(5).m_listThreads) {
            m_tree.FillDetails(false, thread->m_listDetails);
        }
    }
    std::vector<CDetailTree::Node> AllNodes() const {
        std::vector<CDetailTree::Node> nodes;
        for (CDetailTree::Node node = 0; node < m_tree.NodeCount(); ++node) {
            nodes.push_back(node);
        }
        return nodes;
    }
    std::vector<CDetailTree::NodeKey> Keys() const {
        std::vector<CDetailTree::NodeKey> keys;
        for (const CDetailTree::Node node : AllNodes()) {
            keys.push_back(m_tree.KeyOf(node));
        }
        return keys;
    }
    std::vector<std::string> Texts(const std::vector<CDetailTree::Node>& nodes) const {
        std::vector<std::string> texts;
        for (const CDetailTree::Node node : nodes) {
            texts.push_back(node == CDetailTree::kRoot ? "none" : m_tree.RawText(node));
        }
        return texts;
    }

    std::string m_strLog;
    TestSession m_session;
    CDetailTree m_tree{m_session.m_doc};
};

std::string Lines(std::initializer_list<std::string> texts, const char* ids = "5/6") {
    std::vector<std::string> lines;
    for (const std::string& text : texts) {
        lines.push_back(DebugLine("10:00:00.000001", text, ids));
    }
    return TestSession::Joined(lines);
}

std::string FirstLines() {
    return TestSession::Joined(DebugLog({})) +
           Lines({"Calling Business function A from B (BSFNLevel = 1)", "IN->[  1] a", "IN->[  2] b",
                  "SELECT X FROM T", "OUT->[ 1] c"}) +
           Lines({"SELECT Y FROM T"}, "5/7");
}

} // namespace

TEST(CDetailTree, KnowsTheNodesOfAThreadAgainThatHasGrown) {
    GrowingTree tree(FirstLines());
    tree.FillThread();
    const auto before = tree.AllNodes();
    const auto keys = tree.Keys();
    const auto texts = tree.Texts(before);
    ASSERT_EQ(texts, (std::vector<std::string>{"Calling Business function A from B (BSFNLevel = 1)",
                                               "IN->[  1] a", "IN->[  1] a", "IN->[  2] b", "SELECT X FROM T",
                                               "PARMS OUT", "OUT->[ 1] c"}));
    tree.Grow(Lines({"OUT->[ 2] d", "Return value is 0 for A. (BSFNLevel = 1)"}));
    tree.FillThread();
    EXPECT_EQ(tree.m_tree.NodeCount(), before.size() + 2);
    EXPECT_EQ(tree.m_tree.NodesOf(keys, before), before);
}

TEST(CDetailTree, KnowsTheNodesOfAProcessAgainBehindAThreadThatHasGrown) {
    GrowingTree tree(FirstLines());
    tree.FillProcess();
    const auto before = tree.AllNodes();
    const auto keys = tree.Keys();
    const auto texts = tree.Texts(before);
    tree.Grow(Lines({"OUT->[ 2] d"}));
    tree.FillProcess();
    const auto after = tree.m_tree.NodesOf(keys, before);
    EXPECT_EQ(tree.Texts(after), texts);
    EXPECT_EQ(after.back(), before.back() + 1);
    // One that is no longer there has no node.
    EXPECT_EQ(tree.m_tree.NodesOf(std::vector<CDetailTree::NodeKey>{{kNoRecord, 77}}, before),
              std::vector<CDetailTree::Node>{CDetailTree::kRoot});
}

TEST(CDetailTree, MarksFailuresBelowCallsThatCameAfterItsFirstFill) {
    // A failure marks its callers by their records; the latest come behind those that the first fill knew.
    GrowingTree tree(FirstLines() + Lines({"Calling Business function B from A (BSFNLevel = 2)",
                                           "Return value is 2 for B. (BSFNLevel = 2)"}));
    tree.FillThread();
    std::string more;
    for (int call = 0; call < 1000; ++call) {
        more +=
            Lines({"Calling Business function C from A (BSFNLevel = 2)",
                   "Calling Business function D from C (BSFNLevel = 3)",
                   "Return value is 2 for D. (BSFNLevel = 3)", "Return value is 0 for C. (BSFNLevel = 2)"});
    }
    tree.Grow(more);
    tree.FillThread();
    int marked = 0;
    for (const CDetailTree::Node node : tree.AllNodes()) {
        marked += tree.m_tree.Image(node) == IMAGE_OK_FAILED_BELOW ? 1 : 0;
    }
    EXPECT_EQ(marked, 1000);
}

} // namespace carvelot::test
