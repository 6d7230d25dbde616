// SpecFiles.h - the local global table and data dictionary files of a JDE client: finding, sorting, deleting.
#pragma once

#include "text/RowSource.h"

#include <cstdint>
#include <string>
#include <vector>

namespace carvelot {

struct SpecFileRow {
    std::string m_strPath;
    std::int32_t m_nSize = 0; // the low 32 bits: 2 GiB and more show as negative

    // Paths sort without case; sizes do not sort.
    static CColumnTable<SpecFileRow> Columns();
};

class CSpecFiles final : public CRowSource<SpecFileRow> {
public:
    // The installation path that jde.ini names; empty when it names none.
    static std::string InstallationPath();

    // Lists the files anew, in the order in which they are found. False, with an empty list, when there is no
    // installation path. The source's order is that of the fill; who shows the list sorts it by column 0.
    bool Fill();

    // Asks for the deletion of these rows' files once for every row of the list. Failures are passed over.
    void Delete(const std::vector<std::size_t>& rows) const;

private:
    void Walk(const std::string& path, const char* mask);
    void AddFiles(const std::string& path, const std::string& spec, const char* mask);
};

} // namespace carvelot
