// Takes the place of one imported function of the test program for as long as the object lives: the way to
// see a system call fail that does not fail on request, and to count what is opened and closed. Needs
// windows.h.
#pragma once

#include <windows.h>

#include <cstring>

namespace support {

class PatchedImport {
public:
    // `installed()` is false when the program does not import the function from that library.
    PatchedImport(const char* library, const char* function, void* replacement)
        : slot_(find_slot(library, function)) {
        if (slot_ != nullptr) {
            original_ = exchange(replacement);
        }
    }
    ~PatchedImport() {
        if (slot_ != nullptr) {
            exchange(original_);
        }
    }
    PatchedImport(const PatchedImport&) = delete;
    PatchedImport& operator=(const PatchedImport&) = delete;

    bool installed() const { return slot_ != nullptr; }

private:
    static void** find_slot(const char* library, const char* function) {
        char* base = reinterpret_cast<char*>(::GetModuleHandleW(nullptr));
        const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
        const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
        const DWORD imports =
            headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
        const auto* descriptor = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports);
        for (; descriptor->Name != 0; ++descriptor) {
            if (::lstrcmpiA(base + descriptor->Name, library) == 0) {
                return find_in_library(base, *descriptor, function);
            }
        }
        return nullptr;
    }

    static void** find_in_library(char* base, const IMAGE_IMPORT_DESCRIPTOR& descriptor,
                                  const char* function) {
        const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + descriptor.OriginalFirstThunk);
        void** slots = reinterpret_cast<void**>(base + descriptor.FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) {
                continue;
            }
            const auto* entry = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(entry->Name), function) == 0) {
                return slots;
            }
        }
        return nullptr;
    }

    void* exchange(void* replacement) {
        DWORD protection = 0;
        ::VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &protection);
        void* previous = *slot_;
        *slot_ = replacement;
        ::VirtualProtect(slot_, sizeof *slot_, protection, &protection);
        return previous;
    }

    void** slot_;
    void* original_ = nullptr;
};

} // namespace support
