// What a scenario makes of the answer of the analysis script.
#pragma once

#include <json/value.h>

#include <string>

namespace stage {

struct AnalysisAnswer {
    bool fails = false;
    bool has_text = true;
    std::wstring text;
};

// `wanted` is the scenario's "analysis" (null: as the script says), `returned` the text the script gave,
// `scene_path` what {scene} stands for.
AnalysisAnswer analysis_answer(const Json::Value& wanted, const std::wstring& returned,
                               const std::wstring& scene_path);

} // namespace stage
