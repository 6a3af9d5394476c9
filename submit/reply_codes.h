// The meaning of the desktop client's reply codes.
#pragma once

namespace tarvo {

struct ReplyCode {
    int code;
    unsigned text_id;
    unsigned caption_id; // or kNoCaption
    const char* level;
    const char* log_text;
};

// Null for a code that is not in the table.
const ReplyCode* FindReplyCode(int code);

} // namespace tarvo
