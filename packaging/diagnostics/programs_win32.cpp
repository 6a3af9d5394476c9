#include <winsock2.h>
#include <ws2tcpip.h>

#include "packaging/diagnostics/programs_win32.h"

#include "common/win32_handles.h"

#include <algorithm>
#include <memory>

namespace diagnostics {

namespace {

constexpr long kConnectSeconds = 3;
constexpr DWORD kProgramMs = 10000;
constexpr DWORD kPipeBytes = 65536;

class Sockets {
public:
    Sockets() {
        WSADATA data = {};
        ::WSAStartup(MAKEWORD(2, 2), &data);
    }
    ~Sockets() { ::WSACleanup(); }
    Sockets(const Sockets&) = delete;
    Sockets& operator=(const Sockets&) = delete;
};

struct SocketTraits {
    using Type = SOCKET;
    static Type empty() { return INVALID_SOCKET; }
    static void close(Type socket) { ::closesocket(socket); }
};

Connection try_address(const ADDRINFOW& address) {
    const tarvo::UniqueHandle<SocketTraits> socket(
        ::socket(address.ai_family, address.ai_socktype, address.ai_protocol));
    u_long does_not_wait = 1;
    ::ioctlsocket(socket.get(), static_cast<long>(FIONBIO), &does_not_wait);
    if (::connect(socket.get(), address.ai_addr, static_cast<int>(address.ai_addrlen)) == 0) {
        return Connection::reached;
    }
    if (::WSAGetLastError() != WSAEWOULDBLOCK) {
        return Connection::refused;
    }
    fd_set done = {};
    fd_set failed = {};
    done.fd_count = failed.fd_count = 1;
    done.fd_array[0] = failed.fd_array[0] = socket.get();
    timeval limit = {};
    limit.tv_sec = kConnectSeconds;
    if (::select(0, nullptr, &done, &failed, &limit) <= 0) {
        return Connection::timed_out;
    }
    return failed.fd_count != 0 ? Connection::refused : Connection::reached;
}

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

} // namespace

Connection try_connection(const std::wstring& host, int port) {
    const Sockets sockets;
    ADDRINFOW wanted = {};
    wanted.ai_family = AF_UNSPEC;
    wanted.ai_socktype = SOCK_STREAM;
    ADDRINFOW* found = nullptr;
    if (::GetAddrInfoW(host.c_str(), std::to_wstring(port).c_str(), &wanted, &found) != 0) {
        return Connection::unknown_name;
    }
    const std::unique_ptr<ADDRINFOW, decltype(&::FreeAddrInfoW)> owner(found, &::FreeAddrInfoW);
    Connection result = Connection::unknown_name;
    for (const ADDRINFOW* address = found; address != nullptr && result != Connection::reached;
         address = address->ai_next) {
        result = try_address(*address);
    }
    return result;
}

SevenZipFact try_seven_zip(const std::wstring& program) {
    SevenZipFact fact;
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    HANDLE read_end = nullptr;
    HANDLE write_end = nullptr;
    if (::CreatePipe(&read_end, &write_end, &inherited, kPipeBytes) == FALSE) {
        return fact;
    }
    const tarvo::KernelHandle reader(read_end);
    const tarvo::KernelHandle writer(write_end);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = writer.get();
    PROCESS_INFORMATION information = {};
    std::wstring command = L"\"" + program + L"\"";
    fact.started = ::CreateProcessW(program.c_str(), &command[0], nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                                    nullptr, nullptr, &startup, &information) != FALSE;
    if (!fact.started) {
        return fact;
    }
    const tarvo::KernelHandle process(information.hProcess);
    const tarvo::KernelHandle thread(information.hThread);
    fact.ended = ::WaitForSingleObject(process.get(), kProgramMs) == WAIT_OBJECT_0;
    if (!fact.ended) {
        ::TerminateProcess(process.get(), 1);
    }
    ::GetExitCodeProcess(process.get(), &fact.exit_code);
    fact.first_line = first_line(what_it_said(reader.get()));
    return fact;
}

} // namespace diagnostics
