#include "packaging/diagnostics/client_answer.h"

#include "common/json_text.h"

#include <algorithm>
#include <cctype>

namespace diagnostics {

std::string empty_request() {
    Json::Value request(Json::objectValue);
    request["compressPath"] = "";
    request["filePath"] = "";
    request["maxVersion"] = "3ds Max 2019";
    request["scenePath"] = "";
    return tarvo::StyledJson(request);
}

AnswerForm answer_form(const std::string& body, int& code) {
    const std::size_t begin = body.find_first_not_of(" \t\r\n");
    if (begin == std::string::npos) {
        return AnswerForm::empty;
    }
    Json::Value answer;
    if (!tarvo::ParseJson(body, answer)) {
        return body[begin] == '<' ? AnswerForm::page : AnswerForm::text;
    }
    const Json::Value none;
    const Json::Value& ret = answer.isObject() ? answer.get("ret", none) : none;
    if (!ret.isInt()) {
        return AnswerForm::json;
    }
    code = ret.asInt();
    return AnswerForm::code;
}

} // namespace diagnostics
