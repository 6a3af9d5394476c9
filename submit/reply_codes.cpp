#include "submit/reply_codes.h"

#include "common/logger.h"
#include "resources/resource_ids.h"

#include <algorithm>
#include <iterator>

namespace tarvo {

namespace {

// The wording is fixed, slips included: support searches the logs for it.
constexpr ReplyCode kReplyCodes[] = {
    {10001, IDS_REPLY_ACCEPTED, false, kInfo, "Submit successfully."},
    {10002, IDS_REPLY_NOT_MAX_PROJECT, true, kError,
     "The client's current project is not a 3ds max render project, please set it up again!"},
    {10003, IDS_REPLY_VERSION_MISMATCH, true, kError, "The client rendering version is not match!"},
    {10004, IDS_REPLY_NOT_DESIGN_PROJECT, true, kError,
     "The current project is not an design sketch project!"},
    {10005, IDS_REPLY_NO_SCENE, true, kError, "The scene file is not exist!"},
    {10006, IDS_REPLY_NO_DOCUMENT, true, kError, "he Analysis file is not exist!"},
    {10007, IDS_REPLY_DOCUMENT_NOT_PARSED, true, kError, "Parse the analysis file failed!"},
    {10008, IDS_REPLY_WRONG_SUFFIX, true, kError,
     "The current submission of the scene suffix is wrong, please check for confirmation!"},
    {10009, IDS_REPLY_ALREADY_SUBMITTED, true, kError,
     "The current submission scenario already exists, please do not repeat the submission!"},
    {11000, IDS_REPLY_INTERNAL_ERROR, true, kError,
     "An internal error occurred. Please restart 3ds max and re-operate!"},
    {11010, IDS_CAMERA_NAME_INVALID, true, kError,
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
