#include "report/ExploreJson.h"

#include "report/RecordJson.h"

#include <optional>

namespace carvelot {

namespace {

std::optional<std::uint32_t> IndexOfFrame(std::uint32_t frame) {
    return frame == kNoFrame ? std::nullopt : std::optional(frame);
}

class CExploreJson {
public:
    CExploreJson(const ExploredSession& explored, std::ostream& out)
        : m_explored(explored), m_keys(explored.frames.Keys()), m_json(out) {}

    void Write(const ExploredScope& scope, const std::vector<Finding>& findings, const std::string& log) {
        const CJsonWriter::CObject whole(m_json);
        m_json.Member("log", std::string_view(log));
        WritePieces();
        WriteLines();
        WriteSpan();
        WriteFrames();
        WriteFunctions(scope.profile.m_functions);
        WriteEdges(scope.profile.m_edges);
        WriteTree(scope.profile.m_tree);
        WriteShapes(scope.shapes);
        WriteFindings(findings);
    }

private:
    // A log that is one file has none.
    void WritePieces() {
        if (m_explored.session.m_listPieces.empty()) {
            return;
        }
        m_json.Key("pieces");
        const CJsonWriter::CArray pieces(m_json);
        for (const LogPiece& piece : m_explored.session.m_listPieces) {
            const CJsonWriter::CObject entry(m_json);
            m_json.Member("path", std::string_view(piece.path));
            m_json.Member("firstRecord", piece.firstRecord);
        }
    }

    void WriteLines() {
        const RefusedLines& refused = m_explored.session.Refused();
        const std::uint64_t records = m_explored.session.m_listDetails.Size();
        m_json.Key("lines");
        const CJsonWriter::CObject lines(m_json);
        m_json.Member("total", m_explored.session.m_nLines);
        m_json.Member("words", records + refused.Count());
        m_json.Member("records", records);
        m_json.Member("noTime", refused.noTime);
        m_json.Member("noMonth", refused.noMonth);
        m_json.Member("filtered", refused.filtered);
    }

    void WriteSpan() {
        m_json.Key("span");
        const CJsonWriter::CObject span(m_json);
        m_json.Member("firstRecord", IndexOf(m_explored.clock.FirstRecord().value_or(kNoRecord)));
        m_json.Member("length", m_explored.clock.Length());
    }

    void WriteFrames() {
        std::vector<std::string> streams;
        for (std::uint32_t i = 0; i < m_explored.streams.Count(); ++i) {
            streams.push_back(m_explored.streams.Name(i));
        }
        const CLargeVector<std::int64_t> selfs =
            CCut(m_explored.frames, m_explored.streams, {}, {}).SelfTimes();
        m_json.Key("frames");
        const CJsonWriter::CArray frames(m_json);
        for (std::uint32_t i = 0; i < m_explored.frames.Count(); ++i) {
            const Frame& frame = m_explored.frames[i];
            const CJsonWriter::CObject entry(m_json);
            WriteKey(frame.key);
            m_json.Member("record", Number(frame.record));
            m_json.Member("stream", std::string_view(streams[frame.stream]));
            m_json.Member("parent", IndexOfFrame(frame.parent));
            m_json.Member("start", frame.start);
            m_json.Member("end", frame.end);
            m_json.Member("closed", frame.closed);
            m_json.Member("result", frame.result == kNoResult ? std::nullopt
                                                              : std::optional(std::int32_t{frame.result}));
            m_json.Member("self", selfs[i]);
        }
    }

    void WriteFunctions(const std::vector<FunctionProfile>& functions) {
        m_json.Key("functions");
        const CJsonWriter::CArray array(m_json);
        for (const FunctionProfile& function : functions) {
            const CJsonWriter::CObject entry(m_json);
            WriteKey(function.key);
            m_json.Member("calls", function.calls);
            m_json.Member("unclosed", function.unclosed);
            m_json.Member("failed", function.failed);
            m_json.Member("warned", function.warned);
            m_json.Member("total", function.total);
            m_json.Member("self", function.self);
            m_json.Member("shortest", function.shortest);
            m_json.Member("longest", function.longest);
            m_json.Member("p50", function.p50);
            m_json.Member("p95", function.p95);
        }
    }

    void WriteEdges(const std::vector<CallEdge>& edges) {
        m_json.Key("edges");
        const CJsonWriter::CArray array(m_json);
        for (const CallEdge& edge : edges) {
            const CJsonWriter::CObject entry(m_json);
            WriteKey("caller", edge.caller);
            WriteKey("callee", edge.callee);
            m_json.Member("calls", edge.calls);
            m_json.Member("total", edge.total);
        }
    }

    // A loop, for a hundred thousand calls may stand in one another.
    void WriteTree(const CLargeVector<CallTreeNode>& tree) {
        m_json.Key("tree");
        const CJsonWriter::CArray array(m_json);
        std::uint32_t next = tree.empty() ? CallTreeNode::kNone : 0;
        std::uint32_t parent = CallTreeNode::kNone;
        while (next != CallTreeNode::kNone || parent != CallTreeNode::kNone) {
            if (next == CallTreeNode::kNone) {
                m_json.EndArray();
                m_json.EndObject();
                next = tree[parent].nextSibling;
                parent = tree[parent].parent;
                continue;
            }
            const CallTreeNode& node = tree[next];
            m_json.StartObject();
            WriteKey(node.key);
            m_json.Member("calls", node.calls);
            m_json.Member("total", node.total);
            m_json.Member("self", node.self);
            m_json.Key("children");
            m_json.StartArray();
            parent = next;
            next = node.firstChild;
        }
    }

    void WriteShapes(const std::vector<ShapeProfile>& shapes) {
        m_json.Key("shapes");
        const CJsonWriter::CArray array(m_json);
        for (const ShapeProfile& shape : shapes) {
            const CJsonWriter::CObject entry(m_json);
            m_json.Member("shape", m_explored.shapes.Text(shape.shape));
            m_json.Member("operation", shape.operation);
            m_json.Member("table", shape.table);
            m_json.Member("count", shape.count);
            m_json.Member("total", shape.total);
            m_json.Member("longest", shape.longest);
            m_json.Member("p95", shape.p95);
            m_json.Member("firstRecord", Number(shape.firstRecord));
            m_json.Member("longestRecord", Number(shape.longestRecord));
            WriteKey("topCaller", shape.topCaller);
        }
    }

    void WriteFindings(const std::vector<Finding>& findings) {
        m_json.Key("findings");
        const CJsonWriter::CArray array(m_json);
        for (const Finding& finding : findings) {
            const CJsonWriter::CObject entry(m_json);
            m_json.Member("rule", NameOf(finding.rule));
            m_json.Member("severity", NameOf(SeverityOf(finding.rule)));
            m_json.Member("subject", std::string_view(finding.subject));
            m_json.Member("count", finding.count);
            m_json.Member("cost", finding.cost);
            WriteRecords(m_json, "records", finding.records);
            m_json.Member("text", MeaningOf(finding.rule));
        }
    }

    void WriteKey(std::uint32_t key) {
        m_json.Member("kind", NameOf(m_keys.Kind(key)));
        m_json.Member("name", m_keys.Name(key));
    }
    void WriteKey(std::string_view member, std::uint32_t key) {
        m_json.Key(member);
        if (key == kNoKey) {
            m_json.Value(std::optional<std::uint32_t>());
        } else {
            const CJsonWriter::CObject object(m_json);
            WriteKey(key);
        }
    }

    const ExploredSession& m_explored;
    const CFrameKeys& m_keys;
    CJsonWriter m_json;
};

} // namespace

void WriteExploredJson(const ExploredSession& explored, const ExploredScope& scope,
                       const std::vector<Finding>& findings, const std::string& log, std::ostream& out) {
    CExploreJson(explored, out).Write(scope, findings, log);
}

} // namespace carvelot
