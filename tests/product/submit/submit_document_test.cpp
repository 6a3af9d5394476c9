// Every group in tests/data/submit: NAME.in.json holds an analysis and the user's choices, NAME.out.json the
// submit document and NAME.body.json the request body that they must give, byte for byte. To add a case, add
// the three files.
#include "submit/submit_document.h"

#include "common/json_text.h"
#include "common/text.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>
#include <json/json.h>

namespace {

using tarvo::BuildSubmitDocument;
using tarvo::DocumentProblem;

constexpr const char* kInputEnding = ".in.json";

std::vector<std::string> case_names() {
    return support::test_data_names("submit", kInputEnding);
}

tarvo::CameraMap cameras_of(const Json::Value& list) {
    tarvo::CameraMap cameras;
    for (const Json::Value& entry : list) {
        tarvo::CameraRecord record;
        record.image_width = entry["image_width"].asInt();
        record.image_height = entry["image_height"].asInt();
        record.start_frame = entry["start_frame"].asInt();
        record.image_format = tarvo::Utf8ToWide(entry["image_format"].asString());
        record.checked = entry["checked"].asBool();
        record.img_output_name = tarvo::Utf8ToWide(entry["img_output_name"].asString());
        record.is_spherical = entry["is_spherical"].asBool();
        cameras[tarvo::Utf8ToWide(entry["name"].asString())] = record;
    }
    return cameras;
}

void choose(tarvo::SceneData& scene, const Json::Value& choices) {
    scene.scene_path = choices["scene_path"].asString();
    scene.cameras() = cameras_of(choices["cameras"]);
    scene.num_blocks = choices.get("num_blocks", 1).asInt();
    scene.color_channel = choices["color_channel"].asBool();
    scene.ao_channel = choices["ao_channel"].asBool();
    scene.ao_radius = choices.get("ao_radius", 1000.0).asDouble();
    scene.ao_subdivs = choices.get("ao_subdivs", 16).asInt();
    scene.gamma_out = choices.get("gamma_out", 2.2).asFloat();
}

// Builds from the text of an analysis, with one unticked camera and no options.
DocumentProblem build(const std::string& analysis, Json::Value& document) {
    EXPECT_TRUE(tarvo::ParseJson(analysis, document)) << analysis;
    tarvo::SceneData scene;
    scene.cameras()[L"Camera01"];
    return BuildSubmitDocument(document, scene, "C:\\a.max");
}

DocumentProblem build(const std::string& analysis) {
    Json::Value document;
    return build(analysis, document);
}

class SubmitDocumentGolden : public ::testing::TestWithParam<std::string> {};

TEST_P(SubmitDocumentGolden, DocumentAndBodyAreAsExpected) {
    const std::string base = support::test_data_folder() + "/submit/" + GetParam();
    Json::Value input;
    ASSERT_TRUE(tarvo::ParseJson(support::read_file(base + kInputEnding), input)) << base;
    Json::Value document = input["analysis"];
    const std::string app_version = document.get("app_version", Json::Value()).asString();
    const Json::Value& choices = input["choices"];
    const std::string scene_file = choices["scene_file"].asString();
    tarvo::SceneData scene;
    choose(scene, choices);

    ASSERT_EQ(BuildSubmitDocument(document, scene, scene_file), DocumentProblem::none);
    EXPECT_EQ(tarvo::StyledJson(document), support::read_file(base + ".out.json"));

    const Json::Value body = tarvo::BuildRequestBody(scene_file, choices["document_file"].asString(),
                                                     app_version, choices["archive_path"].asString());
    EXPECT_EQ(tarvo::StyledJson(body), support::read_file(base + ".body.json"));
}

INSTANTIATE_TEST_SUITE_P(Groups, SubmitDocumentGolden, ::testing::ValuesIn(case_names()),
                         [](const ::testing::TestParamInfo<std::string>& group) { return group.param; });

TEST(SubmitDocumentGroups, AreFound) {
    EXPECT_GE(case_names().size(), 48u);
}

TEST(SubmitDocumentFrames, NegativeStartFrameIsRefused) {
    EXPECT_EQ(build(R"({"start_frame": "-1"})"), DocumentProblem::start_frame_negative);
    EXPECT_EQ(build(R"({"start_frame": -1})"), DocumentProblem::start_frame_negative);
    EXPECT_EQ(build(R"({"start_frame": -1.5})"), DocumentProblem::start_frame_negative);
    EXPECT_EQ(build(R"({"start_frame": "  -12 frames"})"), DocumentProblem::start_frame_negative);
    EXPECT_EQ(build(R"({"start_frame": "-99999999999999999999"})"), DocumentProblem::start_frame_negative);
}

TEST(SubmitDocumentFrames, NegativeEndFrameIsRefused) {
    EXPECT_EQ(build(R"({"start_frame": "0", "end_frame": "-1"})"), DocumentProblem::end_frame_negative);
    EXPECT_EQ(build(R"({"end_frame": -7})"), DocumentProblem::end_frame_negative);
}

TEST(SubmitDocumentFrames, StartFrameIsCheckedFirst) {
    EXPECT_EQ(build(R"({"start_frame": "-1", "end_frame": "-1"})"), DocumentProblem::start_frame_negative);
}

TEST(SubmitDocumentFrames, OtherFramesAreAccepted) {
    for (const char* frame : {"0", "\"0\"", "\"-0\"", "-0.9", "null", "true", "\"\"", "\"x-1\"", "4294967295",
                              "\"99999999999999999999\""}) {
        EXPECT_EQ(build(std::string("{\"start_frame\": ") + frame + "}"), DocumentProblem::none) << frame;
    }
}

TEST(SubmitDocumentTypes, WrongTypesThrow) {
    for (const char* analysis :
         {"[1]", "\"text\"", "5", R"({"reference_file": {"path": "a"}})", R"({"reference_file": ["a"]})",
          R"({"reference_file": [[1]]})", R"({"reference_file": [{"path": ["a"]}]})",
          R"({"start_frame": ["1"]})", R"({"end_frame": {"frame": 1}})"}) {
        EXPECT_THROW(build(analysis), Json::Exception) << analysis;
    }
}

TEST(SubmitDocumentTypes, EmptyObjectCountsAsNoReferenceList) {
    Json::Value document;
    EXPECT_EQ(build(R"({"reference_file": {}})", document), DocumentProblem::none);
    EXPECT_FALSE(document.isMember("reference_file"));
}

TEST(SubmitDocumentComments, AreKeptOnlyWithTheirMembers) {
    Json::Value document;
    ASSERT_EQ(
        build("{\n// about the version\n\"version\": \"2019\",\n// about the cameras\n\"cameras\": [1]}",
              document),
        DocumentProblem::none);
    const std::string text = tarvo::StyledJson(document);
    EXPECT_NE(text.find("// about the version\n   \"version\" : \"2019\""), std::string::npos) << text;
    EXPECT_EQ(text.find("about the cameras"), std::string::npos) << text;
}

// 100,000 references and 10,000 cameras take well under a second; work that grows with their square takes
// minutes.
TEST(SubmitDocumentSize, LargeSceneTakesNoQuadraticTime) {
    constexpr unsigned kReferences = 100000;
    constexpr unsigned kCameras = 10000;
    Json::Value analysis(Json::objectValue);
    Json::Value& references = analysis["reference_file"];
    for (unsigned i = 0; i < kReferences; ++i) {
        references[i]["path"] = "D:\\maps\\" + std::to_string(i) + ".png";
    }
    tarvo::SceneData scene;
    for (unsigned i = 0; i < kCameras; ++i) {
        scene.cameras()[L"Camera" + std::to_wstring(i)].checked = true;
    }
    scene.scene_path = "D:\\maps\\7.png";
    ASSERT_EQ(BuildSubmitDocument(analysis, scene, "C:\\a.max"), DocumentProblem::none);
    EXPECT_EQ(analysis["reference_file"].size(), kReferences - 1);
    EXPECT_EQ(analysis["cameras"].size(), kCameras);
    EXPECT_EQ(analysis["reference_file"][7]["path"].asString(), "D:\\maps\\8.png");
}

} // namespace
