// All records of a session, in file order: the only owner of records. A record takes 24 bytes, its text one
// copy in the text store; what repeats from line to line is kept once in a context.
#pragma once

#include "records/Interner.h"
#include "records/LogDetail.h"
#include "records/PagedArray.h"
#include "records/UsualLine.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace carvelot {

class CProcess;
class CThread;
class CJASUser;

// What a record shares with other records of its thread or user: its identity, and where it is filed.
struct RecordContext {
    std::uint32_t processID = 0;
    std::uint32_t threadID = 0;
    std::uint32_t month = 0; // numbers of interned texts from here on
    std::uint32_t label = 0;
    std::uint32_t level = 0;
    std::uint32_t user = 0;
    std::uint32_t source = 0;
    CProcess* process = nullptr; // entered when the first record of the context is filed
    CThread* thread = nullptr;
    CJASUser* jasUser = nullptr;
};

class CDetailList {
public:
    // The most records of a session. A tree of them has at most three nodes a record, whose numbers have 32
    // bits, and a list or a tree level at most as many rows as a window can count.
    static constexpr std::size_t kMost = std::size_t{1} << 30U;

    CDetailList();

    // Appends a record; its texts are copied, its gap and duration are 0. A label that is not yet divided
    // stands in m_strThreadLabel.own; a label that runs on into the text shares its bytes. Throws
    // std::length_error for a record beyond the most, or with a text beyond the text store's; the list must
    // then be cleared.
    RecordIndex Append(const CLogDetail& detail, bool ascii);

    RecordIndex AppendUsual(const UsualLine& line);
    // Day and time of a stamp as records keep them.
    static std::uint64_t PackStamp(const LineStamp& stamp);
    // Whether a record has nothing that only Append can give it.
    bool IsUsual(RecordIndex record) const {
        const PackedDetail& packed = Packed(record);
        return OddField::In(packed.fields) == 0 && LengthField::In(packed.text) != 0;
    }
    std::uint32_t ContextNumber(RecordIndex record) const { return Packed(record).context; }
    RecordContext& ContextOfNumber(std::uint32_t context) { return m_contexts[context]; }
    // Contexts have rising numbers by their first records; each has one.
    const RecordContext& ContextOfNumber(std::uint32_t context) const { return m_contexts[context]; }
    std::uint32_t ContextCount() const { return static_cast<std::uint32_t>(m_contexts.size()); }

    std::size_t Size() const { return m_details.Size(); }
    CLogDetail operator[](RecordIndex record) const;

    LogKind Kind(RecordIndex record) const { return KindField::As<LogKind>(Packed(record).fields); }
    std::int32_t ReturnCode(RecordIndex record) const {
        return ReturnCodeField::As<std::int32_t>(Packed(record).fields);
    }
    bool IsUBE(RecordIndex record) const { return UBEField::In(Packed(record).fields) != 0; }
    std::int32_t UBELevel(RecordIndex record) const {
        return UBELevelField::As<std::int32_t>(Packed(record).fields);
    }
    float Duration(RecordIndex record) const { return m_extras[Packed(record).extra].duration; }
    float Gap(RecordIndex record) const { return m_extras[Packed(record).extra].gap; }
    std::string_view Month(RecordIndex record) const { return m_words.Text(Context(record).month); }
    std::int32_t Day(RecordIndex record) const {
        const std::uint64_t fields = Packed(record).fields;
        return OddField::In(fields) != 0 ? Odd(record).day : DayField::As<std::int32_t>(fields);
    }
    std::string_view User(RecordIndex record) const { return m_words.Text(Context(record).user); }
    std::string_view Text(RecordIndex record) const;
    // Has the beginning of a text brought into the cache, for who reads it a little later.
    [[gnu::always_inline]] inline void FetchText(RecordIndex record) const {
        const PackedDetail& packed = Packed(record);
        if (LengthField::In(packed.text) != 0) {
            m_texts.Fetch(OffsetField::In(packed.text));
        }
    }
    bool TextIsAscii(RecordIndex record) const { return AsciiField::In(Packed(record).fields) != 0; }
    std::uint64_t Time(RecordIndex record) const {
        const std::uint64_t fields = Packed(record).fields;
        if (OddField::In(fields) != 0) [[unlikely]] {
            return OddTime(record);
        }
        const std::uint64_t minutes = HourField::In(fields) * 60 + MinuteField::In(fields);
        return (minutes * 60 + SecondField::In(fields)) * 1'000'000 + MicrosecondField::In(fields);
    }
    // Records of one day and second share its number; a record with a stamp out of the ordinary has none. How
    // much of the second had passed, Fraction tells for the others.
    static constexpr std::uint64_t kNoSecond = ~std::uint64_t{0};
    std::uint64_t SecondNumber(RecordIndex record) const {
        constexpr std::uint64_t second =
            ~(DayField::kNone & HourField::kNone & MinuteField::kNone & SecondField::kNone);
        const std::uint64_t fields = Packed(record).fields;
        return OddField::In(fields) != 0 ? kNoSecond : fields & second;
    }
    std::uint64_t Fraction(RecordIndex record) const { return MicrosecondField::In(Packed(record).fields); }
    // Whether a record has a label that it shares with no other. Few that have not say so too.
    bool MayHaveOwnLabel(RecordIndex record) const {
        const std::uint64_t fields = Packed(record).fields;
        return OwnLabelField::In(fields) != 0 || OddField::In(fields) != 0;
    }
    // Whether a word stands in any text, or perhaps only in what stands one behind the other in two texts.
    // `betweenBlocks` is called every few megabytes.
    bool MayHold(std::string_view word, const std::function<void()>& betweenBlocks) const;
    RecordContext& Context(RecordIndex record) { return m_contexts[Packed(record).context]; }
    const RecordContext& Context(RecordIndex record) const { return m_contexts[Packed(record).context]; }

    void SetKind(RecordIndex record, LogKind kind) {
        std::uint64_t& fields = Packed(record).fields;
        fields = (fields & KindField::kNone) | KindField::Of(kind);
    }
    void SetDuration(RecordIndex record, float seconds) { ExtraFor(record).duration = seconds; }
    void SetGap(RecordIndex record, float seconds) { ExtraFor(record).gap = seconds; }

    SqlOperation Operation(RecordIndex record) const {
        return OperationField::As<SqlOperation>(Packed(record).fields);
    }
    std::string_view TableName(RecordIndex record) const { return m_names.Text(NameOf(record)); }
    // The number of that name, as InternName gives it.
    std::uint32_t TableNumber(RecordIndex record) const { return NameOf(record); }
    // The name of an event's start, where its line tells one.
    std::string_view DisplayName(RecordIndex record) const {
        return Kind(record) == LOG_SQL ? std::string_view{} : m_names.Text(NameOf(record));
    }
    // The number under which a SQL record's table counts: tables whose names differ in case only share one.
    std::uint32_t TableKey(RecordIndex record) { return FoldedName(NameOf(record)); }
    // The interned name behind a number that InternName gave.
    std::uint32_t InternName(std::string_view name) { return m_names.Id(name); }
    std::string_view Name(std::uint32_t id) const { return m_names.Text(id); }
    // One number for all interned names that differ in case only; 0 for the empty name.
    std::uint32_t FoldedName(std::uint32_t name);

    void Clear();

    // Has the memory made ready that the next records need. For another thread than the one that appends; not
    // while the list is cleared.
    void ProvidePages() noexcept {
        m_details.ProvidePage();
        m_texts.ProvidePage();
    }

    // For tests of the boundaries: 2^18 records and 2^22 bytes of text are the least that can be told apart.
    void LimitTo(std::size_t records, std::size_t textBytes) {
        m_details.LimitTo(records);
        m_texts.LimitTo(textBytes);
    }

private:
    // Some bits of a word.
    template <unsigned shift, unsigned bits> struct Field {
        static_assert(shift + bits <= 64);
        static constexpr std::uint64_t kMask = (std::uint64_t{1} << bits) - 1;

        static constexpr std::uint64_t Of(std::uint64_t value) { return (value & kMask) << shift; }
        static constexpr std::uint64_t In(std::uint64_t word) { return (word >> shift) & kMask; }
        template <class T> static constexpr T As(std::uint64_t word) { return static_cast<T>(In(word)); }
        static constexpr std::uint64_t kNone = ~(kMask << shift); // a word's other bits
    };
    // Of PackedDetail::fields.
    using KindField = Field<0, 5>;
    using ReturnCodeField = Field<5, 4>;
    using UBELevelField = Field<9, 4>;
    using UBEField = Field<13, 1>;
    using OperationField = Field<14, 3>;
    using DayField = Field<17, 5>;
    using HourField = Field<22, 5>;
    using MinuteField = Field<27, 6>;
    using SecondField = Field<33, 6>;
    using MicrosecondField = Field<39, 20>;
    using OddField = Field<59, 1>;      // fields that do not fit here stand in m_odd
    using OwnLabelField = Field<60, 1>; // the label ends with the stored bytes from the text's start to a tab
                                        // or line feed
    using AsciiField = Field<61, 1>;
    // Of PackedDetail::text.
    using OffsetField = Field<0, 40>;
    using LengthField = Field<40, 24>;

    struct PackedDetail {
        std::uint64_t fields;
        std::uint64_t text;
        std::uint32_t context;
        std::uint32_t extra; // 0 for nothing extra
    };
    static_assert(sizeof(PackedDetail) == 24);

    // What few records have.
    struct Extra {
        float duration;
        float gap;
        std::uint32_t name; // the display name, or the table of a SQL record
    };

    // A record with a stamp out of the ordinary, a text beyond the text store's limit, or a label that shares
    // nothing.
    struct OddDetail {
        RecordIndex record;
        std::int32_t day;
        std::int32_t hour;
        std::int32_t minute;
        std::int32_t second;
        std::int32_t microsecond;
        std::string_view text;
        std::string_view label;
    };

    PackedDetail& Packed(RecordIndex record) { return m_details[Number(record)]; }
    const PackedDetail& Packed(RecordIndex record) const { return m_details[Number(record)]; }
    Extra& ExtraFor(RecordIndex record);
    std::uint32_t AddExtra(const Extra& extra) {
        const auto number = static_cast<std::uint32_t>(m_extras.Size());
        m_extras.Add(extra);
        return number;
    }
    void AddOddText(RecordIndex record, const LineStamp& stamp, std::uint32_t fraction,
                    std::string_view text);
    std::uint32_t NameOf(RecordIndex record) const { return m_extras[Packed(record).extra].name; }
    const OddDetail& Odd(RecordIndex record) const;
    std::uint64_t OddTime(RecordIndex record) const;
    std::uint32_t ContextFor(const CLogDetail& detail, std::string_view sharedLabel);
    std::uint32_t FindOrAddContext(const CLogDetail& detail, std::string_view sharedLabel);

    CPagedArray<PackedDetail, 18> m_details;
    CPagedArray<Extra, 16> m_extras;
    CTextStore m_texts;
    std::vector<OddDetail> m_odd; // in the order of the records
    CInterner m_words;            // months, labels, levels, users, sources
    CInterner m_names;            // tables, display names, functions
    CInterner m_foldedNames;
    std::vector<std::uint32_t> m_foldedIds; // by number in m_names; 0 for not yet folded
    std::vector<RecordContext> m_contexts;
    std::vector<std::uint32_t> m_contextSlots;         // context + 1, by hash
    std::array<std::uint32_t, 256> m_recentContexts{}; // context + 1
    std::uint32_t m_nLastContext = 0;                  // context + 1
};

inline std::uint64_t CDetailList::PackStamp(const LineStamp& stamp) {
    return DayField::Of(static_cast<std::uint64_t>(stamp.day)) |
           HourField::Of(static_cast<std::uint64_t>(stamp.hour)) |
           MinuteField::Of(static_cast<std::uint64_t>(stamp.minute)) |
           SecondField::Of(static_cast<std::uint64_t>(stamp.second));
}

[[gnu::always_inline]] inline RecordIndex CDetailList::AppendUsual(const UsualLine& detail) {
    const RecordIndex record{static_cast<std::uint32_t>(m_details.Size())};
    std::uint64_t fields =
        detail.stamp.packed | MicrosecondField::Of(detail.fraction) | KindField::Of(detail.kind) |
        ReturnCodeField::Of(static_cast<std::uint64_t>(detail.returnCode)) |
        OperationField::Of(static_cast<std::uint64_t>(detail.operation)) |
        AsciiField::Of(detail.ascii ? 1 : 0) | OwnLabelField::Of(detail.labelRunsOn ? 1 : 0);
    std::uint64_t text = 0;
    if (detail.stored.size() < CTextStore::kLongest) [[likely]] {
        text = OffsetField::Of(m_texts.Add(detail.stored, detail.labelRunsOn)) |
               LengthField::Of(detail.text.size());
    } else {
        fields |= OddField::Of(1);
        AddOddText(record, detail.stamp, detail.fraction, detail.text);
    }
    const std::uint32_t extra = detail.name.empty() ? 0 : AddExtra({0, 0, m_names.Id(detail.name)});
    m_details.Add({fields, text, detail.context, extra});
    return record;
}

} // namespace carvelot
