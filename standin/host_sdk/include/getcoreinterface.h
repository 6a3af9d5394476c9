// The way to the core interface.
#pragma once

#include "standin_export.h"

class Interface;

CoreExport Interface* GetCOREInterface();
