// The record of a run. Any thread may write; each call is atomic.
#pragma once

#include <json/value.h>

#include <map>
#include <mutex>
#include <string>

namespace stage {

class Transcript {
public:
    Transcript();

    // Appends to a list and returns the entry's index, for `amend`.
    Json::ArrayIndex append(const char* list, const Json::Value& entry);
    void amend(const char* list, Json::ArrayIndex index, const char* key, const Json::Value& value);

    void set(const char* key, const Json::Value& value);
    void set(const char* object, const char* key, const Json::Value& value);

    Json::Value copy() const;

    // Removes what was appended to the lists since the mark, except outcomes: for rounds whose record would
    // grow more than what they measure. No removed entry may be amended later.
    using Mark = std::map<std::string, Json::ArrayIndex>;
    Mark mark() const;
    void forget(const Mark& mark);

    // Indented, UTF-8.
    bool write(const std::wstring& file) const;

private:
    mutable std::mutex mutex_;
    Json::Value root_;
};

} // namespace stage
