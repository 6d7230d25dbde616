// Following.h - follows the log of one session: looks at it once a second, and brings its windows up to it.
#pragma once

#include "session/FollowedLog.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <functional>
#include <optional>

namespace carvelot {

class CSessionDocument;

class CFollowing : public QObject {
    Q_OBJECT

public:
    explicit CFollowing(QObject* parent = nullptr);

    // Lets go of the session that was followed before. One whose log cannot be followed is let be.
    void Follow(CSessionDocument& document);
    void End();
    // Null while none is followed.
    CSessionDocument* Followed() const { return m_pDocument; }
    // What there is to tell of it, empty while none is followed.
    QString State() const;

    // What the timer does. Nothing while something else works on records, or asks the user.
    void Look();

    // Microseconds on a clock that only goes on.
    std::function<std::int64_t()> m_fnNow;

signals:
    void StateChanged();

private:
    void Tell(LogChange change);
    // The message names the log at its %1.
    void EndWith(const QString& message);
    void ShowGrowth();

    QPointer<CSessionDocument> m_pDocument;
    std::optional<CFollowedLog> m_log;
    QTimer m_timer;
    bool m_bLooks = false;
    bool m_bShownOld = false; // the windows do not show yet what the session has
    // A huge selection takes longer to show than a log takes to grow: the windows may take a thirtieth of the
    // time, and lag behind the session.
    std::int64_t m_nNextShow = 0;
    QString m_strNote;        // what has happened to the log
    int m_nLooksWithNote = 0; // that it still stands
};

} // namespace carvelot
