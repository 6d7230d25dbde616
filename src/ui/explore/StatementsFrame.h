// StatementsFrame.h - the window "SQL Statements": shapes above, below them what ran the selected one.
#pragma once

#include "explore/lists/ExploredSource.h"
#include "explore/lists/StatementRows.h"
#include "ui/explore/ExploreFrame.h"
#include "ui/kit/ListedRows.h"

#include <memory>

class QPlainTextEdit;

namespace carvelot {

class CStatementsFrame : public CExploreFrame {
    Q_OBJECT

public:
    explicit CStatementsFrame(CExploration& exploration);

    QList<QWidget*> WindowPanes() const override;
    // Shows the runs of a shape, as soon as there are any.
    void SelectShape(std::uint32_t shape);

protected:
    void ShowResults() override;
    void ShowScope() override;
    void ShowSelected() override;
    void DropResults() override;
    QString EmptyText() const override;

private:
    template <class TRow> using CExploredList = CRowList<TRow, CExploredSource<TRow>>;

    void ShowShape(int row);
    void OnShapeRow();
    void OnExecutionRow();
    void MarkSelected();
    RecordIndex RecordOf(const ExecutionRow& row) const;

    CExploredList<ShapeRow>* m_pShapes;
    QPlainTextEdit* m_pText; // of what is selected, whole
    CExploredList<ExecutionRow>* m_pExecutions;
    CExploredList<ShapeCallerRow>* m_pCallers;
    std::shared_ptr<const ExploredScope> m_pScope; // whose rows are shown
    std::uint32_t m_nShape = kNoShape;             // whose runs are shown, or are to be
    bool m_bFilling = false;
};

} // namespace carvelot
