// TimingGapsPane.h - the pane "Timing Gaps": where a thread fell silent for longer than the threshold.
#pragma once

#include "ui/session/RecordListPane.h"

namespace carvelot {

class CTimingGapsPane : public CRecordListPane<GapRow> {
    Q_OBJECT

public:
    CTimingGapsPane();

    // All gaps of the session, the latest on top.
    void FillList(CSessionDocument& document) { ShowRecords(document, MakeGapRows(document.Session())); }

private:
    void OnContextMenu(const QPoint& point);
    void OnExport();
};

} // namespace carvelot
