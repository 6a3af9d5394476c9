// Owned sockets and the little that the impolite server needs of them.
#pragma once

#include "common/handle.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <string>

namespace desktop_client {

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

// Listens on 127.0.0.1; `port` 0 becomes the one that was picked. Empty when the port cannot be had.
Socket listen_on_loopback(int& port);

bool readable_within(SOCKET socket, unsigned milliseconds);

bool send_all(SOCKET socket, const std::string& text);

// Says the end and waits shortly for the other side's, so that nothing that was sent gets lost.
void close_gently(Socket& socket);

} // namespace desktop_client
