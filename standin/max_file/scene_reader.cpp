#include "standin/max_file/scene_reader.h"

#include "standin/base/text.h"
#include "standin/max_file/property_set.h"
#include "standin/max_file/scene_chunks.h"
#include "standin/max_file/scene_text.h"

#include <algorithm>

namespace max_file {

namespace {

constexpr std::int32_t kYearOfMajorZero = 1998; // 21 is 2019
constexpr std::int32_t kFirstMajorWithYear = 10;

// The rest of the first line that begins with `key`.
bool find_line(const Summary& summary, const wchar_t* heading, const std::wstring& key, std::wstring& rest) {
    for (const std::wstring& line : summary.lines_under(heading)) {
        if (line.compare(0, key.size(), key) == 0) {
            rest = line.substr(key.size());
            return true;
        }
    }
    return false;
}

bool is_digits(const std::wstring& text) {
    return !text.empty() && text.find_first_not_of(L"0123456789") == std::wstring::npos;
}

// "21,00" or "21.00": the decimal sign depends on the machine that saved the scene.
bool take_version(const std::wstring& text, SceneModel& model) {
    const std::wstring::size_type sign = text.find_first_of(L",.");
    const std::wstring major_text = text.substr(0, sign);
    std::wstring minor_text = sign == std::wstring::npos ? L"0" : text.substr(sign + 1);
    std::int32_t major = 0;
    if (!is_digits(major_text) || !is_digits(minor_text) || !read_decimal(major_text, major)) {
        return false;
    }
    while (minor_text.size() > 1 && minor_text.back() == L'0') {
        minor_text.pop_back();
    }
    model.version = major_text + L"." + minor_text;
    const bool has_year = major >= kFirstMajorWithYear && major < kYearOfMajorZero;
    model.app_version = std::to_wstring(has_year ? major + kYearOfMajorZero : major);
    return true;
}

void take_number(const Summary& summary, const wchar_t* heading, const wchar_t* key, std::int32_t smallest,
                 SceneModel& model, std::int32_t& value) {
    std::wstring text;
    std::int32_t number = 0;
    if (!find_line(summary, heading, key, text)) {
        model.notes.push_back(std::wstring(L"The summary has no line '") + key + L"'.");
    } else if (!read_decimal(text, number) || number < smallest) {
        model.notes.push_back(std::wstring(L"The summary's line '") + key + text + L"' is not usable.");
    } else {
        value = number;
    }
}

// Lines such as "Render Camera 00=Name".
std::vector<std::wstring> render_cameras(const Summary& summary) {
    const std::wstring kPrefix = L"Render Camera ";
    std::vector<std::wstring> names;
    for (const std::wstring& line : summary.lines_under(L"Render Data")) {
        const std::wstring::size_type sign = line.find(L'=');
        if (sign != std::wstring::npos && line.compare(0, kPrefix.size(), kPrefix) == 0 &&
            sign > kPrefix.size() && is_digits(line.substr(kPrefix.size(), sign - kPrefix.size()))) {
            names.push_back(line.substr(sign + 1));
        }
    }
    return names;
}

void take_summary(const Summary& summary, SceneModel& model) {
    std::wstring text;
    if (!find_line(summary, L"General", L"3ds Max Version: ", text) || !take_version(text, model)) {
        model.notes.push_back(L"The summary does not say which version saved the scene.");
    }
    take_number(summary, L"Scene Totals", L"Cameras: ", 0, model, model.summary_camera_count);
    take_number(summary, L"Render Data", L"Render Width=", 1, model, model.width);
    take_number(summary, L"Render Data", L"Render Height=", 1, model, model.height);
    constexpr std::int32_t kAnyFrame = -2147483647;
    take_number(summary, L"Render Data", L"Animation Start=", kAnyFrame, model, model.start_frame);
    take_number(summary, L"Render Data", L"Animation End=", kAnyFrame, model, model.end_frame);
    find_line(summary, L"Render Data", L"Renderer Name=", model.renderer);
    model.render_cameras = render_cameras(summary);
}

// A difference need not be damage: the count may include cameras of other files.
void compare_cameras(bool names_are_exact, SceneModel& model) {
    const std::size_t count = model.cameras.size();
    if (model.summary_camera_count != kCameraCountUnknown &&
        static_cast<std::size_t>(model.summary_camera_count) != count) {
        model.notes.push_back(L"The summary counts " + std::to_wstring(model.summary_camera_count) +
                              L" cameras, the scene holds " + std::to_wstring(count) + L".");
    }
    std::vector<std::wstring> listed = model.render_cameras;
    std::vector<std::wstring> found = model.cameras;
    std::sort(listed.begin(), listed.end());
    std::sort(found.begin(), found.end());
    const bool differ = names_are_exact ? listed != found : listed.size() != found.size();
    if (differ) {
        model.notes.push_back(L"The summary's render cameras are not the cameras of the scene.");
    }
}

bool read_summary_stream(const SceneStreams& streams, SceneModel& model, std::string& problem) {
    if (!streams.summary.present) {
        model.notes.push_back(L"The file has no summary: version, size and frames are not known.");
        return true;
    }
    Summary summary;
    if (!read_summary(streams.summary.bytes, summary, problem)) {
        return fail_stream(kSummaryStream, problem);
    }
    take_summary(summary, model);
    compare_cameras(summary.texts_are_exact, model);
    return true;
}

bool read_reference_stream(const SceneStreams& streams, SceneModel& model, std::string& problem) {
    if (!streams.referenced_files.present) {
        model.notes.push_back(L"The file has no list of referenced files.");
        return true;
    }
    return read_referenced_files(streams.referenced_files.bytes, model.references, problem) ||
           fail_stream(kReferencedFilesStream, problem);
}

} // namespace

std::string shown_name(const wchar_t* stream) {
    return base::to_utf8(stream[0] < L' ' ? stream + 1 : stream);
}

bool fail_stream(const wchar_t* stream, std::string& problem) {
    problem.insert(0, "is damaged: stream " + shown_name(stream) + ": ");
    return false;
}

bool read_scene(const SceneStreams& streams, SceneModel& model, std::string& problem) {
    const std::wstring path = model.path;
    model = SceneModel();
    model.path = path;
    problem.clear();
    std::vector<SceneClass> classes;
    if (!read_class_directory(streams.class_directory, classes, problem)) {
        return fail_stream(kClassDirectoryStream, problem);
    }
    if (!read_cameras(streams.scene, classes, model.cameras, problem)) {
        return fail_stream(kSceneStream, problem);
    }
    return read_reference_stream(streams, model, problem) && read_summary_stream(streams, model, problem);
}

} // namespace max_file
