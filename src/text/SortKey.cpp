#include "text/SortKey.h"

#include "platform/CodePage.h"
#include "text/ByteScan.h"
#include "text/CaseText.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <utility>

namespace carvelot {

namespace {

// A row with the eight bytes of its text that are being compared, or with its number.
struct Entry {
    std::uint64_t key;
    std::uint32_t row;
    std::uint32_t text;
};

constexpr std::uint64_t kNotAscii = 0xFF;

// Eight characters in upper case from a place of the text on, as one number that orders as they do. It ends
// with zeros where the text ends, and with kNotAscii and zeros at a character that bytes do not order.
std::uint64_t KeyAt(std::string_view text, std::size_t place) {
    std::uint64_t key = 0;
    const std::size_t end = std::min(text.size(), place + 8);
    unsigned shift = 64;
    for (; place < end; ++place) {
        const auto c = static_cast<unsigned char>(text[place]);
        shift -= 8;
        if (c >= 0x80) {
            return key | (kNotAscii << shift);
        }
        key |= static_cast<std::uint64_t>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c) << shift;
    }
    return key;
}

bool HoldsNotAscii(std::uint64_t key) { return (key & 0x8080808080808080U) != 0; }

// Up to where two texts are the same that are so up to `from`; `end` where they are so up to there.
std::size_t CommonUpTo(std::string_view a, std::string_view b, std::size_t from, std::size_t end) {
    end = std::min({end, a.size(), b.size()});
    while (from + 8 <= end && Load64(a.data() + from) == Load64(b.data() + from)) {
        from += 8;
    }
    while (from < end && a[from] == b[from]) {
        ++from;
    }
    return from;
}

class CSorter {
public:
    CSorter(std::vector<std::string_view> texts, bool descending)
        : m_texts(std::move(texts)), m_bDescending(descending) {}

    // Equal keys keep their order in both orders.
    void SortKeys(std::span<Entry> run) const {
        if (m_bDescending) {
            std::ranges::stable_sort(run, std::ranges::greater{}, &Entry::key);
        } else {
            std::ranges::stable_sort(run, std::ranges::less{}, &Entry::key);
        }
    }

    // Sorts rows whose texts are the same up to a place: by the next eight characters, then each run of rows
    // that have these in common by the next ones.
    void SortTexts(std::span<Entry> run, std::size_t place) const {
        const std::string_view first = m_texts[run.front().text];
        std::size_t common = first.size();
        bool same = true; // in length
        for (const Entry& entry : run) {
            const std::string_view text = m_texts[entry.text];
            same = same && text.size() == first.size();
            common = CommonUpTo(text, first, place, common);
        }
        if (same && common == first.size()) {
            return;
        }
        // A place within a character would not be one in another text.
        while (common > place && (static_cast<unsigned char>(first[common - 1]) & 0x80U) != 0) {
            --common;
        }
        place = common;
        for (Entry& entry : run) {
            entry.key = KeyAt(m_texts[entry.text], place);
        }
        SortKeys(run);
        for (std::size_t begin = 0; begin < run.size();) {
            std::size_t end = begin + 1;
            while (end < run.size() && run[end].key == run[begin].key) {
                ++end;
            }
            const std::span<Entry> equal = run.subspan(begin, end - begin);
            if (HoldsNotAscii(run[begin].key)) {
                std::stable_sort(equal.begin(), equal.end(), [this](const Entry& a, const Entry& b) {
                    const int order = CompareNoCase(m_texts[a.text], m_texts[b.text]);
                    return m_bDescending ? order > 0 : order < 0;
                });
            } else if (equal.size() > 1 && (run[begin].key & 0xFFU) != 0) {
                SortTexts(equal, place + 8);
            }
            begin = end;
        }
    }

private:
    std::vector<std::string_view> m_texts;
    bool m_bDescending;
};

} // namespace

void SortByKey(std::vector<std::size_t>& rows, bool descending,
               const std::function<SortKey(std::size_t row)>& keyOf) {
    if (rows.empty()) {
        return;
    }
    std::vector<Entry> entries;
    entries.reserve(rows.size());
    std::vector<std::string_view> texts;
    std::deque<std::string> kept;
    const bool isText = keyOf(rows.front()).IsText();
    for (const std::size_t row : rows) {
        const SortKey key = keyOf(row);
        entries.push_back(
            {key.Number(), static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(texts.size())});
        if (!isText) {
            continue;
        }
        // In upper case a character can become ASCII.
        const bool ascii = key.IsKnownAscii() || platform::IsAscii(key.Text());
        texts.push_back(ascii && !key.IsMade()
                            ? key.Text()
                            : kept.emplace_back(ascii ? std::string(key.Text()) : FoldedCase(key.Text())));
    }
    const CSorter sorter(std::move(texts), descending);
    if (isText) {
        sorter.SortTexts(entries, 0);
    } else {
        sorter.SortKeys(entries);
    }
    std::transform(entries.begin(), entries.end(), rows.begin(),
                   [](const Entry& entry) { return entry.row; });
}

} // namespace carvelot
