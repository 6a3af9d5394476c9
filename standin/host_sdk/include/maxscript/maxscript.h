// Running script text.
#pragma once

#include "../ifnpub.h"

ScripterExport BOOL ExecuteMAXScriptScript(const MCHAR* script, BOOL quiet_errors = FALSE,
                                           FPValue* result = nullptr, BOOL log_quiet_errors = TRUE);
