// The shipped analysis script: names, output and the host's version.
#include "tests/support/scripted_scene.h"

#include <gtest/gtest.h>

namespace {

using maxscript::Text;
using support::error_codes;
using support::listed;
using support::ScriptedScene;
using Strings = std::vector<std::string>;

TEST(AnalysisScript, EveryScalarIsAText) {
    ScriptedScene scene;
    scene.model().path = L"C:\\scenes\\\u5BA2\u5385.max";
    scene.model().cameras = {L"Zoom", L"\u76F8\u673A"};
    scene.model().width = 1280;
    scene.model().height = 720;
    scene.model().start_frame = 5;
    scene.model().end_frame = 90;
    scene.render().output_file = L"D:\\out\\frame.PNG";
    const Json::Value root = scene.analysis();
    const struct {
        const char* member;
        const char* value;
    } kExpected[] = {
        {"name", "C:\\scenes\\\xE5\xAE\xA2\xE5\x8E\x85.max"},
        {"version", "21.0"},
        {"app_version", "2019"},
        {"image_width", "1280"},
        {"image_height", "720"},
        {"start_frame", "5"},
        {"end_frame", "90"},
        {"image_format", "png"},
        {"gamma_out", "2.2"},
        {"is_region", "false"},
    };
    for (const auto& each : kExpected) {
        ASSERT_TRUE(root[each.member].isString()) << each.member;
        EXPECT_EQ(root[each.member].asString(), each.value) << each.member;
    }
    EXPECT_EQ(listed(root["cameras"], "name"), (Strings{"Zoom", "\xE7\x9B\xB8\xE6\x9C\xBA"}));
    EXPECT_EQ(error_codes(root), Strings{});
    EXPECT_FALSE(root.isMember("corona_setting"));
    EXPECT_FALSE(root.isMember("vray_setting"));
}

TEST(AnalysisScript, ANewSceneHasEmptyLists) {
    ScriptedScene scene;
    const Json::Value root = scene.analysis();
    EXPECT_EQ(root["name"].asString(), "");
    for (const char* const list : {"cameras", "missing_file", "same_file", "reference_file"}) {
        EXPECT_TRUE(root[list].isArray()) << list;
        EXPECT_EQ(root[list].size(), 0u) << list;
    }
    EXPECT_EQ(error_codes(root), Strings{});
}

TEST(AnalysisScript, CamerasOfEveryClassAndNoTargets) {
    ScriptedScene scene;
    scene.model().cameras = {L"Free", L"Aimed", L"Physical", L"VRay", L"Dome", L"Corona", L"Other"};
    scene.model().camera_classes = {L"Freecamera",         L"Targetcamera",   L"Physical",
                                    L"VRayPhysicalCamera", L"VRayDomeCamera", L"CoronaCam",
                                    L"MaxwellCamera"};
    scene.model().camera_targets = {L"Aimed.Target"};
    EXPECT_EQ(listed(scene.analysis()["cameras"], "name"),
              (Strings{"Free", "Aimed", "Physical", "VRay", "Dome", "Corona", "Other"}));
}

TEST(AnalysisScript, NamesWithEveryKindOfCharacter) {
    ScriptedScene scene;
    const struct {
        std::wstring name;
        const char* expected;
    } kNames[] = {
        {L"Quote \" and \\ and /", "Quote \" and \\ and /"},
        {L"\"\"", "\"\""},
        {L"\\", "\\"},
        {L"two\r\nlines\tand a tab", "two\r\nlines\tand a tab"},
        {std::wstring(L"\x01") + L"\x1F" + L"\x7F", "\x01\x1F\x7F"},
        {L"\u5BA2\"\u5385 a\"\"\u5BA2", "\xE5\xAE\xA2\"\xE5\x8E\x85 a\"\"\xE5\xAE\xA2"},
        {L"100% of %1 {} [] 'a' `b`", "100% of %1 {} [] 'a' `b`"},
        {L"\u0416\u00E9\u20AC", "\xD0\x96\xC3\xA9\xE2\x82\xAC"},
        {L"", ""},
        {L" ", " "},
    };
    for (const auto& each : kNames) {
        scene.model().cameras.push_back(each.name);
    }
    const Json::Value cameras = scene.analysis()["cameras"];
    ASSERT_EQ(cameras.size(), scene.model().cameras.size());
    for (Json::ArrayIndex i = 0; i < cameras.size(); ++i) {
        EXPECT_EQ(cameras[i]["name"].asString(), kNames[i].expected) << i;
    }
}

// Compared in UTF-16, since a conversion would replace what the script left.
TEST(AnalysisScript, PairsStayAndHalvesAreReplaced) {
    const struct {
        std::wstring name;
        const char16_t* expected;
    } kNames[] = {
        {{0xD83D, 0xDE00}, u"\U0001F600"},
        {{L'a', 0xD83D, 0xDE00, L'"', 0xD83D, 0xDE00}, u"a\U0001F600\\\"\U0001F600"},
        {{0xD83D}, u"\uFFFD"},
        {{0xDE00}, u"\uFFFD"},
        {{0xDE00, 0xD83D}, u"\uFFFD\uFFFD"},
        {{0xDE00, 0xDE00}, u"\uFFFD\uFFFD"},
        {{0xD83D, 0xD83D, 0xDE00}, u"\uFFFD\U0001F600"},
        {{0xD83D, L'x'}, u"\uFFFDx"},
        {{0xD83D, L'\\', 0xDE00}, u"\uFFFD\\\\\uFFFD"},
        {{0xDBFF, 0xDFFF}, u"\U0010FFFF"},
        {{0xD7FF, 0xE000}, u"\uD7FF\uE000"},
    };
    for (const auto& each : kNames) {
        ScriptedScene scene;
        scene.model().cameras = {each.name};
        const Text returned = scene.returned();
        const Text expected = Text(u"{\"name\":\"") + each.expected + u"\"}";
        EXPECT_NE(returned.find(expected), Text::npos) << maxscript::utf8_from_text(expected);
    }
}

TEST(AnalysisScript, TheFormatIsTheEndingOfTheOutputFile) {
    const struct {
        const wchar_t* file;
        const char* format;
    } kCases[] = {
        {L"", "jpg"},
        {L"D:\\out\\a.exr", "exr"},
        {L"D:\\out\\a.JPG", "jpg"},
        {L"a.jpeg", "jpg"},
        {L"D:\\out\\a.tiff", "tif"},
        {L"a.b.TGA", "tga"},
        {L"D:\\o.ut\\noending", "jpg"},
    };
    for (const auto& each : kCases) {
        ScriptedScene scene;
        scene.render().output_file = each.file;
        EXPECT_EQ(scene.analysis()["image_format"].asString(), each.format);
    }
}

TEST(AnalysisScript, KindsOfRegion) {
    const struct {
        const wchar_t* kind;
        const char* is_region;
    } kCases[] = {
        {L"view", "false"},          {L"normal", "false"},      {L"selected", "false"},
        {L"selection", "false"},     {L"region", "true"},       {L"crop", "true"},
        {L"regionCrop", "true"},     {L"blowUp", "true"},       {L"boxselected", "true"},
        {L"regionSelected", "true"}, {L"cropselected", "true"}, {L"BLOWUP", "true"},
    };
    for (const auto& each : kCases) {
        ScriptedScene scene;
        scene.render().kind = each.kind;
        EXPECT_EQ(scene.analysis()["is_region"].asString(), each.is_region);
    }
}

TEST(AnalysisScript, Gamma) {
    const struct {
        double gamma;
        const wchar_t* mode;
        const char* text;
    } kCases[] = {
        {2.2, L"gamma", "2.2"}, {1.0, L"gamma", "1"},     {1.8, L"lut", "1.8"},
        {2.2, L"none", "1"},    {0.45, L"gamma", "0.45"},
    };
    for (const auto& each : kCases) {
        ScriptedScene scene;
        scene.render().gamma_out = each.gamma;
        scene.render().gamma_mode = each.mode;
        EXPECT_EQ(scene.analysis()["gamma_out"].asString(), each.text);
    }
}

TEST(AnalysisScript, Versions) {
    const struct {
        std::int32_t release;
        const char* version;
        const char* year;
    } kCases[] = {
        {21000, "21.0", "2019"}, {21300, "21.3", "2019"}, {20400, "20.4", "2018"}, {24000, "24.0", "2022"}};
    for (const auto& each : kCases) {
        ScriptedScene scene;
        scene.host.release = each.release;
        const Json::Value root = scene.analysis();
        EXPECT_EQ(root["version"].asString(), each.version);
        EXPECT_EQ(root["app_version"].asString(), each.year);
    }
}

// A second run in one session starts without the errors of the first.
TEST(AnalysisScript, ForgetsTheErrorsOfTheLastRun) {
    ScriptedScene scene;
    std::string result;
    const Text load = Text(u"fileIn @\"") + support::kScriptFolder + u"MaxRenderGlobalsParser.ms\"\n";
    ASSERT_TRUE(scene.run(load + u"gMax.codes = #(\"1009\")\ngMax.analysis \"\" \"\"", result)) << result;
    EXPECT_EQ(error_codes(support::parsed(result)), Strings{});
}

} // namespace
