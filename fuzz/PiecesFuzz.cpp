// A log cut into pieces: one session, which is that of the uncut log, and each record knows its piece. The
// first byte chooses the settings, the second how many cuts there are; a cut takes two bytes, which say
// where, and whether the piece behind it begins a line; the rest is the log.
#include "parse/LogReader.h"
#include "sources/PiecesSource.h"
#include "support/FuzzSession.h"
#include "support/SameSessions.h"

using namespace carvelot;

namespace {

constexpr std::size_t kMostCuts = 8; // a power of two
constexpr std::size_t kBlocks[] = {0, 1, 100, 5000};

struct Piece {
    std::string_view bytes;
    bool beginsLine = false;
    std::size_t begin = 0; // in the log that all make
};

bool IsEnd(char byte) { return byte == '\n' || byte == '\r'; }

// What the pieces make, byte by byte.
std::string JoinedOf(std::vector<Piece>& pieces) {
    std::string log;
    for (Piece& piece : pieces) {
        if (piece.beginsLine && !log.empty() && !IsEnd(log.back())) {
            log.push_back('\n');
        }
        piece.begin = log.size();
        log.append(piece.bytes);
    }
    return log;
}

// Where each line begins, as an editor counts them.
std::vector<std::size_t> LineBegins(std::string_view log) {
    std::vector<std::size_t> begins{0};
    for (std::size_t at = 0; at < log.size(); ++at) {
        if (IsEnd(log[at])) {
            at += log.substr(at, 2) == "\r\n" ? 1 : 0;
            begins.push_back(at + 1);
        }
    }
    return begins;
}

void RequirePieces(const CCarvelotDoc& session, const std::vector<Piece>& pieces, std::string_view log) {
    const std::vector<std::size_t> begins = LineBegins(log);
    for (std::size_t line = 1; line < begins.size(); ++line) {
        if (begins[line] - begins[line - 1] > CLogReader::kLongestLine) {
            return; // a piece of a line, of which no number tells where it begins
        }
    }
    for (std::uint32_t i = 0; i < session.m_listDetails.Size(); ++i) {
        const std::size_t begin = begins[session.m_listLineNumbers[i] - 1];
        std::size_t piece = pieces.size() - 1;
        while (pieces[piece].begin > begin) {
            --piece;
        }
        const LogPiece* const told = session.PieceOf(RecordIndex{i});
        fuzz::Require(told == &session.m_listPieces[piece],
                      "a record knows the piece that its line begins in");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::AsText(data, size);
    if (input.size() < 2) {
        return 0;
    }
    const std::size_t cuts = std::min<std::size_t>(data[1] % kMostCuts + 1, (input.size() - 2) / 2);
    const std::string_view log = input.substr(2 + 2 * cuts);
    std::vector<std::size_t> places;
    for (std::size_t cut = 0; cut < cuts; ++cut) {
        const std::size_t share = std::size_t{data[2 + 2 * cut]} * 128 + data[3 + 2 * cut] % 128;
        places.push_back(log.size() * share / (128 * 256 - 1));
    }
    std::sort(places.begin(), places.end());
    std::vector<Piece> pieces{{log.substr(0, cuts == 0 ? log.size() : places.front())}};
    for (std::size_t cut = 0; cut < cuts; ++cut) {
        const std::size_t end = cut + 1 < cuts ? places[cut + 1] : log.size();
        pieces.push_back({log.substr(places[cut], end - places[cut]), data[3 + 2 * cut] >= 128});
    }
    const std::string joined = JoinedOf(pieces);

    const fuzz::CFuzzSession::Options options = fuzz::OptionsOf(input[0]);
    static fuzz::CFuzzSession whole;
    whole.Load(joined, options);
    static fuzz::CFuzzSession session;
    std::vector<SourcePiece> sources;
    session.m_doc.m_listPieces.assign(pieces.size(), {});
    for (const Piece& piece : pieces) {
        sources.push_back({std::make_unique<CMemorySource>(piece.bytes), piece.beginsLine});
    }
    session.m_doc.m_blockReading = {BlockReading::Way::Here, kBlocks[data[1] / 64]};
    CPiecesSource source(std::move(sources));
    session.Load(source, options);
    const std::string difference = test::DifferenceOf(session.m_doc, whole.m_doc);
    fuzz::Require(difference.empty(), "in pieces, another outcome: " + difference);
    fuzz::Require(session.m_bLoaded == whole.m_bLoaded, "pieces can be read where the whole log can");
    fuzz::Require(session.m_doc.m_nBytes == whole.m_doc.m_nBytes, "pieces have the bytes of the whole log");
    if (session.m_bLoaded) {
        RequirePieces(session.m_doc, pieces, joined);
    }
    return 0;
}
