#include "text/SortKey.h"

#include "text/CaseText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>

namespace carvelot::test {

namespace {

std::vector<std::size_t> Sorted(std::size_t count, bool descending,
                                const std::function<SortKey(std::size_t)>& keyOf) {
    std::vector<std::size_t> rows(count);
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    SortByKey(rows, descending, keyOf);
    return rows;
}

// The order that comparing texts one with another gives.
std::vector<std::size_t> Compared(const std::vector<std::string>& texts, bool descending) {
    std::vector<std::size_t> rows(texts.size());
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    std::stable_sort(rows.begin(), rows.end(), [&](std::size_t a, std::size_t b) {
        const int order = CompareNoCase(texts[a], texts[b]);
        return descending ? order > 0 : order < 0;
    });
    return rows;
}

} // namespace

TEST(SortByKey, OrdersTextsAsComparingThemDoes) {
    // Texts with much in common, some beyond ASCII: two that become ASCII in upper case, one of two UTF-16
    // units, one above those.
    const std::vector<std::string> pieces = {"a",
                                             "A",
                                             "b",
                                             "_",
                                             "Z",
                                             "z",
                                             " ",
                                             "~",
                                             "ERROR: record ",
                                             "\xC5\xBF",
                                             "\xC4\xB1",
                                             "\xC3\xA9",
                                             "\xC3\x89",
                                             "\xF0\x9F\x98\x80",
                                             "\xEF\xBC\xA1",
                                             "common words of a message"};
    std::uint32_t state = 7;
    const auto draw = [&](std::size_t below) {
        state = state * 1664525 + 1013904223;
        return (state >> 16U) % below;
    };
    for (const bool ascii : {true, false}) {
        std::vector<std::string> texts(3000);
        for (std::string& text : texts) {
            for (std::size_t n = draw(6); n > 0; --n) {
                const std::string& piece = pieces[draw(pieces.size())];
                text += ascii && static_cast<unsigned char>(piece[0]) >= 0x80 ? "x" : piece;
            }
        }
        const auto keyOf = [&](std::size_t row) { return SortKey(texts[row]); };
        const auto madeKeyOf = [&](std::size_t row) { return SortKey(std::string(texts[row])); };
        for (const bool descending : {false, true}) {
            EXPECT_EQ(Sorted(texts.size(), descending, keyOf), Compared(texts, descending));
            EXPECT_EQ(Sorted(texts.size(), descending, madeKeyOf), Compared(texts, descending));
        }
    }
}

TEST(SortByKey, OrdersNumbersOfEveryKind) {
    const std::vector<double> numbers = {1.5, -2, 0, -0.0, 1e15, -1e15, 1.5, 3};
    const auto keyOf = [&](std::size_t row) { return SortKey(numbers[row]); };
    EXPECT_EQ(Sorted(numbers.size(), false, keyOf), (std::vector<std::size_t>{5, 1, 2, 3, 0, 6, 7, 4}));
    EXPECT_EQ(Sorted(numbers.size(), true, keyOf), (std::vector<std::size_t>{4, 7, 0, 6, 2, 3, 1, 5}));
    const std::vector<std::int32_t> counts = {2, -1, 0, 2};
    EXPECT_EQ(Sorted(4, false, [&](std::size_t row) { return SortKey(counts[row]); }),
              (std::vector<std::size_t>{1, 2, 0, 3}));
    const std::vector<std::uint64_t> times = {~std::uint64_t{0}, 5, std::uint64_t{1} << 63U};
    EXPECT_EQ(Sorted(3, false, [&](std::size_t row) { return SortKey(times[row]); }),
              (std::vector<std::size_t>{1, 2, 0}));
}

TEST(SortByKey, LeavesRowsWithoutAKeyInTheirOrder) {
    EXPECT_EQ(Sorted(3, true, [](std::size_t) { return SortKey(); }), (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(Sorted(0, false, [](std::size_t) { return SortKey(); }), std::vector<std::size_t>{});
}

TEST(CompareNoCase, PassesOverWhatBothBeginWith) {
    EXPECT_EQ(CompareNoCase("abc\xC3\xA9", "abc\xC3\x89"), 0);
    EXPECT_EQ(CompareNoCase("abc\xC3\xA9x", "abc\xC3\xA8x"), 1);
    EXPECT_EQ(CompareNoCase("abcd", "abc"), 1);
    EXPECT_EQ(CompareNoCase("abc", "abC_"), -1);
}

} // namespace carvelot::test
