// The one file that a fuzz target writes its input to, again and again; gone with the program.
#pragma once

#include "platform/TemporaryFile.h"
#include "support/Require.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace carvelot::fuzz {

inline std::string_view AsText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

class CFuzzFile {
public:
    CFuzzFile() {
        const std::optional<std::string> name = platform::MakeTemporaryName("FUZ");
        Require(name.has_value(), "a temporary file can be made");
        m_strPath = *name;
    }
    ~CFuzzFile() { platform::DeleteFileAt(m_strPath); }
    CFuzzFile(const CFuzzFile&) = delete;
    CFuzzFile& operator=(const CFuzzFile&) = delete;

    void Write(std::string_view bytes) const {
        std::FILE* const file = std::fopen(m_strPath.c_str(), "wb");
        Require(file != nullptr, "the temporary file can be opened");
        const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
        Require(std::fclose(file) == 0 && written, "the temporary file can be written");
    }
    std::string Read() const {
        std::string bytes;
        std::FILE* const file = std::fopen(m_strPath.c_str(), "rb");
        Require(file != nullptr, "the temporary file can be read");
        char buffer[4096];
        while (const std::size_t got = std::fread(buffer, 1, sizeof buffer, file)) {
            bytes.append(buffer, got);
        }
        std::fclose(file);
        return bytes;
    }
    const std::string& Path() const { return m_strPath; }

private:
    std::string m_strPath;
};

} // namespace carvelot::fuzz
