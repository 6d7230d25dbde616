#include "shell/ui/CarvelotApp.h"

#include "shell/ui/MainFrame.h"
#include "shell/ui/PathText.h"
#include "shell/ui/Text.h"
#include "views/ui/SessionDocument.h"

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

} // namespace carvelot
