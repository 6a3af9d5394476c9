#include "standin/stage/json_read.h"

#include <json/reader.h>

#include <exception>
#include <memory>

namespace stage {

Json::Value parsed_or_null(const std::string& text) {
    Json::Value value;
    std::string ignored;
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    try {
        return reader->parse(text.data(), text.data() + text.size(), &value, &ignored) ? value
                                                                                       : Json::Value();
    } catch (const std::exception&) { // nesting deeper than the library takes
        return Json::Value();
    }
}

} // namespace stage
