// The two ways to serve: through the HTTP library, and through a plain socket for answers that no library
// would give. Both listen on 127.0.0.1 only and return when the end was requested.
#pragma once

#include "standin/client/clerk.h"
#include "standin/client/options.h"
#include "standin/client/stop_signal.h"

#include <functional>

namespace desktop_client {

struct Service {
    const Options& options;
    const Answer& answer;
    Clerk& clerk;
    StopSignal& stop;
    std::function<bool(int port)> on_listening; // false: do not go on
};

enum class ServeResult { done, port_refused, abandoned };

ServeResult serve_politely(Service& service);
ServeResult serve_impolitely(Service& service);

} // namespace desktop_client
