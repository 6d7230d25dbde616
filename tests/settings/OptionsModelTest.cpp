#include "settings/OptionsModel.h"

#include "support/SettingsStore.h"

#include <gtest/gtest.h>

#include <bit>

namespace carvelot {
namespace {

using test::SettingsStore;

std::string Rows(const COptionsModel& model) {
    std::string result;
    for (const COptionsModel::CRow& row : model.m_listRows) {
        result += row.m_strApplication + ":" + row.m_strStatus + " ";
    }
    return result;
}

CAppSettings Settings(std::initializer_list<const char*> names) {
    CAppSettings settings;
    for (const char* name : names) {
        settings.m_traceApps.push_back({name, true});
    }
    settings.m_strFontName = "Courier New";
    settings.m_nRefreshRate = 10;
    settings.m_bAutoRefresh = true;
    return settings;
}

void Select(COptionsModel& model, std::initializer_list<std::size_t> rows) {
    for (const std::size_t row : rows) {
        model.m_listRows[row].m_bSelected = true;
    }
}

TEST(OptionsModel, TheListShowsTheStoredOrderReversed) {
    CAppSettings settings = Settings({"a", "b", "c"});
    settings.m_traceApps[1].m_bEnabled = false;
    EXPECT_EQ(Rows(COptionsModel(settings)), "c:On b:Off a:On ");
}

TEST(OptionsModel, NumbersAreShownAsDigitsAndTheThresholdWithSixDecimals) {
    CAppSettings settings = Settings({});
    settings.m_fThreshold = 1.0F;
    settings.m_nFontHeight = 14;
    const COptionsModel model(settings);
    EXPECT_EQ(model.m_strThreshold, "1.000000");
    EXPECT_EQ(model.m_strRate, "10");
    EXPECT_EQ(model.m_strFontHeight, "14");
}

TEST(OptionsModel, TheRateIsEnabledExactlyWhenRefreshWasOnAtOpening) {
    CAppSettings settings = Settings({});
    EXPECT_TRUE(COptionsModel(settings).m_bRateEnabled);
    settings.m_bAutoRefresh = false;
    EXPECT_FALSE(COptionsModel(settings).m_bRateEnabled);
}

TEST(OptionsModel, AddPutsAnApplicationOnTopSwitchedOnWithoutAnyCheck) {
    COptionsModel model(Settings({"a"}));
    model.Add("a");
    model.Add("no ending");
    model.Add("");
    EXPECT_EQ(Rows(model), "no ending:On a:On a:On ");
}

TEST(OptionsModel, RemoveOfOneSelectedRowIsExact) {
    COptionsModel model(Settings({"4", "3", "2", "1", "0"}));
    Select(model, {2});
    model.Remove();
    EXPECT_EQ(Rows(model), "0:On 1:On 3:On 4:On ");
}

TEST(OptionsModel, RemoveOfTwoRowsMissesTheSecondByOne) {
    COptionsModel model(Settings({"5", "4", "3", "2", "1", "0"}));
    Select(model, {2, 3});
    model.Remove();
    EXPECT_EQ(Rows(model), "0:On 1:On 3:On 5:On ");
}

TEST(OptionsModel, RemoveThatRunsPastTheEndLeavesTheLastRow) {
    COptionsModel model(Settings({"1", "0"}));
    Select(model, {0, 1});
    model.Remove();
    EXPECT_EQ(Rows(model), "1:On ");
}

TEST(OptionsModel, RemoveWithoutASelectionDoesNothing) {
    COptionsModel model(Settings({"a"}));
    model.Remove();
    EXPECT_EQ(Rows(model), "a:On ");
}

TEST(OptionsModel, ToggleTurnsEverySelectedRow) {
    CAppSettings settings = Settings({"c", "b", "a"});
    settings.m_traceApps[1].m_bEnabled = false;
    COptionsModel model(settings);
    Select(model, {0, 1});
    model.ToggleStatus();
    EXPECT_EQ(Rows(model), "a:Off b:On c:On ");
}

TEST(OptionsModel, CommitWithoutAChangeReversesTheStoredOrder) {
    const SettingsStore store;
    CAppSettings settings = Settings({"a.exe", "b.exe", "c.exe"});
    COptionsModel(settings).Commit(settings);
    ASSERT_EQ(settings.m_traceApps.size(), 3U);
    EXPECT_EQ(settings.m_traceApps[0].m_strName, "c.exe");
    EXPECT_EQ(settings.m_traceApps[2].m_strName, "a.exe");
    std::string name;
    std::uint32_t on = 0;
    ASSERT_TRUE(SettingsStore::Key(kAppsKey).EnumRaw32(0, name, on));
#ifndef _WIN32
    EXPECT_EQ(name, "c.exe");
#endif
}

TEST(OptionsModel, CommitLeavesExactlyTheDialogsRowsInTheStore) {
    const SettingsStore store;
    auto key = SettingsStore::Key(kAppsKey);
    key.SetDword("old.exe", 1);
    key.SetDword("two.exe", 2);
    CAppSettings settings;
    settings.LoadTraceApps();
    COptionsModel model(settings);
    Select(model, {1});
    model.Remove();
    model.Commit(settings);
    std::string name;
    std::uint32_t on = 7;
    ASSERT_TRUE(SettingsStore::Key(kAppsKey).EnumRaw32(0, name, on));
    EXPECT_EQ(name, "two.exe");
    EXPECT_EQ(on, 0U); // a 2 reads as off and is written back as 0
    EXPECT_FALSE(SettingsStore::Key(kAppsKey).EnumRaw32(1, name, on));
}

TEST(OptionsModel, CommitReadsNumbersLenientlyAndStoresThem) {
    const SettingsStore store;
    CAppSettings settings = Settings({});
    COptionsModel model(settings);
    model.m_bAutoRefresh = false;
    model.m_strRate = "abc";
    model.m_strThreshold = " 2.5 seconds";
    model.Commit(settings);
    EXPECT_FALSE(settings.m_bAutoRefresh);
    EXPECT_EQ(settings.m_nRefreshRate, 0);
    EXPECT_EQ(settings.m_fThreshold, 2.5F);
    CAppSettings read;
    read.LoadSettings();
    EXPECT_FALSE(read.m_bAutoRefresh);
    EXPECT_EQ(read.m_nRefreshRate, 0);
    EXPECT_EQ(read.m_fThreshold, 2.5F);
}

TEST(OptionsModel, AllRowsRemovedLeavesAnEmptyListAndAnEmptyKey) {
    const SettingsStore store;
    CAppSettings settings = Settings({"a.exe"});
    settings.SaveOptions();
    COptionsModel model(settings);
    model.m_listRows.clear();
    model.Commit(settings);
    EXPECT_TRUE(settings.m_traceApps.empty());
    CAppSettings read;
    read.LoadSettings();
    read.LoadTraceApps();
    EXPECT_TRUE(read.m_traceApps.empty());
}

TEST(OptionsModel, TheFontLastsForTheRunOnly) {
    const SettingsStore store;
    CAppSettings settings = Settings({});
    COptionsModel model(settings);
    model.m_strFontName = "Consolas";
    model.m_strFontHeight = "20";
    model.Commit(settings);
    EXPECT_EQ(settings.m_strFontName, "Consolas");
    EXPECT_EQ(settings.m_nFontHeight, 20);
    CAppSettings read;
    read.LoadFontAndAnalysis();
    EXPECT_EQ(read.m_strFontName, "Courier New");
    EXPECT_EQ(read.m_nFontHeight, 14);
}

} // namespace
} // namespace carvelot
