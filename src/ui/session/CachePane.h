// CachePane.h - the pane "Cache Details": the caches of the selected process and what was done to them.
#pragma once

#include "ui/kit/DockablePane.h"
#include "ui/kit/TreeCtrl.h"
#include "ui/session/CacheTreeModel.h"
#include "ui/session/SessionReference.h"

#include <functional>

namespace carvelot {

// Caches at the top, their operations below. A double click opens the operation's record and folds nothing; a
// right click on a cache that still lives in its process offers to browse its data.
class CCacheTree final : public CTreeCtrl {
    Q_OBJECT

public:
    CCacheTree(CCacheTreeModel& model, const QString& accessibleName, QWidget* parent);

    void ShowGrowth();

    // Answers a double click or Enter on an operation.
    std::function<void(RecordIndex record)> m_fnOpenRecord;
    // Does a cache still answer in its process? And the wish to browse one that does.
    std::function<bool(const CCacheAnalysis::CCache& cache)> m_fnIsLive;
    std::function<void(const CCacheAnalysis::CCache& cache)> m_fnBrowse;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void OpenSelected();
    void OfferMenu(const QModelIndex& index, const QPoint& screen);
    void OnBrowseData();

    CCacheTreeModel& m_model;
};

class CCachePane : public CDockablePane {
    Q_OBJECT

public:
    CCachePane();
    ~CCachePane() override;

    CCacheTree& Tree() { return *m_pTree; }
    CCacheTreeModel& Model() { return *m_pModel; }
    // The images of the tree, 16 by 15 pixels.
    const QList<QIcon>& Images() const { return m_listImages; }
    void FillTree(CSessionDocument& document, const CCacheAnalysis& analysis);
    void ClearTree();
    // The session has grown: where the tree shows its caches it shows what came.
    void ShowGrowth(const CCarvelotDoc& session);
    // To be called before a session's caches go: empties the tree if it shows them.
    void LetGo(const CCarvelotDoc& session);
    QWidget* MainControl() const override { return m_pTree; }

protected:
    void OnSize(int width, int height) override;

private:
    CCacheTree* m_pTree;
    QList<QIcon> m_listImages;
    std::unique_ptr<CCacheTreeModel> m_pModel;
    CSessionReference m_session; // whose caches the tree shows
};

} // namespace carvelot
