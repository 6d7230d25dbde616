// StatusBar.h - the main frame's status bar: progress of long work and the kind of build, at its right end.
#pragma once

#include <QStatusBar>

class QLabel;
class QProgressBar;
class QToolButton;

namespace carvelot {

class CStatusBar : public QStatusBar {
public:
    explicit CStatusBar(const QString& bitness);

    // 0 to 100, painted at once. Below 0 hides it.
    void ShowProgress(int percent);
    // Which range of time is looked at; an empty text hides it.
    void ShowRange(const QString& text);
    // Whether the log in front has many lines that became no record; a click tells more.
    void ShowUnread(bool many);
    // What there is to tell of the log that is followed, and where it lies; an empty text hides it.
    void ShowFollowing(const QString& text, const QString& log);
    // Says it at the left, until the next message takes its place.
    void Say(const QString& text);
    QToolButton& UnreadButton() const { return *m_pUnread; }

private:
    QProgressBar* m_pProgress;
    QLabel* m_pRange;
    QLabel* m_pFollowing;
    QToolButton* m_pUnread;
};

} // namespace carvelot
