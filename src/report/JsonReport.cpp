#include "report/JsonReport.h"

#include "report/RecordJson.h"

#include <limits>
#include <ostream>
#include <string_view>

namespace carvelot {

namespace {

void WriteRecord(CJsonWriter& json, const CLogDetail& detail) {
    const CJsonWriter::CObject object(json);
    json.Member("kind", static_cast<std::int32_t>(detail.m_nKind));
    json.Member("returnCode", detail.m_nReturnCode);
    json.Member("month", detail.m_strMonth);
    json.Member("day", detail.m_nDay);
    json.Member("hour", detail.m_nHour);
    json.Member("minute", detail.m_nMinute);
    json.Member("second", detail.m_nSecond);
    json.Member("microsecond", detail.m_nMicrosecond);
    json.Member("time", detail.m_nTime);
    json.Member("process", detail.m_nProcessID);
    json.Member("thread", detail.m_nThreadID);
    json.Member("label", std::string_view(detail.m_strThreadLabel.Joined()));
    json.Member("text", detail.m_strText);
    json.Member("name", detail.m_strName);
    json.Member("table", detail.m_strTable);
    json.Member("sqlOperation", static_cast<std::int32_t>(detail.m_nSQLOperation));
    json.Member("level", detail.m_strLevel);
    json.Member("user", detail.m_strUser);
    json.Member("source", detail.m_strSource);
    json.Member("duration", detail.m_fDuration);
    json.Member("gap", detail.m_fGap);
    json.Member("ube", detail.m_bUBE);
    json.Member("ubeLevel", detail.m_nUBELevel);
}

void WriteSQL(CJsonWriter& json, const CSQLAnalysis& analysis) {
    json.Key("sql");
    const CJsonWriter::CObject object(json);
    json.Key("tables");
    {
        const CJsonWriter::CArray tables(json);
        for (const auto& table : analysis.m_listTables) {
            const CJsonWriter::CObject entry(json);
            json.Member("table", table.m_strTable);
            json.Member("selects", table.m_nSelects);
            json.Member("inserts", table.m_nInserts);
            json.Member("updates", table.m_nUpdates);
            json.Member("deletes", table.m_nDeletes);
        }
    }
    WriteRecords(json, "longTasks", analysis.m_listLongTasks);
}

void WriteBSFN(CJsonWriter& json, const CDetailList& details, const CBSFNAnalysis& analysis) {
    json.Key("bsfn");
    const CJsonWriter::CObject object(json);
    json.Key("functions");
    {
        const CJsonWriter::CArray functions(json);
        for (const auto& function : analysis.m_functions) {
            const CJsonWriter::CObject entry(json);
            json.Member("name", function.m_strName);
            json.Member("location", function.m_strLocation);
            json.Member("calls", static_cast<std::uint64_t>(function.m_instances.size()));
            json.Member("total", function.m_totalTime);
            json.Member("shortest", function.m_shortest);
            json.Member("longest", function.m_longest);
            json.Key("instances");
            const CJsonWriter::CArray instances(json);
            for (const auto& instance : function.m_instances) {
                const CJsonWriter::CObject call(json);
                json.Member("record", IndexOf(instance.m_pStart));
                json.Member("level", instance.m_level);
                json.Member("start", details.Time(instance.m_pStart));
                json.Member("end", instance.m_endTime);
                json.Member("duration", instance.m_duration);
                json.Member("result", instance.m_result);
            }
        }
    }
    WriteRecords(json, "longTasks", analysis.m_listLongTasks);
}

void WriteCache(CJsonWriter& json, const CDetailList& details, const CCacheAnalysis::CCache& cache) {
    const CJsonWriter::CObject object(json);
    json.Member("name", cache.m_strName);
    json.Member("handle", cache.m_strHandle);
    json.Member("instance", cache.m_strInstance);
    json.Member("process", cache.m_processId);
    json.Member("instanceCount", cache.m_instanceCount);
    json.Key("operations");
    {
        const CJsonWriter::CArray operations(json);
        for (const auto& operation : cache.m_operations) {
            const CJsonWriter::CObject entry(json);
            json.Member("record", IndexOf(operation.m_pRecord));
            json.Member("op", static_cast<std::int32_t>(operation.m_op));
            json.Member("text", std::string_view(CCacheAnalysis::OperationText(details, operation)));
            json.Member("image", operation.Image());
        }
    }
    json.Key("cursors");
    const CJsonWriter::CArray cursors(json);
    for (const auto& cursor : cache.m_cursors) {
        const CJsonWriter::CObject entry(json);
        json.Member("handle", cursor.m_strHandle);
        json.Member("open", IndexOf(cursor.m_pOpen));
        json.Member("close", IndexOf(cursor.m_pClose));
    }
}

void WriteProcess(CJsonWriter& json, const CDetailList& details, const CProcess& process) {
    const CJsonWriter::CObject object(json);
    json.Member("id", process.m_nProcessID);
    json.Member("startTime", process.m_nStartTime);
    json.Member("endTime", process.m_nEndTime);
    WriteRecords(json, "errors", process.m_listErrors);
    WriteSQL(json, process.m_pSQLAnalysis);
    WriteBSFN(json, details, process.m_pBSFNAnalysis);
    json.Key("caches");
    {
        const CJsonWriter::CArray caches(json);
        for (const auto& cache : process.m_pCacheAnalysis.m_caches) {
            WriteCache(json, details, cache);
        }
    }
    json.Key("threads");
    const CJsonWriter::CArray threads(json);
    for (const auto& thread : process.m_listThreads) {
        const CJsonWriter::CObject entry(json);
        json.Member("id", thread->m_nThreadID);
        json.Member("startTime", thread->m_nStartTime);
        json.Member("endTime", thread->m_nEndTime);
        WriteRecords(json, "details", thread->m_listDetails);
        WriteRecords(json, "errors", thread->m_listErrors);
        WriteSQL(json, thread->m_pSQLAnalysis);
        WriteBSFN(json, details, thread->m_pBSFNAnalysis);
    }
}

} // namespace

void WriteSessionJson(const CCarvelotDoc& session, const std::string& log, std::ostream& out) {
    CJsonWriter json(out);
    const CJsonWriter::CObject object(json);
    json.Member("log", std::string_view(log));
    json.Member("format", std::string_view(session.m_nLogFormat == LOG_FORMAT_JAS ? "jas" : "debug"));
    json.Member("textColumn", session.m_nTextColumn);
    json.Member("tabCount", session.m_nTabCount);
    json.Member("dashForm", std::int32_t{session.m_bDashForm ? 1 : 0});
    json.Member("ube", session.m_bUBELog);
    json.Key("records");
    {
        const CJsonWriter::CArray records(json);
        for (std::uint32_t i = 0; i < session.m_listDetails.Size(); ++i) {
            WriteRecord(json, session.m_listDetails[RecordIndex{i}]);
        }
    }
    json.Key("processes");
    {
        const CJsonWriter::CArray processes(json);
        for (const auto& process : session.m_listProcesses) {
            WriteProcess(json, session.m_listDetails, *process);
        }
    }
    json.Key("users");
    {
        const CJsonWriter::CArray users(json);
        for (const auto& user : session.m_listUsers) {
            const CJsonWriter::CObject entry(json);
            json.Member("name", std::string_view(user->m_strUser));
            WriteRecords(json, "details", user->m_listDetails);
            WriteRecords(json, "errors", user->m_listErrors);
            WriteSQL(json, user->m_pSQLAnalysis);
            WriteBSFN(json, session.m_listDetails, user->m_pBSFNAnalysis);
        }
    }
    WriteRecords(json, "gaps", session.m_listGaps);
}

void WriteTreeJson(const CDetailTree& tree, const std::string& scope, std::ostream& out) {
    CJsonWriter json(out);
    const CJsonWriter::CObject object(json);
    json.Member("scope", std::string_view(scope));
    json.Key("nodes");
    json.StartArray();
    // A call tree can be as deep as its log is long, so the walk keeps its own way back.
    struct Level {
        CDetailTree::Node parent;
        std::size_t next;
    };
    std::vector<Level> levels{{CDetailTree::kRoot, 0}};
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next < tree.ChildCount(level.parent)) {
            const CDetailTree::Node node = tree.Child(level.parent, level.next++);
            json.StartObject();
            json.Member("text", std::string_view(tree.Text(node)));
            json.Member("image", std::int32_t{tree.Image(node)});
            json.Member("record", IndexOf(tree.Record(node)));
            json.Key("children");
            json.StartArray();
            levels.push_back({node, 0});
        } else {
            json.EndArray();
            levels.pop_back();
            if (!levels.empty()) {
                json.EndObject();
            }
        }
    }
}

void WriteHitsJson(const std::vector<RecordIndex>& hits, std::ostream& out) {
    CJsonWriter json(out);
    const CJsonWriter::CObject object(json);
    WriteRecords(json, "hits", hits);
}

} // namespace carvelot
