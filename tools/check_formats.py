#!/usr/bin/env python3
"""check_formats.py [--runs FOLDER SCENARIO…]: holds the schemas of docs/formats against their examples, the documents
that are deliberately wrong (tests/data/formats) and the golden pairs of tests/data/submit. With --runs only against what
runs of the stage really wrote, posted and were answered: FOLDER/SCENARIO/transcript.json of each named scenario."""

import argparse
import json
import pathlib
import sys

from make_guide import reply_codes

try:
    import jsonschema
except ImportError:
    sys.exit("error: this Python has no jsonschema\n       Install the package python3-jsonschema, and use Debian's own "
             "Python (/usr/bin/python3).")

ROOT = pathlib.Path(__file__).resolve().parent.parent
FORMATS = ROOT / "docs/formats"
WRONG = ROOT / "tests/data/formats"
GOLDEN = ROOT / "tests/data/submit"
# Ending of the golden files → format.
GOLDEN_FORMATS = {".out.json": "submit_document", ".body.json": "request"}
FEWEST_GOLDEN = 48


def load(path: pathlib.Path):
    return json.loads(path.read_text(encoding="utf-8"))


class Checker:
    def __init__(self) -> None:
        self.problems = []
        self.counts = {}
        self.validators = {}
        for path in sorted(FORMATS.glob("*.schema.json")):
            schema = load(path)
            kind = jsonschema.validators.validator_for(schema)
            try:
                kind.check_schema(schema)
            except jsonschema.SchemaError as error:
                sys.exit(f"{path.relative_to(ROOT)}: no schema: {pointer(error)}: {error.message}")
            self.validators[path.name[:-len(".schema.json")]] = kind(schema)

    def add(self, problem: str) -> None:
        self.problems.append(problem)

    def accept(self, name: str, document, place: str, kind: str) -> None:
        """Notes every error of a document that must fit."""
        self.counts[kind] = self.counts.get(kind, 0) + 1
        for error in self.validators[name].iter_errors(document):
            self.add(f"{place}: does not fit {name}: {pointer(error)}: {error.message[:200]}")


def pointer(error) -> str:
    return "/" + "/".join(str(part) for part in error.absolute_path)


def check_examples(checker: Checker) -> None:
    for name in checker.validators:
        examples = sorted((FORMATS / "examples" / name).glob("*.json"))
        if not examples:
            checker.add(f"docs/formats/examples/{name}: no example")
        for path in examples:
            checker.accept(name, load(path), str(path.relative_to(ROOT)), "examples")


def leaves(error):
    """The error itself and, below "oneOf" and the like, what lies behind it."""
    yield error
    for deeper in error.context or []:
        yield from leaves(deeper)


# A wrong document says what is wrong with it, so that it is refused for that reason and no other.
def check_wrong(checker: Checker) -> None:
    for name in checker.validators:
        wrong = sorted((WRONG / name).glob("*.json"))
        if not wrong:
            checker.add(f"tests/data/formats/{name}: no wrong document")
        for path in wrong:
            place, case = path.relative_to(ROOT), load(path)
            checker.counts["wrong ones"] = checker.counts.get("wrong ones", 0) + 1
            errors = list(checker.validators[name].iter_errors(case["document"]))
            found = {(pointer(leaf), leaf.validator) for error in errors for leaf in leaves(error)}
            if not errors:
                checker.add(f"{place}: accepted, but wrong: {case['why']}")
            elif len(errors) > 1:
                checker.add(f"{place}: wrong in more than one way: {sorted(pointer(error) for error in errors)}")
            elif (case["at"], case["keyword"]) not in found:
                checker.add(f"{place}: refused for another reason: {sorted(found)}")


def check_golden(checker: Checker) -> None:
    for ending, name in GOLDEN_FORMATS.items():
        files = sorted(GOLDEN.glob("*" + ending))
        if len(files) < FEWEST_GOLDEN:
            checker.add(f"tests/data/submit: {len(files)} files *{ending}, expected at least {FEWEST_GOLDEN}")
        for path in files:
            checker.accept(name, load(path), str(path.relative_to(ROOT)), "golden files")


def check_codes(checker: Checker) -> None:
    listed = checker.validators["reply"].schema["properties"]["ret"]["enum"]
    known = [row[0] for row in reply_codes()]
    if listed != known:
        checker.add(f"docs/formats/reply.schema.json: lists {listed}, the plugin knows {known}")


def check_run(checker: Checker, transcript_file: pathlib.Path) -> None:
    transcript, run = load(transcript_file), transcript_file.parent.name
    for number, request in enumerate(transcript.get("requests", []), 1):
        if request.get("read", True):
            checker.accept("request", json.loads(request["body"]), f"{run}: request {number}", "requests")
        answer = request.get("answer") or {}
        if request.get("mode") == "reply" and answer.get("body"):
            check_answer(checker, answer["body"], f"{run}: answer {number}")
    for file in transcript.get("files", []):
        if file["name"].startswith("json/") and file["name"].endswith(".json"):
            checker.accept("submit_document", json.loads(file["text"]), f"{run}: {file['name']}", "submit documents")


# Scenarios may have the client answer anything, a hundred thousand brackets too; what they make of a known code has to
# fit.
def check_answer(checker: Checker, body: str, place: str) -> None:
    try:
        answer = json.loads(body)
    except (ValueError, RecursionError):
        return
    if isinstance(answer, dict) and answer.get("ret") in [row[0] for row in reply_codes()]:
        checker.accept("reply", answer, place, "replies")


def check_runs(checker: Checker, folder: pathlib.Path, scenarios: list) -> None:
    for name in scenarios:
        transcript = folder / name / "transcript.json"
        if transcript.is_file():
            check_run(checker, transcript)
        else:
            checker.add(f"{transcript}: the run has left no transcript")
    for kind in ("requests", "submit documents", "replies"):
        if not checker.counts.get(kind):
            checker.add(f"{folder}: the runs have left no {kind}")


def main() -> int:
    parser = argparse.ArgumentParser(description="Holds the schemas against documents.")
    parser.add_argument("--runs", nargs="+", metavar=("FOLDER", "SCENARIO"), help="what runs of the stage have left")
    arguments = parser.parse_args()
    sys.stdout.reconfigure(encoding="utf-8", errors="backslashreplace")
    checker = Checker()
    if arguments.runs:
        check_runs(checker, pathlib.Path(arguments.runs[0]), arguments.runs[1:])
    else:
        check_examples(checker)
        check_wrong(checker)
        check_golden(checker)
        check_codes(checker)
    for problem in checker.problems:
        print(problem)
    counted = ", ".join(f"{count} {kind}" for kind, count in sorted(checker.counts.items()))
    print(f"{len(checker.validators)} schemas, {counted or 'no documents'}: {len(checker.problems)} problems")
    return 1 if checker.problems else 0


if __name__ == "__main__":
    sys.exit(main())
