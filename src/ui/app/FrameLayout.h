// FrameLayout.h - where the main frame's panes stand: docked, floating, folded away or closed, kept from run
// to run.
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QSize>

#include <memory>

class QDockWidget;

namespace carvelot {

class CAutoHide;
class CDockablePane;
class CMainFrame;

class CFrameLayout : public QObject {
    Q_OBJECT

public:
    // Docks all panes at the bottom.
    explicit CFrameLayout(CMainFrame& frame);
    ~CFrameLayout() override;

    CAutoHide& AutoHide() const { return *m_pAutoHide; }
    // Brings a pane to the front, wherever it is, with the focus in it.
    void ShowPane(CDockablePane& pane);

    void RestoreDefault();
    // The window's place and that of its panes, as they were kept; the default where that makes no sense.
    void Restore();
    void Save() const;
    // To be told by the frame: a layout takes effect in a window that shows in its final size.
    void OnShown();
    void OnResized();
    // Floating panes wait until the window is on the screen.
    void ShowFloatingPanes();

private:
    void DockPanes();
    bool ApplyLayout();
    void TakeSize();
    void DockUnplaced();
    void OnTabActivated(QDockWidget* dock);
    void NextPane(bool forward);

    CMainFrame& m_frame;
    std::unique_ptr<CAutoHide> m_pAutoHide;
    QSize m_size;                           // stored, and taken when the window shows
    QByteArray m_layout;                    // stored, until the window shows in its size
    QList<CDockablePane*> m_listFloatLater; // until the window is on the screen
    QList<CDockablePane*> m_listUnplaced;   // panes that the stored layout does not know
    bool m_bRaiseBSFN = false;              // the default layout waits for the window to be shown
};

} // namespace carvelot
