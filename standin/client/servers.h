// Two servers: one through the HTTP library, and one through a plain socket for answers that no library
// would give. Both listen on 127.0.0.1 only and return when the stop signal is set.
#pragma once

#include "standin/client/options.h"
#include "standin/client/request_log.h"
#include "standin/client/stop_signal.h"

#include <functional>

namespace client {

struct Service {
    const Options& options;
    const Answer& answer;
    RequestLog& log;
    StopSignal& stop;
    std::function<bool(int port)> on_listening; // false: do not go on
};

enum class ServeResult { done, port_refused, abandoned };

ServeResult serve_http(Service& service);
ServeResult serve_faults(Service& service);

} // namespace client
