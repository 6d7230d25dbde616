// OverviewFrame.h - the window "Overview": what one reads first.
#pragma once

#include "explore/lists/OverviewRows.h"
#include "ui/explore/ExploreFrame.h"
#include "ui/kit/ListedRows.h"

class QLabel;

namespace carvelot {

class COverviewFrame : public CExploreFrame {
    Q_OBJECT

public:
    explicit COverviewFrame(CExploration& exploration);

    QList<QWidget*> WindowPanes() const override;

signals:
    // A row leads to the window that shows it whole.
    void FindingWanted(std::size_t finding);
    void FunctionWanted(std::uint32_t key);
    void ShapeWanted(std::uint32_t shape);
    void AboutWanted();

protected:
    void ShowResults() override;
    void ShowScope() override;
    void DropResults() override;

private:
    QLabel* m_pLine;
    CRowList<OverviewFinding>* m_pFindings;
    CRowList<OverviewCost>* m_pFunctions;
    CRowList<OverviewCost>* m_pStatements;
};

} // namespace carvelot
