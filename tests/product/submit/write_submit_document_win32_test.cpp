// The document on the real file system: bytes, folder, boxes, log lines, and nothing left behind after a
// failure.
#include "submit/submit_document.h"

#include "common/json_text.h"
#include "common/platform.h"
#include "common/string_table.h"
#include "common/text.h"
#include "resources/resource_ids.h"
#include "tests/support/patched_import.h"
#include "tests/support/test_boxes.h"
#include "tests/support/test_folder.h"
#include "tests/support/wide_file.h"

#include <gtest/gtest.h>
#include <json/json.h>

#include <windows.h>

namespace {

using tarvo::Text;
using tarvo::WriteSubmitDocument;

const std::wstring kGuid = L"1F0C3B7A-9D2E-4C11-8A5B-0E6D2F9A7C31";

class SubmitDocumentFile : public ::testing::Test {
protected:
    SubmitDocumentFile() {
        support::plugin_folder();
        folder = tarvo::CommonAppDataFolder() + L"/Tarvo Rendering/json";
        config.jsonPath = folder;
        config.sceneFile = "C:\\scenes\\Lobby2.max";
        config.archivePath = "C:\\out\\Lobby2_k3ZpQa.7z";
    }
    ~SubmitDocumentFile() override { ::DeleteFileW(document().c_str()); }

    static tarvo::WindowHandle owner() { return reinterpret_cast<tarvo::WindowHandle>(0x2345); }

    std::wstring document() const { return folder + L"/" + kGuid + L".json"; }

    bool write(const std::wstring& guid = kGuid) {
        const std::size_t mark = support::log_mark("qfx_data");
        const bool written = WriteSubmitDocument(scene, owner(), config, guid, body);
        lines = support::log_lines_since("qfx_data", mark);
        return written;
    }

    bool write_analysis(const std::string& analysis) {
        std::wstring text = tarvo::Utf8ToWide(analysis);
        scene.set_analysis_text(text);
        return write();
    }

    void expect_failure(unsigned text_id, const std::string& line, std::size_t line_count = 1) const {
        ASSERT_EQ(boxes.shown.size(), 1u);
        const TestBox& box = boxes.shown.front();
        EXPECT_EQ(box.owner, owner());
        EXPECT_EQ(box.text, Text(text_id));
        EXPECT_EQ(box.caption, Text(IDS_CAPTION));
        EXPECT_EQ(box.style, 0u);
        EXPECT_EQ(box.language, tarvo::BoxLanguage(Text(IDS_LANGUAGE_SWITCH)));
        ASSERT_EQ(lines.size(), line_count);
        EXPECT_EQ(lines.back(), "[ERROR] " + line);
        EXPECT_EQ(body, "as it was");
        EXPECT_FALSE(tarvo::PathExists(document()));
    }

    std::wstring folder;
    tarvo::SceneData scene;
    tarvo::PluginConfig config;
    TestBoxes boxes;
    std::string body = "as it was";
    std::vector<std::string> lines;
};

TEST_F(SubmitDocumentFile, GoldenDocumentReachesTheDiskByteForByte) {
    const std::string base = support::test_data_folder() + "/submit/typical_scene";
    Json::Value input;
    ASSERT_TRUE(tarvo::ParseJson(support::read_file(base + ".in.json"), input)) << base;
    const Json::Value& choices = input["choices"];
    for (const Json::Value& entry : choices["cameras"]) {
        tarvo::CameraRecord& camera = scene.cameras()[tarvo::Utf8ToWide(entry["name"].asString())];
        camera.image_width = entry["image_width"].asInt();
        camera.image_height = entry["image_height"].asInt();
        camera.start_frame = entry["start_frame"].asInt();
        camera.image_format = tarvo::Utf8ToWide(entry["image_format"].asString());
        camera.img_output_name = tarvo::Utf8ToWide(entry["img_output_name"].asString());
        camera.is_spherical = entry["is_spherical"].asBool();
        camera.checked = true;
    }
    scene.scene_path = choices["scene_path"].asString();
    scene.num_blocks = choices["num_blocks"].asInt();
    scene.color_channel = choices["color_channel"].asBool();
    scene.ao_channel = choices["ao_channel"].asBool();
    scene.ao_radius = choices["ao_radius"].asDouble();
    scene.ao_subdivs = choices["ao_subdivs"].asInt();
    ASSERT_TRUE(write_analysis(tarvo::StyledJson(input["analysis"])));

    const std::string bytes = support::read_wide_file(document());
    EXPECT_EQ(bytes, support::read_file(base + ".out.json"));
    EXPECT_EQ(bytes.find('\r'), std::string::npos);
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(config.jsonPath, document());
    EXPECT_EQ(lines, std::vector<std::string>{
                         "[INFO] Write json file at: " + tarvo::WideToLocale(document()) + " successfully."});
}

TEST_F(SubmitDocumentFile, RequestBodyNamesTheDocument) {
    ASSERT_TRUE(write_analysis(R"({"app_version": "2019"})"));
    Json::Value request;
    ASSERT_TRUE(tarvo::ParseJson(body, request));
    EXPECT_EQ(request.size(), 4u);
    EXPECT_EQ(request["scenePath"].asString(), config.sceneFile);
    EXPECT_EQ(request["filePath"].asString(), tarvo::WideToUtf8(document()));
    EXPECT_EQ(request["maxVersion"].asString(), "3ds Max 2019");
    EXPECT_EQ(request["compressPath"].asString(), config.archivePath);
}

TEST_F(SubmitDocumentFile, NameIsReplacedInTheDocumentButNotInTheStore) {
    const std::string analysis = R"({"name": "C:\\old.max", "cameras": [1]})";
    ASSERT_TRUE(write_analysis(analysis));
    EXPECT_EQ(tarvo::WideToUtf8(scene.analysis_text()), analysis);
    Json::Value root;
    ASSERT_TRUE(tarvo::ParseJson(support::read_wide_file(document()), root));
    EXPECT_EQ(root["name"].asString(), config.sceneFile);
    EXPECT_FALSE(root.isMember("cameras"));
    EXPECT_FALSE(root.isMember("app_version"));
}

TEST_F(SubmitDocumentFile, SecondSubmissionWritesASecondFile) {
    const std::wstring other = L"00000000-0000-0000-0000-000000000002";
    ASSERT_TRUE(write_analysis("{}"));
    config.jsonPath = folder;
    ASSERT_TRUE(write(other));
    EXPECT_TRUE(tarvo::PathExists(document()));
    EXPECT_TRUE(tarvo::PathExists(folder + L"/" + other + L".json"));
    ::DeleteFileW(config.jsonPath.c_str());
}

TEST_F(SubmitDocumentFile, LongerFileOfTheSameNameIsTruncated) {
    tarvo::CreateFolder(folder);
    support::write_wide_file(document(), std::string(100000, '#'));
    ASSERT_TRUE(write_analysis("{}"));
    EXPECT_EQ(support::read_wide_file(document()).find('#'), std::string::npos);
}

TEST_F(SubmitDocumentFile, MissingFolderIsCreatedForAnyCodePage) {
    folder += L"/\x0531\x0532 \x9879\x76EE";
    ::RemoveDirectoryW(folder.c_str());
    tarvo::CreateFolder(tarvo::CommonAppDataFolder() + L"/Tarvo Rendering/json");
    config.jsonPath = folder;
    ASSERT_TRUE(write_analysis("{}"));
    EXPECT_FALSE(support::read_wide_file(document()).empty());
    ::DeleteFileW(document().c_str());
    EXPECT_TRUE(::RemoveDirectoryW(folder.c_str()));
}

TEST_F(SubmitDocumentFile, InvalidJsonShowsABoxAndIsLogged) {
    for (const char* analysis : {"", "undefined", "{\"name\": "}) {
        SCOPED_TRACE(analysis);
        boxes.shown.clear();
        EXPECT_FALSE(write_analysis(analysis));
        expect_failure(IDS_DOCUMENT_NOT_WRITTEN, "Parse failed in writing json file when submiting!");
        EXPECT_EQ(config.jsonPath, folder);
    }
}

TEST_F(SubmitDocumentFile, AnalysisRefusedByTheLibraryIsLoggedWithItsReason) {
    for (const std::string& analysis :
         {std::string(2000, '['), std::string("[1]"), std::string("\"text\""),
          std::string(R"({"reference_file": ["a"]})"), std::string(R"({"app_version": ["2019"]})")}) {
        SCOPED_TRACE(analysis.substr(0, 40));
        boxes.shown.clear();
        EXPECT_FALSE(write_analysis(analysis));
        expect_failure(IDS_DOCUMENT_NOT_WRITTEN, "Parse failed in writing json file when submiting!", 2);
        EXPECT_EQ(lines.front().find("[ERROR] The analysis text cannot be used: "), 0u);
        EXPECT_EQ(config.jsonPath, folder);
    }
}

TEST_F(SubmitDocumentFile, NegativeStartFrameShowsABoxAndIsLogged) {
    EXPECT_FALSE(write_analysis(R"({"start_frame": "-1"})"));
    expect_failure(IDS_START_FRAME_NEGATIVE, "Start frame be less than 0 when submiting!");
}

TEST_F(SubmitDocumentFile, NegativeEndFrameShowsABoxAndIsLogged) {
    EXPECT_FALSE(write_analysis(R"({"start_frame": "0", "end_frame": -1})"));
    expect_failure(IDS_END_FRAME_NEGATIVE, "End frame be less than 0 when submiting!");
}

TEST_F(SubmitDocumentFile, FileThatCannotBeOpenedShowsABoxAndIsLogged) {
    config.jsonPath = folder + L"/not there/nor here";
    EXPECT_FALSE(write_analysis("{}"));
    expect_failure(IDS_DOCUMENT_NOT_WRITTEN, "Open json file failed when write it!");
    EXPECT_EQ(config.jsonPath, folder + L"/not there/nor here");
}

// A full disk: the runtime writes only a part of the text.
std::size_t short_write(const void*, std::size_t, std::size_t, std::FILE* file) {
    std::fputc('{', file);
    errno = ENOSPC;
    return 1;
}

// The same, when fclose writes the rest of the buffer.
int failing_close(std::FILE* file) {
    const auto real =
        reinterpret_cast<int (*)(std::FILE*)>(::GetProcAddress(::GetModuleHandleW(L"msvcrt.dll"), "fclose"));
    real(file);
    errno = ENOSPC;
    return EOF;
}

TEST_F(SubmitDocumentFile, IncompleteFileIsKeptAnnouncedAndLogged) {
    const struct {
        const char* function;
        void* replacement;
    } tears[] = {{"fwrite", reinterpret_cast<void*>(&short_write)},
                 {"fclose", reinterpret_cast<void*>(&failing_close)}};
    for (const auto& tear : tears) {
        SCOPED_TRACE(tear.function);
        std::wstring analysis = L"{}";
        scene.set_analysis_text(analysis);
        config.jsonPath = folder;
        body.clear();
        const std::size_t mark = support::log_mark("qfx_data");
        bool written = false;
        {
            const support::PatchedImport patch("msvcrt.dll", tear.function, tear.replacement);
            ASSERT_TRUE(patch.installed());
            written = WriteSubmitDocument(scene, owner(), config, kGuid, body);
        }
        EXPECT_TRUE(written);
        EXPECT_TRUE(boxes.shown.empty());
        EXPECT_EQ(config.jsonPath, document());
        EXPECT_NE(body.find("filePath"), std::string::npos);
        EXPECT_TRUE(tarvo::PathExists(document())) << "the path that is announced";
        EXPECT_EQ(support::log_lines_since("qfx_data", mark),
                  std::vector<std::string>{"[ERROR] The json file was not written to its end: " +
                                           tarvo::WideToLocale(document()) + ", No space left on device"});
        ::DeleteFileW(document().c_str());
    }
}

TEST_F(SubmitDocumentFile, FramesAreCheckedBeforeTheVersionsType) {
    EXPECT_FALSE(write_analysis(R"({"start_frame": "-1", "app_version": ["2019"]})"));
    expect_failure(IDS_START_FRAME_NEGATIVE, "Start frame be less than 0 when submiting!");
    boxes.shown.clear();
    EXPECT_FALSE(write_analysis(R"({"end_frame": "-1", "app_version": {}})"));
    expect_failure(IDS_END_FRAME_NEGATIVE, "End frame be less than 0 when submiting!");
}

} // namespace
