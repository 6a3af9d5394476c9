#!/usr/bin/env python3
"""sweep.py --bin BIN --out OUT [--scenario NAME] [--language en|zh] [--function PATTERN] [--sample SEED]: lets every call
of every imported function and of the host fail once, in the scenarios of tests/faults, and judges what came of it. Runs
inside a Wine that is up (tools/sweep.sh brings one up and runs all of it). --page writes docs/faults.md from what is in OUT;
--check holds the tables against the module's imports. The exit status is 1 when something is not as it must be."""

import argparse
import fnmatch
import gzip
import hashlib
import json
import os
import pathlib
import subprocess
import sys
import time

import sweep_page
from sweep_judge import BAD, SEVERE, judged
from sweep_places import Places
from sweep_tables import AGAIN, BOTH_LANGUAGES, FAULTS, ROOT, WRITES, Allowed, failure_of, import_table, points

SCENARIOS = ("submit", "open_twice", "edit_cameras", "start_and_stop")
RUNS_OF_A_PROCESS = 200
SECONDS_OF_A_PROCESS, SECONDS_OF_A_RUN = 600, 15 # on a machine that does much else
POLL_SECONDS = 0.1
REFUSED = 2 # the stage's answer to bad input


def windows_path(path) -> str:
    return "Z:" + str(pathlib.Path(path).resolve()).replace("/", "\\")


class Player:
    """Plays one scenario in one language with a list of faults, in as few processes as it takes."""

    def __init__(self, options, scenario: str, language: str):
        self.scenario, self.language, self.options = scenario, language, options
        self.out = results_folder(options, scenario, language)
        self.out.mkdir(parents=True, exist_ok=True)
        self.file = FAULTS / f"{scenario}.json"
        self.places = Places(pathlib.Path(options.bin) / "TarvoRendering.gup", ROOT)
        self.watched = {name: True for name, failures in import_table().items() if failures}

    def plan(self, faults: list) -> dict:
        return {"watched": self.watched, "faults": faults, "shortcuts": not self.options.slow,
                "writes": {name: failure_of(text) for name, text in WRITES.items()}}

    def start(self, content: dict, seconds: int) -> subprocess.Popen:
        plan = self.out / "plan.json"
        plan.write_text(json.dumps(content), encoding="utf-8")
        for name in ("results.jsonl", "transcript.json", "stop.txt"):
            (self.out / name).unlink(missing_ok=True)
        command = ["bash", str(ROOT / "tools/in_wine.sh"), self.language, str(pathlib.Path(self.options.bin) / "stage.exe"),
                   "--scenario", windows_path(self.file), "--out", windows_path(self.out),
                   "--seven-zip", windows_path(pathlib.Path(os.environ["TARVO_BUILD_DIR"]) / "deps/7-Zip"),
                   "--scripts", windows_path(ROOT / "scripts"), "--faults", windows_path(plan)]
        environment = dict(os.environ, TARVO_LIMIT=str(seconds))
        with open(self.out / "output.txt", "w", encoding="utf-8") as output:
            return subprocess.Popen(command, stdout=output, stderr=output, env=environment)

    def results(self, process: subprocess.Popen):
        """The results as they come, until the process has ended."""
        path, place, ended = self.out / "results.jsonl", 0, False
        while not ended:
            ended = process.poll() is not None
            with open(path, "rb") if path.exists() else open(os.devnull, "rb") as file:
                file.seek(place)
                lines = file.read().split(b"\n")
            for line in lines[:-1]:
                place += len(line) + 1
                yield self.placed(json.loads(line.decode("utf-8", "replace")))
            if not ended:
                time.sleep(POLL_SECONDS)

    def placed(self, result: dict) -> dict:
        result["place"] = self.places.of(result.get("faults", {}).get("stack", ""))
        return result

    def broken(self, fault: dict, status: int) -> dict:
        """The result of the run that ended its process."""
        path = self.out / "transcript.json"
        trouble = f"ended with {status}"
        if path.exists():
            trouble = json.loads(path.read_text(encoding="utf-8")).get("trouble", trouble)
        return {"fault": fault, "trouble": trouble}

    def baseline(self) -> dict:
        """What a run without a fault calls; counted once for all lanes, so that their parts are those of one whole."""
        kept = pathlib.Path(self.options.out) / f"{self.scenario}.{self.language}.counted.json"
        if self.options.resume and kept.exists():
            return json.loads(kept.read_text(encoding="utf-8"))
        results = list(self.results(self.start(self.plan([{"count": True}]), SECONDS_OF_A_PROCESS)))
        if len(results) != 1:
            sys.exit(f"error: {self.scenario}.{self.language} does not run even without a fault; see {self.out}")
        kept.write_text(json.dumps(results[0]), encoding="utf-8")
        return results[0]

    def play(self, faults: list, undisturbed=None):
        """Yields (undisturbed result, result) for each fault. Each process has an undisturbed run of its own, unless one is
        given."""
        left, at_once = list(faults), 1 if self.options.slow or self.options.wrong else RUNS_OF_A_PROCESS
        while left:
            wait_for(self.options.pause)
            part, normal, done = left[:at_once], undisturbed, 0
            process = self.start(self.plan(part if undisturbed else [{}] + part),
                                 SECONDS_OF_A_PROCESS + SECONDS_OF_A_RUN * len(part))
            for result in self.results(process):
                if normal is None:
                    normal = result
                else:
                    yield normal, result
                    done += 1
            if normal is None or process.returncode == REFUSED:
                sys.exit(f"error: {self.scenario}.{self.language} does not start; see {self.out}")
            if (self.out / "stop.txt").exists():
                return
            if done < len(part):
                yield normal, self.broken(part[done], process.returncode)
                done += 1
            left = left[done:]

    def stop(self) -> None:
        """The run at hand is the last one."""
        (self.out / "stop.txt").touch()


def wait_for(file) -> None:
    while file and os.path.exists(file):
        time.sleep(5)


# ---- what was played, in OUT


def results_folder(options, scenario: str, language: str) -> pathlib.Path:
    return pathlib.Path(options.out) / f"{scenario}.{language}.{options.lane}"


class Results:
    """A file of results that can be cut off after each: an undisturbed one, those with faults that belong to it, and so
    on."""

    def __init__(self, folder: pathlib.Path):
        self.path, self.normal = folder / "raw.jsonl.gz", None

    def append(self, normal: dict, result: dict) -> None:
        lines = [{"result": result}] if normal is self.normal else [{"normal": normal}, {"result": result}]
        self.normal = normal
        with gzip.open(self.path, "at", encoding="utf-8", compresslevel=1) as file: # a member of its own
            file.write("".join(json.dumps(line) + "\n" for line in lines))

    def __iter__(self):
        normal = None
        try:
            with gzip.open(self.path, "rt", encoding="utf-8") as file:
                for line in file:
                    entry = json.loads(line)
                    normal = entry.get("normal", normal)
                    if "result" in entry and entry["result"].get("trouble") != f"ended with {REFUSED}":
                        yield normal, entry["result"]
        except (EOFError, ValueError):
            pass # it was cut off


def kept_results(options, scenario: str, language: str) -> dict:
    """What OUT has, the newest of each fault: name → (undisturbed result, result)."""
    found = {}
    paths = pathlib.Path(options.out).glob(f"{scenario}.{language}.*/raw.jsonl.gz")
    for path in sorted(paths, key=lambda path: path.stat().st_mtime):
        for normal, result in Results(path.parent):
            found[name_of(result["fault"])] = normal, result
    return found


def left_out(options, scenario: str, language: str) -> set:
    """With --resume what was played, with --wrong all but what is not as it must be."""
    done = kept_results(options, scenario, language) if options.resume or options.wrong else {}
    allowed = Allowed()
    return {name for name, (normal, result) in done.items()
            if options.resume or not is_wrong(judged(scenario, language, normal, result), allowed)}


def is_wrong(row: dict, allowed: Allowed) -> bool:
    return row["outcome"] in BAD and allowed.of(row) is None


def name_of(fault: dict) -> tuple:
    return fault["function"], fault["call"], fault["text"]


def all_points(options) -> dict:
    """(scenario, language) → the functions of its faults, one for each fault."""
    found = {}
    for scenario, language in runs(options):
        paths = list(pathlib.Path(options.out).glob(f"{scenario}.{language}.*/points.json"))
        if paths:
            newest = max(paths, key=lambda path: path.stat().st_mtime)
            found[scenario, language] = [name for name, _, _ in json.loads(newest.read_text(encoding="utf-8"))]
    return found


# ---- playing all of it, or a part


def runs(options):
    for scenario in options.scenario or SCENARIOS:
        for language in options.language or ("en", "zh"):
            if language == "en" or scenario in BOTH_LANGUAGES:
                yield scenario, language


def sweep(options) -> list:
    rows = []
    for scenario, language in runs(options):
        player = Player(options, scenario, language)
        undisturbed = player.baseline()
        faults = points(undisturbed["faults"], scenario, language)
        (player.out / "points.json").write_text(json.dumps([name_of(fault) for fault in faults]), encoding="utf-8")
        without = left_out(options, scenario, language)
        faults = [fault for fault in chosen(faults, options) if name_of(fault) not in without]
        started, played = time.time(), 0
        results = Results(player.out)
        if options.sample:
            results.path.unlink(missing_ok=True)
        for normal, result in player.play(faults, undisturbed if options.sample else None):
            results.append(normal, result)
            rows.append(judged(scenario, language, normal, result))
            played += 1
            if options.minutes and time.time() - started > 60 * options.minutes:
                player.stop()
        print(f"{scenario}.{language}: {played} of {len(faults)} faults in {time.time() - started:.0f} s", flush=True)
    return rows


def judged_again(options) -> list:
    return [judged(scenario, language, normal, result) for scenario, language in runs(options)
            for normal, result in kept_results(options, scenario, language).values()]


def chosen(faults: list, options) -> list:
    part, parts = map(int, options.part.split("/"))
    faults = [fault for fault in faults if not options.function or fnmatch.fnmatchcase(fault["function"], options.function)]
    if options.first:
        faults = [fault for fault in faults if fault["order"] < AGAIN]
    if not options.sample:
        ordered = sorted(faults, key=lambda fault: (fault["order"], hashlib.sha256(repr(fault).encode()).hexdigest()))
        return ordered[part - 1::parts]
    order = sorted(faults, key=lambda fault: hashlib.sha256((options.sample + json.dumps(fault, sort_keys=True))
                                                            .encode()).hexdigest())
    core = [fault for fault in faults if is_core(fault)]
    return core + [fault for fault in order if fault not in core][:options.count]


# Always in the sample: one of each way in which a submission was seen to go wrong.
CORE = {("CreateProcessW", 1), ("_wfopen", 1), ("fwrite", 1), ("WinHttpSendRequest", 1), ("CoCreateGuid", 1),
        ("WaitForSingleObject", 1)}


def is_core(fault: dict) -> bool:
    return (fault["function"], fault["call"]) in CORE and fault["kind"] in ("fail", "short")


def given_options():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--bin")
    parser.add_argument("--out")
    parser.add_argument("--scenario", action="append")
    parser.add_argument("--language", action="append")
    parser.add_argument("--function")
    parser.add_argument("--sample", help="only a part of the faults, chosen by this text, or by the module's content for "
                                         "'module'; then only what is severe counts")
    parser.add_argument("--first", action="store_true", help="only the first call from each place")
    parser.add_argument("--count", type=int, default=4, help="how many faults of a scenario beside the core")
    parser.add_argument("--part", default="1/1", metavar="N/OF", help="every OF-th fault, from the N-th on")
    parser.add_argument("--lane", default="0", help="a name for the results of what runs at the same time")
    parser.add_argument("--minutes", type=float, help="ends each scenario after so long; new places come first")
    parser.add_argument("--resume", action="store_true", help="leaves out what OUT has results for")
    parser.add_argument("--wrong", action="store_true", help="plays again what OUT has that is not as it must be, each "
                                                             "fault in a process of its own")
    parser.add_argument("--slow", action="store_true", help="a process for each fault, and nothing is shortened")
    parser.add_argument("--pause", metavar="FILE", help="starts no process while FILE is there")
    parser.add_argument("--again", action="store_true", help="judges what is in OUT, and plays nothing")
    parser.add_argument("--page", metavar="COUNTS", help="writes docs/faults.md; COUNTS has the counts before fixing")
    parser.add_argument("--counts", help="writes the counts into this file")
    parser.add_argument("--check", metavar="MODULE")
    return parser.parse_args()


def main() -> int:
    options = given_options()
    if options.check:
        return sweep_page.check(options.check)
    if options.sample == "module":
        options.sample = hashlib.sha256((pathlib.Path(options.bin) / "TarvoRendering.gup").read_bytes()).hexdigest()
        options.language = ["en"]
        options.scenario = ["submit", SCENARIOS[1 + int(options.sample[:4], 16) % 3]]
    rows = judged_again(options) if options.again else sweep(options)
    if options.counts:
        pathlib.Path(options.counts).write_text(json.dumps(sweep_page.counted(rows), indent=1) + "\n", encoding="utf-8")
    if options.page:
        sweep_page.write(rows, all_points(options), json.loads(pathlib.Path(options.page).read_text(encoding="utf-8")))
    return sweep_page.report(rows, SEVERE if options.sample else BAD)


if __name__ == "__main__":
    sys.exit(main())
