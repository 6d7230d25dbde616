#include "cachebrowser/CacheDoc.h"

#include "cachebrowser/CacheFetch.h"
#include "text/Columns.h"
#include "text/Numbers.h"

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
    if (m_pDataView != nullptr)
        m_pDataView->DeleteAllItems();
    m_rows.Clear();
}

void CCacheDoc::AppendRow(std::span<const unsigned char> row) {
    if (m_rows.Size() == 0) {
        // Decoding a row sets some sizes right while it walks along: from its first member on, the row is
        // laid out by what they are then.
        for (const auto& pMember : m_cacheDS.m_members)
            pMember->SettleSize();
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
    if (m_pDataView != nullptr)
        m_pDataView->ShowNewItems();
}

void CCacheDoc::FetchRows(ICacheFetch& fetch, ICacheHost& host) {
    const auto nProcess = m_pDSView != nullptr
                              ? static_cast<std::uint32_t>(ReadInteger(m_pDSView->ProcessText()))
                              : m_processId;
    const std::uint64_t nHandle =
        ParseCacheHandle(m_pDSView != nullptr ? m_pDSView->HandleText() : m_strHandle);
    const auto nRowSize = m_cacheDS.CheckedRowSize();
    // Zeroed by the system, so that a row that is declared long and filled short takes no memory.
    const std::unique_ptr<unsigned char, CFree> pRow(
        nRowSize
            ? static_cast<unsigned char*>(std::calloc(static_cast<std::size_t>(std::max(*nRowSize, 1)), 1))
            : nullptr);
    std::uint64_t nCursor = 0;
    if (pRow == nullptr || fetch.Fetch(nProcess, nHandle, nCursor, pRow.get(), *nRowSize, 1) != 0) {
        m_bCacheValid = false;
        return host.ShowMessage("Invalid Cache");
    }
    // The status of a move does not count: the cursor says whether there is a row.
    fetch.Fetch(nProcess, nHandle, nCursor, pRow.get(), *nRowSize, 0);
    while (nCursor != 0) {
        AppendRow({pRow.get(), static_cast<std::size_t>(*nRowSize)});
        if (host.StopFetch())
            break;
        fetch.Fetch(nProcess, nHandle, nCursor, pRow.get(), *nRowSize, 0);
    }
}

void CCacheDoc::OnStructureDefined() {
    if (m_pDSView != nullptr)
        m_cacheDS.FillMemberList(*m_pDSView);
    DeleteAllItems();
    if (m_pDataView != nullptr)
        m_cacheDS.BuildDataColumns(*m_pDataView);
}

std::string CCacheDoc::CellText(std::size_t nRow, std::size_t nColumn,
                                FFormatMathNumeric pfnFormatMathNumeric) const {
    if (m_listRowMembers.empty())
        return std::to_string(nRow);
    return m_listRowMembers[nColumn]->DecodeMember(CRowPointer(m_rows[nRow], m_listOffsets[nColumn]),
                                                   pfnFormatMathNumeric);
}

} // namespace carvelot
