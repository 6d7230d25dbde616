#include "views/ui/SessionHost.h"

#include "shell/ui/CarvelotApp.h"
#include "shell/ui/MainFrame.h"
#include "shell/ui/TabbedClientArea.h"
#include "shell/ui/Text.h"
#include "shell/ui/UserInterface.h"
#include "views/ui/ChildFrame.h"
#include "views/ui/SessionDocument.h"

#include <QApplication>
#include <QDesktopServices>
#include <QUrl>

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
    if (CMainFrame* pMain = MainFrame())
        pMain->ShowProgress(-1);
}

void CSessionHost::LoadProgress(std::uint64_t done, std::uint64_t total) {
    if (CMainFrame* pMain = MainFrame(); pMain != nullptr && total != 0)
        pMain->ShowProgress(static_cast<int>(std::min(done, total) * 100 / total));
}

void CSessionHost::ClearPanes() {
    if (CMainFrame* pMain = MainFrame())
        pMain->ClearPanes();
}

void CSessionHost::SetTitle(CCarvelotDoc&, const std::string& title) {
    m_document.SetTitle(ToQString(title));
}

void CSessionHost::AddToRecentFileList(const std::string& path) {
    theApp().AddToRecentFileList(ToQString(path));
}

std::optional<std::string> CSessionHost::AskForLog() {
    const auto strPath = UserInterface().AskOpenFile({EFiles::Logs,
                                                      QCoreApplication::translate("CSessionHost", "Open"),
                                                      QStringLiteral("log"),
                                                      {},
                                                      QString::fromLatin1(kLogFilter)});
    return strPath ? std::optional(ToUtf8(*strPath)) : std::nullopt;
}

void CSessionHost::OpenInShell(const std::string& path) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(ToQString(path)));
}

void CSessionHost::ActivateSession(CCarvelotDoc&) {
    CMainFrame* pMain = MainFrame();
    auto* pFrame = qobject_cast<CChildFrame*>(m_document.GetFrame());
    if (pMain == nullptr || pFrame == nullptr)
        return;
    pMain->ClientArea().Activate(*pFrame);
    pFrame->ThreadView().setFocus(Qt::OtherFocusReason);
}

} // namespace carvelot
