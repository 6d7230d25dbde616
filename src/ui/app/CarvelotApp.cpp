#include "ui/app/CarvelotApp.h"

#include "explore/PieceOrder.h"
#include "platform/Ole.h"
#include "platform/ProgramIdentity.h"
#include "platform/VersionResource.h"
#include "settings/Commands.h"
#include "settings/StartArguments.h"
#include "ui/app/AboutDlg.h"
#include "ui/app/MainFrame.h"
#include "ui/app/OptionsDlg.h"
#include "ui/kit/AccessibleMenus.h"
#include "ui/kit/PathText.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/TabbedClientArea.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/session/SessionDocument.h"
#include "ui/tools/ConvertDates.h"
#include "ui/tools/GBLTables.h"
#include "ui/tools/Settings.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QFileInfo>

namespace carvelot {

namespace {

// As the recent files have it.
std::string RecentPath(const QString& path) {
    return PathOf(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath()));
}

} // namespace

CCarvelotApp& theApp() {
    static CCarvelotApp app;
    return app;
}

CCarvelotApp::CCarvelotApp()
    : m_pJDESettings(MakeJDESettingsStore(m_jdeSettings)), m_fnInitializeOle(platform::InitializeOle),
      m_fnAddDocTemplates(AddDocTemplates) {
    SetSettings(*this);
    AddCommand(ID_APP_ABOUT, [this] { OnAppAbout(); });
    AddCommand(
        ID_FILE_NEW, [this] { OnFileNew(); }, [this] { return FirstDocTemplate() != nullptr; });
    AddCommand(
        ID_FILE_OPEN, [this] { OnFileOpen(); }, [this] { return FirstDocTemplate() != nullptr; });
    AddCommand(
        ID_EXPLORE_OPEN_PIECES, [this] { OnOpenPieces(); }, [this] { return FirstDocTemplate() != nullptr; });
    AddCommand(ID_TOOLS_OPTIONS, [this] { OnOptions(); });
    AddCommand(ID_TOOLS_GLOBAL_TABLES, [this] { OnGlobalTables(); });
    AddCommand(ID_TOOLS_CONVERT_DATES, [this] { OnConvertDates(); });
    AddCommand(ID_TOOLS_JDE_SETTINGS, [this] { OnJDESettings(); });
}

CCarvelotApp::~CCarvelotApp() = default;

bool CCarvelotApp::InitInstance(const std::vector<std::string>& arguments) {
    m_bOle = m_fnInitializeOle();
    if (!m_bOle) {
        UserInterface().ShowMessage(QStringLiteral(
            "OLE initialization failed.  Make sure that the OLE libraries are the correct version."));
        return false;
    }
    ShowTipsAsPlainText();
    ShowMenusToScreenReaders();
    m_recentFiles.Load();
    LoadSettings();
    ClearTraceApps();
    LoadTraceApps();
    LoadFontAndAnalysis();
    BindCompanionLibrary();
    m_fnAddDocTemplates(*this);

    m_pMainWnd = new CMainFrame;
    if (!m_pMainWnd->LoadFrame()) {
        delete m_pMainWnd;
        m_pMainWnd = nullptr;
        return false;
    }
    // Without a file to open no document is made: the window opens empty.
    if (const auto file = FileToOpen(arguments)) {
        if (OpenDocumentFile(PathToQString(*file)) == nullptr) {
            return false;
        }
    }
    // Else the toolkit would give the keyboard to the first button of a pane.
    if (m_pMainWnd->ActiveChild() == nullptr) {
        m_pMainWnd->ClientArea().setFocus(Qt::OtherFocusReason);
    }
    m_pMainWnd->show();
    m_pMainWnd->TellSetAside();
    m_pMainWnd->repaint();
    RegisterRestart();
    // Last and after the window is there: a workstation without JDE meets this message, and goes on.
    BindMathNumeric();
    return true;
}

int CCarvelotApp::ExitInstance() {
    if (m_pMainWnd != nullptr) {
        m_recentFiles.Save();
    }
    CloseAllDocuments();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete m_pMainWnd;
    m_pMainWnd = nullptr;
    m_pCacheTemplate = nullptr;
    m_listTemplates.clear();
    if (m_bOle) {
        platform::UninitializeOle();
    }
    m_bOle = false;
    ClearTraceApps();
    m_pfnGetSetProcInfo = nullptr;
    m_hSkelmond.Free();
    m_pfnFormatMathNumeric = nullptr;
    m_hJdeKrnl.Free();
    return 0;
}

void CCarvelotApp::BindCompanionLibrary() {
    std::uint32_t error = 0;
    if (!m_hSkelmond.Load(kCompanionLibrary, error)) {
        UserInterface().ShowMessage(QStringLiteral("Cannot Load Skelmond.DLL Error: %1").arg(error));
        return;
    }
    m_pfnGetSetProcInfo =
        reinterpret_cast<FGetSetProcInfo>(m_hSkelmond.Symbol("SkelmondGetSetProcInfo", error));
    if (m_pfnGetSetProcInfo == nullptr) {
        UserInterface().ShowMessage(
            QStringLiteral("Cannot address off SkelmondGetSetProcInfo Error: %1").arg(error));
    }
}

void CCarvelotApp::BindMathNumeric() {
    std::uint32_t error = 0;
    if (!m_hJdeKrnl.Load("jdekrnl.dll", error)) {
        UserInterface().ShowMessage(QStringLiteral("Cannot Load jdekrnl.DLL"));
        return;
    }
    m_pfnFormatMathNumeric = m_hJdeKrnl.Symbol("FormatMathNumeric", error);
    if (m_pfnFormatMathNumeric == nullptr) {
        UserInterface().ShowMessage(QStringLiteral("GetProcAddressFailed for ormatMathNumeric"));
    }
}

CDocTemplate& CCarvelotApp::AddDocTemplate(std::unique_ptr<CDocTemplate> documentTemplate) {
    m_listTemplates.push_back(std::move(documentTemplate));
    return *m_listTemplates.back();
}

CDocTemplate* CCarvelotApp::FirstDocTemplate() const {
    return m_listTemplates.empty() ? nullptr : m_listTemplates.front().get();
}

CDocument* CCarvelotApp::OpenDocumentFile(const QString& path) {
    for (const auto& documentTemplate : m_listTemplates) {
        if (CDocument* document = documentTemplate->FindDocument(path)) {
            if (document->GetFrame() != nullptr && m_pMainWnd != nullptr) {
                m_pMainWnd->ClientArea().Activate(*document->GetFrame());
            }
            return document;
        }
    }
    CDocTemplate* documentTemplate = FirstDocTemplate();
    return documentTemplate != nullptr ? documentTemplate->OpenDocumentFile(path) : nullptr;
}

void CCarvelotApp::OpenDocumentFiles(const QStringList& paths) {
    const auto each = [&] {
        for (const QString& path : paths) {
            OpenDocumentFile(path);
        }
    };
    if (paths.size() < 2) {
        each();
        return;
    }
    const std::optional<int> answer = UserInterface().AskChoice(
        QCoreApplication::translate("CCarvelotApp", "Are these %n files one log in pieces?", nullptr,
                                    static_cast<int>(paths.size())),
        {QCoreApplication::translate("CCarvelotApp", "One Log in &Pieces"),
         QCoreApplication::translate("CCarvelotApp", "&Each for Itself")});
    if (answer == 0) {
        OpenPieces(paths);
    } else if (answer == 1) {
        each();
    }
}

CDocument* CCarvelotApp::OpenPieces(const QStringList& paths) {
    CDocTemplate* const documentTemplate = FirstDocTemplate();
    if (documentTemplate == nullptr) {
        return nullptr;
    }
    std::vector<std::string> files;
    for (const QString& path : paths) {
        files.push_back(PathOf(path));
    }
    return documentTemplate->OpenDocument([&files](CDocument& document) {
        auto* const session = qobject_cast<CSessionDocument*>(&document);
        return session != nullptr && session->OnOpenPieces(PiecesByTime(files));
    });
}

void CCarvelotApp::CloseAllDocuments() {
    for (const auto& documentTemplate : m_listTemplates) {
        for (CDocument* document : documentTemplate->Documents()) {
            document->OnCloseDocument();
        }
    }
}

void CCarvelotApp::AddToRecentFileList(const QString& path) { m_recentFiles.Add(RecentPath(path)); }

CDialects CCarvelotApp::KeptDialects(const QString& path) const {
    return CDialects::Named(m_recentFiles.Dialects(RecentPath(path)));
}

void CCarvelotApp::KeepDialects(const QString& path, CDialects dialects) {
    m_recentFiles.SetDialects(RecentPath(path), dialects.Names());
}

void CCarvelotApp::RegisterRestart() const {
    const CMDIChildWnd* child = m_pMainWnd != nullptr ? m_pMainWnd->ActiveChild() : nullptr;
    const CDocument* document = child != nullptr ? child->GetActiveDocument() : nullptr;
    const QString path = document != nullptr ? document->GetPathName() : QString();
    platform::RegisterRestart(path.isEmpty()
                                  ? std::string()
                                  : PathOf(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath())));
}

bool CCarvelotApp::CacheLive(std::uint32_t process, const QString& handle) {
    const ECacheProbe probe = ProbeCache(m_hSkelmond, process, ToUtf8(handle));
    if (probe == ECacheProbe::NoEntryPoint) {
        UserInterface().ShowMessage(QStringLiteral("Get Proc address failed"));
    }
    return probe == ECacheProbe::Live;
}

void CCarvelotApp::OnAppAbout() {
    CAboutDlg dialog;
    UserInterface().RunDialog(dialog);
}

void CCarvelotApp::OnFileNew() {
    if (CDocTemplate* documentTemplate = FirstDocTemplate()) {
        documentTemplate->OpenDocumentFile({});
    }
}

void CCarvelotApp::OnFileOpen() {
    const auto path = UserInterface().AskOpenFile({EFiles::Logs,
                                                   QCoreApplication::translate("CCarvelotApp", "Open"),
                                                   QStringLiteral("log"),
                                                   {},
                                                   QString::fromLatin1(kLogFilter)});
    if (path) {
        OpenDocumentFile(*path);
    }
}

void CCarvelotApp::OnOpenPieces() {
    const QStringList paths =
        UserInterface().AskOpenFiles({EFiles::Logs,
                                      QCoreApplication::translate("CCarvelotApp", "Open Log in Pieces"),
                                      QStringLiteral("log"),
                                      {},
                                      QString::fromLatin1(kLogFilter)});
    if (!paths.isEmpty()) {
        OpenPieces(paths);
    }
}

void CCarvelotApp::OnOptions() {
    COptionsDlg dialog(*this);
    UserInterface().RunDialog(dialog);
    if (m_pMainWnd == nullptr) {
        return;
    }
    m_pMainWnd->m_wndProcessPane.RestartTimer();
    m_pMainWnd->m_wndProcessPane.RefreshProcessList();
    m_pMainWnd->TellSetAside();
}

void CCarvelotApp::OnGlobalTables() {
    CGBLTables dialog;
    UserInterface().RunDialog(dialog);
}

void CCarvelotApp::OnConvertDates() {
    CConvertDates dialog;
    UserInterface().RunDialog(dialog);
}

void CCarvelotApp::OnJDESettings() {
    const std::unique_ptr<QDialog> dialog = m_pJDESettings->MakeDialog();
    UpdateJDESettings();
    UserInterface().RunDialog(*dialog);
    UpdateJDESettings();
}

void CCarvelotApp::UpdateJDESettings() {
    if (m_pJDESettings->HasWebApplication()) {
        m_pJDESettings->ReadLogProperties();
    }
    m_pJDESettings->ReadIni();
}

QString CCarvelotApp::BitnessText() {
    return sizeof(void*) == 8 ? QStringLiteral("64 bit") : QStringLiteral("32 bit");
}

QString CCarvelotApp::VersionText() {
    platform::CFileVersion version;
    platform::ReadOwnFileVersion(version);
    return QStringLiteral("Carvelot, Version: %1.%2.%3.%4")
        .arg(version.m_nMost >> 16)
        .arg(version.m_nMost & 0xFFFF)
        .arg(version.m_nLeast >> 16)
        .arg(version.m_nLeast & 0xFFFF);
}

} // namespace carvelot
