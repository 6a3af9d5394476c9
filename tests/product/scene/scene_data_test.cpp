#include "common/text.h"
#include "scene/scene_data.h"
#include "submit/plugin_config.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

struct NameResult {
    std::string name;
    std::string path;
    Lines lines;
};

NameResult scene_name_of(const std::string& analysis) {
    tarvo::SceneData scene;
    scene.scene_path = "before";
    std::wstring text = tarvo::Utf8ToWide(analysis);
    scene.set_analysis_text(text);
    const std::size_t mark = support::log_mark("qfx_data");
    const std::string name = scene.scene_name_from_analysis();
    return {name, scene.scene_path, support::log_lines_since("qfx_data", mark)};
}

TEST(SceneData, FieldsStartWithTheirDefaults) {
    tarvo::SceneData scene;
    EXPECT_TRUE(scene.analysis_text().empty());
    EXPECT_TRUE(scene.messages().empty());
    EXPECT_TRUE(scene.cameras().empty());
    EXPECT_EQ(scene.scene_path, "");
    EXPECT_EQ(scene.is_region(), "");
    EXPECT_EQ(scene.num_blocks, 1);
    EXPECT_FLOAT_EQ(scene.gamma_out, 2.2f);
    EXPECT_EQ(scene.corona_limits, 0);
    EXPECT_FALSE(scene.color_channel);
    EXPECT_FALSE(scene.ao_channel);
    EXPECT_DOUBLE_EQ(scene.ao_radius, 1000.0);
    EXPECT_EQ(scene.ao_subdivs, 16);
}

TEST(SceneData, FieldsKeepTheirDeclarationOrder) {
    const tarvo::SceneData scene;
    const std::vector<const void*> fields = {&scene.scene_path,    &scene.num_blocks,    &scene.gamma_out,
                                             &scene.corona_limits, &scene.color_channel, &scene.ao_channel,
                                             &scene.ao_radius,     &scene.ao_subdivs};
    EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end(), std::less<const void*>()));
    const tarvo::PluginConfig config;
    const std::vector<const void*> texts = {
        &config.clientIp,          &config.clientPort,          &config.jsonPath,
        &config.sevenZipExe,       &config.compressDir,         &config.lowerVersion,
        &config.sceneFile,         &config.archivePath,         &config.packArguments,
        &config.analysisScript,    &config.antivirusAdslScript, &config.antivirusAlcScript,
        &config.antivirusCrpScript};
    EXPECT_TRUE(std::is_sorted(texts.begin(), texts.end(), std::less<const void*>()));
}

TEST(SceneData, NewCameraRecordHasItsDefaults) {
    const tarvo::CameraRecord record;
    EXPECT_EQ(record.image_width, 0);
    EXPECT_EQ(record.image_height, 0);
    EXPECT_EQ(record.start_frame, 1);
    EXPECT_TRUE(record.image_format.empty());
    EXPECT_FALSE(record.checked);
    EXPECT_TRUE(record.img_output_name.empty());
    EXPECT_FALSE(record.is_spherical);
}

TEST(SceneData, InstanceIsASingleton) {
    EXPECT_EQ(&tarvo::SceneData::instance(), &tarvo::SceneData::instance());
}

std::vector<std::wstring> cameras_after(const char* second_analysis, std::int32_t expected_code) {
    tarvo::SceneData scene;
    std::wstring first = LR"({"cameras":[{"name":"Early"}]})";
    scene.set_analysis_text(first);
    EXPECT_EQ(scene.parse_analysis(), 0);
    std::wstring second = tarvo::Utf8ToWide(second_analysis);
    scene.set_analysis_text(second);
    EXPECT_EQ(scene.parse_analysis(), expected_code);
    std::vector<std::wstring> names;
    for (const auto& camera : scene.cameras()) {
        names.push_back(camera.first);
    }
    return names;
}

using Names = std::vector<std::wstring>;

TEST(SceneData, EarlierCamerasAreKeptUntilALaterAnalysisReadsItsCameras) {
    EXPECT_EQ(cameras_after(R"({"cameras":[]})", 1), Names{L"Early"});
    EXPECT_EQ(cameras_after(R"({"cameras":[{"name":"Late"}],"corona_setting":)"
                            R"({"pass_limit":"0","time_limit":"0","noise_level_limit":"0"}})",
                            2),
              Names{L"Early"});
    EXPECT_EQ(cameras_after("no json", 0), Names{L"Early"});
    EXPECT_EQ(cameras_after(R"({"cameras":[{"name":"Late"},{"name":"bad."}]})", 3), Names{L"Late"});
    EXPECT_EQ(cameras_after(R"({"cameras":[{"name":"Late"}]})", 0), Names{L"Late"});
}

TEST(SceneData, RegionRenderingIsLogged) {
    const std::string line =
        "[WARN] Region rendering is used in your scene file. Please ignore this message if "
        "you confirm to use block rendering.";
    for (const bool region : {true, false}) {
        tarvo::SceneData scene;
        const std::size_t mark = support::log_mark("qfx_data");
        std::wstring text = std::wstring(L"{\"cameras\":[{\"name\":\"A\"}],\"is_region\":\"") +
                            (region ? L"true" : L"false") + L"\"}";
        scene.set_analysis_text(text);
        EXPECT_EQ(scene.parse_analysis(), 0);
        const Lines lines = support::log_lines_since("qfx_data", mark);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), line), region ? 1 : 0);
    }
}

TEST(SceneName, NameIsThePartAfterTheLastBackslash) {
    const NameResult result = scene_name_of(R"({"name":"C:\\scenes\\a.max"})");
    EXPECT_EQ(result.name, "a.max");
    EXPECT_EQ(result.path, "C:\\scenes\\a.max");
    EXPECT_TRUE(result.lines.empty());
}

TEST(SceneName, SlashWinsOverALaterBackslash) {
    EXPECT_EQ(scene_name_of(R"({"name":"C:/x/y\\b.max"})").name, "y\\b.max");
}

TEST(SceneName, PathEndingWithASeparatorGivesNoNameAndNoWarning) {
    const NameResult result = scene_name_of(R"({"name":"C:\\scenes\\"})");
    EXPECT_EQ(result.name, "");
    EXPECT_EQ(result.path, "C:\\scenes\\");
    EXPECT_TRUE(result.lines.empty());
}

TEST(SceneName, MissingNameOrSeparatorGivesNoNameAndAWarning) {
    for (const char* text : {"{}", R"({"name":null})", R"({"name":""})", R"({"name":"a.max"})"}) {
        const NameResult result = scene_name_of(text);
        EXPECT_EQ(result.name, "") << text;
        EXPECT_EQ(result.path, "before") << text;
        EXPECT_EQ(result.lines, (Lines{"[WARN] The scene name is empty!"})) << text;
    }
}

TEST(SceneName, InvalidJsonGivesNoNameAndAWarning) {
    const NameResult result = scene_name_of("not json");
    EXPECT_EQ(result.name, "");
    EXPECT_EQ(result.lines, (Lines{"[WARN] Parse failed in initing scene name!"}));
}

TEST(SceneName, NameOfTheWrongTypeGivesNoNameAndIsLogged) {
    const NameResult result = scene_name_of(R"({"name":["C:\\a.max"]})");
    EXPECT_EQ(result.name, "");
    EXPECT_EQ(result.path, "before");
    ASSERT_EQ(result.lines.size(), 2u);
    EXPECT_EQ(result.lines[0], "[WARN] Parse failed in initing scene name!");
    EXPECT_EQ(result.lines[1].compare(0, 7, "[ERROR]"), 0);
}

TEST(SceneData, CoronaWithOneLimitMissingHasNoLimits) {
    for (const std::string present :
         {R"("pass_limit":"0","time_limit":"0")", R"("pass_limit":"0","noise_level_limit":"0")",
          R"("time_limit":"0","noise_level_limit":"0")"}) {
        tarvo::SceneData scene;
        std::wstring text =
            tarvo::Utf8ToWide("{\"cameras\":[{\"name\":\"A\"}],\"corona_setting\":{" + present + "}}");
        scene.set_analysis_text(text);
        EXPECT_EQ(scene.parse_analysis(), 0) << present;
        EXPECT_EQ(scene.corona_limits, 0) << present;
    }
}

TEST(SceneName, TooDeepNestingIsLoggedWithItsReason) {
    const NameResult result = scene_name_of(std::string(2000, '['));
    EXPECT_EQ(result.name, "");
    ASSERT_EQ(result.lines.size(), 2u);
    EXPECT_EQ(result.lines[0], "[WARN] Parse failed in initing scene name!");
    EXPECT_EQ(result.lines[1].find("[ERROR] The analysis text cannot be used: "), 0u);
}

} // namespace
