// The shipped analysis script when the host cannot answer: the rest of the result is what it was.
#include "tests/support/scripted_scene.h"

#include <gtest/gtest.h>

namespace {

using support::error_codes;
using support::ScriptedScene;
using Strings = std::vector<std::string>;

void fill(ScriptedScene& scene, const wchar_t* renderer) {
    scene.model().path = L"C:\\scenes\\a.max";
    scene.files.put(u"C:\\scenes\\a.max", "scene");
    scene.model().cameras = {L"One", L"Two"};
    scene.render().output_file = L"D:\\out\\frame.png";
    scene.add_file(L"D:\\maps\\wood.png");
    Json::Value& settings = scene.renderer(renderer);
    settings["camera_overrideFOV"] = true;
    settings["camera_fov"] = 90.0;
    settings["camera_type"] = 1;
    settings["progressive_passLimit"] = 10;
    settings["progressive_timeLimit"] = 20;
    settings["adaptivity_targetError"] = 3.0;
}

struct Failure {
    const char16_t* query;
    const char* code;
    const char* changed; // what the analysis holds instead, as an object merged over the usual one
    const char* removed; // members that are not there, with blanks between; "a.b" inside an object
};

Json::Value expected_after(Json::Value usual, const Failure& failure) {
    const Json::Value changed = support::parsed(failure.changed);
    for (const std::string& key : changed.getMemberNames()) {
        for (const std::string& inner : changed[key].isObject() ? changed[key].getMemberNames() : Strings{}) {
            usual[key][inner] = changed[key][inner];
        }
        usual[key] = changed[key].isObject() ? usual[key] : changed[key];
    }
    const std::string removed = failure.removed;
    const std::size_t dot = removed.find('.');
    if (dot != std::string::npos) {
        usual[removed.substr(0, dot)].removeMember(removed.substr(dot + 1));
    } else if (!removed.empty()) {
        usual.removeMember(removed);
    }
    for (const char* const number : {failure.code, "107"}) {
        Json::Value code(Json::objectValue);
        code["code"] = number;
        usual["errors"]["error_code"].append(code);
    }
    return usual;
}

void expect_only(const Failure& failure, const wchar_t* renderer) {
    ScriptedScene working;
    fill(working, renderer);
    ScriptedScene scene;
    fill(scene, renderer);
    scene.host.fail_query(failure.query);
    EXPECT_EQ(scene.analysis(), expected_after(working.analysis(), failure))
        << maxscript::utf8_from_text(failure.query);
}

// The tracker lists the scene too, and nothing tells that file from the others then.
constexpr const char* kSceneUnknown =
    R"({"name":"","reference_file":[{"path":"C:\\scenes\\a.max"},{"path":"D:\\maps\\wood.png"}]})";

TEST(AnalysisScriptFailures, EachQueryAlone) {
    const Failure kFailures[] = {
        {u"maxFilePath", "1001", kSceneUnknown, ""},
        {u"maxFileName", "1001", kSceneUnknown, ""},
        {u"maxVersion", "1002", R"({"version":"","app_version":""})", ""},
        {u"cameras", "1003", R"({"cameras":[]})", ""},
        {u"One.name", "1003", R"({"cameras":[{"name":"Two"}]})", ""},
        {u"renderWidth", "1004", R"({"image_width":"","image_height":""})", ""},
        {u"renderHeight", "1004", R"({"image_width":"","image_height":""})", ""},
        {u"getFilenameType", "1005", R"({"image_format":""})", ""},
        {u"rendTimeType", "1006", R"({"start_frame":"","end_frame":""})", ""},
        {u"animationRange", "1006", R"({"start_frame":"","end_frame":""})", ""},
        {u"getRenderType", "1008", R"({"is_region":"false"})", ""},
        {u"fileOutGamma", "1009", "{}", "gamma_out"},
        {u"IDisplayGamma.colorCorrectionMode", "1009", "{}", ""},
        {u"camera_overrideFOV", "1011", R"({"vray_setting":{"camera_override_fov":false}})", ""},
        {u"camera_fov", "1011", "{}", "vray_setting.camera_fov"},
        {u"camera_type", "1011", R"({"vray_setting":{"is_spherical":"false"}})", ""},
        {u"ATSOps.GetFiles", "1013", "{}", ""},
        {u"AssetManager.GetNumAssets", "1014", "{}", ""},
    };
    for (const Failure& failure : kFailures) {
        expect_only(failure, L"V_Ray_Adv_3_60_03");
    }
}

TEST(AnalysisScriptFailures, EachLimitOfCorona) {
    for (const Failure& failure :
         {Failure{u"progressive_passLimit", "1012", "{}", "corona_setting.pass_limit"},
          Failure{u"progressive_timeLimit", "1012", "{}", "corona_setting.time_limit"},
          Failure{u"adaptivity_targetError", "1012", "{}", "corona_setting.noise_level_limit"}}) {
        expect_only(failure, L"CoronaRenderer");
    }
}

TEST(AnalysisScriptFailures, TheOutputFile) {
    ScriptedScene scene;
    fill(scene, L"Default Scanline Renderer");
    scene.host.fail_query(u"rendOutputFilename");
    const Json::Value root = scene.analysis();
    EXPECT_EQ(root["image_format"].asString(), "");
    EXPECT_EQ(error_codes(root), Strings{"1005"});
}

TEST(AnalysisScriptFailures, TheRendererIsAskedForTwice) {
    ScriptedScene scene;
    fill(scene, L"V_Ray_Adv_3_60_03");
    scene.host.fail_query(u"renderers.production");
    Json::Value root = scene.analysis();
    EXPECT_TRUE(root.isMember("vray_setting"));
    EXPECT_EQ(error_codes(root), Strings{});
    scene.host.fail_query(u"renderers.current");
    root = scene.analysis();
    EXPECT_FALSE(root.isMember("vray_setting"));
    EXPECT_EQ(error_codes(root), Strings{"1010"});
    EXPECT_EQ(root["cameras"].size(), 2u);
}

TEST(AnalysisScriptFailures, AFileThatCannotBeLookedForCountsAsMissing) {
    for (const char16_t* const query : {u"doesFileExist", u"pathConfig.isAbsolutePath"}) {
        ScriptedScene scene;
        fill(scene, L"Default Scanline Renderer");
        scene.host.fail_query(query);
        const Json::Value root = scene.analysis();
        EXPECT_EQ(support::listed(root["reference_file"], "path"), Strings{"D:\\maps\\wood.png"});
        EXPECT_EQ(support::listed(root["missing_file"], "path"), Strings{"D:\\maps\\wood.png"});
        EXPECT_EQ(error_codes(root), Strings{"1016"});
    }
}

// Everything that can fail at once.
TEST(AnalysisScriptFailures, AHostThatAnswersNothing) {
    ScriptedScene scene;
    fill(scene, L"V_Ray_Adv_3_60_03");
    for (const char16_t* const query :
         {u"maxFilePath", u"maxFileName", u"maxVersion", u"cameras", u"renderWidth", u"renderHeight",
          u"rendOutputFilename", u"rendTimeType", u"getRenderType", u"fileOutGamma", u"renderers.production",
          u"renderers.current", u"IDisplayGamma.colorCorrectionMode", u"ATSOps.Refresh",
          u"AssetManager.GetNumAssets", u"enumerateFiles", u"doesFileExist"}) {
        scene.host.fail_query(query);
    }
    EXPECT_EQ(error_codes(scene.analysis()), (Strings{"1001", "1002", "1010", "1004", "1006", "1009", "1005",
                                                      "1008", "1003", "1013", "1014", "1015"}));
}

TEST(AnalysisScriptFailures, AWholeAnalysisSaysNothing) {
    ScriptedScene scene;
    fill(scene, L"V_Ray_Adv_3_60_03");
    EXPECT_EQ(error_codes(scene.analysis()), Strings{});
    EXPECT_EQ(scene.printed(), "");
}

TEST(AnalysisScriptFailures, EachCodeIsALineInTheListener) {
    ScriptedScene scene;
    fill(scene, L"V_Ray_Adv_3_60_03");
    for (const char16_t* const query : {u"renderWidth", u"ATSOps.Refresh", u"AssetManager.GetNumAssets"}) {
        scene.host.fail_query(query);
    }
    scene.analysis();
    EXPECT_EQ(
        scene.printed(),
        "Tarvo analysis: 107: not everything of this scene could be read\n"
        "Tarvo analysis: 1004: the size of the picture could not be read\n"
        "Tarvo analysis: 1013: the tracked files could not be read; the asset manager was asked instead\n"
        "Tarvo analysis: 1014: the assets could not be read; outputs may be listed as references\n");
}

// Without one of the functions that the text is made with.
TEST(AnalysisScriptFailures, EvenWritingFails) {
    ScriptedScene scene;
    fill(scene, L"Default Scanline Renderer");
    scene.host.fail_query(u"substituteString");
    const Json::Value root = scene.analysis();
    EXPECT_EQ(error_codes(root), Strings{"1000"});
    EXPECT_EQ(root["cameras"].size(), 0u);
    EXPECT_EQ(root["is_region"], Json::Value("false"));
    for (const char* const key : {"name", "version", "app_version", "image_width", "image_height",
                                  "image_format", "start_frame", "end_frame"}) {
        EXPECT_EQ(root[key], Json::Value("")) << key;
    }
    for (const char* const key : {"missing_file", "same_file", "reference_file"}) {
        EXPECT_EQ(root[key], Json::Value(Json::arrayValue)) << key;
    }
}

} // namespace
