#include <winsock2.h>
#include <ws2tcpip.h>

#include "packaging/diagnostics/client_win32.h"

#include "common/win32_handles.h"

#include <windows.h>

#include <winhttp.h>

#include <memory>

namespace diagnostics {

namespace {

constexpr long kConnectSeconds = 3;
constexpr int kConnectMs = 3000;
constexpr int kAnswerMs = 10000;
constexpr DWORD kAnswerBytes = 2048;
// As the plugin's.
constexpr const wchar_t* kUserAgent = L"A WinHTTP Program For Marrowby/1.0";
constexpr const wchar_t* kContentType = L"Content-Type: application/json;charset=utf-8";

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

struct WinHttpHandleTraits {
    using Type = HINTERNET;
    static Type empty() { return nullptr; }
    static void close(Type handle) { ::WinHttpCloseHandle(handle); }
};
using WinHttpHandle = tarvo::UniqueHandle<WinHttpHandleTraits>;

// Declared in the order of opening, so that they close in the order request, connection, session.
struct Exchange {
    WinHttpHandle session;
    WinHttpHandle connection;
    WinHttpHandle request;
};

bool open_exchange(Exchange& exchange, const std::wstring& host, int port) {
    exchange.session.reset(::WinHttpOpen(kUserAgent, WINHTTP_ACCESS_TYPE_DEFAULT_PROXY, WINHTTP_NO_PROXY_NAME,
                                         WINHTTP_NO_PROXY_BYPASS, 0));
    if (!exchange.session || ::WinHttpSetTimeouts(exchange.session.get(), kConnectMs, kConnectMs, kConnectMs,
                                                  kAnswerMs) == FALSE) {
        return false;
    }
    exchange.connection.reset(
        ::WinHttpConnect(exchange.session.get(), host.c_str(), static_cast<INTERNET_PORT>(port), 0));
    if (!exchange.connection) {
        return false;
    }
    exchange.request.reset(::WinHttpOpenRequest(exchange.connection.get(), L"POST", nullptr, nullptr,
                                                WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES, 0));
    return static_cast<bool>(exchange.request);
}

bool send_request(HINTERNET request) {
    std::string body = empty_request();
    const DWORD length = static_cast<DWORD>(body.size());
    return ::WinHttpSendRequest(request, kContentType, static_cast<DWORD>(-1), &body[0], length, length, 0) !=
               FALSE &&
           ::WinHttpReceiveResponse(request, nullptr) != FALSE;
}

// The answer's beginning, also when it comes in pieces: what the program is shall be known, not how it sends.
void read_answer(HINTERNET request, ClientFact& fact) {
    DWORD status = 0;
    DWORD size = sizeof status;
    ::WinHttpQueryHeaders(request, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                          WINHTTP_HEADER_NAME_BY_INDEX, &status, &size, WINHTTP_NO_HEADER_INDEX);
    fact.status = static_cast<int>(status);
    char buffer[kAnswerBytes] = {};
    DWORD read = 1;
    while (read != 0 && fact.body.size() < kAnswerBytes &&
           ::WinHttpReadData(request, buffer, kAnswerBytes - static_cast<DWORD>(fact.body.size()), &read) !=
               FALSE) {
        fact.body.append(buffer, read);
    }
}

} // namespace

ClientFact ask_client(const std::wstring& host, int port) {
    ClientFact fact;
    fact.connection = try_connection(host, port);
    if (fact.connection != Connection::reached) {
        return fact;
    }
    Exchange exchange;
    fact.answered = open_exchange(exchange, host, port) && send_request(exchange.request.get());
    if (fact.answered) {
        read_answer(exchange.request.get(), fact);
    } else {
        fact.error = ::GetLastError();
    }
    return fact;
}

} // namespace diagnostics
