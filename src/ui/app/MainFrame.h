// MainFrame.h - the one top-level window: document tabs, nine panes, menus, toolbars and the look.
#pragma once

#include "settings/Commands.h"
#include "ui/kit/CommandTarget.h"
#include "ui/kit/Document.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/PersonalMenu.h"
#include "ui/live/ProcessPane.h"
#include "ui/session/SessionPanes.h"

#include <QMainWindow>
#include <QPointer>

#include <map>
#include <vector>

class QActionGroup;
class QLabel;
class QProgressBar;

namespace carvelot {

class CAutoHide;
class CCustomizeDlg;
class CTabbedClientArea;
class CToolBar;

// Images that a user laid beside the program for buttons of their own, 16 by 16 pixels each.
class CToolBarImages {
public:
    // Loads a strip of at most 819200 bytes; false when there is none or it is no picture.
    bool Load(const QString& strPath);
    int Count() const { return static_cast<int>(m_listImages.size()); }
    QIcon Icon(int nIndex) const { return m_listImages.value(nIndex); }

private:
    QList<QIcon> m_listImages;
};

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
    CAutoHide& AutoHide() const { return *m_pAutoHide; }
    QList<CDockablePane*> Panes() override;

    // Sets a look from 205 to 219 and stores its number.
    void OnApplicationLook(int nId);
    void RestoreDefaultLayout();
    void SaveState() const;
    void ShowEditMenu(const QPoint& screen) override;
    void ShowProgress(int nPercent) override;
    // Brings every command's state up to date; at once, or with Schedule when the present event is done.
    void UpdateCommands();
    void ScheduleUpdate();

    // What the Customize dialog works on.
    QAction* CommandAction(int nId) const override;
    bool RunCommand(int nId);
    QList<CToolBar*> ToolBars() const;
    CToolBar* NewUserToolBar(const QString& strTitle); // null when ten exist
    void DeleteUserToolBar(CToolBar* pToolBar);
    CMenuHabits& MenuHabits() { return m_habits; }
    const CToolBarImages& UserImages() const { return m_userImages; }
    // Gives a command one of the user's images, or with -1 its own again.
    void SetUserImage(int nId, int nImage);
    int UserImage(int nId) const;
    bool ShowsToolTips() const { return m_bToolTips; }
    void SetShowsToolTips(bool bShow);
    CCustomizeDlg* CustomizeDialog() const { return m_pCustomizeDlg; }
    EMenuState MenuState() const;

    QMenu* createPopupMenu() override;

protected:
    void showEvent(QShowEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dragMoveEvent(QDragMoveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;

private:
    void MakeCommands();
    void MakeMenus();
    void MakeToolBars();
    void MakeStatusBar();
    void DockPanes();
    void OnTabActivated(QDockWidget* pDock);
    void ShowFloatingPanes();
    void RestoreState();
    bool ApplyLayout();
    void LoadUserToolBars();
    CToolBar* AddUserToolBar(int nId, const QString& strTitle);
    // Brings a pane to the front, wherever it is, with the focus in it.
    void ShowPane(CDockablePane& pane);
    void OnSearch();
    void FillToolBarMenu(QMenu& menu);
    // A menu's entry for the n-th file or window.
    QString NumberedEntry(std::size_t nNumber, const QString& strText) const;
    void FillRecentFiles();
    void FillWindowList();
    void UpdateTitleAndMenus();
    void OnCloseAll();
    void OnWindows();
    void OnCustomize();
    void NextPane(bool bForward);
    CPersonalMenu* AddMenu(EMenu nMenu);
    const CHandler* FindHandler(int nId) const;
    QWidget* EditWithFocus() const;

    CTabbedClientArea* m_pClientArea = nullptr;
    CAutoHide* m_pAutoHide = nullptr;
    CMenuHabits m_habits;
    std::map<int, QAction*> m_mapActions;
    std::map<EMenu, CPersonalMenu*> m_mapMenus;
    QMenu* m_pEditMenu = nullptr;
    QActionGroup* m_pLookGroup = nullptr;
    QList<QAction*> m_listRecentActions;
    QAction* m_pRecentMark = nullptr;
    QList<QAction*> m_listWindowActions;
    QAction* m_pWindowMark = nullptr;
    CToolBar* m_pToolBar = nullptr;
    CToolBar* m_pCacheToolBar = nullptr;
    QList<CToolBar*> m_listUserToolBars;
    QLabel* m_pBitness = nullptr;
    QProgressBar* m_pProgress = nullptr;
    CToolBarImages m_userImages;
    std::map<int, int> m_mapUserImages;
    CCustomizeDlg* m_pCustomizeDlg = nullptr;
    int m_nOffice2007;
    QByteArray m_layout;                    // stored, until the window shows in its size
    QList<CDockablePane*> m_listFloatLater; // until the window is on the screen
    bool m_bRaiseBSFN = false;              // the default layout waits for the window to be shown
    bool m_bToolTips = true;
    bool m_bUpdateScheduled = false;
};

// The main window, or null before it is made and after it is gone.
CMainFrame* MainFrame();

} // namespace carvelot
