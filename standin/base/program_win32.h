// Starting programs and reading this program's own arguments. Needs windows.h.
#pragma once

#include "common/win32_handles.h"

#include <string>
#include <vector>

namespace base {

// The arguments without the program's name.
std::vector<std::wstring> command_line_arguments();

// Quotes the argument so that CommandLineToArgvW returns it unchanged.
std::wstring quoted(const std::wstring& argument);

struct StartedProgram {
    tarvo::KernelHandle process; // empty: not started
    unsigned long error = 0;     // GetLastError() of the failed start
};

// Starts `program` without a window. `arguments` is the command line after the program's name. `output`, an
// inheritable handle, gets the program's output and error messages.
StartedProgram start_program(const std::wstring& program, const std::wstring& arguments,
                             HANDLE output = nullptr);

struct ProgramResult {
    bool started = false;
    int exit_code = -1;
    std::string output; // with the error messages
};

// Runs `program` without a window and waits for its end.
ProgramResult run_program(const std::wstring& program, const std::wstring& arguments);

// The process's exit code once it has ended; -1 when it has not within `milliseconds`.
int wait_for_exit(HANDLE process, unsigned long milliseconds);

} // namespace base
