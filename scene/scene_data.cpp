#include "scene/scene_data.h"

#include "common/text.h"
#include "scene/analysis_reader.h"

#include <utility>

namespace tarvo {

namespace {

constexpr std::uint32_t kLogSizeMB = 5;
constexpr std::uint32_t kLogFiles = 2;

} // namespace

SceneData& SceneData::instance() {
    static SceneData store;
    return store;
}

SceneData::SceneData() {
    log_.Open("qfx_data");
    log_.SetMaxSizeMB(kLogSizeMB);
    log_.SetMaxFiles(kLogFiles);
}

void SceneData::set_analysis_text(std::wstring& text) {
    analysis_text_ = std::move(text);
    text.clear();
}

std::int32_t SceneData::parse_analysis() {
    AnalysisOutcome outcome = ReadAnalysis(WideToUtf8(analysis_text_), log_);
    if (outcome.usable) {
        take_over(outcome);
    }
    return outcome.code;
}

void SceneData::take_over(AnalysisOutcome& outcome) {
    messages_ = std::move(outcome.messages);
    corona_limits = outcome.corona_limits;
    if (outcome.has_region) {
        is_region_ = std::move(outcome.is_region);
    }
    if (outcome.has_cameras) {
        cameras_ = std::move(outcome.cameras);
    }
    if (outcome.has_gamma) {
        gamma_out = outcome.gamma_out;
    }
}

std::string SceneData::scene_name_from_analysis() {
    const SceneName scene = ReadSceneName(WideToUtf8(analysis_text_), log_);
    if (!scene.found) {
        return std::string();
    }
    scene_name_ = scene.name;
    scene_path = scene.path;
    return scene_name_;
}

} // namespace tarvo
