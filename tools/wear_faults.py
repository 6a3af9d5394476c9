#!/usr/bin/env python3
"""wear_faults.py --bin BIN --out OUT [--openings N] [--submissions N] [--whole N] [--one-in K]: opens and submits in one
process while one in K calls of the functions below fails, at distances that differ, and says what that left behind. Runs
inside a Wine that is up. The exit status is 1 when heap blocks or handles have grown, when logs have become more than their
rotation keeps, or when fewer than --whole submissions came through whole."""

import argparse
import json
import os
import pathlib
import sys

import sweep
from sweep_tables import FAULTS, import_table

# Milder ones: a user lives to see them, and the dialog still opens.
MILD = ("CopyFileW", "CreateDirectoryW", "CreateFileW", "CreateProcessW", "GetDC", "GetFileAttributesExW",
        "GetFileInformationByHandle", "GetFileSizeEx", "GetTextExtentPoint32W", "GetWindowTextW", "LoadStringW",
        "MessageBoxExW", "SetDlgItemTextW", "SHGetFolderPathW", "CoCreateGuid", "WinHttpOpen", "WinHttpConnect",
        "WinHttpOpenRequest", "WinHttpSendRequest", "WinHttpReceiveResponse", "WinHttpReadData", "WinHttpQueryOption", "_wfopen",
        "_write", "fopen", "fwrite", "malloc", "wcstombs", "mbstowcs", "_waccess", "GetPrivateProfileStringW")
MOST_LOGS = 2 + 2 + 5


def plan(one_in: int) -> dict:
    table = import_table()
    return {"watched": {name: next(iter(table[name].values())) for name in MILD},
            "faults": [{"kind": "mixed", "call": one_in}]}


def whole_submissions(result: dict) -> int:
    """Those that the client could use; the last one, undisturbed, is not counted."""
    return sum(1 for request in result["requests"] if request["ok"]) - 1


def log_files() -> list:
    """(name, bytes) in the lane's folder of logs."""
    lane = os.environ.get("CTEST_RESOURCE_GROUP_0_WINE", "id:0,").split(":")[1].split(",")[0]
    prefix = pathlib.Path(os.environ["TARVO_BUILD_DIR"]) / ("wine" if lane == "0" else f"wine-{lane}")
    folder = prefix / "drive_c/ProgramData/Tarvo Rendering/log1.3.5"
    return sorted((path.name, path.stat().st_size) for path in folder.glob("*.log"))


def problems_of(result: dict, logs: list, wanted: int) -> list:
    found = [f"{repeat['place']}: {name} {repeat[name]:+}" for repeat in result["repeats"]
             for name in ("heap_blocks_grown", "open_handles_grown") if repeat[name] > 0]
    if result["leaks"]:
        found.append(f"not released: {result['leaks']}")
    if len(logs) > MOST_LOGS:
        found.append(f"{len(logs)} log files")
    if result["exceptions"] or result["escaped"]:
        found.append(f"escaped: {result['exceptions']}")
    if whole_submissions(result) < wanted:
        found.append(f"{whole_submissions(result)} whole submissions")
    if not any(45 in box["text_numbers"] for box in result["boxes"]):
        found.append("the last submission, undisturbed, was not accepted")
    return found


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--bin", required=True)
    parser.add_argument("--out", required=True)
    parser.add_argument("--openings", type=int, default=500)
    parser.add_argument("--submissions", type=int, default=320)
    parser.add_argument("--whole", type=int, default=200)
    parser.add_argument("--one-in", type=int, default=1500)
    options = parser.parse_args()
    options.lane, options.slow = "0", False
    player = sweep.Player(options, "wear", "en")
    scenario = json.loads((FAULTS / "wear.json").read_text(encoding="utf-8"))
    for step, times in zip(scenario["steps"], (options.openings, options.submissions)):
        step["repeat"]["times"] = times
    player.file = player.out / "wear.json"
    player.file.write_text(json.dumps(scenario), encoding="utf-8")
    process = player.start(plan(options.one_in), 30 + 10 * (options.openings + options.submissions))
    results = list(player.results(process))
    if len(results) != 1:
        print(player.broken({}, process.returncode))
        return 1
    result = results[0]
    logs = log_files()
    for repeat in result["repeats"]:
        print(f"{repeat['place']}: {repeat['times']} rounds, {repeat['rounds_undone']} ended early, in "
              f"{repeat['milliseconds'] / 1000:.0f} s; second half: {repeat['heap_blocks_grown']:+} blocks, "
              f"{repeat['heap_bytes_grown']:+} bytes, {repeat['open_handles_grown']:+} handles")
    print(f"{result['faults']['mixed']} faults, {whole_submissions(result)} whole submissions; log files: "
          + ", ".join(f"{name} {size // 1024} KB" for name, size in logs))
    problems = problems_of(result, logs, options.whole)
    print("\n".join(problems) or "nothing has grown")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
