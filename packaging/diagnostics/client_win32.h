// Asks the desktop client whether it is there, without giving it a job.
#pragma once

#include "packaging/diagnostics/client_answer.h"

#include <string>

namespace diagnostics {

// First one connection without a word, three seconds for each address of the name at most; then, as the
// plugin posts a job, a request that names none (empty_request). An answer is waited for ten seconds.
ClientFact ask_client(const std::wstring& host, int port);

} // namespace diagnostics
