// Fills the facts from this machine, and names what must not leave it.
#pragma once

#include "packaging/diagnostics/facts.h"
#include "packaging/diagnostics/redaction.h"

#include <functional>
#include <string>

namespace diagnostics {

// Where the plugin and its files lie, with backslashes.
struct Places {
    std::wstring data;    // C:\ProgramData\Tarvo Rendering
    std::wstring package; // C:\ProgramData\Autodesk\ApplicationPlugins\TarvoRendering
    std::wstring ini;
};

Places find_places();

// `before_test` is called when an archive is to be tested, which can take minutes.
Facts gather(const Places& places, const std::function<void()>& before_test);

Secrets find_secrets(const Places& places);

} // namespace diagnostics
