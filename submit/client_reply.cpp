#include "submit/client_link.h"

#include "common/json_text.h"
#include "common/message_box.h"

#include <exception>
#include <iostream>

namespace tarvo {

namespace {

// False when there is no usable code; `refusal` is then the text of what the library threw, if it threw.
bool read_code(const std::string& reply, int& code, std::string& refusal) {
    Json::Value root;
    if (!ParseJson(reply, root, &refusal)) {
        return false;
    }
    try {
        code = root["ret"].asInt();
        return true;
    } catch (const std::exception& error) {
        refusal = error.what();
        return false;
    }
}

} // namespace

void HandleClientReply(const std::string& reply, WindowHandle owner) {
    const unsigned long last_error = LastErrorCode();
    Logger log(kHttpChannel);
    int code = 0;
    std::string refusal;
    if (!read_code(reply, code, refusal)) {
        if (!refusal.empty()) {
            log.Write("The client's reply cannot be used: " + refusal, kError);
        }
        // To the standard output (C-39).
        std::cout << "Error " << last_error << " in WinHttpReadData." << std::endl;
        ShowBox(owner, IDS_REPLY_NOT_PARSED);
        log.Write("Get response data failed: parse the data from client failed!", kError);
        return;
    }
    const ReplyCode* meaning = FindReplyCode(code);
    if (meaning == nullptr) {
        return; // no box and no line (C-38)
    }
    ShowBox(owner, meaning->text_id, kBoxOk, meaning->caption_id);
    log.Write(meaning->log_text, meaning->level);
}

} // namespace tarvo
