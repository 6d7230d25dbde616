#include "tools/JDEPropSetting.h"

#include "platform/ProfileFile.h"

#include <algorithm>
#include <utility>

namespace carvelot {

namespace {

void WriteBelow(CJDEPropSetting& parent) {
    for (CJDEPropSetting& row : parent.m_listChildren) {
        WriteBelow(row);
        if (row.IsModified())
            row.Write();
    }
}

CJDEPropSetting MakeIniRows(const CJDESettings& settings) {
    CJDEPropSetting top = CJDEPropSetting::Group("JDE.INI");
    const auto fnGroup = [&top](const char* pszSection) {
        top.m_listChildren.push_back(CJDEPropSetting::Group(pszSection));
    };
    // Each row goes below the group that was made last, whose label is its section.
    const auto fnRow = [&top](const char* pszKey, const std::string& strValue,
                              const char* pszDescription) -> CJDEPropSetting& {
        CJDEPropSetting& group = top.m_listChildren.back();
        return group.m_listChildren.emplace_back(pszKey, strValue, pszDescription, CJDESettings::kIniFile,
                                                 group.m_strLabel);
    };

    fnGroup("DEBUG");
    fnRow("Output", settings.m_strOutput, "One of: FILE, NONE").SetOptions({"FILE", "NONE"}, false);
    fnRow(
        "Level", settings.m_strLevel,
        "Any of: BSFN, EVENTS, SF_CONTROL, SF_GRID, SF_PARENT_CHILD, SF_GENERAL, SF_MESSAGING, SF_WORKFLOW, "
        "SF_WORKFLOW_ADMIN, SF_MEDIA_OBJ");
    fnRow("DebugFile", settings.m_strDebugFile, "Location of debug file");
    fnRow("JobFile", settings.m_strJobFile, "Location of log file");
    fnGroup("SECURITY");
    fnRow("SecurityServer", settings.m_strSecurityServer, "Hostname of the security server");
    fnGroup("JDEMAIL");
    fnRow("Rule1", settings.m_strMailServer, "SMTP Mail Server");
    fnGroup("JDENET");
    fnRow("serviceNameConnect", settings.GetConnectPort(), "JDENET connect to port");
    fnRow("serviceNameListen", settings.GetListenPort(), "JDENET listener port");
    fnGroup("UBE");
    fnRow("UBEDebugLevel", settings.GetUBEDebugLevel(), "One of: 0,1,2,3,4,5,6")
        .SetOptions({"0", "1", "2", "3", "4", "5", "6"}, false);
    fnRow("UBESaveLogFile", settings.GetUBESaveLogFile(), "One of: 0,1").SetOptions({"0", "1"}, false);
    return top;
}

CJDEPropSetting MakeLogGroup(const CJASLogProperties& properties) {
    CJDEPropSetting group = CJDEPropSetting::Group(properties.m_strSection);
    const auto fnRow = [&](const char* pszKey, const std::string& strValue,
                           const char* pszDescription) -> CJDEPropSetting& {
        return group.m_listChildren.emplace_back(pszKey, strValue, pszDescription, properties.m_strPath,
                                                 properties.m_strSection);
    };
    fnRow("FILE", properties.m_strFile, "FILENAME Template");
    fnRow("LEVEL", properties.m_strLevel, "One Of: SEVERE, WARN, APP, DEBUG")
        .SetOptions({"SEVERE", "WARN", "APP", "DEBUG"}, true);
    fnRow("FORMAT", properties.m_strFormat, "One Of: APPS, TOOLS, TOOLS_THREAD")
        .SetOptions({"APPS", "TOOLS", "TOOLS_THREAD"}, true);
    fnRow("MAXFILESIZE", properties.m_strMaxFileSize, "Maximum size of log file");
    fnRow("MAXBACKUPINDEX", properties.m_strMaxBackupIndex, "Maximum number of archived log files");
    fnRow("APPEND", properties.m_strAppend, "Append to existing log file");
    fnRow(
        "COMPONENT", properties.m_strComponent,
        "Any of: ALL| LIB| NET| KERNEL| JDBC| RUNTIME| SAW| JAS| JASBASE| XML| OWHTML| OWPORTAL| REDIRECTOR| "
        "INTEROP| SERVICES| THREADPOOL| TE| BPM| AUTOPILOT| SUPPORTASSISTANT| MAF| PERFMON| JDBJ| METADATA| "
        "PSFT| "
        "BASE| APPLOGIC| BIZLOGIC| CODEGEN| E1MENU| EVENTPROCESSOR| JAVATOKEN| OET| PIMSYNC| PPM| "
        "TEXTSEARCH| "
        "WEBGUI");
    return group;
}

} // namespace

CJDEPropSetting CJDEPropSetting::Group(std::string strLabel) {
    CJDEPropSetting group(std::move(strLabel), {}, {}, {}, {});
    group.m_bGroup = true;
    return group;
}

CJDEPropSetting::CJDEPropSetting(std::string strLabel, std::string strValue, std::string strDescription,
                                 std::string strFile, std::string strSection)
    : m_strLabel(std::move(strLabel)), m_strDescription(std::move(strDescription)),
      m_strFile(std::move(strFile)), m_strSection(std::move(strSection)), m_strValue(std::move(strValue)),
      m_strOriginal(m_strValue) {}

CJDEPropSetting& CJDEPropSetting::SetOptions(std::vector<std::string> listOptions, bool bAllowEdit) {
    m_listOptions = std::move(listOptions);
    m_bAllowEdit = bAllowEdit;
    return *this;
}

bool CJDEPropSetting::SetValue(std::string_view strValue) {
    strValue = strValue.substr(0, strValue.find_first_of(std::string_view("\r\n\0", 3)));
    if (m_bGroup || (!m_bAllowEdit && std::ranges::find(m_listOptions, strValue) == m_listOptions.end()))
        return false;
    m_strValue = strValue;
    return true;
}

void CJDEPropSetting::Write() {
    platform::WriteProfileText(m_strSection, m_strLabel, m_strValue, m_strFile);
    m_bWritten = true;
}

std::vector<CJDEPropSetting> MakeSettingsRows(const CJDESettings& settings) {
    std::vector<CJDEPropSetting> listTop;
    listTop.push_back(MakeIniRows(settings));
    CJDEPropSetting logging = CJDEPropSetting::Group("Logging");
    for (const CJASLogProperties& properties : settings.m_logProperties)
        logging.m_listChildren.push_back(MakeLogGroup(properties));
    CJDEPropSetting web = CJDEPropSetting::Group("LOCALWEB");
    web.m_listChildren.push_back(std::move(logging));
    listTop.push_back(std::move(web));
    return listTop;
}

void WriteModifiedRows(std::vector<CJDEPropSetting>& listTop) {
    for (CJDEPropSetting& top : listTop)
        WriteBelow(top);
}

} // namespace carvelot
