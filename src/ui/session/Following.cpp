#include "ui/session/Following.h"

#include "ui/kit/BackgroundWork.h"
#include "ui/kit/UserInterface.h"
#include "ui/session/SessionDocument.h"

#include <QApplication>
#include <QScopedValueRollback>

#include <chrono>
#include <utility>

namespace carvelot {

namespace {

constexpr int kInterval = 1000;             // milliseconds
constexpr std::int64_t kWaitsForShows = 30; // times as long as the last one took
constexpr int kNoteStands = 30;             // looks

// The records must stay as they are while others read them, or while a menu or question is about them.
bool MustWait() {
    return CBackgroundWork::AnyRuns() || QApplication::activeModalWidget() != nullptr ||
           QApplication::activePopupWidget() != nullptr;
}

} // namespace

CFollowing::CFollowing(QObject* parent)
    : QObject(parent), m_fnNow([] {
          const auto now = std::chrono::steady_clock::now().time_since_epoch();
          return std::int64_t{std::chrono::duration_cast<std::chrono::microseconds>(now).count()};
      }) {
    m_timer.setInterval(kInterval);
    connect(&m_timer, &QTimer::timeout, this, &CFollowing::Look);
}

void CFollowing::Follow(CSessionDocument& document) {
    End();
    if (!CFollowedLog::CanFollow(document.Session())) {
        return;
    }
    m_pDocument = &document;
    m_log.emplace(document.Session());
    connect(&document, &QObject::destroyed, this, &CFollowing::End);
    m_bShownOld = false;
    m_nNextShow = 0;
    m_timer.start();
    emit StateChanged();
}

void CFollowing::End() {
    if (!m_log) {
        return;
    }
    m_timer.stop();
    if (m_pDocument != nullptr) {
        disconnect(m_pDocument, nullptr, this, nullptr);
        if (m_bShownOld) {
            ShowGrowth();
        }
    }
    m_pDocument = nullptr;
    m_log.reset();
    m_strNote.clear();
    m_nLooksWithNote = 0;
    emit StateChanged();
}

QString CFollowing::State() const {
    if (!m_log) {
        return {};
    }
    return m_strNote.isEmpty() ? tr("Following") : tr("Following: %1").arg(m_strNote);
}

void CFollowing::Look() {
    if (!m_log || m_pDocument == nullptr || m_bLooks || MustWait()) {
        return;
    }
    CCarvelotDoc& session = m_pDocument->Session();
    // It may have been read from something else meanwhile.
    if (!CFollowedLog::CanFollow(session)) {
        End();
        return;
    }
    LogChange change;
    {
        // Where memory runs short, the next look comes all the same.
        const QScopedValueRollback looking(m_bLooks, true);
        const std::uint64_t load = session.LoadIdentity();
        change = m_log->Look();
        if (session.LoadIdentity() != load) {
            m_bShownOld = false;
            m_pDocument->ShowAnew();
        } else if (change == LogChange::Grew) {
            m_bShownOld = true;
        }
        if (m_bShownOld && m_fnNow() >= m_nNextShow) {
            ShowGrowth();
        }
    }
    Tell(change);
}

void CFollowing::ShowGrowth() {
    m_bShownOld = false;
    const std::int64_t begun = m_fnNow();
    m_pDocument->ShowGrowth();
    const std::int64_t ended = m_fnNow();
    m_nNextShow = ended + kWaitsForShows * (ended - begun);
}

void CFollowing::Tell(LogChange change) {
    const QString before = State();
    switch (change) {
    case LogChange::None:
    case LogChange::Grew:
        if (m_nLooksWithNote > 0 && --m_nLooksWithNote == 0) {
            m_strNote.clear();
        }
        break;
    case LogChange::Shrank:
        m_strNote = tr("The log shrank and was read anew");
        m_nLooksWithNote = kNoteStands;
        break;
    case LogChange::Replaced:
        m_strNote = tr("The log was replaced and was read anew");
        m_nLooksWithNote = kNoteStands;
        break;
    case LogChange::OtherFormat:
        m_strNote = tr("The log tells another format and was read anew");
        m_nLooksWithNote = kNoteStands;
        break;
    case LogChange::OtherSettings:
        m_strNote = tr("The options changed and the log was read anew");
        m_nLooksWithNote = kNoteStands;
        break;
    case LogChange::NotToBeHad:
        m_strNote = tr("The log is not to be had at present");
        m_nLooksWithNote = 1;
        break;
    case LogChange::Vanished:
        EndWith(tr("%1 has vanished. It is followed no longer."));
        return;
    case LogChange::Packed:
        EndWith(tr("%1 is an archive now. It is followed no longer."));
        return;
    case LogChange::NotRead:
        End();
        return;
    }
    if (State() != before) {
        emit StateChanged();
    }
}

void CFollowing::EndWith(const QString& message) {
    const QString log = m_pDocument->PathInTitle();
    End();
    UserInterface().ShowMessage(message.arg(log));
}

} // namespace carvelot
