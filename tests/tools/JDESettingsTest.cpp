#include "tools/JDESettings.h"

#include "support/JDEInstallation.h"
#include "support/SettingsStore.h"
#include "tools/JDEPropSetting.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <stdexcept>

namespace carvelot {
namespace {

using namespace carvelot::test;
using platform::CRegistryKey;
using platform::ERegRoot;

constexpr char kServerKey[] = "Software\\JDEdwards\\HTMLWebserver";

// A workstation without anything on it.
class JDESettings : public testing::Test {
protected:
    JDESettings() { EmptyServerKey(); }
    ~JDESettings() override { EmptyServerKey(); }

    static void EmptyServerKey() {
        CRegistryKey key;
        if (key.Open(ERegRoot::LocalMachine, kServerKey, platform::ERegAccess::Full)) {
            key.DeleteContent();
        }
    }
    static CRegistryKey ServerKey() {
        CRegistryKey key;
        key.Create(ERegRoot::LocalMachine, kServerKey);
        return key;
    }
    std::string Web() const { return Native(m_folder.Path("web")); }
    void WriteProperties(std::string_view bytes) const {
        WriteBelow(m_folder, "web/WEB-INF/classes/jdelog.properties", bytes);
    }
    std::string Properties() const { return m_folder.Read("web/WEB-INF/classes/jdelog.properties"); }

    static CJDEPropSetting& Row(std::vector<CJDEPropSetting>& list, std::initializer_list<const char*> path) {
        std::vector<CJDEPropSetting>* settings = &list;
        CJDEPropSetting* found = nullptr;
        for (const char* label : path) {
            found = nullptr;
            for (CJDEPropSetting& row : *settings) {
                if (found == nullptr && row.m_strLabel == label) {
                    found = &row;
                }
            }
            if (found == nullptr) {
                throw std::runtime_error(std::string("no row ") + label);
            }
            settings = &found->m_listChildren;
        }
        return *found;
    }

    SettingsStore m_store;
    JDEIni m_ini;
    TestFolder m_folder;
};

TEST_F(JDESettings, WithoutFilesAndKeysEverythingTakesItsDefault) {
    const CJDESettings settings;
    EXPECT_EQ(settings.m_nAppServerInstalled, 0);
    EXPECT_EQ(settings.m_strOutput, "");
    EXPECT_EQ(settings.m_strMailServer, "");
    EXPECT_EQ(settings.m_strWebInfDir, "");
    EXPECT_TRUE(settings.m_logProperties.empty());
    EXPECT_EQ(settings.GetConnectPort(), "0");
    EXPECT_EQ(settings.GetListenPort(), "0");
    EXPECT_EQ(settings.GetUBEDebugLevel(), "0");
    EXPECT_EQ(settings.GetUBESaveLogFile(), "0");
    EXPECT_FALSE(m_ini.Exists());
}

TEST_F(JDESettings, TheFieldsComeFromTheirSectionsAndKeys) {
    m_ini.Write(RealisticIni());
    const CJDESettings settings;
    EXPECT_EQ(settings.m_nAppServerInstalled, 1);
    EXPECT_EQ(settings.m_strWebServerStart, "c:\\oc4j\\start.bat -x=1|2");
    EXPECT_EQ(settings.m_strWebServerStop, "c:\\oc4j\\stop.bat");
    EXPECT_EQ(settings.m_strSecurityServer, "entsvr01");
    EXPECT_EQ(settings.m_nConnectPort, 6017);
    EXPECT_EQ(settings.m_nListenPort, 6017);
    EXPECT_EQ(settings.m_nUBEDebugLevel, 3);
    EXPECT_EQ(settings.m_nUBESaveLogFile, 1);
    EXPECT_EQ(settings.m_strOutput, "FILE");
    EXPECT_EQ(settings.m_strLevel, "BSFN, EVENTS");
    EXPECT_EQ(settings.m_strDebugFile, "c:\\jdedebug.log");
    EXPECT_EQ(settings.m_strJobFile, "c:\\jde.log");
    EXPECT_EQ(settings.m_strMailServer, "90|OPT|MAILSERVER=mail.example.com");
    EXPECT_EQ(m_ini.Read(), RealisticIni());
}

TEST_F(JDESettings, ANumberThatIsNoneReadsAsTheProfileCallReadsIt) {
    m_ini.Write("[JDENET]\r\nserviceNameListen=jde_server\r\nserviceNameConnect=6017abc\r\n"
                "[UBE]\r\nUBEDebugLevel=-2\r\nUBESaveLogFile=\r\n");
    const CJDESettings settings;
    EXPECT_EQ(settings.GetListenPort(), "0");
    EXPECT_EQ(settings.GetConnectPort(), "6017");
    EXPECT_EQ(settings.GetUBEDebugLevel(), "-2");
    EXPECT_EQ(settings.GetUBESaveLogFile(), "0");
}

TEST_F(JDESettings, ReadingAgainBringsTheFieldsUpToDate) {
    m_ini.Write("[DEBUG]\r\nOutput=FILE\r\nLevel=BSFN\r\n");
    CJDESettings settings;
    m_ini.Write("[DEBUG]\r\nOutput=NONE\r\n");
    settings.ReadIni();
    EXPECT_EQ(settings.m_strOutput, "NONE");
    EXPECT_EQ(settings.m_strLevel, "");
}

TEST_F(JDESettings, TheRegistryGivesTheDriversAndTheWebApplication) {
    ServerKey().SetString("JDBCDrivers", "oracle.jdbc.OracleDriver");
    ServerKey().SetString("WebInfDir", Web());
    WriteProperties("[E1LOG]\r\nFILE=jas.log\r\n");
    const CJDESettings settings;
    EXPECT_EQ(settings.m_strJDBCDrivers, "oracle.jdbc.OracleDriver");
    EXPECT_EQ(settings.m_strWebInfDir, Web());
    ASSERT_EQ(settings.m_logProperties.size(), 1U);
    EXPECT_EQ(settings.m_logProperties[0].m_strPath,
              Native(m_folder.Path("web/WEB-INF/classes/jdelog.properties")));
}

TEST_F(JDESettings, TheTypeOfARegistryValueIsNotLookedAt) {
    ServerKey().SetDword("JDBCDrivers", 0x00420041);
    ServerKey().SetDword("WebInfDir", 0x00430000);
    const CJDESettings settings;
    EXPECT_EQ(settings.m_strJDBCDrivers, "AB");
    EXPECT_EQ(settings.m_strWebInfDir, "");
}

TEST_F(JDESettings, ARegistryTextLongerThanItsBufferGivesNone) {
    ServerKey().SetString("JDBCDrivers", std::string(512, 'j'));
    EXPECT_EQ(CJDESettings().m_strJDBCDrivers, "");
    ServerKey().SetString("JDBCDrivers", std::string(511, 'j'));
    EXPECT_EQ(CJDESettings().m_strJDBCDrivers, std::string(511, 'j'));
}

TEST_F(JDESettings, SectionsOfThePropertiesFileBecomeEntriesInFileOrder) {
    WriteProperties(
        "#a comment\r\nFILE=above all\r\n[E1LOG]\r\nFILE=/jas/jde.log\r\nLEVEL=SEVERE\r\nFORMAT=APPS\r\n"
        "MAXFILESIZE=10MB\r\nMAXBACKUPINDEX=20\r\nCOMPONENT=ALL|JAS=x\r\nAPPEND=TRUE\r\n"
        "[JASDEBUG]\r\nLEVEL=DEBUG\r\n[LAST]\r\n");
    CJDESettings settings;
    settings.m_strWebInfDir = Web();
    settings.ReadLogProperties();
    ASSERT_EQ(settings.m_logProperties.size(), 3U);
    const CJASLogProperties& first = settings.m_logProperties[0];
    EXPECT_EQ(first.m_strSection, "E1LOG");
    EXPECT_EQ(first.m_strFile, "/jas/jde.log");
    EXPECT_EQ(first.m_strLevel, "SEVERE");
    EXPECT_EQ(first.m_strFormat, "APPS");
    EXPECT_EQ(first.m_strMaxFileSize, "10MB");
    EXPECT_EQ(first.m_strMaxBackupIndex, "20");
    EXPECT_EQ(first.m_strComponent, "ALL|JAS=x");
    EXPECT_EQ(first.m_strAppend, "TRUE");
    EXPECT_EQ(settings.m_logProperties[1].m_strSection, "JASDEBUG");
    EXPECT_EQ(settings.m_logProperties[1].m_strLevel, "DEBUG");
    EXPECT_EQ(settings.m_logProperties[1].m_strFile, "");
    EXPECT_EQ(settings.m_logProperties[2].m_strSection, "LAST");
    settings.ReadLogProperties();
    EXPECT_EQ(settings.m_logProperties.size(), 3U);
}

TEST_F(JDESettings, APropertiesFileThatIsMissingGivesOneEntryWithoutAName) {
    ServerKey().SetString("WebInfDir", Web());
    const CJDESettings settings;
    ASSERT_EQ(settings.m_logProperties.size(), 1U);
    EXPECT_EQ(settings.m_logProperties[0].m_strSection, "");
    EXPECT_EQ(settings.m_logProperties[0].m_strFile, "");
}

TEST_F(JDESettings, LongTextsAreCut) {
    m_ini.Write("[DEBUG]\r\nLevel=" + std::string(1500, 'l') + "\r\n");
    WriteProperties("[" + std::string(300, 's') + "]\r\nFILE=f\r\n[E1LOG]\r\nFILE=" + std::string(300, 'f') +
                    "\r\n");
    CJDESettings settings;
    EXPECT_EQ(settings.m_strLevel, std::string(1023, 'l'));
    settings.m_strWebInfDir = Web();
    settings.ReadLogProperties();
    ASSERT_EQ(settings.m_logProperties.size(), 2U);
    // The cut name is no section of the file.
    EXPECT_EQ(settings.m_logProperties[0].m_strSection, std::string(255, 's'));
    EXPECT_EQ(settings.m_logProperties[0].m_strFile, "");
    EXPECT_EQ(settings.m_logProperties[1].m_strFile, std::string(255, 'f'));
}

std::string Print(const std::vector<CJDEPropSetting>& list, const std::string& indent = {}) {
    std::string result;
    for (const CJDEPropSetting& row : list) {
        result += indent + row.m_strLabel;
        if (!row.m_bGroup) {
            result += "=" + row.GetValue();
        }
        for (std::size_t n = 0; n < row.m_listOptions.size(); ++n) {
            result += (n == 0 ? row.m_bAllowEdit ? " ~" : " !" : ",") + row.m_listOptions[n];
        }
        result += "\n" + Print(row.m_listChildren, indent + " ");
    }
    return result;
}

TEST_F(JDESettings, TheGridHasItsGroupsRowsAndOptionsInOrder) {
    m_ini.Write(RealisticIni());
    WriteProperties("[E1LOG]\r\nFILE=jas.log\r\nCOMPONENT=ALL\r\nAPPEND=TRUE\r\n[SECOND]\r\nLEVEL=odd\r\n");
    ServerKey().SetString("WebInfDir", Web());
    EXPECT_EQ(Print(MakeSettingsRows(CJDESettings())), "JDE.INI\n"
                                                       " DEBUG\n"
                                                       "  Output=FILE !FILE,NONE\n"
                                                       "  Level=BSFN, EVENTS\n"
                                                       "  DebugFile=c:\\jdedebug.log\n"
                                                       "  JobFile=c:\\jde.log\n"
                                                       " SECURITY\n"
                                                       "  SecurityServer=entsvr01\n"
                                                       " JDEMAIL\n"
                                                       "  Rule1=90|OPT|MAILSERVER=mail.example.com\n"
                                                       " JDENET\n"
                                                       "  serviceNameConnect=6017\n"
                                                       "  serviceNameListen=6017\n"
                                                       " UBE\n"
                                                       "  UBEDebugLevel=3 !0,1,2,3,4,5,6\n"
                                                       "  UBESaveLogFile=1 !0,1\n"
                                                       "LOCALWEB\n"
                                                       " Logging\n"
                                                       "  E1LOG\n"
                                                       "   FILE=jas.log\n"
                                                       "   LEVEL= ~SEVERE,WARN,APP,DEBUG\n"
                                                       "   FORMAT= ~APPS,TOOLS,TOOLS_THREAD\n"
                                                       "   MAXFILESIZE=\n"
                                                       "   MAXBACKUPINDEX=\n"
                                                       "   APPEND=TRUE\n"
                                                       "   COMPONENT=ALL\n"
                                                       "  SECOND\n"
                                                       "   FILE=\n"
                                                       "   LEVEL=odd ~SEVERE,WARN,APP,DEBUG\n"
                                                       "   FORMAT= ~APPS,TOOLS,TOOLS_THREAD\n"
                                                       "   MAXFILESIZE=\n"
                                                       "   MAXBACKUPINDEX=\n"
                                                       "   APPEND=\n"
                                                       "   COMPONENT=\n");
}

TEST_F(JDESettings, WithoutAWebServerTheLoggingGroupIsEmptyAndStillThere) {
    const std::vector<CJDEPropSetting> list = MakeSettingsRows(CJDESettings());
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[1].m_strLabel, "LOCALWEB");
    ASSERT_EQ(list[1].m_listChildren.size(), 1U);
    EXPECT_EQ(list[1].m_listChildren[0].m_strLabel, "Logging");
    EXPECT_TRUE(list[1].m_listChildren[0].m_listChildren.empty());
}

TEST_F(JDESettings, NothingChangedWritesNothing) {
    m_ini.Write(RealisticIni());
    std::vector<CJDEPropSetting> list = MakeSettingsRows(CJDESettings());
    m_ini.Remove();
    WriteModifiedRows(list);
    EXPECT_FALSE(m_ini.Exists());
}

// Each row of JDE.INI, and what the file looks like after that row alone has changed.
TEST_F(JDESettings, AChangeReplacesThatValueAndNoOtherByte) {
    const struct {
        std::initializer_list<const char*> m_path;
        const char* m_pszValue;
        const char* m_pszBefore;
        const char* m_pszAfter;
    } cases[] = {
        {{"JDE.INI", "DEBUG", "Output"}, "NONE", "\r\nOutput=FILE\r\n", "\r\nOutput=NONE\r\n"},
        {{"JDE.INI", "DEBUG", "Level"}, "a=b|c", "Level=BSFN, EVENTS\r\n", "Level=a=b|c\r\n"},
        {{"JDE.INI", "DEBUG", "DebugFile"}, "", "DebugFile=c:\\jdedebug.log\r\n", "DebugFile=\r\n"},
        {{"JDE.INI", "SECURITY", "SecurityServer"}, "s2", "SecurityServer=entsvr01", "SecurityServer=s2"},
        {{"JDE.INI", "JDEMAIL", "Rule1"}, "1|x=y", "Rule1=90|OPT|MAILSERVER=mail.example.com", "Rule1=1|x=y"},
        {{"JDE.INI", "JDENET", "serviceNameConnect"}, "1", "serviceNameConnect=6017", "serviceNameConnect=1"},
        {{"JDE.INI", "JDENET", "serviceNameListen"},
         "jde",
         "serviceNameListen=6017",
         "serviceNameListen=jde"},
        {{"JDE.INI", "UBE", "UBEDebugLevel"}, "6", "UBEDebugLevel=3", "UBEDebugLevel=6"},
        {{"JDE.INI", "UBE", "UBESaveLogFile"}, "0", "UBESaveLogFile=1", "UBESaveLogFile=0"},
    };
    for (const auto& change : cases) {
        m_ini.Write(RealisticIni());
        std::vector<CJDEPropSetting> list = MakeSettingsRows(CJDESettings());
        ASSERT_TRUE(Row(list, change.m_path).SetValue(change.m_pszValue));
        WriteModifiedRows(list);
        std::string expected = RealisticIni();
        const std::size_t at = expected.find(change.m_pszBefore);
        ASSERT_NE(at, std::string::npos);
        expected.replace(at, std::string_view(change.m_pszBefore).size(), change.m_pszAfter);
#ifdef _WIN32
        // There the system's own call writes, which may set blanks and line ends its own way.
        EXPECT_NE(m_ini.Read().find(change.m_pszAfter), std::string::npos) << change.m_pszAfter;
#else
        EXPECT_EQ(m_ini.Read(), expected) << change.m_pszAfter;
#endif
    }
}

TEST_F(JDESettings, MissingSectionsAndKeysAreMade) {
    m_ini.Write("[OTHER]\r\nx=1\r\n");
    std::vector<CJDEPropSetting> list = MakeSettingsRows(CJDESettings());
    Row(list, {"JDE.INI", "DEBUG", "Output"}).SetValue("FILE");
    Row(list, {"JDE.INI", "DEBUG", "JobFile"}).SetValue("c:\\jde.log");
    WriteModifiedRows(list);
    CJDESettings settings;
    EXPECT_EQ(settings.m_strOutput, "FILE");
    EXPECT_EQ(settings.m_strJobFile, "c:\\jde.log");
#ifndef _WIN32
    EXPECT_EQ(m_ini.Read(), "[OTHER]\r\nx=1\r\n[DEBUG]\r\nOutput=FILE\r\nJobFile=c:\\jde.log\r\n");
#endif
}

TEST_F(JDESettings, ARowStaysModifiedAndIsWrittenAgain) {
    m_ini.Write("[DEBUG]\r\nOutput=FILE\r\n");
    std::vector<CJDEPropSetting> list = MakeSettingsRows(CJDESettings());
    CJDEPropSetting& row = Row(list, {"JDE.INI", "DEBUG", "Output"});
    ASSERT_TRUE(row.SetValue("NONE"));
    WriteModifiedRows(list);
    EXPECT_EQ(CJDESettings().m_strOutput, "NONE");
    EXPECT_TRUE(row.IsModified());
    m_ini.Write("[DEBUG]\r\nOutput=other\r\n");
    WriteModifiedRows(list);
    EXPECT_EQ(CJDESettings().m_strOutput, "NONE");
    // Back to the first value: the file follows.
    ASSERT_TRUE(row.SetValue("FILE"));
    WriteModifiedRows(list);
    EXPECT_EQ(CJDESettings().m_strOutput, "FILE");
}

TEST_F(JDESettings, AValueTypedBackBeforeItWasWrittenIsNoChange) {
    m_ini.Write("[DEBUG]\r\nLevel=A\r\n");
    std::vector<CJDEPropSetting> list = MakeSettingsRows(CJDESettings());
    CJDEPropSetting& row = Row(list, {"JDE.INI", "DEBUG", "Level"});
    row.SetValue("B");
    EXPECT_TRUE(row.IsModified());
    row.SetValue("A");
    EXPECT_FALSE(row.IsModified());
}

TEST_F(JDESettings, APortOfLettersIsWrittenAsItStandsAndReadsZero) {
    m_ini.Write(RealisticIni());
    std::vector<CJDEPropSetting> list = MakeSettingsRows(CJDESettings());
    ASSERT_TRUE(Row(list, {"JDE.INI", "JDENET", "serviceNameListen"}).SetValue("port"));
    WriteModifiedRows(list);
    EXPECT_NE(m_ini.Read().find("serviceNameListen=port\r\n"), std::string::npos);
    std::vector<CJDEPropSetting> again = MakeSettingsRows(CJDESettings());
    EXPECT_EQ(Row(again, {"JDE.INI", "JDENET", "serviceNameListen"}).GetValue(), "0");
}

TEST_F(JDESettings, RowsWithoutTypingTakeTheirOptionsOnly) {
    std::vector<CJDEPropSetting> list = MakeSettingsRows(CJDESettings());
    CJDEPropSetting& output = Row(list, {"JDE.INI", "DEBUG", "Output"});
    EXPECT_FALSE(output.SetValue("file"));
    EXPECT_FALSE(output.SetValue("BOTH"));
    EXPECT_EQ(output.GetValue(), "");
    EXPECT_TRUE(output.SetValue("FILE"));
    EXPECT_FALSE(Row(list, {"JDE.INI", "DEBUG"}).SetValue("x"));
}

TEST_F(JDESettings, AValueIsOneLine) {
    std::vector<CJDEPropSetting> list = MakeSettingsRows(CJDESettings());
    CJDEPropSetting& level = Row(list, {"JDE.INI", "DEBUG", "Level"});
    level.SetValue("BSFN\r\n[EVIL]\r\nx=1");
    EXPECT_EQ(level.GetValue(), "BSFN");
}

TEST_F(JDESettings, TwoLoggingSectionsWriteEachToTheirOwn) {
    WriteProperties("[E1LOG]\r\nLEVEL=APP\r\n#x=y\r\n[SECOND]\r\nLEVEL=WARN\r\nFILE=a|b=c\r\n");
    ServerKey().SetString("WebInfDir", Web());
    std::vector<CJDEPropSetting> list = MakeSettingsRows(CJDESettings());
    ASSERT_TRUE(Row(list, {"LOCALWEB", "Logging", "SECOND", "LEVEL"}).SetValue("typed"));
    WriteModifiedRows(list);
    EXPECT_EQ(Properties(), "[E1LOG]\r\nLEVEL=APP\r\n#x=y\r\n[SECOND]\r\nLEVEL=typed\r\nFILE=a|b=c\r\n");
    ASSERT_TRUE(Row(list, {"LOCALWEB", "Logging", "E1LOG", "LEVEL"}).SetValue("DEBUG"));
    WriteModifiedRows(list);
    EXPECT_EQ(Properties(), "[E1LOG]\r\nLEVEL=DEBUG\r\n#x=y\r\n[SECOND]\r\nLEVEL=typed\r\nFILE=a|b=c\r\n");
    EXPECT_FALSE(m_ini.Exists());
}

TEST_F(JDESettings, AWriteThatFailsIsPassedOver) {
    ServerKey().SetString("WebInfDir", Web());
    std::vector<CJDEPropSetting> list = MakeSettingsRows(CJDESettings());
    Row(list, {"LOCALWEB", "Logging", "", "FILE"}).SetValue("x");
    const auto before = Tree(m_folder.Path());
    WriteModifiedRows(list);
    EXPECT_EQ(Tree(m_folder.Path()), before);
}

} // namespace
} // namespace carvelot
