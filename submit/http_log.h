// The log channel of everything that talks to the desktop client. Each operation opens it for itself and
// closes it when it ends, so that the file is free between submissions.
#pragma once

#include "common/logger.h"

namespace tarvo {

class HttpLog : public Logger {
public:
    HttpLog() : Logger("qfx_http", 2, 5, 0) {}
};

} // namespace tarvo
