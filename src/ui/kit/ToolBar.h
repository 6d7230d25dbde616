// ToolBar.h - a toolbar that the user can change.
#pragma once

#include <QToolBar>

#include <vector>

class QMenu;

namespace carvelot {

class CMainWindow;

class CToolBar : public QToolBar {
    Q_OBJECT

public:
    // id is the toolbar's number, name what a stored layout knows it by.
    CToolBar(CMainWindow& frame, int id, const QString& title, const QString& name, std::vector<int> initial);

    int Id() const { return m_nId; }
    bool IsUserToolBar() const;
    const std::vector<int>& Commands() const { return m_listCommands; }
    bool HasCommand(int id) const;
    // Shows these commands, each once, 0 standing for a separator; numbers that are no commands are left out.
    void SetCommands(const std::vector<int>& commands);
    void Reset() { SetCommands(m_listDefault); }
    bool IsChanged() const { return m_listCommands != m_listDefault; }

protected:
    bool event(QEvent* event) override;

private:
    void FillCustomizeMenu(QMenu& menu);

    CMainWindow& m_frame;
    int m_nId;
    std::vector<int> m_listDefault;
    std::vector<int> m_listCommands;
};

} // namespace carvelot
