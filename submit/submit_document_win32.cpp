#include "submit/submit_document.h"

#include "common/handle.h"
#include "common/json_text.h"
#include "common/message_box.h"
#include "common/platform.h"
#include "common/text.h"

#include <cstdio>
#include <cwchar>
#include <exception>

namespace tarvo {

namespace {

struct ProblemReport {
    DocumentProblem problem;
    unsigned text_id;
    const char* log_text;
};

// The log texts are fixed (C-50).
constexpr ProblemReport kReports[] = {
    {DocumentProblem::unusable_analysis, IDS_DOCUMENT_NOT_WRITTEN,
     "Parse failed in writing json file when submiting!"},
    {DocumentProblem::start_frame_negative, IDS_START_FRAME_NEGATIVE,
     "Start frame be less than 0 when submiting!"},
    {DocumentProblem::end_frame_negative, IDS_END_FRAME_NEGATIVE, "End frame be less than 0 when submiting!"},
    {DocumentProblem::not_opened, IDS_DOCUMENT_NOT_WRITTEN, "Open json file failed when write it!"},
};

void report(DocumentProblem problem, Logger& log, WindowHandle owner) {
    for (const ProblemReport& row : kReports) {
        if (row.problem == problem) {
            ShowBox(owner, row.text_id);
            log.Write(row.log_text, kError);
        }
    }
}

DocumentChoices collect_choices(SceneData& scene, const PluginConfig& config) {
    DocumentChoices choices;
    choices.scene_file = config.sceneFile;
    choices.scene_path = scene.scene_path;
    choices.cameras = &scene.cameras();
    choices.num_blocks = scene.num_blocks;
    choices.color_channel = scene.color_channel;
    choices.ao_channel = scene.ao_channel;
    choices.ao_radius = scene.ao_radius;
    choices.ao_subdivs = scene.ao_subdivs;
    choices.gamma_out = scene.gamma_out;
    return choices;
}

struct BuiltDocument {
    Json::Value root;
    std::string app_version;
};

DocumentProblem build(SceneData& scene, const PluginConfig& config, BuiltDocument& document) {
    std::string refusal;
    if (ParseJson(WideToUtf8(scene.analysis_text()), document.root, &refusal)) {
        try {
            // Read before anything is written, and without creating the member, which is no part of the
            // edits.
            const Json::Value& analysis = document.root;
            document.app_version = analysis["app_version"].asString();
            return BuildSubmitDocument(document.root, collect_choices(scene, config));
        } catch (const std::exception& error) {
            refusal = error.what();
        }
    }
    if (!refusal.empty()) {
        scene.log().Write("The analysis text cannot be used: " + refusal, kError);
    }
    return DocumentProblem::unusable_analysis;
}

struct StdioFileTraits {
    using Type = std::FILE*;
    static Type empty() { return nullptr; }
    static void close(Type file) { std::fclose(file); }
};
using StdioFile = UniqueHandle<StdioFileTraits>;

// False when the file cannot be opened. Binary: the file's bytes are the styled text's, with bare line feeds.
bool write_file(const std::wstring& path, const std::string& text) {
    StdioFile file(::_wfopen(path.c_str(), L"wb"));
    if (!file) {
        return false;
    }
    const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
    const bool closed = std::fclose(file.release()) == 0;
    if (!written || !closed) {
        ::_wremove(path.c_str());
    }
    return true;
}

} // namespace

bool WriteSubmitDocument(SceneData& scene, WindowHandle owner, PluginConfig& config, const std::wstring& guid,
                         std::string& body) {
    BuiltDocument document;
    const DocumentProblem problem = build(scene, config, document);
    if (problem != DocumentProblem::none) {
        report(problem, scene.log(), owner);
        return false;
    }
    if (!PathExists(config.jsonPath)) {
        CreateFolder(config.jsonPath);
    }
    const std::wstring path = config.jsonPath + L"/" + guid + L".json";
    if (!write_file(path, StyledJson(document.root))) {
        report(DocumentProblem::not_opened, scene.log(), owner);
        return false;
    }
    body = StyledJson(
        BuildRequestBody(config.sceneFile, WideToUtf8(path), document.app_version, config.archivePath));
    config.jsonPath = path;
    scene.log().Write("Write json file at: " + WideToLocale(path) + " successfully.", kInfo);
    return true;
}

} // namespace tarvo
