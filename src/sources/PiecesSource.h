// Several logs as one, each behind the one before it.
#pragma once

#include "sources/LogSource.h"

#include <memory>
#include <vector>

namespace carvelot {

struct SourcePiece {
    std::unique_ptr<ILogSource> source;
    // Nothing of the line that the piece before ends with: where that one lacks its end, an end is put
    // between.
    bool beginsLine = false;
};

class CPiecesSource final : public ILogSource {
public:
    explicit CPiecesSource(std::vector<SourcePiece> pieces) : m_pieces(std::move(pieces)) {}

    std::size_t Read(void* buffer, std::size_t size) override;
    void Rewind() override;
    std::uint64_t Size() const override;
    SourceProgress Progress() const override;
    // The first of any.
    std::string Failure() const override;

private:
    std::vector<SourcePiece> m_pieces;
    std::size_t m_nPiece = 0; // that is read
    std::uint64_t m_nPieceBegin = 0;
    std::uint64_t m_nPosition = 0;
    bool m_bInLine = false;
};

} // namespace carvelot
