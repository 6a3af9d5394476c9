// Import and export of the stand-in's DLL. The host spreads these names over several libraries; here all of
// them come from one.
#pragma once

#ifdef HOST_STANDIN_BUILD
#define StandinExport __declspec(dllexport)
#else
#define StandinExport __declspec(dllimport)
#endif

#define CoreExport StandinExport
#define UtilExport StandinExport
#define GUPExport StandinExport
#define PB2Export StandinExport
#define ScripterExport StandinExport
#define MENUS_API StandinExport
