// WindowsDlg.h - "Windows": the open document windows, to activate or close.
#pragma once

#include <QDialog>

class QPushButton;
class QTreeWidget;

namespace carvelot {

class CMDIChildWnd;
class CTabbedClientArea;

class CWindowsDlg : public QDialog {
    Q_OBJECT

public:
    explicit CWindowsDlg(CTabbedClientArea& area);

private:
    void Fill();
    void UpdateButtons();
    void OnActivate();
    void OnCloseWindows();
    QList<CMDIChildWnd*> Selected() const;

    CTabbedClientArea& m_area;
    QTreeWidget* m_pList;
    QPushButton* m_pActivate;
    QPushButton* m_pClose;
};

} // namespace carvelot
