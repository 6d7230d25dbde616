// ThreadView.h - the session window's left side: processes and threads, or users. A selection here rebuilds
// the title, the call tree and the shared panes.
#pragma once

#include "session/SessionHost.h"
#include "ui/kit/TreeCtrl.h"
#include "ui/session/ThreadTreeModel.h"

namespace carvelot {

class CDetailView;
class CSessionDocument;

class CThreadView final : public CTreeCtrl, public IThreadTreeView {
    Q_OBJECT

public:
    // Enters itself in the document's session.
    explicit CThreadView(CSessionDocument& document);
    ~CThreadView() override;

    void ClearTree() override;
    void FillProcessTree() override;
    void FillUserTree() override;
    bool IsProcessSelected(std::uint32_t processID) const override;
    void SelectThread(const CThread& thread) override;
    void SelectUser(const CJASUser& user) override;

    // Fills the shared panes from the selection; without one they are emptied.
    void RefreshPanes();

    // The session has grown: all that shows its selection shows it again, and stays where it stands.
    void ShowGrowth();

    CThreadTreeModel& Model() { return m_model; }

protected:
    void OnSelectionChanged() override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void ShowMenu(const QModelIndex& index, const QPoint& screen);
    CDetailView* DetailView() const;

    CSessionDocument& m_document;
    CThreadTreeModel m_model;
};

} // namespace carvelot
