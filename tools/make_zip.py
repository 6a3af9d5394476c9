#!/usr/bin/env python3
"""make_zip.py ZIP FOLDER: packs a folder so that the same files always give the same bytes: names in order, one time for
all (SOURCE_DATE_EPOCH), the same rights."""

import os
import pathlib
import sys
import time
import zipfile


def main() -> int:
    target, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    moment = time.gmtime(int(os.environ["SOURCE_DATE_EPOCH"]))[:6]
    files = sorted((path for path in folder.rglob("*") if path.is_file()),
                   key=lambda path: path.relative_to(folder).as_posix())
    with zipfile.ZipFile(target, "w") as archive:
        for path in files:
            entry = zipfile.ZipInfo(path.relative_to(folder).as_posix(), moment)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 0  # Windows
            archive.writestr(entry, path.read_bytes(), compresslevel=9)
    return 0


if __name__ == "__main__":
    sys.exit(main())
