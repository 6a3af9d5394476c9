"""The beliefs about the host: tests/data/host_facts, read and checked. Used by make_host_check.py and its fellows."""

import json
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
FACTS = ROOT / "tests/data/host_facts"
LEVELS = ("documented", "public scripts", "unproven")
CASE_KEYS = {"run", "prints", "fails", "at", "note", "not_asked"}
FACT_KEYS = {"id", "run", "prints", "when", "where", "why", "level"}


def language_cases():
    """(id, case) of every language case, the tests' own order."""
    for path in sorted((FACTS / "language").glob("*.json")):
        for group, cases in json.loads(path.read_text(encoding="utf-8")).items():
            for number, case in enumerate(cases, 1):
                yield f"language.{path.stem}.{group}.{number}", case


def host_facts():
    for path in sorted((FACTS / "host").glob("*.json")):
        yield from json.loads(path.read_text(encoding="utf-8"))


def sdk_beliefs():
    return json.loads((FACTS / "sdk.json").read_text(encoding="utf-8"))


def is_asked(case) -> bool:
    return "not_asked" not in case


def problems() -> list[str]:
    found = []
    seen = set()
    for name, case in language_cases():
        if not {"run"} <= set(case) <= CASE_KEYS or ("prints" in case) == ("fails" in case):
            found.append(f"{name}: wants run, and either prints or fails; knows {sorted(CASE_KEYS)}")
        if ("fails" in case) != ("at" in case):
            found.append(f"{name}: 'at' goes with 'fails'")
    for fact in host_facts():
        name = fact.get("id", "?")
        if not FACT_KEYS - {"when"} <= set(fact) <= FACT_KEYS:
            found.append(f"{name}: wants {sorted(FACT_KEYS - {'when'})}")
        elif fact["level"] not in LEVELS:
            found.append(f"{name}: level {fact['level']} is none of {LEVELS}")
        if name in seen:
            found.append(f"{name}: stands twice")
        seen.add(name)
    return found


# What a fact sets: assignments, functions, structs, loop variables never survive.
DEFINES = re.compile(r"\b(?:fn|function|struct|global)\s+([A-Za-z_]\w*)")
ASSIGNS = re.compile(r"('[^']+'|(?<![\w.#&$])[A-Za-z_]\w*)\s*[-+*/]?=(?!=)")
STRINGS = re.compile(r'@"[^"]*"|"(?:[^"\\]|\\.)*"', re.DOTALL)


def names_set_by(source: str) -> list[str]:
    """The global variables that a case may leave behind; a text that is executed counts too."""
    pieces = [STRINGS.sub('""', source)] + [piece for piece in STRINGS.findall(source)]
    names = {match for piece in pieces for match in DEFINES.findall(piece) + ASSIGNS.findall(piece)}
    names |= set(re.findall(r"&([A-Za-z_]\w*)", source))
    words = {"for", "if", "local", "case", "return", "do", "in", "of", "where", "then", "else"}
    return sorted({name.strip("'").lower() for name in names} - (words - {"for"}))


def unasked_names() -> dict[str, str]:
    """Names of the host's that the scripts use and no script can ask for without changing something: name, why."""
    return json.loads((FACTS / "unasked.json").read_text(encoding="utf-8"))
