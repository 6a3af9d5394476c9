#include "tests/support/module_resources.h"

#include "common/string_table.h"
#include "common/text.h"
#include "resources/resource_ids.h"
#include "submit/plugin_config.h"
#include "tests/support/dialog_metrics.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace support {
namespace {

using Texts = std::map<unsigned, std::wstring>;

// The look-up buffer holds 256 characters with the closing zero.
constexpr std::size_t kLongestText = 255;

// The numbers of all texts, read from resource_ids.h.
const std::vector<unsigned>& text_numbers() {
    static const std::vector<unsigned> numbers = [] {
        std::vector<unsigned> found;
        std::istringstream header(read_file(test_data_folder() + "/../../resources/resource_ids.h"));
        for (std::string line; std::getline(header, line);) {
            std::istringstream words(line);
            std::string define;
            std::string name;
            unsigned number = 0;
            if (words >> define >> name >> number && define == "#define" && name.compare(0, 4, "IDS_") == 0) {
                found.push_back(number);
            }
        }
        return found;
    }();
    return numbers;
}

const std::pair<unsigned, const wchar_t*> kFormats[] = {
    {IDS_FORMAT_JPG, L"JPG"}, {IDS_FORMAT_BMP, L"BMP"}, {IDS_FORMAT_CIN, L"CIN"}, {IDS_FORMAT_DDS, L"DDS"},
    {IDS_FORMAT_EPS, L"EPS"}, {IDS_FORMAT_EXR, L"EXR"}, {IDS_FORMAT_HDR, L"HDR"}, {IDS_FORMAT_PNG, L"PNG"},
    {IDS_FORMAT_RGB, L"RGB"}, {IDS_FORMAT_RLA, L"RLA"}, {IDS_FORMAT_RPF, L"RPF"}, {IDS_FORMAT_TGA, L"TGA"},
    {IDS_FORMAT_TIF, L"TIF"},
};

// Names that are not translated. The menu's title is one of them because the menu is found by its title.
const unsigned kProductNames[] = {IDS_CLASS_CATEGORY, IDS_CLASS_NAME, IDS_MENU_TITLE, IDS_CAPTION};

std::set<unsigned> NumbersOf(const Texts& texts) {
    std::set<unsigned> numbers;
    for (const auto& entry : texts) {
        numbers.insert(entry.first);
    }
    return numbers;
}

bool IsSameInBothLanguages(unsigned id) {
    const auto is_id = [id](const std::pair<unsigned, const wchar_t*>& format) { return format.first == id; };
    return std::any_of(std::begin(kFormats), std::end(kFormats), is_id) ||
           std::find(std::begin(kProductNames), std::end(kProductNames), id) != std::end(kProductNames);
}

// Format signs and control characters, in order: code reads them.
std::wstring Markers(const std::wstring& text) {
    std::wstring markers;
    for (const wchar_t unit : text) {
        if (unit == L'%' || unit < L' ') {
            markers.push_back(unit);
        }
    }
    return markers;
}

bool IsHan(wchar_t unit) {
    return unit >= 0x4E00 && unit <= 0x9FFF;
}

// The first violation of the Chinese typesetting rules in `text`; empty when there is none.
std::wstring TypesettingFault(const std::wstring& text) {
    for (std::size_t i = 1; i < text.size(); ++i) {
        const bool access_key = text[i] == L'(' && i + 1 < text.size() && text[i + 1] == L'&';
        if (IsHan(text[i - 1]) && !access_key && std::wcschr(L",.;:!?()\"", text[i]) != nullptr) {
            return text.substr(i - 1, 2);
        }
    }
    for (const wchar_t* other_word : {L"摄像机", L"相机", L"照相机", L"区块", L"图块"}) {
        if (text.find(other_word) != std::wstring::npos) {
            return other_word;
        }
    }
    return std::wstring();
}

class StringTableIn : public ::testing::TestWithParam<LANGID> {
protected:
    const Texts texts = StringTable(GetParam());
};

TEST_P(StringTableIn, HoldsExactlyTheNumbersInUse) {
    ASSERT_FALSE(text_numbers().empty());
    EXPECT_EQ(std::set<unsigned>(text_numbers().begin(), text_numbers().end()), NumbersOf(texts));
}

TEST_P(StringTableIn, FitsTheLookUpBuffer) {
    for (const auto& entry : texts) {
        EXPECT_LE(entry.second.size(), kLongestText) << "text " << entry.first;
    }
}

TEST_P(StringTableIn, NamesTheFormatsByTheirExtensions) {
    for (const auto& format : kFormats) {
        EXPECT_EQ(format.second, texts.at(format.first));
    }
}

TEST_P(StringTableIn, PathPrefixesEndWithAColonAndOtherTextsWithoutABlank) {
    for (const auto& entry : texts) {
        const std::wstring& text = entry.second;
        const bool prefix = entry.first == IDS_NOTICE_MISSING_FILE || entry.first == IDS_NOTICE_SAME_FILE;
        if (prefix) {
            const bool ready = text.back() == L'\uFF1A' || text.substr(text.size() - 2) == L": ";
            EXPECT_TRUE(ready) << "text " << entry.first;
        } else {
            EXPECT_FALSE(std::iswspace(text.back())) << "text " << entry.first;
        }
        EXPECT_FALSE(std::iswspace(text.front())) << "text " << entry.first;
    }
}

TEST_P(StringTableIn, NamesTheVersionThatTheDialogCompares) {
    for (const unsigned id : {IDS_ABOUT_TEXT, IDS_VERSION_TOO_LOW}) {
        EXPECT_NE(std::wstring::npos, texts.at(id).find(tarvo::kPluginVersion)) << "text " << id;
    }
}

TEST_P(StringTableIn, NamesEveryForbiddenCharacter) {
    for (const unsigned id : {IDS_CAMERA_NAME_INVALID, IDS_NAME_CHARACTERS_REMOVED}) {
        for (const wchar_t unit : std::wstring(tarvo::kForbiddenNameCharacters)) {
            EXPECT_NE(std::wstring::npos, texts.at(id).find(unit)) << "text " << id;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, StringTableIn, ::testing::Values(kEnglish, kChinese),
                         [](const ::testing::TestParamInfo<LANGID>& language) {
                             return language.param == kEnglish ? "English" : "Chinese";
                         });

TEST(StringTableTest, TranslatesEveryTextExceptNames) {
    const Texts english = StringTable(kEnglish);
    const Texts chinese = StringTable(kChinese);
    for (const unsigned id : text_numbers()) {
        EXPECT_EQ(IsSameInBothLanguages(id), english.at(id) == chinese.at(id)) << "text " << id;
    }
}

TEST(StringTableTest, KeepsMarkersInTheTranslation) {
    const Texts english = StringTable(kEnglish);
    const Texts chinese = StringTable(kChinese);
    for (const unsigned id : text_numbers()) {
        EXPECT_EQ(Markers(english.at(id)), Markers(chinese.at(id))) << "text " << id;
    }
}

TEST(StringTableTest, SwitchesTheLanguageOfMessageBoxes) {
    EXPECT_EQ(L"0", StringTable(kEnglish).at(IDS_LANGUAGE_SWITCH));
    EXPECT_EQ(L"1", StringTable(kChinese).at(IDS_LANGUAGE_SWITCH));
}

TEST(StringTableTest, ChineseTextsFollowTheTypesettingRules) {
    for (const auto& entry : StringTable(kChinese)) {
        EXPECT_EQ(std::wstring(), TypesettingFault(entry.second)) << "text " << entry.first;
    }
}

TEST(StringTableTest, TypesettingCheckFindsErrors) {
    EXPECT_EQ(L"名:", TypesettingFault(L"文件名: a"));
    EXPECT_EQ(L"摄像机", TypesettingFault(L"没有摄像机。"));
    EXPECT_EQ(std::wstring(), TypesettingFault(L"提交(&S)"));
}

// All texts that the product loads come from one of the two languages.
TEST(StringTableTest, AllTextsOfAProcessComeFromOneLanguage) {
    const bool is_english = tarvo::Text(IDS_LANGUAGE_SWITCH) == L"0";
    const Texts expected = StringTable(is_english ? kEnglish : kChinese);
    for (const unsigned id : text_numbers()) {
        EXPECT_EQ(expected.at(id), tarvo::Text(id)) << "text " << id;
    }
}

// A neutral entry would be found before the Chinese one, and without 0x0409 the other languages have nothing
// to fall back to.
TEST(ResourcesTest, ExistInEnglishAndChinese) {
    const std::vector<LANGID> both = {kEnglish, kChinese};
    for (const unsigned id : text_numbers()) {
        EXPECT_EQ(both, ResourceLanguages(RT_STRING, id / 16 + 1)) << "text " << id;
    }
    EXPECT_EQ(both, ResourceLanguages(RT_DIALOG, IDD_MAIN));
    EXPECT_EQ(both, ResourceLanguages(RT_DIALOG, IDD_CAMERA_EDIT));
}

TEST(ResourcesTest, HoldAManifestThatCanBeActivated) {
    const ActiveManifest manifest;
    EXPECT_TRUE(manifest.active());
}

TEST(ResourcesTest, CarryTheVersionThatTheDialogCompares) {
    const std::vector<LANGID> languages = ResourceLanguages(RT_VERSION, VS_VERSION_INFO);
    ASSERT_EQ(1u, languages.size());
    const ResourceBytes bytes = FindResourceBytes(RT_VERSION, VS_VERSION_INFO, languages[0]);
    // The fixed part follows the block's own name: three words, sixteen characters, padding.
    constexpr std::size_t kFixedPart = 40;
    VS_FIXEDFILEINFO version = {};
    ASSERT_GE(bytes.size, kFixedPart + sizeof version);
    std::memcpy(&version, bytes.data + kFixedPart, sizeof version);
    ASSERT_EQ(static_cast<DWORD>(VS_FFI_SIGNATURE), version.dwSignature);
    const std::wstring file_version = std::to_wstring(HIWORD(version.dwFileVersionMS)) + L"." +
                                      std::to_wstring(LOWORD(version.dwFileVersionMS)) + L"." +
                                      std::to_wstring(HIWORD(version.dwFileVersionLS));
    EXPECT_EQ(tarvo::kPluginVersion, file_version);
}

} // namespace
} // namespace support
