// The settings store off Windows, a text file of any bytes: what the program reads at its start, and what it
// writes. On Windows the store is the registry, which is not ours to damage.
#include "platform/Registry.h"
#include "settings/AppSettings.h"
#include "settings/RecentFiles.h"
#include "support/FuzzFile.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

using namespace carvelot;

#ifndef _WIN32

namespace {

std::string ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

#endif

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
#ifndef _WIN32
    static const fuzz::CFuzzFile file;
    static const bool set = ::setenv("CARVELOT_REGISTRY", file.Path().c_str(), 1) == 0;
    fuzz::Require(set, "the store can be named");
    file.Write(fuzz::AsText(data, size));

    platform::CRegistryKey key;
    for (const std::string_view path : {kRootKey, kAppsKey, kSettingsKey, kWorkspaceKey, kRecentFilesKey}) {
        if (key.Open(platform::ERegRoot::CurrentUser, path, platform::ERegAccess::Read)) {
            std::string name;
            std::uint32_t number = 0;
            for (std::size_t i = 0; key.EnumRaw32(i, name, number); ++i) {
                std::string text;
                (void)key.QueryRawText(name, 64, text);
                platform::CRegValue value;
                fuzz::Require(key.QueryValue(name, value) == platform::ERegStatus::Ok,
                              "a value that is listed can be asked for");
            }
        }
    }

    CAppSettings settings;
    settings.LoadSettings();
    settings.LoadTraceApps();
    settings.LoadFontAndAnalysis();
    settings.LoadApplicationLook();
    fuzz::Require(!settings.m_strFontName.empty(), "there is always a font");
    settings.SaveOptions();
    settings.SaveApplicationLook();
    CAppSettings again;
    again.LoadSettings();
    again.LoadTraceApps();
    again.LoadApplicationLook();
    fuzz::Require(again.m_bAutoRefresh == settings.m_bAutoRefresh &&
                      again.m_nRefreshRate == settings.m_nRefreshRate &&
                      again.m_nAppLook == settings.m_nAppLook,
                  "what was saved is loaded");
    fuzz::Require(again.m_fThreshold == settings.m_fThreshold ||
                      (std::isnan(again.m_fThreshold) && std::isnan(settings.m_fThreshold)),
                  "the threshold is loaded as it was saved");
    fuzz::Require(again.m_traceApps.size() == settings.m_traceApps.size(), "the applications are all there");

    CRecentFiles recent;
    recent.Load();
    recent.Add("/a/log");
    recent.Save();
    CRecentFiles recentAgain;
    recentAgain.Load();
    fuzz::Require(recentAgain.m_listPaths == recent.m_listPaths, "the recent files are loaded as saved");

    // What a damaged store was is kept once beside it.
    const std::string aside = file.Path() + ".damaged";
    for (const platform::CSetAside& kept : platform::TakeSetAside()) {
        if (aside.ends_with("/" + kept.m_strName)) {
            fuzz::Require(ReadAll(aside) == fuzz::AsText(data, size), "what is set aside is what there was");
        }
    }
    std::remove(aside.c_str());
    fuzz::Require(!std::filesystem::exists(file.Path() + ".2.damaged"), "a store is set aside once");
#else
    (void)data;
    (void)size;
#endif
    return 0;
}
