#include "scene/scene_file.h"

#include "common/text.h"
#include "host/host.h"
#include "scene/scene_data.h"

#include <windows.h>

namespace tarvo {

std::string SceneData::prepare_scene_file(const std::string& entered_name, WindowHandle name_field) {
    const std::wstring current_name = SceneFileName();
    const std::string current_path = WideToUtf8(SceneFilePath());
    if (scene_path.empty()) {
        scene_path = current_path;
    }
    if (current_path.empty()) {
        return std::string();
    }
    scene_name_ = WideToUtf8(current_name);
    if (entered_name.empty()) {
        ::SetWindowTextW(name_field, WithoutExtension(current_name).c_str());
    }
    const SceneFilePlan plan =
        PlanSceneFile(entered_name.empty() ? scene_name_ : entered_name, scene_name_, current_path);
    scene_name_ = plan.scene_name;
    if (!plan.save_first) {
        return plan.file;
    }
    const std::wstring new_path = Utf8ToWide(plan.file);
    const bool saved = new_path.size() <= kMaxScenePath && SaveSceneAs(new_path);
    return saved ? plan.file : std::string();
}

} // namespace tarvo
