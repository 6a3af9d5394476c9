#!/usr/bin/env python3
"""check_resources.py MODULE: the version 1.3.5, the manifest, both dialogs and both languages are in the module's
resources. One line for each check; the exit status is 1 when one has failed."""

import struct
import sys

DIALOG, STRING, VERSION, MANIFEST = 5, 6, 16, 24
ENGLISH, CHINESE = 0x0409, 0x0804
FIXED_INFO_MARK = 0xFEEF04BD
WANTED_VERSION = (1, 3, 5, 0)


class Resources:
    """The resource section of a 64-bit module: {(type, name, language): bytes}."""

    def __init__(self, image: bytes):
        self.image = image
        header = struct.unpack_from("<I", image, 0x3C)[0]
        section_count, = struct.unpack_from("<H", image, header + 6)
        optional_size, = struct.unpack_from("<H", image, header + 20)
        self.address, = struct.unpack_from("<I", image, header + 24 + 112 + 2 * 8)
        sections = (struct.unpack_from("<III", image, header + 24 + optional_size + 40 * number + 12)
                    for number in range(section_count))
        self.offset = next((place for address, size, place in sections
                            if self.address and address <= self.address < address + size), None)
        self.found = dict(self.leaves(0, ())) if self.offset is not None else {}

    def leaves(self, table: int, path: tuple):
        start = self.offset + table
        names, numbers = struct.unpack_from("<HH", self.image, start + 12)
        for entry in range(names + numbers):
            name, target = struct.unpack_from("<II", self.image, start + 16 + 8 * entry)
            if target & 0x80000000:
                yield from self.leaves(target & 0x7FFFFFFF, path + (name,))
            else:
                address, size = struct.unpack_from("<II", self.image, self.offset + target)
                place = self.offset + address - self.address
                yield path + (name,), self.image[place:place + size]

    def of(self, kind: int, name: int) -> dict:
        return {key[2]: data for key, data in self.found.items() if key[:2] == (kind, name)}


def fixed_version(data: bytes):
    mark = data.find(struct.pack("<I", FIXED_INFO_MARK))
    if mark < 0:
        return None
    high, low = struct.unpack_from("<II", data, mark + 8)
    return high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF


def main() -> int:
    with open(sys.argv[1], "rb") as file:
        resources = Resources(file.read())
    versions = [fixed_version(data) for data in resources.of(VERSION, 1).values()]
    manifests = list(resources.of(MANIFEST, 2).values())
    languages = {key[2] for key in resources.found if key[0] == STRING}
    checks = [
        ("version 1.3.5", versions == [WANTED_VERSION], f"found {versions}"),
        ("manifest as resource 2", len(manifests) == 1 and b"Microsoft.Windows.Common-Controls" in manifests[0],
         f"found {len(manifests)}, or one that does not ask for the common controls"),
        ("texts in English and Chinese", languages == {ENGLISH, CHINESE}, f"found {sorted(languages)}"),
    ]
    for dialog in (102, 103):
        found = set(resources.of(DIALOG, dialog))
        checks.append((f"dialog {dialog} in English and Chinese", found == {ENGLISH, CHINESE}, f"found {sorted(found)}"))
    for name, passed, problem in checks:
        print(f"ok: {name}" if passed else f"FAILED: {name}: {problem}")
    return 0 if all(passed for _, passed, _ in checks) else 1


if __name__ == "__main__":
    sys.exit(main())
