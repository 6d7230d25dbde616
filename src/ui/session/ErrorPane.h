// ErrorPane.h - the pane "Errors/Warnings": the errors and warnings of the selection.
#pragma once

#include "lists/RowSource.h"
#include "ui/kit/DockablePane.h"
#include "ui/kit/ListCtrl.h"
#include "ui/session/SessionReference.h"

namespace carvelot {

class CErrorPane : public CDockablePane {
    Q_OBJECT

public:
    CErrorPane();

    CListCtrl& List() { return *m_pList; }
    // The last one of the list on top.
    void FillList(CSessionDocument& document, const std::vector<RecordIndex>& listErrors);
    void FillList(CSessionDocument& document, const CHeadList<RecordIndex>& listErrors);
    void ClearList();
    // To be called before a session's records go: empties the list if it shows them.
    void LetGo(const CCarvelotDoc& session);
    QWidget* MainControl() const override { return m_pList; }

protected:
    void OnSize(int nWidth, int nHeight) override;

private:
    void ShowRows(CSessionDocument& document, std::vector<ErrorRow> listRows);

    CRecordSource<ErrorRow> m_rows;
    CSessionReference m_session; // whose records the rows are
    CListCtrl* m_pList;
};

} // namespace carvelot
