#!/usr/bin/env python3
"""Reads what came back from 3ds Max, TarvoHostCheck.txt or TarvoHostProbe.txt, and says which belief about the host is
wrong and where in the code it stands.

    read_host_report.py REPORT…      exit status 0: no belief is wrong, 1: some are, 2: a report is not whole"""

import argparse
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import host_facts
import make_host_check


def lines_of(path: pathlib.Path) -> list[str]:
    return path.read_text(encoding="ascii", errors="replace").splitlines()


def users_of(source: str) -> str:
    words = {word.lower() for word in re.findall(r"[A-Za-z_]\w*", source)}
    users = [path.name for path in sorted((host_facts.ROOT / "scripts").glob("*.ms"))
             if make_host_check.host_names_of(path) & words]
    return ", ".join(users) if users else "no script by name; look for one that uses the operator, then correct standin/maxscript and the case"


def place_of(name: str) -> tuple[str, str]:
    """(where it stands, what rests on it)"""
    for fact in host_facts.host_facts():
        if fact["id"] == name:
            return fact["where"], fact["why"]
    for case_name, case in host_facts.language_cases():
        if case_name == name:
            topic = name.split(".")[1]
            return f"tests/data/host_facts/language/{topic}.json; used by {users_of(case['run'])}", case["run"]
    return "nowhere", "no such fact: the report is of another version"


def read_check(path: pathlib.Path) -> tuple[list[str], list[str]]:
    wrong = []
    broken = []
    lines = lines_of(path)
    seen = 0
    for line in lines:
        parts = line.split("\t")
        if line.startswith("#") or len(parts) != 4:
            continue
        seen += 1
        verdict, name, wanted, got = parts
        if verdict == "DIFFERENT":
            where, why = place_of(name)
            wrong.append(f"{name}: expected {wanted}, got {got}\n    asked: {why}\n    stands in: {where}")
    counts = [re.match(r"# same (\d+), different (\d+), skipped (\d+), of (\d+)$", line) for line in lines]
    totals = [match for match in counts if match]
    if "# end" not in lines or not totals:
        broken.append(f"{path}: no end; 3ds Max stopped behind: {lines[-1] if lines else '(nothing)'}")
    elif sum(int(totals[0][i]) for i in (1, 2, 3)) != int(totals[0][4]) or seen != int(totals[0][4]):
        broken.append(f"{path}: {seen} lines, but {totals[0][4]} facts")
    print(f"{path.name}: {seen} facts, {len(wrong)} different, "
          f"{sum(line.startswith('skipped') for line in lines)} skipped")
    return wrong, broken


def fits(answer: str, wanted: str) -> bool:
    if wanted.startswith("/") and wanted.endswith("/"):
        return re.fullmatch(wanted[1:-1], answer) is not None
    return answer == wanted


def read_probe(path: pathlib.Path) -> tuple[list[str], list[str]]:
    answers = dict(line.split("\t", 1) for line in lines_of(path) if "\t" in line)
    wrong = []
    known = set()
    for belief in host_facts.sdk_beliefs():
        for key, wanted in belief.get("probe", {}).items():
            known.add(key)
            got = answers.get(key, "(no answer)")
            if key not in answers or not fits(got, wanted):
                wrong.append(f"{belief['id']}: {key}: expected {wanted}, got {got}\n    believed: {belief['expected']}\n"
                             f"    stands in: {belief['place']}\n    then: {belief['if_different']}")
    stopped = [f"{path}: {key}: {answer}" for key, answer in answers.items() if key not in known]
    if "stop.done" not in answers:
        last = list(answers)[-1] if answers else "(nothing)"
        stopped.append(f"{path}: not whole; the last answer is {last}")
    print(f"{path.name}: {len(answers)} answers, {len(wrong)} not as believed")
    return wrong, stopped


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("report", nargs="+", type=pathlib.Path)
    wrong = []
    broken = []
    for path in parser.parse_args().report:
        lines = lines_of(path)
        is_probe = bool(lines) and lines[0].startswith("# Tarvo host probe")
        found, unsure = (read_probe if is_probe else read_check)(path)
        wrong += found
        broken += unsure
    for line in wrong + broken:
        print(line)
    return 2 if broken else 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
