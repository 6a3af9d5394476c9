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

bool replace_entry(IMAGE_THUNK_DATA* entry, const ImportPatch& patch) {
    DWORD before = 0;
    if (::VirtualProtect(&entry->u1.Function, sizeof entry->u1.Function, PAGE_READWRITE, &before) == FALSE) {
        return false;
    }
    *patch.original = reinterpret_cast<AnyFunction>(entry->u1.Function);
    entry->u1.Function = reinterpret_cast<ULONGLONG>(patch.replacement);
    ::VirtualProtect(&entry->u1.Function, sizeof entry->u1.Function, before, &before);
    return true;
}

bool replace_in(std::uint8_t* base, const IMAGE_IMPORT_DESCRIPTOR& library, const ImportPatch& patch) {
    const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library.OriginalFirstThunk);
    auto* entries = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library.FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++entries) {
        if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) {
            continue;
        }
        const auto* named = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
        if (std::strcmp(reinterpret_cast<const char*>(named->Name), patch.name) == 0) {
            return replace_entry(entries, patch);
        }
    }
    return false;
}

} // namespace

bool replace_import(HMODULE module, const ImportPatch& patch) {
    auto* base = reinterpret_cast<std::uint8_t*>(module);
    const IMAGE_DATA_DIRECTORY* directory = import_directory(base);
    if (directory->VirtualAddress == 0) {
        return false;
    }
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory->VirtualAddress);
    for (; library->Name != 0; ++library) {
        if (library->OriginalFirstThunk != 0 && replace_in(base, *library, patch)) {
            return true;
        }
    }
    return false;
}

} // namespace stage
