// What the host asks about the plugin's one class.
#pragma once

#include "plugin/kept_text.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <iparamb2.h>

#include "host/end_host_headers.h"

namespace tarvo {

class Tarvo_RenderingClassDesc : public ClassDesc2 {
public:
    // Created by the first call.
    static Tarvo_RenderingClassDesc& instance();

    Tarvo_RenderingClassDesc();

    int IsPublic() override;
    void* Create(BOOL loading) override; // a new Tarvo_Rendering; the host ends it by its DeleteThis
    const MCHAR* ClassName() override;
    SClass_ID SuperClassID() override;
    Class_ID ClassID() override;
    const MCHAR* Category() override;
    const MCHAR* InternalName() override;
    HINSTANCE HInstance() override;

private:
    KeptText class_name_;
    KeptText category_;
};

} // namespace tarvo
