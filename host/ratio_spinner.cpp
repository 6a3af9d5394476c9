#include "common/guard.h"
#include "host/host.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <custcont.h>

#include "host/end_host_headers.h"

#include <new>

namespace tarvo {

namespace {

// Without memory for the owner the interface is still released.
std::unique_ptr<RatioSpinner> owned(ISpinnerControl* control) {
    std::unique_ptr<RatioSpinner> spinner;
    if (control != nullptr) {
        spinner.reset(new (std::nothrow) RatioSpinner(control));
        if (spinner == nullptr) {
            ::ReleaseISpinner(control);
        }
    }
    return spinner;
}

} // namespace

RatioSpinner::~RatioSpinner() {
    RunGuarded("ReleaseISpinner", [this] { ::ReleaseISpinner(control_); });
}

void RatioSpinner::link_to_edit(WindowHandle edit) {
    control_->LinkToEdit(edit, EDITTYPE_FLOAT);
}

bool RatioSpinner::is_enabled() {
    return control_->IsEnabled() != FALSE;
}

void RatioSpinner::enable() {
    control_->Enable();
}

void RatioSpinner::disable() {
    control_->Disable();
}

float RatioSpinner::value() {
    return control_->GetFVal();
}

// SetValue has an int overload: the argument must stay a float.
void RatioSpinner::set_value(float value) {
    control_->SetValue(value, TRUE);
}

std::unique_ptr<RatioSpinner> SetUpRatioSpinner(WindowHandle dialog, int spinner_id, int edit_id,
                                                float minimum, float maximum, float value, float step) {
    return Guarded("SetupFloatSpinner", std::unique_ptr<RatioSpinner>(), [&] {
        return owned(::SetupFloatSpinner(dialog, spinner_id, edit_id, minimum, maximum, value, step));
    });
}

std::unique_ptr<RatioSpinner> RatioSpinnerOf(WindowHandle control) {
    return Guarded("GetISpinner", std::unique_ptr<RatioSpinner>(),
                   [&] { return owned(::GetISpinner(control)); });
}

} // namespace tarvo
