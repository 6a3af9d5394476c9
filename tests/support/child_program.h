// Starting a program of ours, reading and writing its files by wide paths, and asking a server through a
// plain socket that shows every byte and when it came. Winsock has to be up for `ask`.
#pragma once

#include "common/handle.h"
#include "common/win32_handles.h"
#include "tests/support/patience.h"
#include "tests/support/system_error.h"

#include <gtest/gtest.h>

#include <winsock2.h>

#include <windows.h>

#include <cstdio>
#include <memory>
#include <string>

namespace tarvo_test {

inline std::wstring module_folder() {
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring full = path;
    return full.substr(0, full.rfind(L'\\'));
}

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

inline void write_wide(const std::wstring& path, const std::string& content) {
    const File file(::_wfopen(path.c_str(), L"wb"), std::fclose);
    ASSERT_TRUE(file != nullptr) << library_error("_wfopen for writing", path, errno);
    ASSERT_EQ(content.size(), std::fwrite(content.data(), 1, content.size(), file.get()))
        << library_error("fwrite", path, errno);
}

inline std::string read_wide(const std::wstring& path) {
    FILE* const opened = ::_wfopen(path.c_str(), L"rb");
    std::string content;
    if (opened != nullptr) {
        const File file(opened, std::fclose);
        for (int c = std::fgetc(opened); c != EOF; c = std::fgetc(opened)) {
            content += static_cast<char>(c);
        }
    }
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
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = file.get();
    startup.hStdError = file.get();
    PROCESS_INFORMATION information = {};
    std::wstring command = L"\"" + program + L"\" " + arguments;
    if (::CreateProcessW(program.c_str(), &command[0], nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                         nullptr, &startup, &information) == 0) {
        const DWORD error = ::GetLastError();
        ADD_FAILURE() << system_error("CreateProcessW", program, error)
                      << ", command line: " << tarvo::WideToUtf8(command);
        return tarvo::KernelHandle();
    }
    ::CloseHandle(information.hThread);
    return tarvo::KernelHandle(information.hProcess);
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

struct SocketTraits {
    using Type = SOCKET;
    static Type empty() { return INVALID_SOCKET; }
    static void close(Type handle) { ::closesocket(handle); }
};

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
    const tarvo::UniqueHandle<SocketTraits> socket(::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP));
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = ::htons(static_cast<u_short>(port));
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    Reply reply;
    if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        ADD_FAILURE() << "connect to port " << port << " failed: error " << ::WSAGetLastError();
        return reply;
    }
    const ULONGLONG begin = ::GetTickCount64();
    ::send(socket.get(), request.data(), static_cast<int>(request.size()), 0);
    char buffer[65536];
    for (int count = 0; (count = ::recv(socket.get(), buffer, sizeof(buffer), 0)) > 0;) {
        reply.last_ms = ::GetTickCount64() - begin;
        reply.first_ms = reply.text.empty() ? reply.last_ms : reply.first_ms;
        reply.text.append(buffer, static_cast<size_t>(count));
    }
    return reply;
}

} // namespace tarvo_test
