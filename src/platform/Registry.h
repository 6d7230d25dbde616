// Registry.h - keys and typed values of the settings store.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot::platform {

enum class ERegRoot { CurrentUser, LocalMachine };
enum class ERegAccess { Read, Full };
enum class ERegType { Dword, String, Other };

// NotFound: the value does not exist. Failed: anything else, a value that does not fit the request included.
enum class ERegStatus { Ok, NotFound, Failed };

struct CRegValue {
    std::string m_strName;
    ERegType m_nType = ERegType::Other;
    std::uint32_t m_nNumber = 0; // of a Dword
    std::string m_strText;       // of a String, UTF-8
};

// One open key. Names and texts are UTF-8; names compare without case. Values keep the order in which they
// were made, as far as the system's own registry does. On Windows this is the registry itself; elsewhere a
// readable file, $XDG_CONFIG_HOME/carvelot/registry.ini or the one that CARVELOT_REGISTRY names. A file that
// is damaged loses the damaged lines only, and those below a damaged name of a key; the first write keeps the
// file as it was beside it, and does not happen where that cannot be done. One that cannot be read or written
// leaves a store that lasts for the run.
class CRegistryKey {
public:
    CRegistryKey();
    ~CRegistryKey();
    CRegistryKey(CRegistryKey&&) noexcept;
    CRegistryKey& operator=(CRegistryKey&&) noexcept;
    CRegistryKey(const CRegistryKey&) = delete;
    CRegistryKey& operator=(const CRegistryKey&) = delete;

    // Opens an existing key below the root; false when it is missing or closed to us. key has backslashes.
    bool Open(ERegRoot root, std::string_view key, ERegAccess access);
    // Opens the key with full access, making it and its parents when missing.
    bool Create(ERegRoot root, std::string_view key);
    void Close();
    bool IsOpen() const;

    // Reads a value's bytes into a 4-byte buffer, whatever its type, as a plain registry query does: a value
    // of more than 4 bytes is Failed and leaves number alone, a shorter one replaces only its lower bytes.
    ERegStatus QueryRaw32(std::string_view name, std::uint32_t& number) const;
    // Reads a value with its type.
    ERegStatus QueryValue(std::string_view name, CRegValue& value) const;
    // Reads a value's bytes into a zeroed buffer of that size, whatever its type, and takes them as UTF-16
    // text up to the first NUL. A value that does not fit is Failed and gives an empty text; NotFound leaves
    // the text alone.
    ERegStatus QueryRawText(std::string_view name, std::size_t bytes, std::string& text) const;
    // The value at a position; false past the last one, and for a value of more than 4 bytes or with a name
    // of 260 characters or more, so that an enumeration that stops at the first failure stops there.
    bool EnumRaw32(std::size_t index, std::string& name, std::uint32_t& number) const;

    // How many values there are, those that EnumRaw32 does not reach included.
    std::size_t Count() const;

    bool SetDword(std::string_view name, std::uint32_t number);
    bool SetString(std::string_view name, std::string_view text);
    bool DeleteValue(std::string_view name);
    // Gives a value that makes no sense, of whatever type, the first free name of "name.damaged",
    // "name.2.damaged" and so on, so that nothing overwrites it. False when there is none, or the key is open
    // for reading only: then it stands as it was.
    bool SetAside(std::string_view name);
    // Keeps a copy of all the key's values in a key beside it, named in the same way. Keys below are not
    // copied.
    bool SetAsideCopy() const;
    // Removes every value and every key below; the key itself stays open and can be written to.
    bool DeleteContent();

private:
    struct CImpl;
    std::unique_ptr<CImpl> m_pImpl;
};

// What of the store could not be read and is kept under another name.
struct CSetAside {
    std::string m_strName;  // of a file, a value or a key
    std::string m_strPlace; // the folder, file or key that it is found in
};

// Under which name it is tried for the first, second, ... time.
inline std::string AsideName(std::string_view name, int number) {
    std::string aside(name);
    if (number > 1) {
        aside.append(".").append(std::to_string(number));
    }
    return aside.append(".damaged");
}

// All that was set aside since the last call, oldest first.
std::vector<CSetAside> TakeSetAside();

} // namespace carvelot::platform
