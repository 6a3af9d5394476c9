// The shipped analysis script: which frames are rendered.
#include "tests/support/scripted_scene.h"

#include <gtest/gtest.h>

namespace {

using max_file::FrameChoice;
using support::error_codes;
using support::ScriptedScene;
using Strings = std::vector<std::string>;

TEST(AnalysisScriptFrames, EachChoice) {
    const struct {
        FrameChoice choice;
        const char* first;
        const char* last;
    } kCases[] = {{FrameChoice::single, "42", "42"},
                  {FrameChoice::active_segment, "-5", "90"},
                  {FrameChoice::range, "7", "8"},
                  {FrameChoice::picked, "1", "12"}};
    for (const auto& each : kCases) {
        ScriptedScene scene;
        scene.render().frames = each.choice;
        scene.render().current_frame = 42;
        scene.model().start_frame = -5;
        scene.model().end_frame = 90;
        scene.render().range_start = 7;
        scene.render().range_end = 8;
        scene.render().picked_frames = L"1,3,5-12";
        const Json::Value root = scene.analysis();
        EXPECT_EQ(root["start_frame"].asString(), each.first);
        EXPECT_EQ(root["end_frame"].asString(), each.last);
        EXPECT_EQ(error_codes(root), Strings{});
    }
}

TEST(AnalysisScriptFrames, AnUnknownChoice) {
    ScriptedScene scene;
    scene.render().frames = static_cast<FrameChoice>(9);
    const Json::Value root = scene.analysis();
    EXPECT_EQ(root["start_frame"].asString(), "");
    EXPECT_EQ(root["end_frame"].asString(), "");
    EXPECT_EQ(error_codes(root), Strings{"1006"});
}

struct Picked {
    const wchar_t* text;
    const char* first;
    const char* last;
    bool is_good;
};

class AnalysisScriptPickedFrames : public ::testing::TestWithParam<Picked> {};

TEST_P(AnalysisScriptPickedFrames, FirstAndLast) {
    ScriptedScene scene;
    scene.render().frames = FrameChoice::picked;
    scene.render().picked_frames = GetParam().text;
    const Json::Value root = scene.analysis();
    EXPECT_EQ(root["start_frame"].asString(), GetParam().first);
    EXPECT_EQ(root["end_frame"].asString(), GetParam().last);
    EXPECT_EQ(error_codes(root), GetParam().is_good ? Strings{} : Strings{"1007"});
}

INSTANTIATE_TEST_SUITE_P(
    Texts, AnalysisScriptPickedFrames,
    ::testing::Values(Picked{L"7", "7", "7", true}, Picked{L" 7 ", "7", "7", true},
                      Picked{L"9,3,5", "3", "9", true}, Picked{L" 1 , 3 , 5 - 12 ", "1", "12", true},
                      Picked{L"12-5", "5", "12", true}, Picked{L"-3", "-3", "-3", true},
                      Picked{L"-3-4", "-3", "4", true}, Picked{L"-9--4", "-9", "-4", true},
                      Picked{L"-9 - -4,2", "-9", "2", true}, Picked{L"1,,3,", "1", "3", true},
                      Picked{L"007-010", "7", "10", true},
                      Picked{L"999999999", "999999999", "999999999", true}, Picked{L"", "", "", false},
                      Picked{L" ", "", "", false}, Picked{L"abc", "", "", false}, Picked{L"-", "", "", false},
                      Picked{L"--", "", "", false}, Picked{L"5-", "", "", false},
                      Picked{L"- 5", "", "", false}, Picked{L"1-2-3", "", "", false},
                      Picked{L"4,x,6-8", "4", "8", false}, Picked{L"1.5", "", "", false},
                      Picked{L"1000000000,2", "2", "2", false}, Picked{L"3 5", "", "", false}));

} // namespace
