#include "Support/Text.h"

#include <gtest/gtest.h>

namespace kippo {

TEST(Text, CountsWhatPeopleCallACharacter) {
    const std::string family = "👨‍👩‍👧‍👦", flag = "🇳🇴", accent = "e\u0301";
    EXPECT_EQ(Text::prefix(family + flag + accent + "x", 3), family + flag + accent);
    EXPECT_EQ(Text::prefix(flag + flag + flag, 2), flag + flag);
    EXPECT_EQ(Text::prefix("\r\nab", 2), "\r\na");
    EXPECT_EQ(Text::prefix("a\u0301b", 1), "a\u0301");
    EXPECT_FALSE(Text::isLongerThan(family + family, 2));
    EXPECT_TRUE(Text::isLongerThan(family + family, 1));
    EXPECT_EQ(Text::shortened("abcdef", 5, 3), "abc…");
    EXPECT_EQ(Text::shortened("abcde", 5, 3), "abcde");
}

TEST(Text, RepairsWhatIsNotUtf8) {
    EXPECT_EQ(Text::validUtf8("a\xFF\xC3(é"), "a\uFFFD\uFFFD(é");
    EXPECT_EQ(Text::validUtf8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Text::prefix("\xFF\xFF\xFF", 2).size(), 2U);
}

TEST(Text, TakesTextApart) {
    EXPECT_EQ(Text::lastPathComponent("/a/b/"), "b");
    EXPECT_EQ(Text::lastPathComponent("/"), "/");
    EXPECT_EQ(Text::split("  a  b ", ' '), (std::vector<std::string_view>{"a", "b"}));
    EXPECT_EQ(Text::trimmed(" \t a b\n"), "a b");
}

} // namespace kippo
