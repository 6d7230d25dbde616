// FrameToolBars.h - the main frame's toolbars: the two of the program, those that the user made, the user's
// images on buttons, and whether buttons tell tips.
#pragma once

#include "ui/app/ToolBarImages.h"

#include <QObject>

#include <map>

namespace carvelot {

class CMainFrame;
class CToolBar;

class CFrameToolBars : public QObject {
    Q_OBJECT

public:
    explicit CFrameToolBars(CMainFrame& frame);

    QList<CToolBar*> All() const;        // the user's after the program's
    CToolBar* New(const QString& title); // null when ten exist
    void Delete(CToolBar* toolBar);      // one of the user's
    const CToolBarImages& UserImages() const { return m_userImages; }
    // Gives a command one of the user's images, or with -1 its own again.
    void SetUserImage(int id, int image);
    int UserImage(int id) const;
    bool ShowsToolTips() const { return m_bToolTips; }
    void SetShowsToolTips(bool show);

    // All in a row at the top, the program's as they came.
    void RestoreDefault();
    void Load();
    void Save() const;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    CToolBar* AddUserToolBar(int id, const QString& title);

    CMainFrame& m_frame;
    CToolBar* m_pToolBar = nullptr;
    CToolBar* m_pCacheToolBar = nullptr;
    QList<CToolBar*> m_listUserToolBars;
    CToolBarImages m_userImages;
    std::map<int, int> m_mapUserImages;
    bool m_bToolTips = true;
};

} // namespace carvelot
