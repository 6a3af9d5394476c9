// Menus and their items.
#pragma once

#include "actiontable.h"
#include "baseinterface.h"
#include "strclass.h"

class IMenu;

class IMenuElement : public InterfaceServer {};

class IMenuItem : public IMenuElement {
public:
    enum ActionMode { AM_INACTIVE = 0, AM_SEPARATOR, AM_ITEM, AM_FN, AM_SUBMENU, AM_ITEM_SUBMENU };

    virtual void SetTitle(const MSTR& title) = 0;
    virtual const MSTR& GetTitle() = 0;
    virtual void SetUseCustomTitle(bool use) = 0;
    virtual bool GetUseCustomTitle() = 0;
    virtual void ActAsSeparator() = 0;
    virtual bool IsSeparator() const = 0;
    virtual void SetActionItem(ActionItem* action) = 0;
    virtual ActionItem* GetActionItem() const = 0;
    virtual void SetSubMenu(IMenu* menu) = 0;
    virtual IMenu* GetSubMenu() = 0;
    virtual ActionMode GetActionMode() const = 0;
    virtual bool ExecuteAction() const = 0;
};

class IMenu : public IMenuElement {
public:
    virtual void SetTitle(const MSTR& title) = 0;
    virtual const MSTR& GetTitle() = 0;
    virtual int NumItems() const = 0;
    virtual IMenuItem* GetItem(int index) = 0;
    virtual void AddItem(IMenuItem* item, int position = -1) = 0; // the menu owns the item from now on
    virtual void RemoveItem(int index) = 0;
    virtual void RemoveItem(IMenuItem* item) = 0;
};

MENUS_API IMenu* GetIMenu();
MENUS_API IMenuItem* GetIMenuItem();
