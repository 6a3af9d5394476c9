#include "standin/stage/import_table.h"

#include <cstdint>
#include <cstring>

namespace stage {

namespace {

const IMAGE_DATA_DIRECTORY* import_directory(const std::uint8_t* base) {
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    return &headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
}

void replace_entry(IMAGE_THUNK_DATA* entry, AnyFunction replacement) {
    DWORD before = 0;
    if (::VirtualProtect(&entry->u1.Function, sizeof entry->u1.Function, PAGE_READWRITE, &before) != FALSE) {
        entry->u1.Function = reinterpret_cast<ULONGLONG>(replacement);
        ::VirtualProtect(&entry->u1.Function, sizeof entry->u1.Function, before, &before);
    }
}

} // namespace

void visit_imports(HMODULE module, const std::function<AnyFunction(const char*, AnyFunction)>& visit) {
    auto* base = reinterpret_cast<std::uint8_t*>(module);
    const DWORD directory = import_directory(base)->VirtualAddress;
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory);
    for (; directory != 0 && library->Name != 0; ++library) {
        const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* entries = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
        for (; library->OriginalFirstThunk != 0 && names->u1.AddressOfData != 0; ++names, ++entries) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) {
                continue;
            }
            const auto* named = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            const AnyFunction replacement = visit(reinterpret_cast<const char*>(named->Name),
                                                  reinterpret_cast<AnyFunction>(entries->u1.Function));
            if (replacement != nullptr) {
                replace_entry(entries, replacement);
            }
        }
    }
}

bool replace_import(HMODULE module, const ImportPatch& patch) {
    bool found = false;
    visit_imports(module, [&](const char* name, AnyFunction imported) -> AnyFunction {
        if (std::strcmp(name, patch.name) != 0) {
            return nullptr;
        }
        *patch.original = imported;
        found = true;
        return patch.replacement;
    });
    return found;
}

} // namespace stage
