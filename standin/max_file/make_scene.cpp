// Writes a small scene file for the stage and the tests. Exit code 0: written; 1: it cannot be written; 2:
// the command line is wrong.
#include "standin/base/arguments.h"
#include "standin/base/program_win32.h"
#include "standin/base/text.h"
#include "standin/max_file/scene_composer.h"
#include "standin/max_file/scene_file_win32.h"

#include <cstdio>

namespace {

using max_file::SceneModel;

constexpr const char* kDescription = "make_scene: writes a small scene file. Without --camera the scene has "
                                     "three cameras, without --reference\n"
                                     "two referenced files, of which one does not exist.";

void print(std::FILE* stream, const std::wstring& text) {
    std::fputs((base::to_utf8(text) + "\n").c_str(), stream);
}

base::Arguments read_order(SceneModel& model, std::wstring& out, std::string& text) {
    std::vector<std::string> cameras;
    std::vector<std::string> references;
    CLI::App app(kDescription);
    base::add_path(app, "out", out, "the file to write")->required();
    app.add_option("--camera", cameras, "name of a camera; repeat it for more")->allow_extra_args(false);
    app.add_option("--reference", references, "path of a referenced file; repeat it for more")
        ->allow_extra_args(false);
    app.add_option("--width", model.width, "pixels")->check(CLI::PositiveNumber);
    app.add_option("--height", model.height, "pixels")->check(CLI::PositiveNumber);
    app.add_option("--start", model.start_frame, "first frame");
    app.add_option("--end", model.end_frame, "last frame");
    const base::Arguments result = base::parse_arguments(app, base::command_line_arguments(), text);
    if (!cameras.empty()) {
        model.cameras.clear();
        for (const std::string& camera : cameras) {
            model.cameras.push_back(base::to_wide(camera));
        }
        model.render_cameras = model.cameras;
        model.summary_camera_count = static_cast<std::int32_t>(cameras.size());
    }
    if (!references.empty()) {
        model.references.clear();
        for (const std::string& path : references) {
            model.references.push_back({L"Bitmap", base::to_wide(path), base::to_wide(path)});
        }
    }
    return result;
}

} // namespace

int main() {
    SceneModel model = max_file::sample_model();
    std::wstring out;
    std::string text;
    const base::Arguments arguments = read_order(model, out, text);
    if (arguments != base::Arguments::good) {
        std::fputs((text + "\n").c_str(), arguments == base::Arguments::help ? stdout : stderr);
        return arguments == base::Arguments::help ? 0 : 2;
    }
    std::wstring problem;
    if (!max_file::write_scene_file(model, out, problem)) {
        print(stderr, problem);
        return 1;
    }
    print(stdout, out + L" is written: " + std::to_wstring(model.cameras.size()) + L" cameras, " +
                      std::to_wstring(model.references.size()) + L" referenced files.");
    return 0;
}
