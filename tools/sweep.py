#!/usr/bin/env python3
"""sweep.py --bin BIN --out OUT [--scenario NAME] [--language en|zh] [--function PATTERN] [--sample SEED]: lets every call
of every imported function fail once (tests/faults/imports.txt), in the scenarios of tests/faults, and judges what came of
it. Runs inside a Wine that is up (tools/sweep.sh brings one up and runs all of it). --page writes docs/faults.md from what
is in OUT; --check holds the tables against the module's imports. The exit status is 1 when something is not as it must be."""

import argparse
import collections
import fnmatch
import gzip
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys
import time

from module_image import Image

ROOT = pathlib.Path(__file__).resolve().parent.parent
FAULTS = ROOT / "tests/faults"
PAGE = ROOT / "docs/faults.md"
SCENARIOS = ("submit", "open_twice", "edit_cameras", "start_and_stop")
# Where texts, code pages or names matter, the Chinese run has these fail too.
BOTH_LANGUAGES = ("submit", "edit_cameras")
TEXT_FUNCTIONS = re.compile(r"LoadStringW|MultiByte|WideChar|setlocale|mbstowcs|wcstombs|CharUpper|_mkdir|_access|fopen|"
                            r"GetPrivateProfile|CreateProcessW|GetCPInfo|MessageBoxExW|GetWindowTextW")
ERRORS = {
    "FILE_NOT_FOUND": 2, "ACCESS_DENIED": 5, "INVALID_HANDLE": 6, "NOT_ENOUGH_MEMORY": 8, "SHARING_VIOLATION": 32,
    "INVALID_PARAMETER": 87, "DISK_FULL": 112, "INVALID_NAME": 123, "MOD_NOT_FOUND": 126, "PROC_NOT_FOUND": 127,
    "ALREADY_EXISTS": 183, "NO_UNICODE_TRANSLATION": 1113, "INVALID_WINDOW_HANDLE": 1400, "CONTROL_ID_NOT_FOUND": 1421,
    "RESOURCE_TYPE_NOT_FOUND": 1813, "RESOURCE_NAME_NOT_FOUND": 1814, "WINHTTP_TIMEOUT": 12002, "CANNOT_CONNECT": 12029,
    "CONNECTION_ERROR": 12030,
}
ERRNOS = {"ENOENT": 2, "EBADF": 9, "ENOMEM": 12, "EACCES": 13, "EEXIST": 17, "EINVAL": 22, "EMFILE": 24, "ENOSPC": 28,
          "EILSEQ": 42}
# Files that vanish, are locked or become read-only, and the calls before which they do.
FILES = ("script/qfx_plugin.ini", "script/MaxRenderGlobalsParser.mse", "7-Zip/7z.exe", "7-Zip", "json", "compress",
         "compress/*", "json/*", "log1.3.5", "log1.3.5/qfx_ui.log", "scene/*", "script")
FILE_CALLS = ("CreateFileW", "CreateProcessW", "CopyFileW", "_waccess", "_wfopen", "fopen",
              "GetPrivateProfileStringW", "_Z22ExecuteMAXScriptScriptPKwiP7FPValuei", "WinHttpSendRequest",
              "GetExitCodeProcess")
ACTIONS = ("vanish", "lock", "read_only")
RUNS_OF_A_PROCESS = 60
REFUSED = 2 # the stage's answer to bad input


# ---- the tables

def table_rows(path: pathlib.Path):
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.strip() and not line.startswith("#"):
            yield [part.strip() for part in line.split("|")]


def failure_of(text: str) -> dict:
    """One failure of tests/faults/imports.txt as the stage takes it."""
    words = text.split()
    if words[0] in ("short", "throw"):
        return {"kind": words[0]}
    if words[0] == "clock":
        return {"kind": "clock", "days": int(words[1])}
    fault = {"kind": "fail"}
    if words[0] == "after":
        fault["kind"] = words.pop(0)
    fault["result"] = int(words.pop(0), 0)
    for name in words:
        fault["error" if name in ERRORS else "errno"] = ERRORS[name] if name in ERRORS else ERRNOS[name]
    return fault


def import_table() -> dict:
    """Function → its failures; empty for a function that is not failed."""
    table = {}
    for name, failures in table_rows(FAULTS / "imports.txt"):
        wanted = [] if failures.startswith("-:") else [part.strip() for part in failures.split(",")]
        table[name] = {text: failure_of(text) for text in wanted}
    return table


def allowed_rows() -> list:
    """(function pattern, failure pattern, outcome, compat ids, reason) of what may be so."""
    return [tuple(row) for row in table_rows(FAULTS / "allowed.txt")]


# ---- playing

def windows_path(path) -> str:
    return "Z:" + str(pathlib.Path(path).resolve()).replace("/", "\\")


class Player:
    """Plays one scenario in one language with a list of faults, in as few processes as it takes."""

    def __init__(self, options, scenario: str, language: str):
        self.scenario, self.language, self.options = scenario, language, options
        self.out = pathlib.Path(options.out) / f"{scenario}.{language}"
        self.out.mkdir(parents=True, exist_ok=True)
        self.file = FAULTS / f"{scenario}.json"
        self.watched = {name: True for name, failures in import_table().items() if failures}

    def start(self, faults: list) -> int:
        return self.start_plan({"watched": self.watched, "faults": faults}, 60 + 15 * len(faults))

    def start_plan(self, content: dict, seconds: int) -> int:
        plan = self.out / "plan.json"
        plan.write_text(json.dumps(content), encoding="utf-8")
        for name in ("results.jsonl", "transcript.json"):
            (self.out / name).unlink(missing_ok=True)
        command = ["bash", str(ROOT / "tools/in_wine.sh"), self.language, str(pathlib.Path(self.options.bin) / "stage.exe"),
                   "--scenario", windows_path(self.file), "--out", windows_path(self.out),
                   "--seven-zip", windows_path(pathlib.Path(os.environ["TARVO_BUILD_DIR"]) / "deps/7-Zip"),
                   "--scripts", windows_path(ROOT / "scripts"), "--faults", windows_path(plan)]
        environment = dict(os.environ, TARVO_LIMIT=str(seconds))
        with open(self.out / "output.txt", "w", encoding="utf-8") as output:
            return subprocess.run(command, stdout=output, stderr=output, env=environment, check=False).returncode

    def results(self) -> list:
        path = self.out / "results.jsonl"
        lines = path.read_text(encoding="utf-8", errors="replace").splitlines() if path.exists() else []
        return [json.loads(line) for line in lines if line.endswith("}")]

    def broken(self, fault: dict, status: int) -> dict:
        """The result of the run that ended its process."""
        path = self.out / "transcript.json"
        trouble = f"ended with {status}"
        if path.exists():
            trouble = json.loads(path.read_text(encoding="utf-8")).get("trouble", trouble)
        return {"fault": fault, "trouble": trouble}

    def baseline(self) -> dict:
        self.start([{"count": True}, {}])
        results = self.results()
        if len(results) != 2:
            sys.exit(f"error: {self.scenario}.{self.language} does not run even without a fault; see {self.out}")
        return results

    def play(self, faults: list):
        """Yields (undisturbed result, result) for each fault."""
        left = list(faults)
        while left:
            part = left[:RUNS_OF_A_PROCESS]
            status = self.start([{}] + part)
            results = self.results()
            if not results or status == REFUSED:
                sys.exit(f"error: {self.scenario}.{self.language} does not start; see {self.out}")
            for result in results[1:]:
                yield results[0], result
            done = len(results) - 1
            if done < len(part):
                yield results[0], self.broken(part[done], status)
                done += 1
            left = left[done:]


def points(counted: dict, scenario: str, language: str) -> list:
    """Every fault for the calls that a counted run made."""
    calls, places, faults = counted["faults"]["calls"], counted["faults"]["places"], []
    for name, failures in import_table().items():
        for number in range(1, calls.get(name, 0) + 1):
            place = places[name][number - 1]
            if language == "zh" and not TEXT_FUNCTIONS.search(name):
                continue
            for variant, (text, failure) in enumerate(failures.items()):
                if failure["kind"] == "clock" and number not in (1, 2, calls[name] // 2):
                    continue # it stays wrong from there on
                later = 4 if place in places[name][:number - 1] else min(variant, 1)
                faults.append(dict(failure, function=name, call=number, text=text, order=later))
    if language == "zh":
        return faults
    for name, number in counted["faults"].get("host_calls", {}).items():
        if "::" in name:
            faults += [{"kind": "throw", "function": name, "call": call, "text": "throw", "order": 0} for call in range(1, number + 1)]
    if scenario == "submit":
        for name in FILE_CALLS:
            for number in range(1, calls.get(name, 0) + 1):
                faults += [{"kind": "file", "function": name, "call": number, "action": action, "file": file,
                            "text": f"{file} {action}", "order": 2} for file in FILES for action in ACTIONS
                           if not (action == "read_only" and "." not in file and "*" not in file)]
    return faults


# ---- judging

GUID = re.compile(r"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}")


def plain(value):
    """Without what differs from run to run."""
    if isinstance(value, str):
        value = GUID.sub("GUID", value)
        value = re.sub(r"_[A-Za-z0-9]{6}\.7z", "_TAG.7z", value)
        return re.sub(r"_\d{6}(\.max)?", r"_NUMBER\1", value)
    if isinstance(value, (list, tuple)):
        return [plain(entry) for entry in value]
    if isinstance(value, dict):
        return {key: plain(entry) for key, entry in value.items()}
    return value


def log_lines(part: dict) -> collections.Counter:
    return collections.Counter(f"{channel} [{line['level']}] {plain(line['message'])}"
                               for channel, lines in part["logs"].items() for line in lines)


def documents(part: dict) -> list:
    return sorted((json.dumps(plain(file["json"]), sort_keys=True) for file in part["files"]
                   if file["name"].startswith("json/") and "json" in file))


def request_view(request: dict) -> dict:
    return {"ok": request["ok"], "json": plain(request["json"]), "headers": plain(request["headers"]),
            "cameras": request["job"]["cameras"]}


def control_view(dialog: dict) -> dict:
    view = plain({key: dialog.get(key) for key in ("open", "rows", "columns", "title")})
    view["controls"] = {number: {key: control.get(key) for key in ("text", "checked", "lines", "items", "selected",
                                                                  "enabled", "position")}
                        for number, control in plain(dialog.get("controls", {})).items()}
    return view


def views(part: dict) -> dict:
    """What a user, the client or the disk sees of a run, log lines apart."""
    return {
        "boxes": [(box["text_numbers"][:1] or [box["text"][:40]], box["answer"]) for box in part["boxes"]],
        "dialogs": [(dialog["template"], dialog["result"]) for dialog in part["dialogs"]],
        "main": control_view(part["dialog_state"]["main"]),
        "edit": control_view(part["dialog_state"]["edit"]),
        "requests": [request_view(request) for request in part["requests"]],
        "files": sorted(plain(file["name"]) for file in part["files"]),
        "documents": documents(part),
        "scripts": plain([script["command"] for script in part["scripts"]]),
        "processes": plain([[process["command"], process["started"]] for process in part["processes"]]),
        "opened": part["opened"], "menus": part["menus"], "plugin": [step["event"] for step in part["plugin"]],
    }


def is_failed_recovery(result: dict) -> str:
    undone = [step["place"] for step in result["steps"] if step["place"].startswith("recovery") and not step["done"]]
    broken = [f"{outcome['place']}: {outcome.get('expected')} / {outcome.get('got')}" for outcome in result["outcomes"]
              if outcome["place"].startswith("recovery") and not outcome["held"]]
    return "; ".join(undone + broken)


def lie(normal: dict, part: dict) -> str:
    """Told that the job was accepted, and the client cannot use it, or it is not the job that was wanted."""
    told = sum(1 for box in part["boxes"] if 45 in box["text_numbers"])
    accepted = sum(1 for line in part["logs"].get("qfx_http", []) if line["message"] == "Submit successfully.")
    if told == 0 and accepted == 0:
        return ""
    bad = [check for request in part["requests"] for check in request["checks"] if not check["ok"]]
    if bad or len(part["requests"]) < told:
        return "; ".join(f"{check['check']}: {check['detail']}" for check in bad) or "no request"
    if documents(part) != documents(normal):
        return "another document: " + difference(documents(normal), documents(part))
    if [request_view(request) for request in part["requests"]] != [request_view(request) for request in normal["requests"]]:
        return "another request"
    return ""


def difference(one, other) -> str:
    one, other = json.dumps(one, sort_keys=True), json.dumps(other, sort_keys=True)
    start = next((i for i, (a, b) in enumerate(zip(one, other)) if a != b), min(len(one), len(other)))
    return f"…{one[max(0, start - 30):start + 50]}… → …{other[max(0, start - 30):start + 50]}…"


def outcome(normal: dict, result: dict) -> tuple:
    """(outcome, detail)."""
    if "trouble" in result:
        return ("hang" if "time limit" in result["trouble"] or "137" in result["trouble"] else "crash"), result["trouble"]
    if not result["faults"]["hit"]:
        return "not reached", ""
    kept = result["heap_blocks_kept"] - normal["heap_blocks_kept"]
    if result["leaks"] or kept > 0:
        return "kept", f"{kept} blocks, {result['leaks']}"
    if result["exceptions"] or result["escaped"]:
        return "escaped", str(result["exceptions"])
    if "before_recovery" not in result: # the plugin was not created: the host lists it as one that cannot be loaded
        return "told", "; ".join(f"{found['place']}: {found['got']}" for found in result["outcomes"])
    part, whole = result["before_recovery"], normal["before_recovery"]
    untrue = lie(whole, part)
    before, now = views(whole), views(part)
    more_lines, fewer_lines = log_lines(part) - log_lines(whole), log_lines(whole) - log_lines(part)
    reports = [line for line in more_lines if "[INFO]" not in line]
    reports += [f"box {box}" for box in now["boxes"] if box not in before["boxes"]]
    if untrue:
        return ("lie, but logged" if reports else "lie"), untrue
    problem = is_failed_recovery(result)
    if problem:
        return "not usable afterwards", problem
    if reports:
        return "told", "; ".join(sorted(reports))
    changed = [key for key in before if before[key] != now[key]]
    if changed:
        return "silent", "; ".join(f"{key} {difference(before[key], now[key])}" for key in changed)
    if fewer_lines:
        return "log lines lost", f"{sum(fewer_lines.values())} lines"
    return "as if nothing had happened", ""


SEVERE = ("crash", "hang", "kept", "escaped", "lie", "lie, but logged")
BAD = ("crash", "hang", "kept", "escaped", "lie", "lie, but logged", "not usable afterwards", "silent", "log lines lost")


def allowance(row: dict, allowed: list):
    for function, failure, wanted, ids, reason in allowed:
        if wanted == row["outcome"] and fnmatch.fnmatchcase(row["function"], function) \
                and fnmatch.fnmatchcase(row["text"], failure):
            return ids, reason
    return None


def judged(scenario: str, language: str, normal: dict, result: dict) -> dict:
    kind, detail = outcome(normal, result)
    fault = result["fault"]
    return {"scenario": scenario, "language": language, "function": fault["function"], "call": fault["call"],
            "text": fault["text"], "outcome": kind, "detail": detail[:400],
            "stack": result.get("faults", {}).get("stack", "")}


def raw_file(out: pathlib.Path) -> pathlib.Path:
    """Where results are kept; those of an earlier run are put aside."""
    path, number = out / "raw.jsonl.gz", 1
    while path.exists() and (aside := out.with_name(f"{out.name}.part{number}")).exists():
        number += 1
    if path.exists():
        aside.mkdir()
        path.rename(aside / path.name)
    return path


def sweep(options) -> list:
    rows = []
    for scenario in options.scenario or SCENARIOS:
        for language in options.language or ("en", "zh"):
            if language == "zh" and scenario not in BOTH_LANGUAGES:
                continue
            player = Player(options, scenario, language)
            done = {name_of(result["fault"]) for _, result in kept_results(options, scenario, language)} \
                if options.resume else set()
            faults = [fault for fault in chosen(points(player.baseline()[0], scenario, language), options)
                      if name_of(fault) not in done]
            started = time.time()
            with gzip.open(raw_file(player.out), "wt", encoding="utf-8", compresslevel=1) as file:
                for normal, result in player.play(faults):
                    if options.minutes and time.time() - started > 60 * options.minutes:
                        break
                    rows.append(judged(scenario, language, normal, result))
                    file.write(json.dumps([normal, result]) + "\n")
            played = sum(1 for row in rows if (row["scenario"], row["language"]) == (scenario, language))
            print(f"{scenario}.{language}: {played} of {len(faults)} faults in {time.time() - started:.0f} s", flush=True)
    return rows


def kept_results(options, scenario: str, language: str):
    """(undisturbed result, result) of what OUT has from earlier runs, also from one that was cut off."""
    paths = pathlib.Path(options.out).glob(f"{scenario}.{language}*/raw.jsonl.gz")
    for path in sorted(paths, key=lambda path: path.stat().st_mtime, reverse=True): # the newest counts
        try:
            with gzip.open(path, "rt", encoding="utf-8") as file:
                for line in file:
                    normal, result = json.loads(line)
                    if result.get("trouble") != f"ended with {REFUSED}":
                        yield normal, result
        except (EOFError, ValueError):
            pass


def judged_again(options) -> list:
    rows, known = [], set()
    for scenario in options.scenario or SCENARIOS:
        for language in options.language or ("en", "zh"):
            for normal, result in kept_results(options, scenario, language):
                row = judged(scenario, language, normal, result)
                key = (scenario, language, row["function"], row["call"], row["text"])
                if key not in known:
                    rows.append(row)
                known.add(key)
    return rows


def name_of(fault: dict) -> tuple:
    return fault["function"], fault["call"], fault["text"]


def chosen(faults: list, options) -> list:
    faults = [fault for fault in faults if not options.function or fnmatch.fnmatchcase(fault["function"], options.function)]
    if not options.sample:
        return sorted(faults, key=lambda fault: (fault["order"], hashlib.sha256(repr(fault).encode()).hexdigest()))
    order = sorted(faults, key=lambda fault: hashlib.sha256((options.sample + json.dumps(fault, sort_keys=True))
                                                            .encode()).hexdigest())
    core = [fault for fault in faults if is_core(fault)]
    return core + [fault for fault in order if fault not in core][:options.count]


# Always in the sample: one of each way in which a submission was seen to go wrong.
CORE = {("CreateProcessW", 1), ("_wfopen", 1), ("fwrite", 1), ("WinHttpSendRequest", 1), ("CoCreateGuid", 1),
        ("WaitForSingleObject", 1)}


def is_core(fault: dict) -> bool:
    return (fault["function"], fault["call"]) in CORE and fault["kind"] in ("fail", "short")


# ---- the page and the check

def report(rows: list, bad=BAD) -> int:
    allowed, counts, wrong = allowed_rows(), collections.Counter(), []
    for row in rows:
        counts[row["outcome"]] += 1
        if row["outcome"] in bad and allowance(row, allowed) is None:
            wrong.append(row)
    print("; ".join(f"{kind}: {number}" for kind, number in counts.most_common()))
    for row in wrong:
        print(f"WRONG {row['scenario']}.{row['language']} {row['function']} call {row['call']}, {row['text']}: "
              f"{row['outcome']}: {row['detail'][:200]}")
    print(f"{len(rows)} faults, {len(wrong)} not as they must be")
    return 1 if wrong or not rows else 0


def readable(function: str) -> str:
    """_ZN11ActionTable9GetActionEi → ActionTable::GetAction."""
    match = re.match(r"_Z(NK?)?(.*)", function)
    if not match:
        return function
    names, left = [], match.group(2)
    while re.match(r"\d", left):
        length = re.match(r"\d+", left).group()
        left = left[len(length):]
        names.append(left[:int(length)])
        left = left[int(length):]
        if not match.group(1):
            break
    special = {"C1": names[-1], "C2": names[-1], "D1": "~" + names[-1], "D2": "~" + names[-1], "nw": "operator new",
               "dl": "operator delete", "aS": "operator="}
    if match.group(1) and left[:2] in special:
        names.append(special[left[:2]])
    return "::".join(names)


def counted(rows: list) -> dict:
    allowed, counts = allowed_rows(), collections.Counter()
    for row in rows:
        right = row["outcome"] not in BAD
        counts[row["outcome"] if right else
               f"{row['outcome']}, {'allowed' if allowance(row, allowed) else 'wrong'}"] += 1
    return dict(counts)


def function_lines(rows: list) -> list:
    """One row of the page for each function, with what came of its faults."""
    groups = collections.defaultdict(collections.Counter)
    calls = collections.defaultdict(set)
    for row in rows:
        groups[row["function"]][row["outcome"]] += 1
        calls[row["function"]].add((row["scenario"], row["language"], row["call"]))
    table = import_table()
    names = [name for name, failures in table.items() if failures] + sorted(set(groups) - set(table))
    lines = ["| function | how it fails | calls | what came of it |", "|---|---|---|---|"]
    for name in names:
        outcomes = ", ".join(f"{kind} {number}" for kind, number in groups[name].most_common()) or "none played"
        failures = ", ".join(table.get(name, {"throw": 0}))
        lines.append(f"| `{readable(name)}` | {failures} | {len(calls[name])} | {outcomes} |")
    return lines


def count_lines(before: dict, now: dict) -> list:
    lines = ["| what came of it | before | now |", "|---|---|---|"]
    for kind in sorted(set(before) | set(now), key=lambda kind: (kind.split(",")[0] in BAD, kind)):
        lines.append(f"| {kind} | {before.get(kind, 0)} | {now.get(kind, 0)} |")
    return lines + [f"| faults | {sum(before.values())} | {sum(now.values())} |"]


def allowed_lines() -> list:
    lines = ["| function | how it fails | what comes of it | row | why |", "|---|---|---|---|---|"]
    for function, failure, kind, ids, reason in allowed_rows():
        lines.append(f"| `{readable(function)}` | {failure} | {kind} | {ids} | {reason} |")
    return lines


def write_page(rows: list, before: dict) -> None:
    """The part of the page behind its mark."""
    text = PAGE.read_text(encoding="utf-8")
    head = text[:text.index(MARK) + len(MARK)]
    lines = ["", "", "## Counts", *count_lines(before, counted(rows)), "", "## Functions", *function_lines(rows), "",
             "## What is allowed", *allowed_lines(), ""]
    PAGE.write_text(head + "\n".join(lines), encoding="utf-8")


MARK = "<!-- What follows is written by tools/sweep.py --page. -->"


def check(module: str) -> int:
    """The table has a row for each import of the module and no other, and the page for each that is failed."""
    table, image = import_table(), Image(module)
    imports = set(image.imported_functions())
    problems = [f"tests/faults/imports.txt: {name} has no row" for name in sorted(imports - set(table))]
    problems += [f"tests/faults/imports.txt: the module does not import {name}" for name in sorted(set(table) - imports)]
    page = PAGE.read_text(encoding="utf-8")
    problems += [f"docs/faults.md: no row for {readable(name)}; run tools/sweep.sh" for name, failures in table.items()
                 if failures and f"| `{readable(name)}` |" not in page]
    problems += [f"docs/faults.md: not what tests/faults/allowed.txt says: {line}" for line in allowed_lines()
                 if line not in page]
    print("\n".join(problems) or f"{len(imports)} imports have their rows")
    return 1 if problems else 0


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--bin")
    parser.add_argument("--out")
    parser.add_argument("--scenario", action="append")
    parser.add_argument("--language", action="append")
    parser.add_argument("--function")
    parser.add_argument("--sample", help="only a part of the faults, chosen by this text, or by the module's content for "
                                         "'module'; then only what is severe counts")
    parser.add_argument("--resume", action="store_true", help="leaves out what OUT has results for")
    parser.add_argument("--again", action="store_true", help="judges what is in OUT, and plays nothing")
    parser.add_argument("--minutes", type=float, help="ends each scenario after so long; new places come first")
    parser.add_argument("--count", type=int, default=6, help="how many faults of a scenario beside the core")
    parser.add_argument("--page", metavar="COUNTS", help="writes docs/faults.md; COUNTS has the counts before fixing")
    parser.add_argument("--counts", help="writes the counts into this file")
    parser.add_argument("--check", metavar="MODULE")
    options = parser.parse_args()
    if options.check:
        return check(options.check)
    if options.sample == "module":
        options.sample = hashlib.sha256((pathlib.Path(options.bin) / "TarvoRendering.gup").read_bytes()).hexdigest()
        options.language = ["en"]
        options.scenario = ["submit", SCENARIOS[1 + int(options.sample[:4], 16) % 3]]
    rows = judged_again(options) if options.again else sweep(options)
    if options.counts:
        pathlib.Path(options.counts).write_text(json.dumps(counted(rows), indent=1) + "\n", encoding="utf-8")
    if options.page:
        write_page(rows, json.loads(pathlib.Path(options.page).read_text(encoding="utf-8")))
    return report(rows, SEVERE if options.sample else BAD)


if __name__ == "__main__":
    sys.exit(main())
