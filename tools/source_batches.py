"""Several sources as one, for checks that spend most of their time on the system's headers. Used by clang_checks.py and
check_windows_target.py.

A batch holds files that are read with one command and under one set of rules; files that include others by their place in
the same directory only share a batch with files of that directory. Files that define the same name in their anonymous
namespaces do not share a batch. A batch that does not pass says nothing: its files are then read one by one. What a batch
cannot see is an include that is missing in one file and present in a file before it; the build compiles each file alone,
and a using-declaration that its file does not need is check_sources.py's."""

import os
import pathlib
import re

# In lines. Larger ones leave a processor without work at the end.
LARGEST = 2500
ANONYMOUS = re.compile(r"^namespace \{$(.*?)^\} // namespace$", re.MULTILINE | re.DOTALL)
DEFINED = re.compile(r"^(?!\s|#|\}|//|template|namespace|using namespace|public|private|protected)"
                     r"(?:(?:struct|class|enum class|enum|union|using) (\w+)|[^\n(={;]*?(\w+)(?:\[[^\n\]]*\])* *[(={;])",
                     re.MULTILINE)
MACRO = re.compile(r"^#define (\w+)", re.MULTILINE)
QUOTED = re.compile(r'^#include "([^"]+)"', re.MULTILINE)
ROOT = pathlib.Path(__file__).resolve().parent.parent
# Directories with rules of their own (.clang-tidy).
RULED = ("standin", "packaging")


def local_names(text: str) -> set[str]:
    """What the file defines for itself alone; found by its form, so that a few are missed."""
    found = set(MACRO.findall(text))
    for block in ANONYMOUS.findall(text):
        found |= {first or second for first, second in DEFINED.findall(block)}
    return found


def place_of(name: str, text: str) -> str:
    """The directory in which the file can be read together with others."""
    if all((ROOT / include).is_file() for include in QUOTED.findall(text)):
        top = name.split("/")[0]
        return top if top in RULED else ""
    return os.path.dirname(name)


def batches(names: list[str], texts: dict[str, str], group_of) -> list[list[str]]:
    """The files in batches; `group_of` says which files are read with one command."""
    open_batches, made = {}, []
    for name in sorted(names):
        taken, lines = local_names(texts[name]), texts[name].count("\n")
        key = place_of(name, texts[name]), group_of(name)
        for batch in open_batches.setdefault(key, []):
            if batch["lines"] + lines <= LARGEST and not batch["taken"] & taken:
                break
        else:
            batch = {"lines": 0, "taken": set(), "names": []}
            open_batches[key].append(batch)
            made.append(batch)
        batch["lines"] += lines
        batch["taken"] |= taken
        batch["names"].append(name)
    return [batch["names"] for batch in sorted(made, key=lambda batch: -batch["lines"])]


def write_batch(folder: pathlib.Path, number: int, names: list[str], texts: dict[str, str]) -> pathlib.Path:
    """One file with the texts of all; below `folder` in the directory that the files have in common."""
    path = folder / place_of(names[0], texts[names[0]]) / f"batch_{number}.cpp"
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text("".join(f'#line 1 "{name}"\n{texts[name]}' for name in names), encoding="utf-8")
    return path
