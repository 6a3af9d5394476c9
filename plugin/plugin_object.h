// The plugin object, which installs the actions and the menu, and the host's questions about its class.
#pragma once

#include "common/string_table.h"
#include "resources/resource_ids.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <guplib.h>
#include <iparamb2.h>

#include "host/end_host_headers.h"

#include <string>

namespace tarvo {

// The host's notification that start-up is complete; its menus exist by then.
constexpr int kSystemStartup = 80;

// The host creates and starts it once.
class Tarvo_Rendering : public GUP {
public:
    ~Tarvo_Rendering() override;

    DWORD Start() override;
    void Stop() override;
    void DeleteThis() override;
};

// A string-table text for the host, which keeps the pointer: it stays valid as long as this object.
class KeptText {
public:
    explicit KeptText(unsigned id) : id_(id) {}
    KeptText(const KeptText&) = delete;
    KeptText& operator=(const KeptText&) = delete;

    // Never null; empty as long as the text is missing.
    const wchar_t* get() {
        if (text_.empty()) {
            text_ = Text(id_);
        }
        return text_.c_str();
    }

private:
    unsigned id_;
    std::wstring text_;
};

class Tarvo_RenderingClassDesc : public ClassDesc2 {
public:
    // Created by the first call.
    static Tarvo_RenderingClassDesc& instance();

    // Most global utilities return TRUE; the host may never create a class that is not public.
    int IsPublic() override { return TRUE; }
    void* Create(BOOL loading) override; // a new Tarvo_Rendering; the host destroys it via DeleteThis
    const MCHAR* ClassName() override;
    SClass_ID SuperClassID() override;
    Class_ID ClassID() override { return Class_ID(0x2E87AC90, 0x85FBF488); }
    const MCHAR* Category() override;
    const MCHAR* InternalName() override { return L"Tarvo_Rendering"; }
    HINSTANCE HInstance() override { return ModuleInstance(); }

private:
    KeptText class_name_{IDS_CLASS_NAME};
    KeptText category_{IDS_CLASS_CATEGORY};
};

} // namespace tarvo
