// The parameter of both dialogs. It holds nothing, and neither dialog reads it (C-17).
#pragma once

#include "common/qfx_noncopyable.h"

namespace tarvo {

class TarvoRenderingConfigMgr : public qfx_Noncopyable {
public:
    // Created by the first call.
    static TarvoRenderingConfigMgr& instance() {
        static TarvoRenderingConfigMgr manager;
        return manager;
    }
};

} // namespace tarvo
