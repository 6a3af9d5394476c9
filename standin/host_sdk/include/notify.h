// Notifications from the host.
#pragma once

#include "maxheap.h"

#define NOTIFY_FILE_PRE_SAVE 0x0000000D
#define NOTIFY_FILE_POST_SAVE 0x0000000E
#define NOTIFY_SYSTEM_STARTUP 0x00000050

struct NotifyInfo {
    int intcode;
    void* callParam;
};

typedef void (*NOTIFYPROC)(void* param, NotifyInfo* info);

CoreExport int RegisterNotification(NOTIFYPROC proc, void* param, int code);
CoreExport int UnRegisterNotification(NOTIFYPROC proc, void* param, int code);
