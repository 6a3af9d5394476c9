#include "standin/base/program_win32.h"

#include <shellapi.h>

namespace base {

namespace {

using tarvo::KernelHandle;

bool open_pipe(KernelHandle& read_end, KernelHandle& write_end) {
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    HANDLE read_handle = nullptr;
    HANDLE write_handle = nullptr;
    if (::CreatePipe(&read_handle, &write_handle, &inheritable, 0) == FALSE) {
        return false;
    }
    read_end.reset(read_handle);
    write_end.reset(write_handle);
    return ::SetHandleInformation(read_handle, HANDLE_FLAG_INHERIT, 0) != FALSE;
}

std::string read_to_end(HANDLE pipe) {
    std::string text;
    char buffer[4096];
    DWORD count = 0;
    while (::ReadFile(pipe, buffer, sizeof buffer, &count, nullptr) != FALSE && count > 0) {
        text.append(buffer, count);
    }
    return text;
}

} // namespace

std::vector<std::wstring> command_line_arguments() {
    int count = 0;
    LPWSTR* const texts = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<std::wstring> arguments;
    for (int i = 1; texts != nullptr && i < count; ++i) {
        arguments.emplace_back(texts[i]);
    }
    ::LocalFree(texts);
    return arguments;
}

std::wstring quoted(const std::wstring& argument) {
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : argument) {
        if (character == L'"') {
            text.append(backslashes + 1, L'\\');
        }
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        text += character;
    }
    text.append(backslashes, L'\\');
    return text + L"\"";
}

StartedProgram start_program(const std::wstring& program, const std::wstring& arguments, HANDLE output) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    if (output != nullptr) {
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = output;
        startup.hStdError = output;
    }
    PROCESS_INFORMATION information = {};
    std::wstring command = L"\"" + program + L"\" " + arguments;
    StartedProgram started;
    if (::CreateProcessW(program.c_str(), &command[0], nullptr, nullptr, output != nullptr, CREATE_NO_WINDOW,
                         nullptr, nullptr, &startup, &information) == FALSE) {
        started.error = ::GetLastError();
        return started;
    }
    ::CloseHandle(information.hThread);
    started.process.reset(information.hProcess);
    return started;
}

ProgramResult run_program(const std::wstring& program, const std::wstring& arguments) {
    ProgramResult result;
    KernelHandle read_end;
    KernelHandle write_end;
    if (!open_pipe(read_end, write_end)) {
        return result;
    }
    const StartedProgram started = start_program(program, arguments, write_end.get());
    result.started = static_cast<bool>(started.process);
    if (!result.started) {
        return result;
    }
    // The pipe ends only when this process has closed its writing end too.
    write_end.reset();
    result.output = read_to_end(read_end.get());
    result.exit_code = wait_for_exit(started.process.get(), INFINITE);
    return result;
}

int wait_for_exit(HANDLE process, unsigned long milliseconds) {
    DWORD code = 0;
    if (::WaitForSingleObject(process, milliseconds) != WAIT_OBJECT_0 ||
        ::GetExitCodeProcess(process, &code) == FALSE) {
        return -1;
    }
    return static_cast<int>(code);
}

} // namespace base
