// AppSettings.h - the settings of the application, read once at start-up and public to every part.
#pragma once

#include "records/AnalysisSettings.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// Below the current user's key. The applications list and the refresh settings stand in keys of their own;
// all that belongs to the window stands in Workspace.
inline constexpr std::string_view kRootKey = "Software\\Tamrisk\\Carvelot";
inline constexpr std::string_view kAppsKey = "Software\\Tamrisk\\Carvelot\\JDEApps";
inline constexpr std::string_view kSettingsKey = "Software\\Tamrisk\\Carvelot\\Settings";
inline constexpr std::string_view kWorkspaceKey = "Software\\Tamrisk\\Carvelot\\Workspace";
inline constexpr std::string_view kRecentFilesKey = "Software\\Tamrisk\\Carvelot\\Recent File List";

inline constexpr std::int32_t kDefaultLook = 210; // Visual Studio 2008

// One application that the JDE Processes pane watches for.
struct tagTraceApp {
    std::string m_strName; // the executable's name
    bool m_bEnabled = true;
};

// Integers and texts of the window's own key. A value of another type counts as missing and is set aside.
std::int32_t GetWorkspaceInt(std::string_view name, std::int32_t fallback);
std::string GetWorkspaceString(std::string_view name, std::string_view fallback);
void WriteWorkspaceInt(std::string_view name, std::int32_t number);
void WriteWorkspaceString(std::string_view name, std::string_view text);
// Keeps a text of which its reader could make only the rest, or nothing, under another name.
void SetAsideWorkspaceValue(std::string_view name, std::string_view rest = {});

// "Settings that could not be read were set aside as ... in ...", of all since the last call; else empty.
std::string TakeSetAsideText();

// The threshold and whether caches are analysed stand in the base, which sessions read.
class CAppSettings : public AnalysisSettings {
public:
    bool m_bAutoRefresh = false;     // the process list refreshes by a timer
    std::int32_t m_nRefreshRate = 0; // seconds between two refreshes
    std::int32_t m_nFontHeight = 14; // device-independent pixels
    std::string m_strFontName;
    std::int32_t m_nAppLook = kDefaultLook; // command number of the look
    std::vector<tagTraceApp> m_traceApps;

    // Seeds what the store lacks and reads the refresh settings and the threshold. Leaves m_traceApps alone.
    void LoadSettings();
    void ClearTraceApps();
    // Fills m_traceApps with the stored applications in the store's own order, up to the first unreadable
    // one.
    void LoadTraceApps();
    // Reads the font and whether caches are analysed. Nothing ever writes these, of whatever type they are.
    void LoadFontAndAnalysis();
    void LoadApplicationLook();
    void SaveApplicationLook() const;
    // Writes the applications list, replacing the stored one, and the refresh settings.
    void SaveOptions() const;
};

} // namespace carvelot
