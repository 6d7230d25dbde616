// PaneTabs.h - the tabs of docked panes: one that is dragged out of its bar takes its pane along.
#pragma once

#include <QObject>
#include <QPointer>

class QMouseEvent;
class QTabBar;

namespace carvelot {

class CDockablePane;
class CMainWindow;

class CPaneTabs : public QObject {
    Q_OBJECT

public:
    explicit CPaneTabs(CMainWindow& frame);

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    CDockablePane* PaneAt(const QTabBar& bar, const QPoint& point) const;
    void TearOff(QTabBar& bar, const QMouseEvent& event);

    CMainWindow& m_frame;
    QPointer<CDockablePane> m_pDragged;
};

} // namespace carvelot
