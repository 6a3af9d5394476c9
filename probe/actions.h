// What the probe does with its action table after the first questions.
#pragma once

#include "host/begin_host_headers.h"

#include <max.h>

#include <actiontable.h>

#include "host/end_host_headers.h"

namespace tarvo_probe {

// Runs the action with a callback that throws.
void AskThrowingAction() noexcept;
// Takes both callbacks back. The table itself cannot be taken back.
void DeactivateActions() noexcept;

} // namespace tarvo_probe
