// The record of a run. Several threads write into it; each call is complete in itself.
#pragma once

#include <json/value.h>

#include <map>
#include <mutex>
#include <string>

namespace stage {

class Transcript {
public:
    Transcript();

    // Appends to a list of the record; the answer is the entry's place in the list, for `amend`.
    Json::ArrayIndex append(const char* list, const Json::Value& entry);
    void amend(const char* list, Json::ArrayIndex index, const char* key, const Json::Value& value);

    void set(const char* key, const Json::Value& value);
    void set(const char* object, const char* key, const Json::Value& value);

    Json::Value copy() const;

    // Takes back what was appended to the lists since the mark, except outcomes: for rounds that are repeated
    // so often that their record would outgrow what they do. Nothing of it may still wait for `amend`.
    using Mark = std::map<std::string, Json::ArrayIndex>;
    Mark mark() const;
    void forget(const Mark& mark);

    // Styled, UTF-8.
    bool write(const std::wstring& file) const;

private:
    mutable std::mutex mutex_;
    Json::Value root_;
};

} // namespace stage
