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
    std::string strPath = platform::ReadProfileText("INSTALL", "B9", "", kBuffer, "jde.ini");
    if (strPath.empty())
        strPath = platform::ReadProfileText("INSTALL", "B733", "", kBuffer, "jde.ini");
    return strPath;
}

bool CSpecFiles::Fill() {
    m_listRows.clear();
    const std::string strPath = InstallationPath();
    if (strPath.empty())
        return false;
    for (const char* pszMask : {"glbltbl.*", "dddict.*", "ddtext.*"})
        Walk(strPath, pszMask);
    return true;
}

void CSpecFiles::Walk(const std::string& strPath, const char* pszMask) {
    for (const platform::DirectoryEntry& directory : platform::EnumerateDirectory(strPath, "*")) {
        if (!directory.m_bDirectory)
            continue;
        const std::string strDirectory = strPath + platform::kPathSeparator + directory.m_strName;
        for (const std::string& strName : platform::NamesInAnyCase(strDirectory, "spec"))
            AddFiles(strPath, strDirectory + platform::kPathSeparator + strName, pszMask);
    }
}

void CSpecFiles::AddFiles(const std::string& strPath, const std::string& strSpec, const char* pszMask) {
    // A link may lead anywhere, and these files are there to be deleted.
    if (!platform::LiesWithin(strSpec, strPath))
        return;
    for (const platform::DirectoryEntry& file : platform::EnumerateDirectory(strSpec, pszMask)) {
        // A directory of such a name is a row too; its deletion fails.
        if (file.m_bDirectory || platform::MayRemoveFrom(strSpec, file.m_strName))
            m_listRows.push_back({strSpec + platform::kPathSeparator + file.m_strName,
                                  static_cast<std::int32_t>(static_cast<std::uint32_t>(file.m_nSize))});
    }
}

void CSpecFiles::Delete(const std::vector<std::size_t>& listRows) const {
    // The rows stay where they are, so every pass asks for the same files again.
    for (std::size_t n = 0; n < m_listRows.size(); ++n) {
        for (const std::size_t nRow : listRows)
            platform::DeleteFileAt(m_listRows[nRow].m_strPath);
    }
}

} // namespace carvelot
