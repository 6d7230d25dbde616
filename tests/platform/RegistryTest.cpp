#include "platform/Registry.h"

#include "support/SettingsStore.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#endif

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

// "name in place", without the part of a key's path that a test has for itself.
std::vector<std::string> SetAsideNow() {
    std::vector<std::string> list;
    for (const CSetAside& aside : TakeSetAside()) {
        list.push_back(aside.m_strName + " in " + aside.m_strPlace);
    }
    return list;
}

TEST(Registry, AValueOfAnyTypeIsSetAsideUnderTheFirstNameThatIsFree) {
    const SettingsStore store;
    (void)SetAsideNow();
    CRegistryKey key = SettingsStore::Key(kKey);
    for (const char* text : {"one", "two"}) {
        key.SetString("Layout", text);
        EXPECT_TRUE(key.SetAside("layout"));
    }
    key.SetDword("Layout", 3);
    EXPECT_TRUE(key.SetAside("Layout"));
    CRegValue value;
    EXPECT_EQ(key.QueryValue("Layout", value), ERegStatus::NotFound);
    ASSERT_EQ(key.QueryValue("Layout.damaged", value), ERegStatus::Ok);
    EXPECT_EQ(value.m_strText, "one");
    ASSERT_EQ(key.QueryValue("Layout.2.damaged", value), ERegStatus::Ok);
    EXPECT_EQ(value.m_strText, "two");
    ASSERT_EQ(key.QueryValue("Layout.3.damaged", value), ERegStatus::Ok);
    EXPECT_EQ(value.m_nNumber, 3U);
    EXPECT_EQ(key.Count(), 3U);
    const std::vector<CSetAside> list = TakeSetAside();
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[2].m_strName, "Layout.3.damaged");
#ifdef _WIN32
    EXPECT_EQ(list[2].m_strPlace, "HKEY_CURRENT_USER\\" + std::string(kKey));
#else
    EXPECT_EQ(list[2].m_strPlace, store.Path());
#endif
    EXPECT_TRUE(TakeSetAside().empty());
}

TEST(Registry, NothingIsSetAsideThatIsNotThereOrThroughAKeyForReading) {
    const SettingsStore store;
    (void)SetAsideNow();
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetDword("Rate", 1);
    EXPECT_FALSE(key.SetAside("Missing"));
    CRegistryKey reading;
    ASSERT_TRUE(reading.Open(ERegRoot::CurrentUser, kKey, ERegAccess::Read));
#ifndef _WIN32 // Wine lets a key for reading write
    EXPECT_FALSE(reading.SetAside("Rate"));
#endif
    EXPECT_FALSE(CRegistryKey().SetAside("Rate"));
    EXPECT_FALSE(CRegistryKey().SetAsideCopy());
    EXPECT_EQ(key.Count(), 1U);
    EXPECT_TRUE(TakeSetAside().empty());
}

TEST(Registry, ACopyOfAKeyHoldsAllItsValuesAndLeavesThemWhereTheyAre) {
    const SettingsStore store;
    (void)SetAsideNow();
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetDword("a.exe", 1);
    key.SetString("b.exe", "on");
    EXPECT_TRUE(key.SetAsideCopy());
    key.SetDword("c.exe", 1);
    EXPECT_TRUE(key.SetAsideCopy());
    EXPECT_EQ(key.Count(), 3U);
    CRegistryKey first;
    ASSERT_TRUE(first.Open(ERegRoot::CurrentUser, std::string(kKey) + ".damaged", ERegAccess::Read));
    EXPECT_EQ(first.Count(), 2U);
    CRegValue value;
    ASSERT_EQ(first.QueryValue("b.exe", value), ERegStatus::Ok);
    EXPECT_EQ(value.m_strText, "on");
    ASSERT_EQ(first.QueryValue("a.exe", value), ERegStatus::Ok);
    EXPECT_EQ(value.m_nNumber, 1U);
    CRegistryKey second;
    ASSERT_TRUE(second.Open(ERegRoot::CurrentUser, std::string(kKey) + ".2.damaged", ERegAccess::Read));
    EXPECT_EQ(second.Count(), 3U);
    const std::vector<CSetAside> list = TakeSetAside();
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[1].m_strName, "Test.2.damaged");
}

#ifdef _WIN32

TEST(Registry, BytesThatAreNeitherNumberNorTextAreSetAsideAsTheyAre) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    HKEY handle = nullptr;
    ASSERT_EQ(RegOpenKeyW(HKEY_CURRENT_USER, L"Software\\Tamrisk\\Carvelot\\Test", &handle), ERROR_SUCCESS);
    const BYTE bytes[] = {1, 0, 255, 7, 9};
    RegSetValueExW(handle, L"Layout", 0, REG_BINARY, bytes, sizeof bytes);
    EXPECT_TRUE(key.SetAside("Layout"));
    BYTE kept[16] = {};
    DWORD size = sizeof kept;
    DWORD type = 0;
    EXPECT_EQ(RegQueryValueExW(handle, L"Layout.damaged", nullptr, &type, kept, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD{REG_BINARY});
    EXPECT_EQ(std::vector<BYTE>(kept, kept + size), std::vector<BYTE>(bytes, bytes + sizeof bytes));
    EXPECT_EQ(RegQueryValueExW(handle, L"Layout", nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
    RegCloseKey(handle);
}

#endif

#ifndef _WIN32

TEST(Registry, NoDamagedFileThatIsKeptIsEverOverwritten) {
    const SettingsStore store;
    (void)SetAsideNow();
    for (const char* damage : {"first", "second", "third"}) {
        store.Folder().Write("registry.ini", damage);
        SettingsStore::Key(kKey).SetDword("Rate", 1);
    }
    EXPECT_EQ(store.Folder().Names(),
              (std::vector<std::string>{"registry.ini", "registry.ini.2.damaged", "registry.ini.3.damaged",
                                        "registry.ini.damaged"}));
    EXPECT_EQ(store.Folder().Read("registry.ini.damaged"), "first");
    EXPECT_EQ(store.Folder().Read("registry.ini.2.damaged"), "second");
    EXPECT_EQ(store.Folder().Read("registry.ini.3.damaged"), "third");
    const std::string folder = store.Folder().Path();
    EXPECT_EQ(SetAsideNow(), (std::vector<std::string>{"registry.ini.damaged in " + folder,
                                                       "registry.ini.2.damaged in " + folder,
                                                       "registry.ini.3.damaged in " + folder}));
}

TEST(Registry, ADamagedFileThatCannotBeKeptIsNotOverwritten) {
    const test::TestFolder folder;
    const std::string name(248, 'n'); // that of a copy beside it is too long
    folder.Write(name, "damaged");
    const test::EnvironmentGuard guard("CARVELOT_REGISTRY", folder.Path(name).c_str());
    (void)SetAsideNow();
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetDword("Rate", 10);
    std::uint32_t number = 0;
    EXPECT_EQ(key.QueryRaw32("Rate", number), ERegStatus::Ok); // for the run
    EXPECT_EQ(folder.Read(name), "damaged");
    EXPECT_EQ(folder.Names(), std::vector<std::string>{name});
    EXPECT_TRUE(TakeSetAside().empty());
}

TEST(Registry, ValuesBelowADamagedNameOfAKeyAreNotTakenForThoseOfTheKeyAhead) {
    const SettingsStore store;
    store.Folder().Write("registry.ini", "[HKEY_CURRENT_USER\\Software\\Tamrisk\\Carvelot\\Test]\n"
                                         "\"Rate\"=dword:00000005\n"
                                         "[HKEY_CURRENT_USER\\Soft\n"
                                         "\"Rate\"=dword:00000007\n\"Other\"=dword:00000001\n");
    CRegistryKey key;
    ASSERT_TRUE(key.Open(ERegRoot::CurrentUser, kKey, ERegAccess::Full));
    std::uint32_t number = 0;
    EXPECT_EQ(key.QueryRaw32("Rate", number), ERegStatus::Ok);
    EXPECT_EQ(number, 5U);
    EXPECT_EQ(key.Count(), 1U);
}

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
    const test::TestFolder folder;
    // A name for which there is room with the ending of a file that is being written, but not with
    // ".damaged".
    const std::string name(255 - std::string_view(".XXXXXX").size(), 'r');
    const std::string damaged =
        "nonsense\n[HKEY_CURRENT_USER\\" + std::string(kKey) + "]\n\"Good\"=dword:00000005\n";
    const std::string path = folder.Write(name, damaged);
    const test::EnvironmentGuard guard("CARVELOT_REGISTRY", path.c_str());
    CRegistryKey key;
    ASSERT_TRUE(key.Open(ERegRoot::CurrentUser, kKey, ERegAccess::Full));
    EXPECT_TRUE(key.SetDword("Rate", 3)); // for the run
    std::uint32_t number = 0;
    EXPECT_EQ(key.QueryRaw32("Rate", number), ERegStatus::Ok);
    EXPECT_EQ(number, 3U);
    EXPECT_EQ(folder.Read(name), damaged);
    EXPECT_EQ(folder.Names(), std::vector<std::string>{name});
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

TEST(Registry, AKeyThatIsNotOpenAnswersNothingAndTakesNothing) {
    const SettingsStore store;
    SettingsStore::Key(kKey).SetDword("Rate", 10);
    CRegistryKey key;
    std::uint32_t number = 7;
    CRegValue value;
    std::string text = "as it was";
    EXPECT_EQ(key.QueryRaw32("Rate", number), ERegStatus::Failed);
    EXPECT_EQ(key.QueryValue("Rate", value), ERegStatus::Failed);
    EXPECT_EQ(key.QueryRawText("Rate", 100, text), ERegStatus::Failed);
    EXPECT_EQ(number, 7U);
    EXPECT_EQ(text, "as it was");
    EXPECT_EQ(key.Count(), 0U);
    EXPECT_FALSE(key.EnumRaw32(0, text, number));
    EXPECT_FALSE(key.SetDword("Rate", 11));
    EXPECT_FALSE(key.DeleteValue("Rate"));
    EXPECT_FALSE(key.DeleteContent());
    EXPECT_EQ(SettingsStore::Key(kKey).QueryRaw32("Rate", number), ERegStatus::Ok);
    EXPECT_EQ(number, 10U);
}

TEST(Registry, AKeyThatIsMovedStaysOpenInItsNewPlaceAlone) {
    const SettingsStore store;
    CRegistryKey first = SettingsStore::Key(kKey);
    CRegistryKey second(std::move(first));
    EXPECT_TRUE(second.SetDword("Rate", 1));
    CRegistryKey third;
    third = std::move(second);
    EXPECT_FALSE(second.IsOpen());
    std::uint32_t number = 0;
    EXPECT_EQ(third.QueryRaw32("Rate", number), ERegStatus::Ok);
    EXPECT_EQ(number, 1U);
}

TEST(Registry, ATextQueryReadsTheBytesOfANumberAsUnits) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    const auto textOf = [&key](std::uint32_t number) {
        key.SetDword("Font", number);
        std::string text;
        EXPECT_EQ(key.QueryRawText("Font", 4, text), ERegStatus::Ok);
        return text;
    };
    EXPECT_EQ(textOf(0), "");
    EXPECT_EQ(textOf(0x61), "a");
    EXPECT_EQ(textOf(0x00620061), "ab");
    EXPECT_EQ(textOf(0x00620000), "");
    EXPECT_EQ(textOf(0x20AC00E4), "\xC3\xA4\xE2\x82\xAC");
    EXPECT_EQ(textOf(0xD83D), "\xEF\xBF\xBD");
    std::string text = "as it was";
    EXPECT_EQ(key.QueryRawText("Missing", 4, text), ERegStatus::NotFound);
    EXPECT_EQ(text, "as it was");
    EXPECT_EQ(key.QueryRawText("Font", 3, text), ERegStatus::Failed);
}

TEST(Registry, ATextQueryFailsWhereTheTextWithItsEndDoesNotFit) {
    const SettingsStore store;
    CRegistryKey key = SettingsStore::Key(kKey);
    key.SetString("Font", "a\xC3\xA4\xF0\x9F\x98\x80"); // four units
    std::string text;
    EXPECT_EQ(key.QueryRawText("Font", 9, text), ERegStatus::Failed);
    EXPECT_EQ(key.QueryRawText("Font", 10, text), ERegStatus::Ok);
    EXPECT_EQ(text, "a\xC3\xA4\xF0\x9F\x98\x80");
}

#endif

} // namespace
} // namespace carvelot::platform
