// TarvoHostProbe.gup: loaded once by hand, writes what the host really does into TarvoHostProbe.txt. Not part
// of any release. Its questions are in questions.h; tools/read_host_report.py reads the answers.
#include "probe/probe_object.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <iparamb2.h>
#include <plugapi.h>

#include "host/end_host_headers.h"

namespace {

using tarvo_probe::ProbeObject;

HINSTANCE g_module = nullptr;

class Descriptor : public ClassDesc2 {
public:
    int IsPublic() override { return FALSE; }
    void* Create(BOOL) override { return static_cast<GUP*>(new ProbeObject(g_module)); }
    const MCHAR* ClassName() override { return L"Tarvo host probe"; }
    SClass_ID SuperClassID() override { return GUP_CLASS_ID; }
    Class_ID ClassID() override { return Class_ID(0x2E87AC91, 0x85FBF489); }
    const MCHAR* Category() override { return L"Tarvo"; }
    const MCHAR* InternalName() override { return L"Tarvo_HostProbe"; }
    HINSTANCE HInstance() override { return g_module; }
};

Descriptor& descriptor() {
    static Descriptor one;
    return one;
}

} // namespace

extern "C" {

const MCHAR* LibDescription() {
    return L"Tarvo host probe";
}

ClassDesc* LibClassDesc(int index) {
    return index == 0 ? &descriptor() : nullptr;
}

// As plugin/module_entry.cpp has it; a host that refuses the probe refuses the product too.
ULONG LibVersion() {
    return 0x52083400;
}

int AnswerOne() {
    return 1;
}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        g_module = instance;
    }
    return TRUE;
}

} // extern "C"
