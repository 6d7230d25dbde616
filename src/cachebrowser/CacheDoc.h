// CacheDoc.h - one live cache of one running process, seen through one structure. There is nothing to save.
#pragma once

#include "cachebrowser/CacheDS.h"
#include "cachebrowser/CacheRows.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace carvelot {

class ICacheFetch;

// The window's form: what it says decides which cache is fetched.
class ICacheDSView : public IMemberList {
public:
    virtual std::string ProcessText() const = 0;
    virtual std::string HandleText() const = 0;
};

// The window's rows.
class ICacheDataView : public IDataColumns {
public:
    // Before the document's rows go.
    virtual void DeleteAllItems() = 0;
    // The document has rows that the view does not show yet. Called at the end of a fetch at the latest.
    virtual void ShowNewItems() = 0;
};

class ICacheHost {
public:
    virtual ~ICacheHost() = default;
    // A message box with an OK button.
    virtual void ShowMessage(std::string_view text) = 0;
    // Asked after each row: does the user want the fetch to stop?
    virtual bool StopFetch() = 0;
};

class CCacheDoc {
public:
    CCacheDoc() = default;
    CCacheDoc(const CCacheDoc&) = delete;
    CCacheDoc& operator=(const CCacheDoc&) = delete;

    // Fetches all rows anew through the library that pFetch binds.
    void OnRefreshData(ICacheFetch& fetch, ICacheHost& host);
    // After the structure was defined anew: the views show it, and the rows are gone until the next refresh.
    void OnStructureDefined();

    // The text of a cell. A structure without members shows each row's number.
    std::string CellText(std::size_t row, std::size_t column, FFormatMathNumeric pfnFormatMathNumeric) const;
    const CCacheRows& Rows() const { return m_rows; }
    // The rows as a list shows them, in columns that the structure makes (CCacheDS::BuildDataColumns).
    const CListSource& ListRows() const { return m_listSource; }

    ICacheDSView* m_pDSView = nullptr;
    ICacheDataView* m_pDataView = nullptr;
    FFormatMathNumeric m_pfnFormatMathNumeric = nullptr; // JDE's own, where there is JDE
    bool m_bCacheValid = false;                          // the last probe or fetch found the cache readable
    CCacheDS m_cacheDS;
    std::uint32_t m_processId = 0;
    std::string m_strHandle; // hexadecimal
    std::string m_strName;
    std::string m_strInstance;

private:
    class CListRows final : public CListSource {
    public:
        explicit CListRows(const CCacheDoc& owner) : m_owner(owner) {}
        std::size_t RowCount() const override { return m_owner.m_rows.Size(); }
        std::string Text(std::size_t row, int column) const override;

    private:
        const CCacheDoc& m_owner;
    };

    void DeleteAllItems();
    void AppendRow(std::span<const unsigned char> row);
    void FetchRows(ICacheFetch& fetch, ICacheHost& host);

    CCacheRows m_rows;
    CListRows m_listSource{*this};
    // What the rows were fetched by; the structure may be another one already while they are still shown.
    std::vector<std::shared_ptr<CMember>> m_listRowMembers;
    std::vector<std::int64_t> m_listOffsets;
};

} // namespace carvelot
