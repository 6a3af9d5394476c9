// What the shipped analysis script returns, read by the plugin's own reader.
#include "common/text.h"
#include "scene/scene_data.h"
#include "tests/support/scripted_scene.h"

#include <gtest/gtest.h>

namespace {

using support::ScriptedScene;

std::int32_t read(ScriptedScene& scene, tarvo::SceneData& data) {
    std::wstring text = tarvo::Utf8ToWide(maxscript::utf8_from_text(scene.returned()));
    data.set_analysis_text(text);
    return data.parse_analysis();
}

TEST(AnalysisScriptReader, SceneIsReadIntoTheStore) {
    ScriptedScene scene;
    scene.model().path = L"C:\\scenes\\\u5BA2\u5385 \"1\".max";
    scene.model().cameras = {L"\u76F8\u673A", L"Quote\"", L"Cam:01"};
    scene.model().width = 1920;
    scene.model().height = 1080;
    scene.model().start_frame = 12;
    scene.render().gamma_out = 1.8;
    scene.render().kind = L"crop";
    scene.render().output_file = L"D:\\out\\a.exr";
    scene.add_file(L"D:\\\u0444\u0430\u0439\u043B.png");
    scene.add_file(L"D:\\gone.png", false);
    scene.add_file(L"D:\\a\\twice.png");
    scene.add_file(L"D:\\b\\twice.png");
    tarvo::SceneData data;
    ASSERT_EQ(read(scene, data), 0);
    EXPECT_EQ(data.scene_name_from_analysis(), "\xE5\xAE\xA2\xE5\x8E\x85 \"1\".max");
    ASSERT_EQ(data.cameras().size(), 3u);
    const tarvo::CameraRecord& camera = data.cameras()[L"\u76F8\u673A"];
    EXPECT_EQ(camera.image_width, 1920);
    EXPECT_EQ(camera.image_height, 1080);
    EXPECT_EQ(camera.start_frame, 12);
    EXPECT_EQ(camera.image_format, L"EXR");
    EXPECT_FALSE(camera.is_spherical);
    EXPECT_EQ(data.is_region(), "true");
    EXPECT_FLOAT_EQ(data.gamma_out, 1.8f);
    EXPECT_EQ(data.corona_limits, 0);
    // Heading, region, Cyrillic name, one missing file and two of one name with their headings.
    EXPECT_EQ(data.messages().size(), 8u);
}

TEST(AnalysisScriptReader, ViewOf360DegreesIsSpherical) {
    ScriptedScene scene;
    scene.model().cameras = {L"Cam"};
    Json::Value& settings = scene.renderer(L"V_Ray_Adv_3_60_03");
    settings["camera_overrideFOV"] = true;
    settings["camera_fov"] = 360.0;
    settings["camera_type"] = 9;
    tarvo::SceneData data;
    ASSERT_EQ(read(scene, data), 0);
    EXPECT_TRUE(data.cameras()[L"Cam"].is_spherical);
    settings["camera_fov"] = 359.9;
    ASSERT_EQ(read(scene, data), 0);
    EXPECT_FALSE(data.cameras()[L"Cam"].is_spherical);
}

TEST(AnalysisScriptReader, SceneWithoutCamerasGivesCodeOne) {
    ScriptedScene scene;
    scene.model().camera_targets = {L"Camera.Target"};
    tarvo::SceneData data;
    EXPECT_EQ(read(scene, data), 1);
}

TEST(AnalysisScriptReader, CoronaLimitsGiveTheirCodeAndKind) {
    const struct {
        double passes;
        double milliseconds;
        double noise;
        std::int32_t code;
        std::int32_t limits;
    } kCases[] = {{0, 0, 0.0, 2, 1}, {0, 60000, 0.0, 0, 2}, {0, 0, 4.5, 0, 3}, {5, 0, 0.0, 0, 3}};
    for (const auto& each : kCases) {
        ScriptedScene scene;
        scene.model().cameras = {L"Cam"};
        Json::Value& settings = scene.renderer(L"CoronaRenderer");
        settings["progressive_passLimit"] = static_cast<int>(each.passes);
        settings["progressive_timeLimit"] = static_cast<int>(each.milliseconds);
        settings["adaptivity_targetError"] = each.noise;
        tarvo::SceneData data;
        EXPECT_EQ(read(scene, data), each.code);
        EXPECT_EQ(data.corona_limits, each.limits);
    }
}

TEST(AnalysisScriptReader, FailedQueriesGiveOneNoticeAndTheDefaultGamma) {
    ScriptedScene scene;
    scene.model().cameras = {L"Cam"};
    for (const char16_t* const query :
         {u"maxVersion", u"fileOutGamma", u"rendTimeType", u"ATSOps.GetFiles"}) {
        scene.host.fail_query(query);
    }
    tarvo::SceneData data;
    EXPECT_EQ(read(scene, data), 0);
    EXPECT_EQ(data.messages().size(), 2u); // its heading and the notice
    EXPECT_FLOAT_EQ(data.gamma_out, 2.2f);
    EXPECT_EQ(data.cameras().size(), 1u);
}

} // namespace
