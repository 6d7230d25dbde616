#include "ui/cachebrowser/CacheDocument.h"

#include "cachebrowser/CacheFetch.h"
#include "ui/cachebrowser/CacheDlg.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/kit/WaitCursor.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QStatusBar>

namespace carvelot {

namespace {

constexpr int kLookMilliseconds = 100; // between two looks for Esc

// Lets events through that paint and arrange windows, and swallows what a user does, except that it notes
// Esc. Timers tick in vain, as they do behind any other long work.
class CEscWatch final : public QObject {
public:
    CEscWatch() { QCoreApplication::instance()->installEventFilter(this); }
    bool m_bEsc = false;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
        case QEvent::ShortcutOverride:
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
                m_bEsc = true;
            }
            event->accept(); // of a shortcut: it is nobody's
            return true;
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::NonClientAreaMouseButtonPress:
        case QEvent::NonClientAreaMouseButtonRelease:
        case QEvent::NonClientAreaMouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TabletPress:
        case QEvent::TabletMove:
        case QEvent::TabletRelease:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
        case QEvent::Close:
        case QEvent::Quit:
            event->ignore();
            return true;
        case QEvent::Timer:
            return true;
        default:
            return false;
        }
    }
};

} // namespace

CCacheDocument::CCacheDocument() {
    AddCommand(
        ID_CACHE_REFRESH_DATA, [this] { OnRefreshData(); }, [this] { return !m_bFetching; });
    AddCommand(
        ID_CACHE_DEFINE_STRUCTURE, [this] { OnDefineStructure(); }, [this] { return !m_bFetching; });
}

void CCacheDocument::ShowMessage(std::string_view text) { UserInterface().ShowMessage(ToQString(text)); }

void CCacheDocument::OnRefreshData() {
    if (m_bFetching) {
        return;
    }
    m_bFetching = true;
    m_sinceLook.start();
    {
        const CWaitCursor wait;
        CCompanionFetch fetch;
        m_cache.OnRefreshData(fetch, *this);
    }
    if (CMainWindow* const main = MainWindow()) {
        main->statusBar()->clearMessage();
    }
    m_bFetching = false;
}

bool CCacheDocument::StopFetch() {
    if (m_sinceLook.elapsed() < kLookMilliseconds) {
        return false;
    }
    if (CMainWindow* const main = MainWindow()) {
        main->statusBar()->showMessage(tr("Rows so far: %1. Esc stops.").arg(m_cache.Rows().Size()));
    }
    CEscWatch watch;
    QCoreApplication::processEvents();
    m_sinceLook.start();
    return watch.m_bEsc;
}

void CCacheDocument::OnDefineStructure() {
    CCacheDlg dialog(m_cache);
    if (UserInterface().RunDialog(dialog) == QDialog::Accepted) {
        m_cache.OnStructureDefined();
    }
}

} // namespace carvelot
