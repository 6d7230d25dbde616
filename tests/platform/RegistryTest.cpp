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
    const std::string odd = "C:\\logs\\\"quoted\" = [x]\nsecond line\t; # \xC3\xA4\xE2\x82\xAC";
    key.SetString("a \"name\" \\ =", odd);
    CRegValue value;
    ASSERT_EQ(key.QueryValue("a \"name\" \\ =", value), ERegStatus::Ok);
    EXPECT_EQ(value.m_strText, odd);
}

TEST(Registry, NamesCompareWithoutCase) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetDword("Rate", 1);
    key.SetDword("RATE", 2);
    std::uint32_t number = 0;
    EXPECT_EQ(key.QueryRaw32("rate", number), ERegStatus::Ok);
    EXPECT_EQ(number, 2U);
    std::string name;
    EXPECT_TRUE(key.EnumRaw32(0, name, number));
    EXPECT_FALSE(key.EnumRaw32(1, name, number));
}

TEST(Registry, AFourByteQueryLeavesItsNumberAloneWhenTheValueIsLonger) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetString("Rate", "ten");
    std::uint32_t number = 7;
    EXPECT_EQ(key.QueryRaw32("Rate", number), ERegStatus::Failed);
    EXPECT_EQ(number, 7U);
    std::string name;
    EXPECT_FALSE(key.EnumRaw32(0, name, number));
}

TEST(Registry, AFourByteQueryReadsTheBytesOfAShortText) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetString("One", "1");
    std::uint32_t number = 7;
    EXPECT_EQ(key.QueryRaw32("One", number), ERegStatus::Ok);
    EXPECT_EQ(number, std::uint32_t{'1'});
}

TEST(Registry, DeletedContentTakesTheKeysBelowAlongAndTheKeyCanBeWrittenAgain) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetDword("Old", 1);
    SettingsStore::Key("Software\\Tamrisk\\Carvelot\\Test\\Below").SetDword("x", 1);
    EXPECT_TRUE(key.DeleteContent());
    EXPECT_TRUE(key.SetDword("New", 5));
    std::uint32_t number = 0;
    EXPECT_EQ(key.QueryRaw32("Old", number), ERegStatus::NotFound);
    EXPECT_EQ(key.QueryRaw32("New", number), ERegStatus::Ok);
    CRegistryKey below;
    EXPECT_FALSE(
        below.Open(ERegRoot::CurrentUser, "Software\\Tamrisk\\Carvelot\\Test\\Below", ERegAccess::Read));
}

#ifndef _WIN32

TEST(Registry, ValuesAreEnumeratedInTheOrderInWhichTheyWereMade) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    for (const char* added : {"zeta.exe", "Alpha.exe", "mid.exe"}) {
        key.SetDword(added, 1);
    }
    key.SetDword("Alpha.exe", 0);
    std::string order;
    std::string name;
    std::uint32_t number = 9;
    for (std::size_t n = 0; key.EnumRaw32(n, name, number); ++n) {
        order += name + "=" + std::to_string(number) + " ";
    }
    EXPECT_EQ(order, "zeta.exe=1 Alpha.exe=0 mid.exe=1 ");
}

TEST(Registry, TheStoreIsAReadableFileWithKeysAsSections) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetDword("Rate", 10);
    key.SetString("Font", "Courier \"New\"");
    const std::string file = store.Folder().Read("registry.ini");
    EXPECT_NE(file.find("[HKEY_CURRENT_USER\\Software\\Tamrisk\\Carvelot\\Test]\n"
                        "\"Rate\"=dword:0000000a\n\"Font\"=\"Courier \\\"New\\\"\"\n"),
              std::string::npos);
}

TEST(Registry, ADamagedFileLosesItsDamagedLinesOnlyAndIsKeptBesideTheFirstWrite) {
    const SettingsStore store;
    const std::string damaged =
        "nonsense\n\"before any key\"=dword:1\n"
        "[HKEY_CURRENT_USER\\Software\\Tamrisk\\Carvelot\\Test]\n"
        "\"Rate\"=dword:zz\n\"Rate=dword:1\n\"Good\"=dword:00000005\n\"Cut\"=\"no end";
    store.Folder().Write("registry.ini", damaged);
    CRegistryKey key;
    ASSERT_TRUE(key.Open(ERegRoot::CurrentUser, kKey, ERegAccess::Full));
    std::uint32_t number = 0;
    EXPECT_EQ(key.QueryRaw32("Good", number), ERegStatus::Ok);
    EXPECT_EQ(number, 5U);
    EXPECT_EQ(key.QueryRaw32("Rate", number), ERegStatus::NotFound);
    key.SetDword("Rate", 3);
    EXPECT_EQ(store.Folder().Read("registry.ini.damaged"), damaged);
    EXPECT_EQ(store.Folder().Read("registry.ini").find("nonsense"), std::string::npos);
}

TEST(Registry, ADamagedFileThatCannotBeKeptStaysAsItIs) {
    const SettingsStore store;
    const std::string damaged =
        "nonsense\n[HKEY_CURRENT_USER\\" + std::string(kKey) + "]\n\"Good\"=dword:00000005\n";
    store.Folder().Write("registry.ini", damaged);
    std::filesystem::create_directory(test::ToPath(store.Folder().Path("registry.ini.damaged")));
    CRegistryKey key;
    ASSERT_TRUE(key.Open(ERegRoot::CurrentUser, kKey, ERegAccess::Full));
    EXPECT_TRUE(key.SetDword("Rate", 3)); // for the run
    std::uint32_t number = 0;
    EXPECT_EQ(key.QueryRaw32("Rate", number), ERegStatus::Ok);
    EXPECT_EQ(number, 3U);
    EXPECT_EQ(store.Folder().Read("registry.ini"), damaged);
    EXPECT_EQ(store.Folder().Names(), (std::vector<std::string>{"registry.ini", "registry.ini.damaged"}));
}

TEST(Registry, AFileThatCannotBeReadLeavesAStoreForTheRun) {
    const test::TestFolder folder;
    const std::string folderInItsPlace = folder.Path();
    const test::EnvironmentGuard guard("CARVELOT_REGISTRY", folderInItsPlace.c_str());
    CRegistryKey key;
    EXPECT_FALSE(key.Open(ERegRoot::CurrentUser, kKey, ERegAccess::Read));
    ASSERT_TRUE(key.Create(ERegRoot::CurrentUser, kKey));
    EXPECT_TRUE(key.SetDword("Rate", 10));
    std::uint32_t number = 0;
    EXPECT_EQ(key.QueryRaw32("Rate", number), ERegStatus::Ok);
    EXPECT_EQ(number, 10U);
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
    std::uint32_t number = 0;
    EXPECT_EQ(one.QueryRaw32("B", number), ERegStatus::Ok);
    EXPECT_EQ(two.QueryRaw32("A", number), ERegStatus::Ok);
}

#endif

} // namespace
} // namespace carvelot::platform
