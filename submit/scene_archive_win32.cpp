#include "submit/scene_archive.h"

#include "common/platform.h"
#include "common/text.h"
#include "common/win32_handles.h"

#include <vector>

namespace tarvo {

namespace {

// Bytes. 7-Zip writes only a header when it finds no file to pack.
constexpr long long kEmptyArchive = 32;

void log_outcome(DWORD exit_code, const std::wstring& archive, Logger& log) {
    const long long size = FileSizeOf(archive);
    const std::string figures = std::to_string(exit_code) + ", bytes in the archive: " +
                                (size < 0 ? std::string("no archive") : std::to_string(size));
    if (exit_code == 0 && size > kEmptyArchive) {
        log.Write("7-Zip packed the scene. Exit code: " + figures, kInfo);
    } else {
        log.Write("7-Zip did not pack the scene! Exit code: " + figures, kError);
    }
}

} // namespace

void RunSevenZip(SceneData& scene, std::string, const PluginConfig& config) {
    // The program's path has a blank and is not quoted (C-33): CreateProcessW tries the path up to each blank
    // in turn and writes into the command line meanwhile.
    const std::wstring text = PackCommandLine(config);
    std::vector<wchar_t> command_line(text.c_str(), text.c_str() + text.size() + 1);

    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information = {};
    if (::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE,
                         CREATE_NO_WINDOW | NORMAL_PRIORITY_CLASS, nullptr, nullptr, &startup,
                         &information) == FALSE) {
        scene.log().Write("7-Zip was not started! ErrorCode: " + std::to_string(::GetLastError()), kError);
        return;
    }
    const KernelHandle thread(information.hThread);
    const KernelHandle process(information.hProcess);
    ::WaitForSingleObject(process.get(), INFINITE);
    DWORD exit_code = STILL_ACTIVE; // if the call below fails
    ::GetExitCodeProcess(process.get(), &exit_code);
    const std::wstring archive = Utf8ToWide(config.archivePath);
    scene.made_archive.path = archive;
    scene.made_archive.identity = FileIdentityOf(archive);
    log_outcome(exit_code, archive, scene.log());
}

} // namespace tarvo
