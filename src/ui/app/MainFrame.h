// MainFrame.h - the one top-level window: document tabs, nine panes, menus, toolbars and the look.
#pragma once

#include "settings/Commands.h"
#include "ui/kit/Document.h"
#include "ui/kit/MainWindow.h"
#include "ui/live/ProcessPane.h"
#include "ui/session/SessionPanes.h"

#include <memory>

namespace carvelot {

class CAutoHide;
class CCustomizeDlg;
class CFollowing;
class CFrameCommands;
class CFrameLayout;
class CFrameMenus;
class CFrameToolBars;
class CStatusBar;
class CTabbedClientArea;
struct CMenuHabits;

class CMainFrame : public CMainWindow, public CSessionPanes {
    Q_OBJECT

public:
    CMainFrame();
    ~CMainFrame() override;

    // Builds the window; its last step fills the process list.
    bool LoadFrame();

    CProcessPane m_wndProcessPane;

    CTabbedClientArea& ClientArea() const override { return *m_pClientArea; }
    CMDIChildWnd* ActiveChild() const override;
    QList<CDockablePane*> Panes() override;
    CFrameToolBars& Bars() const { return *m_pToolBars; }
    CFrameLayout& Arrangement() const { return *m_pLayout; }
    CAutoHide& AutoHide() const;

    // Sets a look from 205 to 219 and stores its number.
    void OnApplicationLook(int id);
    void RestoreDefaultLayout();
    void SaveState() const;
    void ShowEditMenu(const QPoint& screen) override;
    void ShowProgress(int percent) override;
    void ShowRange(const QString& text) override;
    // Says in the status bar which settings were set aside since it was last asked, if any.
    void TellSetAside();
    CStatusBar& StatusBar() const { return *m_pStatusBar; }
    // One session at a time.
    CFollowing& Following() const { return *m_pFollowing; }

    QAction* CommandAction(int id) const override;
    bool RunCommand(int id);
    // Brings every command's state up to date.
    void UpdateCommands();
    CMenuHabits& MenuHabits();
    CCustomizeDlg* CustomizeDialog() const { return m_pCustomizeDlg; }
    EMenuState MenuState() const;

    QMenu* createPopupMenu() override;

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void AddOwnCommands();
    void RestoreState();
    void OnSearch();
    void UpdateTitleAndMenus();
    void OnCloseAll();
    void OnWindows();
    void OnCustomize();

    CTabbedClientArea* m_pClientArea = nullptr;
    std::unique_ptr<CFrameCommands> m_pCommands;
    std::unique_ptr<CFrameMenus> m_pMenus;
    std::unique_ptr<CFrameToolBars> m_pToolBars;
    CStatusBar* m_pStatusBar = nullptr;
    CFollowing* m_pFollowing;
    std::unique_ptr<CFrameLayout> m_pLayout;
    CCustomizeDlg* m_pCustomizeDlg = nullptr;
    int m_nOffice2007;
};

// The main window, or null before it is made and after it is gone.
CMainFrame* MainFrame();

} // namespace carvelot
