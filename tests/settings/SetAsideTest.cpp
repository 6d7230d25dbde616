// Stored values that make no sense: what is kept of them, and what the user is told.
#include "settings/AppSettings.h"
#include "settings/RecentFiles.h"

#include "support/SettingsStore.h"

#include <gtest/gtest.h>

#include <bit>

namespace carvelot {
namespace {

using platform::CRegValue;
using platform::ERegStatus;
using platform::ERegType;
using test::SettingsStore;

// A value as "text", its number, or "-" where there is none.
std::string Told(std::string_view key, std::string_view name) {
    CRegValue value;
    if (SettingsStore::Key(key).QueryValue(name, value) != ERegStatus::Ok) {
        return "-";
    }
    return value.m_nType == ERegType::Dword ? std::to_string(value.m_nNumber) : '"' + value.m_strText + '"';
}

class SetAside : public testing::Test {
protected:
    SetAside() { (void)platform::TakeSetAside(); }

    std::string Place(std::string_view key) const {
#ifdef _WIN32
        return "HKEY_CURRENT_USER\\" + std::string(key);
#else
        (void)key;
        return m_store.Path();
#endif
    }

    SettingsStore m_store;
};

TEST_F(SetAside, AValueOfAnotherTypeCountsAsMissingAndIsKept) {
    SettingsStore::Key(kWorkspaceKey).SetDword("Layout", 5);
    SettingsStore::Key(kWorkspaceKey).SetString("StatusBar", "off");
    EXPECT_EQ(GetWorkspaceString("Layout", "none"), "none");
    EXPECT_EQ(GetWorkspaceInt("StatusBar", 1), 1);
    WriteWorkspaceString("Layout", "new");
    WriteWorkspaceInt("StatusBar", 0);
    EXPECT_EQ(Told(kWorkspaceKey, "Layout.damaged"), "5");
    EXPECT_EQ(Told(kWorkspaceKey, "StatusBar.damaged"), "\"off\"");
    EXPECT_EQ(GetWorkspaceString("Layout", "none"), "new");
    EXPECT_EQ(TakeSetAsideText(),
              "Settings that could not be read were set aside as Layout.damaged, StatusBar.damaged in " +
                  Place(kWorkspaceKey));
    EXPECT_EQ(TakeSetAsideText(), "");
}

TEST_F(SetAside, OfATextWhatCouldBeReadStandsInItsPlace) {
    WriteWorkspaceString("UsedCommands", "1,x,2");
    SetAsideWorkspaceValue("UsedCommands", "1,0,2");
    EXPECT_EQ(Told(kWorkspaceKey, "UsedCommands.damaged"), "\"1,x,2\"");
    EXPECT_EQ(Told(kWorkspaceKey, "UsedCommands"), "\"1,0,2\"");
    SetAsideWorkspaceValue("UsedCommands");
    EXPECT_EQ(Told(kWorkspaceKey, "UsedCommands.2.damaged"), "\"1,0,2\"");
    EXPECT_EQ(Told(kWorkspaceKey, "UsedCommands"), "-");
}

TEST_F(SetAside, SoundSettingsSayNothing) {
    CAppSettings settings;
    settings.LoadSettings();
    settings.LoadTraceApps();
    settings.LoadApplicationLook();
    settings.SaveApplicationLook();
    settings.SaveOptions();
    CRecentFiles recent;
    recent.Add("/a");
    recent.Save();
    recent.Load();
    EXPECT_EQ(GetWorkspaceString("Layout", ""), "");
    EXPECT_EQ(TakeSetAsideText(), "");
}

TEST_F(SetAside, ThingsInSeveralPlacesAreToldPlaceByPlace) {
    SettingsStore::Key(kRecentFilesKey).SetDword("File1", 1);
    SettingsStore::Key(kWorkspaceKey).SetDword("Layout", 5);
    CRecentFiles().Load();
    (void)GetWorkspaceString("Layout", "");
#ifdef _WIN32
    EXPECT_EQ(TakeSetAsideText(), "Settings that could not be read were set aside as File1.damaged in " +
                                      Place(kRecentFilesKey) + ", Layout.damaged in " + Place(kWorkspaceKey));
#else
    EXPECT_EQ(TakeSetAsideText(),
              "Settings that could not be read were set aside as File1.damaged, Layout.damaged in " +
                  m_store.Path());
#endif
}

TEST_F(SetAside, ARecentFileThatIsNoPathIsKeptAndTheOthersStand) {
    {
        auto key = SettingsStore::Key(kRecentFilesKey);
        key.SetDword("File1", 7);
        key.SetString("File2", "/logs/b.log");
        key.SetString("File3", "/logs/c.log");
        key.SetDword("Dialects3", 8);
    }
    CRecentFiles recent;
    recent.Load();
    EXPECT_EQ(recent.m_listPaths, (std::vector<std::string>{"/logs/b.log", "/logs/c.log"}));
    recent.Save();
    EXPECT_EQ(Told(kRecentFilesKey, "File1"), "\"/logs/b.log\"");
    EXPECT_EQ(Told(kRecentFilesKey, "File2"), "\"/logs/c.log\"");
    EXPECT_EQ(Told(kRecentFilesKey, "File3"), "-");
    EXPECT_EQ(Told(kRecentFilesKey, "File1.damaged"), "7");
    EXPECT_EQ(Told(kRecentFilesKey, "Dialects3.damaged"), "8");
}

#ifndef _WIN32 // a text of the registry ends at its first NUL

TEST_F(SetAside, ARecentFileWithANulIsNoPath) {
    SettingsStore::Key(kRecentFilesKey).SetString("File1", std::string_view("/logs\0/a.log", 12));
    CRecentFiles recent;
    recent.Load();
    EXPECT_TRUE(recent.m_listPaths.empty());
    EXPECT_NE(Told(kRecentFilesKey, "File1.damaged"), "-");
}

#endif

TEST_F(SetAside, ProgramsBehindOneThatCannotBeReadAreKeptWhenTheOptionsAreSaved) {
    {
        auto key = SettingsStore::Key(kAppsKey);
        key.SetDword("a.exe", 1);
        key.SetString("b.exe", "on");
        key.SetDword("c.exe", 0);
    }
    CAppSettings settings;
    settings.LoadTraceApps();
    settings.SaveOptions();
    const std::string kept = std::string(kAppsKey) + ".damaged";
    EXPECT_EQ(Told(kAppsKey, "a.exe"), "1");
    EXPECT_EQ(Told(kAppsKey, "c.exe"), "-");
    EXPECT_EQ(Told(kept, "a.exe"), "1");
    EXPECT_EQ(Told(kept, "b.exe"), "\"on\"");
    EXPECT_EQ(Told(kept, "c.exe"), "0");
    settings.SaveOptions(); // sound now
    platform::CRegistryKey again;
    EXPECT_FALSE(again.Open(platform::ERegRoot::CurrentUser, std::string(kAppsKey) + ".2.damaged",
                            platform::ERegAccess::Read));
    EXPECT_EQ(
        TakeSetAsideText().find("Settings that could not be read were set aside as JDEApps.damaged in "), 0U);
}

TEST_F(SetAside, ANumberOfTheOptionsThatIsNoneIsKeptWhenTheyAreSaved) {
    SettingsStore::Key(kSettingsKey).SetString("Rate", "often");
    CAppSettings settings;
    settings.LoadSettings();
    EXPECT_EQ(Told(kSettingsKey, "Rate"), "\"often\"");
    settings.SaveOptions();
    EXPECT_EQ(Told(kSettingsKey, "Rate"), "1");
    EXPECT_EQ(Told(kSettingsKey, "Rate.damaged"), "\"often\"");
}

TEST_F(SetAside, FontAndAnalysisStandAsTheyAreForNothingWritesThem) {
    SettingsStore::Key(kWorkspaceKey).SetDword("FontName", 5);
    SettingsStore::Key(kWorkspaceKey).SetString("FontHeight", "18");
    SettingsStore::Key(kWorkspaceKey).SetString("CacheAnalysis", "no");
    CAppSettings settings;
    settings.LoadFontAndAnalysis();
    EXPECT_EQ(Told(kWorkspaceKey, "FontName"), "5");
    EXPECT_EQ(Told(kWorkspaceKey, "FontHeight"), "\"18\"");
    EXPECT_EQ(Told(kWorkspaceKey, "CacheAnalysis"), "\"no\"");
    EXPECT_EQ(TakeSetAsideText(), "");
}

} // namespace
} // namespace carvelot
