// The host's core interface.
#pragma once

#include "actiontable.h"
#include "getcoreinterface.h"
#include "imenuman.h"
#include "strclass.h"

#include <windows.h>

class Interface : public InterfaceServer {
public:
    virtual HWND GetMAXHWnd() = 0;
    virtual MSTR& GetCurFileName() = 0; // name only; empty for a scene that was never saved
    virtual MSTR& GetCurFilePath() = 0; // full path
    virtual BOOL FileSave() = 0;
    virtual int SaveToFile(const MCHAR* file_name, BOOL clear_need_save_flag = TRUE,
                           BOOL use_new_file = TRUE) = 0;
    virtual IActionManager* GetActionManager() = 0;
    virtual IMenuManager* GetMenuManager() = 0;
};
