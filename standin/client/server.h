// The client's HTTP server on 127.0.0.1: a plain socket, because no HTTP library sends the broken answers
// that some modes need. One connection at a time; every answer closes its connection.
#pragma once

#include "standin/client/options.h"

#include <string>

namespace client {

// Serves until the stop file appears. Writes the port to the ready file when it listens. Checks each request
// and appends it to the record file before it answers, so a program that has the answer can read the record.
// Returns an error message, or an empty text when the server was stopped.
std::string serve(const Options& options);

} // namespace client
