#include "tests/support/raw_server.h"

#include <cstdlib>
#include <utility>

namespace tarvo_test {

namespace {

struct SocketLibrary {
    SocketLibrary() {
        WSADATA data;
        ::WSAStartup(MAKEWORD(2, 2), &data);
    }
    ~SocketLibrary() { ::WSACleanup(); }
};

SOCKET bound_socket(int& port) {
    static const SocketLibrary library;
    const SOCKET socket = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    int length = sizeof address;
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
    port = ::ntohs(address.sin_port);
    return socket;
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
    listener_ = bound_socket(port_);
    ::listen(listener_, 1);
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
    int port = 0;
    ::closesocket(bound_socket(port));
    return port;
}

void say(SOCKET connection, const std::string& text) {
    ::send(connection, text.data(), static_cast<int>(text.size()), 0);
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

} // namespace tarvo_test
