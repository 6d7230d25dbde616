#include "support/Archives.h"

#include "support/TestLog.h"

#include <archive.h>
#include <archive_entry.h>
#include <zstd.h>

#include <cstdint>
#include <stdexcept>

namespace carvelot::test {

namespace {

class Writer {
public:
    Writer() : m_archive(archive_write_new()) { archive_write_set_bytes_per_block(m_archive, 0); }
    ~Writer() { archive_write_free(m_archive); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    archive* Get() { return m_archive; }
    void Check(int result) {
        if (result != ARCHIVE_OK) {
            throw std::runtime_error(archive_error_string(m_archive));
        }
    }
    void Open(const std::string& options) {
        if (!options.empty()) {
            Check(archive_write_set_options(m_archive, options.c_str()));
        }
        const auto write = [](archive*, void* self, const void* bytes, std::size_t size) {
            static_cast<Writer*>(self)->m_bytes.append(static_cast<const char*>(bytes), size);
            return static_cast<la_ssize_t>(size);
        };
        Check(archive_write_open(m_archive, this, nullptr, write, nullptr));
    }
    void Add(const ArchiveMember& member) {
        archive_entry* const entry = archive_entry_new();
        archive_entry_copy_pathname(entry, member.name.c_str());
        archive_entry_set_size(entry, static_cast<la_int64_t>(member.bytes.size()));
        archive_entry_set_mtime(entry, member.date, 0);
        archive_entry_set_filetype(entry, member.name.ends_with('/') ? AE_IFDIR : AE_IFREG);
        archive_entry_set_perm(entry, 0644);
        Check(archive_write_header(m_archive, entry));
        archive_entry_free(entry);
        archive_write_data(m_archive, member.bytes.data(), member.bytes.size());
    }
    std::string Close() {
        Check(archive_write_close(m_archive));
        return m_bytes;
    }

private:
    archive* m_archive;
    std::string m_bytes;
};

} // namespace

std::string Gzip(std::string_view bytes) {
    Writer writer;
    writer.Check(archive_write_set_format_raw(writer.Get()));
    writer.Check(archive_write_add_filter_gzip(writer.Get()));
    writer.Open({});
    writer.Add({"log", std::string(bytes)});
    return writer.Close();
}

// By the library itself, with a check sum, as its program does.
std::string Zstd(std::string_view bytes) {
    ZSTD_CCtx* const context = ZSTD_createCCtx();
    ZSTD_CCtx_setParameter(context, ZSTD_c_checksumFlag, 1);
    std::string packed(ZSTD_compressBound(bytes.size()), '\0');
    packed.resize(ZSTD_compress2(context, packed.data(), packed.size(), bytes.data(), bytes.size()));
    ZSTD_freeCCtx(context);
    return packed;
}

std::string Zip(const std::vector<ArchiveMember>& members, const std::string& options) {
    Writer writer;
    writer.Check(archive_write_set_format_zip(writer.Get()));
    if (options.find("encryption") != std::string::npos) {
        writer.Check(archive_write_set_passphrase(writer.Get(), "secret"));
    }
    writer.Open(options);
    for (const ArchiveMember& member : members) {
        writer.Add(member);
    }
    return writer.Close();
}

std::string Tar(const std::vector<ArchiveMember>& members) {
    Writer writer;
    writer.Check(archive_write_set_format_ustar(writer.Get()));
    writer.Open({});
    for (const ArchiveMember& member : members) {
        writer.Add(member);
    }
    return writer.Close();
}

std::string LogOfLines(int lines) {
    std::string log = TestSession::Joined(DebugLog({}));
    std::uint32_t number = 1;
    for (int i = 0; i < lines; ++i) {
        std::string text = "SELECT ";
        for (int word = 0; word < 8; ++word) {
            number = number * 1664525U + 1013904223U;
            text += std::to_string(number) + ' ';
        }
        log += DebugLine("10:00:00.000001", text + "FROM F0101", "5/6") + "\n";
    }
    return log;
}

} // namespace carvelot::test
