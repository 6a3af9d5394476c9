"""Runs mutants against the tests that reach them, and keeps what came out."""

import collections
import concurrent.futures
import hashlib
import json
import queue
import re
import threading
import time

from mutants.model import LAYERS
from mutants.programs import LANGUAGES, NATIVE, WINDOWS

# The first round takes at most so many seconds of tests of one program, so that most mutants end there.
FIRST_SECONDS = 3.0
# Without the wide run: at most so many seconds of the quickest tests, and none that takes longer than a few by itself.
NARROW_SECONDS = 25.0
LONGEST_SECONDS = 5.0
HANG_SECONDS = 8


def within(tests: list, seconds: float) -> list:
    """The first tests that together take so long; at least one."""
    found, spent = [], 0.0
    for test in tests:
        spent += test.seconds
        if found and spent > seconds:
            break
        found.append(test)
    return found


class Accepted:
    """The list of survivors that nobody could notice: blocks of a heading, the line of code, and the reason."""

    def __init__(self, path):
        self.reasons = {}
        blocks = path.read_text(encoding="utf-8").split("\n\n") if path.is_file() else []
        for block in blocks:
            lines = [line for line in block.splitlines() if line and not line.startswith("#")]
            if len(lines) >= 3:
                head = tuple(part.strip() for part in lines[0].split(" | "))
                self.reasons[(*head, " ".join(lines[1].split()))] = " ".join(line.strip() for line in lines[2:])
        self.used = set()

    def reason(self, mutant) -> str:
        key = (mutant.file, mutant.function, mutant.change, " ".join(mutant.line_text.split()))
        if key in self.reasons:
            self.used.add(key)
        return self.reasons.get(key, "")


class Results:
    """One line for each verdict, in a file that a later run goes on with."""

    def __init__(self, path):
        self.path = path
        self.verdicts = {}
        self.lock = threading.Lock()
        if path.is_file():
            for line in path.read_text().splitlines():
                entry = json.loads(line)
                self.verdicts[entry["key"]] = entry

    def keep(self, mutant, verdict: str, by: str, tests: str) -> None:
        entry = {"key": mutant.key, "verdict": verdict, "by": by, "tests": tests, "what": mutant.describe(),
                 "line": mutant.line_text}
        with self.lock:
            self.verdicts[mutant.key] = entry
            with self.path.open("a", encoding="utf-8") as file:
                file.write(json.dumps(entry) + "\n")

    def verdict(self, mutant, tests: str) -> str:
        """Empty when it has to be run: a survivor is run again once the tests that reach it are others."""
        entry = self.verdicts.get(mutant.key)
        if entry is None or (entry["verdict"] != "killed" and entry["tests"] != tests):
            return ""
        return entry["verdict"]


class Runner:
    def __init__(self, programs, results, lanes: int, wide: bool):
        self.programs = programs
        self.results = results
        self.wide = wide
        self.lanes = queue.Queue()
        for lane in range(lanes):
            self.lanes.put(lane)
        self.lane_count = lanes
        self.healthy = {}
        # How many mutants of a function, and of a file, a test has killed: such tests run first.
        self.kills = collections.defaultdict(collections.Counter)
        self.begin = time.monotonic()

    def reaching(self, mutant) -> dict:
        found = collections.defaultdict(list)
        for test in self.programs.tests:
            if mutant.number in test.reached:
                found[test.program].append(test)
        kills, near = self.kills[mutant.file, mutant.function], self.kills[mutant.file]
        for tests in found.values():
            tests.sort(key=lambda test: (-kills[test.name], -near[test.name], test.seconds))
        return found

    def tests_key(self, reaching: dict) -> str:
        """Of the tests that reach a mutant and how far a run goes, and of what all tests say: a test can change under its name."""
        names = sorted(f"{test.program} {test.name}" for tests in reaching.values() for test in tests)
        return hashlib.sha256("\n".join([self.programs.tests_text, str(self.wide), *names]).encode()).hexdigest()[:16]

    def steps(self, reaching: dict) -> list:
        """(program, language, tests): what is cheap first; the last ones only when `wide`."""
        first, then, last = [], [], []
        for program in [*NATIVE, *WINDOWS]:
            # The native program runs the same tests of the files without Windows.
            tests = [] if program == "portable_tests.exe" and "portable_tests" in reaching else reaching.get(program, [])
            few = within(tests, FIRST_SECONDS)
            rest = tests[len(few):]
            if not self.wide:
                rest = within([test for test in rest if test.seconds < LONGEST_SECONDS], NARROW_SECONDS)
            if few:
                first.append((program, "en", few))
            if rest:
                then.append((program, "en", rest))
        for program in ("portable_tests.exe", "win32_tests"):
            for language in LANGUAGES if program.startswith("portable") else LANGUAGES[1:]:
                if reaching.get(program):
                    last.append((program, language, reaching[program]))
        for test in reaching.get("scenarios", []):
            last.append(("scenarios", "", [test]))
        return first + then + (last if self.wide else [])

    def run_step(self, step, lane: int, more: dict):
        program, language, tests = step
        seconds = sum(test.seconds for test in tests)
        limit = 280 if program == "scenarios" else seconds * 6 + 40
        more = dict(more, TARVO_HANG_SECONDS=str(int(max([HANG_SECONDS, *(test.seconds * 6 for test in tests)]))))
        return self.programs.run(program, language, [test.name for test in tests], lane, more, limit)

    def is_healthy(self, program: str, language: str, test, lane: int) -> bool:
        """Whether the test passes alone without a mutant: otherwise its failing shows nothing."""
        key = (program, language, test.name)
        if key not in self.healthy:
            self.healthy[key] = self.run_step((program, language, [test]), lane, {"TARVO_MUTANT": "0"}).passed
        return self.healthy[key]

    def near(self, mutant, mutants: list) -> dict:
        """The tests that come to the function of a mutant that has no switch, or to code that names the constant."""
        word = re.compile(rf"\b{re.escape(mutant.function)}\b")
        numbers = {one.number for one in mutants if (one.file, one.function) == (mutant.file, mutant.function)
                   or word.search(one.line_text)}
        found = collections.defaultdict(list)
        for test in self.programs.tests:
            if not numbers.isdisjoint(test.reached):
                found[test.program].append(test)
        for tests in found.values():
            tests.sort(key=lambda test: test.seconds)
        return found

    def judge(self, mutant, reaching: dict, has_switch=True) -> tuple:
        if not reaching:
            return "survived", "no test comes here", self.tests_key(reaching)
        lane = self.lanes.get()
        try:
            for step in self.steps(reaching):
                program, language, tests = step
                for _ in range(4):
                    tests = [test for test in tests if self.healthy.get((program, language, test.name), True)]
                    if not tests:
                        break
                    done = self.run_step((program, language, tests), lane, {"TARVO_MUTANT": str(mutant.number)})
                    if done.passed:
                        break
                    culprit = [test for test in tests if test.name == done.culprit] or tests[:1]
                    # Without a switch the test is asked again: no run shows how it does without the mutant.
                    if (self.is_healthy(program, language, culprit[0], lane) if has_switch
                            else not self.run_step((program, language, culprit), lane, {}).passed):
                        for place in ((mutant.file, mutant.function), mutant.file):
                            self.kills[place][done.culprit] += 1
                        return ("killed", f"{program} {language} {done.culprit} {done.how}".replace("  ", " "),
                                self.tests_key(reaching))
            return "survived", f"{sum(map(len, reaching.values()))} tests come here", self.tests_key(reaching)
        finally:
            self.lanes.put(lane)

    def run(self, mutants: list) -> None:
        done = 0
        todo = [mutant for mutant in mutants
                if not self.results.verdict(mutant, self.tests_key(self.reaching(mutant)))]
        print(f"  {len(mutants)} mutants, {len(mutants) - len(todo)} of them judged before", flush=True)

        def one(mutant):
            return mutant, self.judge(mutant, self.reaching(mutant))
        with concurrent.futures.ThreadPoolExecutor(self.lane_count) as pool:
            for future in concurrent.futures.as_completed([pool.submit(one, mutant) for mutant in todo]):
                mutant, (verdict, by, tests) = future.result()
                self.results.keep(mutant, verdict, by, tests)
                done += 1
                if verdict != "killed":
                    print(f"  survives: {mutant.describe()}\n            {mutant.line_text}\n            {by}", flush=True)
                if done % 25 == 0:
                    minutes = (time.monotonic() - self.begin) / 60
                    print(f"  {done} of {len(todo)} after {minutes:.0f} minutes", flush=True)

    def run_alone(self, mutants: list, workshop) -> None:
        """Those without a switch, each with a build of its own."""
        todo = [mutant for mutant in mutants
                if not self.results.verdict(mutant, self.tests_key(self.near(mutant, workshop.mutants)))]
        for mutant in todo:
            reaching = self.near(mutant, workshop.mutants)
            verdict, by, tests = "no build", "the compiler refuses it", self.tests_key(reaching)
            if workshop.build_alone(mutant):
                verdict, by, tests = self.judge(mutant, reaching, has_switch=False)
            self.results.keep(mutant, verdict, by, tests)
            print(f"  {verdict}: {mutant.describe()}\n            {mutant.line_text}\n            {by}", flush=True)
        if todo:
            workshop.build()


def report(mutants: list, results: Results, accepted: Accepted) -> int:
    """The score of each layer and the survivors that no list explains; gives their number."""
    counts = collections.defaultdict(collections.Counter)
    survivors = []
    for mutant in mutants:
        entry = results.verdicts.get(mutant.key)
        if accepted.reason(mutant) and (entry is None or entry["verdict"] == "survived"):
            counts[mutant.layer]["accepted"] += 1
        elif entry is None:
            counts[mutant.layer]["not run"] += 1
        elif entry["verdict"] == "no build":
            counts[mutant.layer]["no build"] += 1
        elif entry["verdict"] == "killed":
            counts[mutant.layer]["killed"] += 1
        else:
            counts[mutant.layer]["survived"] += 1
            survivors.append((mutant, entry))
    print(f"\n{'layer':<10} {'mutants':>7} {'killed':>7} {'survived':>8} {'accepted':>8} {'no build':>8} {'not run':>7} {'raw':>7} {'score':>7}")
    total = collections.Counter()
    for layer in [*LAYERS, "all"]:
        count = total if layer == "all" else counts[layer]
        total.update(counts[layer] if layer != "all" else {})
        judged = count["killed"] + count["survived"]
        score = percent(count["killed"], judged)
        raw = percent(count["killed"], judged + count["accepted"])
        print(f"{layer:<10} {sum(count.values()):>7} {count['killed']:>7} {count['survived']:>8} "
              f"{count['accepted']:>8} {count['no build']:>8} {count['not run']:>7} {raw:>7} {score:>7}")
    for mutant, entry in survivors:
        print(f"survives: {mutant.describe()}\n          {mutant.line_text}\n          {entry['by']}")
    return len(survivors)


def percent(part: int, whole: int) -> str:
    return f"{100 * part / whole:.1f} %" if whole else "-"
