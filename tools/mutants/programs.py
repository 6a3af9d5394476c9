"""Runs the test programs of the mutated build: without a mutant to learn what each test reaches, and with one."""

import concurrent.futures
import dataclasses
import hashlib
import json
import re
import subprocess
import time

LANGUAGES = ["en", "zh", "utf8"]
NATIVE = ["sequence_tests", "portable_tests"]
WINDOWS = ["portable_tests.exe", "win32_tests", "plugin_tests", "module_tests"]
FAILED = re.compile(r"^\[  FAILED  \] (\w\S*\.\S+?)[,\s]", re.MULTILINE)
STARTED = re.compile(r"^\[ RUN      \] (\S+)", re.MULTILINE)
HANGS = re.compile(r"^HANGS: (\S+)", re.MULTILINE)


@dataclasses.dataclass
class Outcome:
    passed: bool
    # The test that failed, hung or crashed.
    culprit: str = ""
    how: str = ""
    output: str = ""


@dataclasses.dataclass
class Test:
    program: str
    name: str
    seconds: float
    reached: frozenset


class Lanes:
    """Wine prefixes with their screens, up for as long as this lives."""

    def __init__(self, workshop, count: int):
        script = ('. "$0/tools/lib/common.sh"; . "$0/tools/lib/wine.sh"; trap wine_down EXIT; wine_up "$1" >&2; '
                  'echo up; read -r _ || true')
        self.process = subprocess.Popen(["bash", "-c", script, str(workshop.tree), str(count)],
                                        env=workshop.environment(), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        text=True)
        if self.process.stdout.readline().strip() != "up":
            raise SystemExit("error: Wine did not start")

    def down(self):
        self.process.stdin.close()
        self.process.wait()


class Programs:
    def __init__(self, workshop, lanes: int):
        self.workshop = workshop
        self.lanes = lanes
        self.folder = workshop.folder
        self.tests = []
        tests = sorted((workshop.tree / "tests").rglob("*.cpp")) + sorted((workshop.tree / "tests").rglob("*.h"))
        self.tests_text = hashlib.sha256(b"".join(path.read_bytes() for path in tests)).hexdigest()
        self.reach_file = self.folder / "reach.json"

    # ---- one run

    def environment(self, lane: int, more: dict) -> dict:
        tree, builds = self.workshop.tree, self.workshop.builds
        result = dict(self.workshop.environment(), CTEST_RESOURCE_GROUP_0_WINE=f"id:{lane},slots:1",
                      TARVO_SEVEN_ZIP=f"Z:{builds}/deps/7-Zip", TARVO_SCENARIOS_CHECKED="1",
                      TARVO_REAL_SCENES="none", TMPDIR=str(self.folder / f"tmp-{lane}"), **more)
        (self.folder / f"tmp-{lane}").mkdir(exist_ok=True)
        result["TARVO_MUTANT_TREE"] = str(tree)
        return result

    def run_gtest(self, program: str, language: str, tests: list, lane: int, more: dict, seconds: float) -> Outcome:
        """`tests`: names, all when empty; `seconds` is the limit of the whole run."""
        tree, builds = self.workshop.tree, self.workshop.builds
        flags = self.folder / f"flags-{lane}.txt"
        flags.write_text("--gtest_filter=" + (":".join(tests) if tests else "*") + "\n")
        environment = self.environment(lane, more)
        if program in NATIVE:
            environment.update(TARVO_TEST_DATA=f"{tree}/tests/data",
                               TARVO_HOST_CHECK=f"{builds}/native-asan/host_check")
            command = [str(builds / "native-asan/bin" / program), f"--gtest_flagfile={flags}"]
        else:
            environment.update(TARVO_TEST_DATA=f"Z:{tree}/tests/data",
                               TARVO_HOST_CHECK=f"Z:{builds}/mingw-release/host_check", TARVO_LIMIT=str(int(seconds)))
            command = ["bash", str(tree / "tools/in_wine.sh"), language,
                       str(builds / "mingw-release/bin" / program_file(program)), f"--gtest_flagfile=Z:{flags}"]
        if "TARVO_MUTANT" in more:
            command.append("--gtest_fail_fast")
        return self.finish(command, environment, seconds)

    def finish(self, command: list, environment: dict, seconds: float) -> Outcome:
        try:
            done = subprocess.run(["nice", "-n", "5", *command], env=environment, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, timeout=seconds + 20,
                                  # A mutant may write where it is.
                                  cwd=environment["TMPDIR"], check=False, start_new_session=True)
        except subprocess.TimeoutExpired as late:
            output = (late.stdout or b"").decode("utf-8", "replace")
            return Outcome(False, last(STARTED, output), "no end", output)
        output = done.stdout.decode("utf-8", "replace")
        if done.returncode == 0:
            return Outcome(True, output=output)
        hanging, failed = last(HANGS, output), last(FAILED, output)
        if hanging:
            return Outcome(False, hanging, "hangs", output)
        if failed:
            return Outcome(False, failed, "fails", output)
        return Outcome(False, last(STARTED, output), f"ends with {done.returncode}", output)

    def run_scenario(self, name: str, lane: int, more: dict, seconds: float) -> Outcome:
        scenario, _, language = name.partition(".")
        tree, builds = self.workshop.tree, self.workshop.builds
        environment = self.environment(lane, dict(more, TARVO_LANGUAGE=language or "en", TARVO_LIMIT=str(int(seconds))))
        done = self.finish(["bash", str(tree / "tools/play.sh"), str(builds / "mingw-release/bin"),
                            str(tree / "tests/scenarios" / f"{scenario}.json"), str(self.folder / f"played-{lane}")],
                           environment, seconds)
        done.culprit = name
        return done

    def run(self, program: str, language: str, names: list, lane: int, more: dict, seconds: float) -> Outcome:
        if program == "scenarios":
            for name in names:
                done = self.run_scenario(name, lane, more, seconds)
                if not done.passed:
                    return done
            return Outcome(True)
        return self.run_gtest(program, language, names, lane, more, seconds)

    # ---- what reaches what

    def scenario_names(self) -> list:
        names = []
        for path in sorted((self.workshop.tree / "tests/scenarios").glob("*.json")):
            any_language = json.loads(path.read_text(encoding="utf-8")).get("language") == "any"
            names += [f"{path.stem}.{one}" for one in ("en", "zh")] if any_language else [path.stem]
        return names

    def sources_key(self) -> str:
        """Of the numbers of the mutants: while it stays, what was learned about a test still holds."""
        text = "\n".join(f"{mutant.number} {mutant.key}" for mutant in self.workshop.mutants)
        return hashlib.sha256(text.encode()).hexdigest()[:16]

    def learn(self, wanted: list) -> None:
        """Fills `tests`; runs only those that were not run for the same mutants before."""
        known = json.loads(self.reach_file.read_text()) if self.reach_file.is_file() else {}
        if known.get("key") != self.sources_key():
            known = {"key": self.sources_key(), "programs": {}}
        for program in wanted:
            old = known["programs"].setdefault(program, {})
            present = self.scenario_names() if program == "scenarios" else self.names_of(program)
            missing = [name for name in present if name not in old]
            for name in set(old) - set(present):
                del old[name]
            if missing:
                print(f"  {program}: {len(missing)} tests to learn", flush=True)
                def learn(lane, program=program, missing=missing):
                    part = missing[lane::self.lanes]
                    return (self.learn_scenarios(part, lane) if program == "scenarios"
                            else self.learn_program(program, part, lane))
                with concurrent.futures.ThreadPoolExecutor(self.lanes) as pool:
                    for part in pool.map(learn, range(self.lanes)):
                        old.update(part)
                self.reach_file.write_text(json.dumps(known))
        self.tests = [Test(program, name, seconds, frozenset(reached))
                      for program in wanted for name, (passed, seconds, reached) in known["programs"][program].items()
                      if passed]
        bad = [f"{program} {name}" for program in wanted
               for name, (passed, _, _) in known["programs"][program].items() if not passed]
        if bad:
            print(f"  not used, for they fail without a mutant: {', '.join(bad)}", flush=True)

    def names_of(self, program: str) -> list:
        listed = self.list_tests(program)
        names, suite, wanted = [], "", self.product_suites()
        for line in listed.splitlines():
            line = line.split("#")[0].rstrip()
            if line and not line.startswith(" ") and line.endswith("."):
                suite = line
            elif line.startswith("  ") and suite and "DISABLED_" not in suite + line and (
                    suite.strip(".").split("/")[-1] in wanted or suite.split("/")[0].strip(".") in wanted):
                names.append(suite + line.strip())
        return names

    def product_suites(self) -> set:
        """The suites that use the product; those of the stand-ins take long and add nothing."""
        tests = self.workshop.tree / "tests"
        texts = [(path, path.read_text(encoding="utf-8")) for path in tests.rglob("*_test.cpp")
                 if (tests / "standin") not in path.parents]
        text = "".join(text for path, text in texts if (tests / "product") in path.parents or "tarvo::" in text)
        return set(re.findall(r"^TEST(?:_F|_P)?\((\w+),", text, re.MULTILINE))

    def list_tests(self, program: str) -> str:
        builds = self.workshop.builds
        # Tests with a parameter for each file of the data are listed from the data.
        drive = "" if program in NATIVE else "Z:"
        environment = self.environment(0, {"TARVO_TEST_DATA": f"{drive}{self.workshop.tree}/tests/data"})
        if program in NATIVE:
            command = [str(builds / "native-asan/bin" / program), "--gtest_list_tests"]
        else:
            command = ["bash", str(self.workshop.tree / "tools/in_wine.sh"), "en",
                       str(builds / "mingw-release/bin" / program_file(program)), "--gtest_list_tests"]
        return self.finish(command, environment, 60).output.replace("\r", "")

    def reach_environment(self, lane: int, program: str) -> dict:
        marks, tests = self.folder / f"reach-{lane}.marks", self.folder / f"reach-{lane}.tests"
        marks.write_bytes(bytes(max(mutant.number for mutant in self.workshop.mutants) + 1))
        tests.write_text("")
        drive = "" if program in NATIVE else "Z:"
        return {"TARVO_MUTANT_REACH": f"{drive}{marks}", "TARVO_MUTANT_TESTS": f"{drive}{tests}",
                "TARVO_HANG_SECONDS": "300"}

    def learn_program(self, program: str, names: list, lane: int) -> dict:
        """One process for all tests; after one that ends it, another for those that are left."""
        found = {}
        while names:
            self.run_gtest(program, "en", names, lane, self.reach_environment(lane, program), 1500)
            for line in (self.folder / f"reach-{lane}.tests").read_text().splitlines():
                name, passed, milliseconds, *reached = line.split()
                found[name] = [passed == "1", int(milliseconds) / 1000, [int(one) for one in reached]]
            left = [name for name in names if name not in found]
            if left:
                found[left[0]] = [False, 0, []]
            names = left[1:]
        return found

    def learn_scenarios(self, names: list, lane: int) -> dict:
        found = {}
        for name in names:
            begin = time.monotonic()
            done = self.run_scenario(name, lane, self.reach_environment(lane, "scenarios"), 280)
            marks = (self.folder / f"reach-{lane}.marks").read_bytes()
            found[name] = [done.passed, time.monotonic() - begin,
                           [number for number, seen in enumerate(marks) if seen]]
        return found


def program_file(program: str) -> str:
    return program if program.endswith(".exe") else program + ".exe"


def last(pattern, text: str) -> str:
    found = pattern.findall(text)
    return found[-1] if found else ""
