#include "submit/submit_document.h"

#include "common/json_text.h"
#include "common/message_box.h"
#include "common/text.h"
#include "common/win32_handles.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <exception>
#include <utility>

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

struct BuiltDocument {
    Json::Value root;
    std::string app_version;
};

DocumentProblem build(SceneData& scene, const PluginConfig& config, BuiltDocument& document) {
    std::string refusal;
    if (ParseJson(WideToUtf8(scene.analysis_text()), document.root, &refusal)) {
        try {
            const DocumentProblem problem = BuildSubmitDocument(document.root, scene, config.sceneFile);
            // Only for good frames: a bad frame has its own box. Const: reading must not create the member.
            const Json::Value& analysis = document.root;
            document.app_version =
                problem == DocumentProblem::none ? analysis["app_version"].asString() : std::string();
            return problem;
        } catch (const std::exception& error) {
            refusal = error.what();
        }
    }
    LogUnusableAnalysis(refusal, scene.log());
    return DocumentProblem::unusable_analysis;
}

struct StdioFileTraits {
    using Type = std::FILE*;
    static Type empty() { return nullptr; }
    static void close(Type file) { std::fclose(file); }
};
using StdioFile = UniqueHandle<StdioFileTraits>;

// 0, or the C runtime's error that cut the file short.
int write_whole(StdioFile file, const std::string& text) {
    const int write_error = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size() ? 0 : errno;
    const int close_error = std::fclose(file.release()) == 0 ? 0 : errno;
    return write_error != 0 ? write_error : close_error;
}

// A document that was cut short is submitted all the same; the client rejects it (C-61).
void log_written(const std::wstring& path, int error, Logger& log) {
    if (error == 0) {
        log.Write("Write json file at: " + WideToLocale(path) + " successfully.", kInfo);
    } else {
        log.Write("The json file was not written to its end: " + WideToLocale(path) + ", " +
                      std::strerror(error),
                  kError);
    }
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
    StdioFile file(::_wfopen(path.c_str(), L"wb")); // binary: bare line feeds
    if (!file) {
        report(DocumentProblem::not_opened, scene.log(), owner);
        return false;
    }
    const int write_error = write_whole(std::move(file), StyledJson(document.root));
    body = StyledJson(
        BuildRequestBody(config.sceneFile, WideToUtf8(path), document.app_version, config.archivePath));
    config.jsonPath = path;
    log_written(path, write_error, scene.log());
    return true;
}

} // namespace tarvo
