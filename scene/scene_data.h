// The one process-wide store of what the plugin knows about the open scene: the analysis text and the values
// read from it, the user's render options, and the log channel "qfx_data". Outlives every dialog. For the
// user-interface thread only.
#pragma once

#include "common/logger.h"
#include "common/platform.h"
#include "scene/analysis_reader.h"
#include "scene/camera.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

class SceneData : public qfx_Noncopyable {
public:
    // The plugin's store; created by the first call.
    static SceneData& instance();

    SceneData();

    // Moves the text in; leaves the argument empty.
    void set_analysis_text(std::wstring& text);
    const std::wstring& analysis_text() const { return analysis_text_; }

    // Reads analysis_text into the store. 0: done, also when the text is not usable (only the log says so);
    // 1: no camera; 2: Corona's limits are all off; 3: a camera's name ends with a blank or a full stop.
    std::int32_t parse_analysis();

    const std::vector<std::wstring>& messages() const { return messages_; }
    CameraMap& cameras() { return cameras_; }
    const std::string& is_region() const { return is_region_; }
    void set_num_blocks(std::int32_t blocks) { num_blocks = blocks; }
    void clear_cameras() { cameras_.clear(); }

    // Fills scene name and path from the analysis text; returns the scene name (UTF-8), empty when there is
    // none. Parses the text only if parse_analysis has not.
    std::string scene_name_from_analysis();

    // The UTF-8 path of the scene file to pack, empty when there is none. Saves the scene under the entered
    // name (UTF-8, with extension) when that is another name; fills `name_field` when it is empty.
    std::string prepare_scene_file(const std::string& entered_name, WindowHandle name_field);

    // Copies the scene file within its folder, with a random suffix. CopyFileW's result: not 0 on success.
    std::int32_t backup_scene_file();

    Logger& log() { return log_; }

private:
    // Declaration order is fixed (C-24).
    std::wstring analysis_text_;
    std::vector<std::wstring> messages_;
    CameraMap cameras_;
    std::string scene_name_; // UTF-8, without folders

public:
    std::string scene_path; // UTF-8, full path

private:
    std::string is_region_; // "true": region rendering is on

public:
    std::int32_t num_blocks = 1; // 1, 10 or 64; 1: no blocks

private:
    Logger log_;

public:
    float gamma_out = 2.2f;
    std::int32_t corona_limits = 0; // 0: none given, 1: all off, 2: only time limited, 3: limited
    bool color_channel = false;
    bool ao_channel = false;
    double ao_radius = 1000.0; // scene units
    std::int32_t ao_subdivs = 16;
    OwnFile made_archive; // the last archive that this process packed

private:
    void store(AnalysisOutcome& outcome);

    SceneName parsed_name_;
    bool has_parsed_name_ = false; // `parsed_name_` is the one in analysis_text_
};

} // namespace tarvo
