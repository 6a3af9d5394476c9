// tarvo_diagnostics: looks through the installation, prints what is wrong and what to do, and gathers what
// support needs in one zip file. Works without 3ds Max.
#include "common/platform.h"
#include "common/win32_handles.h"
#include "packaging/diagnostics/files_win32.h"
#include "packaging/diagnostics/findings.h"
#include "packaging/diagnostics/gather_win32.h"
#include "packaging/diagnostics/wide_text_win32.h"
#include "packaging/diagnostics/zip_writer.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include <fcntl.h>
#include <io.h>

#include <shellapi.h>
#include <shlobj.h>

namespace diagnostics {
namespace {

constexpr int kExitFine = 0;
constexpr int kExitProblems = 1;
constexpr int kExitNotDone = 2;
constexpr unsigned long kLogBytes = 256 * 1024; // of each file
constexpr unsigned long kIniBytes = 64 * 1024;
constexpr int kLevels = 4;

struct Options {
    bool help = false;
    bool unredacted = false;
    std::wstring out; // the zip file; empty: a name with the time, on the desktop
};

void print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

const char* const kUsage =
    "TarvoDiagnostics: looks through the installation of Tarvo Rendering and gathers what support needs.\r\n"
    "  --out FILE      the zip file (when not given: on your desktop)\r\n"
    "  --unredacted    leaves user names, paths and scene names as they are\r\n"
    "ends with 0 when nothing is wrong, 1 when there are problems, 2 when it could not do its work\r\n";

bool parse(Options& options) {
    int count = 0;
    LPWSTR* list = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    bool good = list != nullptr;
    for (int i = 1; good && i < count; ++i) {
        const std::wstring argument = list[i];
        if (argument == L"--help" || argument == L"/?") {
            options.help = true;
        } else if (argument == L"--unredacted") {
            options.unredacted = true;
        } else if (argument == L"--out" && i + 1 < count) {
            options.out = list[++i];
        } else {
            print("error: unknown argument '" + to_utf8(argument) + "'\r\n" + kUsage);
            good = false;
        }
    }
    ::LocalFree(list);
    return good;
}

std::wstring default_file(const tarvo::LocalTime& now) {
    wchar_t folder[MAX_PATH] = {};
    if (FAILED(::SHGetFolderPathW(nullptr, CSIDL_DESKTOPDIRECTORY, nullptr, SHGFP_TYPE_CURRENT, folder))) {
        ::GetTempPathW(MAX_PATH, folder);
    }
    std::array<wchar_t, 64> name = {};
    std::swprintf(name.data(), name.size(), L"\\TarvoDiagnostics-%04d%02d%02d-%02d%02d%02d.zip", now.year,
                  now.month, now.day, now.hour, now.minute, now.second);
    return std::wstring(folder) + name.data();
}

bool write_file(const std::wstring& path, const std::string& content) {
    const tarvo::FileHandle file(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                               FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    return file &&
           ::WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr) !=
               FALSE &&
           written == content.size();
}

bool is_log(const std::string& path) {
    return path.size() > 4 && path.compare(path.size() - 4, 4, ".log") == 0;
}

std::string after_last(const std::string& path, char separator) {
    return path.substr(path.rfind(separator) + 1);
}

// "2024-03-07 09:05:02  12345  path"
std::string listing(const std::vector<Entry>& entries) {
    std::string text;
    for (const Entry& entry : entries) {
        text += entry.written + "  " + (entry.is_folder ? "<folder>" : std::to_string(entry.size)) + "  " +
                to_utf8(entry.path) + "\r\n";
    }
    return text;
}

class Bundle {
public:
    Bundle(const tarvo::LocalTime& now, const Secrets& secrets, bool unredacted)
        : zip_(now.year, now.month, now.day, now.hour, now.minute, now.second), redactor_(secrets),
          unredacted_(unredacted) {}

    void add(const std::string& name, const std::string& text) {
        pack(name, unredacted_ ? text : redactor_.text(text));
    }

    void add_findings(const std::string& name, const std::string& text) {
        pack(name, unredacted_ ? text : redactor_.findings(text));
    }

    void add_logs(const std::vector<Entry>& entries) {
        for (const Entry& entry : entries) {
            const std::string path = to_utf8(entry.path);
            if (!entry.is_folder && is_log(path)) {
                const std::string folder = after_last(path.substr(0, path.rfind('\\')), '\\');
                add(folder + "/" + after_last(path, '\\'), log_text(file_tail(entry.path, kLogBytes)));
            }
        }
    }

    bool write(const std::wstring& file) { return complete_ && write_file(file, zip_.finish()); }

private:
    void pack(const std::string& name, const std::string& text) {
        complete_ = zip_.add(name, text) && complete_;
    }

    // Line by line: the plugin writes one kind of line in UTF-8 and the others in a code page.
    static std::string log_text(const std::string& bytes) {
        std::string text;
        std::size_t from = 0;
        while (from < bytes.size()) {
            const std::size_t end = std::min(bytes.find('\n', from), bytes.size() - 1) + 1;
            text += text_to_utf8(bytes.substr(from, end - from));
            from = end;
        }
        return text;
    }

    ZipWriter zip_;
    Redactor redactor_;
    bool unredacted_;
    bool complete_ = true;
};

int run(const Options& options) {
    const tarvo::LocalTime now = tarvo::local_time();
    const Places places = find_places();
    const std::vector<Finding> findings = judge(gather(places));
    const std::string summary = summary_text(findings);

    Bundle bundle(now, find_secrets(places), options.unredacted);
    const std::vector<Entry> data = entries_below(places.data, kLevels);
    bundle.add_findings("summary.txt", summary);
    bundle.add("files.txt", listing(data) + listing(entries_below(places.package, kLevels)));
    bundle.add("qfx_plugin.ini", text_to_utf8(file_tail(places.ini, kIniBytes)));
    bundle.add_logs(data);
    const std::wstring file = options.out.empty() ? default_file(now) : options.out;
    print("Tarvo Rendering diagnostics\r\n\r\n" + summary + "\r\n");
    if (!bundle.write(file)) {
        print("error: " + to_utf8(file) + " cannot be written. Give another file with --out FILE.\r\n");
        return kExitNotDone;
    }
    print("Everything is gathered in " + to_utf8(file) + "\r\n" +
          (options.unredacted ? "It holds user names, paths and scene names as they are.\r\n"
                              : "User names, paths and scene names have been taken out of it.\r\n"));
    return has_problem(findings) ? kExitProblems : kExitFine;
}

} // namespace
} // namespace diagnostics

int main() {
    ::SetConsoleOutputCP(CP_UTF8);
    // The texts bring their own line ends.
    ::_setmode(::_fileno(stdout), _O_BINARY);
    diagnostics::Options options;
    if (!diagnostics::parse(options)) {
        return diagnostics::kExitNotDone;
    }
    if (options.help) {
        diagnostics::print(diagnostics::kUsage);
        return diagnostics::kExitFine;
    }
    try {
        return diagnostics::run(options);
    } catch (const std::exception& error) {
        diagnostics::print(std::string("error: ") + error.what() + "\r\n");
        return diagnostics::kExitNotDone;
    }
}
