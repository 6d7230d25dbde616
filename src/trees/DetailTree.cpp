#include "trees/DetailTree.h"

#include "records/NodeText.h"
#include "text/TextColumns.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <unordered_map>

namespace carvelot {

namespace {

bool IsParameter(LogKind kind) { return kind == LOG_PARM_IN || kind == LOG_PARM_OUT; }

// The image that a record starts from, before its kind has the last word: most kinds go on with the image of
// the record before, so a call that never returns keeps showing that. And the last word. Looked up in tables:
// which kind comes next cannot be guessed.
struct CKindImages {
    static constexpr std::int8_t kNone = -1;

    std::array<std::int8_t, 32> start{}; // kNone for the previous record's
    std::array<std::int8_t, 32> last{};  // kNone for what it started from

    constexpr CKindImages() {
        start.fill(kNone);
        start[LOG_JDB_ERROR] = IMAGE_FAILED;
        start[LOG_SEVERE] = IMAGE_FAILED;
        start[LOG_UBE] = IMAGE_UBE;
        start[LOG_MANDATORY] = IMAGE_INFORMATION;
        start[LOG_WARN] = IMAGE_WARNING;
        last.fill(kNone);
        last[LOG_GAP] = IMAGE_GAP;
        last[LOG_EVENT_START] = IMAGE_ER;
        last[LOG_ER_LINE] = IMAGE_ER;
        last[LOG_CACHE] = IMAGE_CACHE;
        last[LOG_ERROR] = IMAGE_FAILED;
        last[LOG_SQL] = IMAGE_SQL;
        last[LOG_MESSAGE] = IMAGE_INFORMATION;
        last[LOG_OBJECT_CALL] = IMAGE_OBJECT_CALL;
    }

    int Start(LogKind kind, int previous) const { return start[kind] == kNone ? previous : start[kind]; }
    int Final(LogKind kind, int started) const { return last[kind] == kNone ? started : last[kind]; }
};
constexpr CKindImages kImages;

} // namespace

void CDetailTree::ResetTree() {
    m_nodes.clear();
    m_bLaidOut = false;
}

CDetailTree::Node CDetailTree::Add(Node parent, RecordIndex record, int image, NodeKind kind) {
    m_nodes.push_back({record, parent, static_cast<std::uint8_t>(image), kind, false, false});
    return static_cast<Node>(m_nodes.size() - 1);
}

bool CDetailTree::HasFailedBelow(Node node) const {
    const RecordIndex record = m_nodes[node].record;
    return record != kNoRecord && Number(record) < m_failedBelow.size() && m_failedBelow[Number(record)];
}

void CDetailTree::MarkFailedBelow(Node node) {
    const RecordIndex record = m_nodes[node].record;
    if (record != kNoRecord) {
        if (m_failedBelow.size() <= Number(record)) {
            m_failedBelow.resize(m_session.m_listDetails.Size());
        }
        m_failedBelow[Number(record)] = true;
    }
}

void CDetailTree::FillDetails(bool singleThread, std::span<const RecordIndex> records) {
    if (singleThread) {
        ResetTree();
    }
    if (m_nMarkedLoad != m_session.LoadIdentity()) {
        m_failedBelow.clear();
        m_nMarkedLoad = m_session.LoadIdentity();
    }
    m_bSingleThread = singleThread;
    m_bLaidOut = false;
    const CDetailList& details = m_session.m_listDetails;
    const bool ubeLog = m_session.m_bUBELog;
    // A process is filled thread by thread: room grows by leaps, not by each thread's records.
    if (m_nodes.size() + records.size() > m_nodes.capacity()) {
        m_nodes.reserve(std::max(m_nodes.size() + records.size(), m_nodes.capacity() * 2));
    }

    Node parent = kRoot;
    Node last = kRoot;
    int previousImage = 0;
    bool inParms = false;
    bool outParms = false;
    Node ubeRoot = kRoot;
    Node ubeParent = kRoot;
    bool ubeRootHasChild = false;
    if (ubeLog) {
        ubeRoot = ubeParent = Add(kRoot, kNoRecord, IMAGE_UBE, NodeKind::Ube);
    }
    const auto parentOf = [&](Node node) { return node == kRoot ? kRoot : m_nodes[node].parent; };

    for (const RecordIndex record : records) {
        const LogKind kind = details.Kind(record);
        if (kind == LOG_NONE) {
            continue;
        }
        // A UBE line between two parameters does not end their group.
        if (inParms && kind != LOG_PARM_IN && kind != LOG_UBE) {
            parent = parentOf(parent);
            inParms = false;
        }
        if (outParms && kind != LOG_PARM_OUT && kind != LOG_UBE) {
            parent = parentOf(parent);
            outParms = false;
        }
        int image = kImages.Start(kind, previousImage);
        if (kind == LOG_RETURN) {
            const std::int32_t code = details.ReturnCode(record);
            image = code == 0 ? IMAGE_OK : code == 1 ? IMAGE_WARNING : IMAGE_FAILED;
            if (parent != kRoot) {
                int callImage = image;
                if (code <= 1 && HasFailedBelow(parent)) {
                    callImage = code == 0 ? IMAGE_OK_FAILED_BELOW : IMAGE_WARNING_FAILED_BELOW;
                }
                m_nodes[parent].image = static_cast<std::uint8_t>(callImage);
                if (code == 2) {
                    for (Node above = parentOf(parent); above != kRoot && !m_nodes[above].passed;
                         above = parentOf(above)) {
                        m_nodes[above].passed = true;
                        MarkFailedBelow(above);
                    }
                }
            }
        } else if (kind == LOG_PARM_IN) {
            image = IMAGE_PARM_IN;
            if (!inParms) {
                parent = last = Add(parent, record, image, NodeKind::ParmsIn);
                inParms = true;
            }
        } else if (kind == LOG_PARM_OUT) {
            image = IMAGE_PARM_OUT;
            if (!outParms) {
                parent = last = Add(parent, kNoRecord, image, NodeKind::ParmsOut);
                outParms = true;
            }
        }
        image = kImages.Final(kind, image);
        previousImage = image;

        const bool isUBE = ubeLog && details.IsUBE(record);
        const std::int32_t ubeLevel = isUBE ? details.UBELevel(record) : 0;
        const bool hidden = (kind == LOG_EVENT_END || kind == LOG_SQL_DONE) && !(details.Gap(record) > 0);
        if (!hidden) {
            const Node under = !isUBE ? parent : ubeLevel == 2 ? ubeRoot : ubeParent;
            last = Add(under, record, image, NodeKind::Record);
            ubeRootHasChild = ubeRootHasChild || (ubeLog && under == ubeRoot);
        }
        if ((kind == LOG_RETURN || kind == LOG_EVENT_END) && parent != kRoot) {
            parent = parentOf(parent);
        }
        if (kind == LOG_CALL || kind == LOG_ON || kind == LOG_EVENT_START) {
            parent = last;
        }
        if (isUBE && ubeLevel == 2) {
            ubeParent = last;
        }
    }
    if (ubeLog && !ubeRootHasChild) {
        m_nodes[ubeRoot].removed = true;
    }
}

void CDetailTree::LayOut() const {
    m_firstChild.assign(m_nodes.size() + 3, 0);
    m_children.resize(m_nodes.size());
    // Counts first, two places further on than they belong. The running sum puts each parent's first place
    // one further on, and handing the places out moves it on to the next parent's, which is where that
    // belongs.
    for (const NodeData& node : m_nodes) {
        if (!node.removed) {
            ++m_firstChild[SlotOf(node.parent) + 2];
        }
    }
    std::partial_sum(m_firstChild.begin(), m_firstChild.end(), m_firstChild.begin());
    for (Node node = 0; node < m_nodes.size(); ++node) {
        if (!m_nodes[node].removed) {
            m_children[m_firstChild[SlotOf(m_nodes[node].parent) + 1]++] = node;
        }
    }
    m_bLaidOut = true;
}

std::size_t CDetailTree::ChildCount(Node parent) const {
    if (!m_bLaidOut) {
        LayOut();
    }
    const std::size_t slot = SlotOf(parent);
    return m_firstChild[slot + 1] - m_firstChild[slot];
}

CDetailTree::Node CDetailTree::Child(Node parent, std::size_t row) const {
    if (!m_bLaidOut) {
        LayOut();
    }
    return m_children[m_firstChild[SlotOf(parent)] + row];
}

std::size_t CDetailTree::Row(Node node) const {
    if (!m_bLaidOut) {
        LayOut();
    }
    // The children of a node stand in the order of their numbers.
    const std::size_t slot = SlotOf(m_nodes[node].parent);
    const auto first = m_children.begin() + m_firstChild[slot];
    const auto end = m_children.begin() + m_firstChild[slot + 1];
    return static_cast<std::size_t>(std::lower_bound(first, end, node) - first);
}

std::string CDetailTree::Text(Node node) const {
    const NodeData& data = m_nodes[node];
    switch (data.kind) {
    case NodeKind::Ube:
        return "UBE";
    case NodeKind::ParmsIn:
        return "PARMS IN";
    case NodeKind::ParmsOut:
        return "PARMS OUT";
    case NodeKind::Record:
        break;
    }
    const CLogDetail detail = m_session.m_listDetails[data.record];
    std::string text;
    if (!m_bSingleThread) {
        text.append("(").append(IdText(detail.m_nThreadID)).append(")");
    }
    if (detail.m_nKind != LOG_UBE && !IsParameter(detail.m_nKind)) {
        text.append(TimeStampText(detail));
    }
    if (detail.m_fDuration > 0) {
        text.append("(").append(SecondsText(detail.m_fDuration)).append(") ");
    }
    if (m_session.m_nLogFormat == LOG_FORMAT_JAS) {
        text.append("[").append(detail.m_strSource).append("] ");
    }
    return text.append(IsAboveBlank(detail.m_strName) ? detail.m_strName : detail.m_strText);
}

CDetailTree::Node CDetailTree::NodeOf(RecordIndex record) const {
    for (Node node = 0; node < m_nodes.size(); ++node) {
        if (m_nodes[node].record == record && m_nodes[node].kind == NodeKind::Record) {
            return node;
        }
    }
    return kRoot;
}

CDetailTree::NodeKey CDetailTree::KeyOf(Node node) const {
    const NodeData& data = m_nodes[node];
    const bool borrows = data.record == kNoRecord && node + 1 < m_nodes.size();
    return {m_nodes[borrows ? node + 1 : node].record, static_cast<std::uint8_t>(data.kind)};
}

std::vector<CDetailTree::Node> CDetailTree::NodesOf(std::span<const NodeKey> keys,
                                                    std::span<const Node> before) const {
    const auto wordOf = [](const NodeKey& key) {
        return (std::uint64_t{Number(key.record)} << 8U) | key.kind;
    };
    std::vector<Node> nodes(keys.size(), kRoot);
    std::unordered_map<std::uint64_t, Node> sought;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        // Most logs grow at the end of what is shown.
        if (before[i] < m_nodes.size() && KeyOf(before[i]) == keys[i]) {
            nodes[i] = before[i];
        } else {
            sought.emplace(wordOf(keys[i]), kRoot);
        }
    }
    for (Node node = 0; !sought.empty() && node < m_nodes.size(); ++node) {
        const auto found = sought.find(wordOf(KeyOf(node)));
        if (found != sought.end() && found->second == kRoot && !m_nodes[node].removed) {
            found->second = node;
        }
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (const auto found = sought.find(wordOf(keys[i])); nodes[i] == kRoot && found != sought.end()) {
            nodes[i] = found->second;
        }
    }
    return nodes;
}

std::string CDetailTree::RawText(Node node) const {
    const RecordIndex record = m_nodes[node].record;
    return record == kNoRecord ? Text(node) : std::string(m_session.m_listDetails.Text(record));
}

bool CDetailTree::OffersCopyParms(Node node) const {
    const RecordIndex record = m_nodes[node].record;
    return record != kNoRecord && m_session.m_listDetails.Kind(record) == LOG_PARM_IN;
}

std::string CDetailTree::CopyParmsText(Node node) const {
    const Node group = ChildCount(node) > 0 ? node : Parent(node);
    std::string text = "   ";
    for (std::size_t row = 0; row < ChildCount(group); ++row) {
        const RecordIndex record = Record(Child(group, row));
        if (record != kNoRecord) {
            text.append(m_session.m_listDetails.Text(record)).append("   ");
        }
    }
    // The clipboard gets one character less than the text has.
    text.pop_back();
    return text;
}

} // namespace carvelot
