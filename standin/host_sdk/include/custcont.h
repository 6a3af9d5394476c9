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

// To the dialog, when the field gets the focus and when Enter is pressed in it: wParam is the field's id,
// lParam its window.
#define WM_CUSTEDIT_ENTER (WM_USER + 603)

enum EditSpinnerType {
    EDITTYPE_INT,
    EDITTYPE_FLOAT,
    EDITTYPE_UNIVERSE,
    EDITTYPE_POS_INT,
    EDITTYPE_POS_FLOAT,
    EDITTYPE_POS_UNIVERSE,
    EDITTYPE_TIME
};

class ICustomControl : public MaxHeapOperators {
public:
    virtual HWND GetHwnd() = 0;
    virtual void Enable(BOOL on = TRUE) = 0;
    virtual void Disable() = 0;
    virtual BOOL IsEnabled() = 0;

protected:
    virtual ~ICustomControl() {}
};

class ISpinnerControl : public ICustomControl {
public:
    virtual float GetFVal() = 0;
    virtual int GetIVal() = 0;
    virtual void SetScale(float scale) = 0;
    virtual void SetValue(float value, int notify) = 0;
    virtual void SetValue(int value, int notify) = 0;
    virtual void SetLimits(int minimum, int maximum, int limit_value = TRUE) = 0;
    virtual void SetLimits(float minimum, float maximum, int limit_value = TRUE) = 0;
    virtual void LinkToEdit(HWND edit, EditSpinnerType type) = 0;
};

// Each answer that is not null needs one ReleaseISpinner.
CoreExport ISpinnerControl* GetISpinner(HWND control);
CoreExport void ReleaseISpinner(ISpinnerControl* spinner);
CoreExport ISpinnerControl* SetupFloatSpinner(HWND dialog, int spinner_id, int edit_id, float minimum,
                                              float maximum, float value, float scale = 0.1f);
