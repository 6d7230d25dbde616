#include "cachebrowser/CacheDoc.h"

#include "cachebrowser/CacheFetch.h"
#include "text/Integers.h"
#include "text/TextColumns.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

namespace carvelot {

namespace {

struct CFree {
    void operator()(void* p) const { std::free(p); }
};

} // namespace

std::string CCacheDoc::CListRows::Text(std::size_t row, int column) const {
    return WithReplacements(
        m_owner.CellText(row, static_cast<std::size_t>(column), m_owner.m_pfnFormatMathNumeric));
}

void CCacheDoc::DeleteAllItems() {
    if (m_pDataView != nullptr) {
        m_pDataView->DeleteAllItems();
    }
    m_rows.Clear();
}

void CCacheDoc::AppendRow(std::span<const unsigned char> row) {
    if (m_rows.Size() == 0) {
        // Decoding a row sets some sizes right while it walks along: from its first member on, the row is
        // laid out by what they are then.
        for (const auto& member : m_cacheDS.m_members) {
            member->SettleSize();
        }
        m_listOffsets = m_cacheDS.MemberOffsets();
        m_listRowMembers = m_cacheDS.m_members;
    }
    m_rows.Append(row);
}

void CCacheDoc::OnRefreshData(ICacheFetch& fetch, ICacheHost& host) {
    DeleteAllItems();
    switch (fetch.Bind()) {
    case ICacheFetch::NoLibrary:
        return host.ShowMessage("Cannot Load Skelmond.DLL");
    case ICacheFetch::NoEntryPoint:
        return host.ShowMessage("Get Proc address failed");
    case ICacheFetch::Bound:
        break;
    }
    try {
        FetchRows(fetch, host);
    } catch (const std::bad_alloc&) {
        // The rows that have come stay.
        host.ShowMessage("Out of memory.");
    }
    if (m_pDataView != nullptr) {
        m_pDataView->ShowNewItems();
    }
}

void CCacheDoc::FetchRows(ICacheFetch& fetch, ICacheHost& host) {
    const auto process = m_pDSView != nullptr
                             ? static_cast<std::uint32_t>(ReadInteger(m_pDSView->ProcessText()))
                             : m_processId;
    const std::uint64_t handle =
        ParseCacheHandle(m_pDSView != nullptr ? m_pDSView->HandleText() : m_strHandle);
    const auto rowSize = m_cacheDS.CheckedRowSize();
    // Zeroed by the system, so that a row that is declared long and filled short takes no memory.
    const std::unique_ptr<unsigned char, CFree> row(
        rowSize ? static_cast<unsigned char*>(std::calloc(static_cast<std::size_t>(std::max(*rowSize, 1)), 1))
                : nullptr);
    std::uint64_t cursor = 0;
    if (row == nullptr || fetch.Fetch(process, handle, cursor, row.get(), *rowSize, 1) != 0) {
        m_bCacheValid = false;
        return host.ShowMessage("Invalid Cache");
    }
    // The status of a move does not count: the cursor says whether there is a row.
    fetch.Fetch(process, handle, cursor, row.get(), *rowSize, 0);
    while (cursor != 0) {
        AppendRow({row.get(), static_cast<std::size_t>(*rowSize)});
        if (host.StopFetch()) {
            break;
        }
        fetch.Fetch(process, handle, cursor, row.get(), *rowSize, 0);
    }
}

void CCacheDoc::OnStructureDefined() {
    if (m_pDSView != nullptr) {
        m_cacheDS.FillMemberList(*m_pDSView);
    }
    DeleteAllItems();
    if (m_pDataView != nullptr) {
        m_cacheDS.BuildDataColumns(*m_pDataView);
    }
}

std::string CCacheDoc::CellText(std::size_t row, std::size_t column,
                                FFormatMathNumeric pfnFormatMathNumeric) const {
    if (m_listRowMembers.empty()) {
        return std::to_string(row);
    }
    return m_listRowMembers[column]->DecodeMember(CRowPointer(m_rows[row], m_listOffsets[column]),
                                                  pfnFormatMathNumeric);
}

} // namespace carvelot
