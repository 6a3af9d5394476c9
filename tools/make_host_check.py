#!/usr/bin/env python3
"""Writes HostCheck.ms, the script by which 3ds Max itself checks what the plugin's scripts and the stand-in's evaluator
take for granted, and HostCheck.cmd, which runs it unattended. Everything comes from tests/data/host_facts.

    make_host_check.py --out FOLDER [--only PREFIX]… [--change FACT VALUE]…
    make_host_check.py --check     looks at the data and at the scripts: is every name of the host's asked for?

--only asks the facts whose names begin so. --change expects something else for one fact: its line in the report then
says DIFFERENT."""

import argparse
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import host_facts

FRAME = host_facts.ROOT / "tools/host_check/frame.ms"
RECIPE = host_facts.ROOT / "tools/host_check/HostCheck.cmd"
ESCAPES = {"\\": "\\\\", '"': '\\"', "\n": "\\n", "\r": "\\r", "\t": "\\t"}


def literal(text: str) -> str:
    """A text as the script language writes it, in ASCII. A code takes as many hexadecimal digits as follow it, so each
    stands alone."""
    pieces = re.split(r"([^\x20-\x7e\n\r\t])", text)
    written = []
    for piece in pieces:
        if len(piece) == 1 and not " " <= piece <= "~" and piece not in ESCAPES:
            units = piece.encode("utf-16-be")
            written += [f'"\\x{units[i] * 256 + units[i + 1]:04x}"' for i in range(0, len(units), 2)]
        elif piece or len(pieces) == 1:
            written.append('"' + "".join(ESCAPES.get(letter, letter) for letter in piece) + '"')
    return written[0] if len(written) == 1 else "(" + " + ".join(written) + ")"


def name_list(names) -> str:
    return "#(" + ", ".join(f"#'{name}'" for name in names) + ")"


def fact_lines(change, only=("",)) -> list[str]:
    lines = []
    for name, case in host_facts.language_cases():
        if not host_facts.is_asked(case) or not name.startswith(tuple(only)):
            continue
        names = name_list(host_facts.names_set_by(case["run"]))
        source = literal(case["run"])
        if "fails" in case and name not in change:
            lines.append(f'tarvoCheck.failure "{name}" {source} {names}')
        else:
            wanted = change.get(name, case.get("prints"))
            lines.append(f'tarvoCheck.value "{name}" {literal(wanted)} {source} {names}')
    for fact in host_facts.host_facts():
        if not fact["id"].startswith(tuple(only)):
            continue
        wanted = literal(change.get(fact["id"], fact["prints"]))
        source = literal(fact["run"])
        if "when" in fact:
            lines.append(f'tarvoCheck.valueWhen "{fact["id"]}" {literal(fact["when"])} {wanted} {source}')
        else:
            lines.append(f'tarvoCheck.value "{fact["id"]}" {wanted} {source} #()')
    return lines


ABOUT = [("release", "maxVersion()"), ("renderer", "classOf renderers.production"), ("cameras", "cameras.count"),
         ("assets", "AssetManager.GetNumAssets()"), ("scenes by reference", "xrefs.getXRefFileCount()"),
         ("providers of asset tracking", "ATSOps.NumProviders()")]


def script(change, only) -> str:
    lines = fact_lines(change, only)
    unknown = [name for name in change if not any(f'"{name}"' in line for line in lines)]
    if unknown:
        raise SystemExit(f"no fact {unknown[0]} is asked; see tests/data/host_facts")
    names = name_list(sorted({name for _, case in host_facts.language_cases() if host_facts.is_asked(case)
                              for name in host_facts.names_set_by(case["run"])}))
    about = [f"tarvoCheck.describe {literal(subject)} {literal(source)}" for subject, source in ABOUT]
    return "\n".join([
        FRAME.read_text(encoding="ascii").rstrip(),
        f"tarvoCheck.start (getFilenamePath (getThisScriptFilename())) {names}",
        *about, *lines,
        f"tarvoCheck.finish {len(lines)} {names}",
        "globalVars.remove #TarvoHostCheckRun",
        "globalVars.remove #tarvoCheck",
        "ok", ""])


# Names that a script brings itself, and the language's own words.
KEYWORDS = set("""about and animate as at by case catch collect continue coordsys do else exit fn for from function global
    if in local mapped max not of off on or persistent private public redraw return set struct then throw time to try undo
    where while with true false undefined unsupplied ok this""".split())
COMMENTS = re.compile(r"/\*.*?\*/|--[^\n]*", re.DOTALL)
WORD = re.compile(r"(?<![#\w])[A-Za-z_]\w*")


def plain_code(text: str) -> str:
    """Without strings and comments; what comes first counts."""
    both = re.compile(f"{host_facts.STRINGS.pattern}|{COMMENTS.pattern}", re.DOTALL)
    return both.sub(lambda match: '""' if match.group()[0] in '@"' else " ", text)


def host_names_of(path: pathlib.Path) -> set[str]:
    code = plain_code(path.read_text(encoding="ascii"))
    own = set()
    for head in re.findall(r"\bfn\s+([^=]+)=", code):
        own |= {word.lower() for word in WORD.findall(head)}
    for listed in re.findall(r"\blocal\s+([^=\n]+(?:,\s*\n[^=\n]+)*)", code):
        own |= {word.lower() for word in WORD.findall(listed)}
    own |= {word.lower() for word in re.findall(r"\bfor\s+(\w+)", code)}
    own |= {word.lower() for word in re.findall(r"\b(?:struct|global)\s+(\w+)", code)}
    own |= {word.lower() for word in re.findall(r"\bcatch\s+(\w+)", code)}
    own |= {word.lower() for word in re.findall(r"^ {4}(\w+) = ", code, re.MULTILINE)}
    used = {word.lower() for word in WORD.findall(re.sub(r"\b\w+:(?!:)", " ", code))}
    return used - own - KEYWORDS


def names_without_fact() -> list[str]:
    # Strings and the names of events are no calls.
    asked = " ".join(re.sub(r"\bon\s+\w+", " ", plain_code(case["run"]))
                     for _, case in host_facts.language_cases() if host_facts.is_asked(case))
    asked += " " + " ".join(fact["run"] + " " + fact.get("when", "") for fact in host_facts.host_facts())
    # The report itself is written with these.
    asked += " " + plain_code(FRAME.read_text(encoding="ascii"))
    known = {word.lower() for word in re.findall(r"[A-Za-z_]\w*", asked)}
    listed = {name.lower() for name in host_facts.unasked_names()}
    found = []
    for path in sorted((host_facts.ROOT / "scripts").glob("*.ms")):
        found += [f"{path.name}: {name}: no fact in tests/data/host_facts asks the host for it"
                  for name in sorted(host_names_of(path) - known - listed)]
    return found


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--out", type=pathlib.Path)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--only", action="append", default=[], metavar="PREFIX")
    parser.add_argument("--change", nargs=2, action="append", default=[], metavar=("FACT", "VALUE"))
    options = parser.parse_args()
    problems = host_facts.problems() + (names_without_fact() if options.check else [])
    for problem in problems:
        print(problem, file=sys.stderr)
    if options.out and not problems:
        options.out.mkdir(parents=True, exist_ok=True)
        (options.out / "HostCheck.ms").write_text(script(dict(options.change), options.only or [""]), encoding="ascii", newline="\r\n")
        (options.out / "HostCheck.cmd").write_bytes(RECIPE.read_bytes().replace(b"\n", b"\r\n"))
    count = len(fact_lines({}))
    print(f"{count} facts to ask the host, {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
