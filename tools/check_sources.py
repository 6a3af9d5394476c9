#!/usr/bin/env python3
"""Checks that no compiler makes: includes run down the floors, the host's headers stay behind the seam, files without
Windows stay so, files stay short, and texts that belong to no product file."""

import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# A file includes from its own floor and those before it.
FLOORS = ["common", "host", "scene", "submit", "dialog", "plugin"]
# The one look upwards: a plain record without behaviour.
ALLOWED_UPWARD = {("scene/virus_check.h", "submit/plugin_config.h")}

HOST_HEADERS = {
    "actiontable.h", "custcont.h", "getcoreinterface.h", "guplib.h", "ifnpub.h", "imenuman.h", "imenus.h",
    "iparamb2.h", "max.h", "maxapi.h", "maxheap.h", "maxscript/maxscript.h", "notify.h", "plugapi.h", "strclass.h",
}
FENCES = ("host/begin_host_headers.h", "host/end_host_headers.h")
MAX_LINES = 400
INCLUDE = re.compile(r'^\s*#\s*include\s+[<"]([^>"]+)[>"]', re.MULTILINE)
SOURCE_ENDINGS = {".cpp", ".h"}


def tracked_files() -> list[pathlib.Path]:
    listing = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                             capture_output=True, text=True).stdout
    return [ROOT / line for line in listing.splitlines() if (ROOT / line).is_file()]


def check_floor(name: str, includes: list[str]) -> list[str]:
    floor = name.split("/")[0]
    if floor == "probe":
        return [f"{name}: the probe includes {include}; it asks through the adapter alone" for include in includes
                if include.split("/")[0] in FLOORS and not include.startswith(("common/", "host/"))]
    if floor not in FLOORS:
        return []
    problems = []
    for include in includes:
        other = include.split("/")[0]
        if other in FLOORS and FLOORS.index(other) > FLOORS.index(floor) and (name, include) not in ALLOWED_UPWARD:
            problems.append(f"{name}: includes upwards: {include}")
        if include.startswith(("standin/", "tests/")):
            problems.append(f"{name}: the product includes {include}")
    return problems


def check_host_headers(name: str, text: str, includes: list[str]) -> list[str]:
    used = [include for include in includes if include.lower() in HOST_HEADERS]
    # The stand-ins play the host, and the tests of plugin and module drive it.
    if not used or name.startswith(("standin/", "tests/unit_plugin/", "tests/unit_module/")):
        return []
    if not name.startswith(("host/", "plugin/", "probe/")):
        return [f"{name}: includes the host's {used[0]}, which only host/, plugin/ and probe/ may"]
    begin, end = (text.find(f'#include "{fence}"') for fence in FENCES)
    first = min(text.find(f"<{include}>") for include in used)
    last = max(text.find(f"<{include}>") for include in used)
    if begin < 0 or end < 0 or not begin < first <= last < end:
        return [f"{name}: the host's headers must stand between the two fence headers, in angle brackets"]
    return []


def portable_sources() -> set[str]:
    text = (ROOT / "cmake/sources.cmake").read_text(encoding="utf-8")
    return {line for block in re.findall(r"set\(TARVO_\w+_PORTABLE\s+([^)]*)\)", text) for line in block.split()}


def check_file(path: pathlib.Path, portable: set[str]) -> list[str]:
    name = path.relative_to(ROOT).as_posix()
    text = path.read_text(encoding="utf-8")
    includes = INCLUDE.findall(text)
    problems = check_floor(name, includes) + check_host_headers(name, text, includes)
    if name in portable and "windows.h" in includes:
        problems.append(f"{name}: includes windows.h, but is also built without Windows")
    lines = text.count("\n")
    if lines > MAX_LINES:
        problems.append(f"{name}: {lines} lines; more than {MAX_LINES} is more than one thing")
    # The fences are included around every block of host headers.
    if path.suffix == ".h" and name not in FENCES and "#pragma once" not in text:
        problems.append(f"{name}: no #pragma once")
    return problems


def main() -> int:
    portable = portable_sources()
    files = [path for path in tracked_files() if path.suffix in SOURCE_ENDINGS]
    problems = [problem for path in files for problem in check_file(path, portable)]
    for problem in problems:
        print(problem, file=sys.stderr)
    print(f"{len(files)} files checked for floors, seams and length: {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
