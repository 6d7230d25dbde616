#include "analysis/CacheWords.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

namespace carvelot::test {

namespace {

// Every word by a search of its own.
CacheWords BySearches(std::string_view message) {
    CacheWords words;
    const auto behind = [&](std::string_view marker) {
        const std::size_t place = message.find(marker);
        return place == std::string_view::npos ? CacheWords::kNone : place + marker.size();
    };
    words.name = behind("Name:[");
    words.instance = behind("Nm:[");
    words.handle = behind("hCache:[");
    words.cursor = behind("hCursor:[");
    for (const auto& [word, call] : {std::pair{"jdeCacheInit", CacheWords::CALL_CACHE_INIT},
                                     {"jdeCacheAdd", CacheWords::CALL_CACHE_ADD},
                                     {"jdeCacheUpdate", CacheWords::CALL_CACHE_UPDATE},
                                     {"jdeCacheDelete", CacheWords::CALL_CACHE_DELETE},
                                     {"jdeCacheDeleteAll", CacheWords::CALL_CACHE_DELETE_ALL},
                                     {"jdeCacheFetch", CacheWords::CALL_CACHE_FETCH},
                                     {"jdeCacheTerminate", CacheWords::CALL_CACHE_TERMINATE},
                                     {"jdeCacheTerminateAll", CacheWords::CALL_CACHE_TERMINATE_ALL},
                                     {"jdeCacheResetCursor", CacheWords::CALL_CACHE_RESET_CURSOR},
                                     {"jdeCacheCloseCursor", CacheWords::CALL_CACHE_CLOSE_CURSOR},
                                     {"Created new cache", CacheWords::CALL_CREATED},
                                     {"Found existing cache", CacheWords::CALL_FOUND},
                                     {"Open Cursor Success", CacheWords::CALL_CURSOR_OPEN}}) {
        words.calls |= message.find(word) == std::string_view::npos ? 0U : call;
    }
    return words;
}

void ExpectSame(std::string_view message) {
    const CacheWords found = FindCacheWords(message);
    const CacheWords searched = BySearches(message);
    EXPECT_EQ(found.calls, searched.calls) << message;
    EXPECT_EQ(found.name, searched.name) << message;
    EXPECT_EQ(found.instance, searched.instance) << message;
    EXPECT_EQ(found.handle, searched.handle) << message;
    EXPECT_EQ(found.cursor, searched.cursor) << message;
}

} // namespace

TEST(FindCacheWords, FindsTheWordsOfEachCall) {
    const CacheWords fetch =
        FindCacheWords("Entering jdeCacheFetchPosition              hCursor:[5bf1f01c] hCache:[e5762607]");
    EXPECT_EQ(fetch.calls, CacheWords::CALL_CACHE_FETCH);
    EXPECT_EQ(fetch.cursor, 53U);
    EXPECT_EQ(fetch.handle, 71U);
    EXPECT_EQ(fetch.instance, CacheWords::kNone);
    EXPECT_EQ(fetch.name, CacheWords::kNone);
    const CacheWords terminate = FindCacheWords("Entering jdeCacheTerminateAll");
    EXPECT_TRUE(terminate.Hold(CacheWords::CALL_CACHE_TERMINATE_ALL));
    EXPECT_TRUE(terminate.Hold(CacheWords::CALL_CACHE_TERMINATE)) << "its name holds the other one";
    EXPECT_FALSE(terminate.Hold(CacheWords::CALL_CACHE_DELETE));
    EXPECT_EQ(FindCacheWords("").calls, 0U);
}

TEST(FindCacheWords, FindsInAnyMessageWhatASearchForEachWordFinds) {
    constexpr std::string_view parts[] = {"jdeCache",
                                          "Init",
                                          "Add",
                                          "Update",
                                          "DeleteAll",
                                          "Fetch",
                                          "TerminateAll",
                                          "ResetCursor",
                                          "Delete",
                                          "Close",
                                          "Cursor",
                                          "Name:[",
                                          "Nm:[",
                                          "hCache",
                                          "hCursor",
                                          ":[",
                                          "Created",
                                          " new ",
                                          "cache",
                                          "Found ",
                                          "existing ",
                                          "Open ",
                                          "Success",
                                          "h",
                                          "C",
                                          "jde",
                                          "N",
                                          "F",
                                          "O",
                                          " ",
                                          "x",
                                          "\xC3\xA4",
                                          "CACHE",
                                          "hCache:",
                                          "]",
                                          "Created new cache"};
    std::mt19937 random(20);
    for (int run = 0; run < 20'000; ++run) {
        std::string message;
        const std::size_t count = random() % 12;
        for (std::size_t i = 0; i < count; ++i) {
            message += parts[random() % std::size(parts)];
        }
        ExpectSame(message);
        if (HasFailure()) {
            return;
        }
    }
}

} // namespace carvelot::test
