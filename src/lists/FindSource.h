// The rows of the Find list: references to records, and texts of their own once those are gone.
#pragma once

#include "session/CarvelotDoc.h"
#include "text/ListSource.h"

#include <cstdint>
#include <string>
#include <vector>

namespace carvelot {

class CFindSource final : public CListSource {
public:
    // Shows these records of the session, in their order. While they live, texts are made from them when
    // asked for.
    void Show(const CCarvelotDoc& session, std::vector<RecordIndex> records);
    // To be called before the session's records go: the rows keep what they show and lead nowhere any more.
    void LetGo(const CCarvelotDoc& session);
    void Clear();

    // The session that the rows lead to; null when its records are gone.
    const CCarvelotDoc* Session() const;
    RecordIndex Record(std::size_t row) const { return m_listRecords[row]; }

    std::size_t RowCount() const override;
    std::string Text(std::size_t row, int column) const override;

private:
    // What a row shows before its message; many rows share one.
    struct COwner {
        std::string m_strProcess; // the user in a JAS session
        std::string m_strThread;
    };

    const CCarvelotDoc* m_pSession = nullptr;
    std::uint64_t m_nLoadIdentity = 0;
    std::vector<RecordIndex> m_listRecords;

    // Rows without records: their messages, all in one, where each one ends, and the owners of the rows.
    std::string m_strMessages;
    std::vector<std::size_t> m_listEnds;
    std::vector<std::uint32_t> m_listRowOwners;
    std::vector<COwner> m_listOwners;
};

} // namespace carvelot
