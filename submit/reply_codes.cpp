#include "submit/reply_codes.h"

#include "resources/resource_ids.h"

#include <algorithm>
#include <iterator>

namespace tarvo {

namespace {

// The wording is fixed, slips included: support searches the logs for it.
constexpr ReplyCode kReplyCodes[] = {
    {10001, IDS_REPLY_ACCEPTED, false, "INFO", "Submit successfully."},
    {10002, IDS_REPLY_NOT_MAX_PROJECT, true, "ERROR",
     "The client's current project is not a 3ds max render project, please set it up again!"},
    {10003, IDS_REPLY_VERSION_MISMATCH, true, "ERROR", "The client rendering version is not match!"},
    {10004, IDS_REPLY_NOT_DESIGN_PROJECT, true, "ERROR",
     "The current project is not an design sketch project!"},
    {10005, IDS_REPLY_NO_SCENE, true, "ERROR", "The scene file is not exist!"},
    {10006, IDS_REPLY_NO_DOCUMENT, true, "ERROR", "he Analysis file is not exist!"},
    {10007, IDS_REPLY_DOCUMENT_NOT_PARSED, true, "ERROR", "Parse the analysis file failed!"},
    {10008, IDS_REPLY_WRONG_SUFFIX, true, "ERROR",
     "The current submission of the scene suffix is wrong, please check for confirmation!"},
    {10009, IDS_REPLY_ALREADY_SUBMITTED, true, "ERROR",
     "The current submission scenario already exists, please do not repeat the submission!"},
    {11000, IDS_REPLY_INTERNAL_ERROR, true, "ERROR",
     "An internal error occurred. Please restart 3ds max and re-operate!"},
    {11010, IDS_CAMERA_NAME_INVALID, true, "ERROR",
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
