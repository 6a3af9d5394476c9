// Owned sockets on the loopback address. Include this before windows.h.
#pragma once

#include "common/win32_handles.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <string>

namespace base {

struct SocketTraits {
    using Type = SOCKET;
    static Type empty() { return INVALID_SOCKET; }
    static void close(Type handle) { ::closesocket(handle); }
};
using Socket = tarvo::UniqueHandle<SocketTraits>;

class SocketLibrary {
public:
    SocketLibrary();
    ~SocketLibrary();
    SocketLibrary(const SocketLibrary&) = delete;
    SocketLibrary& operator=(const SocketLibrary&) = delete;
};

// Binds a port of 127.0.0.1 without listening: the system refuses connections. `port` 0 becomes a free port.
// Empty when the port is in use.
Socket bind_to_loopback(int& port);

// The same, and listens.
Socket listen_on_loopback(int& port);

// Empty when nothing listens there.
Socket connect_to_loopback(int port);

bool readable_within(SOCKET socket, unsigned milliseconds);

bool send_all(SOCKET socket, const std::string& text);

// Shuts down sending and waits for the other side to close, at most two seconds: closing at once could lose
// data that was sent.
void close_gently(Socket& socket);

} // namespace base
