#include "platform/Registry.h"

#include "support/SettingsStore.h"

#include <gtest/gtest.h>

namespace carvelot::platform {
namespace {

using test::SettingsStore;

constexpr std::string_view kKey = "Software\\Tamrisk\\Carvelot\\Test";

TEST(Registry, AKeyThatNobodyMadeDoesNotOpen) {
    const SettingsStore store;
    CRegistryKey key;
    EXPECT_FALSE(key.Open(ERegRoot::CurrentUser, kKey, ERegAccess::Read));
    EXPECT_FALSE(key.IsOpen());
}

TEST(Registry, AParentOpensOnceAKeyBelowItWasMade) {
    const SettingsStore store;
    SettingsStore::Key("Software\\Tamrisk\\Carvelot\\Test\\Below");
    CRegistryKey key;
    EXPECT_TRUE(key.Open(ERegRoot::CurrentUser, kKey, ERegAccess::Read));
}

TEST(Registry, NumbersAndTextsKeepTheirTypes) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    EXPECT_TRUE(key.SetDword("Number", 0xFFFFFFFF));
    EXPECT_TRUE(key.SetString("Text", "123"));
    CRegValue value;
    ASSERT_EQ(key.QueryValue("Number", value), ERegStatus::Ok);
    EXPECT_EQ(value.m_nType, ERegType::Dword);
    EXPECT_EQ(value.m_nNumber, 0xFFFFFFFFU);
    ASSERT_EQ(key.QueryValue("Text", value), ERegStatus::Ok);
    EXPECT_EQ(value.m_nType, ERegType::String);
    EXPECT_EQ(value.m_strText, "123");
    EXPECT_EQ(key.QueryValue("Missing", value), ERegStatus::NotFound);
}

TEST(Registry, TextsOfAnyKindComeBackAsTheyWere) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    const std::string strOdd = "C:\\logs\\\"quoted\" = [x]\nsecond line\t; # \xC3\xA4\xE2\x82\xAC";
    key.SetString("a \"name\" \\ =", strOdd);
    CRegValue value;
    ASSERT_EQ(key.QueryValue("a \"name\" \\ =", value), ERegStatus::Ok);
    EXPECT_EQ(value.m_strText, strOdd);
}

TEST(Registry, NamesCompareWithoutCase) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetDword("Rate", 1);
    key.SetDword("RATE", 2);
    std::uint32_t nNumber = 0;
    EXPECT_EQ(key.QueryRaw32("rate", nNumber), ERegStatus::Ok);
    EXPECT_EQ(nNumber, 2U);
    std::string strName;
    EXPECT_TRUE(key.EnumRaw32(0, strName, nNumber));
    EXPECT_FALSE(key.EnumRaw32(1, strName, nNumber));
}

TEST(Registry, AFourByteQueryLeavesItsNumberAloneWhenTheValueIsLonger) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetString("Rate", "ten");
    std::uint32_t nNumber = 7;
    EXPECT_EQ(key.QueryRaw32("Rate", nNumber), ERegStatus::Failed);
    EXPECT_EQ(nNumber, 7U);
    std::string strName;
    EXPECT_FALSE(key.EnumRaw32(0, strName, nNumber));
}

TEST(Registry, AFourByteQueryReadsTheBytesOfAShortText) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetString("One", "1");
    std::uint32_t nNumber = 7;
    EXPECT_EQ(key.QueryRaw32("One", nNumber), ERegStatus::Ok);
    EXPECT_EQ(nNumber, std::uint32_t{'1'});
}

TEST(Registry, DeletedContentTakesTheKeysBelowAlongAndTheKeyCanBeWrittenAgain) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetDword("Old", 1);
    SettingsStore::Key("Software\\Tamrisk\\Carvelot\\Test\\Below").SetDword("x", 1);
    EXPECT_TRUE(key.DeleteContent());
    EXPECT_TRUE(key.SetDword("New", 5));
    std::uint32_t nNumber = 0;
    EXPECT_EQ(key.QueryRaw32("Old", nNumber), ERegStatus::NotFound);
    EXPECT_EQ(key.QueryRaw32("New", nNumber), ERegStatus::Ok);
    CRegistryKey below;
    EXPECT_FALSE(
        below.Open(ERegRoot::CurrentUser, "Software\\Tamrisk\\Carvelot\\Test\\Below", ERegAccess::Read));
}

#ifndef _WIN32

TEST(Registry, ValuesAreEnumeratedInTheOrderInWhichTheyWereMade) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    for (const char* pszName : {"zeta.exe", "Alpha.exe", "mid.exe"})
        key.SetDword(pszName, 1);
    key.SetDword("Alpha.exe", 0);
    std::string strOrder;
    std::string strName;
    std::uint32_t nNumber = 9;
    for (std::size_t n = 0; key.EnumRaw32(n, strName, nNumber); ++n)
        strOrder += strName + "=" + std::to_string(nNumber) + " ";
    EXPECT_EQ(strOrder, "zeta.exe=1 Alpha.exe=0 mid.exe=1 ");
}

TEST(Registry, TheStoreIsAReadableFileWithKeysAsSections) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetDword("Rate", 10);
    key.SetString("Font", "Courier \"New\"");
    const std::string strFile = store.Folder().Read("registry.ini");
    EXPECT_NE(strFile.find("[HKEY_CURRENT_USER\\Software\\Tamrisk\\Carvelot\\Test]\n"
                           "\"Rate\"=dword:0000000a\n\"Font\"=\"Courier \\\"New\\\"\"\n"),
              std::string::npos);
}

TEST(Registry, ADamagedFileLosesItsDamagedLinesOnlyAndIsKeptBesideTheFirstWrite) {
    const SettingsStore store;
    const std::string strDamaged =
        "nonsense\n\"before any key\"=dword:1\n"
        "[HKEY_CURRENT_USER\\Software\\Tamrisk\\Carvelot\\Test]\n"
        "\"Rate\"=dword:zz\n\"Rate=dword:1\n\"Good\"=dword:00000005\n\"Cut\"=\"no end";
    store.Folder().Write("registry.ini", strDamaged);
    CRegistryKey key;
    ASSERT_TRUE(key.Open(ERegRoot::CurrentUser, kKey, ERegAccess::Full));
    std::uint32_t nNumber = 0;
    EXPECT_EQ(key.QueryRaw32("Good", nNumber), ERegStatus::Ok);
    EXPECT_EQ(nNumber, 5U);
    EXPECT_EQ(key.QueryRaw32("Rate", nNumber), ERegStatus::NotFound);
    key.SetDword("Rate", 3);
    EXPECT_EQ(store.Folder().Read("registry.ini.damaged"), strDamaged);
    EXPECT_EQ(store.Folder().Read("registry.ini").find("nonsense"), std::string::npos);
}

TEST(Registry, AFileThatCannotBeReadLeavesAStoreForTheRun) {
    const test::TestFolder folder;
    const std::string strFolderInItsPlace = folder.Path();
    const test::EnvironmentGuard guard("CARVELOT_REGISTRY", strFolderInItsPlace.c_str());
    CRegistryKey key;
    EXPECT_FALSE(key.Open(ERegRoot::CurrentUser, kKey, ERegAccess::Read));
    ASSERT_TRUE(key.Create(ERegRoot::CurrentUser, kKey));
    EXPECT_TRUE(key.SetDword("Rate", 10));
    std::uint32_t nNumber = 0;
    EXPECT_EQ(key.QueryRaw32("Rate", nNumber), ERegStatus::Ok);
    EXPECT_EQ(nNumber, 10U);
}

TEST(Registry, AWriteLeavesNothingBesideTheFile) {
    const SettingsStore store;
    SettingsStore::Key(kKey).SetDword("Rate", 10);
    EXPECT_EQ(store.Folder().Names(), std::vector<std::string>{"registry.ini"});
}

TEST(Registry, TwoKeysThatAreOpenAtOnceSeeEachOthersValues) {
    const SettingsStore store;
    CRegistryKey one = SettingsStore::Key(kKey);
    CRegistryKey two = SettingsStore::Key(kKey);
    one.SetDword("A", 1);
    two.SetDword("B", 2);
    std::uint32_t nNumber = 0;
    EXPECT_EQ(one.QueryRaw32("B", nNumber), ERegStatus::Ok);
    EXPECT_EQ(two.QueryRaw32("A", nNumber), ERegStatus::Ok);
}

#endif

} // namespace
} // namespace carvelot::platform
