#include "common/text.h"

#include <gtest/gtest.h>

#include <clocale>

namespace {

using tarvo::ContainsAnyOf;
using tarvo::LocaleToWide;
using tarvo::RemoveChars;
using tarvo::TrimSpaces;
using tarvo::Utf8ToWide;
using tarvo::WideToLocale;
using tarvo::WideToUtf8;

// U+6E32 U+67D3 in UTF-16, UTF-8 and code page 936. Written in escapes: the tests must not depend on how a
// compiler reads their source.
const wchar_t* const kChinese = L"\x6E32\x67D3";
const char* const kChineseUtf8 = "\xE6\xB8\xB2\xE6\x9F\x93";
const char* const kChinese936 = "\xE4\xD6\xC8\xBE";

// One character outside the basic plane, as the two units of UTF-16.
const std::wstring kEmoji = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
const char* const kEmojiUtf8 = "\xF0\x9F\x98\x80";

struct Pair {
    std::wstring wide;
    std::string narrow;
};

TEST(Text, Utf8BothWays) {
    const Pair pairs[] = {{L"", ""},
                          {L"plain", "plain"},
                          {kChinese, kChineseUtf8},
                          {kEmoji, kEmojiUtf8},
                          {L"\x0416", "\xD0\x96"},
                          {L"\x07FF\x0800\xFFFD", "\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD"}};
    for (const Pair& pair : pairs) {
        EXPECT_EQ(Utf8ToWide(pair.narrow), pair.wide);
        EXPECT_EQ(WideToUtf8(pair.wide), pair.narrow);
    }
}

TEST(Text, LocaleBothWaysInCodePage936) {
    const Pair pairs[] = {{L"", ""},
                          {L"a\\b", "a\\b"},
                          {kChinese, kChinese936},
                          {L"\x00FC", "\xA8\xB9"},
                          {L"\x0416", "\xA7\xA8"},
                          {L"\x03B1", "\xA6\xC1"},
                          {L"\x3002", "\xA1\xA3"},
                          {L"\xFF01", "\xA3\xA1"},
                          {L"\x20AC", "\x80"},
                          {L"\x9F98", "\xFD\x93"}};
    for (const Pair& pair : pairs) {
        EXPECT_EQ(LocaleToWide(pair.narrow), pair.wide);
        EXPECT_EQ(WideToLocale(pair.wide), pair.narrow);
    }
}

TEST(Text, LocaleTextEndsBeforeACharacterMissingFromTheCodePage) {
    EXPECT_EQ(WideToLocale(L"ab" + kEmoji + L"cd"), "ab");
    EXPECT_EQ(WideToLocale(kEmoji), "");
}

TEST(Text, TwoBytesForEachCharacterFit) {
    const std::wstring name(300, L'\x6E32');
    EXPECT_EQ(WideToLocale(name).size(), 600u);
}

TEST(Text, ConversionsEndAtTheFirstZero) {
    EXPECT_EQ(Utf8ToWide(std::string("ab\0cd", 5)), L"ab");
    EXPECT_EQ(WideToUtf8(std::wstring(L"ab\0cd", 5)), "ab");
    EXPECT_EQ(LocaleToWide(std::string("ab\0cd", 5)), L"ab");
    EXPECT_EQ(WideToLocale(std::wstring(L"ab\0cd", 5)), "ab");
}

TEST(Text, UnpairedSurrogateBecomesTheReplacementCharacter) {
    const std::wstring lone = {L'a', static_cast<wchar_t>(0xD83D), L'b'};
    EXPECT_EQ(WideToUtf8(lone), "a\xEF\xBF\xBD"
                                "b");
}

#ifdef _WIN32
TEST(Text, LocaleToWideSetsTheLocaleToC) {
    ASSERT_NE(std::setlocale(LC_ALL, "chs"), nullptr);
    EXPECT_EQ(LocaleToWide(""), L"");
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
}

TEST(Text, WideToLocaleRestoresTheLocale) {
    ASSERT_NE(std::setlocale(LC_ALL, "German"), nullptr);
    const std::string before = std::setlocale(LC_ALL, nullptr);
    WideToLocale(kEmoji);
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
    std::setlocale(LC_ALL, "C");
}
#endif

TEST(Text, RemoveChars) {
    EXPECT_EQ(RemoveChars(L"a:b::c", L":"), L"abc");
    EXPECT_EQ(RemoveChars(L"a:b", L""), L"a:b");
    EXPECT_EQ(RemoveChars(L"", L":"), L"");
    EXPECT_EQ(RemoveChars(L"\\/:*?\"<>|", tarvo::kForbiddenNameCharacters), L"");
    EXPECT_EQ(RemoveChars(L"c|a*b", tarvo::kForbiddenNameCharacters), L"cab");
}

TEST(Text, TrimSpacesRemovesOnlyBlanks) {
    EXPECT_EQ(TrimSpaces(L"  cam 01  "), L"cam 01");
    EXPECT_EQ(TrimSpaces(L"   "), L"");
    EXPECT_EQ(TrimSpaces(L""), L"");
    EXPECT_EQ(TrimSpaces(L"\tcam\n "), L"\tcam\n");
}

TEST(Text, ContainsAnyOf) {
    EXPECT_EQ(ContainsAnyOf(L"Cam|1", tarvo::kForbiddenNameCharacters), 1);
    EXPECT_EQ(ContainsAnyOf(L"Cam1", tarvo::kForbiddenNameCharacters), 0);
    EXPECT_EQ(ContainsAnyOf(L"Cam|1", L""), 0);
    EXPECT_EQ(ContainsAnyOf(L"", tarvo::kForbiddenNameCharacters), 0);
}

TEST(Text, LoneSurrogateIsFound) {
    const wchar_t high = static_cast<wchar_t>(0xD83D);
    const wchar_t low = static_cast<wchar_t>(0xDE00);
    const std::wstring pair = {high, low};
    for (const std::wstring& whole : {std::wstring(), std::wstring(L"ab"), pair, L"a" + pair + pair + L"b"}) {
        EXPECT_FALSE(tarvo::HasLoneSurrogate(whole));
    }
    for (const std::wstring& half : {std::wstring(1, high), std::wstring(1, low), pair + high, pair + low,
                                     std::wstring({low, high}), std::wstring({high, L'a', low})}) {
        EXPECT_TRUE(tarvo::HasLoneSurrogate(half));
    }
}

TEST(Text, OnlyUnitsInTheSurrogateRangeAreSurrogates) {
    const auto unit = [](unsigned value) { return std::wstring(1, static_cast<wchar_t>(value)); };
    for (const unsigned high : {0xD800u, 0xDBFFu}) {
        EXPECT_TRUE(tarvo::HasLoneSurrogate(unit(high)));
        for (const unsigned low : {0xDC00u, 0xDFFFu}) {
            EXPECT_TRUE(tarvo::HasLoneSurrogate(unit(low)));
            EXPECT_TRUE(tarvo::HasLoneSurrogate(L"a" + unit(low)));
            EXPECT_FALSE(tarvo::HasLoneSurrogate(unit(high) + unit(low)));
            EXPECT_TRUE(tarvo::HasLoneSurrogate(unit(high) + unit(low) + unit(low)));
            EXPECT_TRUE(tarvo::HasLoneSurrogate(unit(high) + unit(high) + unit(low)));
        }
        for (const unsigned no_low : {0x41u, 0xD7FFu, 0xE000u}) {
            EXPECT_TRUE(tarvo::HasLoneSurrogate(unit(high) + unit(no_low)));
        }
    }
    for (const unsigned beside : {0xD7FFu, 0xE000u}) {
        EXPECT_FALSE(tarvo::HasLoneSurrogate(unit(beside)));
        EXPECT_FALSE(tarvo::HasLoneSurrogate(unit(beside) + unit(beside)));
    }
}

#ifdef _WIN32
// Best fit would turn these into quotation marks, a backslash, slashes, an asterisk and a colon.
TEST(Text, Utf8ToAnsiDoesNotBestFit) {
    const std::string ansi = tarvo::Utf8ToAnsi("\xEF\xBC\x82\xCA\xBA\xEF\xBC\xBC\xEF\xBC\x8F\xE2\x81\x84"
                                               "\xEF\xBC\x8A\xEF\xBC\x9A\xC4\x81\xE2\x88\x95");
    EXPECT_EQ(ansi.find_first_of("\"\\/*:a"), std::string::npos) << ansi;
}
#endif

// The host may have set one category alone.
TEST(Text, WideToLocaleRestoresEveryCategory) {
    std::setlocale(LC_ALL, "C");
    std::setlocale(LC_CTYPE, "chs");
    const std::string before = std::setlocale(LC_ALL, nullptr);
    WideToLocale(kChinese);
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
    std::setlocale(LC_ALL, "C");
}

} // namespace
