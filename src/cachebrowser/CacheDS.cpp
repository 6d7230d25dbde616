#include "cachebrowser/CacheDS.h"

#include "cachebrowser/Archive.h"

#include <limits>

namespace carvelot {

namespace {

constexpr std::string_view kMemberClass = "CMember";
constexpr std::uint16_t kMemberSchema = 1;

} // namespace

void CMember::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        archive.WriteByte(m_pointer ? 1 : 0);
        archive.WriteByte(m_unsigned ? 1 : 0);
        archive.WriteLong(m_type);
        archive.WriteLong(m_count);
        archive.WriteLong(m_size);
        archive.WriteString(m_name);
        archive.WriteString(m_typeName);
        return;
    }
    m_pointer = archive.ReadByte() != 0;
    m_unsigned = archive.ReadByte() != 0;
    const std::int32_t nType = archive.ReadLong();
    m_count = archive.ReadLong();
    m_size = archive.ReadLong();
    m_name = archive.ReadString();
    m_typeName = archive.ReadString();
    m_type = nType;
}

std::int32_t CCacheDS::GetRowSize() const {
    std::uint32_t nSize = 0;
    for (const auto& pMember : m_members)
        nSize += static_cast<std::uint32_t>(pMember->m_size) * static_cast<std::uint32_t>(pMember->m_count);
    return static_cast<std::int32_t>(nSize);
}

std::optional<std::int32_t> CCacheDS::CheckedRowSize() const {
    const auto fits = [](std::int64_t nNumber) {
        return nNumber >= std::numeric_limits<std::int32_t>::min() &&
               nNumber <= std::numeric_limits<std::int32_t>::max();
    };
    std::int64_t nSize = 0;
    for (const auto& pMember : m_members) {
        const std::int64_t nMember = std::int64_t{pMember->m_size} * pMember->m_count;
        nSize += nMember;
        if (!fits(nMember) || !fits(nSize))
            return std::nullopt;
    }
    return nSize < 0 ? std::nullopt : std::optional(static_cast<std::int32_t>(nSize));
}

std::vector<std::int64_t> CCacheDS::MemberOffsets() const {
    std::vector<std::int64_t> listOffsets;
    listOffsets.reserve(m_members.size());
    std::int64_t nOffset = 0;
    for (const auto& pMember : m_members) {
        listOffsets.push_back(nOffset);
        nOffset += std::int64_t{pMember->m_size} * pMember->m_count;
    }
    return listOffsets;
}

void CCacheDS::CopyMembers(const CCacheDS& other) {
    if (this == &other)
        return;
    m_members.clear();
    for (const auto& pMember : other.m_members)
        m_members.push_back(std::make_shared<CMember>(*pMember));
}

void CCacheDS::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        archive.WriteCount(m_members.size());
        for (const auto& pMember : m_members) {
            archive.WriteObject(kMemberClass, kMemberSchema);
            pMember->Serialize(archive);
        }
        return;
    }
    m_members.clear();
    // The count may lie: the file's end decides.
    for (std::uint64_t nLeft = archive.ReadCount(); nLeft != 0 && !archive.Failed(); --nLeft) {
        archive.ReadObject(kMemberClass, kMemberSchema);
        auto pMember = std::make_shared<CMember>(this);
        pMember->Serialize(archive);
        if (!archive.Failed())
            m_members.push_back(std::move(pMember));
    }
}

CColumnTable<MemberRow> MemberColumns() {
    using enum EAlign;
    // clang-format off
    static constexpr CListColumn<MemberRow> columns[] = {
        {"Column Name", 100, Left, [](const MemberRow& member) { return member->m_name; }},
        {"Data Type",    70, Left, [](const MemberRow& member) { return member->m_typeName; }},
        {"Array Size",   60, Left, [](const MemberRow& member) { return std::to_string(member->m_count); }},
    };
    // clang-format on
    return columns;
}

void CCacheDS::FillMemberList(IMemberList& list) const { list.Fill(m_members); }

void CCacheDS::BuildDataColumns(IDataColumns& dataView) const {
    std::vector<CColumnSpec> listColumns;
    listColumns.reserve(m_members.size());
    for (const auto& pMember : m_members)
        listColumns.push_back(
            {pMember->m_name + " " + std::to_string(pMember->m_size) + " " + std::to_string(pMember->m_count),
             100});
    dataView.SetColumns(std::move(listColumns));
}

} // namespace carvelot
