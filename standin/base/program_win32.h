// Starting programs and reading this program's own arguments. Needs windows.h.
#pragma once

#include "common/win32_handles.h"

#include <string>
#include <vector>

namespace base {

// The arguments without the program's name.
std::vector<std::wstring> command_line_arguments();

// The argument as CommandLineToArgvW reads it back.
std::wstring quoted(const std::wstring& argument);

struct StartedProgram {
    tarvo::KernelHandle process; // empty: not started
    unsigned long error = 0;     // why not, as GetLastError says
};

// Starts `program` without a window. `arguments` is the command line after the program's name. With `output`,
// an inheritable handle, the program's output and its error messages go there.
StartedProgram start_program(const std::wstring& program, const std::wstring& arguments,
                             HANDLE output = nullptr);

struct ProgramResult {
    bool started = false;
    unsigned long error = 0; // why it was not started
    int exit_code = -1;
    std::string output; // what it printed, error messages included
};

// Runs `program` without a window to its end.
ProgramResult run_program(const std::wstring& program, const std::wstring& arguments);

// The process's exit code once it has ended; -1 when it has not within `milliseconds`.
int wait_for_exit(HANDLE process, unsigned long milliseconds);

} // namespace base
