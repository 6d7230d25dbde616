// What older versions wrote is read: values are kept, what they did not know has its default.
#include "settings/AppSettings.h"
#include "settings/RecentFiles.h"

#include "settings/TracedApplications.h"
#include "support/SettingsStore.h"

#include <gtest/gtest.h>

namespace carvelot {
namespace {

using test::Applications;
using test::SettingsStore;

CAppSettings StartWithStored() {
    CAppSettings settings;
    settings.LoadSettings();
    settings.LoadTraceApps();
    settings.LoadFontAndAnalysis();
    settings.LoadApplicationLook();
    return settings;
}

class OlderSettings : public testing::Test {
protected:
    OlderSettings() { (void)platform::TakeSetAside(); }
    ~OlderSettings() override { EXPECT_EQ(TakeSetAsideText(), ""); }

    SettingsStore m_store;
};

// The first version's, of which everything there was has been changed.
void WriteFirstVersion() {
    auto apps = SettingsStore::Key(kAppsKey);
    apps.SetDword("activconsole.exe", 0);
    apps.SetDword("jdenet_k.exe", 1);
    auto settings = SettingsStore::Key(kSettingsKey);
    settings.SetDword("AutoRefresh", 0);
    settings.SetDword("Rate", 30);
    settings.SetDword("Threshold", 0x40200000); // 2.5
    SettingsStore::Key(kWorkspaceKey).SetDword("ApplicationLook", 217);
    auto recent = SettingsStore::Key(kRecentFilesKey);
    recent.SetString("File1", "/logs/jdedebug.log");
    recent.SetString("File2", "/logs/with \"quotes\" and \\.log");
}

TEST_F(OlderSettings, OfTheFirstVersionKeepAllTheirValues) {
    WriteFirstVersion();
    const CAppSettings settings = StartWithStored();
    EXPECT_EQ(Applications(settings), "activconsole.exe- jdenet_k.exe+ ");
    EXPECT_FALSE(settings.m_bAutoRefresh);
    EXPECT_EQ(settings.m_nRefreshRate, 30);
    EXPECT_EQ(settings.m_fThreshold, 2.5F);
    EXPECT_EQ(settings.m_nAppLook, 217);
    settings.SaveOptions();
    settings.SaveApplicationLook();
    const CAppSettings again = StartWithStored();
    EXPECT_EQ(Applications(again), "activconsole.exe- jdenet_k.exe+ ");
    EXPECT_EQ(again.m_nRefreshRate, 30);
    EXPECT_EQ(again.m_fThreshold, 2.5F);
    EXPECT_EQ(again.m_nAppLook, 217);
}

TEST_F(OlderSettings, WithoutAValueHaveItsDefaultAndKeepTheOthers) {
    SettingsStore::Key(kSettingsKey).SetDword("Rate", 30);
    SettingsStore::Key(kWorkspaceKey).SetDword("ApplicationLook", 217);
    const CAppSettings settings = StartWithStored();
    EXPECT_TRUE(settings.m_bAutoRefresh);
    EXPECT_EQ(settings.m_nRefreshRate, 30);
    EXPECT_EQ(settings.m_fThreshold, 1.0F);
    EXPECT_EQ(settings.m_nAppLook, 217);
    EXPECT_EQ(settings.m_strFontName, "Courier New");
    EXPECT_EQ(GetWorkspaceInt("ThreadTreeWidth", 300), 300);
}

// The first lists of recent files were paths alone; what each was read with came later.
TEST_F(OlderSettings, APlainListOfRecentFilesIsReadAndWrittenOn) {
    WriteFirstVersion();
    CRecentFiles recent;
    recent.Load();
    EXPECT_EQ(recent.m_listPaths,
              (std::vector<std::string>{"/logs/jdedebug.log", "/logs/with \"quotes\" and \\.log"}));
    EXPECT_EQ(recent.Dialects("/logs/jdedebug.log"), "");
    recent.Add("/logs/new.log");
    recent.SetDialects("/logs/new.log", "day-first");
    recent.Save();
    CRecentFiles again;
    again.Load();
    EXPECT_EQ(again.m_listPaths, (std::vector<std::string>{"/logs/new.log", "/logs/jdedebug.log",
                                                           "/logs/with \"quotes\" and \\.log"}));
    EXPECT_EQ(again.Dialects("/logs/new.log"), "day-first");
}

TEST_F(OlderSettings, AListWithAGapIsReadWithoutIt) {
    auto recent = SettingsStore::Key(kRecentFilesKey);
    recent.SetString("File2", "/logs/b.log");
    recent.SetString("Dialects2", "day-first");
    recent.SetString("File4", "/logs/d.log");
    CRecentFiles files;
    files.Load();
    EXPECT_EQ(files.m_listPaths, (std::vector<std::string>{"/logs/b.log", "/logs/d.log"}));
    EXPECT_EQ(files.Dialects("/logs/b.log"), "day-first");
}

// A newer version may have been there in between.
TEST_F(OlderSettings, WhatThisVersionDoesNotKnowStandsAsItWas) {
    WriteFirstVersion();
    SettingsStore::Key(kSettingsKey).SetDword("OfAnother", 4);
    SettingsStore::Key("Software\\Tamrisk\\Carvelot\\OfAnother").SetString("Text", "kept");
    SettingsStore::Key(kRecentFilesKey).SetString("File5", "/logs/e.log");
    CAppSettings settings = StartWithStored();
    settings.SaveOptions();
    CRecentFiles recent;
    recent.Load();
    recent.Save();
    platform::CRegValue value;
    ASSERT_EQ(SettingsStore::Key(kSettingsKey).QueryValue("OfAnother", value), platform::ERegStatus::Ok);
    EXPECT_EQ(value.m_nNumber, 4U);
    ASSERT_EQ(SettingsStore::Key("Software\\Tamrisk\\Carvelot\\OfAnother").QueryValue("Text", value),
              platform::ERegStatus::Ok);
    EXPECT_EQ(value.m_strText, "kept");
    ASSERT_EQ(SettingsStore::Key(kRecentFilesKey).QueryValue("File5", value), platform::ERegStatus::Ok);
    EXPECT_EQ(value.m_strText, "/logs/e.log");
}

#ifndef _WIN32

// The file itself as the first version wrote it, byte by byte.
TEST_F(OlderSettings, TheFirstVersionsFileIsReadAsItStands) {
    m_store.Folder().Write("registry.ini",
                           "; Settings of Carvelot. Values keep the order in which they were made.\n"
                           "\n[HKEY_CURRENT_USER\\Software\\Tamrisk\\Carvelot\\JDEApps]\n"
                           "\"zeta.exe\"=dword:00000001\n\"fda.exe\"=dword:00000000\n"
                           "\n[HKEY_CURRENT_USER\\Software\\Tamrisk\\Carvelot\\Settings]\n"
                           "\"AutoRefresh\"=dword:00000000\n\"Rate\"=dword:0000001e\n"
                           "\"Threshold\"=dword:40200000\n"
                           "\n[HKEY_CURRENT_USER\\Software\\Tamrisk\\Carvelot\\Recent File List]\n"
                           "\"File1\"=\"/logs/\\x01 \\\\ \\\"a\\\".log\"\n"
                           "\n[HKEY_CURRENT_USER\\Software\\Tamrisk\\Carvelot\\Workspace]\n"
                           "\"ApplicationLook\"=dword:000000d9\n");
    const CAppSettings settings = StartWithStored();
    EXPECT_EQ(Applications(settings), "zeta.exe+ fda.exe- ");
    EXPECT_FALSE(settings.m_bAutoRefresh);
    EXPECT_EQ(settings.m_nRefreshRate, 30);
    EXPECT_EQ(settings.m_fThreshold, 2.5F);
    EXPECT_EQ(settings.m_nAppLook, 217);
    CRecentFiles recent;
    recent.Load();
    EXPECT_EQ(recent.m_listPaths, std::vector<std::string>{"/logs/\x01 \\ \"a\".log"});
    settings.SaveApplicationLook();
    EXPECT_EQ(m_store.Folder().Names(), std::vector<std::string>{"registry.ini"});
}

#endif

} // namespace
} // namespace carvelot
