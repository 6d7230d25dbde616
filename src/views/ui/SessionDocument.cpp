#include "views/ui/SessionDocument.h"

#include "shell/ui/CarvelotApp.h"
#include "shell/ui/MainFrame.h"
#include "shell/ui/PathText.h"
#include "shell/ui/Text.h"

namespace carvelot {

CSessionDocument::CSessionDocument()
    : m_host(*this), m_session(theApp(), theApp().m_pendingStatement, m_host) {
    AddCommand(ID_SESSION_ANALYZE, [this] { m_session.OnAnalyze(); });
    AddCommand(ID_SESSION_CLEAR_DEBUG_FILE, [this] { m_session.OnClearDebugFile(); });
    AddCommand(ID_SESSION_OPEN_AS_TEXT, [this] { m_session.OnOpenAsText(); });
}

CSessionDocument::~CSessionDocument() {
    // Close All asks no window: what the panes still show of this session lets go of its records here.
    if (CMainFrame* pMain = MainFrame())
        pMain->LetGo(m_session);
}

bool CSessionDocument::OnNewDocument() {
    if (!m_session.OnNewDocument())
        return false;
    SetPathName(PathToQString(m_session.m_strLogPath));
    return true;
}

bool CSessionDocument::OnOpenDocument(const QString& strPath) {
    return m_session.OnOpenDocument(PathOf(strPath));
}

QString CSessionDocument::PathInTitle() const { return ToQString(m_session.m_strLogPath); }

} // namespace carvelot
