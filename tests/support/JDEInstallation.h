// A JDE.INI for one test, and whole trees of files to compare. On Windows the profile calls look for the file
// in the Windows folder, so that such tests run under Wine or on a machine without JDE only.
#pragma once

#include "support/TestFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>

namespace carvelot::test {

class JDEIni {
public:
    JDEIni() : m_guard("CARVELOT_PROFILE_DIR", m_folder.Path().c_str()) { Remove(); }
    ~JDEIni() { Remove(); }

    std::filesystem::path Path() const {
#ifdef _WIN32
        return std::filesystem::path(std::getenv("SystemRoot")) / "JDE.INI";
#else
        return ToPath(m_folder.Path()) / "JDE.INI";
#endif
    }
    void Write(std::string_view bytes) const {
        std::ofstream(Path(), std::ios::binary | std::ios::trunc)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    std::string Read() const {
        std::ifstream file(Path(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool Exists() const { return std::filesystem::exists(Path()); }
    void Remove() const {
        std::error_code ignored;
        std::filesystem::remove(Path(), ignored);
    }

private:
    TestFolder m_folder;
    EnvironmentGuard m_guard;
};

// Every path below a folder with the bytes of its file; "/" for a folder.
inline std::map<std::string, std::string> Tree(const std::string& folder) {
    std::map<std::string, std::string> tree;
    const std::filesystem::path root = ToPath(folder);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        std::string bytes = "/";
        if (entry.is_regular_file()) {
            std::ifstream file(entry.path(), std::ios::binary);
            bytes.assign(std::istreambuf_iterator<char>(file), {});
        }
        const std::u8string name = entry.path().lexically_relative(root).generic_u8string();
        tree[std::string(name.begin(), name.end())] = bytes;
    }
    return tree;
}

// Writes a file with the folders above it; names are parted by "/".
inline void WriteBelow(const TestFolder& folder, std::string_view name, std::string_view bytes) {
    std::filesystem::create_directories(ToPath(folder.Path(name)).parent_path());
    folder.Write(name, bytes);
}

// A path of generic form as the platform's own.
inline std::string Native(const std::string& path) { return FromPath(ToPath(path).make_preferred()); }

// A JDE.INI as a workstation has it: some hundred lines, both styles of comment, values with "=" and "|".
inline std::string RealisticIni() {
    std::string text = "; JDE.INI of a workstation\r\n"
                       "\r\n"
                       "[SVR]\r\n"
                       "EnvironmentName=PY900\r\n"
                       "LibraryListName = PY900\r\n"
                       "\r\n"
                       "[DEBUG]\r\n"
                       "; who=cares | about this\r\n"
                       "TAMMultiUserOn=0\r\n"
                       "Output=FILE\r\n"
                       "ServerLog=0\r\n"
                       "Level=BSFN, EVENTS\r\n"
                       "DebugFile=c:\\jdedebug.log\r\n"
                       "JobFile = c:\\jde.log\r\n"
                       "// an old comment of another style\r\n"
                       "Frequency=10000\r\n"
                       "RepTrace=0\r\n"
                       "\r\n"
                       "[JDENET]\r\n"
                       "serviceNameListen=6017\r\n"
                       "serviceNameConnect=6017\r\n"
                       "netPgmName=jdenet.exe|second=2\r\n"
                       "\r\n"
                       "[SECURITY]\r\n"
                       "SecurityServer=entsvr01\r\n"
                       "DataSource=System - 900=main|spare\r\n"
                       "\r\n"
                       "[JDEMAIL]\r\n"
                       "Rule1=90|OPT|MAILSERVER=mail.example.com\r\n"
                       "Rule2=100|DEFAULT|OWMON=|x\r\n"
                       "\r\n"
                       "[UBE]\r\n"
                       "UBEDebugLevel=3\r\n"
                       "UBESaveLogFile=1\r\n"
                       "UBEFont_Chinese=FALSE\r\n"
                       "\r\n"
                       "[LOCALWEB]\r\n"
                       "AppServerInstalled=1\r\n"
                       "webserverstart=c:\\oc4j\\start.bat -x=1|2\r\n"
                       "webserverstop=c:\\oc4j\\stop.bat\r\n"
                       "\r\n"
                       "[INSTALL]\r\n"
                       "ClientServer=x\r\n"
                       "B9=\r\n"
                       "B733=\r\n";
    for (int section = 0; section < 25; ++section) {
        text += "\r\n[JDENET_KERNEL_DEF" + std::to_string(section) + "]\r\n";
        for (int key = 0; key < 14; ++key) {
            text += "; key " + std::to_string(key) + "\r\nkernelKey" + std::to_string(key) + "=_Dispatch@" +
                    std::to_string(key) + "=|" + std::to_string(section) + "\r\n";
        }
    }
    return text;
}

} // namespace carvelot::test
