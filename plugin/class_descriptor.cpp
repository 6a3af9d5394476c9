#include "plugin/class_descriptor.h"

#include "common/guard.h"
#include "common/string_table.h"
#include "plugin/plugin_object.h"
#include "resources/resource_ids.h"

namespace tarvo {

namespace {

// The host's super class of global utilities: it creates one object of such a class at start-up and starts
// it.
constexpr SClass_ID kUtilityPluginSuperClass = 0x10E0;
static_assert(GUP_CLASS_ID == kUtilityPluginSuperClass, "the host knows global utilities by another number");

} // namespace

Tarvo_RenderingClassDesc& Tarvo_RenderingClassDesc::instance() {
    static Tarvo_RenderingClassDesc descriptor;
    return descriptor;
}

Tarvo_RenderingClassDesc::Tarvo_RenderingClassDesc()
    : class_name_(IDS_CLASS_NAME), category_(IDS_CLASS_CATEGORY) {}

// A class that is not public may never be created; most global utilities answer TRUE.
int Tarvo_RenderingClassDesc::IsPublic() {
    return TRUE;
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

Class_ID Tarvo_RenderingClassDesc::ClassID() {
    return Class_ID(0x2E87AC90, 0x85FBF488);
}

const MCHAR* Tarvo_RenderingClassDesc::Category() {
    return Guarded("Category", L"", [this] { return category_.get(); });
}

const MCHAR* Tarvo_RenderingClassDesc::InternalName() {
    return L"Tarvo_Rendering";
}

HINSTANCE Tarvo_RenderingClassDesc::HInstance() {
    return ModuleInstance();
}

} // namespace tarvo
