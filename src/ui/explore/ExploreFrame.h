// ExploreFrame.h - what all windows of Explore are: a tab of the session's document with a head, which says
// what is looked at, above the window's own part.
#pragma once

#include "explore/pictures/Canvas.h"
#include "ui/explore/Exploration.h"
#include "ui/kit/Document.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QToolButton;

namespace carvelot {

// Starts exploring when it is first shown. While there are no results it says why, in the place of its part.
class CExploreFrame : public CMDIChildWnd {
    Q_OBJECT

public:
    CExploration& Exploration() const { return m_exploration; }
    QList<QWidget*> WindowPanes() const override { return {m_pBody}; }
    // The picture that it shows, whole, for a file; null for a window of lists.
    virtual IPicture* Picture() { return nullptr; }

    void OnSetFocus() override;

signals:
    // It came to the front: the shared panes are to show its session.
    void CameToFront();

protected:
    // `title`: "Timeline".
    CExploreFrame(CExploration& exploration, const QString& title);

    // The window's own part; once, in the constructor.
    void SetBody(QWidget* body);

    // Exploring is done: Explored() and Findings() are there, and Scope() is that of the whole log or null.
    virtual void ShowResults() = 0;
    // Another scope or range is in force, or what it adds up to has come: Scope() may be null.
    virtual void ShowScope() {}
    // Another record is marked, or none.
    virtual void ShowSelected() {}
    // At once: let go of all that refers to what was explored.
    virtual void DropResults() = 0;
    // What to say in the place of the part where it has nothing to show: "This log holds no calls."
    virtual QString EmptyText() const { return {}; }
    // EmptyText may be another one now.
    void RefreshPage();

    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // In the status bar, while the window shows.
    static void TellRange(const QString& range);
    void AddHead();
    void RefreshHead();
    void FillScopes();
    void OnState();

    CExploration& m_exploration;
    bool m_bShowsResults = false;
    QComboBox* m_pScope = nullptr;
    QToolButton* m_pNoScope = nullptr;
    QCheckBox* m_pFollows = nullptr;
    QLabel* m_pRange = nullptr;
    QToolButton* m_pNoRange = nullptr;
    QStackedWidget* m_pPages = nullptr; // what there is to say, or the part
    QWidget* m_pBody = nullptr;
    QLabel* m_pMessage = nullptr;
    QProgressBar* m_pProgress = nullptr;
    QPushButton* m_pAgain = nullptr;
};

} // namespace carvelot
