// Which names of referenced files count as Cyrillic: U+0400 to U+052F, searched for in the UTF-8 text.
#include "common/string_table.h"
#include "resources/resource_ids.h"
#include "scene/scene_data.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// Written with JSON's own escapes, which the library turns into UTF-8.
bool is_noticed(const std::wstring& path) {
    support::plugin_folder();
    tarvo::SceneData scene;
    std::wstring text = L"{\"cameras\":[{\"name\":\"A\"}],\"reference_file\":[{\"path\":\"" + path + L"\"}]}";
    scene.set_analysis_text(text);
    EXPECT_EQ(scene.parse_analysis(), 0);
    const std::vector<std::wstring>& notices = scene.messages();
    return std::count(notices.begin(), notices.end(), tarvo::Text(IDS_NOTICE_CYRILLIC)) != 0;
}

struct Case {
    const wchar_t* path;
    bool noticed;
};

TEST(CyrillicReferences, OnlyCharactersFrom0400To052FAreNoticed) {
    const Case cases[] = {
        {L"plain.png", false},   {L"\\u03ff.png", false}, {L"\\u0400.png", true},  {L"\\u043f.png", true},
        {L"\\u0440.png", true},  {L"\\u04ff.png", true},  {L"\\u0500.png", true},  {L"\\u052f.png", true},
        {L"\\u0530.png", false}, {L"\\u053f.png", false}, {L"\\u0580.png", false},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(is_noticed(one.path), one.noticed) << one.path;
    }
}

// The search reads eight bytes at a time while they are ASCII.
TEST(CyrillicReferences, CharacterIsFoundAtAnyPosition) {
    for (std::size_t before = 0; before < 20; ++before) {
        for (std::size_t behind = 0; behind < 10; ++behind) {
            const std::wstring path = std::wstring(before, L'a') + L"\\u0416" + std::wstring(behind, L'b');
            EXPECT_TRUE(is_noticed(path)) << before << " before, " << behind << " behind";
            EXPECT_FALSE(is_noticed(std::wstring(before + 1 + behind, L'a')));
        }
    }
}

TEST(CyrillicReferences, CharacterIsFoundAfterOtherNonAsciiCharacters) {
    for (const wchar_t* before : {L"\\u00e9", L"\\u573a", L"\\ud83d\\ude00", L"\\u03ff"}) {
        EXPECT_TRUE(is_noticed(std::wstring(before) + L"\\u0416")) << before;
        EXPECT_FALSE(is_noticed(std::wstring(before) + L"a")) << before;
    }
}

} // namespace
