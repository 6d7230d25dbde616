#include "platform/Registry.h"

#include <windows.h>

#include <cstring>
#include <utility>
#include <vector>

namespace carvelot::platform {

namespace {

std::wstring Widen(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    std::wstring wide(text.size(), L'\0');
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                           wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

std::string Narrow(const wchar_t* units, std::size_t length) {
    if (length == 0) {
        return {};
    }
    std::string text(length * 3, '\0');
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, units, static_cast<int>(length), text.data(),
                                          static_cast<int>(text.size()), nullptr, nullptr);
    text.resize(static_cast<std::size_t>(bytes));
    return text;
}

HKEY RootHandle(ERegRoot root) {
    return root == ERegRoot::CurrentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

// As the registry's own editor writes it.
std::string RootName(ERegRoot root) {
    return root == ERegRoot::CurrentUser ? "HKEY_CURRENT_USER" : "HKEY_LOCAL_MACHINE";
}

std::vector<CSetAside>& ListSetAside() {
    static std::vector<CSetAside> list;
    return list;
}

// A value's bytes with their type.
LSTATUS QueryBytes(HKEY key, const std::wstring& name, DWORD& type, std::vector<BYTE>& data) {
    DWORD size = 0;
    LSTATUS status = RegQueryValueExW(key, name.c_str(), nullptr, &type, nullptr, &size);
    if (status == ERROR_SUCCESS) {
        data.resize(size);
        status = RegQueryValueExW(key, name.c_str(), nullptr, &type, data.data(), &size);
        data.resize(status == ERROR_SUCCESS ? size : 0);
    }
    return status;
}

} // namespace

struct CRegistryKey::CImpl {
    HKEY m_hKey = nullptr;
    ERegRoot m_nRoot = ERegRoot::CurrentUser;
    std::string m_strPath;
};

CRegistryKey::CRegistryKey() : m_pImpl(std::make_unique<CImpl>()) {}

CRegistryKey::~CRegistryKey() {
    if (m_pImpl) {
        Close();
    }
}

CRegistryKey::CRegistryKey(CRegistryKey&& other) noexcept : m_pImpl(std::move(other.m_pImpl)) {
    other.m_pImpl = std::make_unique<CImpl>();
}

CRegistryKey& CRegistryKey::operator=(CRegistryKey&& other) noexcept {
    std::swap(m_pImpl, other.m_pImpl);
    return *this;
}

bool CRegistryKey::Open(ERegRoot root, std::string_view key, ERegAccess access) {
    Close();
    const REGSAM rights = access == ERegAccess::Read ? KEY_READ : KEY_ALL_ACCESS;
    HKEY keyHandle = nullptr;
    if (RegOpenKeyExW(RootHandle(root), Widen(key).c_str(), 0, rights, &keyHandle) != ERROR_SUCCESS) {
        return false;
    }
    *m_pImpl = {keyHandle, root, std::string(key)};
    return true;
}

bool CRegistryKey::Create(ERegRoot root, std::string_view key) {
    Close();
    HKEY keyHandle = nullptr;
    if (RegCreateKeyExW(RootHandle(root), Widen(key).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_ALL_ACCESS, nullptr, &keyHandle, nullptr) != ERROR_SUCCESS) {
        return false;
    }
    *m_pImpl = {keyHandle, root, std::string(key)};
    return true;
}

void CRegistryKey::Close() {
    if (m_pImpl->m_hKey != nullptr) {
        RegCloseKey(m_pImpl->m_hKey);
    }
    m_pImpl->m_hKey = nullptr;
}

bool CRegistryKey::IsOpen() const { return m_pImpl->m_hKey != nullptr; }

ERegStatus CRegistryKey::QueryRaw32(std::string_view name, std::uint32_t& number) const {
    std::uint32_t buffer = number;
    DWORD size = sizeof buffer;
    const LSTATUS status = RegQueryValueExW(m_pImpl->m_hKey, Widen(name).c_str(), nullptr, nullptr,
                                            reinterpret_cast<BYTE*>(&buffer), &size);
    if (status == ERROR_FILE_NOT_FOUND) {
        return ERegStatus::NotFound;
    }
    if (status != ERROR_SUCCESS) {
        return ERegStatus::Failed;
    }
    number = buffer;
    return ERegStatus::Ok;
}

ERegStatus CRegistryKey::QueryValue(std::string_view name, CRegValue& value) const {
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
    const LSTATUS status = QueryBytes(m_pImpl->m_hKey, Widen(name), type, data);
    if (status == ERROR_FILE_NOT_FOUND) {
        return ERegStatus::NotFound;
    }
    if (status != ERROR_SUCCESS) {
        return ERegStatus::Failed;
    }
    value = {};
    value.m_strName = name;
    if (type == REG_DWORD && data.size() == sizeof value.m_nNumber) {
        value.m_nType = ERegType::Dword;
        std::memcpy(&value.m_nNumber, data.data(), sizeof value.m_nNumber);
    } else if (type == REG_SZ || type == REG_EXPAND_SZ) {
        value.m_nType = ERegType::String;
        std::wstring text(data.size() / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), data.data(), text.size() * sizeof(wchar_t));
        text.resize(std::wcslen(text.c_str())); // the terminator may or may not be stored
        value.m_strText = Narrow(text.data(), text.size());
    }
    return ERegStatus::Ok;
}

ERegStatus CRegistryKey::QueryRawText(std::string_view name, std::size_t bytes, std::string& text) const {
    // One unit more than the query knows of, so that the text ends whatever the value holds.
    std::vector<wchar_t> buffer(bytes / sizeof(wchar_t) + 1, L'\0');
    DWORD size = static_cast<DWORD>(bytes);
    const LSTATUS status = RegQueryValueExW(m_pImpl->m_hKey, Widen(name).c_str(), nullptr, nullptr,
                                            reinterpret_cast<BYTE*>(buffer.data()), &size);
    if (status == ERROR_FILE_NOT_FOUND) {
        return ERegStatus::NotFound;
    }
    text.clear();
    if (status != ERROR_SUCCESS) {
        return ERegStatus::Failed;
    }
    text = Narrow(buffer.data(), std::wcslen(buffer.data()));
    return ERegStatus::Ok;
}

bool CRegistryKey::EnumRaw32(std::size_t index, std::string& name, std::uint32_t& number) const {
    wchar_t nameBuffer[260];
    DWORD nameLength = 260;
    std::uint32_t buffer = number;
    DWORD size = sizeof buffer;
    if (RegEnumValueW(m_pImpl->m_hKey, static_cast<DWORD>(index), nameBuffer, &nameLength, nullptr, nullptr,
                      reinterpret_cast<BYTE*>(&buffer), &size) != ERROR_SUCCESS) {
        return false;
    }
    name = Narrow(nameBuffer, nameLength);
    number = buffer;
    return true;
}

std::size_t CRegistryKey::Count() const {
    DWORD count = 0;
    RegQueryInfoKeyW(m_pImpl->m_hKey, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr,
                     nullptr, nullptr, nullptr);
    return count;
}

bool CRegistryKey::SetDword(std::string_view name, std::uint32_t number) {
    return RegSetValueExW(m_pImpl->m_hKey, Widen(name).c_str(), 0, REG_DWORD,
                          reinterpret_cast<const BYTE*>(&number), sizeof number) == ERROR_SUCCESS;
}

bool CRegistryKey::SetString(std::string_view name, std::string_view text) {
    const std::wstring wide = Widen(text);
    return RegSetValueExW(m_pImpl->m_hKey, Widen(name).c_str(), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(wide.c_str()),
                          static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

bool CRegistryKey::DeleteValue(std::string_view name) {
    return RegDeleteValueW(m_pImpl->m_hKey, Widen(name).c_str()) == ERROR_SUCCESS;
}

bool CRegistryKey::SetAside(std::string_view name) {
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
    if (QueryBytes(m_pImpl->m_hKey, Widen(name), type, data) != ERROR_SUCCESS) {
        return false;
    }
    int number = 1;
    while (RegQueryValueExW(m_pImpl->m_hKey, Widen(AsideName(name, number)).c_str(), nullptr, nullptr,
                            nullptr, nullptr) == ERROR_SUCCESS) {
        ++number;
    }
    const std::string aside = AsideName(name, number);
    if (RegSetValueExW(m_pImpl->m_hKey, Widen(aside).c_str(), 0, type, data.data(),
                       static_cast<DWORD>(data.size())) != ERROR_SUCCESS ||
        !DeleteValue(name)) {
        return false;
    }
    ListSetAside().push_back({aside, RootName(m_pImpl->m_nRoot) + '\\' + m_pImpl->m_strPath});
    return true;
}

bool CRegistryKey::SetAsideCopy() const {
    if (m_pImpl->m_hKey == nullptr) {
        return false;
    }
    CRegistryKey aside;
    int number = 1;
    while (aside.Open(m_pImpl->m_nRoot, AsideName(m_pImpl->m_strPath, number), ERegAccess::Read)) {
        ++number;
    }
    const std::string path = AsideName(m_pImpl->m_strPath, number);
    if (!aside.Create(m_pImpl->m_nRoot, path)) {
        return false;
    }
    DWORD longestName = 0;
    DWORD largestValue = 0;
    RegQueryInfoKeyW(m_pImpl->m_hKey, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                     &longestName, &largestValue, nullptr, nullptr);
    std::vector<wchar_t> name(longestName + 1);
    std::vector<BYTE> data(largestValue + 1);
    LSTATUS status = ERROR_SUCCESS;
    for (DWORD index = 0; status == ERROR_SUCCESS; ++index) {
        auto nameLength = static_cast<DWORD>(name.size());
        auto size = static_cast<DWORD>(data.size());
        DWORD type = REG_NONE;
        status = RegEnumValueW(m_pImpl->m_hKey, index, name.data(), &nameLength, nullptr, &type, data.data(),
                               &size);
        if (status == ERROR_SUCCESS) {
            status = RegSetValueExW(aside.m_pImpl->m_hKey, name.data(), 0, type, data.data(), size);
        }
    }
    const std::size_t parent = path.rfind('\\');
    ListSetAside().push_back(
        {path.substr(parent + 1), RootName(m_pImpl->m_nRoot) + '\\' + path.substr(0, parent)});
    return status == ERROR_NO_MORE_ITEMS;
}

std::vector<CSetAside> TakeSetAside() { return std::exchange(ListSetAside(), {}); }

bool CRegistryKey::DeleteContent() {
    // RegDeleteTreeW without a subkey name keeps the key itself, so that the handle stays good for the new
    // values.
    return m_pImpl->m_hKey != nullptr && RegDeleteTreeW(m_pImpl->m_hKey, nullptr) == ERROR_SUCCESS;
}

} // namespace carvelot::platform
