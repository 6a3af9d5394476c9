#!/usr/bin/env python3
"""module_image.py [--imports] MODULE: what a 64-bit Windows module says about itself, read from the file alone: imports,
exports, flags, resources. --imports prints the libraries that it imports, one a line, in small letters."""

import struct
import sys

X64, DLL = 0x8664, 0x2000
EXPORT, IMPORT, RESOURCE, RELOCATION, DELAY_IMPORT = 0, 1, 2, 5, 13
NUL = b"\0"


class NoModule(Exception):
    """The file is no 64-bit Windows library."""


class Image:
    def __init__(self, path):
        with open(path, "rb") as file:
            self.data = file.read()
        try:
            self.read_headers()
        except struct.error as error:
            raise NoModule("it is cut off") from error

    def read_headers(self) -> None:
        if self.data[:2] != b"MZ":
            raise NoModule("it does not begin like a program")
        header = self.number(0x3C)
        if self.data[header:header + 4] != b"PE\0\0":
            raise NoModule("it has no header of a Windows program")
        machine, sections = struct.unpack_from("<HH", self.data, header + 4)
        optional_size, characteristics = struct.unpack_from("<HH", self.data, header + 20)
        if machine != X64 or not characteristics & DLL:
            raise NoModule("it is no 64-bit library")
        optional = header + 24
        self.flags, = struct.unpack_from("<H", self.data, optional + 70)
        self.directories = [struct.unpack_from("<II", self.data, optional + 112 + 8 * number) for number in range(16)]
        # Virtual size, virtual address, size in the file, place in the file.
        self.sections = [struct.unpack_from("<IIII", self.data, optional + optional_size + 40 * number + 8)
                         for number in range(sections)]
        for _, _, size, place in self.sections:
            if place + size > len(self.data):
                raise NoModule("it is cut off")

    def number(self, place: int) -> int:
        return struct.unpack_from("<I", self.data, place)[0]

    def place(self, address: int) -> int:
        """Where in the file lies what is loaded at `address`."""
        for _, start, size, place in self.sections:
            if start <= address < start + size:
                return place + address - start
        raise NoModule(f"address {address:#x} lies in no section")

    def text(self, address: int) -> str:
        start = self.place(address)
        return self.data[start:self.data.index(NUL, start)].decode("ascii")

    def imports(self) -> list:
        """The libraries, in small letters, those that are loaded late included."""
        found = []
        for directory, size, name in ((IMPORT, 20, 12), (DELAY_IMPORT, 32, 4)):
            address, _ = self.directories[directory]
            place = self.place(address) if address else None
            while place is not None and self.number(place + name) != 0:
                found.append(self.text(self.number(place + name)).lower())
                place += size
        return sorted(set(found))

    def imported_functions(self) -> list:
        """The names of the functions that it imports, those of every library in one list."""
        found, library = set(), self.place(self.directories[IMPORT][0])
        while self.number(library + 12) != 0:
            place = self.place(self.number(library))
            while (entry := struct.unpack_from("<Q", self.data, place)[0]) != 0:
                if not entry >> 63:
                    found.add(self.text(entry + 2))
                place += 8
            library += 20
        return sorted(found)

    def exports(self) -> dict:
        """Name → address."""
        address, _ = self.directories[EXPORT]
        if not address:
            return {}
        place = self.place(address)
        count, functions, names, ordinals = (self.number(place + offset) for offset in (24, 28, 32, 36))
        found = {}
        for number in range(count):
            ordinal, = struct.unpack_from("<H", self.data, self.place(ordinals) + 2 * number)
            name = self.text(self.number(self.place(names) + 4 * number))
            found[name] = self.number(self.place(functions) + 4 * ordinal)
        return found

    def returned_number(self, address: int):
        """What a function returns that does nothing but return a number; None when it does more."""
        for _ in range(4):
            place = self.place(address)
            code = self.data[place:place + 16]
            if code[:4] == b"\xf3\x0f\x1e\xfa":  # endbr64
                address += 4
            elif code[:1] == b"\xe9":  # jmp, to a function that two names share or that was linked later
                address += 5 + struct.unpack("<i", code[1:5])[0]
            elif code[:1] == b"\xb8" and code[5:6] == b"\xc3":  # mov eax, number; ret
                return struct.unpack("<I", code[1:5])[0]
            else:
                return None
        return None


def main() -> int:
    try:
        for name in Image(sys.argv[-1]).imports():
            print(name)
    except (NoModule, OSError) as problem:
        print(f"{sys.argv[-1]}: {problem}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
