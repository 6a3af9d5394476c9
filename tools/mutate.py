#!/usr/bin/env python3
"""mutate.py: changes one token of the product at a time and says which changes no test notices.

All mutants are built at once: each lies behind a switch that an environment variable turns on (tools/mutants), so a
mutant costs no build, except the few in constant expressions: they are built one by one at the end. A mutant is run
against the tests that reach it, the quick ones first; a survivor also against the slow ones and in the other languages,
with --scenarios against those too. Verdicts are kept in the build directory and a later run goes on with them; a
survivor is run again when the tests that reach it have changed.

tools/mutate.py --seed 1 --count 600     a random sample over all layers
tools/mutate.py --file scene/scene_data.cpp --all
Needs the Debian package python3-clang. Exit status 1 when a mutant survives that tools/mutants_accepted.txt does not list.
"""

import argparse
import collections
import os
import pathlib
import random
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

try:
    import clang.cindex  # noqa: F401
except ImportError:
    sys.exit("error: libclang for Python is missing. Install it: apt-get install python3-clang; run with /usr/bin/python3.")

from mutants.build import ROOT, Workshop  # noqa: E402
from mutants.model import LAYERS  # noqa: E402
from mutants.programs import NATIVE, WINDOWS, Lanes, Programs  # noqa: E402
from mutants.score import Accepted, Results, Runner, report  # noqa: E402


def options():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=600, help="mutants to choose by the seed")
    parser.add_argument("--all", action="store_true", help="every mutant instead of a sample")
    parser.add_argument("--layer", choices=LAYERS)
    parser.add_argument("--file", help="only the mutants of this file")
    parser.add_argument("--lanes", type=int, default=2, help="mutants that run at the same time")
    parser.add_argument("--narrow", action="store_true", help="no survivor against the slow tests and other languages, none that needs a "
                                                             "build of its own")
    parser.add_argument("--scenarios", action="store_true", help="survivors against the scenarios too")
    parser.add_argument("--report", action="store_true", help="only the scores of what was judged before")
    return parser.parse_args()


def chosen(mutants: list, wanted) -> list:
    mutants = [mutant for mutant in mutants if wanted.layer in (None, mutant.layer)
               and wanted.file in (None, mutant.file)]
    if wanted.all or wanted.count >= len(mutants):
        return mutants
    # By key, so that the same seed gives the same sample as long as the sources stay.
    return random.Random(wanted.seed).sample(sorted(mutants, key=lambda mutant: mutant.key), wanted.count)


def main() -> int:
    wanted = options()
    folder = pathlib.Path(os.environ.get("TARVO_BUILD_DIR", ROOT / "build")).resolve() / "mutants"
    workshop = Workshop(folder)
    print("== The mutated copy", flush=True)
    workshop.prepare()
    results = Results(folder / "results.jsonl")
    accepted = Accepted(ROOT / "tools/mutants_accepted.txt")
    sample = chosen(workshop.mutants, wanted)
    layers = collections.Counter(mutant.layer for mutant in workshop.mutants)
    print(f"== {len(workshop.mutants)} mutants: {', '.join(f'{layer} {layers[layer]}' for layer in LAYERS)}")
    if not wanted.report:
        print("== Building it", flush=True)
        workshop.build()
        lanes = Lanes(workshop, wanted.lanes)
        try:
            programs = Programs(workshop, wanted.lanes)
            print("== What each test reaches", flush=True)
            programs.learn([*NATIVE, *WINDOWS, *(["scenarios"] if wanted.scenarios else [])])
            print("== Running", flush=True)
            runner = Runner(programs, results, wanted.lanes, not wanted.narrow)
            # An accepted one would be run against every test that there is.
            wanting = [mutant for mutant in sample if not accepted.reason(mutant)]
            runner.run([mutant for mutant in wanting if mutant.key not in workshop.without_switch])
            if not wanted.narrow:
                runner.run_alone([mutant for mutant in wanting if mutant.key in workshop.without_switch], workshop)
        finally:
            lanes.down()
    return 1 if report(sample, results, accepted) else 0


if __name__ == "__main__":
    sys.exit(main())
