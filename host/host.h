// The small face of 3ds Max that the floors above see; the SDK stays behind it. All calls belong on the
// host's user-interface thread. No call throws; where the host cannot answer, the result is empty or false.
#pragma once

#include "common/window_handle.h"

#include <memory>
#include <string>

namespace tarvo {

// The host's spinner control for the ratio of width and height. Destroying the object releases the control's
// interface; the control itself belongs to the dialog.
class RatioSpinner {
public:
    virtual ~RatioSpinner() = default;
    virtual void link_to_edit(WindowHandle edit) = 0; // as a floating-point field
    virtual bool is_enabled() = 0;
    virtual void enable() = 0;
    virtual void disable() = 0;
    virtual float value() = 0;
    virtual void set_value(float value) = 0; // notifies the dialog
};

// What a script returned. `text` is a copy and is valid only with has_text.
struct ScriptResult {
    bool has_text = false;
    std::wstring text;
};

class Host {
public:
    virtual ~Host() = default;

    // False when the host has no core interface (yet); every other call then answers empty or false.
    virtual bool is_available() = 0;
    virtual WindowHandle main_window() = 0;

    // The open scene: its file name alone, and its full path. Both are empty for a scene that was never
    // saved.
    virtual std::wstring current_file_name() = 0;
    virtual std::wstring current_file_path() = 0;

    // Saves the open scene as the File menu would.
    virtual void save() = 0;

    // Saves the open scene under `path`, which becomes the current file and counts as saved. False on
    // failure.
    virtual bool save_as(const std::wstring& path) = 0;

    // Runs script text with errors shown and logged. False when the host reports failure.
    virtual bool run_script(const std::wstring& command, ScriptResult& result) = 0;

    // Creates, links and limits the spinner `spinner_id` with the field `edit_id` of `dialog`. Null on
    // failure.
    virtual std::unique_ptr<RatioSpinner> set_up_ratio_spinner(WindowHandle dialog, int spinner_id,
                                                               int edit_id, float minimum, float maximum,
                                                               float value, float step) = 0;
    // The interface of a spinner control that exists. Null on failure.
    virtual std::unique_ptr<RatioSpinner> ratio_spinner(WindowHandle control) = 0;
};

// The one host of this process. The adapter (max_host.cpp) defines it; a test program defines its own.
Host& CurrentHost();

} // namespace tarvo
