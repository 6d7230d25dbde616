// CacheDS.h - what a row of a cache looks like: its columns one after the other, without any padding.
#pragma once

#include "text/RowSource.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

class CArchive;
class CCacheDS;

// JDE's own formatting of a MATH_NUMERIC: a zeroed block of 128 bytes for the text, the number's bytes.
using FFormatMathNumeric = std::int32_t (*)(char16_t*, const void*);

// These numbers also stand in definition files.
enum EMemberType : std::int32_t {
    MEMBER_INT = 1,
    MEMBER_LONG = 2, // and ID
    MEMBER_SHORT = 3,
    MEMBER_BYTE = 4, // of no word; out of files only
    MEMBER_VOID = 5,
    MEMBER_CHAR = 6,
    MEMBER_JCHAR = 7,
    MEMBER_MATH_NUMERIC = 8,
    MEMBER_JDEDATE = 9,
    MEMBER_BOOL = 10
};

// A place in a row. Bytes before the row's start and behind its end read as zero.
class CRowPointer {
public:
    CRowPointer(std::span<const unsigned char> row, std::int64_t offset) : m_row(row), m_nOffset(offset) {}

    unsigned char At(std::int64_t n) const;
    // The bytes from here on that the row holds, size at most; none before its start.
    std::span<const unsigned char> Bytes(std::int64_t size) const;

private:
    std::span<const unsigned char> m_row;
    std::int64_t m_nOffset;
};

// One column. Texts are UTF-8.
class CMember {
public:
    CMember() = default;
    explicit CMember(CCacheDS* owner) : m_owner(owner) {}

    void Serialize(CArchive& archive);
    // The column's text in the row. Types that are not shown have their size set right by the way.
    std::string DecodeMember(const CRowPointer& row, FFormatMathNumeric pfnFormatMathNumeric);
    // The size that decoding gives to a type that is not shown.
    void SettleSize();

    std::int32_t m_type = 0;
    std::int32_t m_size = 0; // of one element, in bytes
    std::string m_name;      // without an array suffix
    std::int32_t m_count = 1;
    bool m_unsigned = false;
    bool m_pointer = false;
    CCacheDS* m_owner = nullptr; // whom it was made for
    std::string m_typeName;      // as written, without "*" and "unsigned"
};

// A member in a list. Rows keep their members alive, so that a list that was not refilled still shows what it
// did.
using MemberRow = std::shared_ptr<CMember>;
CColumnTable<MemberRow> MemberColumns();

class CMemberRows final : public CRowSource<MemberRow> {
public:
    CMemberRows() : CRowSource(MemberColumns()) {}
};

// A list that shows a structure, one row a member.
class IMemberList {
public:
    virtual ~IMemberList() = default;
    // In the place of all rows.
    virtual void Fill(std::vector<MemberRow> rows) = 0;
};

// A list that shows rows of a cache.
class IDataColumns {
public:
    virtual ~IDataColumns() = default;
    // In the place of all columns; the rows go.
    virtual void SetColumns(std::vector<CColumnSpec> columns) = 0;
};

class CCacheDS {
public:
    CCacheDS() = default;
    CCacheDS(const CCacheDS&) = delete;
    CCacheDS& operator=(const CCacheDS&) = delete;

    // Replaces the members by what a C typedef defines. Its comments and line breaks become blanks in place.
    // What it cannot read is passed over; the result is always false and means nothing.
    bool ParseTypedef(std::string& text);
    // A member of a type word, or null when it is none. It does not belong to the structure yet.
    std::shared_ptr<CMember> CreateMember(std::string word, std::string_view previousWord);
    // Splits "name[count]"; a count that is missing or 0 leaves the member's as it was.
    static void SetMemberName(CMember& member, std::string_view word);
    // The sum of all members, computed in 32 bits.
    std::int32_t GetRowSize() const;
    // The same, or nothing when it is negative or needs more than 32 bits on the way.
    std::optional<std::int32_t> CheckedRowSize() const;
    // Where each member starts.
    std::vector<std::int64_t> MemberOffsets() const;
    void Clear() { m_members.clear(); }
    // Copies of the other structure's members in the place of its own.
    void CopyMembers(const CCacheDS& other);

    // Loading replaces the members; after a failure those that were whole remain.
    void Serialize(CArchive& archive);

    void FillMemberList(IMemberList& list) const;
    void BuildDataColumns(IDataColumns& dataView) const;

    std::vector<std::shared_ptr<CMember>> m_members;
};

} // namespace carvelot
