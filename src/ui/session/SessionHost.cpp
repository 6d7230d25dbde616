#include "ui/session/SessionHost.h"

#include "platform/ShellOpen.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/PathText.h"
#include "ui/kit/TabbedClientArea.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/session/ChildFrame.h"
#include "ui/session/ChooseMembersDlg.h"
#include "ui/session/SessionDocument.h"
#include "ui/session/SessionPanes.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

namespace carvelot {

namespace {

// A member of an archive as a document of its own.
void OpenMember(CDocTemplate& documentTemplate, const std::string& path, const std::string& member) {
    CDocument* const added = documentTemplate.CreateNewDocument();
    auto* const document = qobject_cast<CSessionDocument*>(added);
    if (document == nullptr) {
        if (added != nullptr) {
            documentTemplate.CloseDocument(*added);
        }
        return;
    }
    CMDIChildWnd* const frame = documentTemplate.CreateNewFrame(*document);
    if (frame == nullptr || !document->Session().OnOpenDocument(path, {member})) {
        documentTemplate.CloseDocument(*document);
        return;
    }
    document->SetPathName(PathToQString(path));
    documentTemplate.InitialUpdateFrame(*frame);
}

} // namespace

CSessionHost::~CSessionHost() = default;

void CSessionHost::ShowMessage(std::string_view text) { UserInterface().ShowMessage(ToQString(text)); }

void CSessionHost::PrintOutput(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

void CSessionHost::BeginWaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }

void CSessionHost::EndWaitCursor() { QApplication::restoreOverrideCursor(); }

void CSessionHost::LoadProgress(std::uint64_t done, std::uint64_t total) {
    if (CMainWindow* const main = MainWindow(); main != nullptr && total != 0) {
        main->ShowProgress(static_cast<int>(std::min(done, total) * 100 / total));
    }
    if (!m_waitBox) {
        m_waitBox.emplace(QCoreApplication::translate("CSessionHost", "Reading %1")
                              .arg(ToQString(m_document.Session().LogName())));
    }
    if (!m_waitBox->GoOn(done, total)) {
        throw LoadEnded();
    }
}

void CSessionHost::EndLoadProgress() {
    m_waitBox.reset();
    if (CMainWindow* const main = MainWindow()) {
        main->ShowProgress(-1);
    }
}

void CSessionHost::ClearPanes() {
    if (CSessionPanes* const panes = SessionPanes()) {
        panes->ClearPanes();
    }
}

void CSessionHost::SetTitle(CCarvelotDoc&, const std::string& title) {
    m_document.SetTitle(ToQString(title));
}

void CSessionHost::AddToRecentFileList(const std::string& path) {
    emit m_document.Opened(PathToQString(path));
}

std::optional<std::string> CSessionHost::AskForLog() {
    const auto path = UserInterface().AskOpenFile({EFiles::Logs,
                                                   QCoreApplication::translate("CSessionHost", "Open"),
                                                   QStringLiteral("log"),
                                                   {},
                                                   QString::fromLatin1(kNewLogFilter)});
    if (!path) {
        return std::nullopt;
    }
    m_document.RecallDialects(*path);
    return PathOf(*path);
}

std::vector<std::size_t> CSessionHost::ChooseMembers(const CCarvelotDoc& session,
                                                     const std::vector<PackedMember>& members) {
    CChooseMembersDlg dialog(ToQString(session.m_strLogPath), members);
    // The load that asks has begun.
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    const bool accepted = UserInterface().RunDialog(dialog) == QDialog::Accepted;
    QApplication::restoreOverrideCursor();
    if (!accepted) {
        return {};
    }
    std::vector<std::size_t> chosen = dialog.Chosen();
    CDocTemplate* const documentTemplate = m_document.GetDocTemplate();
    if (dialog.AsOneLog() || chosen.empty() || documentTemplate == nullptr) {
        return chosen;
    }
    // The first is this document's; the others open behind it.
    for (std::size_t i = 1; i < chosen.size(); ++i) {
        QTimer::singleShot(0, MainWindow(),
                           [documentTemplate, path = session.m_strLogPath, name = members[chosen[i]].name] {
                               OpenMember(*documentTemplate, path, name);
                           });
    }
    chosen.resize(1);
    return chosen;
}

void CSessionHost::OpenInShell(const std::string& path) { platform::OpenInItsProgram(path); }

void CSessionHost::ActivateSession(CCarvelotDoc&) {
    CMainWindow* const main = MainWindow();
    auto* frame = qobject_cast<CChildFrame*>(m_document.GetFrame());
    if (main == nullptr || frame == nullptr) {
        return;
    }
    main->ClientArea().Activate(*frame);
    frame->ThreadView().setFocus(Qt::OtherFocusReason);
}

} // namespace carvelot
