"""The checks of a module's resources: the version 1.3.5, the manifest, both dialogs and every text in both languages, as
they stand in resources/."""

import struct

from module_image import RESOURCE, Image
from resource_texts import text_numbers, texts

DIALOG, STRING, VERSION, MANIFEST = 5, 6, 16, 24
LANGUAGES = {0x0409: "en", 0x0804: "zh"}
FIXED_INFO_MARK = 0xFEEF04BD
WANTED_VERSION = (1, 3, 5, 0)
TEXTS_IN_A_BLOCK = 16


class Resources:
    """The resource section of a module: {(type, name, language): bytes}."""

    def __init__(self, image: Image):
        self.image = image
        address, _ = image.directories[RESOURCE]
        self.start = image.place(address) if address else None
        self.found = dict(self.leaves(0, ())) if address else {}

    def leaves(self, table: int, path: tuple):
        start = self.start + table
        names, numbers = struct.unpack_from("<HH", self.image.data, start + 12)
        for entry in range(names + numbers):
            name, target = struct.unpack_from("<II", self.image.data, start + 16 + 8 * entry)
            if target & 0x80000000:
                yield from self.leaves(target & 0x7FFFFFFF, path + (name,))
            else:
                address, size = struct.unpack_from("<II", self.image.data, self.start + target)
                place = self.image.place(address)
                yield path + (name,), self.image.data[place:place + size]

    def of(self, kind: int, name: int) -> dict:
        return {key[2]: data for key, data in self.found.items() if key[:2] == (kind, name)}

    def texts(self, language: int) -> dict:
        """{number: text}, the empty ones left out."""
        found = {}
        for (kind, block, of_language), data in self.found.items():
            if kind != STRING or of_language != language:
                continue
            place = 0
            for number in range(TEXTS_IN_A_BLOCK):
                length, = struct.unpack_from("<H", data, place)
                if length:
                    text = data[place + 2:place + 2 + 2 * length].decode("utf-16-le")
                    found[(block - 1) * TEXTS_IN_A_BLOCK + number] = text.rstrip("\0")
                place += 2 + 2 * length
        return found


def fixed_version(data: bytes):
    mark = data.find(struct.pack("<I", FIXED_INFO_MARK))
    if mark < 0:
        return None
    high, low = struct.unpack_from("<II", data, mark + 8)
    return high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF


def text_problem(found: dict, language: str) -> str:
    numbers = text_numbers()
    wanted = {numbers[name]: text for name, text in texts(language).items() if text}
    differing = sorted(number for number in set(wanted) | set(found) if wanted.get(number) != found.get(number))
    return f"not as in resources/: {' '.join(map(str, differing))}" if differing else ""


def resource_checks(image: Image):
    """(name, problem); an empty problem is a check that has passed."""
    resources = Resources(image)
    versions = [fixed_version(data) for data in resources.of(VERSION, 1).values()]
    yield "version 1.3.5", "" if versions == [WANTED_VERSION] else f"found {versions}"
    manifests = list(resources.of(MANIFEST, 2).values())
    fine = len(manifests) == 1 and b"Microsoft.Windows.Common-Controls" in manifests[0]
    yield "manifest as resource 2", "" if fine else f"found {len(manifests)}, or it asks for no common controls"
    for number, language in LANGUAGES.items():
        yield f"every text in '{language}'", text_problem(resources.texts(number), language)
    for dialog in (102, 103):
        found = set(resources.of(DIALOG, dialog))
        yield f"dialog {dialog} in English and Chinese", "" if found == set(LANGUAGES) else f"found {sorted(found)}"
