// A bare TCP server for one request: it says exactly the bytes it is told to, when it is told to. For the
// cases that a well-behaved HTTP server never shows.
#pragma once

#include <functional>
#include <string>
#include <thread>

#include <winsock2.h>

namespace support {

// What the server does once it has the whole request.
using ServerAction = std::function<void(SOCKET)>;

class RawServer {
public:
    // Listens on a free port of 127.0.0.1 and handles one connection on a thread of its own. With
    // `read_request` false the action runs as soon as the connection is there.
    explicit RawServer(ServerAction action, bool read_request = true);
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    int port() const { return port_; }

    // Waits for the end of the connection. Head and body as they came over the wire.
    const std::string& head();
    const std::string& body();

private:
    void serve();
    void receive(SOCKET connection);

    ServerAction action_;
    bool read_request_;
    SOCKET listener_ = INVALID_SOCKET;
    int port_ = 0;
    std::string head_;
    std::string body_;
    std::thread thread_;
};

// A port on which nobody listens.
int free_port();

void say(SOCKET connection, const std::string& text);

// Returns when the other side has closed the connection; what it still sends is dropped.
void wait_for_hang_up(SOCKET connection);

// A complete answer with status 200.
std::string http_reply(const std::string& body);

} // namespace support
