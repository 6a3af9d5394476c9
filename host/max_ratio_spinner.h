// The host's spinner control as a RatioSpinner. Owns one hold on the control's interface.
#pragma once

#include "host/host.h"

class ISpinnerControl;

namespace tarvo {

class MaxRatioSpinner : public RatioSpinner {
public:
    // `control` is not null and comes from the host; it is given back to the host at the end.
    explicit MaxRatioSpinner(ISpinnerControl* control) : control_(control) {}
    ~MaxRatioSpinner() override;
    MaxRatioSpinner(const MaxRatioSpinner&) = delete;
    MaxRatioSpinner& operator=(const MaxRatioSpinner&) = delete;

    void link_to_edit(WindowHandle edit) override;
    bool is_enabled() override;
    void enable() override;
    void disable() override;
    float value() override;
    void set_value(float value) override;

private:
    ISpinnerControl* control_;
};

// Both answer null when the host does not give an interface.
std::unique_ptr<RatioSpinner> SetUpMaxRatioSpinner(WindowHandle dialog, int spinner_id, int edit_id,
                                                   float minimum, float maximum, float value, float step);
std::unique_ptr<RatioSpinner> MaxRatioSpinnerOf(WindowHandle control);

} // namespace tarvo
