#include "ui/session/SessionDocument.h"

#include "ui/kit/MainWindow.h"
#include "ui/kit/PathText.h"
#include "ui/kit/Text.h"
#include "ui/session/ChildFrame.h"
#include "ui/session/SessionPanes.h"
#include "ui/session/ThreadView.h"

namespace carvelot {

CSessionDocument::CSessionDocument(PendingStatement& pending)
    : m_host(*this), m_session(Settings(), pending, m_host) {
    AddCommand(ID_SESSION_ANALYZE, [this] { m_session.OnAnalyze(); });
    AddCommand(
        ID_SESSION_CLEAR_DEBUG_FILE, [this] { m_session.OnClearDebugFile(); },
        [this] { return !m_session.IsPacked(); });
    AddCommand(ID_SESSION_OPEN_AS_TEXT, [this] { m_session.OnOpenAsText(); });
    connect(this, &CSessionDocument::RecordsCame, this, [this] {
        if (CMDIChildWnd* const frame = GetFrame()) {
            const CDialects dialects = m_session.m_dialects;
            frame->SetTipNote(dialects.Empty() ? QString()
                                               : tr("Dialect: %1").arg(ToQString(dialects.Names())));
        }
    });
}

CSessionDocument::~CSessionDocument() {
    emit RecordsGo();
    // Close All asks no window: what the panes still show of this session lets go of its records here.
    if (CSessionPanes* const panes = SessionPanes()) {
        panes->LetGo(m_session);
    }
}

bool CSessionDocument::OnNewDocument() {
    if (!m_session.OnNewDocument()) {
        return false;
    }
    SetPathName(PathToQString(m_session.m_strLogPath));
    return true;
}

bool CSessionDocument::OnOpenDocument(const QString& path) {
    RecallDialects(path);
    return m_session.OnOpenDocument(PathOf(path));
}

void CSessionDocument::RecallDialects(const QString& path) {
    m_session.m_dialects = m_fnKeptDialects ? m_fnKeptDialects(path) : CDialects();
}

void CSessionDocument::ReadWith(CDialects dialects) {
    m_session.m_dialects = dialects;
    if (m_session.m_listPieces.empty()) {
        m_session.OnAnalyze();
        emit DialectsChosen(PathInTitle(), dialects);
        return;
    }
    if (m_fnOrderPieces) {
        std::vector<std::string> paths;
        for (const LogPiece& piece : m_session.m_listPieces) {
            paths.push_back(piece.path);
        }
        m_session.m_listPieces = m_fnOrderPieces(paths, dialects);
    }
    m_session.OnAnalyze();
}

void CSessionDocument::ShowGrowth() {
    if (auto* const threads = static_cast<CThreadView*>(m_session.m_pThreadView)) {
        threads->ShowGrowth();
    }
}

void CSessionDocument::ShowAnew() {
    CSessionPanes* const panes = SessionPanes();
    if (panes != nullptr && panes->m_pPanesOwner == GetFrame()) {
        panes->ClearPanes();
    }
    m_session.FillThreadTree();
}

bool CSessionDocument::OnOpenPieces(std::vector<LogPiece> pieces) {
    return m_session.OnOpenPieces(std::move(pieces));
}

QString CSessionDocument::PathInTitle() const { return ToQString(m_session.LogName()); }

} // namespace carvelot
