// What the probe asks the host, by subject. Each function writes its lines into the report and lets no
// exception out. All of them belong on the host's user-interface thread.
#pragma once

#include <windows.h>

#include <string>

namespace tarvo_probe {

// Sizes and numbers that are fixed when the probe is built.
void AskHeaders() noexcept;
// Which of the host's objects there are; `moment` begins every key.
void AskObjects(const std::string& moment) noexcept;
// Scripts: how their results are tagged. Only when the host is complete.
void AskScripts() noexcept;
// Makes, finds and takes away a menu.
void AskMenus(const std::string& moment) noexcept;
// Registers a table, activates it twice, runs its action. The table stays with the host.
void AskActions(HINSTANCE module) noexcept;
// The spinner with a plain edit control and with the host's own.
void AskSpinner(HINSTANCE module) noexcept;
// Saves the scene as a temporary file; only when it was never saved.
void AskSaving() noexcept;
// Lets exceptions out where the product may; last, because a host that does not stand it ends here.
void AskExceptions(HINSTANCE module) noexcept;

} // namespace tarvo_probe
