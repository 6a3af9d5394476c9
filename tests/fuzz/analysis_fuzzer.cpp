// Feeds any bytes to the analysis reader, to the scene's name operation and to the camera's. Run by ./test
// over the golden pairs and for a bounded number of further inputs, and by tools/fuzz.sh for as long as
// wanted.
#include "common/text.h"
#include "scene/camera_name.h"
#include "scene/scene_data.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void check_name(const std::string& bytes) {
    const tarvo::CameraName name = tarvo::SplitCameraName(bytes);
    check(name.key.size() <= tarvo::kMaxCameraName);
    check(name.output_name.size() <= tarvo::kMaxCameraName);
    check(tarvo::ContainsAnyOf(name.output_name, tarvo::kForbiddenNameCharacters) == 0);
    check(name.has_forbidden_characters ==
          (tarvo::ContainsAnyOf(name.key, tarvo::kForbiddenNameCharacters) != 0));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Without a data folder the log goes nowhere.
    static tarvo::SceneData scene;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    check_name(bytes);
    std::wstring text = tarvo::Utf8ToWide(bytes);
    scene.set_analysis_text(text);
    const std::int32_t code = scene.parse_analysis();
    check(code >= 0 && code <= 3);
    for (const auto& camera : scene.cameras()) {
        check(camera.first.size() <= tarvo::kMaxCameraName);
        check(tarvo::ContainsAnyOf(camera.second.img_output_name, tarvo::kForbiddenNameCharacters) == 0);
        check(!camera.second.checked);
    }
    scene.scene_name_from_analysis();
    return 0;
}
