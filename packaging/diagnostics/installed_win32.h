// Compares the installed files with the list that came along with them.
#pragma once

#include "packaging/diagnostics/manifest.h"
#include "packaging/diagnostics/module_image.h"

#include <string>

namespace diagnostics {

// With C:\ProgramData and the path of the list.
InstalledFiles installed_files(const std::wstring& program_data, const std::wstring& manifest);

ModuleImage module_image(const std::wstring& path);

} // namespace diagnostics
