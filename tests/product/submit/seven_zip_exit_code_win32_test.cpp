// 7-Zip's exit code when Windows does not tell it.
#include "submit/scene_archive.h"
#include "tests/support/patched_import.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

BOOL WINAPI no_exit_code(HANDLE, DWORD*) {
    return FALSE;
}

TEST(SevenZipExitCode, ThatIsUnknownIsLoggedAsStillActive) {
    support::plugin_folder();
    const support::PatchedImport patch("KERNEL32.dll", "GetExitCodeProcess",
                                       reinterpret_cast<void*>(&no_exit_code));
    ASSERT_TRUE(patch.installed());
    tarvo::SceneData scene;
    tarvo::PluginConfig config;
    config.sevenZipExe = L"cmd.exe";
    config.packArguments = " /c exit 0";
    const std::size_t mark = support::log_mark("qfx_data");
    tarvo::RunSevenZip(scene, std::string(), config);
    const std::vector<std::string> lines = support::log_lines_since("qfx_data", mark);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines.front().find("[ERROR] 7-Zip did not pack the scene! Exit code: 259, "), 0u)
        << lines.front();
}

} // namespace
