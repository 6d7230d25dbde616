// JDESettings.h - the settings of a JDE workstation as its files and the registry hold them. Only reads.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace carvelot {

// One section of the web server's jdelog.properties.
class CJASLogProperties {
public:
    // Reads the seven properties of the section; what is missing is empty, what is long is cut to 255
    // characters.
    void Read();

    std::string m_strFile;
    std::string m_strLevel;
    std::string m_strFormat;
    std::string m_strMaxFileSize;
    std::string m_strMaxBackupIndex;
    std::string m_strComponent;
    std::string m_strAppend;
    std::string m_strSection;
    std::string m_strPath; // of the file
};

class CJDESettings {
public:
    // The file that JDE itself reads, found by the platform under its bare name.
    static constexpr char kIniFile[] = "JDE.INI";

    // Reads all three places; the registry never again.
    CJDESettings();

    // Brings the fields of JDE.INI up to date. What is missing takes its default, 0 or empty.
    void ReadIni();
    // Reads the sections of jdelog.properties anew. A file that is missing or has no section gives one entry
    // without a name.
    void ReadLogProperties();

    std::string GetConnectPort() const { return std::to_string(m_nConnectPort); }
    std::string GetListenPort() const { return std::to_string(m_nListenPort); }
    std::string GetUBEDebugLevel() const { return std::to_string(m_nUBEDebugLevel); }
    std::string GetUBESaveLogFile() const { return std::to_string(m_nUBESaveLogFile); }

    std::int32_t m_nAppServerInstalled = 0;
    std::string m_strWebServerStart;
    std::string m_strWebServerStop;
    std::string m_strSecurityServer;
    std::int32_t m_nConnectPort = 0;
    std::int32_t m_nListenPort = 0;
    std::int32_t m_nUBEDebugLevel = 0;
    std::int32_t m_nUBESaveLogFile = 0;
    std::string m_strOutput;
    std::string m_strLevel;
    std::string m_strDebugFile;
    std::string m_strJobFile;
    std::string m_strMailServer;
    std::vector<CJASLogProperties> m_logProperties;
    std::string m_strJDBCDrivers;
    std::string m_strWebInfDir; // the web application's folder; empty without one

private:
    void ReadRegistry();
};

} // namespace carvelot
