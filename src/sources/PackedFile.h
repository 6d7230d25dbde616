// Logs in archives: gzip, zstd and zip. Nothing that an archive says of itself is believed: no path in it is
// ever made, no size serves to reserve memory, and what is kept beside the bytes asked for stays within 8 MiB
// and half a MiB, of which zstd's window takes the most.
#pragma once

#include "sources/LogSource.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

enum class PackedKind { None, Gzip, Zstd, Zip };

// How many bytes of a file tell what it is; no name does.
inline constexpr std::size_t kPackedMark = 4;
PackedKind PackedKindOf(std::string_view first);
// The same by the first bytes of a source, which starts over then.
PackedKind PackedKindOf(ILogSource& source);

// A file in a zip archive. All of it is what the archive claims.
struct PackedMember {
    std::string name;                  // UTF-8
    std::optional<std::uint64_t> size; // in bytes, unpacked
    std::optional<std::int64_t> date;  // seconds since 1970
};

// The files in a zip archive; no folders. Of a damaged one those that can be told. `problem` is a sentence
// for the user and comes without members.
struct PackedMembers {
    std::vector<PackedMember> members;
    std::string problem;
};
PackedMembers ListMembers(ILogSource& packed);

// The unpacked bytes of an archive. Where it is damaged they end with those ahead of the damage, and
// Failure() says so.
class CPackedSource final : public ILogSource {
public:
    // `packed` must outlive the source, and nobody else may use it. Of a zip archive all members of these
    // names, one after the other; without names the only one that it holds.
    CPackedSource(ILogSource& packed, PackedKind kind, std::vector<std::string> members = {});
    ~CPackedSource() override;

    // To be called first. Why nothing of it can be read, in a sentence for the user; empty when it can.
    std::string Open();

    std::size_t Read(void* buffer, std::size_t size) override;
    void Rewind() override;
    void RewindForGood() override;
    // What an archive says of its size is not to be relied on.
    std::uint64_t Size() const override { return 0; }
    SourceProgress Progress() const override { return m_packed.Progress(); }
    std::string Failure() const override { return m_strFailure; }

private:
    class CUnpacker;
    class CGzipUnpacker;
    class CZstdUnpacker;
    class CZipUnpacker;

    void StartOver();

    ILogSource& m_packed;
    const PackedKind m_kind;
    const std::vector<std::string> m_listMembers;
    std::unique_ptr<CUnpacker> m_unpacker; // none as long as nothing has been read
    std::uint64_t m_nPosition = 0;         // bytes that came out
    std::string m_strFailure;
};

// An archive of one log, with the source that it is read from.
class CPackedPiece final : public ILogSource {
public:
    CPackedPiece(std::unique_ptr<ILogSource> packed, PackedKind kind)
        : m_packed(std::move(packed)), m_source(*m_packed, kind) {}

    std::string Open() { return m_source.Open(); }

    std::size_t Read(void* buffer, std::size_t size) override { return m_source.Read(buffer, size); }
    void Rewind() override { m_source.Rewind(); }
    std::uint64_t Size() const override { return m_source.Size(); }
    SourceProgress Progress() const override { return m_source.Progress(); }
    std::string Failure() const override { return m_source.Failure(); }

private:
    const std::unique_ptr<ILogSource> m_packed;
    CPackedSource m_source;
};

} // namespace carvelot
