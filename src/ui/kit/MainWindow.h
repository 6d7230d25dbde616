// MainWindow.h - the main window and the program around it, as the widgets and windows of all rooms know
// them.
#pragma once

#include "settings/AppSettings.h"
#include "ui/kit/CommandTarget.h"

#include <QMainWindow>

class QAction;

namespace carvelot {

class CDockablePane;
class CMDIChildWnd;
class CTabbedClientArea;

class CMainWindow : public QMainWindow, public CCommandTarget {
    Q_OBJECT

public:
    CMainWindow();
    ~CMainWindow() override;

    virtual CTabbedClientArea& ClientArea() const = 0;
    // The document window in front, or null.
    virtual CMDIChildWnd* ActiveChild() const = 0;
    virtual QList<CDockablePane*> Panes() = 0; // in the order of their tabs
    virtual QAction* CommandAction(int id) const = 0;
    // Opens the "Edit" context menu at a screen position for the control with the focus.
    virtual void ShowEditMenu(const QPoint& screen) = 0;
    // Progress of long work in the status bar, 0 to 100; it is painted at once. Below 0 hides it.
    virtual void ShowProgress(int percent) = 0;
    // Which range of time is looked at; an empty text hides it.
    virtual void ShowRange(const QString& text) = 0;

protected:
    bool event(QEvent* event) override;
    // From here on there is no main window: it goes.
    void Leave();

private:
    void FollowPointer(QEvent& event);

    bool m_bBetweenPanes = false; // the pointer is, with a cursor that says so
};

// The main window, or null before it is made and after it is gone.
CMainWindow* MainWindow();

// The settings that are in force. They belong to the application object, which is there as long as any
// window.
const CAppSettings& Settings();
void SetSettings(const CAppSettings& settings);

} // namespace carvelot
