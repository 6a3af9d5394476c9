#include "plugin/class_descriptor.h"

#include "common/guard.h"
#include "common/string_table.h"
#include "plugin/plugin_object.h"

namespace tarvo {

namespace {

// The super class of global utilities: at start-up the host creates one object of such a class and starts it.
constexpr SClass_ID kUtilityPluginSuperClass = 0x10E0;
static_assert(GUP_CLASS_ID == kUtilityPluginSuperClass, "the host knows global utilities by another number");

} // namespace

Tarvo_RenderingClassDesc& Tarvo_RenderingClassDesc::instance() {
    static Tarvo_RenderingClassDesc descriptor;
    return descriptor;
}

void* Tarvo_RenderingClassDesc::Create(BOOL) {
    return Guarded<void*>("Create", nullptr, [] { return static_cast<GUP*>(new Tarvo_Rendering); });
}

const MCHAR* Tarvo_RenderingClassDesc::ClassName() {
    return Guarded("ClassName", L"", [this] { return class_name_.get(); });
}

SClass_ID Tarvo_RenderingClassDesc::SuperClassID() {
    return kUtilityPluginSuperClass;
}

const MCHAR* Tarvo_RenderingClassDesc::Category() {
    return Guarded("Category", L"", [this] { return category_.get(); });
}

} // namespace tarvo
