#!/usr/bin/env python3
"""make_manifest.py LAYOUT: lists every file that a release lays below C:\\ProgramData, with its SHA-256 and its size, in
the file that the diagnostics read. The list does not name itself."""

import hashlib
import pathlib
import sys

MANIFEST = "Autodesk/ApplicationPlugins/TarvoRendering/Diagnostics/manifest.txt"


def lines(layout: pathlib.Path) -> list:
    """"SHA256 SIZE PATH", sorted by path."""
    result = []
    for path in sorted(path for path in layout.rglob("*") if path.is_file()):
        name, content = path.relative_to(layout).as_posix(), path.read_bytes()
        if name != MANIFEST:
            result.append(f"{hashlib.sha256(content).hexdigest()} {len(content)} {name}\r\n")
    return result


def main() -> None:
    layout = pathlib.Path(sys.argv[1])
    (layout / MANIFEST).write_bytes("".join(lines(layout)).encode("utf-8"))


if __name__ == "__main__":
    main()
