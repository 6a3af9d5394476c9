// Starting a program of ours, reading and writing its files by wide paths, and asking a server through a
// plain socket that shows every byte and when it came. Winsock has to be up for `ask`.
#pragma once

#include "standin/base/sockets_win32.h"

#include "standin/base/files_win32.h"
#include "standin/base/program_win32.h"
#include "standin/base/text.h"
#include "tests/support/patience.h"
#include "tests/support/system_error.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace support {

inline std::wstring module_folder() {
    return base::program_folder();
}

inline void write_wide(const std::wstring& path, const std::string& content) {
    ASSERT_TRUE(base::write_file(path, content)) << system_error("write_file", path, ::GetLastError());
}

// Empty when the file cannot be read.
inline std::string read_wide(const std::wstring& path) {
    std::string content;
    base::read_file(path, content);
    return content;
}

// What the program prints goes into the file `output`. Without a handle the test has failed, and says which
// call failed and why.
inline tarvo::KernelHandle start(const std::wstring& program, const std::wstring& arguments,
                                 const std::wstring& output) {
    SECURITY_ATTRIBUTES inheritable = {};
    inheritable.nLength = sizeof(inheritable);
    inheritable.bInheritHandle = TRUE;
    const tarvo::FileHandle file(::CreateFileW(output.c_str(), GENERIC_WRITE,
                                               FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                                               CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        const DWORD error = ::GetLastError();
        ADD_FAILURE() << system_error("CreateFileW", output, error);
        return tarvo::KernelHandle();
    }
    base::StartedProgram started = base::start_program(program, arguments, file.get());
    if (!started.process) {
        ADD_FAILURE() << system_error("CreateProcessW", program, started.error)
                      << ", arguments: " << base::to_utf8(arguments);
    }
    return std::move(started.process);
}

// -1 when it cannot be had; the test has then failed.
inline int exit_code_of(const tarvo::KernelHandle& process) {
    DWORD code = 0;
    const DWORD waited = ::WaitForSingleObject(process.get(), kPatienceMs);
    if (waited != WAIT_OBJECT_0 || ::GetExitCodeProcess(process.get(), &code) == 0) {
        const DWORD error = ::GetLastError();
        ADD_FAILURE() << "no exit code: the wait returned " << waited << ", last error " << error;
        return -1;
    }
    return static_cast<int>(code);
}

struct Reply {
    std::string text;
    ULONGLONG first_ms = 0; // from the sending to the first and to the last packet
    ULONGLONG last_ms = 0;

    std::string body() const {
        const size_t end = text.find("\r\n\r\n");
        return end == std::string::npos ? std::string() : text.substr(end + 4);
    }
};

// Sends, and reads until the other side closes.
inline Reply ask(int port, const std::string& request) {
    const base::Socket socket = base::connect_to_loopback(port);
    Reply reply;
    if (!socket) {
        ADD_FAILURE() << "connect to port " << port << " failed: error " << ::WSAGetLastError();
        return reply;
    }
    const ULONGLONG begin = ::GetTickCount64();
    base::send_all(socket.get(), request);
    char buffer[65536];
    for (int count = 0; (count = ::recv(socket.get(), buffer, sizeof(buffer), 0)) > 0;) {
        reply.last_ms = ::GetTickCount64() - begin;
        reply.first_ms = reply.text.empty() ? reply.last_ms : reply.first_ms;
        reply.text.append(buffer, static_cast<size_t>(count));
    }
    return reply;
}

} // namespace support
