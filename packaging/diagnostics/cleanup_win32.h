// Deletes old documents and packed scenes.
#pragma once

#include "packaging/diagnostics/messages.h"

#include <functional>
#include <string>

namespace diagnostics {

// Says one sentence for each file that is old enough, and how many there were. False when a file could not be
// deleted; one that is open or belongs to the newest is none of those.
bool clean(const std::wstring& data, unsigned days,
           const std::function<void(Message, const std::vector<Argument>&)>& say);

} // namespace diagnostics
