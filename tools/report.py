#!/usr/bin/env python3
"""Prints what a run of the main job came to, from the transcripts that the stage wrote.

Ends with 0 when the desktop client accepted the job and found nothing wrong with it, else with 1 and with
what to do about it.
"""

import argparse
import json
import pathlib
import sys
from typing import Any

ACCEPTED = 10001
NOTICE_LIST = "1019"
NO_CAMERA_QUESTION = 59
MAIN_DIALOG = 102
LABEL_WIDTH = 12

Json = dict[str, Any]
# What went wrong, and what to do about it.
Problem = tuple[str, str]

SEE_CHECK = "This is a bug of the plugin or of the client program: ./test shows which."
SEE_SCENE_FOLDER = "Make sure that nothing removes or changes files while the run lasts, and run again."
SEE_SEVEN_ZIP = "Remove the folder deps/7-Zip from the build folder and run again; it is then downloaded again."
CHECK_ADVICE = {
    "scene": SEE_SCENE_FOLDER,
    "document": SEE_SCENE_FOLDER,
    "archive": SEE_SEVEN_ZIP,
    "archive-test": SEE_SEVEN_ZIP,
    "archive-entry-size": SEE_SCENE_FOLDER,
}


class Unreadable(Exception):
    """The transcript cannot be used; the message says why."""


def dict_of(value: Any, *keys: str) -> Json:
    """The object under the keys, one inside the other; an empty one where there is none."""
    for key in keys:
        value = value.get(key) if isinstance(value, dict) else None
    return value if isinstance(value, dict) else {}


def list_of(value: Any, key: str) -> list[Any]:
    found = value.get(key) if isinstance(value, dict) else None
    return found if isinstance(found, list) else []


def objects_of(value: Any, key: str) -> list[Json]:
    return [entry for entry in list_of(value, key) if isinstance(entry, dict)]


def last_of(entries: list[Json]) -> Json:
    return entries[-1] if entries else {}


def one_line(text: Any) -> str:
    return " ".join(str(text).split())


def read_transcript(path: pathlib.Path) -> Json:
    try:
        transcript = json.loads(path.read_text(encoding="utf-8"))
    except FileNotFoundError:
        raise Unreadable(f"there is no transcript {path}: the stage stopped early") from None
    except (OSError, UnicodeDecodeError, ValueError, RecursionError) as error:
        raise Unreadable(f"the transcript {path} cannot be read: {one_line(error)}") from None
    if not isinstance(transcript, dict):
        raise Unreadable(f"the transcript {path} is not a transcript")
    return transcript


def show(label: str, *lines: str) -> None:
    for line in lines or ("none",):
        print(f"  {label:<{LABEL_WIDTH}}{line}")
        label = ""


def main_dialog(transcript: Json) -> Json:
    return dict_of(transcript, "dialog_state", "main")


def camera_rows(transcript: Json) -> list[Json]:
    return objects_of(main_dialog(transcript), "rows")


def analysed_cameras(transcript: Json) -> list[str]:
    """The cameras in what the analysis script returned; for a run whose dialog never filled its table."""
    for script in objects_of(transcript, "scripts"):
        try:
            analysis = json.loads(script.get("result") or "")
        except (TypeError, ValueError, RecursionError):
            continue
        cameras = objects_of(analysis, "cameras")
        if cameras:
            return [str(camera.get("name", "")) for camera in cameras]
    return []


def last_request(transcript: Json) -> Json:
    return last_of(objects_of(transcript, "requests"))


def failed_checks(request: Json) -> list[Json]:
    return [check for check in objects_of(request, "checks") if not check.get("ok")]


def reply_code(request: Json) -> Any:
    body = dict_of(request, "answer").get("body")
    try:
        return dict_of({"reply": json.loads(body or "")}, "reply").get("ret")
    except (TypeError, ValueError):
        return None


def show_module(transcript: Json) -> None:
    module = dict_of(transcript, "module")
    lines = [f"{module.get('class') or 'no class'}, version {module.get('version')}", str(module.get("file", ""))]
    show("module", *(lines if module else []))
    show("menu", *map(str, list_of(transcript, "menus")))


def show_scene(transcript: Json) -> None:
    show("scene", str(dict_of(transcript, "scene").get("path") or "none"))
    rows = camera_rows(transcript)
    names = [str(row.get("name", "")) for row in rows] or analysed_cameras(transcript)
    ticked = sum(1 for row in rows if row.get("checked"))
    show("cameras", *([f"{len(names)} found, {ticked} ticked: {', '.join(names)}"] if names else []))
    show("notices", *map(str, list_of(dict_of(main_dialog(transcript), "controls", NOTICE_LIST), "lines")))


def bytes_of(size: Any) -> str:
    return f"{size} bytes" if isinstance(size, int) and size >= 0 else "size unknown"


def check_result(request: Json, name: str) -> str:
    for check in objects_of(request, "checks"):
        if check.get("check") == name:
            return "passed" if check.get("ok") else "FAILED, " + one_line(check.get("detail", ""))
    return "not made"


def show_job(request: Json) -> None:
    job = dict_of(request, "job")
    entry = job.get("archiveEntry")
    show("archive", f"{job.get('archive') or 'none'}, {bytes_of(job.get('archiveSize'))}",
         f"7-Zip's test: {check_result(request, 'archive-test')}",
         f"holds {entry}, {bytes_of(job.get('archiveEntrySize'))}" if entry else "could not be listed")
    count = len(list_of(job, "cameras"))
    version = job.get("maxVersion") or "no version"
    show("document", str(job.get("document") or "none"),
         f"asks for {count} camera{'' if count == 1 else 's'} ({version})")


def show_exchange(request: Json) -> None:
    checks = objects_of(request, "checks")
    host = dict_of(request, "headers").get("Host", "the client")
    show("request", f"{request.get('method')} {request.get('path')} to {host}",
         *str(request.get("body", "")).splitlines(),
         f"{len(checks)} checks by the client, {len(failed_checks(request))} failed")
    answer = dict_of(request, "answer")
    text = one_line(answer.get("body", f"{answer.get('bytes')} bytes"))
    show("reply", f"status {answer.get('status')}: {text}" if answer else "none")


def show_boxes(transcript: Json) -> None:
    show("user told", *(one_line(box.get("text", "")) for box in objects_of(transcript, "boxes")))


def pictures(transcript: Json, folder: pathlib.Path) -> list[pathlib.Path]:
    return [folder / str(entry.get("name", "")) for entry in objects_of(transcript, "screenshots")]


def show_pictures(english: list[pathlib.Path], chinese: list[pathlib.Path]) -> None:
    show("pictures", *[f"{path} (English)" for path in english], *[f"{path} (Chinese)" for path in chinese])


def stage_problems(transcript: Json) -> list[Problem]:
    """Steps and expectations that failed, and exceptions that escaped from the module."""
    problems = [(f"{outcome.get('place')}: expected {one_line(outcome.get('expected'))}, "
                 f"got {one_line(outcome.get('got'))}",
                 "The step could not be done as the scenario says; run ./test.")
                for outcome in objects_of(transcript, "outcomes") if not outcome.get("held")]
    problems += [(f"an exception escaped from the module: {one_line(entry.get('what'))}",
                  "This is a bug of the plugin; run ./test.")
                 for entry in objects_of(transcript, "exceptions")]
    return problems


def opening_problem(transcript: Json, language: str) -> list[Problem]:
    opened = any(dialog.get("template") == MAIN_DIALOG for dialog in objects_of(transcript, "dialogs"))
    if opened and "rows" in main_dialog(transcript):
        return []
    return [(f"the {language} dialog did not open", "See what the user was told.")]


def packing_problems(transcript: Json) -> list[Problem]:
    return [(f"7-Zip {'ended with ' + str(run.get('exit_code')) if run.get('started') else 'did not start'}",
             SEE_SEVEN_ZIP)
            for run in objects_of(transcript, "processes")
            if not run.get("started") or run.get("exit_code") != 0]


def last_told(transcript: Json) -> str:
    return one_line(last_of(objects_of(transcript, "boxes")).get("text", ""))


def has_no_camera(transcript: Json) -> bool:
    """The plugin asked whether to go on without a camera; then nothing is ticked and nothing is sent."""
    asked = any(NO_CAMERA_QUESTION in list_of(box, "text_numbers") for box in objects_of(transcript, "boxes"))
    return asked and not last_request(transcript)


def nothing_sent(transcript: Json) -> Problem:
    return "nothing was sent to the client", last_told(transcript) or "The user was told nothing; run ./test."


def sending_problems(transcript: Json) -> list[Problem]:
    request = last_request(transcript)
    if has_no_camera(transcript):
        return []
    if not request:
        return [nothing_sent(transcript)]
    problems = [(f"the client found the {check.get('check')} wrong: {one_line(check.get('detail'))}",
                 CHECK_ADVICE.get(str(check.get("check")), SEE_CHECK)) for check in failed_checks(request)]
    if not objects_of(request, "checks"):
        problems.append(("the client checked nothing", SEE_CHECK))
    code = reply_code(request)
    if code != ACCEPTED:
        answered = "it gave no code" if code is None else f"it answered {code}"
        problems.append((f"the client did not accept the job ({answered})",
                         last_told(transcript)
                         or "The user was told nothing: the plugin does not know this answer."))
    return problems


def english_problems(transcript: Json) -> list[Problem]:
    opening = opening_problem(transcript, "English")
    rest = [] if opening else packing_problems(transcript) + sending_problems(transcript)
    return stage_problems(transcript) + opening + rest


def missing_pictures(paths: list[pathlib.Path], language: str) -> list[Problem]:
    if not paths:
        return [(f"there is no picture of the {language} dialog",
                 "See what the stage said above, and run again.")]
    return [(f"the picture {path} is missing", "Make sure that the disk is not full, and run again.")
            for path in paths if not path.is_file()]


def read_chinese(path: pathlib.Path | None) -> tuple[list[pathlib.Path], list[Problem]]:
    """The pictures of the Chinese dialog, and what was wrong with that part of the run."""
    if path is None:
        return [], []
    try:
        transcript = read_transcript(path)
    except Unreadable as error:
        return [], [(f"Chinese: {error}", "See what the stage said above, and run again.")]
    found = pictures(transcript, path.parent)
    problems = stage_problems(transcript) + opening_problem(transcript, "Chinese")
    return found, problems or missing_pictures(found, "Chinese")


def show_problems(problems: list[Problem]) -> None:
    for what, advice in problems:
        print(f"PROBLEM: {what}")
        print(f"         {advice}")


def report(english_path: pathlib.Path, chinese_path: pathlib.Path | None) -> int:
    transcript = read_transcript(english_path)
    english_pictures = pictures(transcript, english_path.parent)
    chinese_pictures, chinese_trouble = read_chinese(chinese_path)
    request = last_request(transcript)
    show_module(transcript)
    show_scene(transcript)
    if request:
        show_job(request)
        show_exchange(request)
    show_boxes(transcript)
    show_pictures(english_pictures, chinese_pictures)
    left_open = objects_of(transcript, "leaks")
    if left_open:
        show("left open", *(one_line(f"{leak.get('kind')} {leak.get('detail', '')}") for leak in left_open))
    problems = english_problems(transcript)
    # A dialog that did not open has no picture; that it did not open is said already.
    others = ([] if problems else missing_pictures(english_pictures, "English")) + chinese_trouble
    print()
    show_problems(problems + others)
    if not problems:
        print("the scene has no camera: the plugin said so, and nothing was submitted" if has_no_camera(transcript)
              else "the client accepted the job")
    return 1 if problems or others else 0


def parse_arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description="Reports on a run from the stage's transcripts.")
    parser.add_argument("--english", type=pathlib.Path, required=True, metavar="TRANSCRIPT")
    parser.add_argument("--chinese", type=pathlib.Path, metavar="TRANSCRIPT")
    return parser.parse_args()


def main() -> int:
    # A terminal in the C locale would refuse the names of cameras.
    sys.stdout.reconfigure(encoding="utf-8", errors="backslashreplace")
    arguments = parse_arguments()
    try:
        return report(arguments.english, arguments.chinese)
    except Unreadable as error:
        show_problems([(str(error), "See what the stage said above, and run again.")])
        return 1


if __name__ == "__main__":
    sys.exit(main())
