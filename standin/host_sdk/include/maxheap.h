// The host's heap, the roots of its interface classes, and the import and export of the stand-in's DLL. The
// host has several libraries; here one DLL exports all of them.
#pragma once

#include <cstddef>
#include <new>

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

// The base of every class whose objects cross between host and plug-in.
class UtilExport MaxHeapOperators {
public:
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t size, const std::nothrow_t&) noexcept;
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void* operator new[](std::size_t size);
    static void operator delete(void* block) noexcept;
    static void operator delete(void* block, const std::nothrow_t&) noexcept;
    static void operator delete(void*, void*) noexcept {}
    static void operator delete[](void* block) noexcept;
};

class UtilExport InterfaceServer : public MaxHeapOperators {
public:
    InterfaceServer();
    virtual ~InterfaceServer();
};

class UtilExport BaseInterfaceServer : public InterfaceServer {
public:
    BaseInterfaceServer();
    ~BaseInterfaceServer() override;
};
