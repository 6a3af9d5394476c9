// The analysis text that the stage returns for a scene: every member, as the type the plugin expects.
#include "common/json_text.h"
#include "standin/scene/analysis_text.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using standin::SceneModel;

Json::Value analysis_of(const SceneModel& model, const std::set<std::wstring>& files = {}) {
    Json::Value root;
    EXPECT_TRUE(tarvo::ParseJson(
        standin::analysis_text(model, [&files](const std::wstring& path) { return files.count(path) != 0; }),
        root));
    return root;
}

SceneModel living_room() {
    SceneModel model;
    model.path = L"C:\\scenes\\\u5BA2\u5385.max";
    model.version = L"21.0";
    model.app_version = L"2019";
    model.cameras = {L"Zoom", L"\u76F8\u673A", L"Quote \" and \\"};
    model.width = 1280;
    model.height = 720;
    model.start_frame = 5;
    model.end_frame = 90;
    return model;
}

std::vector<std::string> paths(const Json::Value& list) {
    std::vector<std::string> result;
    for (const Json::Value& entry : list) {
        result.push_back(entry["path"].asString());
    }
    return result;
}

TEST(SceneAnalysisText, EveryScalarIsAText) {
    const Json::Value root = analysis_of(living_room());
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
        {"image_format", "jpg"},
        {"gamma_out", "2.2"},
        {"is_region", "false"},
    };
    for (const auto& each : kExpected) {
        ASSERT_TRUE(root[each.member].isString()) << each.member;
        EXPECT_EQ(root[each.member].asString(), each.value);
    }
    ASSERT_EQ(root["cameras"].size(), 3u);
    EXPECT_EQ(root["cameras"][0]["name"].asString(), "Zoom");
    EXPECT_EQ(root["cameras"][1]["name"].asString(), "\xE7\x9B\xB8\xE6\x9C\xBA");
    EXPECT_EQ(root["cameras"][2]["name"].asString(), "Quote \" and \\");
    EXPECT_TRUE(root["errors"]["error_code"].isArray());
    EXPECT_FALSE(root.isMember("corona_setting"));
    EXPECT_FALSE(root.isMember("vray_setting"));
}

TEST(SceneAnalysisText, NoCamerasIsAnEmptyList) {
    const Json::Value root = analysis_of(SceneModel());
    EXPECT_TRUE(root["cameras"].isArray());
    EXPECT_EQ(root["cameras"].size(), 0u);
    for (const char* const list : {"missing_file", "same_file", "reference_file"}) {
        EXPECT_TRUE(root[list].isArray()) << list;
    }
}

TEST(SceneAnalysisText, RendererSettings) {
    SceneModel model = living_room();
    model.render.corona.present = true;
    model.render.corona.time_limit = 30;
    model.render.corona.noise_level_limit = 2.5;
    model.render.vray.present = true;
    model.render.vray.camera_override_fov = true;
    model.render.vray.camera_fov = 360.0;
    model.render.vray.is_spherical = true;
    model.render.is_region = true;
    model.render.gamma_out = 1.0;
    model.render.error_codes = {"107", "12"};
    const Json::Value root = analysis_of(model);
    EXPECT_EQ(root["corona_setting"]["pass_limit"].asString(), "0");
    EXPECT_EQ(root["corona_setting"]["time_limit"].asString(), "30");
    EXPECT_EQ(root["corona_setting"]["noise_level_limit"].asString(), "2.5");
    EXPECT_TRUE(root["vray_setting"]["camera_override_fov"].isBool());
    EXPECT_EQ(root["vray_setting"]["camera_fov"].asString(), "360");
    EXPECT_EQ(root["vray_setting"]["is_spherical"].asString(), "true");
    EXPECT_EQ(root["is_region"].asString(), "true");
    EXPECT_EQ(root["gamma_out"].asString(), "1");
    EXPECT_EQ(root["errors"]["error_code"][0]["code"].asString(), "107");
    model.render.corona.noise_level_limit = 0.0;
    EXPECT_EQ(analysis_of(model)["corona_setting"]["noise_level_limit"].asString(), "0");
}

TEST(SceneAnalysisText, AFileIsLookedForInThreePlaces) {
    SceneModel model = living_room();
    model.references = {{L"Bitmap", L"D:\\old\\named.png", L"E:\\found\\named.png"},
                        {L"Bitmap", L"D:\\old\\moved.png", L"E:\\new\\moved.png"},
                        {L"Bitmap", L"D:\\old\\beside.png", L""},
                        {L"Bitmap", L"D:\\old\\gone.png", L"E:\\new\\gone.png"},
                        {L"RenderOutput", L"D:\\out\\frame.png", L""}};
    const Json::Value root = analysis_of(model, {L"D:\\old\\named.png", L"E:\\found\\named.png",
                                                 L"E:\\new\\moved.png", L"C:\\scenes\\beside.png"});
    EXPECT_EQ(paths(root["reference_file"]),
              (std::vector<std::string>{"D:\\old\\named.png", "E:\\new\\moved.png", "C:\\scenes\\beside.png",
                                        "D:\\old\\gone.png"}));
    EXPECT_EQ(paths(root["missing_file"]), std::vector<std::string>{"D:\\old\\gone.png"});
    EXPECT_TRUE(root["same_file"].empty());
}

TEST(SceneAnalysisText, SameNameInDifferentFolders) {
    SceneModel model = living_room();
    model.references = {{L"Bitmap", L"D:\\a\\Wood.png", L""},
                        {L"Bitmap", L"D:\\b\\wood.PNG", L""},
                        {L"Bitmap", L"d:/A/wood.png", L""}, // the first one again
                        {L"Bitmap", L"D:\\a\\stone.png", L""},
                        {L"Bitmap", L"D:\\a\\stone.png", L""}};
    const Json::Value root = analysis_of(model);
    EXPECT_EQ(paths(root["same_file"]), (std::vector<std::string>{"D:\\a\\Wood.png", "D:\\b\\wood.PNG"}));
    EXPECT_EQ(paths(root["reference_file"]),
              (std::vector<std::string>{"D:\\a\\Wood.png", "D:\\b\\wood.PNG", "D:\\a\\stone.png"}));
}

} // namespace
