// What a later analysis keeps of an earlier one, and what an invalid text keeps of the store.
#include "common/string_table.h"
#include "common/text.h"
#include "resources/resource_ids.h"
#include "scene/scene_data.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::wstring>;

const char* const kSuccessWithoutVersion =
    "[INFO] Get analyse infomation successfully. Current 3ds Max version is :";

// Every step of the parser stores something of this text.
const wchar_t* const kRich =
    LR"({"version":"2019","corona_setting":{"pass_limit":"0","time_limit":"30","noise_level_limit":"0"},)"
    LR"("is_region":"true","missing_file":[{"path":"a.png"}],"cameras":[{"name":"Cam:01"},{"name":"Cam02"}],)"
    LR"("image_width":"800","image_height":"600","start_frame":"7","image_format":"tga",)"
    LR"("vray_setting":{"camera_override_fov":true,"is_spherical":"true"},"gamma_out":"1.8"})";

std::int32_t parse(tarvo::SceneData& scene, std::wstring text) {
    scene.set_analysis_text(text);
    return scene.parse_analysis();
}

Messages rich_messages() {
    return {tarvo::Text(IDS_NOTICE_HEADING), tarvo::Text(IDS_NOTICE_CORONA_BLOCKS),
            tarvo::Text(IDS_NOTICE_REGION), tarvo::Text(IDS_NOTICE_MISSING_HEADING),
            tarvo::Text(IDS_NOTICE_MISSING_FILE) + L"a.png"};
}

// A store as it is after the rich analysis and the user's choices.
void fill(tarvo::SceneData& scene) {
    ASSERT_EQ(parse(scene, kRich), 0);
    scene.cameras()[L"Cam02"].checked = true;
    scene.scene_path = "C:\\scenes\\a.max";
    scene.set_num_blocks(10);
    scene.color_channel = true;
    scene.ao_channel = true;
    scene.ao_radius = 12.5;
    scene.ao_subdivs = 3;
}

void expect_rich_camera(tarvo::SceneData& scene, const wchar_t* name, const wchar_t* output, bool checked) {
    SCOPED_TRACE(tarvo::WideToUtf8(name));
    ASSERT_EQ(scene.cameras().count(name), 1u);
    const tarvo::CameraRecord& record = scene.cameras()[name];
    EXPECT_EQ(record.img_output_name, output);
    EXPECT_EQ(record.image_width, 800);
    EXPECT_EQ(record.image_height, 600);
    EXPECT_EQ(record.start_frame, 7);
    EXPECT_EQ(record.image_format, L"TGA");
    EXPECT_TRUE(record.is_spherical);
    EXPECT_EQ(record.checked, checked);
}

void expect_filled(tarvo::SceneData& scene) {
    EXPECT_EQ(scene.messages(), rich_messages());
    EXPECT_EQ(scene.cameras().size(), 2u);
    expect_rich_camera(scene, L"Cam:01", L"Cam01", false);
    expect_rich_camera(scene, L"Cam02", L"Cam02", true);
    EXPECT_EQ(scene.is_region(), "true");
    EXPECT_FLOAT_EQ(scene.gamma_out, 1.8f);
    EXPECT_EQ(scene.corona_limits, 2);
    EXPECT_EQ(scene.scene_path, "C:\\scenes\\a.max");
    EXPECT_EQ(scene.num_blocks, 10);
    EXPECT_TRUE(scene.color_channel);
    EXPECT_TRUE(scene.ao_channel);
    EXPECT_DOUBLE_EQ(scene.ao_radius, 12.5);
    EXPECT_EQ(scene.ao_subdivs, 3);
}

TEST(AnalysisAgain, InvalidJsonChangesNoFieldOfTheStore) {
    for (const wchar_t* text : {L"no json", L"", L"{", L"{\"is_region\":\"false\",\"gamma_out\":\"1.0\"",
                                L"{\"cameras\":[{\"name\":\"Late\"}]]"}) {
        SCOPED_TRACE(tarvo::WideToUtf8(text));
        tarvo::SceneData scene;
        fill(scene);
        const std::size_t mark = support::log_mark("qfx_data");
        EXPECT_EQ(parse(scene, text), 0);
        expect_filled(scene);
        EXPECT_EQ(support::log_lines_since("qfx_data", mark),
                  std::vector<std::string>{kSuccessWithoutVersion});
    }
}

// A real zero, not its escape: the conversion of the text ends there and cuts the document off.
TEST(AnalysisAgain, ZeroCharacterMakesTheDocumentInvalid) {
    const std::wstring zero(1, L'\0');
    for (const std::wstring& text : {zero + kRich, L"{\"is_region\":\"fal" + zero + L"se\",\"cameras\":[]}",
                                     L"{\"cameras\":[" + zero + L"]}"}) {
        tarvo::SceneData scene;
        fill(scene);
        EXPECT_EQ(parse(scene, text), 0);
        expect_filled(scene);
    }
}

Messages messages_after(const wchar_t* later, std::int32_t expected_code) {
    tarvo::SceneData scene;
    fill(scene);
    EXPECT_EQ(parse(scene, later), expected_code);
    return scene.messages();
}

TEST(AnalysisAgain, EarlierNoticesAreRemovedForEveryResult) {
    EXPECT_EQ(messages_after(LR"({"cameras":[{"name":"Late"}]})", 0), Messages());
    EXPECT_EQ(messages_after(LR"({"cameras":[]})", 1), Messages());
    EXPECT_EQ(messages_after(
                  LR"({"corona_setting":{"pass_limit":"0","time_limit":"0","noise_level_limit":"0"}})", 2),
              Messages());
    EXPECT_EQ(messages_after(LR"({"cameras":[{"name":"bad."}]})", 3), Messages());
}

TEST(AnalysisAgain, LaterAnalysisShowsOnlyItsOwnNotices) {
    const Messages region = {tarvo::Text(IDS_NOTICE_HEADING), tarvo::Text(IDS_NOTICE_REGION)};
    EXPECT_EQ(messages_after(LR"({"is_region":"true","cameras":[{"name":"Late"}]})", 0), region);
    EXPECT_EQ(messages_after(LR"({"is_region":"true"})", 1), region);
    EXPECT_EQ(messages_after(LR"({"is_region":"true","cameras":[{"name":"bad."}]})", 3), region);
}

TEST(AnalysisAgain, LaterAnalysisUnticksTheCameras) {
    tarvo::SceneData scene;
    fill(scene);
    ASSERT_TRUE(scene.cameras()[L"Cam02"].checked);
    EXPECT_EQ(parse(scene, kRich), 0);
    expect_rich_camera(scene, L"Cam:01", L"Cam01", false);
    expect_rich_camera(scene, L"Cam02", L"Cam02", false);
}

} // namespace
