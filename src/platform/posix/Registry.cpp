// The store is one text file in the shape of a registry export:
//
//   [HKEY_CURRENT_USER\Software\Tamrisk\Carvelot\Settings]
//   "AutoRefresh"=dword:00000001
//   "FontName"="Courier New"
//
// Each write reads the file again, changes it in memory and replaces it as a whole, and meanwhile holds a
// lock on the folder: two running programs lose no more than the one value that both write, and a reader
// never sees half a file.
#include "platform/Registry.h"
#include "platform/posix/FolderLock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <vector>

namespace carvelot::platform {

namespace {

struct CKey {
    std::string m_strPath;
    std::vector<CRegValue> m_listValues;
};

bool EqualNoCase(std::string_view strA, std::string_view strB) {
    if (strA.size() != strB.size())
        return false;
    for (std::size_t n = 0; n < strA.size(); ++n) {
        const auto Fold = [](char ch) {
            return ch >= 'a' && ch <= 'z' ? static_cast<char>(ch - 'a' + 'A') : ch;
        };
        if (Fold(strA[n]) != Fold(strB[n]))
            return false;
    }
    return true;
}

bool IsBelow(std::string_view strPath, std::string_view strParent) {
    return strPath.size() > strParent.size() && strPath[strParent.size()] == '\\' &&
           EqualNoCase(strPath.substr(0, strParent.size()), strParent);
}

std::string Quote(std::string_view strText) {
    static constexpr char kHex[] = "0123456789abcdef";
    std::string strResult = "\"";
    for (const char ch : strText) {
        if (ch == '"' || ch == '\\') {
            strResult += '\\';
            strResult += ch;
        } else if (static_cast<unsigned char>(ch) < 0x20) {
            strResult += "\\x";
            strResult += kHex[static_cast<unsigned char>(ch) >> 4];
            strResult += kHex[static_cast<unsigned char>(ch) & 15];
        } else {
            strResult += ch;
        }
    }
    return strResult + '"';
}

int HexDigit(char ch) {
    if (ch >= '0' && ch <= '9')
        return ch - '0';
    if (ch >= 'a' && ch <= 'f')
        return ch - 'a' + 10;
    if (ch >= 'A' && ch <= 'F')
        return ch - 'A' + 10;
    return -1;
}

// Reads a quoted text at the front of strLine and steps over it.
bool Unquote(std::string_view& strLine, std::string& strText) {
    strText.clear();
    if (strLine.empty() || strLine[0] != '"')
        return false;
    for (std::size_t n = 1; n < strLine.size(); ++n) {
        if (strLine[n] == '"') {
            strLine.remove_prefix(n + 1);
            return true;
        }
        if (strLine[n] != '\\') {
            strText += strLine[n];
            continue;
        }
        if (++n >= strLine.size())
            return false;
        if (strLine[n] == 'x') {
            if (n + 2 >= strLine.size() || HexDigit(strLine[n + 1]) < 0 || HexDigit(strLine[n + 2]) < 0)
                return false;
            strText += static_cast<char>(HexDigit(strLine[n + 1]) * 16 + HexDigit(strLine[n + 2]));
            n += 2;
        } else {
            strText += strLine[n];
        }
    }
    return false;
}

// The whole store of one file.
class CStore {
public:
    explicit CStore(std::filesystem::path path) : m_path(std::move(path)) {}

    void Refresh() {
        if (m_bDetached)
            return;
        std::string strContent;
        const int hFile = open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
        if (hFile < 0) {
            if (errno != ENOENT && errno != ENOTDIR)
                m_bDetached = true;
            else
                m_listKeys.clear();
            return;
        }
        struct stat info = {};
        bool bRead = fstat(hFile, &info) == 0 && S_ISREG(info.st_mode) && info.st_size <= kMaximum;
        char buffer[16384];
        while (bRead) {
            const ssize_t nRead = read(hFile, buffer, sizeof buffer);
            if (nRead < 0 && errno == EINTR)
                continue;
            if (nRead <= 0) {
                bRead = nRead == 0;
                break;
            }
            strContent.append(buffer, static_cast<std::size_t>(nRead));
        }
        close(hFile);
        if (!bRead) {
            m_bDetached = true;
            return;
        }
        Parse(strContent);
    }

    CKey* Find(std::string_view strPath) {
        for (CKey& key : m_listKeys) {
            if (EqualNoCase(key.m_strPath, strPath))
                return &key;
        }
        return nullptr;
    }

    bool Exists(std::string_view strPath) {
        for (const CKey& key : m_listKeys) {
            if (EqualNoCase(key.m_strPath, strPath) || IsBelow(key.m_strPath, strPath))
                return true;
        }
        return false;
    }

    CKey& Make(std::string_view strPath) {
        if (CKey* pKey = Find(strPath))
            return *pKey;
        m_listKeys.push_back({std::string(strPath), {}});
        return m_listKeys.back();
    }

    void RemoveBelow(std::string_view strPath) {
        std::erase_if(m_listKeys, [&](const CKey& key) { return IsBelow(key.m_strPath, strPath); });
    }

    void Save() {
        if (m_bDetached)
            return;
        std::error_code error;
        const std::filesystem::path target =
            std::filesystem::is_symlink(m_path, error) ? std::filesystem::canonical(m_path, error) : m_path;
        if (!target.parent_path().empty())
            std::filesystem::create_directories(target.parent_path(), error);
        if (m_bDamaged) {
            std::filesystem::copy_file(target, target.string() + ".damaged",
                                       std::filesystem::copy_options::overwrite_existing, error);
            m_bDamaged = false;
        }
        std::string strTemporary = target.string() + ".XXXXXX";
        const int hFile = mkostemp(strTemporary.data(), O_CLOEXEC);
        if (hFile < 0) {
            m_bDetached = true; // keep what the user set for as long as the program runs
            return;
        }
        const std::string strContent = Print();
        bool bWritten = true;
        for (std::size_t nDone = 0; bWritten && nDone < strContent.size();) {
            const ssize_t nNow = write(hFile, strContent.data() + nDone, strContent.size() - nDone);
            if (nNow < 0 && errno == EINTR)
                continue;
            bWritten = nNow > 0;
            nDone += nNow > 0 ? static_cast<std::size_t>(nNow) : 0;
        }
        bWritten = fsync(hFile) == 0 && bWritten;
        bWritten = close(hFile) == 0 && bWritten;
        if (!bWritten || std::rename(strTemporary.c_str(), target.c_str()) != 0) {
            unlink(strTemporary.c_str());
            m_bDetached = true;
        }
    }

private:
    static constexpr off_t kMaximum = 16 * 1024 * 1024;

    void Parse(std::string_view strContent) {
        m_listKeys.clear();
        m_bDamaged = false;
        CKey* pKey = nullptr;
        while (!strContent.empty()) {
            const std::size_t nEnd = strContent.find('\n');
            std::string_view strLine = strContent.substr(0, nEnd);
            strContent.remove_prefix(nEnd == std::string_view::npos ? strContent.size() : nEnd + 1);
            if (!strLine.empty() && strLine.back() == '\r')
                strLine.remove_suffix(1);
            if (strLine.empty() || strLine[0] == ';' || strLine[0] == '#')
                continue;
            if (strLine[0] == '[' && strLine.back() == ']' && strLine.size() > 2) {
                pKey = &Make(strLine.substr(1, strLine.size() - 2));
                continue;
            }
            CRegValue value;
            if (pKey == nullptr || !ParseValue(strLine, value)) {
                m_bDamaged = true;
                continue;
            }
            Put(*pKey, std::move(value));
        }
    }

    static bool ParseValue(std::string_view strLine, CRegValue& value) {
        if (!Unquote(strLine, value.m_strName) || strLine.empty() || strLine[0] != '=')
            return false;
        strLine.remove_prefix(1);
        if (strLine.starts_with("dword:")) {
            strLine.remove_prefix(6);
            if (strLine.empty() || strLine.size() > 8)
                return false;
            value.m_nType = ERegType::Dword;
            for (const char ch : strLine) {
                const int nDigit = HexDigit(ch);
                if (nDigit < 0)
                    return false;
                value.m_nNumber = value.m_nNumber * 16 + static_cast<std::uint32_t>(nDigit);
            }
            return true;
        }
        value.m_nType = ERegType::String;
        return Unquote(strLine, value.m_strText) && strLine.empty();
    }

    std::string Print() const {
        std::string strContent = "; Settings of Carvelot. Values keep the order in which they were made.\n";
        for (const CKey& key : m_listKeys) {
            strContent += "\n[" + key.m_strPath + "]\n";
            for (const CRegValue& value : key.m_listValues) {
                strContent += Quote(value.m_strName) + "=";
                if (value.m_nType == ERegType::Dword) {
                    char szNumber[24];
                    std::snprintf(szNumber, sizeof szNumber, "dword:%08x",
                                  static_cast<unsigned>(value.m_nNumber));
                    strContent += szNumber;
                } else {
                    strContent += Quote(value.m_strText);
                }
                strContent += '\n';
            }
        }
        return strContent;
    }

public:
    static void Put(CKey& key, CRegValue value) {
        for (CRegValue& present : key.m_listValues) {
            if (EqualNoCase(present.m_strName, value.m_strName)) {
                value.m_strName = present.m_strName;
                present = std::move(value);
                return;
            }
        }
        key.m_listValues.push_back(std::move(value));
    }

private:
    std::filesystem::path m_path;
    std::vector<CKey> m_listKeys;
    bool m_bDamaged = false;  // lines of the file were not understood
    bool m_bDetached = false; // the file is out of reach: memory alone holds the settings
};

std::filesystem::path StorePath() {
    if (const char* pszPath = std::getenv("CARVELOT_REGISTRY"); pszPath != nullptr && *pszPath != '\0')
        return pszPath;
    if (const char* pszConfig = std::getenv("XDG_CONFIG_HOME"); pszConfig != nullptr && *pszConfig == '/')
        return std::filesystem::path(pszConfig) / "carvelot" / "registry.ini";
    const char* pszHome = std::getenv("HOME");
    return std::filesystem::path(pszHome != nullptr ? pszHome : ".") / ".config" / "carvelot" /
           "registry.ini";
}

CStore& Store() {
    static std::map<std::filesystem::path, CStore> mapStores;
    const std::filesystem::path path = StorePath();
    return mapStores.try_emplace(path, path).first->second;
}

std::string FullPath(ERegRoot nRoot, std::string_view strKey) {
    return std::string(nRoot == ERegRoot::CurrentUser ? "HKEY_CURRENT_USER\\" : "HKEY_LOCAL_MACHINE\\") +
           std::string(strKey);
}

// A value's bytes as a query with a 4-byte buffer sees them: UTF-16 with its terminator for a text.
bool Raw32(const CRegValue& value, std::uint32_t& nNumber) {
    if (value.m_nType == ERegType::Dword) {
        nNumber = value.m_nNumber;
        return true;
    }
    if (value.m_strText.empty()) {
        nNumber &= 0xFFFF0000u;
        return true;
    }
    if (value.m_strText.size() == 1 && static_cast<unsigned char>(value.m_strText[0]) < 0x80) {
        nNumber = static_cast<unsigned char>(value.m_strText[0]);
        return true;
    }
    return false;
}

// A UTF-16 unit that stands alone, as UTF-8; a NUL and half of a pair give nothing and U+FFFD.
void AppendUnit(std::string& strText, std::uint32_t nUnit) {
    if (nUnit == 0)
        return;
    if (nUnit >= 0xD800 && nUnit <= 0xDFFF)
        nUnit = 0xFFFD;
    if (nUnit < 0x80) {
        strText += static_cast<char>(nUnit);
        return;
    }
    if (nUnit < 0x800) {
        strText += static_cast<char>(0xC0 | (nUnit >> 6));
    } else {
        strText += static_cast<char>(0xE0 | (nUnit >> 12));
        strText += static_cast<char>(0x80 | ((nUnit >> 6) & 0x3F));
    }
    strText += static_cast<char>(0x80 | (nUnit & 0x3F));
}

// The lock of the store's folder, which is made when it is missing.
FolderLock LockStore() {
    const std::filesystem::path folder = StorePath().parent_path();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return FolderLock(folder.string());
}

} // namespace

struct CRegistryKey::CImpl {
    std::string m_strPath;
    bool m_bOpen = false;
    bool m_bWritable = false;

    CKey* Read() const {
        if (!m_bOpen)
            return nullptr;
        Store().Refresh();
        return Store().Find(m_strPath);
    }

    const CRegValue* Value(std::string_view strName) const {
        const CKey* pKey = Read();
        if (pKey == nullptr)
            return nullptr;
        for (const CRegValue& value : pKey->m_listValues) {
            if (EqualNoCase(value.m_strName, strName))
                return &value;
        }
        return nullptr;
    }

    bool Write(CRegValue value) const {
        if (!m_bOpen || !m_bWritable)
            return false;
        const FolderLock lock = LockStore();
        Store().Refresh();
        CStore::Put(Store().Make(m_strPath), std::move(value));
        Store().Save();
        return true;
    }
};

CRegistryKey::CRegistryKey() : m_pImpl(std::make_unique<CImpl>()) {}
CRegistryKey::~CRegistryKey() = default;

CRegistryKey::CRegistryKey(CRegistryKey&& other) noexcept : m_pImpl(std::move(other.m_pImpl)) {
    other.m_pImpl = std::make_unique<CImpl>();
}

CRegistryKey& CRegistryKey::operator=(CRegistryKey&& other) noexcept {
    std::swap(m_pImpl, other.m_pImpl);
    return *this;
}

bool CRegistryKey::Open(ERegRoot nRoot, std::string_view strKey, ERegAccess nAccess) {
    Close();
    const std::string strPath = FullPath(nRoot, strKey);
    Store().Refresh();
    if (!Store().Exists(strPath))
        return false;
    *m_pImpl = {strPath, true, nAccess == ERegAccess::Full};
    return true;
}

bool CRegistryKey::Create(ERegRoot nRoot, std::string_view strKey) {
    Close();
    const std::string strPath = FullPath(nRoot, strKey);
    Store().Refresh();
    if (Store().Find(strPath) == nullptr) {
        const FolderLock lock = LockStore();
        Store().Refresh();
        Store().Make(strPath);
        Store().Save();
    }
    *m_pImpl = {strPath, true, true};
    return true;
}

void CRegistryKey::Close() { *m_pImpl = {}; }

bool CRegistryKey::IsOpen() const { return m_pImpl->m_bOpen; }

ERegStatus CRegistryKey::QueryRaw32(std::string_view strName, std::uint32_t& nNumber) const {
    if (!m_pImpl->m_bOpen)
        return ERegStatus::Failed;
    const CRegValue* pValue = m_pImpl->Value(strName);
    if (pValue == nullptr)
        return ERegStatus::NotFound;
    return Raw32(*pValue, nNumber) ? ERegStatus::Ok : ERegStatus::Failed;
}

ERegStatus CRegistryKey::QueryValue(std::string_view strName, CRegValue& value) const {
    if (!m_pImpl->m_bOpen)
        return ERegStatus::Failed;
    const CRegValue* pValue = m_pImpl->Value(strName);
    if (pValue == nullptr)
        return ERegStatus::NotFound;
    value = *pValue;
    return ERegStatus::Ok;
}

ERegStatus CRegistryKey::QueryRawText(std::string_view strName, std::size_t nBytes,
                                      std::string& strText) const {
    if (!m_pImpl->m_bOpen)
        return ERegStatus::Failed;
    const CRegValue* pValue = m_pImpl->Value(strName);
    if (pValue == nullptr)
        return ERegStatus::NotFound;
    strText.clear();
    if (pValue->m_nType == ERegType::Dword) {
        if (nBytes < sizeof pValue->m_nNumber)
            return ERegStatus::Failed;
        AppendUnit(strText, pValue->m_nNumber & 0xFFFF);
        if (!strText.empty())
            AppendUnit(strText, pValue->m_nNumber >> 16);
        return ERegStatus::Ok;
    }
    // Every character has one byte that is no continuation, and those of four bytes take two units.
    std::size_t nUnits = 1;
    for (const char c : pValue->m_strText) {
        const auto nByte = static_cast<unsigned char>(c);
        nUnits += (nByte & 0xC0) == 0x80 ? 0u : nByte >= 0xF0 ? 2u : 1u;
    }
    if (nUnits * 2 > nBytes)
        return ERegStatus::Failed;
    strText = pValue->m_strText;
    return ERegStatus::Ok;
}

bool CRegistryKey::EnumRaw32(std::size_t nIndex, std::string& strName, std::uint32_t& nNumber) const {
    const CKey* pKey = m_pImpl->Read();
    if (pKey == nullptr || nIndex >= pKey->m_listValues.size())
        return false;
    const CRegValue& value = pKey->m_listValues[nIndex];
    if (value.m_strName.size() >= 260 || !Raw32(value, nNumber))
        return false;
    strName = value.m_strName;
    return true;
}

bool CRegistryKey::SetDword(std::string_view strName, std::uint32_t nNumber) {
    return m_pImpl->Write({std::string(strName), ERegType::Dword, nNumber, {}});
}

bool CRegistryKey::SetString(std::string_view strName, std::string_view strText) {
    return m_pImpl->Write({std::string(strName), ERegType::String, 0, std::string(strText)});
}

bool CRegistryKey::DeleteValue(std::string_view strName) {
    const FolderLock lock = LockStore();
    CKey* pKey = m_pImpl->m_bWritable ? m_pImpl->Read() : nullptr;
    if (pKey == nullptr)
        return false;
    const auto nRemoved = std::erase_if(
        pKey->m_listValues, [&](const CRegValue& value) { return EqualNoCase(value.m_strName, strName); });
    if (nRemoved != 0)
        Store().Save();
    return nRemoved != 0;
}

bool CRegistryKey::DeleteContent() {
    if (!m_pImpl->m_bOpen || !m_pImpl->m_bWritable)
        return false;
    const FolderLock lock = LockStore();
    Store().Refresh();
    Store().RemoveBelow(m_pImpl->m_strPath);
    Store().Make(m_pImpl->m_strPath).m_listValues.clear();
    Store().Save();
    return true;
}

} // namespace carvelot::platform
