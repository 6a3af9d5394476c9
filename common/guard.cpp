#include "common/guard.h"

#include <exception>
#include <string>

namespace tarvo {

void ReportException(const char* place, const LogChannel& channel) noexcept {
    try {
        std::string reason = "not a standard exception";
        try {
            throw;
        } catch (const std::exception& error) {
            reason = error.what();
        } catch (...) {
        }
        WriteErrorLine(channel, "An exception was stopped in " + std::string(place) + ": " + reason);
    } catch (...) {
        // Logging failed too; nothing more to do.
    }
}

} // namespace tarvo
