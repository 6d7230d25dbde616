#include "settings/AppSettings.h"

#include "platform/Registry.h"

#include <array>
#include <bit>

namespace carvelot {

namespace {

using platform::CRegistryKey;
using platform::ERegAccess;
using platform::ERegRoot;
using platform::ERegStatus;

constexpr std::array<std::string_view, 6> kDefaultApps = {
    "activconsole.exe", "utbrowse.exe", "oexplore.exe", "objectbrowser.exe", "fda.exe", "BusBuild+.exe"};

bool OpenOrCreate(CRegistryKey& key, std::string_view path) {
    return key.Open(ERegRoot::CurrentUser, path, ERegAccess::Full) || key.Create(ERegRoot::CurrentUser, path);
}

} // namespace

std::int32_t GetWorkspaceInt(std::string_view name, std::int32_t fallback) {
    CRegistryKey key;
    platform::CRegValue value;
    if (!key.Open(ERegRoot::CurrentUser, kWorkspaceKey, ERegAccess::Read) ||
        key.QueryValue(name, value) != ERegStatus::Ok || value.m_nType != platform::ERegType::Dword) {
        return fallback;
    }
    return static_cast<std::int32_t>(value.m_nNumber);
}

std::string GetWorkspaceString(std::string_view name, std::string_view fallback) {
    CRegistryKey key;
    platform::CRegValue value;
    if (!key.Open(ERegRoot::CurrentUser, kWorkspaceKey, ERegAccess::Read) ||
        key.QueryValue(name, value) != ERegStatus::Ok || value.m_nType != platform::ERegType::String) {
        return std::string(fallback);
    }
    return value.m_strText;
}

void WriteWorkspaceInt(std::string_view name, std::int32_t number) {
    CRegistryKey key;
    if (OpenOrCreate(key, kWorkspaceKey)) {
        key.SetDword(name, static_cast<std::uint32_t>(number));
    }
}

void WriteWorkspaceString(std::string_view name, std::string_view text) {
    CRegistryKey key;
    if (OpenOrCreate(key, kWorkspaceKey)) {
        key.SetString(name, text);
    }
}

void CAppSettings::LoadSettings() {
    CRegistryKey apps;
    if (!apps.Open(ERegRoot::CurrentUser, kAppsKey, ERegAccess::Read) &&
        apps.Create(ERegRoot::CurrentUser, kAppsKey)) {
        for (const std::string_view name : kDefaultApps) {
            apps.SetDword(name, 1);
        }
    }
    apps.Close();

    CRegistryKey settings;
    OpenOrCreate(settings, kSettingsKey);
    // One number serves both values, so that a rate that is there but cannot be read repeats the flag before
    // it.
    std::uint32_t number = 1;
    if (settings.QueryRaw32("AutoRefresh", number) == ERegStatus::NotFound) {
        settings.SetDword("AutoRefresh", 1);
        m_bAutoRefresh = true;
    } else {
        m_bAutoRefresh = number == 1;
    }
    if (settings.QueryRaw32("Rate", number) == ERegStatus::NotFound) {
        number = 10;
        settings.SetDword("Rate", number);
    }
    m_nRefreshRate = static_cast<std::int32_t>(number);
    // The threshold is a float whose four bytes are kept under the integer type.
    std::uint32_t threshold = 0;
    if (settings.QueryRaw32("Threshold", threshold) == ERegStatus::NotFound) {
        threshold = std::bit_cast<std::uint32_t>(1.0F);
        settings.SetDword("Threshold", threshold);
    }
    m_fThreshold = std::bit_cast<float>(threshold);
}

void CAppSettings::ClearTraceApps() { m_traceApps.clear(); }

void CAppSettings::LoadTraceApps() {
    CRegistryKey apps;
    if (!apps.Open(ERegRoot::CurrentUser, kAppsKey, ERegAccess::Full)) {
        return;
    }
    std::string name;
    std::uint32_t enabled = 0;
    for (std::size_t n = 0; apps.EnumRaw32(n, name, enabled); ++n) {
        m_traceApps.push_back({name, enabled == 1});
    }
}

void CAppSettings::LoadFontAndAnalysis() {
    m_strFontName = GetWorkspaceString("FontName", "Courier New");
    if (m_strFontName.empty()) {
        m_strFontName = "Courier New";
    }
    m_nFontHeight = GetWorkspaceInt("FontHeight", 14);
    m_bCacheAnalysis = GetWorkspaceInt("CacheAnalysis", 1) != 0;
}

void CAppSettings::LoadApplicationLook() { m_nAppLook = GetWorkspaceInt("ApplicationLook", kDefaultLook); }

void CAppSettings::SaveApplicationLook() const { WriteWorkspaceInt("ApplicationLook", m_nAppLook); }

void CAppSettings::SaveOptions() const {
    CRegistryKey apps;
    if (apps.Open(ERegRoot::CurrentUser, kAppsKey, ERegAccess::Full)) {
        apps.DeleteContent();
    } else {
        apps.Create(ERegRoot::CurrentUser, kAppsKey);
    }
    for (const tagTraceApp& app : m_traceApps) {
        apps.SetDword(app.m_strName, app.m_bEnabled ? 1 : 0);
    }
    apps.Close();

    CRegistryKey settings;
    OpenOrCreate(settings, kSettingsKey);
    settings.SetDword("AutoRefresh", m_bAutoRefresh ? 1 : 0);
    settings.SetDword("Rate", static_cast<std::uint32_t>(m_nRefreshRate));
    settings.SetDword("Threshold", std::bit_cast<std::uint32_t>(m_fThreshold));
}

} // namespace carvelot
