// TreeCtrl.h - what the trees of sessions and of caches share.
#pragma once

#include <QTreeView>

#include <functional>
#include <string_view>

namespace carvelot {

// The first 260 characters of a node's text, on one line: a tree shows no more.
QString NodeDisplayText(std::string_view text);

// What a node's tip tells of its text: more than a tree shows, and no more than can be read.
QString NodeTipText(std::string_view text);

// A tree without a header whose nodes all have one height. Its one column is as wide as the widest node that
// has been on the screen since the last fill, so that long nodes are reached by scrolling and no node is
// measured unseen. There is no way to have nothing selected again once a node is selected, but a refill. A
// node that is cut, at the view's edge or for its length, tells its text (the model's tip) below the pointer.
class CTreeCtrl : public QTreeView {
    Q_OBJECT

public:
    explicit CTreeCtrl(const QString& accessibleName, QWidget* parent = nullptr);

    // The selected node, invalid without one. The toolkit's current node is another thing: it moves with the
    // focus.
    QModelIndex SelectedIndex() const;
    // Selects a node and shows it, which opens its ancestors.
    void SelectIndex(const QModelIndex& index);

    void setModel(QAbstractItemModel* model) override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    // A tree that is not on the screen has its rows nowhere: the toolkit tells screen readers by this what
    // shows.
    QRect visualRect(const QModelIndex& index) const override {
        return isVisible() ? QTreeView::visualRect(index) : QRect();
    }

    // Around a change of the model that keeps its nodes: what stands at the top stays there, and a tree that
    // stood at its end stays at its end.
    void ChangeInPlace(const std::function<void()>& change);

protected:
    bool viewportEvent(QEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event = nullptr) const override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void scrollContentsBy(int x, int y) override;
    void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;
    // Answers a new selection; not called when a refill takes the selection away.
    virtual void OnSelectionChanged() {}
    // Where a menu opens that was asked for by key.
    QPoint MenuPoint(const QModelIndex& index) const;

private:
    bool IsCut(const QModelIndex& index) const;
    void FitColumn();
    void FitColumnLater();
    void StartColumn();

    int m_nWidest = 0; // of the nodes that have been on the screen
    bool m_bFitting = false;
    bool m_bFitLater = false;
};

} // namespace carvelot
