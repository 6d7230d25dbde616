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
#include "platform/posix/PosixFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <utility>
#include <vector>

namespace carvelot::platform {

namespace {

struct CKey {
    std::string m_strPath;
    std::vector<CRegValue> m_listValues;
};

bool EqualNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t n = 0; n < a.size(); ++n) {
        const auto Fold = [](char ch) {
            return ch >= 'a' && ch <= 'z' ? static_cast<char>(ch - 'a' + 'A') : ch;
        };
        if (Fold(a[n]) != Fold(b[n])) {
            return false;
        }
    }
    return true;
}

bool IsBelow(std::string_view path, std::string_view parent) {
    return path.size() > parent.size() && path[parent.size()] == '\\' &&
           EqualNoCase(path.substr(0, parent.size()), parent);
}

std::string Quote(std::string_view text) {
    static constexpr char kHex[] = "0123456789abcdef";
    std::string result = "\"";
    for (const char ch : text) {
        if (ch == '"' || ch == '\\') {
            result += '\\';
            result += ch;
        } else if (static_cast<unsigned char>(ch) < 0x20) {
            result += "\\x";
            result += kHex[static_cast<unsigned char>(ch) >> 4];
            result += kHex[static_cast<unsigned char>(ch) & 15];
        } else {
            result += ch;
        }
    }
    return result + '"';
}

int HexDigit(char ch) {
    if (ch >= '0' && ch <= '9') {
        return ch - '0';
    }
    if (ch >= 'a' && ch <= 'f') {
        return ch - 'a' + 10;
    }
    if (ch >= 'A' && ch <= 'F') {
        return ch - 'A' + 10;
    }
    return -1;
}

// Reads a quoted text at the front of line and steps over it.
bool Unquote(std::string_view& line, std::string& text) {
    text.clear();
    if (line.empty() || line[0] != '"') {
        return false;
    }
    for (std::size_t n = 1; n < line.size(); ++n) {
        if (line[n] == '"') {
            line.remove_prefix(n + 1);
            return true;
        }
        if (line[n] != '\\') {
            text += line[n];
            continue;
        }
        if (++n >= line.size()) {
            return false;
        }
        if (line[n] == 'x') {
            if (n + 2 >= line.size() || HexDigit(line[n + 1]) < 0 || HexDigit(line[n + 2]) < 0) {
                return false;
            }
            text += static_cast<char>(HexDigit(line[n + 1]) * 16 + HexDigit(line[n + 2]));
            n += 2;
        } else {
            text += line[n];
        }
    }
    return false;
}

constexpr int kMostAside = 10000; // of one name

std::vector<CSetAside>& ListSetAside() {
    static std::vector<CSetAside> list;
    return list;
}

// Writes all of it, to the disk too, and closes the file.
bool WriteAndClose(int file, std::string_view content) {
    bool written = true;
    while (written && !content.empty()) {
        const ssize_t now = write(file, content.data(), content.size());
        if (now < 0 && errno == EINTR) {
            continue;
        }
        written = now > 0;
        content.remove_prefix(now > 0 ? static_cast<std::size_t>(now) : 0);
    }
    written = fsync(file) == 0 && written;
    return close(file) == 0 && written;
}

// The whole store of one file.
class CStore {
public:
    explicit CStore(std::filesystem::path path) : m_path(std::move(path)) {}

    void Refresh() {
        if (m_bDetached) {
            return;
        }
        std::string content;
        const Descriptor file(open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        if (!file) {
            if (errno != ENOENT && errno != ENOTDIR) {
                m_bDetached = true;
            } else {
                m_listKeys.clear();
            }
            return;
        }
        struct stat info = {};
        bool isReadable = fstat(file.Get(), &info) == 0 && S_ISREG(info.st_mode) && info.st_size <= kMaximum;
        char buffer[16384];
        while (isReadable) {
            const ssize_t got = read(file.Get(), buffer, sizeof buffer);
            if (got < 0 && errno == EINTR) {
                continue;
            }
            if (got <= 0) {
                isReadable = got == 0;
                break;
            }
            content.append(buffer, static_cast<std::size_t>(got));
        }
        if (!isReadable) {
            m_bDetached = true;
            return;
        }
        Parse(content);
        m_strDamaged = m_bDamaged ? std::move(content) : std::string();
    }

    CKey* Find(std::string_view path) {
        for (CKey& key : m_listKeys) {
            if (EqualNoCase(key.m_strPath, path)) {
                return &key;
            }
        }
        return nullptr;
    }

    bool Exists(std::string_view path) {
        for (const CKey& key : m_listKeys) {
            if (EqualNoCase(key.m_strPath, path) || IsBelow(key.m_strPath, path)) {
                return true;
            }
        }
        return false;
    }

    CKey& Make(std::string_view path) {
        if (CKey* key = Find(path)) {
            return *key;
        }
        m_listKeys.push_back({std::string(path), {}});
        return m_listKeys.back();
    }

    void RemoveBelow(std::string_view path) {
        std::erase_if(m_listKeys, [&](const CKey& key) { return IsBelow(key.m_strPath, path); });
    }

    void Save() {
        if (m_bDetached) {
            return;
        }
        std::error_code error;
        const std::filesystem::path target =
            std::filesystem::is_symlink(m_path, error) ? std::filesystem::canonical(m_path, error) : m_path;
        if (!target.parent_path().empty()) {
            std::filesystem::create_directories(target.parent_path(), error);
        }
        if (m_bDamaged && !SetAsideFile(target)) {
            m_bDetached = true;
            return;
        }
        m_bDamaged = false;
        // All that takes memory stands ahead of the file.
        const std::string content = Print();
        std::string temporary = target.string() + ".XXXXXX";
        const int file = mkostemp(temporary.data(), O_CLOEXEC);
        if (file < 0) {
            m_bDetached = true; // keep what the user set for as long as the program runs
            return;
        }
        if (!WriteAndClose(file, content) || std::rename(temporary.c_str(), target.c_str()) != 0) {
            unlink(temporary.c_str());
            m_bDetached = true;
        }
    }

private:
    static constexpr off_t kMaximum = 16 * 1024 * 1024;

    void Parse(std::string_view content) {
        m_listKeys.clear();
        m_bDamaged = false;
        CKey* key = nullptr;
        while (!content.empty()) {
            const std::size_t end = content.find('\n');
            std::string_view line = content.substr(0, end);
            content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
            if (!line.empty() && line.back() == '\r') {
                line.remove_suffix(1);
            }
            if (line.empty() || line[0] == ';' || line[0] == '#') {
                continue;
            }
            if (line[0] == '[' && line.back() == ']' && line.size() > 2) {
                key = &Make(line.substr(1, line.size() - 2));
                continue;
            }
            CRegValue value;
            if (key == nullptr || !ParseValue(line, value)) {
                m_bDamaged = true;
                if (line[0] == '[') {
                    key = nullptr; // nobody knows whose values follow
                }
                continue;
            }
            Put(*key, std::move(value));
        }
    }

    // The file as it was read, under the first name that is free.
    bool SetAsideFile(const std::filesystem::path& target) const {
        for (int number = 1; number <= kMostAside; ++number) {
            // All that takes memory stands ahead of the file.
            const std::string aside = AsideName(target.string(), number);
            CSetAside told{std::filesystem::path(aside).filename().string(), target.parent_path().string()};
            ListSetAside().reserve(ListSetAside().size() + 1);
            const int file = open(aside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
            if (file >= 0) {
                if (!WriteAndClose(file, m_strDamaged)) {
                    unlink(aside.c_str());
                    return false;
                }
                ListSetAside().push_back(std::move(told));
                return true;
            }
            if (errno != EEXIST) {
                return false;
            }
        }
        return false;
    }

    static bool ParseValue(std::string_view line, CRegValue& value) {
        if (!Unquote(line, value.m_strName) || line.empty() || line[0] != '=') {
            return false;
        }
        line.remove_prefix(1);
        if (line.starts_with("dword:")) {
            line.remove_prefix(6);
            if (line.empty() || line.size() > 8) {
                return false;
            }
            value.m_nType = ERegType::Dword;
            for (const char ch : line) {
                const int digit = HexDigit(ch);
                if (digit < 0) {
                    return false;
                }
                value.m_nNumber = value.m_nNumber * 16 + static_cast<std::uint32_t>(digit);
            }
            return true;
        }
        value.m_nType = ERegType::String;
        return Unquote(line, value.m_strText) && line.empty();
    }

    std::string Print() const {
        std::string content = "; Settings of Carvelot. Values keep the order in which they were made.\n";
        for (const CKey& key : m_listKeys) {
            content += "\n[" + key.m_strPath + "]\n";
            for (const CRegValue& value : key.m_listValues) {
                content += Quote(value.m_strName) + "=";
                if (value.m_nType == ERegType::Dword) {
                    char number[24];
                    std::snprintf(number, sizeof number, "dword:%08x",
                                  static_cast<unsigned>(value.m_nNumber));
                    content += number;
                } else {
                    content += Quote(value.m_strText);
                }
                content += '\n';
            }
        }
        return content;
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
    std::string m_strDamaged; // then all of it
    bool m_bDetached = false; // the file is out of reach: memory alone holds the settings
};

std::filesystem::path StorePath() {
    if (const char* path = std::getenv("CARVELOT_REGISTRY"); path != nullptr && *path != '\0') {
        return path;
    }
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config != nullptr && *config == '/') {
        return std::filesystem::path(config) / "carvelot" / "registry.ini";
    }
    const char* home = std::getenv("HOME");
    return std::filesystem::path(home != nullptr ? home : ".") / ".config" / "carvelot" / "registry.ini";
}

CStore& Store() {
    static std::map<std::filesystem::path, CStore> stores;
    const std::filesystem::path path = StorePath();
    return stores.try_emplace(path, path).first->second;
}

std::string FullPath(ERegRoot root, std::string_view key) {
    return std::string(root == ERegRoot::CurrentUser ? "HKEY_CURRENT_USER\\" : "HKEY_LOCAL_MACHINE\\") +
           std::string(key);
}

// A value's bytes as a query with a 4-byte buffer sees them: UTF-16 with its terminator for a text.
bool Raw32(const CRegValue& value, std::uint32_t& number) {
    if (value.m_nType == ERegType::Dword) {
        number = value.m_nNumber;
        return true;
    }
    if (value.m_strText.empty()) {
        number &= 0xFFFF0000u;
        return true;
    }
    if (value.m_strText.size() == 1 && static_cast<unsigned char>(value.m_strText[0]) < 0x80) {
        number = static_cast<unsigned char>(value.m_strText[0]);
        return true;
    }
    return false;
}

// A UTF-16 unit that stands alone, as UTF-8; a NUL and half of a pair give nothing and U+FFFD.
void AppendUnit(std::string& text, std::uint32_t unit) {
    if (unit == 0) {
        return;
    }
    if (unit >= 0xD800 && unit <= 0xDFFF) {
        unit = 0xFFFD;
    }
    if (unit < 0x80) {
        text += static_cast<char>(unit);
        return;
    }
    if (unit < 0x800) {
        text += static_cast<char>(0xC0 | (unit >> 6));
    } else {
        text += static_cast<char>(0xE0 | (unit >> 12));
        text += static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
    }
    text += static_cast<char>(0x80 | (unit & 0x3F));
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
        if (!m_bOpen) {
            return nullptr;
        }
        Store().Refresh();
        return Store().Find(m_strPath);
    }

    const CRegValue* Value(std::string_view name) const {
        const CKey* key = Read();
        if (key == nullptr) {
            return nullptr;
        }
        for (const CRegValue& value : key->m_listValues) {
            if (EqualNoCase(value.m_strName, name)) {
                return &value;
            }
        }
        return nullptr;
    }

    bool Write(CRegValue value) const {
        if (!m_bOpen || !m_bWritable) {
            return false;
        }
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

bool CRegistryKey::Open(ERegRoot root, std::string_view key, ERegAccess access) {
    Close();
    const std::string path = FullPath(root, key);
    Store().Refresh();
    if (!Store().Exists(path)) {
        return false;
    }
    *m_pImpl = {path, true, access == ERegAccess::Full};
    return true;
}

bool CRegistryKey::Create(ERegRoot root, std::string_view key) {
    Close();
    const std::string path = FullPath(root, key);
    Store().Refresh();
    if (Store().Find(path) == nullptr) {
        const FolderLock lock = LockStore();
        Store().Refresh();
        Store().Make(path);
        Store().Save();
    }
    *m_pImpl = {path, true, true};
    return true;
}

void CRegistryKey::Close() { *m_pImpl = {}; }

bool CRegistryKey::IsOpen() const { return m_pImpl->m_bOpen; }

ERegStatus CRegistryKey::QueryRaw32(std::string_view name, std::uint32_t& number) const {
    if (!m_pImpl->m_bOpen) {
        return ERegStatus::Failed;
    }
    const CRegValue* stored = m_pImpl->Value(name);
    if (stored == nullptr) {
        return ERegStatus::NotFound;
    }
    return Raw32(*stored, number) ? ERegStatus::Ok : ERegStatus::Failed;
}

ERegStatus CRegistryKey::QueryValue(std::string_view name, CRegValue& value) const {
    if (!m_pImpl->m_bOpen) {
        return ERegStatus::Failed;
    }
    const CRegValue* stored = m_pImpl->Value(name);
    if (stored == nullptr) {
        return ERegStatus::NotFound;
    }
    value = *stored;
    return ERegStatus::Ok;
}

ERegStatus CRegistryKey::QueryRawText(std::string_view name, std::size_t bytes, std::string& text) const {
    if (!m_pImpl->m_bOpen) {
        return ERegStatus::Failed;
    }
    const CRegValue* stored = m_pImpl->Value(name);
    if (stored == nullptr) {
        return ERegStatus::NotFound;
    }
    text.clear();
    if (stored->m_nType == ERegType::Dword) {
        if (bytes < sizeof stored->m_nNumber) {
            return ERegStatus::Failed;
        }
        AppendUnit(text, stored->m_nNumber & 0xFFFF);
        if (!text.empty()) {
            AppendUnit(text, stored->m_nNumber >> 16);
        }
        return ERegStatus::Ok;
    }
    // Every character has one byte that is no continuation, and those of four bytes take two units.
    std::size_t units = 1;
    for (const char c : stored->m_strText) {
        const auto byte = static_cast<unsigned char>(c);
        units += (byte & 0xC0) == 0x80 ? 0u : byte >= 0xF0 ? 2u : 1u;
    }
    if (units * 2 > bytes) {
        return ERegStatus::Failed;
    }
    text = stored->m_strText;
    return ERegStatus::Ok;
}

bool CRegistryKey::EnumRaw32(std::size_t index, std::string& name, std::uint32_t& number) const {
    const CKey* key = m_pImpl->Read();
    if (key == nullptr || index >= key->m_listValues.size()) {
        return false;
    }
    const CRegValue& value = key->m_listValues[index];
    if (value.m_strName.size() >= 260 || !Raw32(value, number)) {
        return false;
    }
    name = value.m_strName;
    return true;
}

std::size_t CRegistryKey::Count() const {
    const CKey* key = m_pImpl->Read();
    return key != nullptr ? key->m_listValues.size() : 0;
}

bool CRegistryKey::SetDword(std::string_view name, std::uint32_t number) {
    return m_pImpl->Write({std::string(name), ERegType::Dword, number, {}});
}

bool CRegistryKey::SetString(std::string_view name, std::string_view text) {
    return m_pImpl->Write({std::string(name), ERegType::String, 0, std::string(text)});
}

bool CRegistryKey::DeleteValue(std::string_view name) {
    const FolderLock lock = LockStore();
    CKey* key = m_pImpl->m_bWritable ? m_pImpl->Read() : nullptr;
    if (key == nullptr) {
        return false;
    }
    const auto removed = std::erase_if(
        key->m_listValues, [&](const CRegValue& value) { return EqualNoCase(value.m_strName, name); });
    if (removed != 0) {
        Store().Save();
    }
    return removed != 0;
}

bool CRegistryKey::SetAside(std::string_view name) {
    const FolderLock lock = LockStore();
    CKey* key = m_pImpl->m_bWritable ? m_pImpl->Read() : nullptr;
    if (key == nullptr) {
        return false;
    }
    const auto named = [key](std::string_view wanted) {
        return std::ranges::find_if(key->m_listValues, [wanted](const CRegValue& value) {
            return EqualNoCase(value.m_strName, wanted);
        });
    };
    const auto value = named(name);
    if (value == key->m_listValues.end()) {
        return false;
    }
    int number = 1;
    while (named(AsideName(name, number)) != key->m_listValues.end()) {
        ++number;
    }
    value->m_strName = AsideName(value->m_strName, number);
    ListSetAside().push_back({value->m_strName, StorePath().string()});
    Store().Save();
    return true;
}

bool CRegistryKey::SetAsideCopy() const {
    const FolderLock lock = LockStore();
    const CKey* key = m_pImpl->m_bWritable ? m_pImpl->Read() : nullptr;
    if (key == nullptr) {
        return false;
    }
    int number = 1;
    while (Store().Exists(AsideName(m_pImpl->m_strPath, number))) {
        ++number;
    }
    std::vector<CRegValue> values = key->m_listValues;
    CKey& aside = Store().Make(AsideName(m_pImpl->m_strPath, number));
    aside.m_listValues = std::move(values);
    ListSetAside().push_back({aside.m_strPath.substr(aside.m_strPath.rfind('\\') + 1), StorePath().string()});
    Store().Save();
    return true;
}

std::vector<CSetAside> TakeSetAside() { return std::exchange(ListSetAside(), {}); }

bool CRegistryKey::DeleteContent() {
    if (!m_pImpl->m_bOpen || !m_pImpl->m_bWritable) {
        return false;
    }
    const FolderLock lock = LockStore();
    Store().Refresh();
    Store().RemoveBelow(m_pImpl->m_strPath);
    Store().Make(m_pImpl->m_strPath).m_listValues.clear();
    Store().Save();
    return true;
}

} // namespace carvelot::platform
