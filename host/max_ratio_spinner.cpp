#include "host/max_ratio_spinner.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <custcont.h>

#include "host/end_host_headers.h"

#include <new>

namespace tarvo {

namespace {

// Without memory for the owner the interface still goes back.
std::unique_ptr<RatioSpinner> Owned(ISpinnerControl* control) {
    std::unique_ptr<RatioSpinner> spinner;
    if (control != nullptr) {
        spinner.reset(new (std::nothrow) MaxRatioSpinner(control));
        if (spinner == nullptr) {
            ::ReleaseISpinner(control);
        }
    }
    return spinner;
}

} // namespace

MaxRatioSpinner::~MaxRatioSpinner() {
    ::ReleaseISpinner(control_);
}

void MaxRatioSpinner::link_to_edit(WindowHandle edit) {
    control_->LinkToEdit(edit, EDITTYPE_FLOAT);
}

bool MaxRatioSpinner::is_enabled() {
    return control_->IsEnabled() != FALSE;
}

void MaxRatioSpinner::enable() {
    control_->Enable();
}

void MaxRatioSpinner::disable() {
    control_->Disable();
}

float MaxRatioSpinner::value() {
    return control_->GetFVal();
}

// SetValue has an int twin: the argument must stay a float.
void MaxRatioSpinner::set_value(float value) {
    control_->SetValue(value, TRUE);
}

std::unique_ptr<RatioSpinner> SetUpMaxRatioSpinner(WindowHandle dialog, int spinner_id, int edit_id,
                                                   float minimum, float maximum, float value, float step) {
    return Owned(::SetupFloatSpinner(dialog, spinner_id, edit_id, minimum, maximum, value, step));
}

std::unique_ptr<RatioSpinner> MaxRatioSpinnerOf(WindowHandle control) {
    return Owned(::GetISpinner(control));
}

} // namespace tarvo
