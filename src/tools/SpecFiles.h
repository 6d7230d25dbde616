// SpecFiles.h - the local global table and data dictionary files of a JDE client: finding, sorting, deleting.
#pragma once

#include "text/ListSource.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace carvelot {

// The columns of the list, by number.
inline constexpr std::array<CColumnSpec, 2> kSpecFileColumns{{{"Spec File", 250}, {"Size", 150}}};

class CSpecFiles final : public CListSource {
public:
    // The installation path that jde.ini names; empty when it names none.
    static std::string InstallationPath();

    // Lists the files anew, in the order in which they are found. False, with an empty list, when there is no
    // installation path. The source's order is that of the fill; who shows the list sorts it by column 0.
    bool Fill();

    // Asks for the deletion of these rows' files once for every row of the list. Failures are passed over.
    void Delete(const std::vector<std::size_t>& listRows) const;

    std::size_t RowCount() const override { return m_listRows.size(); }
    std::string Text(std::size_t nRow, int nColumn) const override;
    // Below 0, 0 or above 0: paths compare without case; sizes do not sort.
    int OnCompareItems(std::size_t nRowA, std::size_t nRowB, int nColumn) const;
    void Sort(std::vector<std::size_t>& listOrder, int nColumn, bool bDescending) const override;

private:
    struct CRow {
        std::string m_strPath;
        std::int32_t m_nSize = 0; // the low 32 bits: 2 GiB and more show as negative
    };

    void Walk(const std::string& strPath, const char* pszMask);
    void AddFiles(const std::string& strPath, const std::string& strSpec, const char* pszMask);

    std::vector<CRow> m_listRows;
};

} // namespace carvelot
