// The umbrella header that plug-ins begin with.
#pragma once

#include <windows.h>

#include "maxapi.h"
#include "maxversion.h"
#include "plugapi.h"
#include "strclass.h"
