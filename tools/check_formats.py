#!/usr/bin/env python3
"""check_formats.py [--runs FOLDER SCENARIO…]: holds the schemas of docs/formats against their examples, the documents
that are deliberately wrong (tests/data/formats) and the golden pairs of tests/data/submit. With --runs only against what
runs of the stage really wrote, posted and were answered: FOLDER/SCENARIO/transcript.json of each named scenario."""

import argparse
import copy
import json
import pathlib
import re
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
# The document's writer passes these on as they are; no client could use them. Name of the pair → what is wrong.
BEYOND = {"ao_radius_fraction": "/max_options/ao_subdivs", "app_version_null": "/app_version",
          "app_version_number": "/app_version", "camera_negative_frame_is_written": "/cameras/0/frame_to_render",
          "references_without_path": "/reference_file/0/path"}


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
            # One schema refers to another by its file name.
            resolver = jsonschema.RefResolver(path.as_uri(), schema)
            self.validators[path.name[:-len(".schema.json")]] = kind(schema, resolver=resolver)

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


def with_value(document, place: str, value):
    """The document with another value there; what is missing on the way is added."""
    changed = copy.deepcopy(document)
    *above, last = [int(part) if part.isdigit() else part for part in place.split("/")[1:]]
    at = changed
    for part in above:
        at = at.setdefault(part, {}) if isinstance(at, dict) else at[part]
    at[last] = value
    return changed


def wrong_documents(name: str):
    """Where each stands, what it says about itself, and the document: whole files, and changes of the typical example
    (in a reply: of the simplest)."""
    for path in sorted((WRONG / name).glob("*.json")):
        case = load(path)
        yield str(path.relative_to(ROOT)), case, case["document"]
    table = WRONG / f"{name}.values.json"
    examples = FORMATS / "examples" / name
    example = load(next(path for path in (examples / "typical.json", examples / "accepted.json") if path.is_file()))
    for case in load(table) if table.is_file() else []:
        place = f"{table.relative_to(ROOT)}: {case['at']} {json.dumps(case['value'])}"
        yield place, case, with_value(example, case.get("in", case["at"]), case["value"])


# A wrong document says what is wrong with it, so that it is refused for that reason and no other.
def check_wrong(checker: Checker) -> None:
    for name in checker.validators:
        for place, case, document in wrong_documents(name):
            checker.counts["wrong ones"] = checker.counts.get("wrong ones", 0) + 1
            errors = list(checker.validators[name].iter_errors(document))
            found = {(pointer(leaf), leaf.validator) for error in errors for leaf in leaves(error)}
            if not errors:
                checker.add(f"{place}: accepted, but wrong: {case['why']}")
            elif len(errors) > 1:
                checker.add(f"{place}: wrong in more than one way: {sorted(pointer(error) for error in errors)}")
            elif (case["at"], case["keyword"]) not in found:
                checker.add(f"{place}: refused for another reason: {sorted(found)}")


# "/cameras/0/name" → "/cameras/*/name"
def member(place: str) -> str:
    return re.sub(r"/\d+(?=/|$)", "/*", place)


def members(validator, schema: dict, place: str = ""):
    """Every member that the schema describes, as member() names it, and whether it must be there."""
    if "$ref" in schema:
        url, target = validator.resolver.resolve(schema["$ref"])
        validator.resolver.push_scope(url)
        yield from list(members(validator, target, place))
        validator.resolver.pop_scope()
        return
    for choice in schema.get("oneOf", []):
        yield from members(validator, choice, place)
    for name, below in schema.get("properties", {}).items():
        yield f"{place}/{name}", name in schema.get("required", [])
        yield from members(validator, below, f"{place}/{name}")
    if "items" in schema:
        yield from members(validator, schema["items"], place + "/*")


# A member without a wrong document may be described as anything.
def check_members(checker: Checker) -> None:
    for name, validator in checker.validators.items():
        tried = {member(case["at"]) for _, case, _ in wrong_documents(name)}
        for place, _ in dict.fromkeys(members(validator, validator.schema)):
            checker.counts["members"] = checker.counts.get("members", 0) + 1
            if place not in tried:
                checker.add(f"tests/data/formats/{name}: no document in which {place} is wrong")


def without(document, place: str):
    """The document without one member; None when it is not there."""
    changed = copy.deepcopy(document)
    *above, last = place.split("/")[1:]
    at = changed
    for part in above:
        at = at[0] if part == "*" and at else at.get(part) if isinstance(at, dict) else None
    return changed if isinstance(at, dict) and at.pop(last, None) is not None else None


# Each required member of the examples, taken out.
def check_absent(checker: Checker) -> None:
    for name, validator in checker.validators.items():
        required = [place for place, needed in members(validator, validator.schema) if needed]
        for path in sorted((FORMATS / "examples" / name).glob("*.json")):
            for place in required:
                document = without(load(path), place)
                if document is not None:
                    checker.counts["incomplete ones"] = checker.counts.get("incomplete ones", 0) + 1
                    if validator.is_valid(document):
                        checker.add(f"{path.relative_to(ROOT)}: accepted without {place}")


def check_beyond(checker: Checker, name: str, path: pathlib.Path, place: str) -> None:
    checker.counts["golden files beyond the schema"] = checker.counts.get("golden files beyond the schema", 0) + 1
    errors = checker.validators[name].iter_errors(load(path))
    if place not in {pointer(leaf) for error in errors for leaf in leaves(error)}:
        checker.add(f"{path.relative_to(ROOT)}: nothing is wrong with {place}")


def check_golden(checker: Checker) -> None:
    for ending, name in GOLDEN_FORMATS.items():
        files = sorted(GOLDEN.glob("*" + ending))
        if len(files) < FEWEST_GOLDEN:
            checker.add(f"tests/data/submit: {len(files)} files *{ending}, expected at least {FEWEST_GOLDEN}")
        for path in files:
            beyond = BEYOND.get(path.name[:-len(ending)])
            if beyond and name == "submit_document":
                check_beyond(checker, name, path, beyond)
            else:
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
        check_members(checker)
        check_absent(checker)
        check_golden(checker)
        check_codes(checker)
    for problem in checker.problems:
        print(problem)
    counted = ", ".join(f"{count} {kind}" for kind, count in sorted(checker.counts.items()))
    print(f"{len(checker.validators)} schemas, {counted or 'no documents'}: {len(checker.problems)} problems")
    return 1 if checker.problems else 0


if __name__ == "__main__":
    sys.exit(main())
