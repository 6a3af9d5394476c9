// The module's entry points. tarvo_rendering.def exports them; LibNumberClasses, LibInitialize and
// LibShutdown are three names of AnswerOne (C-19).
#include "common/guard.h"
#include "common/string_table.h"
#include "plugin/plugin_object.h"
#include "resources/resource_ids.h"

namespace {

// The host loads only modules that return its own library version. For 2019: release 21000, interface 52,
// revision 0. Not the headers' macro: a build against another host's headers must not return that host's
// version.
constexpr ULONG kHostLibraryVersion = 0x52083400;
static_assert(kHostLibraryVersion == (21000u << 16) + (52u << 8), "see above");

} // namespace

extern "C" {

// Null when the text is missing.
const MCHAR* LibDescription() {
    return tarvo::Guarded<const MCHAR*>("LibDescription", nullptr, [] {
        static tarvo::KeptText description(IDS_LIBRARY_DESCRIPTION);
        const MCHAR* text = description.get();
        return *text == L'\0' ? nullptr : text;
    });
}

ClassDesc* LibClassDesc(int index) {
    return tarvo::Guarded<ClassDesc*>("LibClassDesc", nullptr, [index] {
        return index == 0 ? &tarvo::Tarvo_RenderingClassDesc::instance() : nullptr;
    });
}

ULONG LibVersion() {
    return kHostLibraryVersion;
}

int AnswerOne() {
    return 1;
}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        tarvo::SetModuleInstance(instance);
    }
    return TRUE;
}

} // extern "C"
