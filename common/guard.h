// The one guard at the plugin's edges: code that the host or Windows calls, and code that calls the host,
// runs inside it. An exception that reaches it is a bug of the plugin or comes from the host; the guard
// writes one ERROR line with the place and the exception's text.
#pragma once

#include "common/logger.h"

namespace tarvo {

// Logs the exception that is being handled. Only inside a catch block.
void ReportException(const char* place, const LogChannel& channel) noexcept;

// Returns what `function` returns, or `fallback` if it throws.
template <class Result, class Function>
Result Guarded(const char* place, Result fallback, Function function,
               const LogChannel& channel = kDataChannel) noexcept {
    try {
        return function();
    } catch (...) {
        ReportException(place, channel);
        return fallback;
    }
}

// The same for code without a result.
template <class Function>
void RunGuarded(const char* place, Function function, const LogChannel& channel = kDataChannel) noexcept {
    try {
        function();
    } catch (...) {
        ReportException(place, channel);
    }
}

} // namespace tarvo
