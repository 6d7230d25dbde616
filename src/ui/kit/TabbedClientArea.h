// TabbedClientArea.h - the centre of the main frame: document windows as tabs, in one or more groups of tabs.
#pragma once

#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QWidget>

class QMenu;
class QRubberBand;
class QSplitter;

namespace carvelot {

class CMDIChildWnd;
class CTabbedClientArea;

// Is a tab that is dragged here still in its bar, or so near that it stays there?
bool IsNearBar(const QTabBar& bar, const QPoint& point);

// One group of tabs. Tabs move inside their bar, and a tab that is dragged out of it moves to the group below
// the pointer or, dropped on its own group, offers a new group.
class CTabBar : public QTabBar {
    Q_OBJECT

public:
    explicit CTabBar(CTabbedClientArea& area);

    // A tab's text as it fits a width. A path loses its beginning, yet its file's name stays whole even where
    // it does not fit.
    QString ShortText(int tab, const QFontMetrics& metrics, int width) const;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;

private:
    CMDIChildWnd* ChildAt(int tab) const;

    CTabbedClientArea& m_area;
    QPointer<QWidget> m_pDragged;
    bool m_bOutside = false;
};

class CTabGroup : public QTabWidget {
    Q_OBJECT

public:
    explicit CTabGroup(CTabbedClientArea& area);
    CTabBar& Bar() const;
};

class CTabbedClientArea : public QWidget {
    Q_OBJECT

public:
    CTabbedClientArea();
    ~CTabbedClientArea() override;

    // Puts a document window into the active group and brings it to the front.
    void AddChild(CMDIChildWnd& child, const QIcon& icon);
    // Takes it out; the window is hidden and belongs to the caller.
    void RemoveChild(CMDIChildWnd& child);
    void Activate(CMDIChildWnd& child);
    CMDIChildWnd* ActiveChild() const { return m_pActive; }
    // All windows, group by group, in the order of their tabs.
    QList<CMDIChildWnd*> Children() const;
    QList<CTabGroup*> Groups() const;
    CTabGroup* GroupOf(const CMDIChildWnd& child) const;
    // Moves on to the next window, or back.
    void ActivateNext(bool forward);

    // A horizontal group stands below, a vertical one beside the group it came from. All groups have one
    // direction, and only a group of two tabs or more can be divided.
    bool CanMakeGroup(Qt::Orientation direction) const;
    void MakeGroup(Qt::Orientation direction);
    void MoveToGroup(CMDIChildWnd& child, CTabGroup& group, int index);

signals:
    void ActiveChildChanged();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    friend class CTabBar;
    friend class CTabGroup;
    CTabGroup* NewGroup(int index);
    void DropEmptyGroup(CTabGroup* group);
    void OnGroupsChanged();
    void SetActive(CMDIChildWnd* child, bool again);
    void OnFocusChanged(QWidget* now);
    void RefreshTab(CMDIChildWnd& child);
    void ShowDropMark(const QPoint& screen);
    void HideDropMark();
    void DropTab(CMDIChildWnd& child, const QPoint& screen);
    CTabGroup* GroupAt(const QPoint& screen) const;
    void FillGroupMenu(QMenu& menu);

    QSplitter* m_pSplitter;
    CMDIChildWnd* m_pActive = nullptr;
    QRubberBand* m_pDropMark = nullptr;
    bool m_bChanging = false; // windows are being moved about: no activation until that is done
};

} // namespace carvelot
