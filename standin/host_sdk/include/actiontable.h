// Action tables: what a plug-in offers to menus, toolbars and shortcuts.
#pragma once

#include "strclass.h"

#include <windows.h>

typedef DWORD ActionTableId;
typedef DWORD ActionContextId;

struct ActionDescription {
    int mCmdID;
    int mDescriptionResourceID;
    int mShortNameResourceID;
    int mCategoryResourceID;
};

class ActionTable;

class CoreExport ActionItem : public InterfaceServer {
public:
    ActionItem();
    ~ActionItem() override;

    virtual int GetId() = 0;
    virtual void GetDescriptionText(MSTR& text) = 0;
    virtual void GetMenuText(MSTR& text) = 0;
    virtual void GetShortText(MSTR& text) = 0;
    virtual void GetCategoryText(MSTR& text) = 0;
    virtual BOOL ExecuteAction() = 0;
    virtual BOOL IsEnabled() = 0;
    virtual void DeleteThis() = 0;
};

class CoreExport ActionCallback : public BaseInterfaceServer {
public:
    ActionCallback();
    ~ActionCallback() override;

    virtual BOOL ExecuteAction(int id);
};

class CoreExport ActionTable : public BaseInterfaceServer {
public:
    // The texts are entries of the string table of `module`.
    ActionTable(ActionTableId id, ActionContextId context, TSTR& name, HACCEL accelerators, int count,
                ActionDescription* descriptions, HINSTANCE module);
    ~ActionTable() override;
    ActionTable(const ActionTable&) = delete;
    ActionTable& operator=(const ActionTable&) = delete;

    virtual BOOL GetMenuText(int command_id, MSTR& text);
    virtual BOOL GetDescriptionText(int command_id, MSTR& text);
    virtual BOOL IsEnabled(int command_id);
    virtual void DeleteThis();

    ActionTableId GetId();
    ActionContextId GetContextId();
    MSTR& GetName();
    int Count();
    ActionItem* GetAction(int command_id);

private:
    struct Contents;

    Contents* contents_;
};

class IActionManager : public InterfaceServer {
public:
    virtual void RegisterActionTable(ActionTable* table) = 0;
    virtual int NumActionTables() = 0;
    virtual int ActivateActionTable(ActionCallback* callback, ActionTableId id) = 0;
    virtual int DeactivateActionTable(ActionCallback* callback, ActionTableId id) = 0;
    virtual ActionTable* FindTable(ActionTableId id) = 0;
    virtual BOOL RegisterActionContext(ActionContextId id, const MCHAR* name) = 0;
};
