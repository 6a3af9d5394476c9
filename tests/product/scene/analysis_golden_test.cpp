// Every pair in tests/data/analysis: NAME.json is an analysis text, NAME.expected.json what the store must
// hold after it. A text that is not JSON has the ending .txt instead. Notices are given as "[78]" or
// "[60]path".
#include "common/json_text.h"
#include "common/string_table.h"
#include "common/text.h"
#include "scene/scene_data.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>
#include <json/json.h>

namespace {

constexpr const char* kExpectedEnding = ".expected.json";

std::vector<std::string> case_names() {
    return support::test_data_names("analysis", kExpectedEnding);
}

std::string expand_text_number(const std::string& line) {
    const std::string::size_type close = line.find(']');
    if (line.empty() || line[0] != '[' || close == std::string::npos) {
        return line;
    }
    const unsigned id = static_cast<unsigned>(std::stoul(line.substr(1, close - 1)));
    return tarvo::WideToUtf8(tarvo::Text(id)) + line.substr(close + 1);
}

void expect_messages(const Json::Value& expected, const tarvo::SceneData& scene) {
    ASSERT_EQ(scene.messages().size(), expected.size());
    for (Json::ArrayIndex index = 0; index < expected.size(); ++index) {
        EXPECT_EQ(tarvo::WideToUtf8(scene.messages()[index]), expand_text_number(expected[index].asString()));
    }
}

void expect_record(const Json::Value& expected, const tarvo::CameraRecord& record) {
    EXPECT_EQ(record.image_width, expected.get("width", 640).asInt());
    EXPECT_EQ(record.image_height, expected.get("height", 480).asInt());
    EXPECT_EQ(record.start_frame, expected.get("start_frame", 0).asInt());
    EXPECT_EQ(tarvo::WideToUtf8(record.image_format), expected.get("format", "JPG").asString());
    EXPECT_EQ(tarvo::WideToUtf8(record.img_output_name), expected.get("output", expected["name"]).asString());
    EXPECT_EQ(record.is_spherical, expected.get("spherical", false).asBool());
    EXPECT_FALSE(record.checked);
}

void expect_cameras(const Json::Value& expected, tarvo::SceneData& scene) {
    ASSERT_EQ(scene.cameras().size(), expected.size());
    Json::ArrayIndex index = 0;
    for (const auto& camera : scene.cameras()) {
        SCOPED_TRACE(expected[index]["name"].asString());
        EXPECT_EQ(tarvo::WideToUtf8(camera.first), expected[index]["name"].asString());
        expect_record(expected[index], camera.second);
        ++index;
    }
}

void expect_store(const Json::Value& expected, tarvo::SceneData& scene) {
    expect_messages(expected["messages"], scene);
    expect_cameras(expected["cameras"], scene);
    EXPECT_EQ(scene.corona_limits, expected.get("corona_limits", 0).asInt());
    EXPECT_EQ(scene.is_region(), expected.get("is_region", "").asString());
    EXPECT_FLOAT_EQ(scene.gamma_out, expected.get("gamma_out", 2.2).asFloat());
}

std::vector<std::string> strings(const Json::Value& array) {
    std::vector<std::string> result;
    for (const Json::Value& entry : array) {
        result.push_back(entry.asString());
    }
    return result;
}

class AnalysisGolden : public ::testing::TestWithParam<std::string> {};

TEST_P(AnalysisGolden, StoreIsAsExpected) {
    const std::string base = support::test_data_folder() + "/analysis/" + GetParam();
    std::string text = support::read_file(base + ".json");
    if (text.empty()) {
        text = support::read_file(base + ".txt");
    }
    Json::Value expected;
    ASSERT_TRUE(tarvo::ParseJson(support::read_file(base + kExpectedEnding), expected)) << base;
    tarvo::SceneData scene;
    const std::size_t mark = support::log_mark("qfx_data");
    std::wstring wide = tarvo::Utf8ToWide(text);
    scene.set_analysis_text(wide);
    EXPECT_TRUE(wide.empty());
    EXPECT_EQ(scene.parse_analysis(), expected["code"].asInt());
    expect_store(expected, scene);
    EXPECT_EQ(support::log_lines_since("qfx_data", mark), strings(expected["log"]));
}

INSTANTIATE_TEST_SUITE_P(Pairs, AnalysisGolden, ::testing::ValuesIn(case_names()),
                         [](const ::testing::TestParamInfo<std::string>& pair) { return pair.param; });

} // namespace
