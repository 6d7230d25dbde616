#include "settings/AppSettings.h"

#include "platform/Registry.h"

#include <array>
#include <bit>

namespace carvelot {

namespace {

using platform::CRegistryKey;
using platform::CRegValue;
using platform::ERegAccess;
using platform::ERegRoot;
using platform::ERegStatus;
using platform::ERegType;

constexpr std::array<std::string_view, 6> kDefaultApps = {
    "activconsole.exe", "utbrowse.exe", "oexplore.exe", "objectbrowser.exe", "fda.exe", "BusBuild+.exe"};

bool OpenOrCreate(CRegistryKey& key, std::string_view path) {
    return key.Open(ERegRoot::CurrentUser, path, ERegAccess::Full) || key.Create(ERegRoot::CurrentUser, path);
}

bool QueryWorkspace(std::string_view name, CRegValue& value) {
    CRegistryKey key;
    return key.Open(ERegRoot::CurrentUser, kWorkspaceKey, ERegAccess::Read) &&
           key.QueryValue(name, value) == ERegStatus::Ok;
}

// Up to the first one that cannot be read.
std::size_t CountReadable(const CRegistryKey& key) {
    std::string name;
    std::uint32_t number = 0;
    std::size_t count = 0;
    while (key.EnumRaw32(count, name, number)) {
        ++count;
    }
    return count;
}

// What stands there as something else than a number is kept aside.
void SetNumber(CRegistryKey& key, std::string_view name, std::uint32_t number) {
    CRegValue value;
    if (key.QueryValue(name, value) == ERegStatus::Ok && value.m_nType != ERegType::Dword) {
        key.SetAside(name);
    }
    key.SetDword(name, number);
}

} // namespace

std::int32_t GetWorkspaceInt(std::string_view name, std::int32_t fallback) {
    CRegValue value;
    if (!QueryWorkspace(name, value)) {
        return fallback;
    }
    if (value.m_nType != ERegType::Dword) {
        SetAsideWorkspaceValue(name);
        return fallback;
    }
    return static_cast<std::int32_t>(value.m_nNumber);
}

std::string GetWorkspaceString(std::string_view name, std::string_view fallback) {
    CRegValue value;
    if (!QueryWorkspace(name, value)) {
        return std::string(fallback);
    }
    if (value.m_nType != ERegType::String) {
        SetAsideWorkspaceValue(name);
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

void SetAsideWorkspaceValue(std::string_view name, std::string_view rest) {
    CRegistryKey key;
    if (key.Open(ERegRoot::CurrentUser, kWorkspaceKey, ERegAccess::Full) && key.SetAside(name) &&
        !rest.empty()) {
        key.SetString(name, rest);
    }
}

std::string TakeSetAsideText() {
    const std::vector<platform::CSetAside> all = platform::TakeSetAside();
    std::string text;
    for (std::size_t n = 0; n < all.size(); ++n) {
        text += n == 0 ? "Settings that could not be read were set aside as " : ", ";
        text += all[n].m_strName;
        if (n + 1 == all.size() || all[n + 1].m_strPlace != all[n].m_strPlace) {
            text += " in " + all[n].m_strPlace;
        }
    }
    return text;
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
    CRegValue value;
    const auto number = [&value](std::string_view name, std::int32_t fallback) {
        return QueryWorkspace(name, value) && value.m_nType == ERegType::Dword
                   ? static_cast<std::int32_t>(value.m_nNumber)
                   : fallback;
    };
    m_strFontName = "Courier New";
    if (QueryWorkspace("FontName", value) && value.m_nType == ERegType::String && !value.m_strText.empty()) {
        m_strFontName = value.m_strText;
    }
    m_nFontHeight = number("FontHeight", 14);
    m_bCacheAnalysis = number("CacheAnalysis", 1) != 0;
}

void CAppSettings::LoadApplicationLook() { m_nAppLook = GetWorkspaceInt("ApplicationLook", kDefaultLook); }

void CAppSettings::SaveApplicationLook() const { WriteWorkspaceInt("ApplicationLook", m_nAppLook); }

void CAppSettings::SaveOptions() const {
    CRegistryKey apps;
    if (apps.Open(ERegRoot::CurrentUser, kAppsKey, ERegAccess::Full)) {
        // Those that nobody could read, and those behind them, are not in the list that is written.
        if (CountReadable(apps) < apps.Count()) {
            apps.SetAsideCopy();
        }
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
    SetNumber(settings, "AutoRefresh", m_bAutoRefresh ? 1 : 0);
    SetNumber(settings, "Rate", static_cast<std::uint32_t>(m_nRefreshRate));
    SetNumber(settings, "Threshold", std::bit_cast<std::uint32_t>(m_fThreshold));
}

} // namespace carvelot
