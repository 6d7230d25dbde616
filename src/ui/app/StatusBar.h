// StatusBar.h - the main frame's status bar: progress of long work and the kind of build, at its right end.
#pragma once

#include <QStatusBar>

class QProgressBar;

namespace carvelot {

class CStatusBar : public QStatusBar {
public:
    explicit CStatusBar(const QString& bitness);

    // 0 to 100, painted at once. Below 0 hides it.
    void ShowProgress(int percent);

private:
    QProgressBar* m_pProgress;
};

} // namespace carvelot
