#include "report/CompareJson.h"

#include "text/JsonWriter.h"

namespace carvelot {

namespace {

void WriteNumber(CJsonWriter& json, std::string_view key, ComparedNumber number) {
    json.Key(key);
    const CJsonWriter::CObject object(json);
    json.Member("base", number.base);
    json.Member("log", number.log);
    json.Member("difference", number.Difference());
}

void WriteFunctions(CJsonWriter& json, const std::vector<ComparedFunction>& functions) {
    json.Key("functions");
    const CJsonWriter::CArray array(json);
    for (const ComparedFunction& function : functions) {
        const CJsonWriter::CObject entry(json);
        json.Member("kind", NameOf(function.kind));
        json.Member("name", function.name);
        json.Member("in", NameOf(function.in));
        WriteNumber(json, "calls", function.calls);
        WriteNumber(json, "unclosed", function.unclosed);
        WriteNumber(json, "failed", function.failed);
        WriteNumber(json, "warned", function.warned);
        WriteNumber(json, "total", function.total);
        WriteNumber(json, "self", function.self);
        WriteNumber(json, "shortest", function.shortest);
        WriteNumber(json, "longest", function.longest);
        WriteNumber(json, "p50", function.p50);
        WriteNumber(json, "p95", function.p95);
    }
}

void WriteShapes(CJsonWriter& json, const std::vector<ComparedShape>& shapes) {
    json.Key("shapes");
    const CJsonWriter::CArray array(json);
    for (const ComparedShape& shape : shapes) {
        const CJsonWriter::CObject entry(json);
        json.Member("shape", shape.text);
        json.Member("in", NameOf(shape.in));
        WriteNumber(json, "count", shape.count);
        WriteNumber(json, "total", shape.total);
        WriteNumber(json, "longest", shape.longest);
        WriteNumber(json, "p95", shape.p95);
    }
}

void WriteFindings(CJsonWriter& json, const std::vector<ComparedFinding>& findings) {
    json.Key("findings");
    const CJsonWriter::CArray array(json);
    for (const ComparedFinding& finding : findings) {
        const CJsonWriter::CObject entry(json);
        json.Member("rule", NameOf(finding.rule));
        json.Member("subject", finding.subject);
        json.Member("in", NameOf(finding.in));
        WriteNumber(json, "count", finding.count);
        WriteNumber(json, "cost", finding.cost);
    }
}

} // namespace

void WriteComparisonJson(const Comparison& comparison, const std::string& base, const std::string& log,
                         std::ostream& out) {
    CJsonWriter json(out);
    const CJsonWriter::CObject whole(json);
    json.Member("base", std::string_view(base));
    json.Member("log", std::string_view(log));
    WriteFunctions(json, comparison.functions);
    WriteShapes(json, comparison.shapes);
    WriteFindings(json, comparison.findings);
}

} // namespace carvelot
