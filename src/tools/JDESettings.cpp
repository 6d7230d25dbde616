#include "tools/JDESettings.h"

#include "platform/Directory.h"
#include "platform/ProfileFile.h"
#include "platform/Registry.h"
#include "text/TextColumns.h"

#include <string_view>

namespace carvelot {

namespace {

// A text that a buffer of that many UTF-16 units, the terminator included, can hold.
std::string Cut(std::string_view text, std::size_t buffer) {
    std::string result;
    std::size_t units = 0;
    while (!text.empty()) {
        const char32_t c = TakeCodePoint(text);
        units += c < 0x10000 ? 1u : 2u;
        if (units >= buffer) {
            break;
        }
        AppendCodePoint(result, c);
    }
    return result;
}

} // namespace

void CJASLogProperties::Read() {
    const auto read = [this](const char* key) {
        constexpr std::size_t kBuffer = 256;
        return platform::ReadProfileText(m_strSection, key, "", kBuffer, m_strPath);
    };
    m_strFile = read("FILE");
    m_strLevel = read("LEVEL");
    m_strFormat = read("FORMAT");
    m_strMaxFileSize = read("MAXFILESIZE");
    m_strMaxBackupIndex = read("MAXBACKUPINDEX");
    m_strComponent = read("COMPONENT");
    m_strAppend = read("APPEND");
}

CJDESettings::CJDESettings() {
    ReadIni();
    ReadRegistry();
    if (!m_strWebInfDir.empty()) {
        ReadLogProperties();
    }
}

void CJDESettings::ReadIni() {
    const auto text = [](const char* section, const char* key) {
        constexpr std::size_t kBuffer = 1024;
        return platform::ReadProfileText(section, key, "", kBuffer, kIniFile);
    };
    const auto number = [](const char* section, const char* key) {
        return platform::ReadProfileInt(section, key, 0, kIniFile);
    };
    m_nAppServerInstalled = number("LOCALWEB", "AppServerInstalled");
    m_strWebServerStop = text("LOCALWEB", "webserverstop");
    m_strWebServerStart = text("LOCALWEB", "webserverstart");
    m_strOutput = text("DEBUG", "Output");
    m_strLevel = text("DEBUG", "Level");
    m_strDebugFile = text("DEBUG", "DebugFile");
    m_strJobFile = text("DEBUG", "JobFile");
    m_strSecurityServer = text("SECURITY", "SecurityServer");
    m_strMailServer = text("JDEMAIL", "Rule1");
    m_nConnectPort = number("JDENET", "serviceNameConnect");
    m_nListenPort = number("JDENET", "serviceNameListen");
    m_nUBEDebugLevel = number("UBE", "UBEDebugLevel");
    m_nUBESaveLogFile = number("UBE", "UBESaveLogFile");
}

void CJDESettings::ReadRegistry() {
    constexpr std::size_t kBufferBytes = 1024;
    platform::CRegistryKey key;
    if (!key.Open(platform::ERegRoot::LocalMachine, "Software\\JDEdwards\\HTMLWebserver",
                  platform::ERegAccess::Full)) {
        return;
    }
    key.QueryRawText("JDBCDrivers", kBufferBytes, m_strJDBCDrivers);
    key.QueryRawText("WebInfDir", kBufferBytes, m_strWebInfDir);
}

void CJDESettings::ReadLogProperties() {
    std::string path = m_strWebInfDir;
    for (const char* name : {"WEB-INF", "classes", "jdelog.properties"}) {
        path.append(1, platform::kPathSeparator).append(name);
    }
    m_logProperties.clear();
    constexpr std::size_t kSectionsBuffer = 1024;
    constexpr std::size_t kNameBuffer = 256;
    for (const std::string& section : platform::ReadProfileSections(kSectionsBuffer, path)) {
        CJASLogProperties& properties = m_logProperties.emplace_back();
        properties.m_strSection = Cut(section, kNameBuffer);
        properties.m_strPath = path;
        properties.Read();
    }
}

} // namespace carvelot
