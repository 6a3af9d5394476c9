#include "tests/support/raw_server.h"

#include "standin/base/sockets_win32.h"

#include <cstdlib>
#include <utility>

namespace support {

namespace {

// Sockets work from the first call to the end of the program.
void start_socket_library() {
    static const base::SocketLibrary library;
}

std::size_t content_length(const std::string& head) {
    const std::string name = "Content-Length:";
    const std::string::size_type start = head.find(name);
    return start == std::string::npos
               ? 0
               : static_cast<std::size_t>(std::atoi(head.c_str() + start + name.size()));
}

} // namespace

RawServer::RawServer(ServerAction action, bool read_request)
    : action_(std::move(action)), read_request_(read_request) {
    start_socket_library();
    listener_ = base::listen_on_loopback(port_).release();
    thread_ = std::thread([this] { serve(); });
}

RawServer::~RawServer() {
    // Ends the wait of a server that nobody has called.
    ::closesocket(listener_);
    if (thread_.joinable()) {
        thread_.join();
    }
}

const std::string& RawServer::head() {
    if (thread_.joinable()) {
        thread_.join();
    }
    return head_;
}

const std::string& RawServer::body() {
    head();
    return body_;
}

void RawServer::serve() {
    const SOCKET connection = ::accept(listener_, nullptr, nullptr);
    if (connection == INVALID_SOCKET) {
        return;
    }
    if (read_request_) {
        receive(connection);
    }
    action_(connection);
    ::closesocket(connection);
}

void RawServer::receive(SOCKET connection) {
    std::string all;
    std::string::size_type end = std::string::npos;
    char buffer[4096];
    while (end == std::string::npos || all.size() - end - 4 < content_length(all.substr(0, end))) {
        const int count = ::recv(connection, buffer, sizeof buffer, 0);
        if (count <= 0) {
            break;
        }
        all.append(buffer, static_cast<std::size_t>(count));
        end = all.find("\r\n\r\n");
    }
    if (end != std::string::npos) {
        head_ = all.substr(0, end);
        body_ = all.substr(end + 4);
    }
}

int free_port() {
    start_socket_library();
    int port = 0;
    base::bind_to_loopback(port);
    return port;
}

void say(SOCKET connection, const std::string& text) {
    base::send_all(connection, text);
}

void wait_for_hang_up(SOCKET connection) {
    char dropped[4096];
    while (::recv(connection, dropped, sizeof dropped, 0) > 0) {
    }
}

std::string http_reply(const std::string& body) {
    return "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

} // namespace support
