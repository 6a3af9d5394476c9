#include "scene/scene_scripts.h"

#include "common/string_table.h"
#include "tests/support/test_boxes.h"
#include "tests/support/test_host.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using tarvo::AnalysisCommand;
using tarvo::Text;

constexpr const wchar_t* kCall = L"gMax.analysis \"\" \"\"";

TEST(AnalysisRun, TheCommandLoadsTheScriptAndCallsItWithTwoEmptyTexts) {
    EXPECT_EQ(AnalysisCommand(L"C:/s/a.mse"), std::wstring(L"fileIn \"C:/s/a.mse\"\n") + kCall);
}

TEST(AnalysisRun, PathWithBlanksIsQuoted) {
    EXPECT_EQ(AnalysisCommand(L"C:/Program Data/my  scripts/a b.mse"),
              std::wstring(L"fileIn \"C:/Program Data/my  scripts/a b.mse\"\n") + kCall);
}

TEST(AnalysisRun, PathIsNotEscaped) {
    EXPECT_EQ(AnalysisCommand(L"C:\\new \"one\"\\\u811a\u672c.mse"),
              std::wstring(L"fileIn \"C:\\new \"one\"\\\u811a\u672c.mse\"\n") + kCall);
}

TEST(AnalysisRun, TheCommandHasOneLineFeedAndNoCarriageReturn) {
    const std::wstring command = AnalysisCommand(L"C:/s/a.mse");
    EXPECT_EQ(std::count(command.begin(), command.end(), L'\n'), 1);
    EXPECT_EQ(std::count(command.begin(), command.end(), L'\r'), 0);
}

class AnalysisInAHost : public ::testing::Test {
protected:
    AnalysisInAHost() { reset_test_host(); }
    bool run() { return tarvo::run_scene_analysis(dialog, result, L"C:/my scripts/a.mse"); }

    TestHost& host = test_host();
    TestBoxes boxes;
    tarvo::ScriptResult result;
    int window = 0; // only its address is used, as the owner of the boxes
    tarvo::WindowHandle dialog = reinterpret_cast<tarvo::WindowHandle>(&window);
};

TEST_F(AnalysisInAHost, CommandRunsOnceAndReturnsItsTextWithoutABox) {
    host.script_text = L"{\"name\": \"a.max\"}";
    EXPECT_TRUE(run());
    ASSERT_EQ(host.scripts.size(), 1u);
    EXPECT_EQ(host.scripts[0], AnalysisCommand(L"C:/my scripts/a.mse"));
    EXPECT_TRUE(result.has_text);
    EXPECT_EQ(result.text, host.script_text);
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(AnalysisInAHost, ScriptThatReturnsNoTextSucceeds) {
    host.has_text = false;
    EXPECT_TRUE(run());
    EXPECT_FALSE(result.has_text);
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(AnalysisInAHost, FailureShowsOneBoxInTheLanguageOfTheTexts) {
    host.script_result = false;
    EXPECT_FALSE(run());
    EXPECT_EQ(host.scripts.size(), 1u);
    ASSERT_EQ(boxes.shown.size(), 1u);
    const TestBox& box = boxes.shown[0];
    EXPECT_EQ(box.owner, dialog);
    EXPECT_FALSE(box.text.empty());
    EXPECT_EQ(box.text, Text(37));
    EXPECT_EQ(box.caption, Text(49));
    EXPECT_EQ(box.style, 0u);
    EXPECT_EQ(box.language, Text(57) == L"0" ? 1033 : 1);
}

TEST(AnalysisRun, OnlyLanguageSwitchZeroMakesABoxEnglish) {
    EXPECT_EQ(tarvo::BoxLanguage(L"0"), 1033);
    for (const wchar_t* other : {L"1", L"", L"00", L"0 ", L"1033"}) {
        EXPECT_EQ(tarvo::BoxLanguage(other), 1);
    }
}

} // namespace
