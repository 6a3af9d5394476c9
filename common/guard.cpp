#include "common/guard.h"

#include <exception>
#include <string>

namespace tarvo {

namespace {

std::string describe_current_exception() {
    try {
        throw;
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "not a standard exception";
    }
}

} // namespace

void ReportException(const char* place, const LogChannel& channel) noexcept {
    try {
        const std::string reason = describe_current_exception();
        WriteErrorLine(channel, "An exception was stopped in " + std::string(place) + ": " + reason);
    } catch (...) {
        // Logging failed too; nothing more to do.
    }
}

} // namespace tarvo
