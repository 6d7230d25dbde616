#include "tools/JDESettings.h"

#include "platform/Directory.h"
#include "platform/ProfileFile.h"
#include "platform/Registry.h"
#include "text/Columns.h"

#include <string_view>

namespace carvelot {

namespace {

// A text that a buffer of that many UTF-16 units, the terminator included, can hold.
std::string Cut(std::string_view text, std::size_t nBuffer) {
    std::string strResult;
    std::size_t nUnits = 0;
    while (!text.empty()) {
        const char32_t c = TakeCodePoint(text);
        nUnits += c < 0x10000 ? 1u : 2u;
        if (nUnits >= nBuffer)
            break;
        AppendCodePoint(strResult, c);
    }
    return strResult;
}

} // namespace

void CJASLogProperties::Read() {
    const auto fnRead = [this](const char* pszKey) {
        constexpr std::size_t kBuffer = 256;
        return platform::ReadProfileText(m_strSection, pszKey, "", kBuffer, m_strPath);
    };
    m_strFile = fnRead("FILE");
    m_strLevel = fnRead("LEVEL");
    m_strFormat = fnRead("FORMAT");
    m_strMaxFileSize = fnRead("MAXFILESIZE");
    m_strMaxBackupIndex = fnRead("MAXBACKUPINDEX");
    m_strComponent = fnRead("COMPONENT");
    m_strAppend = fnRead("APPEND");
}

CJDESettings::CJDESettings() {
    ReadIni();
    ReadRegistry();
    if (!m_strWebInfDir.empty())
        ReadLogProperties();
}

void CJDESettings::ReadIni() {
    const auto fnText = [](const char* pszSection, const char* pszKey) {
        constexpr std::size_t kBuffer = 1024;
        return platform::ReadProfileText(pszSection, pszKey, "", kBuffer, kIniFile);
    };
    const auto fnNumber = [](const char* pszSection, const char* pszKey) {
        return platform::ReadProfileInt(pszSection, pszKey, 0, kIniFile);
    };
    m_nAppServerInstalled = fnNumber("LOCALWEB", "AppServerInstalled");
    m_strWebServerStop = fnText("LOCALWEB", "webserverstop");
    m_strWebServerStart = fnText("LOCALWEB", "webserverstart");
    m_strOutput = fnText("DEBUG", "Output");
    m_strLevel = fnText("DEBUG", "Level");
    m_strDebugFile = fnText("DEBUG", "DebugFile");
    m_strJobFile = fnText("DEBUG", "JobFile");
    m_strSecurityServer = fnText("SECURITY", "SecurityServer");
    m_strMailServer = fnText("JDEMAIL", "Rule1");
    m_nConnectPort = fnNumber("JDENET", "serviceNameConnect");
    m_nListenPort = fnNumber("JDENET", "serviceNameListen");
    m_nUBEDebugLevel = fnNumber("UBE", "UBEDebugLevel");
    m_nUBESaveLogFile = fnNumber("UBE", "UBESaveLogFile");
}

void CJDESettings::ReadRegistry() {
    constexpr std::size_t kBufferBytes = 1024;
    platform::CRegistryKey key;
    if (!key.Open(platform::ERegRoot::LocalMachine, "Software\\JDEdwards\\HTMLWebserver",
                  platform::ERegAccess::Full))
        return;
    key.QueryRawText("JDBCDrivers", kBufferBytes, m_strJDBCDrivers);
    key.QueryRawText("WebInfDir", kBufferBytes, m_strWebInfDir);
}

void CJDESettings::ReadLogProperties() {
    std::string strPath = m_strWebInfDir;
    for (const char* pszName : {"WEB-INF", "classes", "jdelog.properties"})
        strPath.append(1, platform::kPathSeparator).append(pszName);
    m_logProperties.clear();
    constexpr std::size_t kSectionsBuffer = 1024;
    constexpr std::size_t kNameBuffer = 256;
    for (const std::string& strSection : platform::ReadProfileSections(kSectionsBuffer, strPath)) {
        CJASLogProperties& properties = m_logProperties.emplace_back();
        properties.m_strSection = Cut(strSection, kNameBuffer);
        properties.m_strPath = strPath;
        properties.Read();
    }
}

} // namespace carvelot
