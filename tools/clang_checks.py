#!/usr/bin/env python3
"""clang_checks.py STAMPS BUILD DEPS: reads all sources with clang-tidy, which is clang as a second compiler too: its
warnings are errors (clang-diagnostic-* in .clang-tidy). check_windows_target.py reads them with the rules of the host's
compiler.

A file that passed is not read again while it, the project's headers that it includes, the rules and the tools stay the
same: STAMPS keeps an empty file for each content that passed. BUILD holds compile_commands.json of the cross build, DEPS
its libraries. Sources are read in batches (source_batches.py).
"""

import concurrent.futures
import dataclasses
import functools
import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from source_batches import batches, write_batch

ROOT = pathlib.Path(__file__).resolve().parent.parent
TRIPLE = "x86_64-w64-mingw32"
# The static analyzer's limit for one function. With its own (225,000) a few functions take four fifths of the time.
ANALYZER_NODES = 50000
# A directory's own rules add to those of the directories above it.
RULES = [".clang-tidy", "standin/.clang-tidy", "packaging/.clang-tidy"]
INCLUDE = re.compile(rb'^[ \t]*#[ \t]*include[ \t]*[<"]([^>"]+)[>"]', re.MULTILINE)
TIDIED = ["common", "host", "scene", "submit", "dialog", "plugin", "probe", "standin", "packaging"]
# Where an include of the project's own may be found, besides the folder of the file that includes it.
SEARCHED = ["", "standin/host_sdk/include"]


@dataclasses.dataclass(frozen=True)
class Task:
    source: str
    # Without the source.
    command: tuple
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


def tidied(commands: pathlib.Path, deps: pathlib.Path, tools: bytes) -> list[Task]:
    listed = output_of("git", "ls-files", "--cached", "--others", "--exclude-standard", "*.cpp").splitlines()
    command = ["clang-tidy", "--quiet", f"--extra-arg-before=--target={TRIPLE}",
               "--extra-arg=-fms-extensions", "--extra-arg=-Wno-unknown-warning-option",
               "--extra-arg=-Xclang", "--extra-arg=-analyzer-config",
               "--extra-arg=-Xclang", f"--extra-arg=max-nodes={ANALYZER_NODES}",
               *(f"--extra-arg={argument}" for argument in system_includes(deps)), "-p", str(commands)]
    rules = tools + b"".join(content(name) for name in (*RULES, "cmake/warnings.cmake"))
    return [Task(source, tuple(command), key_of(source, command, rules))
            for source in listed if source.split("/")[0] in TIDIED and (ROOT / source).is_file()]


# Clang cannot read GCC's precompiled headers.
PRECOMPILED = re.compile(r' -Winvalid-pch -include (?:"[^"]*"|\S+)')


def build_commands(build: pathlib.Path) -> dict[str, dict]:
    """Source: how the cross build compiles it, the first time if there are several; without precompiled headers."""
    found = {}
    for entry in json.loads((build / "compile_commands.json").read_text(encoding="utf-8")):
        entry["command"] = PRECOMPILED.sub("", entry["command"])
        found.setdefault(os.path.relpath(entry["file"], ROOT), entry)
    return found


def options_of(entry: dict) -> str:
    """Without what differs for each file."""
    return re.sub(r" -o .*", "", entry["command"])


class Batches:
    """The batches as files below `folder`."""

    def __init__(self, folder: pathlib.Path, tasks: list[Task], known: dict[str, dict]):
        shutil.rmtree(folder, ignore_errors=True)
        texts = {task.source: content(task.source).decode("utf-8") for task in tasks}
        by_source = {task.source: task for task in tasks}
        self.batches, entries = [], []
        for number, names in enumerate(batches(list(texts), texts, lambda name: options_of(known[name]))):
            path = write_batch(folder, number, names, texts)
            entry = known[names[0]]
            entries.append({**entry, "file": str(path), "command": entry["command"].replace(entry["file"], str(path))})
            self.batches.append((folder, path, [by_source[name] for name in names]))
        if tasks:
            (folder / "compile_commands.json").write_text(json.dumps(entries), encoding="utf-8")
            for name in RULES:
                (folder / name).parent.mkdir(exist_ok=True)
                shutil.copy(ROOT / name, folder / name)


def run_tidy(command: tuple, source: str) -> tuple[int, str]:
    # On the standard error clang-tidy prints the number of suppressed warnings and nothing else.
    done = subprocess.run([*command, source], cwd=ROOT, stdout=subprocess.PIPE, text=True, errors="replace",
                          stderr=subprocess.DEVNULL, check=False)
    return done.returncode, done.stdout


def run_batch(folder: pathlib.Path, path: pathlib.Path, tasks: list[Task], stamps: pathlib.Path) -> list[str]:
    """What clang-tidy said of the files; nothing when all passed. `folder` has the batch's compile_commands.json."""
    command = (*tasks[0].command[:-1], str(folder), f"--extra-arg=-iquote{ROOT / os.path.dirname(tasks[0].source)}")
    together = len(tasks) > 1 and run_tidy(command, str(path))[0] == 0
    if len(tasks) > 1 and not together and os.environ.get("TARVO_BATCHES"):
        print(f"one by one: {' '.join(task.source for task in tasks)}")
    problems = []
    for task in tasks:
        code, said = (0, "") if together else run_tidy(task.command, task.source)
        if code == 0:
            (stamps / task.key).touch()
        else:
            problems.append(f"{task.source}: clang-tidy exits with {code}\n{said}")
    return problems


def main() -> int:
    stamps, build, deps = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    stamps.mkdir(parents=True, exist_ok=True)
    tools = installed_tools()
    known = build_commands(build)
    alone = stamps / "alone"
    alone.mkdir(exist_ok=True)
    (alone / "compile_commands.json").write_text(json.dumps(list(known.values())), encoding="utf-8")
    tasks = tidied(alone, deps, tools)
    todo = [task for task in tasks if not (stamps / task.key).exists()]
    waiting = Batches(stamps / "batches", todo, known).batches
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        problems = [problem for found in pool.map(lambda batch: run_batch(*batch, stamps), waiting) for problem in found]
    for problem in problems:
        print(problem)
    print(f"clang-tidy: {len(tasks)} files, {len(todo)} of them read in this run")
    if problems:
        print(f"error: {len(problems)} files did not pass. Fix them; a rule that does not fit gets its reason in "
              ".clang-tidy.", file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
