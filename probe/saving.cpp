// Saving, with a file that is gone afterwards.
#include "host/host.h"
#include "probe/questions.h"
#include "probe/report.h"

namespace tarvo_probe {

namespace {

std::wstring temporary_scene() {
    wchar_t folder[MAX_PATH + 1] = {};
    const DWORD length = ::GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder, length) + L"TarvoHostProbe.max";
}

bool is_file(const std::wstring& path) {
    return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::wstring save_required() {
    tarvo::ScriptResult result;
    tarvo::RunScript(L"getSaveRequired() as string", result);
    return result.has_text ? result.text : std::wstring(L"(no text)");
}

} // namespace

void AskSaving() noexcept {
    Ask("saving", [] {
        Report& report = TheReport();
        if (!tarvo::SceneFilePath().empty()) {
            report.line("saving.asked", "no: a scene is open");
            return;
        }
        report.line("saving.asked", "yes");
        const std::wstring path = temporary_scene();
        ::DeleteFileW(path.c_str());
        report.flag("saving.under_a_name", tarvo::SaveSceneAs(path));
        report.flag("saving.file_there", is_file(path));
        report.line("saving.name_after", tarvo::SceneFileName());
        report.flag("saving.path_is_the_file", tarvo::SceneFilePath() == path);
        report.line("saving.required_after", save_required());
        ::DeleteFileW(path.c_str());
        tarvo::SaveScene();
        report.flag("saving.again_writes_the_file", is_file(path));
        report.flag("saving.into_no_folder", tarvo::SaveSceneAs(path + L".none\\a.max"));
        report.flag("saving.path_stays", tarvo::SceneFilePath() == path);
        ::DeleteFileW(path.c_str());
    });
}

} // namespace tarvo_probe
