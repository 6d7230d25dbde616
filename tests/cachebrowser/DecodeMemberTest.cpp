// What the bytes of a row read as.
#include "cachebrowser/CacheDS.h"

#include "platform/DateText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace carvelot {
namespace {

using Row = std::vector<unsigned char>;

std::string Decode(CMember& member, const Row& row, std::int64_t offset = 0,
                   FFormatMathNumeric pfnFormat = nullptr) {
    return member.DecodeMember(CRowPointer(row, offset), pfnFormat);
}

std::string DecodeAs(const char* type, std::int32_t count, const Row& row,
                     FFormatMathNumeric pfnFormat = nullptr) {
    CCacheDS structure;
    const auto member = structure.CreateMember(type, "unsigned");
    member->m_count = count;
    return Decode(*member, row, 0, pfnFormat);
}

Row Wide(std::u16string_view text) {
    Row row;
    for (const char16_t ch : text) {
        row.push_back(static_cast<unsigned char>(ch));
        row.push_back(static_cast<unsigned char>(ch >> 8));
    }
    return row;
}

Row Date(int year, int month, int day) {
    Row row;
    for (const int n : {year, month, day}) {
        row.push_back(static_cast<unsigned char>(n));
        row.push_back(static_cast<unsigned char>(n >> 8));
    }
    return row;
}

TEST(DecodeMemberTest, WholeNumbersAreSignedWhateverTheyAreCalled) {
    for (const char* type : {"int", "long", "ID"}) {
        EXPECT_EQ(DecodeAs(type, 1, {0x2A, 0, 0, 0}), "42");
        EXPECT_EQ(DecodeAs(type, 1, {0xFF, 0xFF, 0xFF, 0xFF}), "-1");
        EXPECT_EQ(DecodeAs(type, 1, {0, 0, 0, 0x80}), "-2147483648");
        EXPECT_EQ(DecodeAs(type, 3, {1, 2, 0, 0, 9, 9, 9, 9}), "513") << "of an array the first";
    }
}

TEST(DecodeMemberTest, APointerIsNotLookedAt) {
    for (const char* type : {"int*", "VOID*", "MATH_NUMERIC*", "JCHAR*", "short*"}) {
        EXPECT_EQ(DecodeAs(type, 1, {}), "Pointer");
    }
    CMember member;
    member.m_type = 77;
    member.m_pointer = true;
    EXPECT_EQ(Decode(member, {}), "Pointer");
}

TEST(DecodeMemberTest, TypesThatAreNotShownHaveTheirSizeSetRight) {
    for (const auto& [type, size] : {std::pair(3, 2), std::pair(4, 1), std::pair(5, 8)}) {
        CMember member;
        member.m_type = type;
        member.m_size = 77;
        EXPECT_EQ(Decode(member, {1, 2, 3, 4, 5, 6, 7, 8}), "Not Handled");
        EXPECT_EQ(member.m_size, size);
        member.m_size = 4;
        member.m_pointer = true;
        EXPECT_EQ(Decode(member, {}), "Pointer");
        EXPECT_EQ(member.m_size, 4) << "not that of a pointer";
    }
    for (const int type : {0, 11, -1}) {
        CMember member;
        member.m_type = type;
        member.m_size = 77;
        EXPECT_EQ(Decode(member, {1, 2, 3, 4}), "Not Handled");
        EXPECT_EQ(member.m_size, 77);
    }
}

TEST(DecodeMemberTest, CharactersEndAtTheFirstZeroOrAtTheArraysEnd) {
    const Row row = {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'X'};
    EXPECT_EQ(DecodeAs("char", 10, row), "0123456789");
    EXPECT_EQ(DecodeAs("char", 1, row), "0");
    EXPECT_EQ(DecodeAs("char", 5, {'a', 0, 'b', 'c', 'd'}), "a");
    EXPECT_EQ(DecodeAs("char", 5, {0, 'b', 'c', 'd', 'e'}), "");
    EXPECT_EQ(DecodeAs("char", -5, row), "");
    EXPECT_EQ(DecodeAs("char", 3, {0xE4, 0xF6, 0x80}), "\xC3\xA4\xC3\xB6\xE2\x82\xAC") << "in the code page";
}

TEST(DecodeMemberTest, WideCharactersEndAtTheFirstZeroUnitOrAtTheArraysEnd) {
    EXPECT_EQ(DecodeAs("JCHAR", 5, Wide(u"Grün!?")), "Gr\xC3\xBCn!");
    EXPECT_EQ(DecodeAs("JCHAR", 5, Wide(std::u16string_view(u"ab\0cd", 5))), "ab");
    EXPECT_EQ(DecodeAs("JCHAR", 2, Wide(u"\xD83D\xDEB2")), "\xF0\x9F\x9A\xB2");
    EXPECT_EQ(DecodeAs("JCHAR", 2, Wide(u"\x0100\x0061")), "\xC4\x80"
                                                           "a")
        << "a zero byte is no zero unit";
    CMember member;
    member.m_type = MEMBER_JCHAR;
    member.m_size = 1;
    member.m_count = 3;
    EXPECT_EQ(Decode(member, {'a', 0, 'b', 'c'}), "ab") << "half a unit has a zero behind it";
}

TEST(DecodeMemberTest, ABoolIsItsFirstByte) {
    EXPECT_EQ(DecodeAs("bool", 1, {1, 0, 0, 0}), "True");
    EXPECT_EQ(DecodeAs("BOOL", 1, {0x80, 0, 0, 0}), "True");
    EXPECT_EQ(DecodeAs("bool", 1, {0, 1, 0, 0}), "False");
    EXPECT_EQ(DecodeAs("BOOL", 1, {0, 0, 0, 0}), "False");
}

TEST(DecodeMemberTest, ADateIsInTheUsersShortFormAndEmptyWhenThereIsNone) {
    const std::string date = *platform::AutomationDateText(2025, 1, 31);
    EXPECT_FALSE(date.empty());
#ifndef _WIN32
    EXPECT_EQ(date, "2025-01-31");
#endif
    EXPECT_EQ(DecodeAs("JDEDATE", 1, Date(2025, 1, 31)), date);
    EXPECT_EQ(DecodeAs("JDEDATE", 1, Date(2024, 2, 29)), *platform::AutomationDateText(2024, 2, 29));
    EXPECT_EQ(DecodeAs("JDEDATE", 1, Date(0, 0, 0)), "");
    EXPECT_EQ(DecodeAs("JDEDATE", 1, Date(2025, 2, 30)), "");
    EXPECT_EQ(DecodeAs("JDEDATE", 1, Date(2023, 2, 29)), "");
    EXPECT_EQ(DecodeAs("JDEDATE", 1, Date(25, 1, 31)), "") << "it would come back as another year";
    EXPECT_EQ(DecodeAs("JDEDATE", 1, Date(-1, 1, 31)), "");
    EXPECT_EQ(DecodeAs("JDEDATE", 1, Date(2025, 13, 1)), "");
    EXPECT_EQ(DecodeAs("JDEDATE", 1, Date(2025, 0, 1)), "");
    EXPECT_NE(DecodeAs("JDEDATE", 1, Date(9999, 12, 31)), "");
    EXPECT_EQ(DecodeAs("JDEDATE", 1, Date(10000, 1, 1)), "");
    EXPECT_NE(DecodeAs("JDEDATE", 1, Date(100, 1, 1)), "");
}

std::string s_strGiven;
std::string s_strBlock; // what the next formatting leaves

std::int32_t Format(char16_t* text, const void* number) {
    s_strGiven.assign(static_cast<const char*>(number), 50);
    std::copy(s_strBlock.begin(), s_strBlock.end(), reinterpret_cast<char*>(text));
    return 0;
}

TEST(DecodeMemberTest, AMathNumericIsFormattedByItsLibrary) {
    Row row;
    for (int n = 1; n <= 60; ++n) {
        row.push_back(static_cast<unsigned char>(n));
    }
    EXPECT_EQ(DecodeAs("MATH_NUMERIC", 1, row), "N/A");
    s_strBlock.assign("1\0"
                      "2\0"
                      ".\0"
                      "5\0",
                      8);
    EXPECT_EQ(DecodeAs("MATH_NUMERIC", 1, row, Format), "12.5");
    EXPECT_EQ(s_strGiven, std::string(reinterpret_cast<const char*>(row.data()), 50))
        << "the bytes as they stand";
    s_strBlock.clear();
    EXPECT_EQ(DecodeAs("MATH_NUMERIC", 1, row, Format), "") << "it wrote nothing";
}

TEST(DecodeMemberTest, ABlockThatLooksLikeUnicodeIsReadAs8BitText) {
    // 64 units without a zero, behind the mark of UTF-16: the test takes them for it, so they are read as
    // bytes.
    s_strBlock = "\xFF\xFE";
    while (s_strBlock.size() < 128) {
        s_strBlock.append("7\0", 2);
    }
    EXPECT_EQ(DecodeAs("MATH_NUMERIC", 1, {}, Format), "\xC3\xBF\xC3\xBE"
                                                       "7");
}

TEST(DecodeMemberTest, WhatStandsOutsideTheRowReadsAsZero) {
    CCacheDS structure;
    const Row row = {1, 2, 'a', 'b'};
    EXPECT_EQ(Decode(*structure.CreateMember("int", ""), row, 2), std::to_string('a' + 256 * 'b'));
    EXPECT_EQ(Decode(*structure.CreateMember("int", ""), row, 4), "0");
    EXPECT_EQ(Decode(*structure.CreateMember("int", ""), row, 4000000000), "0");
    EXPECT_EQ(Decode(*structure.CreateMember("int", ""), row, -2), std::to_string(65536 + 2 * 16777216));
    const auto text = structure.CreateMember("char", "");
    text->m_count = 2147483647;
    EXPECT_EQ(Decode(*text, row, 2), "ab");
    EXPECT_EQ(Decode(*text, row, 4), "");
    EXPECT_EQ(Decode(*text, row, -1), "");
    const auto wide = structure.CreateMember("JCHAR", "");
    wide->m_count = 2147483647;
    EXPECT_EQ(Decode(*wide, row, 3), "b");
    EXPECT_EQ(Decode(*structure.CreateMember("bool", ""), row, 9), "False");
    EXPECT_EQ(Decode(*structure.CreateMember("JDEDATE", ""), row, 3), "");
    s_strBlock.clear();
    EXPECT_EQ(Decode(*structure.CreateMember("MATH_NUMERIC", ""), row, 3, Format), "");
    EXPECT_EQ(s_strGiven, "b" + std::string(49, '\0')) << "the number's bytes end with the row";
}

} // namespace
} // namespace carvelot
