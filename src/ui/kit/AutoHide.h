// AutoHide.h - panes folded away to a strip of tabs at their edge, from where they slide out over the window.
#pragma once

#include "ui/kit/AutoHideBars.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <vector>

namespace carvelot {

class CAutoHideSlide;
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
    void SlideOut(CDockablePane& pane, bool focus);
    void SlideIn();
    CDockablePane* PaneOut() const { return m_pOut; }

    // The strips of tabs.
    CAutoHideBars& Bars() { return m_bars; }
    CAutoHideTab* Tab(const CDockablePane& pane) const { return m_bars.Tab(pane); }

    // What is folded where, for the stored layout; panes that there are not are left out.
    std::vector<StoredFold> Folds() const;
    void Restore(const std::vector<StoredFold>& folds);

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    CFoldedGroup* GroupOf(const CDockablePane& pane);
    const CFoldedGroup* GroupOf(const CDockablePane& pane) const;
    QList<CDockablePane*> TabsOf(CDockablePane& pane) const;
    void FoldGroup(CFoldedGroup group);
    void Dock(const CFoldedGroup& group, CDockablePane& front);
    void OnClosed(CDockablePane* pane);
    void Place();
    void OnFocusChanged(QWidget* old, QWidget* now);
    void OnWatch();

    CMainWindow& m_frame;
    QWidget* m_pStore; // never shown: where folded panes wait
    CAutoHideSlide* m_pSlide;
    CAutoHideBars m_bars;
    std::vector<CFoldedGroup> m_listGroups;
    CDockablePane* m_pOut = nullptr;
    bool m_bMoving = false; // a pane changes its place by our hand, not by the user's
    int m_nAway = 0;
    QTimer m_watch;
};

} // namespace carvelot
