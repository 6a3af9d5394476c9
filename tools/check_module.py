#!/usr/bin/env python3
"""check_module.py [--host] MODULE: reads the finished module as the linker left it: what it exports and imports, how it
may be loaded, and which resources identify it. --host: the module is built against the SDK of 3ds Max and is to be
released; without it, it is the cross-built one, which imports the stand-in. One line for each check; the exit status is
1 when one has failed."""

import re
import sys

from check_resources import resource_checks
from module_image import RELOCATION, Image, NoModule
from resource_texts import ROOT

EXPORTS = {"LibClassDesc", "LibDescription", "LibInitialize", "LibNumberClasses", "LibShutdown", "LibVersion"}
SAME_FUNCTION = ("LibNumberClasses", "LibInitialize", "LibShutdown")
HOST_VERSION = 0x52083400
FLAGS = {"HIGH_ENTROPY_VA": 0x20, "DYNAMIC_BASE": 0x40, "NX_COMPAT": 0x100}
STANDIN = "host_standin.dll"
WINDOWS = {"advapi32.dll", "comctl32.dll", "gdi32.dll", "kernel32.dll", "ole32.dll", "shell32.dll", "shlwapi.dll",
           "user32.dll", "winhttp.dll"}
# The C++ runtime of the toolset v140, as 3ds Max 2019 brings it: neither the debug runtime nor vcruntime140_1.dll, which
# came with a later toolset.
RUNTIME = re.compile(r"msvcp140\.dll|vcruntime140\.dll|ucrtbase\.dll|api-ms-win-crt-[a-z0-9-]+\.dll")
CROSS_RUNTIME = {"msvcrt.dll"}


def host_libraries() -> set:
    """The libraries of the SDK that the build links (cmake/host_sdk.cmake), without their endings: some of the host's
    own libraries are plugins themselves."""
    listed = re.search(r"foreach\(library ([a-z0-9 ]+)\)", (ROOT / "cmake/host_sdk.cmake").read_text(encoding="utf-8"))
    return set(listed.group(1).split())


def is_host_library(name: str) -> bool:
    stem, _, ending = name.rpartition(".")
    return stem in host_libraries() and ending in ("dll", "gup", "dlx")


def import_problem(image: Image, for_host: bool) -> str:
    imports = image.imports()
    if for_host:
        more = [name for name in imports
                if not (name in WINDOWS or RUNTIME.fullmatch(name) or is_host_library(name))]
        missing = not any(is_host_library(name) for name in imports)
    else:
        more = [name for name in imports if name not in WINDOWS | CROSS_RUNTIME | {STANDIN}]
        missing = STANDIN not in imports
    problems = [f"not wanted: {' '.join(more)}"] if more else []
    if STANDIN in more:
        problems.append("this module is built against the stand-in, and 3ds Max cannot load it")
    if missing:
        problems.append("nothing from the host")
    return "; ".join(problems)


def export_problem(image: Image) -> str:
    found = set(image.exports())
    problems = []
    if EXPORTS - found:
        problems.append(f"missing: {' '.join(sorted(EXPORTS - found))}")
    if found - EXPORTS:
        problems.append(f"not wanted: {' '.join(sorted(found - EXPORTS))}")
    return "; ".join(problems)


def version_problem(image: Image) -> str:
    address = image.exports().get("LibVersion")
    number = image.returned_number(address) if address else None
    if number is None:
        return "its code is more than the return of a number"
    return "" if number == HOST_VERSION else f"it returns {number:#010x}, not {HOST_VERSION:#010x}"


def checks(image: Image, for_host: bool):
    """(name, problem); an empty problem is a check that has passed."""
    yield f"exactly the {len(EXPORTS)} exports of a plugin", export_problem(image)
    runtime = "the runtime of its toolset" if for_host else "the compiler's runtime"
    yield f"imports only from the host, from Windows and {runtime}", import_problem(image, for_host)
    yield "LibVersion is that of 3ds Max 2019", version_problem(image)
    for name, bit in FLAGS.items():
        yield f"flag {name}", "" if image.flags & bit else "not set"
    # Without relocations the module lies where it was linked to, whatever the flags say.
    yield "base relocations", "" if image.directories[RELOCATION][1] else "none"
    yield from resource_checks(image)


def main() -> int:
    arguments = sys.argv[1:]
    for_host = "--host" in arguments
    try:
        results = list(checks(Image(arguments[-1]), for_host))
    except (NoModule, OSError, IndexError) as problem:
        print(f"FAILED: a 64-bit module of Windows: {problem}")
        return 1
    for name, problem in results:
        print(f"FAILED: {name}: {problem}" if problem else f"ok: {name}")
    return 1 if any(problem for _, problem in results) else 0


if __name__ == "__main__":
    sys.exit(main())
