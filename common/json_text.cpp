#include "common/json_text.h"

#include <json/reader.h>
#include <json/writer.h>

#include <exception>

// The documents keep the layout of the styled writer, and the reader collects comments. The library has
// deprecated both classes in favour of builders with other defaults.
#if defined(_MSC_VER)
#pragma warning(disable : 4996)
#else
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif

namespace tarvo {

bool ParseJson(const std::string& text, Json::Value& root, std::string* refusal) {
    try {
        Json::Reader reader;
        // The overload for strings would copy the whole text.
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
