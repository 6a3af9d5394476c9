#!/usr/bin/env python3
"""check_analysis_format.py FOLDER: every analysis text in FOLDER (N.json, as the tests of the analysis script leave them)
is valid JSON and fits docs/formats/analysis.schema.json. First the schema itself is tried: on documents that it has to
refuse."""

import copy
import json
import pathlib
import sys

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parent.parent
FEWEST_TEXTS = 100
MOST_SHOWN = 20

FULL = {
    "name": "C:\\a.max", "version": "21.0", "app_version": "2019",
    "missing_file": [{"path": "x"}], "same_file": [{"path": "x"}], "reference_file": [{"path": "x"}],
    "errors": {"error_code": [{"code": "1003"}]},
    "corona_setting": {"pass_limit": "0", "time_limit": "30", "noise_level_limit": "0.5"},
    "is_region": "false", "cameras": [{"name": "Camera001"}],
    "image_width": "640", "image_height": "480", "start_frame": "-5", "end_frame": "90", "image_format": "jpg",
    "vray_setting": {"camera_override_fov": True, "camera_fov": "360", "is_spherical": "true"},
    "gamma_out": "2.2",
}

# Place in FULL, and a value that may not stand there.
REFUSED = [
    ("name", 1), ("version", "21"), ("version", 21.0), ("app_version", "21"), ("app_version", 2019),
    ("missing_file", [{"path": ""}]), ("missing_file", ["x"]), ("missing_file", None), ("same_file", [{"path": 1}]),
    ("same_file", [{}]), ("reference_file", {}), ("reference_file", [{"path": "x", "size": 1}]),
    ("errors", []), ("errors", {}), ("errors/error_code", [{"code": 1003}]), ("errors/error_code", [{"code": "999"}]),
    ("errors/error_code", [{"code": "1003"}, {"code": "1003"}]),
    ("corona_setting/pass_limit", 0), ("corona_setting/pass_limit", "0.0"), ("corona_setting/time_limit", "1L"),
    ("corona_setting/noise_level_limit", "0.0"), ("corona_setting/noise_level_limit", ""),
    ("is_region", True), ("is_region", "yes"), ("cameras", [{}]), ("cameras", [{"name": None}]),
    ("image_width", 640), ("image_width", "0640"), ("image_height", "480.0"), ("start_frame", "10f"),
    ("start_frame", 0), ("end_frame", "undefined"), ("image_format", ".jpg"), ("image_format", "JPG"),
    ("vray_setting/camera_override_fov", "true"), ("vray_setting/camera_fov", 360.0),
    ("vray_setting/camera_fov", "undefined"), ("vray_setting/is_spherical", True), ("gamma_out", 2.2),
    ("gamma_out", ""), ("unknown", "1"),
]
OPTIONAL = {"corona_setting", "vray_setting", "gamma_out"}


def changed(place: str, value: object) -> dict:
    document = copy.deepcopy(FULL)
    at = document
    *above, last = place.split("/")
    for key in above:
        at = at[key]
    at[last] = value
    return document


def without(key: str) -> dict:
    return {other: value for other, value in FULL.items() if other != key}


def try_schema(validator: jsonschema.Draft7Validator) -> list[str]:
    problems = [f"refused though it is right: {error.message}" for error in validator.iter_errors(FULL)]
    for place, value in REFUSED:
        if validator.is_valid(changed(place, value)):
            problems.append(f"accepted though it is wrong: {place} = {value!r}")
    for key in FULL:
        if validator.is_valid(without(key)) != (key in OPTIONAL):
            problems.append(f"wrong answer without '{key}'")
    return problems


def check_text(path: pathlib.Path, validator: jsonschema.Draft7Validator) -> list[str]:
    try:
        document = json.loads(path.read_text(encoding="utf-8"))
    except ValueError as error:
        return [f"{path.name}: no JSON: {error}"]
    return [f"{path.name}: {'/'.join(map(str, error.absolute_path))}: {error.message}"
            for error in validator.iter_errors(document)]


def main() -> int:
    schema = json.loads((ROOT / "docs/formats/analysis.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft7Validator.check_schema(schema)
    validator = jsonschema.Draft7Validator(schema)
    texts = sorted(pathlib.Path(sys.argv[1]).rglob("*.json"))
    problems = try_schema(validator)
    if len(texts) < FEWEST_TEXTS:
        problems.append(f"only {len(texts)} texts in {sys.argv[1]}: did the tests of the script run?")
    problems += [problem for path in texts for problem in check_text(path, validator)]
    for problem in problems[:MOST_SHOWN]:
        print(problem, file=sys.stderr)
    print(f"{len(texts)} analysis texts and {len(REFUSED)} wrong documents checked: {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
