// The one guard at the plugin's edges: what the host or Windows calls, and what calls the host, runs inside
// it. An exception that arrives there is a defect of the plugin or comes from the host; it leaves one ERROR
// line with the place and the exception's text.
#pragma once

#include "common/logger.h"

namespace tarvo {

// Reports the exception that is being handled. Only inside a catch block.
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

} // namespace tarvo
