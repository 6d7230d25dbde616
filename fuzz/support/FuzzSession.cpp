#include "support/FuzzSession.h"

#include "lists/FindSource.h"
#include "lists/GapExport.h"
#include "lists/PaneContent.h"
#include "lists/RecordSource.h"
#include "records/NodeText.h"
#include "report/JsonReport.h"
#include "report/TextReport.h"
#include "support/SameSessions.h"
#include "text/RowSource.h"
#include "trees/DetailTree.h"
#include "trees/ThreadTree.h"

#include <rapidjson/document.h>

#include <algorithm>
#include <numeric>
#include <sstream>

namespace carvelot::fuzz {

namespace {

// All nodes of a tree; its texts and JSON.
void WalkTree(const CDetailTree& tree) {
    std::vector<CDetailTree::Node> open{CDetailTree::kRoot};
    std::size_t seen = 0;
    while (!open.empty()) {
        const CDetailTree::Node parent = open.back();
        open.pop_back();
        const std::size_t count = tree.ChildCount(parent);
        for (std::size_t row = 0; row < count; ++row) {
            const CDetailTree::Node node = tree.Child(parent, row);
            ++seen;
            Require(tree.Parent(node) == parent, "a child names its parent");
            Require(tree.Row(node) == row, "a child names its row");
            const int image = tree.Image(node);
            Require(image >= 0 && image < IMAGE_COUNT, "an image is one of the strip");
            (void)tree.Text(node);
            (void)tree.RawText(node);
            if (tree.OffersCopyParms(node)) {
                (void)tree.CopyParmsText(node);
            }
            open.push_back(node);
        }
    }
    Require(seen <= tree.NodeCount(), "each node is met at most once");
    std::ostringstream out;
    WriteTree(tree, out);
    out.str({});
    WriteTreeJson(tree, "scope", out);
    RequireJson(out.str());
}

template <class Source> void SortEveryWay(const Source& source, std::size_t columns) {
    std::vector<std::size_t> order(source.RowCount());
    std::iota(order.begin(), order.end(), std::size_t{0});
    for (int column = 0; column < static_cast<int>(columns); ++column) {
        for (const bool descending : {false, true}) {
            source.Sort(order, column, descending);
        }
        for (std::size_t row = 0; row < source.RowCount(); ++row) {
            (void)source.Text(row, column);
        }
    }
    std::sort(order.begin(), order.end());
    for (std::size_t row = 0; row < order.size(); ++row) {
        Require(order[row] == row, "sorting keeps every row");
    }
}

template <class Row> void SortEveryWay(std::vector<Row> rows) {
    CRowSource<Row> source;
    source.m_listRows = std::move(rows);
    SortEveryWay(source, Row::Columns().size());
}

template <class Row> void SortEveryWay(const CCarvelotDoc& doc, std::vector<Row> rows) {
    CRecordSource<Row> source;
    source.Show(doc, std::move(rows));
    SortEveryWay(source, Row::Columns().size());
}

void WalkAnalyses(const CCarvelotDoc& doc, const CBSFNAnalysis& functions, const CSQLAnalysis& statements) {
    SortEveryWay(MakeBSFNRows(functions));
    SortEveryWay(MakeTableRows(statements));
    SortEveryWay(doc, MakeTaskRows(doc, functions, statements));
    for (const auto& function : functions.m_functions) {
        for (const auto& instance : function.m_instances) {
            Require(Number(instance.m_pStart) < doc.m_listDetails.Size(), "a call names its record");
        }
    }
}

template <class List> void RequireRecords(const CCarvelotDoc& doc, const List& records) {
    for (const RecordIndex record : records) {
        Require(Number(record) < doc.m_listDetails.Size(), "a list names records of its session");
    }
}

} // namespace

void RequireJson(const std::string& text) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseValidateEncodingFlag | rapidjson::kParseFullPrecisionFlag |
                   rapidjson::kParseIterativeFlag>(text.c_str(), text.size());
    Require(!document.HasParseError(), "the JSON is valid");
    Require(document.IsObject(), "the JSON is one object");
}

void WalkRecords(const CFuzzSession& session) {
    const CCarvelotDoc& doc = session.m_doc;
    for (std::uint32_t i = 0; i < doc.m_listDetails.Size(); ++i) {
        const CLogDetail detail = doc.m_listDetails[RecordIndex{i}];
        Require(detail.m_nTime == doc.m_listDetails.Time(RecordIndex{i}), "a record has one time");
        Require(detail.m_strText == doc.m_listDetails.Text(RecordIndex{i}), "a record has one text");
        (void)detail.m_strThreadLabel.Joined();
    }
    RequireRecords(doc, doc.m_listGaps);
    for (const auto& process : doc.m_listProcesses) {
        RequireRecords(doc, process->m_listErrors);
        for (const auto& thread : process->m_listThreads) {
            Require(!thread->m_listDetails.empty(), "a thread keeps its last record");
            RequireRecords(doc, thread->m_listDetails);
            RequireRecords(doc, thread->m_listErrors);
        }
    }
    for (const auto& user : doc.m_listUsers) {
        RequireRecords(doc, user->m_listDetails);
        RequireRecords(doc, user->m_listErrors);
    }
}

void WalkTrees(const CFuzzSession& session) {
    const CCarvelotDoc& doc = session.m_doc;
    CDetailTree tree(doc);
    for (const auto& process : doc.m_listProcesses) {
        (void)ProcessNodeText(doc, *process);
        tree.ResetTree();
        for (const auto& thread : process->m_listThreads) {
            (void)ThreadNodeText(*thread);
            tree.FillDetails(false, thread->m_listDetails);
        }
        WalkTree(tree);
        if (!process->m_listThreads.empty()) {
            tree.FillDetails(true, process->m_listThreads.front()->m_listDetails);
            WalkTree(tree);
        }
    }
    (void)UserImages(doc);
    for (const auto& user : doc.m_listUsers) {
        tree.FillDetails(true, user->m_listDetails);
        WalkTree(tree);
    }
}

void WalkLists(const CFuzzSession& session) {
    const CCarvelotDoc& doc = session.m_doc;
    for (const auto& process : doc.m_listProcesses) {
        (void)TitleOf(doc, Selection(*process));
        (void)CaptionOf(Selection(*process));
        SortEveryWay(doc, MakeErrorRows(process->m_listErrors));
        WalkAnalyses(doc, process->m_pBSFNAnalysis, process->m_pSQLAnalysis);
        for (const auto& cache : process->m_pCacheAnalysis.m_caches) {
            (void)CCacheAnalysis::CacheText(cache);
            for (const auto& operation : cache.m_operations) {
                Require(Number(operation.m_pRecord) < doc.m_listDetails.Size(), "an operation has a record");
                (void)CCacheAnalysis::OperationText(doc.m_listDetails, operation);
                (void)operation.Image();
            }
        }
        for (const auto& thread : process->m_listThreads) {
            (void)TitleOf(doc, Selection(*thread));
            (void)CaptionOf(Selection(*thread));
            WalkAnalyses(doc, thread->m_pBSFNAnalysis, thread->m_pSQLAnalysis);
        }
    }
    for (const auto& user : doc.m_listUsers) {
        (void)TitleOf(doc, Selection(*user));
        (void)CaptionOf(Selection(*user));
        SortEveryWay(doc, MakeErrorRows(user->m_listErrors));
        WalkAnalyses(doc, user->m_pBSFNAnalysis, user->m_pSQLAnalysis);
    }
    SortEveryWay(doc, MakeGapRows(doc));
}

void WalkReports(const CFuzzSession& session) {
    const CCarvelotDoc& doc = session.m_doc;
    std::vector<GapRow> gaps = MakeGapRows(doc);
    (void)ExportGaps(doc, gaps, GapExportFormat::Csv);
    (void)ExportGaps(doc, gaps, GapExportFormat::Text);

    CFindSource source;
    for (const std::string_view text : {"", "a", "JDB", "\xC3\xA4"}) {
        const std::vector<RecordIndex> hits = doc.FindDetails(text);
        RequireRecords(doc, hits);
        std::ostringstream out;
        WriteHits(doc, hits, out);
        source.Show(doc, hits);
    }
    source.LetGo(doc);
    for (std::size_t row = 0; row < source.RowCount(); ++row) {
        (void)source.Text(row, 2);
    }

    std::ostringstream out;
    WriteSummary(doc, "log", out);
    out.str({});
    WriteSessionJson(doc, "log", out);
    RequireJson(out.str());
}

void RequireSameReadPlainly(const CFuzzSession& session, std::string_view log,
                            CFuzzSession::Options options) {
    static CFuzzSession plain;
    options.plain = true;
    plain.Load(log, options);
    const std::string difference = test::DifferenceOf(session.m_doc, plain.m_doc);
    Require(difference.empty(), "read plainly, another outcome: " + difference);
    Require(session.m_pending.statement == plain.m_pending.statement &&
                session.m_pending.parameters == plain.m_pending.parameters,
            "read plainly, another statement awaits its parameters");
}

} // namespace carvelot::fuzz
