// CarvelotApp.h - the one application object: start-up, settings, libraries, and the commands that need no
// window.
#pragma once

#include "live/CompanionLibrary.h"
#include "parse/Classifier.h"
#include "parse/Dialects.h"
#include "platform/DynamicLibrary.h"
#include "settings/AppSettings.h"
#include "settings/RecentFiles.h"
#include "tools/JDESettings.h"
#include "ui/kit/CommandTarget.h"
#include "ui/kit/Document.h"
#include "ui/tools/Settings.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QDialog;

namespace carvelot {

class CMainFrame;

// The program's windows are one group on the task bar.
inline constexpr char kProgramIdentifier[] = "Tamrisk.Carvelot.2.0";

class CCarvelotApp : public CAppSettings, public CCommandTarget {
public:
    CCarvelotApp();
    ~CCarvelotApp() override;

    // Brings the program up in its fixed order; false ends the run. Arguments come without the program's
    // name.
    bool InitInstance(const std::vector<std::string>& arguments);
    // Ends it; returns the exit code.
    int ExitInstance();

    CDocTemplate& AddDocTemplate(std::unique_ptr<CDocTemplate> documentTemplate);
    // The template that Open and the analysis of a process reach; null before one is there.
    CDocTemplate* FirstDocTemplate() const;
    const std::vector<std::unique_ptr<CDocTemplate>>& DocTemplates() const { return m_listTemplates; }
    // Opens the file, or activates its window when it is open already. Null when it cannot be opened.
    CDocument* OpenDocumentFile(const QString& path);
    // The same for several: the user says whether they are one log in pieces, or each is one for itself.
    void OpenDocumentFiles(const QStringList& paths);
    // Opens them as one log, in the order of their times. Null when one cannot be opened.
    CDocument* OpenPieces(const QStringList& paths);
    // Closes all documents without asking their windows.
    void CloseAllDocuments();
    void AddToRecentFileList(const QString& path);
    // The dialects that a recent file was read with; none of any other.
    CDialects KeptDialects(const QString& path) const;
    void KeepDialects(const QString& path, CDialects dialects);
    // Tells the system which file to open should it have to start the program again: the one in front.
    void RegisterRestart() const;

    // Opens the debug file of a running process as a session that keeps that process's records only. A file
    // that cannot be analysed leaves nothing behind. The recent files stay as they are.
    void AnalyzeProcess(const QString& imageName, const QString& debugFile, std::int32_t process);
    // Does the cache of that handle, hexadecimal as logs print it, still answer in the running process?
    bool CacheLive(std::uint32_t process, const QString& handle);

    void OnAppAbout();
    void OnFileNew();
    void OnFileOpen();
    void OnOpenPieces();
    void OnOptions();
    void OnJDESettings();
    void OnGlobalTables();
    void OnConvertDates();

    // "64 bit" or "32 bit", as the program was built.
    static QString BitnessText();
    // "Carvelot, Version: %d.%d.%d.%d" of the program's own file.
    static QString VersionText();

    CJDESettings m_jdeSettings;
    std::unique_ptr<CJDESettingsStore> m_pJDESettings; // over m_jdeSettings; never null
    CRecentFiles m_recentFiles;
    platform::CDynamicLibrary m_hSkelmond;
    FGetSetProcInfo m_pfnGetSetProcInfo = nullptr;
    CDocTemplate* m_pCacheTemplate = nullptr;
    PendingStatement m_pendingStatement; // of the JAS classifier; outlives every session
    platform::CDynamicLibrary m_hJdeKrnl;
    platform::CDynamicLibrary::FPointer m_pfnFormatMathNumeric = nullptr;
    CMainFrame* m_pMainWnd = nullptr;

    // The start's dealings with the system, replaceable by tests.
    std::function<bool()> m_fnInitializeOle;
    std::function<void(CCarvelotApp&)> m_fnAddDocTemplates;

private:
    void BindCompanionLibrary();
    void BindMathNumeric();
    void UpdateJDESettings();

    std::vector<std::unique_ptr<CDocTemplate>> m_listTemplates;
    bool m_bOle = false;
};

// The application object, made at its first use and before any window.
CCarvelotApp& theApp();

// Adds the templates of session and cache browser windows, in this order.
void AddDocTemplates(CCarvelotApp& app);

} // namespace carvelot
