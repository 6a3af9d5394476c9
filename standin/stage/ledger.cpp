#include "standin/stage/ledger.h"

#include <cstdint>
#include <cstdio>

namespace stage {

void Ledger::created(const char* kind, const void* thing, const std::string& detail) {
    const std::lock_guard<std::mutex> lock(mutex_);
    open_.emplace(std::make_pair(std::string(kind), thing), detail);
}

bool Ledger::released(const char* kind, const void* thing) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = open_.find(std::make_pair(std::string(kind), thing));
    if (found == open_.end()) {
        return false;
    }
    open_.erase(found);
    return true;
}

Json::Value Ledger::open() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    Json::Value list(Json::arrayValue);
    for (const auto& item : open_) {
        char value[32] = {};
        std::snprintf(value, sizeof value, "0x%llx",
                      static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(item.first.second)));
        Json::Value entry(Json::objectValue);
        entry["kind"] = item.first.first;
        entry["value"] = value;
        entry["detail"] = item.second;
        list.append(entry);
    }
    return list;
}

} // namespace stage
