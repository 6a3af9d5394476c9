// Feeds any bytes, and documents made by one who knows the format, to the analysis reader and the store
// behind it.
#include "common/text.h"
#include "scene/camera.h"
#include "scene/scene_data.h"
#include "tests/fuzz/support/analysis_mutator.h"
#include "tests/fuzz/support/json_tree.h"
#include "tests/fuzz/support/notices.h"
#include "tests/fuzz/support/outside.h"
#include "tests/fuzz/support/rule.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <tuple>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

namespace {

using fuzz::Kind;
using fuzz::Node;
using fuzz::outside;
using fuzz::rule;

bool operator==(const tarvo::CameraRecord& one, const tarvo::CameraRecord& other) {
    const auto all = [](const tarvo::CameraRecord& record) {
        return std::tie(record.image_width, record.image_height, record.start_frame, record.image_format,
                        record.checked, record.img_output_name, record.is_spherical);
    };
    return all(one) == all(other);
}

bool same_cameras(const tarvo::CameraMap& one, const tarvo::CameraMap& other) {
    return one.size() == other.size() &&
           std::equal(one.begin(), one.end(), other.begin(), [](const auto& left, const auto& right) {
               return left.first == right.first && left.second == right.second;
           });
}

bool has_line(const std::string& start) {
    return std::any_of(outside().lines.begin(), outside().lines.end(), [&start](const fuzz::LogLine& line) {
        return line.text.compare(0, start.size(), start) == 0;
    });
}

std::int32_t parse(tarvo::SceneData& scene, const std::wstring& text) {
    std::wstring copy = text;
    scene.set_analysis_text(copy);
    rule(copy.empty() && scene.analysis_text() == text, "the store takes the text over");
    outside().forget();
    const std::int32_t code = scene.parse_analysis();
    rule(outside().boxes.empty(), "the reader shows no box");
    rule(has_line("Get analyse infomation successfully.") == (code == 0), "code 0 leaves its line");
    return code;
}

void check_cameras(tarvo::SceneData& scene) {
    for (const auto& camera : scene.cameras()) {
        rule(camera.first.size() <= tarvo::kMaxCameraName, "no name is longer than 259");
        rule(tarvo::TrimSpaces(camera.first) == camera.first, "no key has blanks at its ends");
        rule(!tarvo::HasLoneSurrogate(camera.first) &&
                 !tarvo::HasLoneSurrogate(camera.second.img_output_name),
             "no half of a surrogate pair is stored");
        rule(tarvo::ContainsAnyOf(camera.second.img_output_name, tarvo::kForbiddenNameCharacters) == 0,
             "an output name can be a file's");
        rule(!camera.second.checked, "no camera is ticked");
    }
}

bool is_zero(const Node* limit) {
    return limit != nullptr && ((limit->kind == Kind::text && limit->text == "0") ||
                                (limit->kind == Kind::number && (limit->text == "0" || limit->text == "-0")));
}

// A text or a number where the list is meant is not empty, and has no entries either.
bool is_empty(const Node* list) {
    return list == nullptr || list->kind == Kind::null ||
           ((list->kind == Kind::array || list->kind == Kind::object) && list->items.empty() &&
            list->members.empty());
}

// The code that a readable analysis gives, without 3: that a name decides.
std::int32_t expected_code(const Node& root) {
    const Node* corona = root.find("corona_setting");
    if (corona != nullptr && is_zero(corona->find("pass_limit")) && is_zero(corona->find("time_limit")) &&
        is_zero(corona->find("noise_level_limit"))) {
        return 2;
    }
    return is_empty(root.find("cameras")) ? 1 : 0;
}

void check_outcome(const std::string& utf8, const tarvo::AnalysisOutcome& outcome) {
    const std::int32_t code = outcome.code;
    const tarvo::CameraMap& cameras = outcome.cameras;
    const fuzz::JsonText json = fuzz::read_json(utf8);
    if (!json.good || json.beyond_the_library || json.root.kind != Kind::object) {
        return;
    }
    const std::int32_t wanted = expected_code(json.root);
    rule(code == wanted || (code == 3 && wanted == 0),
         "the code is what Corona's limits and the cameras say");
    const Node* list = json.root.find("cameras");
    rule(wanted != 0 || cameras.size() <= list->items.size(), "no camera comes from nowhere");
    rule(code != 0 || list->items.empty() || !cameras.empty(),
         "a list of cameras that was read leaves one at least");
    std::vector<std::wstring> notices;
    const bool sure = fuzz::expected_notices(json.root, notices);
    rule(code == 2 ? outcome.messages.empty() : !sure || outcome.messages == notices,
         "the notices are what the analysis says, in their order");
}

// A store that has read a good analysis before.
void restore(tarvo::SceneData& scene) {
    static const std::wstring kGood =
        LR"({"cameras":[{"name":"Camera001"},{"name":"Cam 2"}],"is_region":"true",
        "corona_setting":{"pass_limit":"0","time_limit":"30","noise_level_limit":"0"},"gamma_out":"1.8"})";
    scene.clear_cameras();
    rule(parse(scene, kGood) == 0 && scene.cameras().size() == 2 && scene.messages().size() == 3 &&
             scene.corona_limits == 2,
         "the analysis to begin with is good, and leaves something everywhere");
}

struct Kept {
    explicit Kept(tarvo::SceneData& scene)
        : messages(scene.messages()), cameras(scene.cameras()), is_region(scene.is_region()),
          corona_limits(scene.corona_limits), gamma_out(scene.gamma_out) {}
    bool is_still(tarvo::SceneData& scene) const {
        return messages == scene.messages() && same_cameras(cameras, scene.cameras()) &&
               is_region == scene.is_region() && corona_limits == scene.corona_limits &&
               (gamma_out == scene.gamma_out ||
                (gamma_out != gamma_out && scene.gamma_out != scene.gamma_out));
    }

    std::vector<std::wstring> messages;
    tarvo::CameraMap cameras;
    std::string is_region;
    std::int32_t corona_limits;
    float gamma_out;
};

void check_scene_name(tarvo::SceneData& scene) {
    const std::string name = scene.scene_name_from_analysis();
    rule(name.find('/') == std::string::npos, "a scene's name has no folder");
    rule(name.empty() ||
             (scene.scene_path.size() > name.size() &&
              scene.scene_path.compare(scene.scene_path.size() - name.size(), name.size(), name) == 0),
         "a scene's path ends in its name");
}

void check_store(const std::wstring& text, const tarvo::AnalysisOutcome& outcome) {
    static tarvo::SceneData scene;
    restore(scene);
    const Kept before(scene);
    rule(parse(scene, text) == outcome.code, "one text has one code");
    check_cameras(scene);
    if (!outcome.usable) {
        rule(before.is_still(scene), "a text that is not usable changes nothing in the store");
    } else {
        rule(outcome.has_cameras ? same_cameras(outcome.cameras, scene.cameras())
                                 : same_cameras(before.cameras, scene.cameras()),
             "the cameras are those that were read, or those from before");
        rule(outcome.has_cameras == (outcome.code == 0 || outcome.code == 3),
             "codes 1 and 2 leave the cameras");
    }
    const Kept first(scene);
    rule(parse(scene, text) == outcome.code && first.is_still(scene), "read twice, a text gives the same");
    check_scene_name(scene);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static tarvo::Logger log(tarvo::kDataChannel);
    outside().forget();
    const std::wstring text = tarvo::Utf8ToWide(std::string(reinterpret_cast<const char*>(data), size));
    const std::string utf8 = tarvo::WideToUtf8(text);
    const tarvo::AnalysisOutcome outcome = tarvo::ReadAnalysis(utf8, log);

    rule(outcome.code >= 0 && outcome.code <= 3 && (outcome.usable || outcome.code == 0), "a code is 0 to 3");
    if (outcome.usable) {
        check_outcome(utf8, outcome);
    }
    if (fuzz::one_in(4, data, size)) {
        check_store(text, outcome);
    }
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t capacity,
                                               unsigned seed) {
    fuzz::AnalysisMutator mutator(seed);
    if (mutator.one_in(4)) {
        return LLVMFuzzerMutate(data, size, capacity);
    }
    Json::Value analysis = fuzz::from_buffer(data, size);
    mutator.change(analysis);
    const std::size_t changed = fuzz::to_buffer(analysis, data, capacity);
    return changed != 0 ? changed : LLVMFuzzerMutate(data, size, capacity);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data1, std::size_t size1,
                                                 const std::uint8_t* data2, std::size_t size2,
                                                 std::uint8_t* out, std::size_t capacity, unsigned seed) {
    Json::Value analysis = fuzz::from_buffer(data1, size1);
    fuzz::AnalysisMutator(seed).cross(analysis, fuzz::from_buffer(data2, size2));
    return fuzz::to_buffer(analysis, out, capacity);
}
