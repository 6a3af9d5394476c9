#!/usr/bin/env python3
"""clang_checks.py STAMPS BUILD DEPS: reads every source with clang, twice as a second compiler and once with clang-tidy.

A file that passed is not read again while it, the project's headers that it includes, the rules and the tools stay the
same: STAMPS keeps an empty file for each content that passed. BUILD holds compile_commands.json of the cross build, DEPS
its libraries.
"""

import concurrent.futures
import dataclasses
import functools
import hashlib
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TRIPLE = "x86_64-w64-mingw32"
INCLUDE = re.compile(rb'^[ \t]*#[ \t]*include[ \t]*[<"]([^>"]+)[>"]', re.MULTILINE)
TIDIED = ["common", "host", "scene", "submit", "dialog", "plugin", "probe", "standin", "packaging"]
# Where an include of the project's own may be found, besides the folder of the file that includes it.
SEARCHED = ["", "standin/host_sdk/include"]

# Strictly C++14 with all pedantic warnings, so that nothing of the first compiler's own is used.
STRICT = ["-fsyntax-only", "-std=c++14", "-fms-extensions", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-Wshadow",
          "-Wnon-virtual-dtor", "-Woverloaded-virtual", "-Wundef", "-DUNICODE", "-D_UNICODE", "-DWIN32_LEAN_AND_MEAN",
          "-DNOMINMAX", "-D_WIN32_WINNT=0x0601", "-DNTDDI_VERSION=0x06010000"]
# The rules of the host's compiler for names and templates, and the branches for it (_MSC_VER 1900). The system headers
# here are those of GCC: without its version number and __STRICT_ANSI__ they have no va_list and refuse the language
# level. With them clang still knows GCC's keywords, which the first pass rejects. The headers and the library of the
# host's compiler are not tried by this.
LIKE_THE_HOSTS = ["-fms-compatibility", "-fms-compatibility-version=19.0", "-fdelayed-template-parsing",
                  "-fgnuc-version=12.2.0", "-D__STRICT_ANSI__=1"]


@dataclasses.dataclass(frozen=True)
class Task:
    name: str
    source: str
    command: tuple
    # clang-tidy prints the number of suppressed warnings there, and nothing else.
    errors_wanted: bool
    # The key of the content that passes or fails.
    key: str


def output_of(*command: str) -> str:
    return subprocess.run(command, cwd=ROOT, check=True, capture_output=True, text=True).stdout


@functools.lru_cache(maxsize=None)
def content(name: str) -> bytes:
    return (ROOT / name).read_bytes()


@functools.lru_cache(maxsize=None)
def included(name: str) -> tuple:
    """The project's files that the file includes itself; in whatever branch, for conditions are not looked at."""
    found = []
    for include in INCLUDE.findall(content(name)):
        for folder in [os.path.dirname(name), *SEARCHED]:
            path = os.path.normpath(os.path.join(folder, include.decode("utf-8")))
            if not path.startswith("..") and (ROOT / path).is_file():
                found.append(path)
    return tuple(found)


def everything_read(name: str) -> list[str]:
    """The file and all of the project's files that it includes, directly or not, in a fixed order."""
    seen, waiting = {name}, [name]
    while waiting:
        for path in included(waiting.pop()):
            if path not in seen:
                seen.add(path)
                waiting.append(path)
    return sorted(seen)


def key_of(name: str, command: list[str], rules: bytes) -> str:
    digest = hashlib.sha256("\0".join(command).replace(str(ROOT), ".").encode() + b"\0" + rules)
    for path in everything_read(name):
        digest.update(path.encode() + b"\0" + hashlib.sha256(content(path)).digest())
    return digest.hexdigest()[:40]


def system_includes(deps: pathlib.Path) -> list[str]:
    gcc = pathlib.Path(output_of(f"{TRIPLE}-g++-posix", "-print-file-name=include").strip()).parent
    folders = [deps / "mingw/include", gcc / "include/c++", gcc / "include/c++" / TRIPLE, f"/usr/{TRIPLE}/include"]
    return [f"-isystem{folder}" for folder in folders]


def installed_tools() -> bytes:
    """Other versions of the tools or of the system's headers find other things."""
    packages = output_of("dpkg-query", "-W", "clang-14", "clang-tidy-14", "g++-mingw-w64-x86-64-posix",
                         "mingw-w64-x86-64-dev")
    return packages.encode()


def product_sources() -> list[str]:
    lists = "".join((ROOT / name).read_text() for name in ("cmake/sources.cmake", "cmake/probe.cmake"))
    names = re.findall(r"^ +([a-z_0-9/]+\.cpp)", lists, re.MULTILINE)
    if not names:
        sys.exit("error: cmake/sources.cmake names no sources; fix the pattern in tools/clang_checks.py")
    return names


def second_compiler(deps: pathlib.Path, tools: bytes) -> list[Task]:
    base = ["clang++", f"--target={TRIPLE}", *STRICT, "-I.", "-isystemstandin/host_sdk/include", *system_includes(deps)]
    tasks = []
    for name, extra in (("clang", []), ("clang as the host's compiler", LIKE_THE_HOSTS)):
        for source in product_sources():
            command = [*base, *extra, source]
            tasks.append(Task(name, source, tuple(command), True, key_of(source, command, tools)))
    return tasks


def tidied(build: pathlib.Path, deps: pathlib.Path, tools: bytes) -> list[Task]:
    listed = output_of("git", "ls-files", "--cached", "--others", "--exclude-standard", "*.cpp").splitlines()
    command = ["clang-tidy", "--quiet", "-p", str(build), f"--extra-arg-before=--target={TRIPLE}",
               "--extra-arg=-fms-extensions", "--extra-arg=-Wno-unknown-warning-option",
               *(f"--extra-arg={argument}" for argument in system_includes(deps))]
    rules = tools + content(".clang-tidy") + content("cmake/warnings.cmake")
    return [Task("clang-tidy", source, (*command, source), False, key_of(source, command, rules))
            for source in listed if source.split("/")[0] in TIDIED and (ROOT / source).is_file()]


def run(task: Task, stamps: pathlib.Path) -> str:
    """What the tool said; empty when the file passed."""
    done = subprocess.run(task.command, cwd=ROOT, stdout=subprocess.PIPE, text=True, errors="replace",
                          stderr=subprocess.STDOUT if task.errors_wanted else subprocess.DEVNULL, check=False)
    if done.returncode == 0:
        (stamps / task.key).touch()
        return ""
    return f"{task.source}: {task.name} exits with {done.returncode}\n{done.stdout}"


def main() -> int:
    stamps, build, deps = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    stamps.mkdir(parents=True, exist_ok=True)
    tools = installed_tools()
    tasks = second_compiler(deps, tools) + tidied(build, deps, tools)
    todo = [task for task in tasks if not (stamps / task.key).exists()]
    # The longest source first, so that no processor is left with it at the end.
    todo.sort(key=lambda task: (task.name != "clang-tidy", -len(content(task.source))))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        problems = [problem for problem in pool.map(lambda task: run(task, stamps), todo) if problem]
    for problem in problems:
        print(problem)
    for name in dict.fromkeys(task.name for task in tasks):
        count = sum(task.name == name for task in tasks)
        print(f"{name}: {count} files, {sum(task.name == name for task in todo)} of them read in this run")
    if problems:
        print(f"error: {len(problems)} files did not pass. Fix them; a rule that does not fit gets its reason in "
              ".clang-tidy.", file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
