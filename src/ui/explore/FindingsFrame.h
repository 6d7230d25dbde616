// FindingsFrame.h - the window "Findings": what asks for a look, and the records of the selected one.
#pragma once

#include "explore/lists/ExploredSource.h"
#include "explore/lists/FindingRows.h"
#include "ui/explore/ExploreFrame.h"
#include "ui/kit/ListedRows.h"

class QLabel;

namespace carvelot {

class CFindingsFrame : public CExploreFrame {
    Q_OBJECT

public:
    explicit CFindingsFrame(CExploration& exploration);

    QList<QWidget*> WindowPanes() const override;
    // By its place among all findings.
    void SelectFinding(std::size_t finding);

protected:
    void ShowResults() override;
    void ShowScope() override;
    void ShowSelected() override;
    void DropResults() override;
    QString EmptyText() const override;

private:
    using CFindingList = CRowList<FindingRow, CFindingSource>;
    using CRecordList = CRowList<FindingRecordRow, CExploredSource<FindingRecordRow>>;

    void OpenFinding(int row);
    void OpenRecord(int row);
    void ShowFinding();
    void ShowStanding();
    void SelectRecord(int row);

    QLabel* m_pCounts;
    CFindingList* m_pFindings;
    QLabel* m_pMeaning; // of the selected one
    CRecordList* m_pRecords;
    bool m_bFilling = false;
};

} // namespace carvelot
