// Menus and their items.
#pragma once

#include "actiontable.h"
#include "strclass.h"

class IMenu;

class IMenuElement : public InterfaceServer {};

class IMenuItem : public IMenuElement {
public:
    virtual void SetTitle(const MSTR& title) = 0;
    virtual void ActAsSeparator() = 0;
    virtual void SetActionItem(ActionItem* action) = 0;
    virtual void SetSubMenu(IMenu* menu) = 0;
};

class IMenu : public IMenuElement {
public:
    virtual void SetTitle(const MSTR& title) = 0;
    virtual int NumItems() const = 0;
    virtual void AddItem(IMenuItem* item, int position = -1) = 0; // the menu owns the item from now on
    virtual void RemoveItem(int index) = 0;
};

MENUS_API IMenu* GetIMenu();
MENUS_API IMenuItem* GetIMenuItem();
