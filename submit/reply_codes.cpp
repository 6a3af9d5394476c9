#include "submit/client_link.h"

#include "common/message_box.h"

#include <algorithm>
#include <iterator>

namespace tarvo {

namespace {

// The log texts are fixed (C-50), so is the empty caption of the first row (C-04).
constexpr ReplyCode kReplyCodes[] = {
    {10001, IDS_REPLY_ACCEPTED, kNoCaption, kInfo, "Submit successfully."},
    {10002, IDS_REPLY_NOT_MAX_PROJECT, IDS_CAPTION, kError,
     "The client's current project is not a 3ds max render project, please set it up again!"},
    {10003, IDS_REPLY_VERSION_MISMATCH, IDS_CAPTION, kError, "The client rendering version is not match!"},
    {10004, IDS_REPLY_NOT_DESIGN_PROJECT, IDS_CAPTION, kError,
     "The current project is not an design sketch project!"},
    {10005, IDS_REPLY_NO_SCENE, IDS_CAPTION, kError, "The scene file is not exist!"},
    {10006, IDS_REPLY_NO_DOCUMENT, IDS_CAPTION, kError, "he Analysis file is not exist!"},
    {10007, IDS_REPLY_DOCUMENT_NOT_PARSED, IDS_CAPTION, kError, "Parse the analysis file failed!"},
    {10008, IDS_REPLY_WRONG_SUFFIX, IDS_CAPTION, kError,
     "The current submission of the scene suffix is wrong, please check for confirmation!"},
    {10009, IDS_REPLY_ALREADY_SUBMITTED, IDS_CAPTION, kError,
     "The current submission scenario already exists, please do not repeat the submission!"},
    {11000, IDS_REPLY_INTERNAL_ERROR, IDS_CAPTION, kError,
     "An internal error occurred. Please restart 3ds max and re-operate!"},
    {11010, IDS_CAMERA_NAME_INVALID, IDS_CAPTION, kError,
     "Camera name can not have special characters, please modify and re-submit!"},
};

} // namespace

const ReplyCode* FindReplyCode(int code) {
    const ReplyCode* end = std::end(kReplyCodes);
    const ReplyCode* found =
        std::find_if(std::begin(kReplyCodes), end, [code](const ReplyCode& row) { return row.code == code; });
    return found == end ? nullptr : found;
}

} // namespace tarvo
