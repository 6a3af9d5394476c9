#!/usr/bin/env python3
"""wear_faults.py --bin BIN --out OUT [--openings N] [--submissions N] [--every K]: opens and submits in one process while
every K-th call of the functions below fails, and says what that left behind. Runs inside a Wine that is up. The exit status
is 1 when heap blocks or handles have grown, or when logs have become more than their rotation keeps."""

import argparse
import json
import os
import pathlib
import sys

import sweep

# Milder ones: a user lives to see them, and the dialog still opens.
MILD = ("CopyFileW", "CreateDirectoryW", "CreateFileW", "CreateProcessW", "GetDC", "GetFileAttributesExW",
        "GetFileInformationByHandle", "GetFileSizeEx", "GetTextExtentPoint32W", "GetWindowTextW", "LoadStringW",
        "MessageBoxExW", "SetDlgItemTextW", "SHGetFolderPathW", "CoCreateGuid", "WinHttpOpen", "WinHttpConnect",
        "WinHttpOpenRequest", "WinHttpSendRequest", "WinHttpReceiveResponse", "WinHttpReadData", "WinHttpQueryOption", "_wfopen",
        "_write", "fopen", "fwrite", "malloc", "wcstombs", "mbstowcs", "_waccess", "GetPrivateProfileStringW")
MOST_LOGS = 2 + 2 + 5


def plan(every: int) -> dict:
    table = sweep.import_table()
    return {"watched": {name: next(iter(table[name].values())) for name in MILD},
            "faults": [{"kind": "mixed", "call": every}]}


def problems_of(result: dict, logs: list) -> list:
    found = [f"{repeat['place']}: {name} {repeat[name]:+}" for repeat in result["repeats"]
             for name in ("heap_blocks_grown", "open_handles_grown") if repeat[name] > 0]
    if result["leaks"]:
        found.append(f"not released: {result['leaks']}")
    if len(logs) > MOST_LOGS:
        found.append(f"{len(logs)} log files")
    if result["exceptions"] or result["escaped"]:
        found.append(f"escaped: {result['exceptions']}")
    if not any(45 in box["text_numbers"] for box in result["boxes"]):
        found.append("the last submission, undisturbed, was not accepted")
    return found


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--bin", required=True)
    parser.add_argument("--out", required=True)
    parser.add_argument("--openings", type=int, default=500)
    parser.add_argument("--submissions", type=int, default=200)
    parser.add_argument("--every", type=int, default=397)
    options = parser.parse_args()
    player = sweep.Player(options, "wear", "en")
    scenario = json.loads((sweep.FAULTS / "wear.json").read_text(encoding="utf-8"))
    for step, times in zip(scenario["steps"], (options.openings, options.submissions)):
        step["repeat"]["times"] = times
    player.file = player.out / "wear.json"
    player.file.write_text(json.dumps(scenario), encoding="utf-8")
    status = player.start_plan(plan(options.every), 30 + 10 * (options.openings + options.submissions))
    results = player.results()
    if len(results) != 1:
        print(player.broken({}, status))
        return 1
    result = results[0]
    data = pathlib.Path(os.environ.get("PROGRAM_DATA_DIR", ""), "Tarvo Rendering/log1.3.5")
    logs = sorted(path.name for path in data.glob("*.log")) if data.is_dir() else []
    for repeat in result["repeats"]:
        print(f"{repeat['place']}: {repeat['times']} rounds, {repeat['rounds_undone']} ended early, in "
              f"{repeat['milliseconds'] / 1000:.0f} s; second half: {repeat['heap_blocks_grown']:+} blocks, "
              f"{repeat['heap_bytes_grown']:+} bytes, {repeat['open_handles_grown']:+} handles")
    print(f"{result['faults']['mixed']} faults; log files: {', '.join(logs)}")
    problems = problems_of(result, logs)
    print("\n".join(problems) or "nothing has grown")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
