#include "scene/scene_data.h"

#include "common/text.h"

#include <utility>

namespace tarvo {

SceneData& SceneData::instance() {
    static SceneData store;
    return store;
}

SceneData::SceneData() {
    log_.Open(kDataChannel.name);
    log_.SetMaxSizeMB(kDataChannel.max_size_mb);
    log_.SetMaxFiles(kDataChannel.max_files);
}

void SceneData::set_analysis_text(std::wstring& text) {
    analysis_text_ = std::move(text);
    text.clear();
    has_parsed_name_ = false;
}

std::int32_t SceneData::parse_analysis() {
    AnalysisOutcome outcome = ReadAnalysis(WideToUtf8(analysis_text_), log_);
    parsed_name_ = outcome.scene_name;
    has_parsed_name_ = true;
    if (outcome.usable) {
        store(outcome);
    }
    return outcome.code;
}

void SceneData::store(AnalysisOutcome& outcome) {
    messages_ = std::move(outcome.messages);
    corona_limits = outcome.corona_limits;
    if (outcome.has_region) {
        is_region_ = std::move(outcome.is_region);
    }
    if (outcome.has_cameras) { // otherwise the cameras of an earlier analysis stay (C-21)
        cameras_ = std::move(outcome.cameras);
    }
    if (outcome.has_gamma) {
        gamma_out = outcome.gamma_out;
    }
}

std::string SceneData::scene_name_from_analysis() {
    if (!has_parsed_name_) {
        parsed_name_ = ReadSceneName(WideToUtf8(analysis_text_));
        has_parsed_name_ = true;
    }
    if (!ReportSceneName(parsed_name_, log_)) {
        return std::string();
    }
    scene_name_ = parsed_name_.name;
    scene_path = parsed_name_.path;
    return scene_name_;
}

} // namespace tarvo
