#include "records/DetailList.h"

#include "text/ByteScan.h"
#include "text/CaseText.h"
#include "text/Release.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>

namespace carvelot {

namespace {

// A longer label hardly repeats.
constexpr std::size_t kLongestSharedLabel = 64;
constexpr std::size_t kLongestLoneLabel = 16;

bool FitsBits(std::int32_t value, unsigned bits) { return value >= 0 && value < (std::int32_t{1} << bits); }

std::uint32_t Mix(std::uint32_t hash, std::uint32_t value) { return (hash ^ value) * 0x9E3779B1U; }

// A few of a text's bytes, enough to tell most labels apart: those of one log differ at their ends or in
// length.
std::uint32_t SampleOf(std::string_view text) {
    if (text.size() < 8) {
        return text.empty()
                   ? 0
                   : static_cast<std::uint32_t>(text.size() * 31 + static_cast<unsigned char>(text[0]));
    }
    std::uint64_t first = 0;
    std::uint64_t middle = 0;
    std::memcpy(&first, text.data(), 8);
    std::memcpy(&middle, text.data() + (text.size() - 8) / 2, 8);
    return static_cast<std::uint32_t>(((first * 31 + middle) * 0x9E3779B97F4A7C15U) >> 32U) +
           static_cast<std::uint32_t>(text.size());
}

} // namespace

CDetailList::CDetailList() {
    m_details.LimitTo(kMost);
    m_details.AskAhead();
    Clear();
}

void CDetailList::Clear() {
    m_details.Clear();
    // Memory may be what is short: nothing below takes any, but in a new list.
    if (m_extras.Size() == 0) {
        m_extras.Add({}); // what records without anything extra have
    }
    m_extras.ClearToFirst();
    m_texts.Clear();
    Release(m_odd);
    m_words.Clear();
    m_names.Clear();
    m_foldedNames.Clear();
    m_foldedIds.clear();
    Release(m_contexts);
    m_contextSlots.assign(64, 0);
    m_recentContexts.fill(0);
    m_nLastContext = 0;
}

std::uint32_t CDetailList::ContextFor(const CLogDetail& detail, std::string_view sharedLabel) {
    const auto is = [&](const RecordContext& c) {
        return c.processID == detail.m_nProcessID && c.threadID == detail.m_nThreadID &&
               SameShortText(m_words.Text(c.label), sharedLabel) &&
               SameShortText(m_words.Text(c.month), detail.m_strMonth) &&
               SameShortText(m_words.Text(c.user), detail.m_strUser) &&
               SameShortText(m_words.Text(c.source), detail.m_strSource) &&
               SameShortText(m_words.Text(c.level), detail.m_strLevel);
    };
    // Most lines follow one of their own kind.
    if (m_nLastContext != 0 && is(m_contexts[m_nLastContext - 1])) {
        return m_nLastContext - 1;
    }
    std::uint32_t quick = Mix(Mix(SampleOf(sharedLabel), detail.m_nThreadID), detail.m_nProcessID);
    quick = Mix(Mix(quick, SampleOf(detail.m_strUser)), SampleOf(detail.m_strSource));
    std::uint32_t& recent = m_recentContexts[quick >> 24U];
    if (recent == 0 || !is(m_contexts[recent - 1])) {
        recent = FindOrAddContext(detail, sharedLabel) + 1;
    }
    m_nLastContext = recent;
    return recent - 1;
}

std::uint32_t CDetailList::FindOrAddContext(const CLogDetail& detail, std::string_view sharedLabel) {
    RecordContext wanted;
    wanted.processID = detail.m_nProcessID;
    wanted.threadID = detail.m_nThreadID;
    wanted.month = m_words.Id(detail.m_strMonth);
    wanted.label = m_words.Id(sharedLabel);
    wanted.level = m_words.Id(detail.m_strLevel);
    wanted.user = m_words.Id(detail.m_strUser);
    wanted.source = m_words.Id(detail.m_strSource);
    const auto hashOf = [](const RecordContext& c) {
        std::uint32_t hash = Mix(Mix(Mix(c.processID * 0x85EBCA6BU, c.threadID), c.month), c.label);
        hash = Mix(Mix(Mix(hash, c.level), c.user), c.source);
        return hash ^ (hash >> 15U);
    };
    const auto same = [&](const RecordContext& c) {
        return c.processID == wanted.processID && c.threadID == wanted.threadID && c.month == wanted.month &&
               c.label == wanted.label && c.level == wanted.level && c.user == wanted.user &&
               c.source == wanted.source;
    };
    std::size_t slot = hashOf(wanted) & (m_contextSlots.size() - 1);
    while (m_contextSlots[slot] != 0) {
        const std::uint32_t context = m_contextSlots[slot] - 1;
        if (same(m_contexts[context])) {
            return context;
        }
        slot = (slot + 1) & (m_contextSlots.size() - 1);
    }
    const auto context = static_cast<std::uint32_t>(m_contexts.size());
    m_contexts.push_back(wanted);
    m_contextSlots[slot] = context + 1;
    if (m_contexts.size() * 2 > m_contextSlots.size()) {
        std::vector<std::uint32_t> slots(m_contextSlots.size() * 2, 0);
        for (std::uint32_t i = 0; i < m_contexts.size(); ++i) {
            std::size_t at = hashOf(m_contexts[i]) & (slots.size() - 1);
            while (slots[at] != 0) {
                at = (at + 1) & (slots.size() - 1);
            }
            slots[at] = i + 1;
        }
        m_contextSlots = std::move(slots);
    }
    return context;
}

RecordIndex CDetailList::Append(const CLogDetail& detail, bool ascii) {
    const RecordIndex record{static_cast<std::uint32_t>(m_details.Size())};
    std::uint64_t fields = KindField::Of(detail.m_nKind) |
                           ReturnCodeField::Of(static_cast<std::uint64_t>(detail.m_nReturnCode)) |
                           UBELevelField::Of(static_cast<std::uint64_t>(detail.m_nUBELevel)) |
                           UBEField::Of(detail.m_bUBE ? 1 : 0) |
                           OperationField::Of(static_cast<std::uint64_t>(detail.m_nSQLOperation)) |
                           AsciiField::Of(ascii ? 1 : 0);
    bool odd = true;
    if (FitsBits(detail.m_nDay, 5) && FitsBits(detail.m_nHour, 5) && FitsBits(detail.m_nMinute, 6) &&
        FitsBits(detail.m_nSecond, 6) && FitsBits(detail.m_nMicrosecond, 20)) {
        odd = false;
        fields |= DayField::Of(static_cast<std::uint64_t>(detail.m_nDay)) |
                  HourField::Of(static_cast<std::uint64_t>(detail.m_nHour)) |
                  MinuteField::Of(static_cast<std::uint64_t>(detail.m_nMinute)) |
                  SecondField::Of(static_cast<std::uint64_t>(detail.m_nSecond)) |
                  MicrosecondField::Of(static_cast<std::uint64_t>(detail.m_nMicrosecond));
    }

    // Where the label goes: to the shared words as a whole, or shared up to where the text begins and from
    // there on the text's own bytes, or to the odd ones.
    std::string_view shared = detail.m_strThreadLabel.own;
    std::string_view oddLabel;
    std::string_view stored = detail.m_strText;
    bool ownLabel = false;
    if (!shared.empty()) {
        const char* const labelEnd = shared.data() + shared.size();
        const char* const textBegin = stored.data();
        const std::less_equal<const char*> notBehind;
        if (stored.empty()) {
            if (shared.size() > kLongestLoneLabel) {
                stored = shared;
                shared = {};
                ownLabel = true;
            }
        } else if (notBehind(shared.data(), textBegin) && std::less<const char*>{}(textBegin, labelEnd)) {
            const auto before = static_cast<std::size_t>(textBegin - shared.data());
            if (before <= kLongestSharedLabel) {
                // Blanks that the text was trimmed of, and what the label holds behind them, stand right
                // behind it.
                if (stored.data() + stored.size() < labelEnd) {
                    stored = {stored.data(), static_cast<std::size_t>(labelEnd - stored.data())};
                }
                shared = shared.substr(0, before);
                ownLabel = true;
            } else {
                oddLabel = shared;
                shared = {};
            }
        } else if (shared.size() > kLongestSharedLabel) {
            oddLabel = shared;
            shared = {};
        }
    }

    std::string_view keptText;
    std::uint64_t text = 0;
    if (stored.size() >= CTextStore::kLongest) {
        keptText = m_texts.Keep(detail.m_strText);
        odd = true;
        if (ownLabel) {
            oddLabel = detail.m_strThreadLabel.own;
            shared = {};
            ownLabel = false;
        }
    } else {
        // The line feed, which no line holds, ends a label that no tab ends.
        text = OffsetField::Of(m_texts.Add(stored, ownLabel)) | LengthField::Of(detail.m_strText.size());
    }
    fields |= OwnLabelField::Of(ownLabel ? 1 : 0);
    if (odd || !oddLabel.empty()) {
        fields |= OddField::Of(1);
        m_odd.push_back({record, detail.m_nDay, detail.m_nHour, detail.m_nMinute, detail.m_nSecond,
                         detail.m_nMicrosecond, keptText, m_texts.Keep(oddLabel)});
    }
    m_details.Add({fields, text, ContextFor(detail, shared), 0});
    const std::string_view name = detail.m_nKind == LOG_SQL ? detail.m_strTable : detail.m_strName;
    if (!name.empty()) {
        ExtraFor(record).name = m_names.Id(name);
    }
    return record;
}

// A statement that its parameters made long; no line is that long.
void CDetailList::AddOddText(RecordIndex record, const LineStamp& stamp, std::uint32_t fraction,
                             std::string_view text) {
    m_odd.push_back({record,
                     stamp.day,
                     stamp.hour,
                     stamp.minute,
                     stamp.second,
                     static_cast<std::int32_t>(fraction),
                     m_texts.Keep(text),
                     {}});
}

CDetailList::Extra& CDetailList::ExtraFor(RecordIndex record) {
    PackedDetail& packed = Packed(record);
    if (packed.extra == 0) {
        packed.extra = AddExtra({});
    }
    return m_extras[packed.extra];
}

const CDetailList::OddDetail& CDetailList::Odd(RecordIndex record) const {
    return *std::lower_bound(m_odd.begin(), m_odd.end(), record,
                             [](const OddDetail& odd, RecordIndex r) { return odd.record < r; });
}

std::string_view CDetailList::Text(RecordIndex record) const {
    const PackedDetail& packed = Packed(record);
    if (OddField::In(packed.fields) != 0) {
        const OddDetail& odd = Odd(record);
        if (odd.text.data() != nullptr) {
            return odd.text;
        }
    }
    const std::size_t length = LengthField::In(packed.text);
    return length == 0 ? std::string_view{} : m_texts.View(OffsetField::In(packed.text), length);
}

bool CDetailList::MayHold(std::string_view word, const std::function<void()>& betweenBlocks) const {
    return m_texts.Holds(word, betweenBlocks);
}

std::uint64_t CDetailList::OddTime(RecordIndex record) const {
    const OddDetail& odd = Odd(record);
    return LogTime(odd.hour, odd.minute, odd.second, odd.microsecond);
}

CLogDetail CDetailList::operator[](RecordIndex record) const {
    const PackedDetail& packed = Packed(record);
    const RecordContext& context = m_contexts[packed.context];
    CLogDetail detail;
    detail.m_nKind = KindField::As<LogKind>(packed.fields);
    detail.m_nSQLOperation = OperationField::As<SqlOperation>(packed.fields);
    detail.m_bUBE = UBEField::In(packed.fields) != 0;
    detail.m_nReturnCode = ReturnCodeField::As<std::int32_t>(packed.fields);
    detail.m_nUBELevel = UBELevelField::As<std::int32_t>(packed.fields);
    detail.m_nDay = DayField::As<std::int32_t>(packed.fields);
    detail.m_nHour = HourField::As<std::int32_t>(packed.fields);
    detail.m_nMinute = MinuteField::As<std::int32_t>(packed.fields);
    detail.m_nSecond = SecondField::As<std::int32_t>(packed.fields);
    detail.m_nMicrosecond = MicrosecondField::As<std::int32_t>(packed.fields);
    detail.m_nProcessID = context.processID;
    detail.m_nThreadID = context.threadID;
    detail.m_strText = Text(record);
    detail.m_strMonth = m_words.Text(context.month);
    detail.m_strLevel = m_words.Text(context.level);
    detail.m_strUser = m_words.Text(context.user);
    detail.m_strSource = m_words.Text(context.source);
    detail.m_strThreadLabel.shared = m_words.Text(context.label);
    if (OwnLabelField::In(packed.fields) != 0) {
        detail.m_strThreadLabel.own = m_texts.ViewUpTo(OffsetField::In(packed.text), '\t', '\n');
    }
    if (OddField::In(packed.fields) != 0) {
        const OddDetail& odd = Odd(record);
        detail.m_nDay = odd.day;
        detail.m_nHour = odd.hour;
        detail.m_nMinute = odd.minute;
        detail.m_nSecond = odd.second;
        detail.m_nMicrosecond = odd.microsecond;
        if (!odd.label.empty()) {
            detail.m_strThreadLabel.own = odd.label;
        }
    }
    detail.m_nTime = LogTime(detail.m_nHour, detail.m_nMinute, detail.m_nSecond, detail.m_nMicrosecond);
    const Extra& extra = m_extras[packed.extra];
    detail.m_fDuration = extra.duration;
    detail.m_fGap = extra.gap;
    (detail.m_nKind == LOG_SQL ? detail.m_strTable : detail.m_strName) = m_names.Text(extra.name);
    return detail;
}

std::uint32_t CDetailList::FoldedName(std::uint32_t name) {
    if (name == 0) {
        return 0;
    }
    if (m_foldedIds.size() <= name) {
        m_foldedIds.resize(std::max(m_names.Count(), m_foldedIds.size() * 2), 0);
    }
    std::uint32_t& key = m_foldedIds[name];
    if (key == 0) {
        key = m_foldedNames.Id(FoldedCase(m_names.Text(name)));
    }
    return key;
}

} // namespace carvelot
