#include "platform/Registry.h"

#include <windows.h>

#include <cstring>
#include <vector>

namespace carvelot::platform {

namespace {

std::wstring Widen(std::string_view strText) {
    if (strText.empty())
        return {};
    std::wstring strWide(strText.size(), L'\0');
    const int nLength = MultiByteToWideChar(CP_UTF8, 0, strText.data(), static_cast<int>(strText.size()),
                                            strWide.data(), static_cast<int>(strWide.size()));
    strWide.resize(static_cast<std::size_t>(nLength));
    return strWide;
}

std::string Narrow(const wchar_t* pText, std::size_t nLength) {
    if (nLength == 0)
        return {};
    std::string strText(nLength * 3, '\0');
    const int nBytes = WideCharToMultiByte(CP_UTF8, 0, pText, static_cast<int>(nLength), strText.data(),
                                           static_cast<int>(strText.size()), nullptr, nullptr);
    strText.resize(static_cast<std::size_t>(nBytes));
    return strText;
}

HKEY RootHandle(ERegRoot nRoot) {
    return nRoot == ERegRoot::CurrentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

} // namespace

struct CRegistryKey::CImpl {
    HKEY m_hKey = nullptr;
};

CRegistryKey::CRegistryKey() : m_pImpl(std::make_unique<CImpl>()) {}

CRegistryKey::~CRegistryKey() {
    if (m_pImpl)
        Close();
}

CRegistryKey::CRegistryKey(CRegistryKey&& other) noexcept : m_pImpl(std::move(other.m_pImpl)) {
    other.m_pImpl = std::make_unique<CImpl>();
}

CRegistryKey& CRegistryKey::operator=(CRegistryKey&& other) noexcept {
    std::swap(m_pImpl, other.m_pImpl);
    return *this;
}

bool CRegistryKey::Open(ERegRoot nRoot, std::string_view strKey, ERegAccess nAccess) {
    Close();
    const REGSAM nRights = nAccess == ERegAccess::Read ? KEY_READ : KEY_ALL_ACCESS;
    HKEY hKey = nullptr;
    if (RegOpenKeyExW(RootHandle(nRoot), Widen(strKey).c_str(), 0, nRights, &hKey) != ERROR_SUCCESS)
        return false;
    m_pImpl->m_hKey = hKey;
    return true;
}

bool CRegistryKey::Create(ERegRoot nRoot, std::string_view strKey) {
    Close();
    HKEY hKey = nullptr;
    if (RegCreateKeyExW(RootHandle(nRoot), Widen(strKey).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_ALL_ACCESS, nullptr, &hKey, nullptr) != ERROR_SUCCESS)
        return false;
    m_pImpl->m_hKey = hKey;
    return true;
}

void CRegistryKey::Close() {
    if (m_pImpl->m_hKey != nullptr)
        RegCloseKey(m_pImpl->m_hKey);
    m_pImpl->m_hKey = nullptr;
}

bool CRegistryKey::IsOpen() const { return m_pImpl->m_hKey != nullptr; }

ERegStatus CRegistryKey::QueryRaw32(std::string_view strName, std::uint32_t& nNumber) const {
    std::uint32_t nBuffer = nNumber;
    DWORD nSize = sizeof nBuffer;
    const LSTATUS nStatus = RegQueryValueExW(m_pImpl->m_hKey, Widen(strName).c_str(), nullptr, nullptr,
                                             reinterpret_cast<BYTE*>(&nBuffer), &nSize);
    if (nStatus == ERROR_FILE_NOT_FOUND)
        return ERegStatus::NotFound;
    if (nStatus != ERROR_SUCCESS)
        return ERegStatus::Failed;
    nNumber = nBuffer;
    return ERegStatus::Ok;
}

ERegStatus CRegistryKey::QueryValue(std::string_view strName, CRegValue& value) const {
    const std::wstring strWide = Widen(strName);
    DWORD nType = REG_NONE;
    DWORD nSize = 0;
    LSTATUS nStatus = RegQueryValueExW(m_pImpl->m_hKey, strWide.c_str(), nullptr, &nType, nullptr, &nSize);
    std::vector<BYTE> data;
    if (nStatus == ERROR_SUCCESS) {
        data.resize(nSize);
        nStatus = RegQueryValueExW(m_pImpl->m_hKey, strWide.c_str(), nullptr, &nType, data.data(), &nSize);
    }
    if (nStatus == ERROR_FILE_NOT_FOUND)
        return ERegStatus::NotFound;
    if (nStatus != ERROR_SUCCESS)
        return ERegStatus::Failed;
    data.resize(nSize);
    value = {};
    value.m_strName = strName;
    if (nType == REG_DWORD && data.size() == sizeof value.m_nNumber) {
        value.m_nType = ERegType::Dword;
        std::memcpy(&value.m_nNumber, data.data(), sizeof value.m_nNumber);
    } else if (nType == REG_SZ || nType == REG_EXPAND_SZ) {
        value.m_nType = ERegType::String;
        std::wstring strText(data.size() / sizeof(wchar_t), L'\0');
        std::memcpy(strText.data(), data.data(), strText.size() * sizeof(wchar_t));
        strText.resize(std::wcslen(strText.c_str())); // the terminator may or may not be stored
        value.m_strText = Narrow(strText.data(), strText.size());
    }
    return ERegStatus::Ok;
}

ERegStatus CRegistryKey::QueryRawText(std::string_view strName, std::size_t nBytes,
                                      std::string& strText) const {
    // One unit more than the query knows of, so that the text ends whatever the value holds.
    std::vector<wchar_t> buffer(nBytes / sizeof(wchar_t) + 1, L'\0');
    DWORD nSize = static_cast<DWORD>(nBytes);
    const LSTATUS nStatus = RegQueryValueExW(m_pImpl->m_hKey, Widen(strName).c_str(), nullptr, nullptr,
                                             reinterpret_cast<BYTE*>(buffer.data()), &nSize);
    if (nStatus == ERROR_FILE_NOT_FOUND)
        return ERegStatus::NotFound;
    strText.clear();
    if (nStatus != ERROR_SUCCESS)
        return ERegStatus::Failed;
    strText = Narrow(buffer.data(), std::wcslen(buffer.data()));
    return ERegStatus::Ok;
}

bool CRegistryKey::EnumRaw32(std::size_t nIndex, std::string& strName, std::uint32_t& nNumber) const {
    wchar_t szName[260];
    DWORD nName = 260;
    std::uint32_t nBuffer = nNumber;
    DWORD nSize = sizeof nBuffer;
    if (RegEnumValueW(m_pImpl->m_hKey, static_cast<DWORD>(nIndex), szName, &nName, nullptr, nullptr,
                      reinterpret_cast<BYTE*>(&nBuffer), &nSize) != ERROR_SUCCESS)
        return false;
    strName = Narrow(szName, nName);
    nNumber = nBuffer;
    return true;
}

bool CRegistryKey::SetDword(std::string_view strName, std::uint32_t nNumber) {
    return RegSetValueExW(m_pImpl->m_hKey, Widen(strName).c_str(), 0, REG_DWORD,
                          reinterpret_cast<const BYTE*>(&nNumber), sizeof nNumber) == ERROR_SUCCESS;
}

bool CRegistryKey::SetString(std::string_view strName, std::string_view strText) {
    const std::wstring strWide = Widen(strText);
    return RegSetValueExW(m_pImpl->m_hKey, Widen(strName).c_str(), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(strWide.c_str()),
                          static_cast<DWORD>((strWide.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

bool CRegistryKey::DeleteValue(std::string_view strName) {
    return RegDeleteValueW(m_pImpl->m_hKey, Widen(strName).c_str()) == ERROR_SUCCESS;
}

bool CRegistryKey::DeleteContent() {
    // RegDeleteTreeW without a subkey name keeps the key itself, so that the handle stays good for the new
    // values.
    return m_pImpl->m_hKey != nullptr && RegDeleteTreeW(m_pImpl->m_hKey, nullptr) == ERROR_SUCCESS;
}

} // namespace carvelot::platform
