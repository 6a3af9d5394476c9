// Fills the facts from this machine, and names what must not leave it.
#pragma once

#include "packaging/diagnostics/facts.h"
#include "packaging/diagnostics/redaction.h"

#include <string>

namespace diagnostics {

// Where the plugin and its files lie, with backslashes.
struct Places {
    std::wstring data;    // C:\ProgramData\Tarvo Rendering
    std::wstring package; // C:\ProgramData\Autodesk\ApplicationPlugins\TarvoRendering
    std::wstring ini;
};

Places find_places();

Facts gather(const Places& places);

Secrets find_secrets(const Places& places);

} // namespace diagnostics
