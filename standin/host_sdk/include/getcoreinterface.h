// The way to the core interface.
#pragma once

#include "maxheap.h"

class Interface;

CoreExport Interface* GetCOREInterface();
