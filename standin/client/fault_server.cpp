#include "standin/base/sockets_win32.h"

#include "standin/client/servers.h"

#include <cstdlib>

namespace client {

namespace {

constexpr unsigned kLookEveryMs = 50;
constexpr unsigned kPatienceMs = 10000;
constexpr unsigned kBetweenPiecesMs = 1000;
constexpr unsigned kBetweenBytesMs = 2;
constexpr size_t kRequestLimit = 16 * 1024 * 1024;

// Appends what arrives next. False: the other side is gone, or silent for too long.
bool receive_more(SOCKET socket, StopSignal& stop, std::string& text) {
    for (unsigned waited = 0; !base::readable_within(socket, kLookEveryMs); waited += kLookEveryMs) {
        if (waited >= kPatienceMs || stop.requested()) {
            return false;
        }
    }
    char buffer[16384];
    const int count = ::recv(socket, buffer, sizeof(buffer), 0);
    if (count <= 0 || text.size() > kRequestLimit) {
        return false;
    }
    text.append(buffer, static_cast<size_t>(count));
    return true;
}

bool read_request(SOCKET socket, StopSignal& stop, HttpRequest& request) {
    std::string text;
    size_t head_end = std::string::npos;
    while (head_end == std::string::npos) {
        if (!receive_more(socket, stop, text)) {
            return false;
        }
        head_end = text.find("\r\n\r\n");
    }
    if (!parse_request_head(text.substr(0, head_end), request)) {
        return false;
    }
    request.body = text.substr(head_end + 4);
    const unsigned long long length =
        std::strtoull(header_value(request, "Content-Length").c_str(), nullptr, 10);
    while (request.body.size() < length) {
        if (!receive_more(socket, stop, request.body)) {
            break; // what is missing shows in the check of the length
        }
    }
    return true;
}

std::string head_of(const Answer& answer, bool with_length) {
    std::string head =
        "HTTP/1.1 " + std::to_string(answer.status) + " OK\r\nContent-Type: application/json\r\n";
    if (with_length) {
        head += "Content-Length: " + std::to_string(answer.body.size()) + "\r\n";
    }
    return head + "Connection: close\r\n\r\n";
}

void send_in_pieces(SOCKET socket, const Answer& answer, StopSignal& stop) {
    const size_t half = answer.body.size() / 2;
    if (base::send_all(socket, head_of(answer, true) + answer.body.substr(0, half)) &&
        !stop.wait(kBetweenPiecesMs)) {
        base::send_all(socket, answer.body.substr(half));
    }
}

void send_by_bytes(SOCKET socket, const Answer& answer, StopSignal& stop) {
    for (const char byte : head_of(answer, true) + answer.body) {
        if (!base::send_all(socket, std::string(1, byte)) || stop.wait(kBetweenBytesMs)) {
            return;
        }
    }
}

void send_answer(SOCKET socket, Service& service) {
    switch (service.options.mode) {
    case Mode::close_after_header:
        base::send_all(socket, head_of(service.answer, true));
        break;
    case Mode::pieces:
        send_in_pieces(socket, service.answer, service.stop);
        break;
    case Mode::bytes:
        send_by_bytes(socket, service.answer, service.stop);
        break;
    case Mode::no_length:
        base::send_all(socket, head_of(service.answer, false) + service.answer.body);
        break;
    default:
        break; // silence
    }
}

// True when this counts as a request.
bool handle_connection(base::Socket connection, Service& service) {
    HttpRequest request;
    if (service.options.mode == Mode::close) {
        connection.reset();
        request.was_read = false;
        service.log.take(request);
        return true;
    }
    // Small packets are to leave as they were written.
    const BOOL yes = TRUE;
    ::setsockopt(connection.get(), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&yes),
                 sizeof(yes));
    if (!read_request(connection.get(), service.stop, request)) {
        print_line("incomplete request");
        return false;
    }
    service.log.take(request);
    service.stop.wait(service.options.delay_ms);
    send_answer(connection.get(), service);
    base::close_gently(connection);
    return true;
}

} // namespace

ServeResult serve_faults(Service& service) {
    const base::SocketLibrary library;
    int port = service.options.port;
    const base::Socket listener = base::listen_on_loopback(port);
    if (!listener) {
        return ServeResult::port_refused;
    }
    if (!service.on_listening(port)) {
        return ServeResult::abandoned;
    }
    while (!service.stop.requested()) {
        if (!base::readable_within(listener.get(), kLookEveryMs)) {
            continue;
        }
        base::Socket connection(::accept(listener.get(), nullptr, nullptr));
        if (connection && handle_connection(std::move(connection), service) && service.options.once) {
            break;
        }
    }
    return ServeResult::done;
}

} // namespace client
