#include "tools/JDEPropSetting.h"

#include "platform/ProfileFile.h"

#include <algorithm>
#include <utility>

namespace carvelot {

namespace {

void WriteBelow(CJDEPropSetting& parent) {
    for (CJDEPropSetting& row : parent.m_listChildren) {
        WriteBelow(row);
        if (row.IsModified()) {
            row.Write();
        }
    }
}

CJDEPropSetting MakeIniRows(const CJDESettings& settings) {
    CJDEPropSetting top = CJDEPropSetting::Group("JDE.INI");
    const auto addGroup = [&top](const char* section) {
        top.m_listChildren.push_back(CJDEPropSetting::Group(section));
    };
    // Each row goes below the group that was made last, whose label is its section.
    const auto row = [&top](const char* key, const std::string& value,
                            const char* description) -> CJDEPropSetting& {
        CJDEPropSetting& group = top.m_listChildren.back();
        return group.m_listChildren.emplace_back(key, value, description, CJDESettings::kIniFile,
                                                 group.m_strLabel);
    };

    addGroup("DEBUG");
    row("Output", settings.m_strOutput, "One of: FILE, NONE").SetOptions({"FILE", "NONE"}, false);
    row("Level", settings.m_strLevel,
        "Any of: BSFN, EVENTS, SF_CONTROL, SF_GRID, SF_PARENT_CHILD, SF_GENERAL, SF_MESSAGING, SF_WORKFLOW, "
        "SF_WORKFLOW_ADMIN, SF_MEDIA_OBJ");
    row("DebugFile", settings.m_strDebugFile, "Location of debug file");
    row("JobFile", settings.m_strJobFile, "Location of log file");
    addGroup("SECURITY");
    row("SecurityServer", settings.m_strSecurityServer, "Hostname of the security server");
    addGroup("JDEMAIL");
    row("Rule1", settings.m_strMailServer, "SMTP Mail Server");
    addGroup("JDENET");
    row("serviceNameConnect", settings.GetConnectPort(), "JDENET connect to port");
    row("serviceNameListen", settings.GetListenPort(), "JDENET listener port");
    addGroup("UBE");
    row("UBEDebugLevel", settings.GetUBEDebugLevel(), "One of: 0,1,2,3,4,5,6")
        .SetOptions({"0", "1", "2", "3", "4", "5", "6"}, false);
    row("UBESaveLogFile", settings.GetUBESaveLogFile(), "One of: 0,1").SetOptions({"0", "1"}, false);
    return top;
}

CJDEPropSetting MakeLogGroup(const CJASLogProperties& properties) {
    CJDEPropSetting group = CJDEPropSetting::Group(properties.m_strSection);
    const auto row = [&](const char* key, const std::string& value,
                         const char* description) -> CJDEPropSetting& {
        return group.m_listChildren.emplace_back(key, value, description, properties.m_strPath,
                                                 properties.m_strSection);
    };
    row("FILE", properties.m_strFile, "FILENAME Template");
    row("LEVEL", properties.m_strLevel, "One Of: SEVERE, WARN, APP, DEBUG")
        .SetOptions({"SEVERE", "WARN", "APP", "DEBUG"}, true);
    row("FORMAT", properties.m_strFormat, "One Of: APPS, TOOLS, TOOLS_THREAD")
        .SetOptions({"APPS", "TOOLS", "TOOLS_THREAD"}, true);
    row("MAXFILESIZE", properties.m_strMaxFileSize, "Maximum size of log file");
    row("MAXBACKUPINDEX", properties.m_strMaxBackupIndex, "Maximum number of archived log files");
    row("APPEND", properties.m_strAppend, "Append to existing log file");
    row("COMPONENT", properties.m_strComponent,
        "Any of: ALL| LIB| NET| KERNEL| JDBC| RUNTIME| SAW| JAS| JASBASE| XML| OWHTML| OWPORTAL| REDIRECTOR| "
        "INTEROP| SERVICES| THREADPOOL| TE| BPM| AUTOPILOT| SUPPORTASSISTANT| MAF| PERFMON| JDBJ| METADATA| "
        "PSFT| "
        "BASE| APPLOGIC| BIZLOGIC| CODEGEN| E1MENU| EVENTPROCESSOR| JAVATOKEN| OET| PIMSYNC| PPM| "
        "TEXTSEARCH| "
        "WEBGUI");
    return group;
}

} // namespace

CJDEPropSetting CJDEPropSetting::Group(std::string label) {
    CJDEPropSetting group(std::move(label), {}, {}, {}, {});
    group.m_bGroup = true;
    return group;
}

CJDEPropSetting::CJDEPropSetting(std::string label, std::string value, std::string description,
                                 std::string file, std::string section)
    : m_strLabel(std::move(label)), m_strDescription(std::move(description)), m_strFile(std::move(file)),
      m_strSection(std::move(section)), m_strValue(std::move(value)), m_strOriginal(m_strValue) {}

CJDEPropSetting& CJDEPropSetting::SetOptions(std::vector<std::string> options, bool allowEdit) {
    m_listOptions = std::move(options);
    m_bAllowEdit = allowEdit;
    return *this;
}

bool CJDEPropSetting::SetValue(std::string_view value) {
    value = value.substr(0, value.find_first_of(std::string_view("\r\n\0", 3)));
    if (m_bGroup || (!m_bAllowEdit && std::ranges::find(m_listOptions, value) == m_listOptions.end())) {
        return false;
    }
    m_strValue = value;
    return true;
}

void CJDEPropSetting::Write() {
    platform::WriteProfileText(m_strSection, m_strLabel, m_strValue, m_strFile);
    m_bWritten = true;
}

std::vector<CJDEPropSetting> MakeSettingsRows(const CJDESettings& settings) {
    std::vector<CJDEPropSetting> all;
    all.push_back(MakeIniRows(settings));
    CJDEPropSetting logging = CJDEPropSetting::Group("Logging");
    for (const CJASLogProperties& properties : settings.m_logProperties) {
        logging.m_listChildren.push_back(MakeLogGroup(properties));
    }
    CJDEPropSetting web = CJDEPropSetting::Group("LOCALWEB");
    web.m_listChildren.push_back(std::move(logging));
    all.push_back(std::move(web));
    return all;
}

void WriteModifiedRows(std::vector<CJDEPropSetting>& all) {
    for (CJDEPropSetting& top : all) {
        WriteBelow(top);
    }
}

} // namespace carvelot
