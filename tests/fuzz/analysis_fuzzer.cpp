// Feeds any bytes to the analysis reader and to the name operation. Run by ./test over the golden pairs and
// for a bounded number of further inputs, and by tools/fuzz.sh for as long as wanted.
#include "common/text.h"
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Without a data folder the log goes nowhere.
    static tarvo::SceneData scene;
    std::wstring text = tarvo::Utf8ToWide(std::string(reinterpret_cast<const char*>(data), size));
    scene.set_analysis_text(text);
    const std::int32_t code = scene.parse_analysis();
    check(code >= 0 && code <= 3);
    for (const auto& camera : scene.cameras()) {
        check(camera.first.size() <= 259);
        check(tarvo::ContainsAnyOf(camera.second.img_output_name, tarvo::kForbiddenNameCharacters) == 0);
        check(!camera.second.checked);
    }
    scene.scene_name_from_analysis();
    return 0;
}
