#include "sources/PackedFile.h"

#include "platform/CodePage.h"
#include "platform/NameLocale.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <new>
#include <utility>

#include <archive.h>
#include <archive_entry.h>
#include <zlib.h>
#include <zstd.h>
#include <zstd_errors.h>

namespace carvelot {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t kPackedBlock = 64 * 1024;
constexpr int kWindowLog = 23; // of zstd: 8 MiB
// Of a zip archive's directory, which is kept in memory: some ten thousand members.
constexpr std::uint64_t kMostDirectory = 1U << 20U;
// Of what is unpacked, enough to know an archive.
constexpr std::size_t kArchiveMark = 512;

constexpr char kEncrypted[] = "An encrypted archive can't be read.";
constexpr char kUnknownMethod[] = "The archive is packed by a method that is not known.";
constexpr char kNested[] = "An archive in an archive can't be read.";
constexpr char kTooLargeWindow[] = "The archive asks for more memory to be unpacked than it gets.";
constexpr char kNoMembers[] = "The archive holds no log.";
constexpr char kTooManyMembers[] = "The archive holds too many members.";
constexpr char kSeveralMembers[] = "The archive holds several members.";

std::string DamagedText(std::uint64_t bytes) {
    return "The archive is damaged: " + std::to_string(bytes) + " bytes were read.";
}

std::string NoSuchMemberText(const std::string& name) { return "The archive has no member " + name + "."; }

// Whether a log that begins so is none but an archive, of a kind that is read here or not.
bool BeginsAsArchive(std::string_view first) {
    constexpr std::size_t tarMark = 257;
    return PackedKindOf(first) != PackedKind::None || first.starts_with("BZh"sv) ||
           first.starts_with("\xFD"
                             "7zXZ\0"sv) ||
           first.starts_with("7z\xBC\xAF\x27\x1C"sv) ||
           (first.size() > tarMark && first.substr(tarMark).starts_with("ustar"sv));
}

// The bytes of the packed file, a block at a time.
class CPackedBlocks {
public:
    explicit CPackedBlocks(ILogSource& packed)
        : m_packed(packed), m_bytes(std::make_unique_for_overwrite<char[]>(kPackedBlock)) {}

    // The next block, empty at the end.
    std::string_view Next() { return {m_bytes.get(), m_packed.Read(m_bytes.get(), kPackedBlock)}; }

private:
    ILogSource& m_packed;
    std::unique_ptr<char[]> m_bytes;
};

} // namespace

PackedKind PackedKindOf(std::string_view first) {
    constexpr std::string_view skippable = "\x2A\x4D\x18"sv; // some programs put such a frame first
    if (first.starts_with("\x1F\x8B\x08"sv)) {
        return PackedKind::Gzip;
    }
    if (first.starts_with("\x28\xB5\x2F\xFD"sv) ||
        (first.size() >= kPackedMark && (static_cast<unsigned char>(first[0]) & 0xF0U) == 0x50U &&
         first.substr(1).starts_with(skippable))) {
        return PackedKind::Zstd;
    }
    if (first.starts_with("PK\x03\x04"sv) || first.starts_with("PK\x05\x06"sv)) {
        return PackedKind::Zip;
    }
    return PackedKind::None;
}

PackedKind PackedKindOf(ILogSource& source) {
    std::array<char, kPackedMark> first{};
    source.Rewind();
    const std::size_t got = source.Read(first.data(), first.size());
    source.Rewind();
    return PackedKindOf(std::string_view(first.data(), got));
}

// Unpacks from the packed file's first byte on.
class CPackedSource::CUnpacker {
public:
    CUnpacker() = default;
    virtual ~CUnpacker() = default;
    CUnpacker(const CUnpacker&) = delete;
    CUnpacker& operator=(const CUnpacker&) = delete;

    // Fewer than `size` only at the end.
    virtual std::size_t Read(char* buffer, std::size_t size) = 0;

    bool Damaged() const { return m_bDamaged; }
    // Why nothing more is read of what may be sound.
    const std::string& Refusal() const { return m_strRefusal; }

protected:
    void EndDamaged() { m_bEnded = m_bDamaged = true; }
    void EndRefused(std::string why) {
        m_bEnded = true;
        m_strRefusal = std::move(why);
    }

    bool m_bEnded = false;

private:
    bool m_bDamaged = false;
    std::string m_strRefusal;
};

// zlib itself: libarchive neither looks at the check sums of gzip nor gives the latest bytes ahead of a
// damage.
class CPackedSource::CGzipUnpacker final : public CUnpacker {
public:
    explicit CGzipUnpacker(ILogSource& packed) : m_blocks(packed) {
        constexpr int gzip = 16;
        if (inflateInit2(&m_stream, MAX_WBITS + gzip) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~CGzipUnpacker() override { inflateEnd(&m_stream); }

    std::size_t Read(char* buffer, std::size_t size) override {
        constexpr std::size_t most = std::numeric_limits<unsigned>::max();
        std::size_t done = 0;
        while (done < size && !m_bEnded && HasInput()) {
            const auto wanted = static_cast<unsigned>(std::min(size - done, most));
            m_stream.next_out = reinterpret_cast<Bytef*>(buffer + done);
            m_stream.avail_out = wanted;
            const int result = inflate(&m_stream, Z_NO_FLUSH);
            done += wanted - m_stream.avail_out;
            m_bMoreToCome = m_stream.avail_out == 0 && result == Z_OK;
            if (result == Z_STREAM_END) {
                m_bBetween = true;
            } else if (result == Z_MEM_ERROR) {
                throw std::bad_alloc();
            } else if (result != Z_OK && result != Z_BUF_ERROR) {
                EndDamaged();
            }
        }
        return done;
    }

private:
    // Gets bytes to unpack where there are none, and goes on with the next stream behind the end of one. What
    // fills a tape's last block counts for nothing.
    bool HasInput() {
        for (;;) {
            if (m_stream.avail_in == 0 && !m_bMoreToCome) {
                const std::string_view block = m_blocks.Next();
                if (block.empty()) {
                    m_bBetween ? void(m_bEnded = true) : EndDamaged();
                    return false;
                }
                m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(block.data()));
                m_stream.avail_in = static_cast<unsigned>(block.size());
            }
            if (!m_bBetween) {
                return true;
            }
            while (m_stream.avail_in > 0 && *m_stream.next_in == 0) {
                ++m_stream.next_in;
                --m_stream.avail_in;
            }
            if (m_stream.avail_in > 0) {
                inflateReset(&m_stream);
                m_bBetween = false;
                return true;
            }
        }
    }

    CPackedBlocks m_blocks;
    z_stream m_stream{};
    bool m_bBetween = false;    // two streams
    bool m_bMoreToCome = false; // perhaps, out of what has been handed over
};

// zstd itself: libarchive gives it as large a window as an archive asks for.
class CPackedSource::CZstdUnpacker final : public CUnpacker {
public:
    explicit CZstdUnpacker(ILogSource& packed) : m_blocks(packed), m_context(ZSTD_createDCtx()) {
        if (m_context == nullptr) {
            throw std::bad_alloc();
        }
        ZSTD_DCtx_setParameter(m_context, ZSTD_d_windowLogMax, kWindowLog);
    }
    ~CZstdUnpacker() override { ZSTD_freeDCtx(m_context); }

    // Never more than a block of the archive is handed over at a time, without the head of the next one: with
    // an error the library does not tell how much it has given ahead of it in the same call.
    std::size_t Read(char* buffer, std::size_t size) override {
        ZSTD_outBuffer out{buffer, size, 0};
        while (out.pos < out.size && !m_bEnded && HasInput()) {
            const std::size_t next =
                m_nNext > kBlockHead ? m_nNext - kBlockHead : std::max<std::size_t>(m_nNext, 1);
            const std::size_t wanted = m_bMoreToCome ? 0 : next;
            ZSTD_inBuffer in{m_block.data(), std::min(m_block.size(), wanted), 0};
            m_nNext = ZSTD_decompressStream(m_context, &out, &in);
            m_block.remove_prefix(in.pos);
            m_bMoreToCome = out.pos == out.size && m_nNext != 0;
            if (ZSTD_isError(m_nNext) != 0) {
                End(ZSTD_getErrorCode(m_nNext));
            }
        }
        return out.pos;
    }

private:
    static constexpr std::size_t kBlockHead = 3;

    bool HasInput() {
        if (m_block.empty() && !m_bMoreToCome) {
            m_block = m_blocks.Next();
            if (m_block.empty()) {
                m_nNext == 0 ? void(m_bEnded = true) : EndDamaged();
                return false;
            }
        }
        return true;
    }
    void End(ZSTD_ErrorCode error) {
        if (error == ZSTD_error_memory_allocation) {
            throw std::bad_alloc();
        }
        if (error == ZSTD_error_frameParameter_windowTooLarge) {
            EndRefused(kTooLargeWindow);
        } else if (error == ZSTD_error_dictionary_wrong || error == ZSTD_error_version_unsupported ||
                   error == ZSTD_error_frameParameter_unsupported) {
            EndRefused(kUnknownMethod);
        } else {
            EndDamaged();
        }
    }

    CPackedBlocks m_blocks;
    ZSTD_DCtx* m_context;
    std::string_view m_block; // of the packed file, what is not handed over yet
    // Bytes up to its next block's end and the head behind it; 0 between two frames.
    std::size_t m_nNext = 1;
    bool m_bMoreToCome = false; // out of what has been handed over
};

namespace {

// A zip archive as libarchive reads it: by the directory at its end, or from its first byte on where that is
// not to be had.
class CZipArchive {
public:
    enum class Step { Member, End, Damaged };

    explicit CZipArchive(ILogSource& packed)
        : m_packed(packed), m_bBySeeking(packed.Seek(0)),
          m_bytes(std::make_unique_for_overwrite<char[]>(kPackedBlock)) {
        Open();
    }
    CZipArchive(const CZipArchive&) = delete;
    CZipArchive& operator=(const CZipArchive&) = delete;

    // Goes to the next file.
    Step Next() {
        for (;;) {
            const platform::Utf8Names names;
            int result = archive_read_next_header2(m_archive.get(), m_entry.get());
            RethrowOwn();
            if (!m_bBegun && result < ARCHIVE_WARN && m_bBySeeking && m_nDirectoryLeft > 0 &&
                m_packed.Seek(0)) {
                m_bBySeeking = false;
                Open();
                result = archive_read_next_header2(m_archive.get(), m_entry.get());
                RethrowOwn();
            }
            m_bBegun = true;
            if (result == ARCHIVE_EOF) {
                return Step::End;
            }
            if (result < ARCHIVE_WARN) {
                return Step::Damaged;
            }
            if (archive_entry_filetype(m_entry.get()) == AE_IFREG) {
                return Step::Member;
            }
        }
    }

    // Of the file gone to.
    PackedMember Member() const {
        const platform::Utf8Names names;
        PackedMember member;
        const char* const utf8 = archive_entry_pathname_utf8(m_entry.get());
        if (utf8 != nullptr && *utf8 != '\0') {
            member.name = utf8;
        } else if (const char* const bytes = archive_entry_pathname(m_entry.get())) {
            std::string scratch;
            member.name = platform::BytesToUtf8(bytes, scratch);
        }
        if (archive_entry_size_is_set(m_entry.get()) != 0 && archive_entry_size(m_entry.get()) >= 0) {
            member.size = static_cast<std::uint64_t>(archive_entry_size(m_entry.get()));
        }
        if (archive_entry_mtime_is_set(m_entry.get()) != 0) {
            member.date = archive_entry_mtime(m_entry.get());
        }
        return member;
    }
    // Why it is not read; nothing when it can be.
    const char* Refusal() const {
        if (archive_entry_is_encrypted(m_entry.get()) != 0) {
            return kEncrypted;
        }
        // The only place where the library tells the method.
        const char* const format = archive_format_name(m_archive.get());
        const std::string_view method = format == nullptr ? "" : format;
        return method.ends_with("(deflation)") || method.ends_with("(uncompressed)") ? nullptr
                                                                                     : kUnknownMethod;
    }
    // Whether a file's end can be found without unpacking it.
    bool EndIsKnown() const { return m_bBySeeking || archive_entry_size_is_set(m_entry.get()) != 0; }

    // The next bytes of the file; empty at its end. They stay until the next call.
    std::string_view Data(Step& step) {
        const void* data = nullptr;
        std::size_t size = 0;
        la_int64_t offset = 0;
        int result;
        do {
            result = archive_read_data_block(m_archive.get(), &data, &size, &offset);
            RethrowOwn();
        } while (result == ARCHIVE_RETRY || (result == ARCHIVE_OK && size == 0));
        step = result == ARCHIVE_OK ? Step::Member : result == ARCHIVE_EOF ? Step::End : Step::Damaged;
        // A check sum that is wrong comes with the last bytes.
        return result == ARCHIVE_OK || result == ARCHIVE_WARN
                   ? std::string_view(static_cast<const char*>(data), size)
                   : std::string_view();
    }

    bool BySeeking() const { return m_bBySeeking; }
    bool DirectoryTooLarge() const { return m_nDirectoryLeft == 0; }
    // How far the packed file has been read.
    std::uint64_t Position() const { return m_nPosition; }
    // From this byte of it on it is read byte by byte: then all comes out that stands ahead of a damage.
    void ReadByteByByteFrom(std::uint64_t position) { m_nByteByByteFrom = position; }

private:
    void Open() {
        // The library does not look whether there was memory for the entry that it makes itself.
        m_entry.reset();
        m_archive.reset(archive_read_new());
        m_entry.reset(m_archive == nullptr ? nullptr : archive_entry_new2(m_archive.get()));
        if (m_entry == nullptr) {
            throw std::bad_alloc();
        }
        archive* const made = m_archive.get();
        // Each fails for want of memory alone.
        const auto check = [](int result) {
            if (result < ARCHIVE_WARN) {
                throw std::bad_alloc();
            }
        };
        if (m_bBySeeking) {
            check(archive_read_support_format_zip_seekable(made));
            check(
                archive_read_set_seek_callback(made, [](archive*, void* self, la_int64_t offset, int whence) {
                    return static_cast<CZipArchive*>(self)->Seek(offset, whence);
                }));
        } else {
            check(archive_read_support_format_zip_streamable(made));
        }
        check(archive_read_set_read_callback(made, [](archive*, void* self, const void** bytes) {
            return static_cast<CZipArchive*>(self)->ReadBlock(bytes);
        }));
        check(archive_read_set_callback_data(made, this));
        m_nPosition = 0;
        m_nBlock = kLeastBlock;
        const int result = archive_read_open1(m_archive.get());
        RethrowOwn();
        m_bBegun = result != ARCHIVE_OK && !m_bBySeeking;
    }

    la_ssize_t ReadBlock(const void** bytes) {
        std::size_t size = m_nBlock;
        if (m_nPosition >= m_nByteByByteFrom) {
            size = 1;
        } else {
            size = static_cast<std::size_t>(std::min<std::uint64_t>(size, m_nByteByByteFrom - m_nPosition));
        }
        if (!m_bBegun && m_bBySeeking) {
            if (m_nDirectoryLeft < size) {
                m_nDirectoryLeft = 0;
                archive_set_error(m_archive.get(), EINVAL, "%s", kTooManyMembers);
                return -1;
            }
            m_nDirectoryLeft -= size;
        }
        m_nBlock = std::min(2 * m_nBlock, kPackedBlock);
        try {
            const std::size_t got = m_packed.Read(m_bytes.get(), size);
            m_nPosition += got;
            *bytes = m_bytes.get();
            return static_cast<la_ssize_t>(got);
        } catch (...) {
            m_thrown = std::current_exception(); // C lies between here and who may catch it
            return -1;
        }
    }

    la_int64_t Seek(la_int64_t offset, int whence) {
        const auto all = static_cast<la_int64_t>(m_packed.Size());
        const auto now = static_cast<la_int64_t>(m_nPosition);
        const la_int64_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? now : all;
        if (offset > 0 ? from > all - offset : from < -offset) {
            archive_set_error(m_archive.get(), EINVAL, "%s", "a place outside of the file");
            return ARCHIVE_FATAL;
        }
        const la_int64_t place = from + offset;
        if (!m_packed.Seek(static_cast<std::uint64_t>(place))) {
            archive_set_error(m_archive.get(), EIO, "%s", "the file can't be read");
            return ARCHIVE_FATAL;
        }
        m_nPosition = static_cast<std::uint64_t>(place);
        m_nBlock = kLeastBlock;
        return place;
    }

    void RethrowOwn() {
        if (m_thrown) {
            std::rethrow_exception(std::exchange(m_thrown, nullptr));
        }
        if (archive_errno(m_archive.get()) == ENOMEM) {
            throw std::bad_alloc();
        }
    }

    // Of what is read behind a jump, perhaps to no more than a file's head.
    static constexpr std::size_t kLeastBlock = 4096;

    ILogSource& m_packed;
    bool m_bBySeeking;
    bool m_bBegun = false; // it is known what files there are, or that this will be seen on the way
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_nBlock = kLeastBlock;
    std::uint64_t m_nPosition = 0;
    std::uint64_t m_nByteByByteFrom = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t m_nDirectoryLeft = kMostDirectory;
    std::exception_ptr m_thrown;
    struct Free {
        void operator()(archive* it) const { archive_read_free(it); }
        void operator()(archive_entry* it) const { archive_entry_free(it); }
    };
    std::unique_ptr<archive, Free> m_archive;
    std::unique_ptr<archive_entry, Free> m_entry; // goes first: it knows the archive
};

} // namespace

class CPackedSource::CZipUnpacker final : public CUnpacker {
public:
    // Without names it reads the only file.
    CZipUnpacker(ILogSource& packed, std::vector<std::string> members)
        : m_packed(packed), m_listMembers(std::move(members)), m_archive(std::in_place, packed) {
        GoToNextMember();
    }

    std::size_t Read(char* buffer, std::size_t size) override {
        std::size_t done = 0;
        while (done < size && !(m_bEnded && m_chunk.empty())) {
            if (m_chunk.empty()) {
                TakeChunk();
            }
            const std::size_t count = m_chunk.copy(buffer + done, size - done);
            m_chunk.remove_prefix(count);
            done += count;
        }
        return done;
    }

private:
    void GoToNextMember() {
        if (m_nMember > 0 && m_nMember >= m_listMembers.size()) {
            m_bEnded = true;
            if (m_listMembers.empty() && m_archive->Next() == CZipArchive::Step::Member) {
                EndRefused(kSeveralMembers);
            }
            return;
        }
        if (m_nMember > 0 && m_archive->BySeeking()) {
            m_packed.Rewind();
            m_archive.emplace(m_packed);
        }
        if (FindMember()) {
            ++m_nMember;
            m_nMemberBytes = 0;
        }
    }
    // Goes to the member whose turn it is.
    bool FindMember() {
        CZipArchive::Step step;
        do {
            step = m_archive->Next();
        } while (step == CZipArchive::Step::Member && !m_listMembers.empty() &&
                 m_archive->Member().name != m_listMembers[m_nMember]);
        if (step == CZipArchive::Step::Member) {
            if (const char* const refusal = m_archive->Refusal()) {
                EndRefused(refusal);
                return false;
            }
            return true;
        }
        if (m_archive->DirectoryTooLarge()) {
            EndRefused(kTooManyMembers);
        } else if (step == CZipArchive::Step::Damaged) {
            EndDamaged();
        } else {
            EndRefused(m_listMembers.empty() ? kNoMembers : NoSuchMemberText(m_listMembers[m_nMember]));
        }
        return false;
    }

    void TakeChunk() {
        CZipArchive::Step step = CZipArchive::Step::End;
        m_chunk = m_archive->Data(step);
        if (step == CZipArchive::Step::Damaged && m_chunk.empty() && m_archive->BySeeking() &&
            !m_bByteByByte) {
            ReadOnceMore();
            return;
        }
        m_nMemberBytes += m_chunk.size();
        if (step == CZipArchive::Step::Damaged) {
            EndDamaged();
        } else if (step == CZipArchive::Step::End) {
            // The library takes a member that claims to have no packed bytes for an empty one.
            if (m_archive->Member().size.value_or(m_nMemberBytes) != m_nMemberBytes) {
                EndDamaged();
            } else {
                GoToNextMember();
            }
        }
    }

    // The library keeps to itself what it unpacked of a block of the file ahead of a damage in it. So that
    // block is given to it byte by byte, behind what has been read of the member already.
    void ReadOnceMore() {
        const std::uint64_t position = m_archive->Position();
        m_bByteByByte = true;
        m_packed.Rewind();
        m_archive.emplace(m_packed);
        m_archive->ReadByteByByteFrom(position - std::min<std::uint64_t>(position, 2 * kPackedBlock));
        --m_nMember;
        if (!FindMember()) {
            return;
        }
        ++m_nMember;
        std::uint64_t known = m_nMemberBytes;
        CZipArchive::Step step = CZipArchive::Step::Member;
        while (known > 0 && step == CZipArchive::Step::Member) {
            m_chunk = m_archive->Data(step);
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(known, m_chunk.size()));
            m_chunk.remove_prefix(count);
            known -= count;
        }
        m_nMemberBytes += m_chunk.size();
        if (step != CZipArchive::Step::Member) {
            EndDamaged();
        }
    }

    ILogSource& m_packed;
    const std::vector<std::string> m_listMembers;
    std::optional<CZipArchive> m_archive;
    std::size_t m_nMember = 0;        // how many have been gone to
    std::uint64_t m_nMemberBytes = 0; // that came out of the present one
    std::string_view m_chunk;         // of them, what is not handed on yet
    bool m_bByteByByte = false;
};

PackedMembers ListMembers(ILogSource& packed) {
    PackedMembers list;
    packed.Rewind();
    CZipArchive archive(packed);
    auto step = CZipArchive::Step::Member;
    bool sure = true;
    while (sure && (step = archive.Next()) == CZipArchive::Step::Member) {
        list.members.push_back(archive.Member());
        sure = archive.EndIsKnown();
    }
    packed.Rewind();
    if (list.members.empty()) {
        list.problem = archive.DirectoryTooLarge()          ? kTooManyMembers
                       : step == CZipArchive::Step::Damaged ? DamagedText(0)
                                                            : kNoMembers;
    }
    return list;
}

CPackedSource::CPackedSource(ILogSource& packed, PackedKind kind, std::vector<std::string> members)
    : m_packed(packed), m_kind(kind), m_listMembers(std::move(members)) {}

CPackedSource::~CPackedSource() = default;

std::string CPackedSource::Open() {
    const bool seeks = m_packed.Seek(0);
    if (m_kind == PackedKind::Zip && m_listMembers.empty() && seeks &&
        ListMembers(m_packed).members.size() > 1) {
        return kSeveralMembers;
    }
    std::string problem;
    // Each member that is to be read; where nothing can be read twice, the first.
    const std::size_t looks = seeks ? std::max<std::size_t>(m_listMembers.size(), 1) : 1;
    for (std::size_t i = 0; i < looks && problem.empty(); ++i) {
        CPackedSource member(m_packed, m_kind,
                             m_listMembers.empty() ? m_listMembers : std::vector{m_listMembers[i]});
        m_packed.Rewind();
        std::array<char, kArchiveMark> first;
        const std::size_t got = member.Read(first.data(), first.size());
        problem = BeginsAsArchive({first.data(), got}) ? kNested : member.m_unpacker->Refusal();
    }
    Rewind();
    return problem;
}

std::size_t CPackedSource::Read(void* buffer, std::size_t size) {
    if (m_unpacker == nullptr) {
        switch (m_kind) {
        case PackedKind::Gzip:
            m_unpacker = std::make_unique<CGzipUnpacker>(m_packed);
            break;
        case PackedKind::Zstd:
            m_unpacker = std::make_unique<CZstdUnpacker>(m_packed);
            break;
        default:
            m_unpacker = std::make_unique<CZipUnpacker>(m_packed, m_listMembers);
            break;
        }
    }
    const std::size_t got = m_unpacker->Read(static_cast<char*>(buffer), size);
    m_nPosition += got;
    if (got < size) {
        m_strFailure = m_unpacker->Damaged() ? DamagedText(m_nPosition) : m_unpacker->Refusal();
    }
    return got;
}

void CPackedSource::Rewind() {
    m_packed.Rewind();
    StartOver();
}

void CPackedSource::RewindForGood() {
    m_packed.RewindForGood();
    StartOver();
}

void CPackedSource::StartOver() {
    m_unpacker.reset();
    m_nPosition = 0;
    m_strFailure.clear();
}

} // namespace carvelot
