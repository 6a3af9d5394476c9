"""Writes the mutated copy of the project, finds out which mutants compile, and builds the test programs of it."""

import hashlib
import json
import os
import pathlib
import pickle
import re
import shlex
import subprocess
import sys

from clang import cindex

from mutants.find import Finder
from mutants.model import LAYERS, Edit, give_keys, rewrite

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
TRIPLE = "x86_64-w64-mingw32"
ERROR = re.compile(r"^(?P<file>[^\s:][^:\n]*):(?P<line>\d+):(?P<column>\d+): +"
                   r"(?P<kind>(?:fatal )?error:|required from)(?P<text>.*)$", re.MULTILINE)
WANTS_CONSTANT = re.compile(r"constant.expression|not const|variable-sized|may not be initialized")
CHOICE = re.compile(r"\(mutant\(#\) \? (.*) : ", re.DOTALL)
CONSTANT_NAME = re.compile(r"\bk[A-Z]\w*")
# Mutants are full of what compilers warn about; in a system header they do not. So the mutated text is included.
ENDING = ".inc"
HEAD = b"""#pragma GCC system_header
#pragma GCC diagnostic ignored "-Wnarrowing"
"""
BLOCK = 1000
PROGRAMS = ["tarvo_module", "stage", "client", "make_scene", "portable_tests", "win32_tests", "plugin_tests",
            "module_tests"]
NATIVE_PROGRAMS = ["portable_tests", "sequence_tests"]


class Workshop:
    """The folder of the mutated copy, its builds, and what was found out about the mutants."""

    def __init__(self, folder: pathlib.Path):
        self.folder = folder
        self.tree = folder / "tree"
        # Where it would be in the project itself: a compiler cache then knows what no mutant changes.
        self.builds = self.tree / "build"
        self.mutants = []
        self.sources = {}
        # What an earlier run learned: mutants that do not compile behind a switch, constants that stay constexpr.
        self.learned_file = folder / "learned.json"
        learned = json.loads(self.learned_file.read_text()) if self.learned_file.is_file() else {}
        self.without_switch = set(learned.get("without_switch", []))
        self.kept = set(learned.get("kept", []))

    def save_learned(self) -> None:
        self.learned_file.write_text(json.dumps(
            {"without_switch": sorted(self.without_switch), "kept": sorted(self.kept)}, indent=1))

    def environment(self) -> dict:
        return dict(os.environ, TARVO_BUILD_DIR=str(self.builds), CCACHE_BASEDIR=str(self.tree))

    def command(self, *words, **more):
        return subprocess.run([str(word) for word in words], env=self.environment(), text=True, capture_output=True,
                              check=False, **more)

    # ---- the copy

    def copy_project(self) -> None:
        listing = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "-z"], cwd=ROOT,
                                 check=True, capture_output=True).stdout.decode().split("\0")
        wanted = {name for name in listing if name and (ROOT / name).is_file()}
        for name in wanted:
            if not is_product(name) or not (self.tree / name).is_file():
                write_if_changed(self.tree / name, (ROOT / name).read_bytes())
        for path in self.tree.rglob("*"):
            name = path.relative_to(self.tree).as_posix()
            if path.is_file() and name not in wanted and not name.startswith("build/") and not name.endswith(ENDING):
                path.unlink()

    def configure(self) -> None:
        self.builds.mkdir(parents=True, exist_ok=True)
        deps = self.builds / "deps"
        if not deps.exists():
            deps.symlink_to(pathlib.Path(os.environ.get("TARVO_BUILD_DIR", ROOT / "build")).resolve() / "deps")
        # GCC for both: `blame` reads its messages.
        for preset, more in (("mingw-release", []), ("native-asan", ["-DCMAKE_CXX_COMPILER=g++", "-DCMAKE_C_COMPILER=gcc",
                                                                     "-DTARVO_FUZZ=OFF", "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1"])):
            done = self.command("cmake", "-S", self.tree, "--preset", preset, *more,
                                f"-DCMAKE_PROJECT_INCLUDE={self.tree}/tools/mutants/switch.cmake", cwd=self.tree)
            if done.returncode != 0:
                sys.exit(f"error: cmake failed for {preset}\n{done.stdout[-2000:]}{done.stderr[-3000:]}")

    def prepare(self) -> None:
        self.folder.mkdir(parents=True, exist_ok=True)
        self.copy_project()
        self.configure()
        self.find()

    # ---- the mutants

    def commands(self) -> dict:
        listed = json.loads((self.builds / "mingw-release/compile_commands.json").read_text())
        found = {}
        for entry in listed:
            name = os.path.relpath(entry["file"], self.tree)
            if is_product(name):
                found.setdefault(name, shlex.split(entry["command"]))
        return found

    def find(self) -> dict:
        """All mutants; read again only when a source of the product or the finder changed."""
        if self.sources:
            return self.sources
        digest = hashlib.sha256()
        for path in [ROOT / "tools/mutants/find.py", ROOT / "tools/mutants/model.py", *(ROOT / name for name in sorted(self.all_product_files())),
                     ROOT / "resources/resource_ids.h"]:
            digest.update(path.relative_to(ROOT).as_posix().encode() + b"\0" + path.read_bytes())
        kept = self.folder / f"found-{digest.hexdigest()[:16]}.pickle"
        if kept.is_file():
            self.sources = pickle.loads(kept.read_bytes())
        else:
            self.sources = self.read_sources()
            kept.write_bytes(pickle.dumps(self.sources))
        self.mutants = [mutant for name in sorted(self.sources) for mutant in self.sources[name].mutants]
        give_keys(self.mutants)
        # A block of numbers for each file, so that a change in one leaves the others as they were built.
        for place, name in enumerate(sorted(self.sources)):
            for step, mutant in enumerate(self.sources[name].mutants):
                mutant.number = 1 + place * BLOCK + step
        return self.sources

    def read_sources(self) -> dict:
        texts = re.findall(r"#define (IDS_\w+)", (ROOT / "resources/resource_ids.h").read_text())
        finder = Finder(ROOT, texts)
        index = cindex.Index.create()
        gcc = pathlib.Path(output_of(f"{TRIPLE}-g++-posix", "-print-file-name=include")).parent
        system = [f"-isystem{folder}" for folder in (
            gcc / "include/c++", gcc / "include/c++" / TRIPLE, f"/usr/{TRIPLE}/include",
            output_of("clang", "-print-resource-dir") + "/include")]
        for name, command in sorted(self.commands().items()):
            unit = index.parse(str(ROOT / name), [f"--target={TRIPLE}", "-std=c++14", "-fms-extensions",
                                                  *parse_arguments(command, self.tree), *system])
            wrong = [one for one in unit.diagnostics if one.severity >= cindex.Diagnostic.Error]
            if wrong:
                sys.exit(f"error: libclang cannot read {name}: {wrong[0]}")
            finder.read(unit)
        return finder.sources

    def write_sources(self, sources: dict) -> dict:
        """Writes the mutated sources; gives for each file the parts of the written text that belong to mutants."""
        spans = {}
        marks = used_marks(sources, self.mutants, self.without_switch)
        for name in sorted(self.all_product_files() | set(sources)):
            text = (ROOT / name).read_bytes()
            if name not in sources or not sources[name].mutants:
                write_if_changed(self.tree / name, text)
                continue
            edits = [edit for constant, edit in sources[name].preparations if constant not in self.kept]
            owners = {}
            for mutant in sources[name].mutants:
                if mutant.key in self.without_switch:
                    continue
                for edit in mutant.edits:
                    if id(edit) not in owners:
                        owners[id(edit)] = []
                        edits.append(numbered(edit, mutant.number))
                        owners[id(edit)] = owners[id(edits[-1])] = [mutant]
                    else:
                        owners[id(edit)].append(mutant)
            edits += marks.get(name, [])
            written, places = self.write_source(name, text, edits)
            spans[name] = (HEAD + written, [
                (places[id(edit)][0] + len(HEAD), places[id(edit)][1] + len(HEAD), owners.get(id(edit), []))
                for edit in edits if id(edit) in places])
        return spans

    def write_source(self, name: str, text: bytes, edits: list) -> tuple:
        written, places = rewrite(text, edits)
        write_if_changed(self.tree / (name + ENDING), HEAD + written)
        # The generators of the build read the source for its tables.
        once = "#pragma once\n" if name.endswith(".h") else ""
        head = f'{once}#include "tools/mutants/switch.h"\n#include "{name}{ENDING}"\n#if 0\n'
        write_if_changed(self.tree / name, head.encode() + text + b"\n#endif\n")
        return written, places

    def all_product_files(self) -> set:
        listing = output_of("git", "-C", str(ROOT), "ls-files", "--cached", "--others", "--exclude-standard")
        return {name for name in listing.splitlines() if is_product(name) and (ROOT / name).is_file()}

    def blame(self, output: str, spans: dict) -> bool:
        """Takes back what the compiler refuses; false when nothing was found to take back."""
        before = len(self.without_switch) + len(self.kept)
        has_template = False
        for found in ERROR.finditer(output):
            # Of the places that lead to an error in a template, the innermost one is the mutant's.
            is_place = found["kind"] == "required from"
            if is_place and has_template:
                continue
            written = os.path.relpath(os.path.join(self.tree, "build/mingw-release", found["file"]), self.tree)
            name = written[:-len(ENDING)] if written.endswith(ENDING) else written
            if WANTS_CONSTANT.search(found["text"]):
                line = (self.tree / written).read_text().split("\n")[int(found["line"]) - 1]
                names = CONSTANT_NAME.findall(found["text"]) or CONSTANT_NAME.findall(line)
                if set(names) - self.kept:
                    self.kept.update(names)
                    continue
            if not is_place:
                has_template = False
            if name not in spans:
                continue
            has_template = is_place
            text, places = spans[name]
            lines = text.split(b"\n")
            line = int(found["line"]) - 1
            begin = sum(len(one) + 1 for one in lines[:line])
            at = begin + int(found["column"]) - 1
            around = [place for place in places if place[0] <= at < place[1] and place[2]]
            if around:
                smallest = min(around, key=lambda place: place[1] - place[0])
                self.without_switch.update(mutant.key for mutant in smallest[2])
            else:
                self.without_switch.update(mutant.key for place in places for mutant in place[2]
                                           if place[0] < begin + len(lines[line]) and place[1] > begin)
        return len(self.without_switch) + len(self.kept) > before

    def compile(self) -> str:
        """What the compilers say when they fail; empty when all programs are built."""
        output = ""
        for preset, targets in (("native-asan", NATIVE_PROGRAMS), ("mingw-release", PROGRAMS)):
            done = self.command("nice", "-n", "2", "cmake", "--build", self.builds / preset, "--target", *targets,
                                "--", "-k", "0")
            if done.returncode != 0:
                output += done.stdout + done.stderr
        return output

    def build_alone(self, mutant) -> bool:
        """Builds the programs with this change and no other in its file; false when it does not compile."""
        self.write_sources(self.find())
        text = (ROOT / mutant.file).read_bytes()
        self.write_source(mutant.file, text, [for_good(edit, mutant.number) for edit in mutant.edits])
        return not self.compile()

    def build(self) -> None:
        """Builds the test programs, and without the mutants that the compiler refuses."""
        spans = self.write_sources(self.find())
        for _ in range(30):
            output = self.compile()
            if not output:
                return
            if not self.blame(output, spans):
                sys.exit(f"error: the mutated build fails\n{output[-5000:]}")
            print(f"  {len(self.without_switch)} mutants without a switch", flush=True)
            self.save_learned()
            spans = self.write_sources(self.find())
        sys.exit("error: the mutated build fails after 30 rounds")


def is_product(name: str) -> bool:
    return name.split("/")[0] in LAYERS and name.endswith((".cpp", ".h"))


def output_of(*command) -> str:
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def write_if_changed(path: pathlib.Path, content: bytes) -> None:
    if path.is_file() and path.read_bytes() == content:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


def parse_arguments(command: list, tree: pathlib.Path) -> list:
    words, result = iter(command[1:]), []
    for word in words:
        if word in ("-isystem", "-include"):
            value = next(words)
            if word == "-isystem":
                result.append("-isystem" + value.replace(str(tree), str(ROOT)))
        elif word.startswith(("-D", "-I")):
            result.append(word.replace(str(tree), str(ROOT)))
    return result


def numbered(edit: Edit, number: int) -> Edit:
    return Edit(edit.start, edit.end, edit.before.replace("#", str(number), 1), edit.after, edit.replaces)


def for_good(edit: Edit, number: int) -> Edit:
    """The edit without its switch."""
    choice = CHOICE.fullmatch(edit.before)
    if choice and edit.after == ")":
        return Edit(edit.start, edit.end, choice.group(1), replaces=True)
    return numbered(Edit(edit.start, edit.end, edit.before.replace("mutant(#)", "true"), edit.after, edit.replaces), number)


def used_marks(sources: dict, mutants: list, without_switch: set) -> dict:
    """Where functions use variables whose initializers hold mutants, also through another variable's initializer."""
    refers, inside = {}, {}
    for source in sources.values():
        for name, others in source.refers.items():
            refers.setdefault(name, set()).update(others)
    for mutant in mutants:
        if mutant.variable and mutant.key not in without_switch:
            inside.setdefault(mutant.variable, []).append(mutant.number)
    def numbers(name, seen):
        if name in seen:
            return []
        seen.add(name)
        found = list(inside.get(name, []))
        for other in refers.get(name, ()):
            found += numbers(other, seen)
        return found
    def calls(names, separator):
        used = [number for name in names for number in numbers(name, set())]
        return "".join(f"mutants_used({first}, {last}){separator} " for first, last in ranges(used))
    marks = {}
    for source in sources.values():
        places = marks.setdefault(source.name, [])
        for (start, end), name in source.uses.items():
            if calls([name], ","):
                places.append(Edit(start, end, "(" + calls([name], ","), ")"))
        for start, names in source.uses_in.items():
            if calls(names, ";"):
                places.append(Edit(start, start + 1, calls(sorted(names), ";")))
    return marks


def ranges(numbers: list) -> list:
    result = []
    for number in sorted(set(numbers)):
        if result and result[-1][1] == number - 1:
            result[-1][1] = number
        else:
            result.append([number, number])
    return result
