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
    std::size_t Read(void* pBytes, std::size_t nSize) override { return m_file.Read(pBytes, nSize); }
    bool Write(std::string_view) override { return false; }

private:
    platform::SharedFile& m_file;
};

class CDiskTarget final : public IArchiveFile {
public:
    explicit CDiskTarget(platform::AtomicFile& file) : m_file(file) {}
    std::size_t Read(void*, std::size_t) override { return 0; }
    bool Write(std::string_view strBytes) override { return m_file.Write(strBytes); }

private:
    platform::AtomicFile& m_file;
};

class CMemoryFile final : public IArchiveFile {
public:
    explicit CMemoryFile(std::string_view strBytes = {}) : m_strLeft(strBytes) {}
    std::size_t Read(void* pBytes, std::size_t nSize) override {
        const std::size_t nRead = std::min(nSize, m_strLeft.size());
        std::copy_n(m_strLeft.data(), nRead, static_cast<char*>(pBytes));
        m_strLeft.remove_prefix(nRead);
        return nRead;
    }
    bool Write(std::string_view strBytes) override {
        m_strWritten.append(strBytes);
        return true;
    }

    std::string m_strWritten;

private:
    std::string_view m_strLeft;
};

std::string FileErrorText(const std::string& strPath, int nError) {
    const std::error_code code(nError, std::system_category());
    if (code == std::errc::no_such_file_or_directory)
        return strPath + " was not found.";
    if (code == std::errc::permission_denied || code == std::errc::operation_not_permitted ||
        code == std::errc::read_only_file_system || code == std::errc::is_a_directory)
        return "Access to " + strPath + " was denied.";
    if (code == std::errc::no_space_on_device)
        return "Disk full while accessing " + strPath + ".";
    return "An error occurred while accessing " + strPath + ". Error: " + std::to_string(nError);
}

std::string ArchiveErrorText(const std::string& strPath, EArchiveError nError) {
    switch (nError) {
    case EArchiveError::None:
        return {};
    case EArchiveError::EndOfFile:
        return "An attempt was made to access " + strPath + " past its end.";
    case EArchiveError::BadClass:
        return strPath + " contained an unexpected object.";
    case EArchiveError::BadSchema:
        return strPath + " contains an incorrect schema.";
    case EArchiveError::BadFormat:
    case EArchiveError::WriteFailed:
        break;
    }
    return strPath + " has a bad format.";
}

} // namespace

std::string LoadCacheDefinition(const std::string& strPath, CCacheDS& structure) {
    structure.Clear();
    int nError = 0;
    platform::SharedFile file = platform::SharedFile::OpenForReading(strPath, &nError);
    if (!file)
        return FileErrorText(strPath, nError);
    CDiskSource source(file);
    CArchive archive(source, CArchive::load);
    structure.Serialize(archive);
    return ArchiveErrorText(strPath, archive.Error());
}

std::string SaveCacheDefinition(const std::string& strPath, CCacheDS& structure) {
    int nError = 0;
    platform::AtomicFile file = platform::AtomicFile::Create(strPath, &nError);
    if (!file)
        return FileErrorText(strPath, nError);
    CDiskTarget target(file);
    CArchive archive(target, CArchive::store);
    structure.Serialize(archive);
    archive.Flush(); // what fails here fails the commit as well, which knows the reason
    return file.Commit(&nError) ? std::string() : FileErrorText(strPath, nError);
}

EArchiveError ReadCacheDefinition(std::string_view strBytes, CCacheDS& structure) {
    CMemoryFile file(strBytes);
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
