// AutoHideBars.h - the strips of tabs at the window's edges that stand for panes folded away.
#pragma once

#include "ui/kit/StoredLayout.h"

#include <QAbstractButton>
#include <QTimer>

#include <map>
#include <vector>

class QToolBar;

namespace carvelot {

class CAutoHide;
class CDockablePane;
class CMainWindow;

// Panes that were folded away together.
struct CFoldedGroup {
    Qt::DockWidgetArea m_nEdge = Qt::BottomDockWidgetArea;
    int m_nThickness = 0; // of the panes, away from their edge
    QList<CDockablePane*> m_listPanes;
};

// At the left and the right edge, where tabs are read from top to bottom.
bool IsUpright(Qt::DockWidgetArea edge);

// A folded pane's tab.
class CAutoHideTab : public QAbstractButton {
public:
    CAutoHideTab(CAutoHide& owner, CDockablePane& pane, bool upright);

    QSize sizeHint() const override;
    // Tabs that find no room share it.
    QSize minimumSizeHint() const override;
    const CDockablePane& Pane() const { return m_pane; }

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    CAutoHide& m_owner;
    CDockablePane& m_pane;
    bool m_bUpright;
    QTimer m_hover;
};

class CAutoHideBars {
public:
    CAutoHideBars(CAutoHide& owner, CMainWindow& frame);
    ~CAutoHideBars();
    CAutoHideBars(const CAutoHideBars&) = delete;
    CAutoHideBars& operator=(const CAutoHideBars&) = delete;

    // A tab for each pane that is folded away.
    void Show(const std::vector<CFoldedGroup>& groups);
    // Gives each strip the row or column next to the panes.
    void Place();
    // The strips that show, and the tab of a folded pane, or null.
    QList<QWidget*> Strips() const;
    CAutoHideTab* Tab(const CDockablePane& pane) const;

private:
    CAutoHide& m_owner;
    CMainWindow& m_frame;
    std::map<Qt::DockWidgetArea, QToolBar*> m_mapStrips;
};

} // namespace carvelot
