// AutoHideSlide.h - what a folded pane slides out in, over the window, away from its edge.
#pragma once

#include <QFrame>

#include <functional>

namespace carvelot {

class CAutoHide;
class CMainWindow;

class CAutoHideSlide : public QFrame {
public:
    CAutoHideSlide(CAutoHide& owner, CMainWindow& frame);

    // The pane that is out; null for none.
    void SetPane(QWidget* pane, Qt::DockWidgetArea edge);
    // Takes its place at the pane's edge, with a size that leaves some of the window to be seen.
    void Place(int thickness);

    std::function<void(int)> m_fnThickness; // asks for another size

protected:
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRect Room() const;
    // Lays the pane out beside the grip.
    void Arrange();

    CAutoHide& m_owner;
    CMainWindow& m_frame;
    QWidget* m_pPane = nullptr;
    Qt::DockWidgetArea m_nEdge = Qt::BottomDockWidgetArea;
};

} // namespace carvelot
