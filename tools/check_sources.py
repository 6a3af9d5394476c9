#!/usr/bin/env python3
"""Checks that no compiler makes: includes run down the layers, only host/, plugin/ and probe/ see the host's headers,
portable files do not include windows.h, files are short, a namespace is its folder, and the names of test files and
suites are unique."""

import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# A file includes from its own layer and those before it.
LAYERS = ["common", "host", "scene", "submit", "dialog", "plugin"]
# The one upward include: the check reads the paths of its scripts from the record.
ALLOWED_UPWARD = {("scene/scene_scripts.h", "submit/plugin_config.h")}

HOST_HEADERS = {
    "actiontable.h", "custcont.h", "getcoreinterface.h", "guplib.h", "ifnpub.h", "imenuman.h", "imenus.h",
    "iparamb2.h", "max.h", "maxapi.h", "maxheap.h", "maxscript/maxscript.h", "notify.h", "plugapi.h", "strclass.h",
}
FENCES = ("host/begin_host_headers.h", "host/end_host_headers.h")
MAX_LINES = 400
INCLUDE = re.compile(r'^\s*#\s*include\s+[<"]([^>"]+)[>"]', re.MULTILINE)
SOURCE_ENDINGS = {".cpp", ".h"}
# The folder of a file, and the namespace of what the file declares.
NAMESPACE_FOLDER = re.compile(r"^(?:standin|packaging)/([a-z_]+)/")
NAMESPACE = re.compile(r"^namespace (\w+) \{", re.MULTILINE)
USING = re.compile(r"^ *using [\w:]+::(\w+);", re.MULTILINE)
SUITE = re.compile(r"^TEST(?:_F|_P)?\((\w+),", re.MULTILINE)


def tracked_files() -> list[pathlib.Path]:
    listing = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                             capture_output=True, text=True).stdout
    return [ROOT / line for line in listing.splitlines() if (ROOT / line).is_file()]


def check_layer(name: str, includes: list[str]) -> list[str]:
    layer = name.split("/")[0]
    if layer == "probe":
        return [f"{name}: the probe includes {include}; it asks through the adapter alone" for include in includes
                if include.split("/")[0] in LAYERS and not include.startswith(("common/", "host/"))]
    if layer not in LAYERS:
        return []
    problems = []
    for include in includes:
        other = include.split("/")[0]
        if other in LAYERS and LAYERS.index(other) > LAYERS.index(layer) and (name, include) not in ALLOWED_UPWARD:
            problems.append(f"{name}: includes upwards: {include}")
        if include.startswith(("standin/", "tests/")):
            problems.append(f"{name}: the product includes {include}")
    return problems


def check_host_headers(name: str, text: str, includes: list[str]) -> list[str]:
    used = [include for include in includes if include.lower() in HOST_HEADERS]
    # The stand-ins play the host, and the tests of plugin and module drive it.
    if not used or name.startswith(("standin/", "tests/standin/host_sdk/", "tests/product/host/",
                                    "tests/product/plugin/", "tests/product/module/")):
        return []
    if not name.startswith(("host/", "plugin/", "probe/")):
        return [f"{name}: includes the host's {used[0]}, which only host/, plugin/ and probe/ may"]
    begin, end = (text.find(f'#include "{fence}"') for fence in FENCES)
    first = min(text.find(f"<{include}>") for include in used)
    last = max(text.find(f"<{include}>") for include in used)
    if begin < 0 or end < 0 or not begin < first <= last < end:
        return [f"{name}: the host's headers must stand between the two fence headers, in angle brackets"]
    return []


def check_namespace(name: str, text: str) -> list[str]:
    folder = NAMESPACE_FOLDER.match(name)
    if not folder:
        return []
    return [f"{name}: namespace {found}; the folder's is {folder[1]}" for found in NAMESPACE.findall(text)
            if found != folder[1]]


def check_using(name: str, text: str) -> list[str]:
    """A using-declaration that its file does not need; clang-tidy reads several files at once and cannot tell."""
    if not name.endswith(".cpp"):
        return []
    return [f"{name}: nothing uses the name {used} of its using-declaration" for used in USING.findall(text)
            if len(re.findall(rf"\b{used}\b", text)) < 2]


def check_unique(files: list[pathlib.Path]) -> list[str]:
    """No two test files have one name, and no two files share a suite."""
    first, problems = {}, []
    for path in files:
        name = path.relative_to(ROOT).as_posix()
        if not name.startswith("tests/"):
            continue
        suites = {f"suite {suite}" for suite in SUITE.findall(path.read_text(encoding="utf-8"))}
        for key in sorted(suites | {f"file name {path.name}"}):
            if first.setdefault(key, name) != name:
                problems.append(f"{name}: {key} is also in {first[key]}")
    return problems


def portable_sources() -> set[str]:
    text = (ROOT / "cmake/sources.cmake").read_text(encoding="utf-8")
    return {line for block in re.findall(r"set\(TARVO_\w+_PORTABLE\s+([^)]*)\)", text) for line in block.split()}


def check_file(path: pathlib.Path, portable: set[str]) -> list[str]:
    name = path.relative_to(ROOT).as_posix()
    text = path.read_text(encoding="utf-8")
    includes = INCLUDE.findall(text)
    problems = check_layer(name, includes) + check_host_headers(name, text, includes) + check_namespace(name, text)
    problems += check_using(name, text)
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
    problems += check_unique(files)
    for problem in problems:
        print(problem, file=sys.stderr)
    print(f"{len(files)} files checked for layers, namespaces and length: {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
