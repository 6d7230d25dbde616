// CallProfileFrame.h - the window "Call Profile": functions, who calls them and whom they call, and the tree
// of all calls.
#pragma once

#include "explore/lists/EdgeRows.h"
#include "explore/lists/FunctionRows.h"
#include "ui/explore/CallTreeModel.h"
#include "ui/explore/ExploreFrame.h"
#include "ui/kit/ListedRows.h"

#include <memory>
#include <optional>

namespace carvelot {

class CCallProfileFrame : public CExploreFrame {
    Q_OBJECT

public:
    explicit CCallProfileFrame(CExploration& exploration);
    ~CCallProfileFrame() override;

    // Selects a function, now or when the results are there.
    void ShowFunction(std::uint32_t key);

    QList<QWidget*> WindowPanes() const override;

protected:
    void ShowResults() override;
    void ShowScope() override;
    void ShowSelected() override;
    void DropResults() override;
    QString EmptyText() const override;

private:
    void ShowNeighbours();
    void OpenTreeNode(const QModelIndex& index);
    bool SelectKey(std::uint32_t key);

    std::shared_ptr<const ExploredScope> m_pShown; // what all rows are made from
    std::unique_ptr<CCallTreeRows> m_pTreeRows;
    std::optional<std::uint32_t> m_wanted; // key to select when it can be
    CRowList<FunctionRow>* m_pFunctions;
    CRowList<EdgeRow>* m_pCallers;
    CRowList<EdgeRow>* m_pCallees;
    CCallTreeModel m_treeModel;
    CReportView* m_pTree;
};

} // namespace carvelot
