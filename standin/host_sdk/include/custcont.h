// The host's own controls: the spinner ("SpinnerControl") and the edit field that it is linked to.
#pragma once

#include "maxheap.h"
#include "strclass.h"

#include <windows.h>

#define SPINNERWINDOWCLASS _M("SpinnerControl")
#define CUSTEDITWINDOWCLASS _M("CustEdit")

// To the dialog: LOWORD(wParam) is the control's id, HIWORD(wParam) TRUE while a button is held, lParam the
// interface.
#define CC_SPINNER_CHANGE (WM_USER + 600)
#define CC_SPINNER_BUTTONDOWN (WM_USER + 601)
#define CC_SPINNER_BUTTONUP (WM_USER + 602)

enum EditSpinnerType { EDITTYPE_INT, EDITTYPE_FLOAT };

class ICustomControl : public MaxHeapOperators {
public:
    virtual void Enable(BOOL on = TRUE) = 0;
    virtual void Disable() = 0;
    virtual BOOL IsEnabled() = 0;

protected:
    virtual ~ICustomControl() {}
};

class ISpinnerControl : public ICustomControl {
public:
    virtual float GetFVal() = 0;
    virtual void SetValue(float value, int notify) = 0;
    virtual void LinkToEdit(HWND edit, EditSpinnerType type) = 0;
};

// Each answer that is not null needs one ReleaseISpinner.
CoreExport ISpinnerControl* GetISpinner(HWND control);
CoreExport void ReleaseISpinner(ISpinnerControl* spinner);
CoreExport ISpinnerControl* SetupFloatSpinner(HWND dialog, int spinner_id, int edit_id, float minimum,
                                              float maximum, float value, float scale = 0.1f);
