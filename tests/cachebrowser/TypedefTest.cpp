// What a pasted C typedef becomes.
#include "cachebrowser/CacheDS.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace carvelot {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// "type:size:name:count", with "u" and "*" before the type where they apply.
std::string Describe(const CMember& member) {
    return std::string(member.m_unsigned ? "u" : "") + (member.m_pointer ? "*" : "") + member.m_typeName +
           "/" + std::to_string(member.m_type) + ":" + std::to_string(member.m_size) + ":" + member.m_name +
           ":" + std::to_string(member.m_count);
}

std::vector<std::string> Parse(std::string text) {
    CCacheDS structure;
    EXPECT_FALSE(structure.ParseTypedef(text)) << "its result means nothing";
    std::vector<std::string> members;
    for (const auto& member : structure.m_members) {
        members.push_back(Describe(*member));
    }
    return members;
}

std::int32_t RowSize(std::string text) {
    CCacheDS structure;
    structure.ParseTypedef(text);
    return structure.GetRowSize();
}

TEST(TypedefTest, AnEmptyTextIsAnEmptyStructureOfSizeZero) {
    EXPECT_THAT(Parse(""), IsEmpty());
    EXPECT_THAT(Parse(" \t\r\n;;; ; "), IsEmpty());
    EXPECT_EQ(RowSize(""), 0);
}

TEST(TypedefTest, MembersFollowEachOtherWithoutPadding) {
    constexpr char kText[] = "JCHAR szName[11]; MATH_NUMERIC mnAmount; JDEDATE jdDate;";
    EXPECT_THAT(Parse(kText),
                ElementsAre("JCHAR/7:2:szName:11", "MATH_NUMERIC/8:50:mnAmount:1", "JDEDATE/9:6:jdDate:1"));
    EXPECT_EQ(RowSize(kText), 78);
    CCacheDS structure;
    std::string text = "char a; int b; short c[3]; BOOL d;";
    structure.ParseTypedef(text);
    EXPECT_THAT(structure.MemberOffsets(), ElementsAre(0, 1, 5, 11));
    EXPECT_EQ(structure.GetRowSize(), 15);
}

TEST(TypedefTest, EachTypeWordHasItsCodeAndSize) {
    EXPECT_THAT(
        Parse("int a; long b; ID c; short d; VOID e; char f; JCHAR g; MATH_NUMERIC h; JDEDATE i; bool j; "
              "BOOL k;"),
        ElementsAre("int/1:4:a:1", "long/2:4:b:1", "uID/2:4:c:1", "short/3:2:d:1", "VOID/5:8:e:1",
                    "char/6:1:f:1", "JCHAR/7:2:g:1", "MATH_NUMERIC/8:50:h:1", "JDEDATE/9:6:i:1",
                    "bool/10:4:j:1", "BOOL/10:4:k:1"));
}

TEST(TypedefTest, TypeWordsAreCaseSensitiveAndWhole) {
    EXPECT_THAT(Parse("Long x; jchar y; INT z; void v; Bool b; integer i; long2 l;"), IsEmpty());
}

TEST(TypedefTest, UnsignedCountsOnlyDirectlyBeforeTheType) {
    EXPECT_THAT(Parse("unsigned long id; unsigned int n;"), ElementsAre("ulong/2:4:id:1", "uint/1:4:n:1"));
    EXPECT_THAT(Parse("unsigned const long id;"), ElementsAre("long/2:4:id:1"));
    EXPECT_THAT(Parse("unsigned; long id;"), ElementsAre("long/2:4:id:1")) << "a new statement begins anew";
    EXPECT_THAT(Parse("unsigned* long id;"), ElementsAre("long/2:4:id:1")) << "another word";
}

TEST(TypedefTest, APointerHasFourBytesWhateverItsType) {
    EXPECT_THAT(Parse("VOID* p;"), ElementsAre("*VOID/5:4:p:1"));
    EXPECT_THAT(Parse("char* p; char * q; MATH_NUMERIC ** r; *JCHAR s; c*har t;"),
                ElementsAre("*char/6:4:p:1", "*char/6:4:q:1", "*MATH_NUMERIC/8:4:r:1", "*JCHAR/7:4:s:1",
                            "*char/6:4:t:1"));
    EXPECT_THAT(Parse("ID* p[3];"), ElementsAre("u*ID/2:4:p:3"));
}

TEST(TypedefTest, AStarBeforeTheNameLosesTheMember) {
    EXPECT_THAT(Parse("char *p; int after;"), ElementsAre("int/1:4:after:1"));
    EXPECT_THAT(Parse("char *p q;"), ElementsAre("*char/6:4:q:1")) << "the next word is its name";
    EXPECT_THAT(Parse("char x*y z;"), ElementsAre("*char/6:4:z:1")) << "all of the word is lost";
}

TEST(TypedefTest, AMemberWithoutANameIsDropped) {
    EXPECT_THAT(Parse("int; long; int x;"), ElementsAre("int/1:4:x:1"));
    EXPECT_THAT(Parse("int x"), ElementsAre("int/1:4:x:1")) << "the last semicolon may be missing";
    EXPECT_THAT(Parse("int; x;"), IsEmpty());
}

TEST(TypedefTest, WordsThatAreNoTypeArePassedOver) {
    EXPECT_THAT(Parse("typedef struct tagX {\r\n\tconst int a;\r\n\tvolatile JCHAR b[2];\r\n} X, *LPX;"),
                ElementsAre("int/1:4:a:1", "JCHAR/7:2:b:2"));
    EXPECT_THAT(Parse("HANDLE h; struct inner s; int a;"), ElementsAre("int/1:4:a:1"));
}

TEST(TypedefTest, WordsBehindAMembersNameAreTriedAsTypesAgain) {
    EXPECT_THAT(Parse("long long x;"), ElementsAre("long/2:4:long:1"));
    EXPECT_THAT(Parse("int a int b;"), ElementsAre("int/1:4:a:1", "int/1:4:b:1"));
    EXPECT_THAT(Parse("int a long;"), ElementsAre("int/1:4:a:1"));
    EXPECT_THAT(Parse("unsigned int a int b;"), ElementsAre("uint/1:4:a:1", "int/1:4:b:1"))
        << "the word before the second type is the first type";
    EXPECT_THAT(Parse("int a, b;"), ElementsAre("int/1:4:a,:1"));
    EXPECT_THAT(Parse("int x // a line comment is words;"), ElementsAre("int/1:4:x:1"));
}

TEST(TypedefTest, ArraySuffixesAreReadAsDecimalNumbers) {
    EXPECT_THAT(Parse("short a[2];"), ElementsAre("short/3:2:a:2"));
    EXPECT_EQ(RowSize("short a[2];"), 4);
    EXPECT_THAT(Parse("int a[]; int b[N]; int c[1+2]; int d[0]; int e[7; int f]7[; int g[2][3]; int h[3]x;"),
                ElementsAre("int/1:4:a:1", "int/1:4:b:1", "int/1:4:c:1", "int/1:4:d:1", "int/1:4:e:1",
                            "int/1:4:f]7:1", "int/1:4:g:2", "int/1:4:h:3"));
    EXPECT_THAT(Parse("int [5];"), ElementsAre("int/1:4::5"));
    EXPECT_THAT(Parse("int a[-3]; int b[99999999999];"), ElementsAre("int/1:4:a:-3", "int/1:4:b:2147483647"));
    EXPECT_THAT(Parse("int a [5];"), ElementsAre("int/1:4:a:1")) << "the suffix is a word of its own";
    CMember member;
    member.m_count = 3;
    CCacheDS::SetMemberName(member, "a[x]");
    EXPECT_EQ(member.m_count, 3);
    EXPECT_EQ(member.m_name, "a");
    CCacheDS::SetMemberName(member, "a[5]");
    EXPECT_EQ(member.m_count, 5);
}

TEST(TypedefTest, CommentsAreCutOut) {
    EXPECT_THAT(Parse("int a; /* one\r\ntwo\r\nthree */ int b;"), ElementsAre("int/1:4:a:1", "int/1:4:b:1"));
    EXPECT_THAT(Parse("int a/* the name */b;"), ElementsAre("int/1:4:ab:1"));
    EXPECT_THAT(Parse("/*/int a;"), ElementsAre("int/1:4:a:1")) << "the star of the start ends it too";
    EXPECT_THAT(Parse("/*/int a;/* x */"), ElementsAre("int/1:4:a:1"));
    EXPECT_THAT(Parse("//* x */* y */int a;"), ElementsAre("int/1:4:a:1"))
        << "what a cut joins is looked at again";
    EXPECT_THAT(Parse("int*/a;"), IsEmpty()) << "an end alone is no comment";
}

TEST(TypedefTest, ACommentWithoutAnEndRunsToTheEndOfTheText) {
    EXPECT_THAT(Parse("int a; /* int b; int c;"), ElementsAre("int/1:4:a:1"));
    EXPECT_THAT(Parse("int a; /*"), ElementsAre("int/1:4:a:1"));
    EXPECT_THAT(Parse("/* 1 */ int a; /* 2 * / int b;"), ElementsAre("int/1:4:a:1"));
}

TEST(TypedefTest, TheTextIsChangedInPlace) {
    CCacheDS structure;
    std::string text = "int\ta;/* c */\r\nint b;";
    structure.ParseTypedef(text);
    EXPECT_EQ(text, "int a;  int b;");
}

TEST(TypedefTest, ParsingReplacesAllMembers) {
    CCacheDS structure;
    structure.m_members.push_back(std::make_shared<CMember>());
    std::string text = "int a;";
    structure.ParseTypedef(text);
    ASSERT_EQ(structure.m_members.size(), 1U);
    EXPECT_EQ(structure.m_members[0]->m_name, "a");
    EXPECT_EQ(structure.m_members[0]->m_owner, &structure);
    text = "";
    structure.ParseTypedef(text);
    EXPECT_TRUE(structure.m_members.empty());
}

TEST(TypedefTest, AMemberMadeByAWordAloneIsNoPartOfTheStructure) {
    CCacheDS structure;
    EXPECT_EQ(structure.CreateMember("unsigned int", ""), nullptr) << "two words are no type word";
    EXPECT_EQ(structure.CreateMember("", ""), nullptr);
    EXPECT_EQ(structure.CreateMember("*", ""), nullptr);
    const auto member = structure.CreateMember("JCHAR*", "unsigned");
    ASSERT_NE(member, nullptr);
    EXPECT_EQ(Describe(*member), "u*JCHAR/7:4::1");
    EXPECT_TRUE(structure.m_members.empty());
}

TEST(TypedefTest, TheRowSizeIsComputedIn32BitsAndCheckedForWhatItCannotBe) {
    CCacheDS structure;
    std::string text = "int a[536870912];"; // 2^29 of 4 bytes
    structure.ParseTypedef(text);
    EXPECT_EQ(structure.GetRowSize(), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(structure.CheckedRowSize(), std::nullopt);
    text = "int a[1073741824];";
    structure.ParseTypedef(text);
    EXPECT_EQ(structure.GetRowSize(), 0) << "4 GiB";
    EXPECT_EQ(structure.CheckedRowSize(), std::nullopt);
    text = "char a[2147483647];";
    structure.ParseTypedef(text);
    EXPECT_EQ(structure.CheckedRowSize(), 2147483647);
    text = "char a[2147483647]; char b;";
    structure.ParseTypedef(text);
    EXPECT_EQ(structure.CheckedRowSize(), std::nullopt);
    text = "char a[-2];";
    structure.ParseTypedef(text);
    EXPECT_EQ(structure.GetRowSize(), -2);
    EXPECT_EQ(structure.CheckedRowSize(), std::nullopt);
    text = "char a[-2]; int b;";
    structure.ParseTypedef(text);
    EXPECT_EQ(structure.CheckedRowSize(), 2);
}

TEST(TypedefTest, LongTextsOfHalfCommentsAreRead) {
    std::string text;
    for (int n = 0; n < 1000000; ++n) {
        text += "/*/";
    }
    text += "int a;";
    for (int n = 0; n < 1000000; ++n) {
        text += "/*";
    }
    EXPECT_THAT(Parse(text), ElementsAre("int/1:4:a:1"));
}

// Comments cut one by one: the first start, its end from there, and once more from the beginning.
std::string CutOneByOne(std::string text) {
    for (;;) {
        const std::size_t start = text.find("/*");
        if (start == std::string::npos) {
            return text;
        }
        const std::size_t end = text.find("*/", start);
        if (end == std::string::npos) {
            return text.substr(0, start);
        }
        text.erase(start, end + 2 - start);
    }
}

TEST(TypedefTest, CuttingInOnePassIsCuttingOneByOne) {
    std::mt19937 random(20250131);
    for (int attempt = 0; attempt < 20000; ++attempt) {
        std::string text;
        for (auto n = random() % 24; n > 0; --n) {
            text.push_back("/*/*/*ab"[random() % 8]);
        }
        CCacheDS structure;
        std::string parsed = text;
        structure.ParseTypedef(parsed);
        ASSERT_EQ(parsed, CutOneByOne(text)) << text;
    }
}

} // namespace
} // namespace carvelot
