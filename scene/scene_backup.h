// Names and the log line of the scene's backup copy.
#pragma once

#include <string>

namespace tarvo {

// The file name (without extension) with an underscore and the number in six digits.
std::wstring BackupName(const std::wstring& name, int number);

// `error` is only read when the copy failed. It enters the line as one UTF-16 unit, not in digits
// (C-53).
std::wstring BackupLogLine(const std::wstring& source, const std::wstring& destination, bool copied,
                           unsigned long error);

} // namespace tarvo
