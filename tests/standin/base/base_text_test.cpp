// Text conversions and strict JSON, which all stand-ins share.
#include "standin/base/json.h"
#include "standin/base/text.h"
#include "standin/base/wildcards.h"

#include <gtest/gtest.h>

namespace {

const char* const kEveryLength = "a\xC3\xA9\xE7\x9B\xB8\xF0\x9F\x8E\xA5";

TEST(StandinText, FourByteSequenceIsASurrogatePair) {
    const std::wstring wide = base::to_wide(kEveryLength);
    ASSERT_EQ(wide.size(), 5u);
    EXPECT_EQ(wide[3], static_cast<wchar_t>(0xD83C));
    EXPECT_EQ(base::to_utf8(wide), kEveryLength);
    EXPECT_EQ(base::to_utf8(base::to_utf16(kEveryLength)), kEveryLength);
}

TEST(StandinText, LoneSurrogateBecomesTheReplacementCharacter) {
    EXPECT_EQ(base::to_utf8(std::wstring(1, static_cast<wchar_t>(0xDC00))), "\xEF\xBF\xBD");
    EXPECT_EQ(base::to_utf8(std::u16string(u"a") + char16_t(0xD83C) + u"b"), "a\xEF\xBF\xBD"
                                                                             "b");
}

TEST(StandinText, InvalidBytesBecomeTheReplacementCharacter) {
    for (const char* const bad : {"\xC0\x80", "\xE7\x9B", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF"}) {
        EXPECT_FALSE(base::is_utf8(bad));
        EXPECT_EQ(base::to_wide(bad)[0], static_cast<wchar_t>(0xFFFD));
        EXPECT_EQ(base::to_wide(std::string("a") + bad + "b").front(), L'a');
        EXPECT_EQ(base::to_wide(std::string("a") + bad + "b").back(), L'b');
    }
}

TEST(StandinText, RunsOfBlanksCollapse) {
    EXPECT_EQ(base::collapsed("  a \t\r\n b  "), "a b");
    EXPECT_EQ(base::collapsed(" \n"), "");
}

TEST(StandinText, WildcardsMatchTheWholeText) {
    const struct {
        std::string text;
        std::string pattern;
        bool match;
    } cases[] = {{"", "*", true},       {"aXXbcd", "a*b?d", true}, {"a.7z.7z", "*.7z", true},
                 {"aab", "*ab", true},  {"a", "a?", false},        {"ab", "a", false},
                 {"abc", "a*d", false}, {"Ab", "ab", false}};
    for (const auto& one : cases) {
        EXPECT_EQ(base::matches_wildcards(one.text, one.pattern), one.match)
            << one.text << " " << one.pattern;
    }
}

TEST(StandinText, LinesEndWithLfOrCrLf) {
    EXPECT_EQ(base::lines_of("a\r\n\nb"), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_TRUE(base::lines_of("").empty());
}

std::string json_problem(const std::string& text) {
    Json::Value value;
    std::string problem;
    return base::parse_strictly(text, value, problem) ? "accepted" : problem;
}

TEST(StandinJson, OnlyStrictJsonIsAccepted) {
    EXPECT_EQ(json_problem("{\"a\":[1]}"), "accepted");
    EXPECT_EQ(json_problem("\xEF\xBB\xBF{\"a\":1}"), "accepted");
    for (const std::string& bad :
         {std::string(), std::string("{} x"), std::string("// no\n{}"), std::string(3000, '[')}) {
        EXPECT_NE(json_problem(bad), "accepted") << bad;
    }
    EXPECT_NE(json_problem("{\"a\":1,\"a\":2}").find("Duplicate key: 'a'"), std::string::npos);
}

TEST(StandinText, OnlyAsciiLettersAreFolded) {
    EXPECT_TRUE(base::equal_ignoring_case("Content-TYPE", "content-type"));
    EXPECT_FALSE(base::equal_ignoring_case("\xC3\x84", "\xC3\xA4"));
    EXPECT_FALSE(base::equal_ignoring_case("a", "ab"));
}

} // namespace
