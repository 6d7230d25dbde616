#include "cachebrowser/ui/CacheDocument.h"

#include "cachebrowser/CacheFetch.h"
#include "cachebrowser/ui/CacheDlg.h"
#include "shell/ui/CarvelotApp.h"
#include "shell/ui/MainFrame.h"
#include "shell/ui/Text.h"
#include "shell/ui/UserInterface.h"
#include "views/ui/WaitCursor.h"

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
    bool eventFilter(QObject*, QEvent* pEvent) override {
        switch (pEvent->type()) {
        case QEvent::ShortcutOverride:
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent*>(pEvent)->key() == Qt::Key_Escape)
                m_bEsc = true;
            pEvent->accept(); // of a shortcut: it is nobody's
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
            pEvent->ignore();
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

void CCacheDocument::ShowMessage(std::string_view strText) {
    UserInterface().ShowMessage(ToQString(strText));
}

void CCacheDocument::OnRefreshData() {
    if (m_bFetching)
        return;
    m_bFetching = true;
    m_sinceLook.start();
    {
        const CWaitCursor wait;
        CCompanionFetch fetch;
        m_cache.OnRefreshData(fetch, *this);
    }
    if (CMainFrame* pMain = MainFrame())
        pMain->statusBar()->clearMessage();
    m_bFetching = false;
}

bool CCacheDocument::StopFetch() {
    if (m_sinceLook.elapsed() < kLookMilliseconds)
        return false;
    if (CMainFrame* pMain = MainFrame())
        pMain->statusBar()->showMessage(tr("Rows so far: %1. Esc stops.").arg(m_cache.Rows().Size()));
    CEscWatch watch;
    QCoreApplication::processEvents();
    m_sinceLook.start();
    return watch.m_bEsc;
}

void CCacheDocument::OnDefineStructure() {
    CCacheDlg dialog(m_cache);
    if (UserInterface().RunDialog(dialog) == QDialog::Accepted)
        m_cache.OnStructureDefined();
}

void BrowseCache(std::uint32_t nProcess, std::string_view strHandle, std::string_view strName,
                 std::string_view strInstance) {
    CDocTemplate* const pTemplate = theApp().m_pCacheTemplate;
    if (pTemplate == nullptr)
        return;
    CDocument* const pNew = pTemplate->CreateNewDocument();
    auto* const pDocument = qobject_cast<CCacheDocument*>(pNew);
    if (pDocument == nullptr) {
        if (pNew != nullptr)
            pTemplate->CloseDocument(*pNew);
        return;
    }
    CCacheDoc& cache = pDocument->Cache();
    // The texts may be a session's, which need not outlive the first message.
    cache.m_processId = nProcess;
    cache.m_strHandle = strHandle;
    cache.m_strName = strName;
    cache.m_strInstance = strInstance;
    cache.m_bCacheValid = theApp().CacheLive(nProcess, ToQString(cache.m_strHandle));
    CCacheDlg dialog(cache);
    const bool bOk = UserInterface().RunDialog(dialog) == QDialog::Accepted;
    CMDIChildWnd* const pFrame = bOk ? pTemplate->CreateNewFrame(*pDocument) : nullptr;
    if (pFrame == nullptr) {
        pTemplate->CloseDocument(*pDocument);
        return;
    }
    pDocument->SetTitle(QStringLiteral("Cache Browser: ") + ToQString(cache.m_strName));
    pTemplate->InitialUpdateFrame(*pFrame);
}

} // namespace carvelot
