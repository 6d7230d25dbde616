#include "explore/PieceOrder.h"

#include "explore/Clock.h"
#include "explore/ExploredSession.h"
#include "platform/SharedFile.h"
#include "sources/FileSource.h"
#include "sources/MemorySource.h"
#include "sources/PackedFile.h"
#include "sources/PiecesSource.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace carvelot {

namespace {

// Many lines behind the last that can be without a stamp.
constexpr std::size_t kHead = 256 * 1024;

// What a file begins with: its first line, and what follows that.
struct Head {
    explicit Head(const std::string& path) {
        std::string bytes(kHead, '\0');
        platform::SharedFile file = platform::SharedFile::OpenForReading(path);
        bytes.resize(file ? ReadSome(file, bytes) : 0);
        const std::size_t end = std::min(bytes.find_first_of("\r\n"), bytes.size());
        firstLine = bytes.substr(0, end) + '\n';
        rest = bytes.substr(end) + '\n';
    }

    std::string firstLine;
    std::string rest;

private:
    static std::size_t ReadSome(platform::SharedFile& file, std::string& bytes) {
        CFileSource source(file);
        const PackedKind kind = PackedKindOf(source);
        if (kind == PackedKind::None) {
            return source.Read(bytes.data(), bytes.size());
        }
        CPackedSource unpacked(source, kind);
        return unpacked.Open().empty() ? unpacked.Read(bytes.data(), bytes.size()) : 0;
    }
};

class CSilentHost : public ISessionHost {
public:
    void ShowMessage(std::string_view) override {}
    void PrintOutput(std::string_view) override {}
};

std::string_view NameOf(std::string_view path) { return path.substr(path.find_last_of("/\\") + 1); }

struct PlacedPiece {
    LogPiece piece;
    std::optional<std::int64_t> clock; // of the first stamped line
};

bool BeginsBefore(const PlacedPiece& one, const PlacedPiece& other) {
    if (one.clock != other.clock) {
        return one.clock && (!other.clock || *one.clock < *other.clock);
    }
    const std::string_view name = NameOf(one.piece.path);
    const std::string_view otherName = NameOf(other.piece.path);
    return name != otherName ? NameComesBefore(name, otherName) : one.piece.path < other.piece.path;
}

} // namespace

std::vector<LogPiece> PiecesAsGiven(const std::vector<std::string>& paths) {
    std::vector<LogPiece> pieces;
    for (const std::string& path : paths) {
        pieces.push_back({path});
    }
    return pieces;
}

std::vector<LogPiece> PiecesByTime(const std::vector<std::string>& paths, CDialects dialects) {
    std::vector<Head> heads;
    std::vector<PlacedPiece> placed;
    for (const std::string& path : paths) {
        heads.emplace_back(path);
        placed.push_back({{path}, std::nullopt});
    }
    // A session of all heads tells their format and their stamps; each is two pieces of it.
    std::vector<SourcePiece> sources;
    AnalysisSettings settings;
    PendingStatement pending;
    CSilentHost host;
    CCarvelotDoc session(settings, pending, host);
    session.m_dialects = dialects;
    for (const Head& head : heads) {
        sources.push_back({std::make_unique<CMemorySource>(head.firstLine)});
        sources.push_back({std::make_unique<CMemorySource>(head.rest)});
        session.m_listPieces.resize(sources.size());
    }
    CPiecesSource source(std::move(sources));
    if (session.LoadFrom(source)) {
        const std::vector<RecordRange> parts = PiecesOf(session);
        std::vector<RecordRange> files;
        for (std::size_t i = 0; i < parts.size(); i += 2) {
            files.push_back({parts[i].first, parts[i + 1].end});
        }
        const CClock clock(session.m_listDetails, files);
        const auto firstStamped = [&](RecordRange records) {
            return CClock(session.m_listDetails, std::array{records}).FirstRecord();
        };
        for (std::size_t i = 0; i < files.size(); ++i) {
            if (const std::optional<RecordIndex> first = firstStamped(files[i])) {
                placed[i].clock = clock[*first];
            }
            placed[i].piece.beginsLine = firstStamped(parts[2 * i]).has_value();
        }
    }
    std::stable_sort(placed.begin(), placed.end(), BeginsBefore);
    std::vector<LogPiece> pieces;
    for (PlacedPiece& piece : placed) {
        pieces.push_back(std::move(piece.piece));
    }
    return pieces;
}

bool NameComesBefore(std::string_view one, std::string_view other) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    // The number that a name begins with, without the noughts ahead of it.
    const auto takeNumber = [&](std::string_view& name) {
        const auto end = std::find_if_not(name.begin(), name.end(), isDigit);
        std::string_view digits(name.begin(), end);
        name = std::string_view(end, name.end());
        digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
        return digits;
    };
    while (!one.empty() && !other.empty()) {
        if (isDigit(one.front()) && isDigit(other.front())) {
            const std::string_view number = takeNumber(one);
            const std::string_view otherNumber = takeNumber(other);
            if (number != otherNumber) {
                return number.size() != otherNumber.size() ? number.size() < otherNumber.size()
                                                           : number < otherNumber;
            }
        } else if (one.front() != other.front()) {
            return static_cast<unsigned char>(one.front()) < static_cast<unsigned char>(other.front());
        } else {
            one.remove_prefix(1);
            other.remove_prefix(1);
        }
    }
    return one.size() < other.size();
}

} // namespace carvelot
