// The host's core interface and its managers, for the plugin layer, which works on menus and actions itself.
// Each answer is null when the host does not have the thing (yet). Nothing here throws.
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
