#include "cachebrowser/CacheDefinition.h"

#include "platform/AtomicFile.h"
#include "platform/SharedFile.h"

#include <algorithm>
#include <system_error>

namespace carvelot {

namespace {

class CDiskSource final : public IArchiveFile {
public:
    explicit CDiskSource(platform::SharedFile& file) : m_file(file) {}
    std::size_t Read(void* bytes, std::size_t size) override { return m_file.Read(bytes, size, &m_nError); }
    bool Write(std::string_view) override { return false; }
    // 0 as long as reading does not fail.
    int Error() const { return m_nError; }

private:
    platform::SharedFile& m_file;
    int m_nError = 0;
};

class CDiskTarget final : public IArchiveFile {
public:
    explicit CDiskTarget(platform::AtomicFile& file) : m_file(file) {}
    std::size_t Read(void*, std::size_t) override { return 0; }
    bool Write(std::string_view bytes) override { return m_file.Write(bytes); }

private:
    platform::AtomicFile& m_file;
};

class CMemoryFile final : public IArchiveFile {
public:
    explicit CMemoryFile(std::string_view bytes = {}) : m_strLeft(bytes) {}
    std::size_t Read(void* bytes, std::size_t size) override {
        const std::size_t read = std::min(size, m_strLeft.size());
        std::copy_n(m_strLeft.data(), read, static_cast<char*>(bytes));
        m_strLeft.remove_prefix(read);
        return read;
    }
    bool Write(std::string_view bytes) override {
        m_strWritten.append(bytes);
        return true;
    }

    std::string m_strWritten;

private:
    std::string_view m_strLeft;
};

std::string FileErrorText(const std::string& path, int error) {
    const std::error_code code(error, std::system_category());
    if (code == std::errc::no_such_file_or_directory) {
        return path + " was not found.";
    }
    if (code == std::errc::permission_denied || code == std::errc::operation_not_permitted ||
        code == std::errc::read_only_file_system || code == std::errc::is_a_directory) {
        return "Access to " + path + " was denied.";
    }
    if (code == std::errc::no_space_on_device) {
        return "Disk full while accessing " + path + ".";
    }
    return "An error occurred while accessing " + path + ". Error: " + std::to_string(error);
}

std::string ArchiveErrorText(const std::string& path, EArchiveError error) {
    switch (error) {
    case EArchiveError::None:
        return {};
    case EArchiveError::EndOfFile:
        return "An attempt was made to access " + path + " past its end.";
    case EArchiveError::BadClass:
        return path + " contained an unexpected object.";
    case EArchiveError::BadSchema:
        return path + " contains an incorrect schema.";
    case EArchiveError::BadFormat:
    case EArchiveError::WriteFailed:
        break;
    }
    return path + " has a bad format.";
}

} // namespace

std::string LoadCacheDefinition(const std::string& path, CCacheDS& structure) {
    structure.Clear();
    int error = 0;
    platform::SharedFile file = platform::SharedFile::OpenForReading(path, &error);
    if (!file) {
        return FileErrorText(path, error);
    }
    CDiskSource source(file);
    CArchive archive(source, CArchive::load);
    structure.Serialize(archive);
    return source.Error() != 0 ? FileErrorText(path, source.Error())
                               : ArchiveErrorText(path, archive.Error());
}

std::string SaveCacheDefinition(const std::string& path, CCacheDS& structure) {
    int error = 0;
    platform::AtomicFile file = platform::AtomicFile::Create(path, &error);
    if (!file) {
        return FileErrorText(path, error);
    }
    CDiskTarget target(file);
    CArchive archive(target, CArchive::store);
    structure.Serialize(archive);
    archive.Flush(); // what fails here fails the commit as well, which knows the reason
    return file.Commit(&error) ? std::string() : FileErrorText(path, error);
}

EArchiveError ReadCacheDefinition(std::string_view bytes, CCacheDS& structure) {
    CMemoryFile file(bytes);
    CArchive archive(file, CArchive::load);
    structure.Serialize(archive);
    return archive.Error();
}

std::string WriteCacheDefinition(CCacheDS& structure) {
    CMemoryFile file;
    CArchive archive(file, CArchive::store);
    structure.Serialize(archive);
    archive.Flush();
    return std::move(file.m_strWritten);
}

} // namespace carvelot
