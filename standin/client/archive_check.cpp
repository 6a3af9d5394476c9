#include "standin/client/archive_check.h"

#include "common/win32_handles.h"

#include <cstdlib>

namespace desktop_client {

namespace {

using tarvo::KernelHandle;

struct ProgramResult {
    bool started = false;
    int exit_code = -1;
    std::string output;
};

bool open_pipe(KernelHandle& read_end, KernelHandle& write_end) {
    SECURITY_ATTRIBUTES inheritable = {};
    inheritable.nLength = sizeof(inheritable);
    inheritable.bInheritHandle = TRUE;
    HANDLE read_handle = nullptr;
    HANDLE write_handle = nullptr;
    if (::CreatePipe(&read_handle, &write_handle, &inheritable, 0) == 0) {
        return false;
    }
    read_end.reset(read_handle);
    write_end.reset(write_handle);
    return ::SetHandleInformation(read_handle, HANDLE_FLAG_INHERIT, 0) != 0;
}

std::string read_to_end(HANDLE pipe) {
    std::string text;
    char buffer[4096];
    DWORD count = 0;
    while (::ReadFile(pipe, buffer, sizeof(buffer), &count, nullptr) != 0 && count > 0) {
        text.append(buffer, count);
    }
    return text;
}

// Runs hidden, with what it prints (errors included) caught.
ProgramResult run_program(const std::wstring& program, const std::wstring& arguments) {
    ProgramResult result;
    KernelHandle read_end;
    KernelHandle write_end;
    if (!open_pipe(read_end, write_end)) {
        return result;
    }
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = write_end.get();
    startup.hStdError = write_end.get();
    PROCESS_INFORMATION information = {};
    std::wstring command = L"\"" + program + L"\" " + arguments;
    if (::CreateProcessW(program.c_str(), &command[0], nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                         nullptr, &startup, &information) == 0) {
        return result;
    }
    const KernelHandle process(information.hProcess);
    const KernelHandle thread(information.hThread);
    // While this end is open the reading never ends.
    write_end.reset();
    result.started = true;
    result.output = read_to_end(read_end.get());
    ::WaitForSingleObject(process.get(), INFINITE);
    DWORD exit_code = 0;
    if (::GetExitCodeProcess(process.get(), &exit_code) != 0) {
        result.exit_code = static_cast<int>(exit_code);
    }
    return result;
}

bool take_field(const std::string& line, const std::string& key, std::string& value) {
    const std::string start = key + " = ";
    if (line.compare(0, start.size(), start) != 0) {
        return false;
    }
    value = line.substr(start.size());
    return true;
}

} // namespace

ArchiveFindings examine_archive(const std::wstring& seven_zip, const std::wstring& archive) {
    ArchiveFindings findings;
    // Behind "--" a path that begins with a hyphen is a path; a path of Windows cannot hold a quote.
    const std::wstring common = L" -bd -sccUTF-8 -- \"" + archive + L"\"";
    const ProgramResult test = run_program(seven_zip, L"t" + common);
    findings.program_ran = test.started;
    findings.test_exit_code = test.exit_code;
    findings.test_output = test.output;
    if (test.started && test.exit_code == 0) {
        findings.entries = entries_of_listing(run_program(seven_zip, L"l -slt" + common).output);
    }
    return findings;
}

std::vector<ArchiveEntry> entries_of_listing(const std::string& listing) {
    std::vector<ArchiveEntry> entries;
    bool in_entries = false; // above the line of hyphens stand the archive's own properties
    size_t start = 0;
    while (start < listing.size()) {
        size_t end = listing.find('\n', start);
        end = end == std::string::npos ? listing.size() : end;
        std::string line = listing.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        std::string value;
        if (line == "----------") {
            in_entries = true;
        } else if (in_entries && take_field(line, "Path", value)) {
            entries.emplace_back();
            entries.back().name = value;
        } else if (!entries.empty() && take_field(line, "Size", value)) {
            entries.back().size = std::strtoll(value.c_str(), nullptr, 10);
        }
    }
    return entries;
}

} // namespace desktop_client
