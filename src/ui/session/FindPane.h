// FindPane.h - the pane "Find": a search through all records of the session in front.
#pragma once

#include "lists/FindSource.h"
#include "lists/PaneRows.h"
#include "ui/kit/ListPane.h"
#include "ui/session/SessionReference.h"

#include <QToolBar>

class QLabel;

namespace carvelot {

// Its rows belong to the session that was searched, whatever is selected since, and can outlive it.
class CFindPane : public CListPane<FindRow, CFindSource> {
    Q_OBJECT

public:
    CFindPane();

    QLineEdit& SearchEdit() { return *m_pSearch; }
    QToolBar& ToolBar() { return *m_pToolBar; }
    // Searches the session in front for the text of the edit; without one the rows stay.
    void OnFind();
    // Brings the hit behind or ahead of the selected one up, round the ends of the list; with no rows the
    // text is searched for first.
    void OpenNextHit(bool forward);
    void ClearList();
    // How many there are, as the pane says it; empty before a search.
    QString HitsText() const;
    // The document of the last search as long as it exists.
    CSessionDocument* Searched() const { return m_session.Document(); }
    // To be called before a session's records go: rows of it keep what they show.
    void LetGo(const CCarvelotDoc& session) { m_rows.LetGo(session); }
    // Titles and columns for a log of processes and threads, or for one of users.
    void DressForUsers(bool users);
    // The titles and columns of its own rows, where no session is in front.
    void DressForRows() { DressForUsers(m_bUsers); }
    QWidget* MainControl() const override { return m_pSearch; }

protected:
    int LayOutAboveList(int width) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void Paste();

    QToolBar* m_pToolBar = nullptr; // the CFindPaneToolBar
    QLineEdit* m_pSearch = nullptr;
    QLabel* m_pHits = nullptr;
    CSessionReference m_session;
    bool m_bUsers = false; // the rows are those of a log of users
};

} // namespace carvelot
