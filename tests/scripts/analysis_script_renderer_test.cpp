// The shipped analysis script: V-Ray and Corona, with and without each of their settings.
#include "tests/support/scripted_scene.h"

#include <gtest/gtest.h>

namespace {

using support::error_codes;
using support::ScriptedScene;
using Strings = std::vector<std::string>;

void fill_vray(Json::Value& settings) {
    settings["camera_overrideFOV"] = true;
    settings["camera_fov"] = 360.0;
    settings["camera_type"] = 9;
}

TEST(AnalysisScriptRenderer, VrayOfEveryKind) {
    for (const wchar_t* const name : {L"V_Ray_Adv_3_60_03", L"V_Ray_GPU_4_10_03", L"V_Ray_5__update_1_2",
                                      L"VRayRenderer", L"V-Ray Adv 3.60.03"}) {
        for (const bool nested : {false, true}) {
            ScriptedScene scene;
            fill_vray(scene.renderer(name));
            scene.render().renderer.nested = nested;
            const Json::Value root = scene.analysis();
            const Json::Value& vray = root["vray_setting"];
            EXPECT_TRUE(vray["camera_override_fov"].isBool());
            EXPECT_TRUE(vray["camera_override_fov"].asBool());
            EXPECT_EQ(vray["camera_fov"], Json::Value("360"));
            EXPECT_EQ(vray["is_spherical"], Json::Value("true"));
            EXPECT_FALSE(root.isMember("corona_setting"));
            EXPECT_EQ(error_codes(root), Strings{});
        }
    }
}

TEST(AnalysisScriptRenderer, VrayWithoutOneOfItsSettings) {
    const struct {
        const char* left_out;
        const char* expected;
    } kCases[] = {
        {"camera_overrideFOV", R"({"camera_override_fov":false,"camera_fov":"360","is_spherical":"true"})"},
        {"camera_fov", R"({"camera_override_fov":true,"is_spherical":"true"})"},
        {"camera_type", R"({"camera_override_fov":true,"camera_fov":"360","is_spherical":"false"})"},
    };
    for (const auto& each : kCases) {
        ScriptedScene scene;
        Json::Value& settings = scene.renderer(L"V_Ray_Adv_3_60_03");
        fill_vray(settings);
        settings.removeMember(each.left_out);
        const Json::Value root = scene.analysis();
        EXPECT_EQ(root["vray_setting"], support::parsed(each.expected)) << each.left_out;
        EXPECT_EQ(error_codes(root), Strings{}) << each.left_out;
    }
}

TEST(AnalysisScriptRenderer, VrayCameraTypes) {
    for (int type = 0; type <= 10; ++type) {
        ScriptedScene scene;
        fill_vray(scene.renderer(L"V_Ray_Adv_3_60_03"));
        scene.renderer(L"V_Ray_Adv_3_60_03")["camera_type"] = type;
        const bool is_spherical = type == 1 || type == 9;
        EXPECT_EQ(scene.analysis()["vray_setting"]["is_spherical"].asString(),
                  is_spherical ? "true" : "false")
            << type;
    }
}

TEST(AnalysisScriptRenderer, VrayFieldOfView) {
    const struct {
        double degrees;
        const char* text;
    } kCases[] = {{45.0, "45"}, {359.9, "359.9"}, {0.0, "0"}, {180.5, "180.5"}};
    for (const auto& each : kCases) {
        ScriptedScene scene;
        fill_vray(scene.renderer(L"V_Ray_Adv_3_60_03"));
        scene.renderer(L"V_Ray_Adv_3_60_03")["camera_fov"] = each.degrees;
        EXPECT_EQ(scene.analysis()["vray_setting"]["camera_fov"].asString(), each.text);
    }
}

// The values of V-Ray's own output; the host's are 640 x 480 and a png file.
Json::Value own_output() {
    Json::Value settings(Json::objectValue);
    settings["output_on"] = true;
    settings["output_getsetsfrommax"] = false;
    settings["output_width"] = 1920;
    settings["output_height"] = 1080;
    settings["output_saveFile"] = true;
    settings["output_fileName"] = "D:\\out\\own.exr";
    settings["output_saveRawFile"] = true;
    settings["output_rawFileName"] = "D:\\out\\raw.vrimg";
    return settings;
}

struct OwnOutput {
    const char* key;
    Json::Value value; // null: the setting is left out
    const char* size;
    const char* format;
};

class AnalysisScriptVrayOutput : public ::testing::TestWithParam<OwnOutput> {};

TEST_P(AnalysisScriptVrayOutput, SizeAndFormat) {
    ScriptedScene scene;
    scene.render().output_file = L"D:\\out\\host.png";
    Json::Value& settings = scene.renderer(L"V_Ray_Adv_3_60_03");
    settings = own_output();
    settings[GetParam().key] = GetParam().value;
    if (GetParam().value.isNull()) {
        settings.removeMember(GetParam().key);
    }
    const Json::Value root = scene.analysis();
    EXPECT_EQ(root["image_width"].asString() + "x" + root["image_height"].asString(), GetParam().size);
    EXPECT_EQ(root["image_format"].asString(), GetParam().format);
    EXPECT_EQ(error_codes(root), Strings{});
}

INSTANTIATE_TEST_SUITE_P(Settings, AnalysisScriptVrayOutput,
                         ::testing::Values(OwnOutput{"output_on", true, "1920x1080", "exr"},
                                           OwnOutput{"output_on", false, "640x480", "png"},
                                           OwnOutput{"output_on", Json::Value(), "640x480", "png"},
                                           OwnOutput{"output_getsetsfrommax", true, "640x480", "png"},
                                           OwnOutput{"output_getsetsfrommax", Json::Value(), "640x480",
                                                     "png"},
                                           OwnOutput{"output_width", Json::Value(), "640x480", "exr"},
                                           OwnOutput{"output_height", Json::Value(), "640x480", "exr"},
                                           OwnOutput{"output_saveFile", false, "1920x1080", "vrimg"},
                                           OwnOutput{"output_fileName", "", "1920x1080", "vrimg"},
                                           OwnOutput{"output_fileName", Json::Value(), "1920x1080", "vrimg"},
                                           OwnOutput{"output_saveRawFile", false, "1920x1080", "exr"}));

TEST(AnalysisScriptRenderer, NothingSavedByVray) {
    ScriptedScene scene;
    scene.render().output_file = L"D:\\out\\host.png";
    Json::Value& settings = scene.renderer(L"V_Ray_Adv_3_60_03");
    settings = own_output();
    settings["output_saveFile"] = false;
    settings["output_saveRawFile"] = false;
    EXPECT_EQ(scene.analysis()["image_format"].asString(), "png");
}

void fill_corona(Json::Value& settings, int passes, int milliseconds, double noise) {
    settings["progressive_passLimit"] = passes;
    settings["progressive_timeLimit"] = milliseconds;
    settings["adaptivity_targetError"] = noise;
}

TEST(AnalysisScriptRenderer, CoronaLimits) {
    const struct {
        int passes;
        int milliseconds;
        double noise;
        const char* expected;
    } kCases[] = {
        {0, 0, 0.0, R"({"pass_limit":"0","time_limit":"0","noise_level_limit":"0"})"},
        {0, 1800000, 0.0, R"({"pass_limit":"0","time_limit":"1800000","noise_level_limit":"0"})"},
        {100, 1, 3.5, R"({"pass_limit":"100","time_limit":"1","noise_level_limit":"3.5"})"},
        {1, 0, 5.0, R"({"pass_limit":"1","time_limit":"0","noise_level_limit":"5"})"},
    };
    for (const auto& each : kCases) {
        for (const wchar_t* const name : {L"Corona_1_4", L"CoronaRenderer"}) {
            ScriptedScene scene;
            fill_corona(scene.renderer(name), each.passes, each.milliseconds, each.noise);
            const Json::Value root = scene.analysis();
            EXPECT_EQ(root["corona_setting"], support::parsed(each.expected));
            EXPECT_FALSE(root.isMember("vray_setting"));
        }
    }
}

TEST(AnalysisScriptRenderer, CoronaWithoutOneOfItsSettings) {
    const struct {
        const char* left_out;
        const char* expected;
    } kCases[] = {
        {"progressive_passLimit", R"({"time_limit":"2","noise_level_limit":"3"})"},
        {"progressive_timeLimit", R"({"pass_limit":"1","noise_level_limit":"3"})"},
        {"adaptivity_targetError", R"({"pass_limit":"1","time_limit":"2"})"},
    };
    for (const auto& each : kCases) {
        ScriptedScene scene;
        fill_corona(scene.renderer(L"CoronaRenderer"), 1, 2, 3.0);
        scene.renderer(L"CoronaRenderer").removeMember(each.left_out);
        const Json::Value root = scene.analysis();
        EXPECT_EQ(root["corona_setting"], support::parsed(each.expected)) << each.left_out;
        EXPECT_EQ(error_codes(root), Strings{}) << each.left_out;
    }
    ScriptedScene scene;
    scene.renderer(L"CoronaRenderer");
    EXPECT_EQ(scene.analysis()["corona_setting"], Json::Value(Json::objectValue));
}

TEST(AnalysisScriptRenderer, OtherRenderersHaveNeither) {
    for (const wchar_t* const name : {L"Default_Scanline_Renderer", L"ART_Renderer", L"MyV_Ray"}) {
        ScriptedScene scene;
        fill_vray(scene.renderer(name));
        const Json::Value root = scene.analysis();
        EXPECT_FALSE(root.isMember("vray_setting"));
        EXPECT_FALSE(root.isMember("corona_setting"));
    }
}

} // namespace
