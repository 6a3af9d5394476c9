#include "standin/client/servers.h"

#include <httplib.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace client {

namespace {

constexpr unsigned kWatchEveryMs = 50;
constexpr size_t kChunkBytes = 4;

// The library lists these among the headers; nobody sent them.
bool is_from_library(const std::string& name) {
    return name == "REMOTE_ADDR" || name == "REMOTE_PORT" || name == "LOCAL_ADDR" || name == "LOCAL_PORT";
}

HttpRequest request_from(const httplib::Request& source) {
    HttpRequest request;
    request.method = source.method;
    request.target = source.target;
    request.body = source.body;
    for (const auto& header : source.headers) {
        if (!is_from_library(header.first)) {
            request.headers.emplace_back(header.first, header.second);
        }
    }
    return request;
}

void answer_in_chunks(const std::string& body, httplib::Response& response) {
    response.set_chunked_content_provider(
        "application/json", [&body](size_t offset, httplib::DataSink& sink) {
            if (offset >= body.size()) {
                sink.done();
                return true;
            }
            return sink.write(body.data() + offset, std::min(kChunkBytes, body.size() - offset));
        });
}

void handle(Service& service, const httplib::Request& source, httplib::Response& response) {
    service.log.take(request_from(source));
    service.stop.wait(service.options.delay_ms);
    response.status = service.answer.status;
    if (service.options.mode == Mode::chunked) {
        answer_in_chunks(service.answer.body, response);
    } else {
        response.set_content(service.answer.body, "application/json");
    }
}

void set_up(httplib::Server& server, Service& service) {
    const auto handler = [&service](const httplib::Request& request, httplib::Response& response) {
        handle(service, request, response);
    };
    // Every method and path is taken: a wrong one is the log's to report.
    server.Get(".*", handler).Post(".*", handler).Put(".*", handler);
    server.Patch(".*", handler).Delete(".*", handler).Options(".*", handler);
    // The library's own choice would let a second program listen on the same port.
    server.set_socket_options([](SOCKET socket) {
        const BOOL yes = TRUE;
        ::setsockopt(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&yes),
                     sizeof(yes));
    });
    // A connection that is kept open is not to keep the end waiting.
    server.set_keep_alive_timeout(1);
    server.new_task_queue = [] { return new httplib::ThreadPool(4); };
    // Called when the answer has been written.
    server.set_logger([&service](const httplib::Request&, const httplib::Response& response) {
        if (response.status == 400) {
            print_line("a request that is not HTTP was refused");
        }
        if (service.options.once) {
            service.stop.request();
        }
    });
}

} // namespace

ServeResult serve_http(Service& service) {
    httplib::Server server;
    set_up(server, service);
    int port = service.options.port;
    if (port == 0) {
        port = server.bind_to_any_port("127.0.0.1");
    } else if (!server.bind_to_port("127.0.0.1", port)) {
        port = -1;
    }
    if (port <= 0) {
        return ServeResult::port_refused;
    }
    if (!service.on_listening(port)) {
        return ServeResult::abandoned;
    }
    std::atomic<bool> finished(false);
    std::thread watcher([&] {
        while (!finished) {
            // stop() before the loop runs would be lost, therefore this asks again.
            if (service.stop.wait(kWatchEveryMs) && server.is_running()) {
                server.stop();
                return;
            }
        }
    });
    server.listen_after_bind();
    finished = true;
    watcher.join();
    return ServeResult::done;
}

} // namespace client
