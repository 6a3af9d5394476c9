// Names of scenes and cameras as UTF-16. The input: a first byte for so many letters in front (the limits lie
// at 255 and 259 units; most inputs are short), a second that says where the text is parted, then UTF-16
// units.
#include "common/text.h"
#include "scene/camera.h"
#include "scene/scene_file.h"
#include "standin/base/text.h"
#include "submit/scene_archive.h"
#include "tests/fuzz/support/outside.h"
#include "tests/fuzz/support/rule.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

using fuzz::outside;
using fuzz::rule;

const std::wstring kForbidden = tarvo::kForbiddenNameCharacters;

struct Input {
    std::wstring text;
    std::wstring::size_type parting = 0;
};

Input read_input(const std::uint8_t* data, std::size_t size) {
    Input input;
    if (size < 2) {
        return input;
    }
    constexpr unsigned kMany = 240;
    input.text.assign(data[0] < kMany ? data[0] % 4 : data[0], L'a');
    for (std::size_t at = 2; at + 1 < size; at += 2) {
        input.text += static_cast<wchar_t>(data[at] | data[at + 1] << 8);
    }
    // From the end, so that the letters in front stay together.
    input.parting = input.text.size() - std::min<std::size_t>(input.text.size(), data[1] % 32);
    return input;
}

bool is_forbidden(wchar_t unit) {
    return kForbidden.find(unit) != std::wstring::npos;
}

bool ends_badly(const std::wstring& name) {
    return !name.empty() && (name.back() == L' ' || name.back() == L'.');
}

void check_text(const std::wstring& text, const std::wstring& set) {
    std::wstring kept;
    std::copy_if(text.begin(), text.end(), std::back_inserter(kept),
                 [&set](wchar_t unit) { return std::count(set.begin(), set.end(), unit) == 0; });
    rule(tarvo::RemoveChars(text, set) == kept,
         "what is not in the set stays, in its order, and nothing else");
    rule((tarvo::ContainsAnyOf(text, set) != 0) == (kept.size() != text.size()),
         "a text holds a character of the set when one can be removed");

    const std::wstring trimmed = tarvo::TrimSpaces(text);
    const std::wstring::size_type start = trimmed.empty() ? 0 : text.find(trimmed);
    rule(start != std::wstring::npos, "trimming changes nothing inside");
    const auto blank = [](wchar_t unit) { return unit == L' '; };
    const auto first = text.begin() + static_cast<std::ptrdiff_t>(start);
    const auto behind = first + static_cast<std::ptrdiff_t>(trimmed.size());
    rule(std::all_of(text.begin(), first, blank) && std::all_of(behind, text.end(), blank),
         "trimming takes blanks alone");
    rule(trimmed.empty() || (!blank(trimmed.front()) && !blank(trimmed.back())),
         "no blank is left at an end");
}

void check_surrogates(const std::wstring& text) {
    const std::wstring visible = text.c_str();
    const std::string utf8 = base::to_utf8(visible);
    const bool whole = base::to_wide(utf8) == visible;
    rule(tarvo::HasLoneSurrogate(visible) == !whole, "half of a pair is what UTF-8 cannot carry");
    rule(tarvo::WideToUtf8(text) == utf8, "UTF-8 as the other conversion writes it");
    rule(!whole || tarvo::Utf8ToWide(utf8) == visible, "there and back");
    const std::wstring removed = tarvo::RemoveChars(visible, kForbidden);
    rule(!whole || !tarvo::HasLoneSurrogate(removed), "removing characters parts no pair");
}

// `name` is any bytes.
void check_camera_name(const std::string& name) {
    const tarvo::CameraName camera = tarvo::SplitCameraName(name);
    rule(camera.key.size() <= tarvo::kMaxCameraName && camera.output_name.size() <= tarvo::kMaxCameraName,
         "no name is longer than 259");
    rule(!tarvo::HasLoneSurrogate(camera.key) && !tarvo::HasLoneSurrogate(camera.output_name),
         "no half of a pair comes about");
    rule(std::none_of(camera.output_name.begin(), camera.output_name.end(), is_forbidden),
         "an output name can be a file's");
    const bool has_forbidden = std::any_of(camera.key.begin(), camera.key.end(), is_forbidden);
    rule(camera.has_forbidden_characters == has_forbidden, "forbidden characters are told");
    if (camera.has_bad_ending) {
        rule(camera.key.empty() && camera.output_name.empty(), "a name with a bad ending gives none");
        return;
    }
    rule(has_forbidden || camera.output_name == camera.key, "a name without such characters stays");
    rule(tarvo::IsUsableCameraName(camera.key) == (!camera.key.empty() && !has_forbidden),
         "only emptiness and forbidden characters are left to refuse");
    const tarvo::CameraName again = tarvo::SplitCameraName(tarvo::WideToUtf8(camera.key));
    rule(again.key == camera.key && !again.has_bad_ending, "a key read again is itself");
}

void check_whole_camera_name(const std::wstring& text) {
    const std::string utf8 = base::to_utf8(text);
    check_camera_name(utf8);
    std::wstring whole = base::to_wide(base::to_utf8(std::wstring(text.c_str())));
    if (whole.size() > tarvo::kMaxCameraName) {
        whole.resize(tarvo::kMaxCameraName);
        // A pair that the cut would part goes as a whole.
        if (base::to_wide(base::to_utf8(whole)) != whole) {
            whole.pop_back();
        }
    }
    const tarvo::CameraName camera = tarvo::SplitCameraName(utf8);
    rule(camera.has_bad_ending == ends_badly(whole), "a bad ending is told");
    if (!camera.has_bad_ending) {
        std::wstring output;
        const bool odd = std::any_of(whole.begin(), whole.end(), is_forbidden);
        std::copy_if(whole.begin(), whole.end(), std::back_inserter(output),
                     [](wchar_t unit) { return !is_forbidden(unit); });
        rule(camera.output_name == (odd ? output : tarvo::TrimSpaces(whole)),
             "the output name is the name without what a file name cannot hold");
    }
}

std::wstring folder_of(const std::wstring& path) {
    const std::wstring::size_type slash = path.rfind(L'/');
    const std::wstring::size_type end = slash != std::wstring::npos ? slash : path.rfind(L'\\');
    return end == std::wstring::npos ? std::wstring() : path.substr(0, end + 1);
}

void check_scene_file(const std::wstring& wide_path, const std::wstring& wide_entered) {
    const std::string path = base::to_utf8(wide_path);
    const std::string entered = base::to_utf8(wide_entered);
    const std::string folder = base::to_utf8(folder_of(base::to_wide(path)));
    const std::string current = path.substr(folder.size());
    const tarvo::SceneFilePlan plan = tarvo::PlanSceneFile(entered, current, path);
    rule(plan.scene_name == entered, "the scene is called what was entered");
    rule(base::is_utf8(plan.file), "a path stays UTF-8");
    if (entered == current) {
        rule(plan.file == path && !plan.save_first, "the scene's own name saves nothing");
    } else if (folder.empty()) {
        rule(plan.file.empty() && !plan.save_first, "without a folder there is nothing to save");
    } else {
        rule(plan.save_first && plan.file == folder + entered, "another name lies in the same folder");
    }
    rule(tarvo::ShownSceneName(current + ".max") == current, "the field shows a name without its extension");
    const std::wstring shown = base::to_wide(current);
    rule(current.find('\0') != std::string::npos ||
             tarvo::EnteredSceneName(shown) == (shown.empty() ? "" : current + ".max"),
         "what the field shows, entered, is the file's name again");
    const std::wstring file_name = base::to_wide(current);
    rule(tarvo::WithoutExtension(file_name + L".max") == file_name, "the extension and nothing else goes");
}

void check_opening(const std::wstring& stem) {
    const std::wstring visible = stem.substr(0, stem.find(L'.'));
    const bool cyrillic = std::any_of(visible.begin(), visible.end(),
                                      [](wchar_t unit) { return unit >= 0x400 && unit <= 0x52F; });
    rule(tarvo::IsUsableSceneName(visible + L".max") == (!cyrillic && !ends_badly(visible)),
         "the scene's name is refused for a bad ending and for Cyrillic characters");
    const std::wstring backup = tarvo::BackupName(stem, 4711);
    rule(backup == stem + L"_004711", "the backup's name ends in six digits");
}

// The arguments of a command line: blanks part them, a quotation mark begins and ends a piece where they do
// not.
std::vector<std::wstring> arguments_of(const std::wstring& line) {
    std::vector<std::wstring> arguments;
    bool inside = false;
    bool open = false;
    for (const wchar_t unit : line) {
        if (unit == L' ' && !inside) {
            open = false;
            continue;
        }
        if (!open) {
            arguments.emplace_back();
            open = true;
        }
        if (unit == L'"') {
            inside = !inside;
        } else {
            arguments.back() += unit;
        }
    }
    return arguments;
}

bool leaves_its_folder(const std::wstring& path, const std::wstring& folder) {
    std::wstring part;
    for (const wchar_t unit : path.substr(folder.size() + 1) + L"/") {
        const bool ends = unit == L'/' || unit == L'\\';
        if (ends && (part == L".." || part.find(L':') != std::wstring::npos)) {
            return true;
        }
        part = ends ? std::wstring() : part + unit;
    }
    return false;
}

// A colon stands behind a drive's letter alone, where the path begins.
bool can_be_a_path(const std::wstring& path) {
    const std::wstring::size_type drive = path.compare(0, 4, L"\\\\?\\") == 0 ? 4 : 0;
    for (std::wstring::size_type at = drive; at < path.size(); ++at) {
        const bool drive_colon = path[at] == L':' && at == drive + 1;
        const bool separator = path[at] == L'\\' || path[at] == L'/';
        if (path[at] < 0x20 || (is_forbidden(path[at]) && !drive_colon && !separator)) {
            return false;
        }
    }
    return true;
}

void check_archive(const std::wstring& scene) {
    tarvo::PluginConfig config;
    config.sevenZipExe = L"C:\\ProgramData/7z.exe";
    config.compressDir = L"C:\\ProgramData/compress";
    config.sceneFile = base::to_utf8(scene);
    const std::wstring stem = tarvo::Utf8ToWide(tarvo::ArchiveStem(config.sceneFile));
    const std::wstring archive = tarvo::ArchivePath(config.compressDir, stem, L"Ab3dE9");
    config.archivePath = base::to_utf8(archive);
    if (tarvo::FindArchiveRefusal(config, scene) != tarvo::ArchiveRefusal::none) {
        return;
    }
    rule(!tarvo::HasLoneSurrogate(scene), "half of a pair is refused");
    rule(can_be_a_path(scene), "a path that no file can have is refused");
    rule(!stem.empty() && !ends_badly(stem), "an archive has a name that Windows keeps");
    rule(!leaves_its_folder(archive, config.compressDir), "an archive lies in its folder");
    const std::wstring line = tarvo::PackCommandLine(config);
    rule(line.size() <= 32764, "a command line is no longer than Windows takes");
    const std::vector<std::wstring> arguments = arguments_of(line);
    rule(arguments.size() >= 3 && arguments.front() == config.sevenZipExe &&
             arguments[arguments.size() - 2] == archive && arguments.back() == scene,
         "archive and scene are one argument each, as they are");
    rule(arguments.size() == 7 || (arguments.size() == 8 && arguments[5] == L"-sccUTF-8"),
         "nothing of a name becomes an argument of its own");
}

void check_table(const std::wstring& one, const std::wstring& other) {
    static tarvo::Logger log(tarvo::kUiChannel);
    tarvo::CameraMap cameras;
    cameras[one];
    cameras[other];
    std::vector<tarvo::CameraRow> rows;
    for (const auto& camera : cameras) {
        rows.push_back({camera.first, camera.first.size() % 3 == 0 ? 1u : 2u});
    }
    outside().forget();
    const auto row = [&rows](int index) { return rows[static_cast<std::size_t>(index) % rows.size()]; };
    const tarvo::CameraCheck result = tarvo::CheckCameras(row, cameras, log);
    rule(outside().lines.size() == 1, "a check leaves one line");
    bool any = false;
    bool all_usable = true;
    for (const auto& camera : cameras) {
        const std::wstring& name = camera.first;
        any = any || camera.second.checked;
        all_usable = all_usable &&
                     (!camera.second.checked || (!name.empty() && name.front() != L' ' && !ends_badly(name) &&
                                                 std::none_of(name.begin(), name.end(), is_forbidden)));
    }
    const tarvo::CameraCheck wanted = !all_usable ? tarvo::CameraCheck::bad_name
                                      : any       ? tarvo::CameraCheck::valid
                                                  : tarvo::CameraCheck::none_checked;
    rule(result == wanted, "ticked cameras with usable names pass, and no others");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Input input = read_input(data, size);
    const std::wstring front = input.text.substr(0, input.parting);
    const std::wstring rest = input.text.substr(input.parting);
    check_text(input.text, kForbidden);
    check_text(front, rest);
    check_surrogates(input.text);
    check_camera_name(std::string(reinterpret_cast<const char*>(data), size));
    check_whole_camera_name(input.text);
    check_scene_file(front, rest);
    check_opening(input.text);
    check_archive(std::wstring(front.c_str()));
    check_table(front, rest);
    return 0;
}
