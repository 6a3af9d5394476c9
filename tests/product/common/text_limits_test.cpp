// The conversions of every possible character, and of invalid bytes.
#include "common/text.h"

#include <gtest/gtest.h>

namespace {

using tarvo::LocaleToWide;
using tarvo::Utf8ToWide;
using tarvo::WideToUtf8;

const std::wstring kFirstPair = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0xDC00)};
const std::wstring kLastPair = {static_cast<wchar_t>(0xDBFF), static_cast<wchar_t>(0xDFFF)};

// All but the zero, which ends a text, and the surrogates.
std::wstring single_units(unsigned first, unsigned last) {
    std::wstring units;
    for (unsigned unit = first; unit <= last; ++unit) {
        if (unit < 0xD800 || unit > 0xDFFF) {
            units += static_cast<wchar_t>(unit);
        }
    }
    return units;
}

void expect_unchanged(const std::wstring& text, std::size_t utf8_bytes) {
    const std::string utf8 = WideToUtf8(text);
    EXPECT_EQ(utf8.size(), utf8_bytes);
    EXPECT_TRUE(Utf8ToWide(utf8) == text) << text.size() << " units";
}

TEST(TextLimits, EveryUnitExceptSurrogatesConvertsBackUnchanged) {
    expect_unchanged(single_units(0x0001, 0x007F), 0x7F);
    expect_unchanged(single_units(0x0080, 0x07FF), 0x780 * 2);
    expect_unchanged(single_units(0x0800, 0xFFFF), (0xF800 - 0x800) * 3);
    expect_unchanged(single_units(0x0001, 0xFFFF), 0x7F + 0x780 * 2 + (0xF800 - 0x800) * 3);
}

TEST(TextLimits, FirstAndLastSurrogatePairConvertBackUnchanged) {
    EXPECT_EQ(WideToUtf8(kFirstPair), "\xF0\x90\x80\x80");
    EXPECT_EQ(WideToUtf8(kLastPair), "\xF4\x8F\xBF\xBF");
    expect_unchanged(kFirstPair + kLastPair, 8);
}

// Runs of one to nine characters of each kind, next to runs of every other kind.
TEST(TextLimits, MixedCharacterWidthsConvertBackUnchanged) {
    const std::wstring kinds[] = {L"a", L"\x0416", L"\x6E32", kFirstPair, kLastPair};
    const std::size_t bytes[] = {1, 2, 3, 4, 4};
    for (std::size_t length = 1; length < 10; ++length) {
        std::wstring text;
        std::size_t utf8_bytes = 0;
        for (std::size_t turn = 0; turn < 50; ++turn) {
            for (const std::size_t kind : {turn % 5, turn / 5 % 5}) {
                for (std::size_t times = 0; times < length; ++times) {
                    text += kinds[kind];
                }
                utf8_bytes += length * bytes[kind];
            }
        }
        expect_unchanged(text, utf8_bytes);
    }
}

// The C runtime of Windows refuses the whole text and leaves the buffer empty; iconv, in the native build,
// has already written the text before the invalid byte.
#ifdef _WIN32
const wchar_t* const kBeforeTheFault = L"";
#else
const wchar_t* const kBeforeTheFault = L"ab";
#endif

TEST(TextLimits, InvalidBytesInCodePage936AreNotConverted) {
    const char* const at_the_end = "ab\xE4";
    const char* const before_a_blank = "ab\xE4 cd";
    const char* const before_a_digit = "ab\x81\x30";
    const char* const no_character = "ab\xFF"
                                     "cd";
    for (const char* text : {at_the_end, before_a_blank, before_a_digit, no_character}) {
        EXPECT_EQ(LocaleToWide(text), kBeforeTheFault) << ::testing::PrintToString(text);
    }
    EXPECT_EQ(LocaleToWide("\xE4"), L"");
    EXPECT_EQ(LocaleToWide("\xFF"), L"");
}

} // namespace
