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
    const std::int32_t type = archive.ReadLong();
    m_count = archive.ReadLong();
    m_size = archive.ReadLong();
    m_name = archive.ReadString();
    m_typeName = archive.ReadString();
    m_type = type;
}

std::int32_t CCacheDS::GetRowSize() const {
    std::uint32_t size = 0;
    for (const auto& member : m_members) {
        size += static_cast<std::uint32_t>(member->m_size) * static_cast<std::uint32_t>(member->m_count);
    }
    return static_cast<std::int32_t>(size);
}

std::optional<std::int32_t> CCacheDS::CheckedRowSize() const {
    const auto fits = [](std::int64_t number) {
        return number >= std::numeric_limits<std::int32_t>::min() &&
               number <= std::numeric_limits<std::int32_t>::max();
    };
    std::int64_t size = 0;
    for (const auto& member : m_members) {
        const std::int64_t memberSize = std::int64_t{member->m_size} * member->m_count;
        size += memberSize;
        if (!fits(memberSize) || !fits(size)) {
            return std::nullopt;
        }
    }
    return size < 0 ? std::nullopt : std::optional(static_cast<std::int32_t>(size));
}

std::vector<std::int64_t> CCacheDS::MemberOffsets() const {
    std::vector<std::int64_t> offsets;
    offsets.reserve(m_members.size());
    std::int64_t offset = 0;
    for (const auto& member : m_members) {
        offsets.push_back(offset);
        offset += std::int64_t{member->m_size} * member->m_count;
    }
    return offsets;
}

void CCacheDS::CopyMembers(const CCacheDS& other) {
    if (this == &other) {
        return;
    }
    m_members.clear();
    for (const auto& member : other.m_members) {
        m_members.push_back(std::make_shared<CMember>(*member));
    }
}

void CCacheDS::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        archive.WriteCount(m_members.size());
        for (const auto& member : m_members) {
            archive.WriteObject(kMemberClass, kMemberSchema);
            member->Serialize(archive);
        }
        return;
    }
    m_members.clear();
    // The count may lie: the file's end decides.
    for (std::uint64_t left = archive.ReadCount(); left != 0 && !archive.Failed(); --left) {
        archive.ReadObject(kMemberClass, kMemberSchema);
        auto member = std::make_shared<CMember>(this);
        member->Serialize(archive);
        if (!archive.Failed()) {
            m_members.push_back(std::move(member));
        }
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
    std::vector<CColumnSpec> columns;
    columns.reserve(m_members.size());
    for (const auto& member : m_members) {
        columns.push_back(
            {member->m_name + " " + std::to_string(member->m_size) + " " + std::to_string(member->m_count),
             100});
    }
    dataView.SetColumns(std::move(columns));
}

} // namespace carvelot
