// What one window wants of another: it is connected here and nowhere else.
#include "ui/app/Requests.h"

#include "ui/app/CarvelotApp.h"
#include "ui/app/MainFrame.h"
#include "ui/cachebrowser/CacheDlg.h"
#include "ui/cachebrowser/CacheDocument.h"
#include "ui/kit/PathText.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/session/SessionDocument.h"

#include <QApplication>
#include <QCursor>

namespace carvelot {

namespace {

class CBusyCursor {
public:
    CBusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~CBusyCursor() {
        QApplication::restoreOverrideCursor();
        if (CMainFrame* pMain = MainFrame())
            pMain->ShowProgress(-1);
    }
    CBusyCursor(const CBusyCursor&) = delete;
    CBusyCursor& operator=(const CBusyCursor&) = delete;
};

} // namespace

void CCarvelotApp::AnalyzeProcess(QString strImageName, QString strDebugFile, std::int32_t nProcess) {
    CDocTemplate* pTemplate = FirstDocTemplate();
    if (pTemplate == nullptr)
        return;
    CDocument* pNew = pTemplate->CreateNewDocument();
    if (pNew == nullptr)
        return;
    auto* pDocument = qobject_cast<CSessionDocument*>(pNew);
    if (pDocument == nullptr) {
        pTemplate->CloseDocument(*pNew);
        return;
    }
    CCarvelotDoc& session = pDocument->Session();
    session.m_strProcessName = ToUtf8(strImageName);
    session.m_nProcessFilter = static_cast<std::uint32_t>(nProcess);
    session.m_strLogPath = PathOf(strDebugFile);
    const CBusyCursor wait;
    CMDIChildWnd* pFrame = pTemplate->CreateNewFrame(*pDocument);
    if (pFrame == nullptr || !session.LoadLog()) {
        pTemplate->CloseDocument(*pDocument);
        return;
    }
    session.FillThreadTree();
    pDocument->SetTitle(strDebugFile);
    pTemplate->InitialUpdateFrame(*pFrame);
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

void ConnectRequests(CMainFrame& frame) {
    // A process is analysed.
    frame.m_wndProcessPane.m_fnAnalyze = [](const std::string& strImageName, const std::string& strDebugFile,
                                            std::int32_t nProcess) {
        theApp().AnalyzeProcess(ToQString(strImageName), PathToQString(strDebugFile), nProcess);
    };
    frame.m_wndProcessPane.m_fnGetSetProcInfo = [] { return theApp().m_pfnGetSetProcInfo; };
    // A cache that lives is browsed.
    CCacheTree& caches = frame.m_wndCachePane.Tree();
    caches.m_fnIsLive = [](const CCacheAnalysis::CCache& cache) {
        return theApp().CacheLive(cache.m_processId, ToQString(cache.m_strHandle));
    };
    caches.m_fnBrowse = [](const CCacheAnalysis::CCache& cache) {
        BrowseCache(cache.m_processId, cache.m_strHandle, cache.m_strName, cache.m_strInstance);
    };
}

void ConnectRequests(CSessionDocument& document) {
    // A log that was opened by hand is a recent file.
    QObject::connect(&document, &CSessionDocument::Opened, &document,
                     [](const QString& strPath) { theApp().AddToRecentFileList(strPath); });
}

} // namespace carvelot
