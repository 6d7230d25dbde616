// DetailView.h - the session window's right side: the call tree of what is selected on its left.
#pragma once

#include "session/Selection.h"
#include "session/SessionHost.h"
#include "trees/DetailTree.h"
#include "ui/kit/TreeCtrl.h"
#include "ui/session/DetailTreeModel.h"

namespace carvelot {

class CSessionDocument;

class CDetailView final : public CTreeCtrl, public IDetailTreeView {
    Q_OBJECT

public:
    // Enters itself in the document's session.
    explicit CDetailView(CSessionDocument& document);
    ~CDetailView() override;

    void ResetTree() override;
    void SelectRecord(RecordIndex record) override;
    void SetFocusToTree() override;

    // Shows the records of what is selected; of nothing, what is shown stays.
    void Show(const Selection& selection);
    // The same after the session has grown: what was open, selected and on the screen stays so.
    void ShowGrowth(const Selection& selection);
    // See CDetailTree. A single thread's fill takes the font from the settings anew.
    void FillDetails(bool singleThread, std::span<const RecordIndex> records);
    // Off: several changes follow that are shown together when it is switched on again.
    void SetRedraw(bool redraw);

    const CDetailTree& Tree() const { return m_tree; }
    CDetailTreeModel& Model() { return m_model; }

protected:
    void OnSelectionChanged() override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void OnCopyParms();
    void TakeFont();

    CSessionDocument& m_document;
    CDetailTree m_tree;
    CDetailTreeModel m_model;
    bool m_bRedraw = true;
    bool m_bFont = false; // the tree has got its font
};

} // namespace carvelot
