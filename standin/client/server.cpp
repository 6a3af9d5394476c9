#include "standin/base/sockets_win32.h"

#include "standin/client/server.h"

#include "standin/base/files_win32.h"
#include "standin/base/json.h"
#include "standin/base/text.h"
#include "standin/client/request_check.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace client {

namespace {

constexpr unsigned kPollMs = 50;
constexpr unsigned kPatienceMs = 10000;
constexpr unsigned kBetweenPiecesMs = 1000;
constexpr unsigned kBetweenBytesMs = 2;
constexpr std::size_t kRequestLimit = 16 * 1024 * 1024;
constexpr std::size_t kBigBytes = 10 * 1024 * 1024;
constexpr std::size_t kChunkBytes = 4;
constexpr std::size_t kRecordedBytes = 2048;

struct Answer {
    int status = 200;
    std::string body;
};

Answer answer_for(const Options& options) {
    Answer answer;
    answer.body = options.reply_body;
    if (options.mode == "status-500") {
        answer.status = 500;
    } else if (options.mode == "empty") {
        answer.body.clear();
    } else if (options.mode == "garbage") {
        answer.body = "<html>this is not what you asked for</html>";
    } else if (options.mode == "big") {
        answer.body = "{\"ret\":10001,\"padding\":\"" + std::string(kBigBytes, 'x') + "\"}";
    }
    return answer;
}

std::string head_of(const Answer& answer, const std::string& framing) {
    const std::string reason = answer.status == 200 ? " OK" : " Internal Server Error";
    return "HTTP/1.1 " + std::to_string(answer.status) + reason + "\r\nContent-Type: application/json\r\n" +
           framing + "Connection: close\r\n\r\n";
}

std::string chunked(const std::string& body) {
    std::string text;
    for (std::size_t from = 0; from < body.size(); from += kChunkBytes) {
        const std::string chunk = body.substr(from, kChunkBytes);
        text += std::to_string(chunk.size()) + "\r\n" + chunk + "\r\n";
    }
    return text + "0\r\n\r\n";
}

void print_line(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout); // at once, also into a pipe
}

class Server {
public:
    explicit Server(const Options& options) : options_(options), answer_(answer_for(options)) {}

    std::string run();

private:
    bool wait_for_stop(unsigned milliseconds) const;
    bool receive_more(SOCKET socket, std::string& text) const;
    bool read_request(SOCKET socket, HttpRequest& request) const;
    void send_answer(SOCKET socket) const;
    void send_slowly(SOCKET socket, const std::string& text, std::size_t size, unsigned pause_ms) const;
    void handle(base::Socket connection);
    void take(const HttpRequest& request);
    Json::Value answer_record() const;

    const Options& options_;
    const Answer answer_;
    base::LineFile record_;
    int number_ = 0;
};

// True as soon as the stop file exists, false when the time has passed.
bool Server::wait_for_stop(unsigned milliseconds) const {
    const ULONGLONG end = ::GetTickCount64() + milliseconds;
    for (;;) {
        if (!options_.stop_file.empty() && base::file_exists(options_.stop_file)) {
            return true;
        }
        const ULONGLONG now = ::GetTickCount64();
        if (now >= end) {
            return false;
        }
        ::Sleep(static_cast<DWORD>(std::min<ULONGLONG>(end - now, kPollMs)));
    }
}

// Appends what arrives next. False when the other side has closed or is silent for too long.
bool Server::receive_more(SOCKET socket, std::string& text) const {
    for (unsigned waited = 0; !base::readable_within(socket, kPollMs); waited += kPollMs) {
        if (waited >= kPatienceMs || wait_for_stop(0)) {
            return false;
        }
    }
    char buffer[16384];
    const int count = ::recv(socket, buffer, sizeof(buffer), 0);
    if (count <= 0 || text.size() > kRequestLimit) {
        return false;
    }
    text.append(buffer, static_cast<std::size_t>(count));
    return true;
}

bool Server::read_request(SOCKET socket, HttpRequest& request) const {
    std::string text;
    std::size_t head_end = std::string::npos;
    while (head_end == std::string::npos) {
        if (!receive_more(socket, text)) {
            return false;
        }
        head_end = text.find("\r\n\r\n");
    }
    if (!parse_request_head(text.substr(0, head_end), request)) {
        return false;
    }
    request.body = text.substr(head_end + 4);
    const auto length = std::strtoull(header_value(request, "Content-Length").c_str(), nullptr, 10);
    // A body that ends early fails the check of its length.
    while (request.body.size() < length && receive_more(socket, request.body)) {
    }
    return true;
}

void Server::send_slowly(SOCKET socket, const std::string& text, std::size_t size, unsigned pause_ms) const {
    for (std::size_t from = 0; from < text.size(); from += size) {
        if ((from > 0 && wait_for_stop(pause_ms)) || !base::send_all(socket, text.substr(from, size))) {
            return;
        }
    }
}

void Server::send_answer(SOCKET socket) const {
    const std::string& mode = options_.mode;
    const std::string& body = answer_.body;
    const std::string head = head_of(answer_, "Content-Length: " + std::to_string(body.size()) + "\r\n");
    if (mode == "close-after-header") {
        base::send_all(socket, head);
    } else if (mode == "no-length") {
        base::send_all(socket, head_of(answer_, "") + body);
    } else if (mode == "chunked") {
        base::send_all(socket, head_of(answer_, "Transfer-Encoding: chunked\r\n") + chunked(body));
    } else if (mode == "pieces") {
        send_slowly(socket, head + body, head.size() + body.size() / 2, kBetweenPiecesMs);
    } else if (mode == "bytes") {
        send_slowly(socket, head + body, 1, kBetweenBytesMs);
    } else if (mode != "silence") {
        base::send_all(socket, head + body);
    }
}

// Null: nothing is sent.
Json::Value Server::answer_record() const {
    if (options_.mode == "close" || options_.mode == "silence") {
        return Json::Value();
    }
    Json::Value record(Json::objectValue);
    record["status"] = answer_.status;
    record["bytes"] = static_cast<Json::UInt64>(answer_.body.size());
    if (answer_.body.size() <= kRecordedBytes) {
        record["body"] = answer_.body;
    }
    return record;
}

void Server::take(const HttpRequest& request) {
    Json::Value record = check_request(request, options_.seven_zip);
    record["number"] = ++number_;
    record["mode"] = options_.mode;
    record["read"] = request.was_read;
    record["method"] = request.method;
    record["path"] = request.target;
    record["headers"] = Json::Value(Json::objectValue);
    for (const auto& header : request.headers) {
        record["headers"][header.first] = header_value(request, header.first);
    }
    record["body"] = request.body;
    record["answer"] = answer_record();
    const std::string line = base::one_line(record);
    print_line(line);
    if (!options_.record_file.empty() && !record_.append(line)) {
        print_line("error: the record could not be written");
    }
}

void Server::handle(base::Socket connection) {
    HttpRequest request;
    if (options_.mode == "close") {
        connection.reset();
        request.was_read = false;
        take(request);
        return;
    }
    // Each packet leaves as it is written.
    const BOOL yes = TRUE;
    ::setsockopt(connection.get(), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&yes),
                 sizeof(yes));
    if (!read_request(connection.get(), request)) {
        print_line("incomplete request");
        return;
    }
    take(request);
    wait_for_stop(options_.delay_ms);
    send_answer(connection.get());
    base::close_gently(connection);
}

std::string Server::run() {
    if (!options_.record_file.empty() && !record_.open(options_.record_file)) {
        return "cannot write '" + base::to_utf8(options_.record_file) + "'";
    }
    const base::SocketLibrary library;
    int port = options_.port;
    const base::Socket listener = base::listen_on_loopback(port);
    if (!listener) {
        return "cannot listen on 127.0.0.1:" + std::to_string(port) +
               "; end the program that has that port, or choose --port 0";
    }
    print_line("listening on 127.0.0.1:" + std::to_string(port));
    if (!options_.ready_file.empty() &&
        !base::write_file_atomically(options_.ready_file, std::to_string(port) + "\n")) {
        return "cannot write '" + base::to_utf8(options_.ready_file) + "'";
    }
    while (!wait_for_stop(0)) {
        if (base::readable_within(listener.get(), kPollMs)) {
            base::Socket connection(::accept(listener.get(), nullptr, nullptr));
            if (connection) {
                handle(std::move(connection));
            }
        }
    }
    return std::string();
}

} // namespace

std::string serve(const Options& options) {
    return Server(options).run();
}

} // namespace client
