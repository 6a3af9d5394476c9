// The minimal 3ds Max interface that the layers above use; the SDK stays behind it. max_host.cpp implements
// it, a test program defines its own. For the host's user-interface thread only. No function throws: without
// a core interface, or when the host throws, the result is empty, null or false. An exception leaves a log
// line.
#pragma once

#include "common/platform.h"

#include <memory>
#include <string>

class IActionManager;
class IMenu;
class IMenuManager;
class ISpinnerControl;
class Interface;

namespace tarvo {

WindowHandle HostMainWindow();

// The open scene's file name and its full path; both empty for a scene that was never saved.
std::wstring SceneFileName();
std::wstring SceneFilePath();

// Saves the open scene like the File menu.
void SaveScene();

// Saves the open scene under `path`, which becomes the current file and counts as saved. False on failure.
bool SaveSceneAs(const std::wstring& path);

// A script's result. `text` is a copy, and empty without has_text.
struct ScriptResult {
    bool has_text = false;
    std::wstring text;
};

// Runs script text; the host shows and logs errors. False when the host reports failure.
bool RunScript(const std::wstring& command, ScriptResult& result);

// The host's spinner control for the ratio of width and height. Owns the control's interface; the dialog owns
// the control. Exceptions of the host pass through its functions, except the destructor.
class RatioSpinner {
public:
    explicit RatioSpinner(ISpinnerControl* control) : control_(control) {}
    ~RatioSpinner();
    RatioSpinner(const RatioSpinner&) = delete;
    RatioSpinner& operator=(const RatioSpinner&) = delete;

    void link_to_edit(WindowHandle edit); // as a floating-point field
    bool is_enabled();
    void enable();
    void disable();
    float value();
    void set_value(float value); // notifies the dialog

private:
    ISpinnerControl* control_; // never null
};

// Sets up the spinner `spinner_id` of `dialog` and links it to the field `edit_id`. Null on failure.
std::unique_ptr<RatioSpinner> SetUpRatioSpinner(WindowHandle dialog, int spinner_id, int edit_id,
                                                float minimum, float maximum, float value, float step);
// The interface of a spinner control that exists. Null on failure.
std::unique_ptr<RatioSpinner> RatioSpinnerOf(WindowHandle control);

// The host's core interface and its managers, for the plugin layer, which works on menus and actions itself.
// Each is null when the host does not have it (yet).
Interface* CoreInterface();
IMenuManager* MenuManager();
IActionManager* ActionManager();
IMenu* MainMenuBar(IMenuManager& manager);

} // namespace tarvo
