#include "explore/ProfileExport.h"

#include "explore/ExportFormats.h"
#include "platform/AtomicFile.h"
#include "text/CaseText.h"

#include <array>
#include <locale>
#include <new>
#include <ostream>
#include <streambuf>

namespace carvelot {

namespace {

struct Format {
    std::string_view ending;
    ProfileFormat format;
    void (*write)(const ExportedProfile& profile, std::ostream& out);
};

constexpr std::array<Format, 4> kFormats{{
    {".FOLDED", ProfileFormat::Folded, WriteFolded},
    {".SPEEDSCOPE.JSON", ProfileFormat::Speedscope, WriteSpeedscope},
    {".TRACE.JSON", ProfileFormat::Trace, WriteTrace},
    {".CALLGRIND", ProfileFormat::Callgrind, WriteCallgrind},
}};

// What is written goes to the file a block at a time.
class CFileBuffer : public std::streambuf {
public:
    CFileBuffer(platform::AtomicFile& file, const CExploreProgress* progress)
        : m_file(file), m_pProgress(progress) {
        setp(m_block.data(), m_block.data() + m_block.size());
    }
    bool IsRefused() const { return m_bRefused; }
    bool IsEnded() const { return m_pProgress != nullptr && m_pProgress->Ends(); }

protected:
    int_type overflow(int_type c) override {
        if (sync() != 0) {
            return traits_type::eof();
        }
        if (!traits_type::eq_int_type(c, traits_type::eof())) {
            sputc(traits_type::to_char_type(c));
        }
        return traits_type::not_eof(c);
    }
    int sync() override {
        const std::string_view written(pbase(), static_cast<std::size_t>(pptr() - pbase()));
        setp(m_block.data(), m_block.data() + m_block.size());
        m_bRefused = !m_file.Write(written);
        return m_bRefused || IsEnded() ? -1 : 0;
    }

private:
    platform::AtomicFile& m_file;
    const CExploreProgress* m_pProgress;
    bool m_bRefused = false; // the file remembers why
    std::array<char, std::size_t{1} << 14U> m_block;
};

} // namespace

std::optional<ProfileFormat> ProfileFormatOf(const std::string& path) {
    const std::string folded = FoldedCase(path);
    for (const Format& format : kFormats) {
        if (folded.ends_with(format.ending)) {
            return format.format;
        }
    }
    return std::nullopt;
}

bool WriteProfileExport(const std::string& path, ProfileFormat format, const ExportedProfile& profile,
                        int& error, const CExploreProgress* progress) {
    platform::AtomicFile file = platform::AtomicFile::Create(path, &error);
    if (!file) {
        return false;
    }
    CFileBuffer buffer(file, progress);
    std::ostream out(&buffer);
    out.imbue(std::locale::classic());
    kFormats[static_cast<std::size_t>(format)].write(profile, out);
    out.flush();
    if (buffer.IsEnded()) {
        throw ExploringEnded();
    }
    // A stream keeps to itself what is thrown below it.
    if (!out && !buffer.IsRefused()) {
        throw std::bad_alloc();
    }
    // Commit tells of a failed write, with its error.
    return file.Commit(&error);
}

} // namespace carvelot
