#include "standin/base/sockets_win32.h"

#include <utility>

namespace base {

namespace {

constexpr DWORD kFarewellMs = 2000;

sockaddr_in loopback(int port) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = ::htons(static_cast<u_short>(port));
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace

SocketLibrary::SocketLibrary() {
    WSADATA data = {};
    ::WSAStartup(MAKEWORD(2, 2), &data);
}

SocketLibrary::~SocketLibrary() {
    ::WSACleanup();
}

Socket bind_to_loopback(int& port) {
    Socket socket(::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP));
    if (!socket) {
        return Socket();
    }
    const BOOL yes = TRUE;
    ::setsockopt(socket.get(), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&yes),
                 sizeof(yes));
    sockaddr_in address = loopback(port);
    int size = sizeof(address);
    if (::bind(socket.get(), reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        return Socket();
    }
    port = ::ntohs(address.sin_port);
    return socket;
}

Socket listen_on_loopback(int& port) {
    Socket socket = bind_to_loopback(port);
    return socket && ::listen(socket.get(), SOMAXCONN) == 0 ? std::move(socket) : Socket();
}

Socket connect_to_loopback(int port) {
    Socket socket(::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP));
    const sockaddr_in address = loopback(port);
    const bool connected =
        socket && ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    return connected ? std::move(socket) : Socket();
}

bool readable_within(SOCKET socket, unsigned milliseconds) {
    fd_set sockets;
    FD_ZERO(&sockets);
    FD_SET(socket, &sockets);
    timeval time = {static_cast<long>(milliseconds / 1000), static_cast<long>(milliseconds % 1000 * 1000)};
    return ::select(0, &sockets, nullptr, nullptr, &time) == 1;
}

bool send_all(SOCKET socket, const std::string& text) {
    size_t sent = 0;
    while (sent < text.size()) {
        const int count = ::send(socket, text.data() + sent, static_cast<int>(text.size() - sent), 0);
        if (count <= 0) {
            return false;
        }
        sent += static_cast<size_t>(count);
    }
    return true;
}

void close_gently(Socket& socket) {
    ::shutdown(socket.get(), SD_SEND);
    ::setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&kFarewellMs),
                 sizeof(kFarewellMs));
    char rest[256];
    while (::recv(socket.get(), rest, sizeof(rest), 0) > 0) {
    }
    socket.reset();
}

} // namespace base
