// Pairs what the module creates with what it releases.
#pragma once

#include <json/value.h>

#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace stage {

class Ledger {
public:
    void created(const char* kind, const void* thing, const std::string& detail = std::string());

    // False when nothing of this kind is open under that value: it was made before the watch began, or is
    // released twice.
    bool released(const char* kind, const void* thing);

    // Entries {"kind", "value", "detail"} of what is open now.
    Json::Value open() const;

private:
    mutable std::mutex mutex_;
    std::multimap<std::pair<std::string, const void*>, std::string> open_;
};

} // namespace stage
