// TimingGapsPane.h - the pane "Timing Gaps": where a thread fell silent for longer than the threshold.
#pragma once

#include "lists/RowSource.h"
#include "ui/kit/DockablePane.h"
#include "ui/kit/ListCtrl.h"
#include "ui/session/SessionReference.h"

namespace carvelot {

class CTimingGapsPane : public CDockablePane {
    Q_OBJECT

public:
    CTimingGapsPane();

    CListCtrl& List() { return *m_pList; }
    // All gaps of the session, the latest on top.
    void FillList(CSessionDocument& document);
    void ClearList();
    // To be called before a session's records go: empties the list if it shows them.
    void LetGo(const CCarvelotDoc& session);
    QWidget* MainControl() const override { return m_pList; }

protected:
    void OnSize(int nWidth, int nHeight) override;

private:
    void ShowRows(CSessionDocument& document, std::vector<GapRow> listRows);
    void OnContextMenu(const QPoint& point);
    void OnExport();

    CRecordSource<GapRow> m_rows;
    CSessionReference m_session; // whose records the rows are
    CListCtrl* m_pList;
};

} // namespace carvelot
