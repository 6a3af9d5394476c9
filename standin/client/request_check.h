// What the client checks before it would take a job: the request itself, the submit document, the archive.
#pragma once

#include "standin/client/http_request.h"

#include <json/value.h>

#include <string>

namespace client {

// Opens the files and runs 7z.exe, without a time limit: a large scene takes its time. Returns
//   "checks": {"check", "ok", "detail"} each; a check that an earlier failure made impossible is left out
//   "ok":     whether there are checks and all of them hold
//   "job":    what the request points at; texts are empty and sizes -1 where they are not known
Json::Value check_request(const HttpRequest& request, const std::wstring& seven_zip);

} // namespace client
