#include "sources/PiecesSource.h"

namespace carvelot {

std::size_t CPiecesSource::Read(void* buffer, std::size_t size) {
    char* const bytes = static_cast<char*>(buffer);
    while (m_nPiece < m_pieces.size()) {
        if (const std::size_t got = m_pieces[m_nPiece].source->Read(bytes, size)) {
            m_nPosition += got;
            m_bInLine = bytes[got - 1] != '\n' && bytes[got - 1] != '\r';
            return got;
        }
        ++m_nPiece;
        const bool endsLine = m_bInLine && m_nPiece < m_pieces.size() && m_pieces[m_nPiece].beginsLine;
        m_nPosition += endsLine ? 1 : 0;
        m_nPieceBegin = m_nPosition;
        if (endsLine) {
            *bytes = '\n';
            m_bInLine = false;
            return 1;
        }
    }
    return 0;
}

void CPiecesSource::Rewind() {
    for (SourcePiece& piece : m_pieces) {
        piece.source->Rewind();
    }
    m_nPiece = 0;
    m_nPieceBegin = m_nPosition = 0;
    m_bInLine = false;
}

std::uint64_t CPiecesSource::Size() const {
    std::uint64_t size = 0;
    for (const SourcePiece& piece : m_pieces) {
        const std::uint64_t more = piece.source->Size();
        if (more == 0) {
            return 0;
        }
        size += more;
    }
    return size;
}

SourceProgress CPiecesSource::Progress() const {
    SourceProgress progress;
    for (const SourcePiece& piece : m_pieces) {
        const SourceProgress one = piece.source->Progress();
        progress.done += one.done;
        progress.all += one.all;
    }
    progress.piece = m_nPiece;
    progress.pieceBegin = m_nPieceBegin;
    return progress;
}

std::string CPiecesSource::Failure() const {
    for (const SourcePiece& piece : m_pieces) {
        if (std::string failure = piece.source->Failure(); !failure.empty()) {
            return failure;
        }
    }
    return {};
}

} // namespace carvelot
