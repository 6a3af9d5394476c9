// The host has its control classes before any plug-in is loaded, so they come and go with this library.
#include "spinner.h"

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        host_sdk::register_control_classes(instance);
    } else if (reason == DLL_PROCESS_DETACH) {
        host_sdk::unregister_control_classes(instance);
    }
    return TRUE;
}
