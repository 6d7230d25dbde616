#include "settings/AppSettings.h"

#include "settings/TracedApplications.h"
#include "support/SettingsStore.h"

#include <gtest/gtest.h>

#include <bit>

namespace carvelot {
namespace {

using platform::ERegStatus;
using test::Applications;
using test::SettingsStore;

CAppSettings Start() {
    CAppSettings settings;
    settings.LoadSettings();
    settings.ClearTraceApps();
    settings.LoadTraceApps();
    settings.LoadFontAndAnalysis();
    return settings;
}

std::uint32_t Stored(std::string_view key, std::string_view name) {
    std::uint32_t number = 0xDEADBEEF;
    EXPECT_EQ(SettingsStore::Key(key).QueryRaw32(name, number), ERegStatus::Ok);
    return number;
}

TEST(AppSettings, TheFirstStartSeedsBothKeysAndTakesTheDefaults) {
    const SettingsStore store;
    const CAppSettings settings = Start();
    EXPECT_TRUE(settings.m_bAutoRefresh);
    EXPECT_EQ(settings.m_nRefreshRate, 10);
    EXPECT_EQ(settings.m_fThreshold, 1.0F);
    ASSERT_EQ(settings.m_traceApps.size(), 6U);
#ifndef _WIN32 // Wine's registry sorts
    EXPECT_EQ(Applications(settings),
              "activconsole.exe+ utbrowse.exe+ oexplore.exe+ objectbrowser.exe+ fda.exe+ BusBuild+.exe+ ");
#endif
    EXPECT_EQ(Stored(kSettingsKey, "AutoRefresh"), 1U);
    EXPECT_EQ(Stored(kSettingsKey, "Rate"), 10U);
    EXPECT_EQ(Stored(kSettingsKey, "Threshold"), 0x3F800000U);
}

TEST(AppSettings, LoadSettingsDoesNotFillTheApplications) {
    const SettingsStore store;
    CAppSettings settings;
    settings.LoadSettings();
    EXPECT_TRUE(settings.m_traceApps.empty());
}

TEST(AppSettings, AnEmptyApplicationsKeyIsNotSeededAgain) {
    const SettingsStore store;
    SettingsStore::Key(kAppsKey);
    EXPECT_EQ(Applications(Start()), "");
}

TEST(AppSettings, OnlyTheValueOneSwitchesAnApplicationOn) {
    const SettingsStore store;
    auto key = SettingsStore::Key(kAppsKey);
    key.SetDword("a.exe", 1);
    key.SetDword("b.exe", 2);
    key.SetDword("c.exe", 0);
    EXPECT_EQ(Applications(Start()), "a.exe+ b.exe- c.exe- ");
}

TEST(AppSettings, TheApplicationsEndAtTheFirstValueThatCannotBeRead) {
    const SettingsStore store;
    auto key = SettingsStore::Key(kAppsKey);
    key.SetDword("a.exe", 1);
    key.SetString("b.exe", "on");
    key.SetDword("c.exe", 1);
    EXPECT_EQ(Applications(Start()), "a.exe+ ");
}

TEST(AppSettings, AnAutoRefreshOtherThanOneIsOff) {
    const SettingsStore store;
    SettingsStore::Key(kSettingsKey).SetDword("AutoRefresh", 2);
    EXPECT_FALSE(Start().m_bAutoRefresh);
}

TEST(AppSettings, AnUnreadableAutoRefreshCountsAsOnAndIsNotOverwritten) {
    const SettingsStore store;
    SettingsStore::Key(kSettingsKey).SetString("AutoRefresh", "maybe");
    EXPECT_TRUE(Start().m_bAutoRefresh);
    platform::CRegValue value;
    SettingsStore::Key(kSettingsKey).QueryValue("AutoRefresh", value);
    EXPECT_EQ(value.m_strText, "maybe");
}

TEST(AppSettings, AnUnreadableRateRepeatsWhatAutoRefreshLeft) {
    const SettingsStore store;
    auto key = SettingsStore::Key(kSettingsKey);
    key.SetDword("AutoRefresh", 0);
    key.SetString("Rate", "often");
    const CAppSettings settings = Start();
    EXPECT_FALSE(settings.m_bAutoRefresh);
    EXPECT_EQ(settings.m_nRefreshRate, 0);
}

TEST(AppSettings, AnUnreadableThresholdIsZero) {
    const SettingsStore store;
    SettingsStore::Key(kSettingsKey).SetString("Threshold", "1.0");
    EXPECT_EQ(Start().m_fThreshold, 0.0F);
}

TEST(AppSettings, TheThresholdIsTheFourBytesOfAFloat) {
    const SettingsStore store;
    SettingsStore::Key(kSettingsKey).SetDword("Threshold", std::bit_cast<std::uint32_t>(0.25F));
    EXPECT_EQ(Start().m_fThreshold, 0.25F);
}

TEST(AppSettings, FontAndAnalysisHaveDefaultsThatAreNeverWritten) {
    const SettingsStore store;
    const CAppSettings settings = Start();
    EXPECT_EQ(settings.m_strFontName, "Courier New");
    EXPECT_EQ(settings.m_nFontHeight, 14);
    EXPECT_TRUE(settings.m_bCacheAnalysis);
    platform::CRegistryKey key;
    EXPECT_FALSE(key.Open(platform::ERegRoot::CurrentUser, kWorkspaceKey, platform::ERegAccess::Read));
}

TEST(AppSettings, AStoredEmptyFontNameIsCourierNew) {
    const SettingsStore store;
    SettingsStore::Key(kWorkspaceKey).SetString("FontName", "");
    EXPECT_EQ(Start().m_strFontName, "Courier New");
}

TEST(AppSettings, StoredFontAndAnalysisAreTaken) {
    const SettingsStore store;
    auto key = SettingsStore::Key(kWorkspaceKey);
    key.SetString("FontName", "Consolas");
    key.SetDword("FontHeight", 18);
    key.SetDword("CacheAnalysis", 0);
    const CAppSettings settings = Start();
    EXPECT_EQ(settings.m_strFontName, "Consolas");
    EXPECT_EQ(settings.m_nFontHeight, 18);
    EXPECT_FALSE(settings.m_bCacheAnalysis);
}

TEST(AppSettings, AValueOfTheWrongTypeCountsAsMissing) {
    const SettingsStore store;
    auto key = SettingsStore::Key(kWorkspaceKey);
    key.SetDword("FontName", 5);
    key.SetString("FontHeight", "18");
    const CAppSettings settings = Start();
    EXPECT_EQ(settings.m_strFontName, "Courier New");
    EXPECT_EQ(settings.m_nFontHeight, 14);
}

TEST(AppSettings, AnyCacheAnalysisButZeroIsOn) {
    const SettingsStore store;
    SettingsStore::Key(kWorkspaceKey).SetDword("CacheAnalysis", 7);
    EXPECT_TRUE(Start().m_bCacheAnalysis);
}

TEST(AppSettings, TheLookIsKeptAsItsNumber) {
    const SettingsStore store;
    CAppSettings settings;
    settings.LoadApplicationLook();
    EXPECT_EQ(settings.m_nAppLook, 210);
    settings.m_nAppLook = 217;
    settings.SaveApplicationLook();
    EXPECT_EQ(Stored(kWorkspaceKey, "ApplicationLook"), 217U);
    settings.m_nAppLook = 0;
    settings.LoadApplicationLook();
    EXPECT_EQ(settings.m_nAppLook, 217);
}

} // namespace
} // namespace carvelot
