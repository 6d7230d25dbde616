#include "tools/SpecFiles.h"

#include "platform/Directory.h"
#include "platform/ProfileFile.h"
#include "platform/TemporaryFile.h"

namespace carvelot {

CColumnTable<SpecFileRow> SpecFileRow::Columns() {
    using enum EAlign;
    using R = SpecFileRow;
    // clang-format off
    static constexpr CListColumn<SpecFileRow> columns[] = {
        {"Spec File", 250, Left, TextOf<&R::m_strPath>, KeyOf<&R::m_strPath>},
        {"Size",      150, Left, DigitsOf<&R::m_nSize>},
    };
    // clang-format on
    return columns;
}

std::string CSpecFiles::InstallationPath() {
    constexpr std::size_t kBuffer = 256;
    std::string path = platform::ReadProfileText("INSTALL", "B9", "", kBuffer, "jde.ini");
    if (path.empty()) {
        path = platform::ReadProfileText("INSTALL", "B733", "", kBuffer, "jde.ini");
    }
    return path;
}

bool CSpecFiles::Fill() {
    m_listRows.clear();
    const std::string path = InstallationPath();
    if (path.empty()) {
        return false;
    }
    for (const char* mask : {"glbltbl.*", "dddict.*", "ddtext.*"}) {
        Walk(path, mask);
    }
    return true;
}

void CSpecFiles::Walk(const std::string& path, const char* mask) {
    for (const platform::DirectoryEntry& directory : platform::EnumerateDirectory(path, "*")) {
        if (!directory.m_bDirectory) {
            continue;
        }
        const std::string folder = path + platform::kPathSeparator + directory.m_strName;
        for (const std::string& name : platform::NamesInAnyCase(folder, "spec")) {
            AddFiles(path, folder + platform::kPathSeparator + name, mask);
        }
    }
}

void CSpecFiles::AddFiles(const std::string& path, const std::string& spec, const char* mask) {
    // A link may lead anywhere, and these files are there to be deleted.
    if (!platform::LiesWithin(spec, path)) {
        return;
    }
    for (const platform::DirectoryEntry& file : platform::EnumerateDirectory(spec, mask)) {
        // A directory of such a name is a row too; its deletion fails.
        if (file.m_bDirectory || platform::MayRemoveFrom(spec, file.m_strName)) {
            m_listRows.push_back({spec + platform::kPathSeparator + file.m_strName,
                                  static_cast<std::int32_t>(static_cast<std::uint32_t>(file.m_nSize))});
        }
    }
}

void CSpecFiles::Delete(const std::vector<std::size_t>& rows) const {
    // The rows stay where they are, so every pass asks for the same files again.
    for (std::size_t n = 0; n < m_listRows.size(); ++n) {
        for (const std::size_t row : rows) {
            platform::DeleteFileAt(m_listRows[row].m_strPath);
        }
    }
}

} // namespace carvelot
