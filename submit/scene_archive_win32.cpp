#include "submit/scene_archive.h"

#include "common/text.h"
#include "common/win32_handles.h"

#include <vector>

namespace tarvo {

void RunSevenZip(SceneData&, std::string, const PluginConfig& config) {
    // The program's path holds a blank and is not quoted (C-33): the system finds the program by trying the
    // path up to each blank in turn. CreateProcessW writes into the command line while it does so.
    const std::wstring text = config.sevenZipExe + LocaleToWide(config.packArguments);
    std::vector<wchar_t> command_line(text.c_str(), text.c_str() + text.size() + 1);

    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information = {};
    if (::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE,
                         CREATE_NO_WINDOW | NORMAL_PRIORITY_CLASS, nullptr, nullptr, &startup,
                         &information) == FALSE) {
        return;
    }
    const KernelHandle thread(information.hThread);
    const KernelHandle process(information.hProcess);
    ::WaitForSingleObject(process.get(), INFINITE);
    DWORD exit_code = 0;
    ::GetExitCodeProcess(process.get(), &exit_code);
}

} // namespace tarvo
