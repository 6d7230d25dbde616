#include "ui/session/SessionHost.h"

#include "platform/ShellOpen.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/PathText.h"
#include "ui/kit/TabbedClientArea.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/session/ChildFrame.h"
#include "ui/session/SessionDocument.h"
#include "ui/session/SessionPanes.h"

#include <QApplication>

#include <cstdio>

namespace carvelot {

CSessionHost::~CSessionHost() = default;

void CSessionHost::ShowMessage(std::string_view text) { UserInterface().ShowMessage(ToQString(text)); }

void CSessionHost::PrintOutput(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

void CSessionHost::BeginWaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }

void CSessionHost::EndWaitCursor() {
    QApplication::restoreOverrideCursor();
    if (CMainWindow* const main = MainWindow()) {
        main->ShowProgress(-1);
    }
}

void CSessionHost::LoadProgress(std::uint64_t done, std::uint64_t total) {
    if (CMainWindow* const main = MainWindow(); main != nullptr && total != 0) {
        main->ShowProgress(static_cast<int>(std::min(done, total) * 100 / total));
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
                                                   QString::fromLatin1(kLogFilter)});
    if (!path) {
        return std::nullopt;
    }
    m_document.RecallDialects(*path);
    return PathOf(*path);
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
