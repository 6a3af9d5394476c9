// The host's core interface and its managers, for the plugin layer, which works on menus and actions itself.
// Each result is null when the host does not have it (yet). No function throws.
#pragma once

class IActionManager;
class IMenu;
class IMenuManager;
class Interface;

namespace tarvo {

Interface* CoreInterface();
IMenuManager* MenuManager();
IActionManager* ActionManager();
IMenu* MainMenuBar(IMenuManager& manager);

} // namespace tarvo
