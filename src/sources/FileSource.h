// A log in a file that others may be writing. Where reading fails the log ends.
#pragma once

#include "platform/SharedFile.h"
#include "sources/LogSource.h"

namespace carvelot {

class CFileSource final : public ILogSource {
public:
    explicit CFileSource(platform::SharedFile& file) : m_file(file) {}

    std::size_t Read(void* buffer, std::size_t size) override {
        int error = 0;
        const std::size_t got = m_file.Read(buffer, size, &error);
        m_bFailed = m_bFailed || error != 0;
        m_nPosition += got;
        return got;
    }
    void Rewind() override {
        m_file.Rewind();
        m_nPosition = 0;
    }
    bool Seek(std::uint64_t position) override {
        const bool there = m_file.Seek(position);
        m_nPosition = there ? position : m_nPosition;
        return there;
    }
    std::uint64_t Size() const override { return m_file.Size(); }
    SourceProgress Progress() const override { return {m_nPosition, Size()}; }
    // Whether the log ended where reading failed, at any time.
    bool HasFailed() const { return m_bFailed; }

private:
    platform::SharedFile& m_file;
    bool m_bFailed = false;
    std::uint64_t m_nPosition = 0;
};

} // namespace carvelot
