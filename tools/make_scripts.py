#!/usr/bin/env python3
"""Puts the three virus checks together from scripts/virus_checks.

The host loads each check by itself, so what they have in common stands in each of them. A line "-- include NAME" stands
for the content of NAME.ms in that folder. Everything in scripts/TarvoAntivirus*.ms is written by this tool; with --check
it only says whether they are what it would write.
"""

import argparse
import pathlib
import sys

SCRIPTS = pathlib.Path(__file__).resolve().parent.parent / "scripts"
PARTS = SCRIPTS / "virus_checks"
CHECKS = {"adsl": "TarvoAntivirusAdsl_UTF8.ms", "alc": "TarvoAntivirusAlc_UTF8.ms", "crp": "TarvoAntivirusCrp_UTF8.ms"}
INCLUDE = "-- include "


def expanded(name):
    """The lines of a part, with the parts that it includes."""
    lines = []
    for line in (PARTS / f"{name}.ms").read_text(encoding="ascii").splitlines():
        lines += expanded(line[len(INCLUDE):]) if line.startswith(INCLUDE) else [line]
    return lines


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true", help="write nothing; fail when a script is out of date")
    only_look = parser.parse_args().check
    stale = []
    for name, file_name in CHECKS.items():
        script = SCRIPTS / file_name
        text = "\n".join(expanded(name)) + "\n"
        if not script.is_file() or script.read_text(encoding="ascii") != text:
            stale.append(file_name)
            if not only_look:
                script.write_bytes(text.encode("ascii"))
    if only_look and stale:
        print(f"Out of date: {', '.join(stale)}. Change the parts in scripts/virus_checks and run tools/make_scripts.py.",
              file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
