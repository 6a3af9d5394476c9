#include "packaging/diagnostics/programs_win32.h"

#include "common/win32_handles.h"

#include <windows.h>

#include <algorithm>

namespace diagnostics {

namespace {

constexpr DWORD kProgramMs = 10000;
constexpr DWORD kPipeBytes = 65536;

std::string first_line(const std::string& text) {
    const std::size_t begin = std::min(text.find_first_not_of("\r\n"), text.size());
    const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
    return text.substr(begin, end - begin);
}

std::string what_it_said(HANDLE pipe) {
    std::string text;
    DWORD available = 0;
    while (::PeekNamedPipe(pipe, nullptr, 0, nullptr, &available, nullptr) != FALSE && available > 0) {
        std::string part(available, '\0');
        DWORD read = 0;
        if (::ReadFile(pipe, &part[0], available, &read, nullptr) == FALSE || read == 0) {
            break;
        }
        text += part.substr(0, read);
    }
    return text;
}

struct ProgramRun {
    bool started = false;
    bool ended = false;
    DWORD exit_code = 0;
    std::string output;
};

ProgramRun run_hidden(const std::wstring& program, const std::wstring& arguments, DWORD milliseconds) {
    ProgramRun run;
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    HANDLE read_end = nullptr;
    HANDLE write_end = nullptr;
    if (::CreatePipe(&read_end, &write_end, &inherited, kPipeBytes) == FALSE) {
        return run;
    }
    const tarvo::KernelHandle reader(read_end);
    const tarvo::KernelHandle writer(write_end);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = writer.get();
    PROCESS_INFORMATION information = {};
    std::wstring command = L"\"" + program + L"\"" + arguments;
    run.started = ::CreateProcessW(program.c_str(), &command[0], nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                                   nullptr, nullptr, &startup, &information) != FALSE;
    if (!run.started) {
        return run;
    }
    const tarvo::KernelHandle process(information.hProcess);
    const tarvo::KernelHandle thread(information.hThread);
    run.ended = ::WaitForSingleObject(process.get(), milliseconds) == WAIT_OBJECT_0;
    if (!run.ended) {
        ::TerminateProcess(process.get(), 1);
    }
    ::GetExitCodeProcess(process.get(), &run.exit_code);
    run.output = what_it_said(reader.get());
    return run;
}

} // namespace

SevenZipFact try_seven_zip(const std::wstring& program) {
    const ProgramRun run = run_hidden(program, std::wstring(), kProgramMs);
    SevenZipFact fact;
    fact.started = run.started;
    fact.ended = run.ended;
    fact.exit_code = run.exit_code;
    fact.first_line = first_line(run.output);
    return fact;
}

ArchiveTest test_archive(const std::wstring& program, const std::wstring& archive, std::string& said) {
    const ProgramRun run = run_hidden(program, L" t -bd -- \"" + archive + L"\"", kArchiveSeconds * 1000);
    if (!run.started) {
        return ArchiveTest::not_tested;
    }
    if (!run.ended) {
        return ArchiveTest::not_ended;
    }
    said = complaint(run.output);
    if (said.empty()) {
        said = std::to_string(run.exit_code);
    }
    return run.exit_code == 0 ? ArchiveTest::whole : ArchiveTest::damaged;
}

} // namespace diagnostics
