// Whatever the script returns, reading it neither throws nor hangs, and the store is ready for the next text.
#include "common/json_text.h"
#include "common/text.h"
#include "scene/scene_data.h"
#include "tests/support/sanitized.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>
#include <json/json.h>

namespace {

const char* const kGood =
    R"({"name":"C:\\scenes\\a.max","version":"2019","corona_setting":{"pass_limit":"1","time_limit":"0",)"
    R"("noise_level_limit":"0"},"is_region":"true","reference_file":[{"path":"C:\\t\\a.png"}],)"
    R"("errors":{"error_code":[{"code":"107"}]},"missing_file":[{"path":"x"}],"same_file":[{"path":"y"}],)"
    R"("cameras":[{"name":"Cam01"},{"name":"Cam02"}],"image_width":"640","image_height":"480","start_frame":"0",)"
    R"("image_format":"jpg","vray_setting":{"camera_override_fov":true,"camera_fov":"360","is_spherical":"true"},)"
    R"("gamma_out":"1.8"})";

std::int32_t parse(tarvo::SceneData& scene, const std::string& text) {
    std::wstring wide = tarvo::Utf8ToWide(text);
    scene.set_analysis_text(wide);
    return scene.parse_analysis();
}

void expect_usable(tarvo::SceneData& scene) {
    EXPECT_EQ(parse(scene, kGood), 0);
    EXPECT_EQ(scene.cameras().size(), 2u);
    EXPECT_FLOAT_EQ(scene.gamma_out, 1.8f);
}

std::size_t error_lines(std::size_t mark) {
    std::size_t count = 0;
    for (const std::string& line : support::log_lines_since("qfx_data", mark)) {
        count += line.compare(0, 7, "[ERROR]") == 0 ? 1 : 0;
    }
    return count;
}

// A refused text is like one that is not JSON: code 0, nothing changed, and one ERROR line that says why.
void expect_refused(const std::string& text) {
    tarvo::SceneData scene;
    ASSERT_EQ(parse(scene, kGood), 0);
    const std::vector<std::wstring> messages = scene.messages();
    const std::size_t mark = support::log_mark("qfx_data");
    EXPECT_EQ(parse(scene, text), 0) << text.substr(0, 200);
    EXPECT_EQ(scene.cameras().size(), 2u);
    EXPECT_EQ(scene.messages(), messages);
    EXPECT_EQ(scene.is_region(), "true");
    EXPECT_EQ(error_lines(mark), 1u) << text.substr(0, 200);
    EXPECT_EQ(support::log_lines_since("qfx_data", mark).back(),
              "[INFO] Get analyse infomation successfully. Current 3ds Max version is :");
    expect_usable(scene);
}

// Sets the member at `path` (names, or * for the first entry of an array) to `value`.
std::string with_member(const std::vector<std::string>& path, const Json::Value& value) {
    Json::Value root;
    tarvo::ParseJson(kGood, root);
    Json::Value* at = &root;
    for (const std::string& name : path) {
        at = name == "*" ? &(*at)[0] : &(*at)[name];
    }
    *at = value;
    return tarvo::StyledJson(root);
}

Json::Value json(const char* text) {
    Json::Value value;
    tarvo::ParseJson(text, value);
    return value;
}

using Path = std::vector<std::string>;

TEST(AnalysisHostile, ListOrObjectInsteadOfATextIsRefused) {
    const Path members[] = {{"version"},
                            {"corona_setting", "pass_limit"},
                            {"corona_setting", "time_limit"},
                            {"corona_setting", "noise_level_limit"},
                            {"is_region"},
                            {"reference_file", "*", "path"},
                            {"errors", "error_code", "*", "code"},
                            {"missing_file", "*", "path"},
                            {"same_file", "*", "path"},
                            {"cameras", "*", "name"},
                            {"image_width"},
                            {"image_height"},
                            {"start_frame"},
                            {"image_format"},
                            {"vray_setting", "camera_fov"},
                            {"vray_setting", "is_spherical"},
                            {"gamma_out"}};
    for (const Path& member : members) {
        SCOPED_TRACE(member.back());
        expect_refused(with_member(member, json("[1]")));
        expect_refused(with_member(member, json("{\"a\":1}")));
    }
}

TEST(AnalysisHostile, WrongTypeInsteadOfAListOrObjectIsRefused) {
    expect_refused(with_member({"corona_setting"}, json("[1]")));
    expect_refused(with_member({"corona_setting"}, "text"));
    expect_refused(with_member({"reference_file"}, json("{\"a\":1}")));
    expect_refused(with_member({"reference_file"}, json("[1]")));
    expect_refused(with_member({"missing_file"}, json("[[]]")));
    expect_refused(with_member({"errors"}, json("[1]")));
    expect_refused(with_member({"errors", "error_code"}, json("[\"107\"]")));
    expect_refused(with_member({"cameras"}, json("{\"a\":1}")));
    expect_refused(with_member({"cameras"}, json("[\"Cam\"]")));
    expect_refused(with_member({"vray_setting"}, json("[1]")));
    expect_refused(with_member({"vray_setting", "camera_override_fov"}, "yes"));
}

// A result other than 0 ends the parsing before the version is read.
TEST(AnalysisHostile, InvalidVersionDoesNotHideAnEarlierResult) {
    const struct {
        const char* text;
        std::int32_t result;
        std::int32_t corona_limits;
    } cases[] = {
        {R"({"version":{"a":1},"cameras":[]})", 1, 0},
        {R"({"version":[1],"corona_setting":{"pass_limit":"0","time_limit":"0","noise_level_limit":"0"}})", 2,
         1},
        {R"({"version":[1],"cameras":[{"name":"b."}]})", 3, 0},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.text);
        tarvo::SceneData scene;
        EXPECT_EQ(parse(scene, each.text), each.result);
        EXPECT_EQ(scene.corona_limits, each.corona_limits);
        expect_usable(scene);
    }
}

TEST(AnalysisHostile, TextOrNumberInsteadOfAListCountsAsEmpty) {
    for (const char* member : {"reference_file", "missing_file", "same_file", "errors"}) {
        SCOPED_TRACE(member);
        tarvo::SceneData scene;
        EXPECT_EQ(parse(scene, with_member({member}, "abc")), 0);
        EXPECT_EQ(scene.cameras().size(), 2u);
        EXPECT_EQ(parse(scene, with_member({member}, 7)), 0);
        EXPECT_EQ(scene.cameras().size(), 2u);
    }
    tarvo::SceneData scene;
    expect_usable(scene);
    EXPECT_EQ(parse(scene, with_member({"cameras"}, "abc")), 0);
    EXPECT_TRUE(scene.cameras().empty());
    expect_usable(scene);
}

TEST(AnalysisHostile, RootThatIsNoObjectIsRefused) {
    expect_refused("[1]");
    expect_refused("\"text\"");
    expect_refused("17");
}

// The library converts numbers and flags to texts.
TEST(AnalysisHostile, NumbersInsteadOfTextsAreConverted) {
    tarvo::SceneData scene;
    EXPECT_EQ(parse(scene, with_member({"image_width"}, 800)), 0);
    EXPECT_EQ(scene.cameras().begin()->second.image_width, 800);
    EXPECT_EQ(parse(scene, with_member({"image_width"}, 1e20)), 0);
    EXPECT_EQ(parse(scene, with_member({"image_width"}, "1e20")), 0);
    EXPECT_EQ(scene.cameras().begin()->second.image_width, 1);
    EXPECT_EQ(parse(scene, with_member({"start_frame"}, "99999999999")), 0);
    EXPECT_EQ(scene.cameras().begin()->second.start_frame, 2147483647);
}

TEST(AnalysisHostile, NestingOfAHundredThousandLevelsIsRefused) {
    expect_refused(std::string(100000, '['));
    expect_refused("{\"cameras\":" + std::string(100000, '[') + std::string(100000, ']') + "}");
}

TEST(AnalysisHostile, TruncatedTextAddsNoCamera) {
    const std::string good = kGood;
    tarvo::SceneData scene;
    for (std::size_t length = 0; length < good.size(); ++length) {
        EXPECT_EQ(parse(scene, good.substr(0, length)), 0);
        EXPECT_TRUE(scene.cameras().empty()) << length;
    }
    expect_usable(scene);
}

TEST(AnalysisHostile, LaterMemberOfTheSameNameWins) {
    tarvo::SceneData scene;
    EXPECT_EQ(parse(scene, R"({"cameras":[{"name":"a"}],"cameras":[{"name":"b","name":"c"}]})"), 0);
    ASSERT_EQ(scene.cameras().size(), 1u);
    EXPECT_EQ(scene.cameras().begin()->first, L"c");
}

TEST(AnalysisHostile, ZeroCharacterEndsAName) {
    tarvo::SceneData scene;
    EXPECT_EQ(parse(scene,
                    R"({"cameras":[{"name":"Cam\u0000tail."}],"reference_file":[{"path":"a\u0000\u0416"}]})"),
              0);
    ASSERT_EQ(scene.cameras().size(), 1u);
    EXPECT_EQ(scene.cameras().begin()->first, L"Cam");
    EXPECT_TRUE(scene.messages().empty());
}

TEST(AnalysisHostile, LoneSurrogateInANameBecomesTheReplacementCharacter) {
    tarvo::SceneData scene;
    std::wstring text = L"{\"cameras\":[{\"name\":\"a";
    text += static_cast<wchar_t>(0xD800);
    text += L"b\"}]}";
    scene.set_analysis_text(text);
    EXPECT_EQ(scene.parse_analysis(), 0);
    ASSERT_EQ(scene.cameras().size(), 1u);
    EXPECT_EQ(scene.cameras().begin()->first, L"a\xFFFD"
                                              L"b");
    // Half a pair as an escape is no JSON.
    EXPECT_EQ(parse(scene, R"({"cameras":[{"name":"a\uD800b"}]})"), 0);
    expect_usable(scene);
}

TEST(AnalysisHostile, ThousandsOfCamerasAreRead) {
    Json::Value root;
    tarvo::ParseJson(kGood, root);
    root["cameras"] = Json::Value(Json::arrayValue);
    for (int number = 0; number < 5000; ++number) {
        root["cameras"][number]["name"] = "Camera " + std::to_string(number);
    }
    tarvo::SceneData scene;
    EXPECT_EQ(parse(scene, tarvo::StyledJson(root)), 0);
    EXPECT_EQ(scene.cameras().size(), 5000u);
}

TEST(AnalysisHostile, VeryLongTextsAreReadAndNamesAreCut) {
    constexpr std::size_t kMegabytes = support::kSanitized ? 10 : 100;
    tarvo::SceneData scene;
    const std::string filler(kMegabytes << 20, 'x');
    EXPECT_EQ(parse(scene, "{\"filler\":\"" + filler + "\",\"cameras\":[{\"name\":\"a\"}]}"), 0);
    EXPECT_EQ(scene.cameras().size(), 1u);
    EXPECT_EQ(parse(scene, "{\"cameras\":[{\"name\":\"" + filler + "\"}]}"), 0);
    ASSERT_EQ(scene.cameras().size(), 1u);
    EXPECT_EQ(scene.cameras().begin()->first.size(), 259u);
    EXPECT_EQ(parse(scene, filler), 0);
    expect_usable(scene);
}

} // namespace
