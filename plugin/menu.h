// The plugin's menu on the host's main menu bar: three entries, always.
#pragma once

#include <string>

class ActionTable;
class IMenu;
class IMenuManager;

namespace tarvo {

// Registers the menu-bar context, then refills the menu that bears the plugin's title or creates it. Leaves
// exactly the three entries, whatever the menu held.
void EnsureMenu(IMenuManager& manager, IMenu& main_bar, ActionTable& table);

// Empties the menu of that title; also takes it away when the menu-bar context is registered. No such menu,
// no host: nothing happens.
void RemoveMenu(const std::wstring& title);

} // namespace tarvo
