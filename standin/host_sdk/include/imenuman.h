// The menu manager and the contexts that menus are attached to.
#pragma once

#include "imenus.h"

typedef int MenuContextId;

const MenuContextId kMainMenuBar = 1;

class IMenuContext : public InterfaceServer {
public:
    virtual MSTR& GetName() = 0;
};

class IMenuBarContext : public IMenuContext {
public:
    virtual void SetMenu(IMenu* menu) = 0;
    virtual IMenu* GetMenu() = 0;
};

class IMenuManager : public InterfaceServer {
public:
    virtual bool RegisterMenu(IMenu* menu, DWORD flags = 0) = 0;
    virtual bool UnRegisterMenu(IMenu* menu) = 0; // frees the menu
    virtual IMenu* FindMenu(const MCHAR* title) = 0;
    virtual bool RegisterMenuBarContext(MenuContextId id, const MCHAR* name) = 0;
    virtual IMenuContext* GetContext(MenuContextId id) = 0;
    virtual IMenu* GetMainMenuBar() = 0;
    virtual void UpdateMenuBar() = 0;
};
