// The desktop client's stand-in: checks each request and answers as the command line says.
#include "standin/base/files_win32.h"
#include "standin/base/program_win32.h"
#include "standin/client/options.h"
#include "standin/client/server.h"

#include <shlobj.h>

#include <cstdio>

namespace {

constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

int fail(int exit_code, const std::string& problem) {
    std::fputs(("error: " + problem + "\n").c_str(), stderr);
    return exit_code;
}

std::wstring installed_seven_zip() {
    wchar_t folder[MAX_PATH] = {};
    ::SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder);
    return std::wstring(folder) + L"/Tarvo Rendering/7-Zip/7z.exe";
}

} // namespace

int main() {
    client::Options options;
    options.seven_zip = installed_seven_zip();
    std::string text;
    switch (client::parse_options(base::command_line_arguments(), options, text)) {
    case base::Arguments::bad:
        return fail(kExitUsage, text + "; client --help lists the options");
    case base::Arguments::help:
        std::fputs(text.c_str(), stdout);
        return 0;
    case base::Arguments::good:
        break;
    }
    const std::string problem = client::serve(options);
    return problem.empty() ? 0 : fail(kExitFailed, problem);
}
