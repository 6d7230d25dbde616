// CustomizeDlg.h - "Customize": commands, toolbars and menus to a user's own taste.
#pragma once

#include <QDialog>

class QComboBox;
class QListWidget;
class QPushButton;
class QLabel;

namespace carvelot {

class CMainFrame;
class CToolBar;

// Stands beside the window while the user works on; every change shows at once.
class CCustomizeDlg : public QDialog {
    Q_OBJECT

public:
    explicit CCustomizeDlg(CMainFrame& frame);

private:
    QWidget* CommandsPage();
    QWidget* ToolBarsPage();
    QWidget* OptionsPage();

    void FillCommands();
    void FillToolBars();
    void FillButtons(int current);
    void ShowImages();
    void UpdateButtons();
    int CurrentCommand() const;
    CToolBar* EditedToolBar() const;   // whose buttons the first page shows
    CToolBar* SelectedToolBar() const; // on the second page
    void OnAdd();
    void OnRemove();
    void OnSeparator();
    void OnMove(int step);
    void OnNew();
    void OnRename();
    void OnDelete();
    void OnReset();

    CMainFrame& m_frame;
    QComboBox* m_pCategories = nullptr;
    QListWidget* m_pCommands = nullptr;
    QLabel* m_pDescription = nullptr;
    QComboBox* m_pImage = nullptr;
    QComboBox* m_pToolBarChoice = nullptr;
    QListWidget* m_pButtons = nullptr;
    QPushButton* m_pAdd = nullptr;
    QPushButton* m_pRemove = nullptr;
    QPushButton* m_pSeparator = nullptr;
    QPushButton* m_pUp = nullptr;
    QPushButton* m_pDown = nullptr;
    QListWidget* m_pToolBars = nullptr;
    QPushButton* m_pRename = nullptr;
    QPushButton* m_pDelete = nullptr;
    QPushButton* m_pReset = nullptr;
    bool m_bFilling = false;
};

} // namespace carvelot
