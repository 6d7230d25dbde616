// AutoHide.h - panes folded away to a strip of tabs at their edge, from where they slide out over the window.
#pragma once

#include "ui/kit/StoredLayout.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <map>
#include <vector>

class QToolBar;

namespace carvelot {

class CAutoHideSlide;
class CAutoHideTab;
class CDockablePane;
class CMainWindow;

class CAutoHide : public QObject {
    Q_OBJECT

public:
    explicit CAutoHide(CMainWindow& frame);
    ~CAutoHide() override;

    bool IsFolded(const CDockablePane& pane) const;
    // Folds a docked pane away, and with it those that share its tabs. Nothing happens to a floating one.
    void Fold(CDockablePane& pane);
    // Docks the pane and those that were folded with it at their edge again, the pane in front.
    void Pin(CDockablePane& pane);
    void PinAll();
    // The pin in a pane's title.
    void Toggle(CDockablePane& pane) { IsFolded(pane) ? Pin(pane) : Fold(pane); }

    // Shows a folded pane over the window until the focus goes elsewhere; without the focus, until the
    // pointer does.
    void SlideOut(CDockablePane& pane, bool bFocus);
    void SlideIn();
    CDockablePane* PaneOut() const { return m_pOut; }

    // Gives each strip the row or column next to the panes.
    void PlaceStrips();
    // The strips that show, for F6, and the tab of a folded pane, or null.
    QList<QWidget*> Strips() const;
    CAutoHideTab* Tab(const CDockablePane& pane) const;

    // What is folded where, for the stored layout; panes that there are not are left out.
    std::vector<StoredFold> Folds() const;
    void Restore(const std::vector<StoredFold>& folds);

    bool eventFilter(QObject* pObject, QEvent* pEvent) override;

private:
    struct CGroup {
        Qt::DockWidgetArea m_nEdge = Qt::BottomDockWidgetArea;
        int m_nThickness = 0; // of the panes, away from their edge
        QList<CDockablePane*> m_listPanes;
    };

    CGroup* GroupOf(const CDockablePane& pane);
    const CGroup* GroupOf(const CDockablePane& pane) const;
    QList<CDockablePane*> TabsOf(CDockablePane& pane) const;
    void FoldGroup(CGroup group);
    void Dock(const CGroup& group, CDockablePane& front);
    void OnClosed(CDockablePane* pPane);
    void UpdateStrips();
    void Place();
    QRect Room() const;
    void OnFocusChanged(QWidget* pOld, QWidget* pNow);
    void OnWatch();

    CMainWindow& m_frame;
    QWidget* m_pStore; // never shown: where folded panes wait
    CAutoHideSlide* m_pSlide;
    std::map<Qt::DockWidgetArea, QToolBar*> m_mapStrips;
    std::vector<CGroup> m_listGroups;
    CDockablePane* m_pOut = nullptr;
    bool m_bMoving = false; // a pane changes its place by our hand, not by the user's
    int m_nAway = 0;
    QTimer m_watch;
};

} // namespace carvelot
