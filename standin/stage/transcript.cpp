#include "standin/stage/transcript.h"

#include "standin/base/files_win32.h"

#include <json/writer.h>

namespace stage {

namespace {

// Lists that exist even when nothing happened.
const char* const kLists[] = {"boxes",       "dialogs",    "commands", "host_calls", "scripts", "requests",
                              "files",       "processes",  "opened",   "leaks",      "plugin",  "steps",
                              "screenshots", "exceptions", "outcomes", "repeats",    "soaks"};

} // namespace

Transcript::Transcript() : root_(Json::objectValue) {
    for (const char* list : kLists) {
        root_[list] = Json::Value(Json::arrayValue);
    }
}

Json::ArrayIndex Transcript::append(const char* list, const Json::Value& entry) {
    const std::lock_guard<std::mutex> lock(mutex_);
    root_[list].append(entry);
    return root_[list].size() - 1;
}

void Transcript::amend(const char* list, Json::ArrayIndex index, const char* key, const Json::Value& value) {
    const std::lock_guard<std::mutex> lock(mutex_);
    root_[list][index][key] = value;
}

void Transcript::set(const char* key, const Json::Value& value) {
    const std::lock_guard<std::mutex> lock(mutex_);
    root_[key] = value;
}

void Transcript::set(const char* object, const char* key, const Json::Value& value) {
    const std::lock_guard<std::mutex> lock(mutex_);
    root_[object][key] = value;
}

Json::Value Transcript::copy() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return root_;
}

Transcript::Mark Transcript::mark() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    Mark sizes;
    for (const char* list : kLists) {
        sizes[list] = root_[list].size();
    }
    sizes.erase("outcomes");
    return sizes;
}

void Transcript::forget(const Mark& mark) {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& list : mark) {
        if (root_[list.first].size() > list.second) {
            root_[list.first].resize(list.second);
        }
    }
}

bool Transcript::write(const std::wstring& file) const {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "    ";
    builder["emitUTF8"] = true;
    return base::write_file(file, Json::writeString(builder, copy()) + "\n");
}

} // namespace stage
