#include "common/json_text.h"

#include <json/reader.h>
#include <json/writer.h>

#include <exception>

// The documents must keep the layout of the styled writer, and the reader must collect comments as it does;
// both classes are marked deprecated in favour of builders with other defaults.
#if defined(_MSC_VER)
#pragma warning(disable : 4996)
#else
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif

namespace tarvo {

bool ParseJson(const std::string& text, Json::Value& root, std::string* refusal) {
    if (refusal != nullptr) {
        refusal->clear();
    }
    try {
        Json::Reader reader;
        // Not the overload for strings: it keeps a copy of the whole text.
        return reader.parse(text.data(), text.data() + text.size(), root, true);
    } catch (const std::exception& error) {
        if (refusal != nullptr) {
            *refusal = error.what();
        }
        return false;
    }
}

std::string StyledJson(const Json::Value& value) {
    Json::StyledWriter writer;
    return writer.write(value);
}

} // namespace tarvo
