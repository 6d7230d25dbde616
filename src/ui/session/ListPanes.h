// ListPanes.h - the panes that differ in nothing but their rows: what each shows stands in its row's table of
// columns (lists/PaneRows.h).
#pragma once

#include "ui/session/RecordListPane.h"

namespace carvelot {

// The business function statistics of the selection.
class CBSFNPane : public CListPane<BSFNRow> {
public:
    CBSFNPane() : CListPane(tr("BSFN Calls"), QStringLiteral("BSFNPane"), {100, 100}) {
        AddCaption();
        AddList();
    }
    void FillList(const CBSFNAnalysis& analysis) { ShowRows(MakeBSFNRows(analysis)); }
};

// How often each table was read and written by the selection.
class CSQLPane : public CListPane<TableRow> {
public:
    CSQLPane() : CListPane(tr("SQL Table Access"), QStringLiteral("SQLPane"), {100, 100}) {
        AddCaption();
        AddList();
    }
    void FillList(const CSQLAnalysis& analysis) { ShowRows(MakeTableRows(analysis)); }
};

// Calls and statements of the selection that took longer than the threshold, the longest first.
class CLongTasksPane : public CRecordListPane<TaskRow> {
public:
    CLongTasksPane() : CRecordListPane(tr("Long Tasks"), QStringLiteral("LongTasksPane")) {
        AddCaption();
        AddList();
    }
    void FillList(CSessionDocument& document, const CBSFNAnalysis& functions,
                  const CSQLAnalysis& statements) {
        ShowRecords(document, MakeTaskRows(document.Session(), functions, statements));
        m_pList->SortBy(TaskRow::DURATION, Qt::DescendingOrder);
    }
};

// The errors and warnings of the selection, the last one of the list on top.
class CErrorPane : public CRecordListPane<ErrorRow> {
public:
    CErrorPane() : CRecordListPane(tr("Errors/Warnings"), QStringLiteral("ErrorPane")) {
        AddCaption();
        AddList();
    }
    template <class TList> void FillList(CSessionDocument& document, const TList& errors) {
        ShowRecords(document, MakeErrorRows(errors));
    }
};

} // namespace carvelot
