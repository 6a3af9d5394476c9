#include "scene/scene_file.h"

#include "common/path_text.h"

namespace tarvo {

SceneFilePlan PlanSceneFile(const std::string& entered_name, const std::string& current_name,
                            const std::string& current_path) {
    SceneFilePlan plan;
    plan.scene_name = entered_name;
    if (entered_name == current_name) {
        plan.file = current_path;
        return plan;
    }
    const std::string::size_type start = FileNameStart(current_path);
    if (start != std::string::npos) {
        plan.file = current_path.substr(0, start) + entered_name;
        plan.save_first = true;
    }
    return plan;
}

std::wstring WithoutExtension(const std::wstring& file_name) {
    constexpr std::wstring::size_type kExtension = 4;
    return file_name.size() < kExtension ? file_name : file_name.substr(0, file_name.size() - kExtension);
}

} // namespace tarvo
