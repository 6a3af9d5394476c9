"""What may fail, and how: tests/faults/imports.txt and host_calls.txt, what may come of it (allowed.txt), and the faults
for the calls that a run made."""

import fnmatch
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
FAULTS = ROOT / "tests/faults"
# Where texts, code pages or names matter, the Chinese run has these fail too.
BOTH_LANGUAGES = ("submit", "edit_cameras")
TEXT_FUNCTIONS = re.compile(r"LoadStringW|MultiByte|WideChar|setlocale|mbstowcs|wcstombs|CharUpper|_mkdir|_access|fopen|"
                            r"GetPrivateProfile|CreateProcessW|GetCPInfo|MessageBoxExW|GetWindowTextW")
ERRORS = {
    "FILE_NOT_FOUND": 2, "ACCESS_DENIED": 5, "INVALID_HANDLE": 6, "NOT_ENOUGH_MEMORY": 8, "SHARING_VIOLATION": 32,
    "INVALID_PARAMETER": 87, "DISK_FULL": 112, "INVALID_NAME": 123, "MOD_NOT_FOUND": 126, "PROC_NOT_FOUND": 127,
    "ALREADY_EXISTS": 183, "NO_UNICODE_TRANSLATION": 1113, "INVALID_WINDOW_HANDLE": 1400, "CONTROL_ID_NOT_FOUND": 1421,
    "RESOURCE_TYPE_NOT_FOUND": 1813, "RESOURCE_NAME_NOT_FOUND": 1814, "WINHTTP_TIMEOUT": 12002, "CANNOT_CONNECT": 12029,
    "CONNECTION_ERROR": 12030,
}
ERRNOS = {"ENOENT": 2, "EBADF": 9, "ENOMEM": 12, "EACCES": 13, "EEXIST": 17, "EINVAL": 22, "EMFILE": 24, "ENOSPC": 28,
          "EILSEQ": 42}
# Files that vanish, are locked or become read-only, and the calls before which they do.
FILES = ("script/qfx_plugin.ini", "script/MaxRenderGlobalsParser.mse", "7-Zip/7z.exe", "7-Zip", "json", "compress",
         "compress/*", "json/*", "log1.3.5", "log1.3.5/qfx_ui.log", "scene/*", "script")
FOLDERS = ("7-Zip", "json", "compress", "log1.3.5", "script")
FILE_CALLS = ("CreateFileW", "CreateProcessW", "CopyFileW", "_waccess", "_wfopen", "fopen",
              "GetPrivateProfileStringW", "_Z22ExecuteMAXScriptScriptPKwiP7FPValuei", "WinHttpSendRequest",
              "GetExitCodeProcess")
ACTIONS = ("vanish", "replace", "lock", "read_only")
# Once the disk is full.
WRITES = {"_write": "-1 ENOSPC", "fwrite": "0 ENOSPC", "fprintf": "-1 ENOSPC", "fputc": "-1 ENOSPC", "fputs": "-1 ENOSPC",
          "vfprintf": "-1 ENOSPC", "CopyFileW": "0 DISK_FULL", "CreateDirectoryW": "0 DISK_FULL"}
FULL_DISK = "the disk"
AGAIN = 4 # the order of a call from a place that has called before; the first calls come first


def table_rows(path: pathlib.Path):
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.strip() and not line.startswith("#"):
            yield [part.strip() for part in line.split("|")]


def failure_of(text: str) -> dict:
    """One failure of tests/faults/imports.txt as the stage takes it."""
    words = text.split()
    if words[0] in ("short", "throw", "refuse"):
        return {"kind": words[0]}
    if words[0] == "clock":
        return {"kind": "clock", "days": int(words[1])}
    fault = {"kind": "fail"}
    if words[0] == "after":
        fault["kind"] = words.pop(0)
    fault["result"] = int(words.pop(0), 0)
    for name in words:
        fault["error" if name in ERRORS else "errno"] = ERRORS[name] if name in ERRORS else ERRNOS[name]
    return fault


def failure_table(name: str) -> dict:
    """Function → its failures; empty for a function that is not failed."""
    table = {}
    for function, failures in table_rows(FAULTS / name):
        wanted = [] if failures.startswith("-:") else [part.strip() for part in failures.split(",")]
        table[function] = {text: failure_of(text) for text in wanted}
    return table


def import_table() -> dict:
    return failure_table("imports.txt")


def host_table() -> dict:
    return failure_table("host_calls.txt")


class Allowed:
    """What may come of a fault that is not told: the rows of tests/faults/allowed.txt."""

    def __init__(self):
        self.rows = [tuple(row) for row in table_rows(FAULTS / "allowed.txt")]

    def of(self, row: dict):
        """(row of docs/compatibility.md, why), or None."""
        for function, failure, scenario, place, outcome, ids, reason in self.rows:
            if outcome == row["outcome"] and all(
                    any(fnmatch.fnmatchcase(text, part.strip()) for part in pattern.split(","))
                    for text, pattern in ((readable(row["function"]), function), (row["text"], failure),
                                          (row["scenario"], scenario), (row["place"], place))):
                return ids, reason
        return None


def readable(function: str) -> str:
    """_ZN11ActionTable9GetActionEi → ActionTable::GetAction."""
    match = re.match(r"_Z(NK?)?(.*)", function)
    if not match:
        return function
    names, left = [], match.group(2)
    while re.match(r"\d", left):
        length = re.match(r"\d+", left).group()
        left = left[len(length):]
        names.append(left[:int(length)])
        left = left[int(length):]
        if not match.group(1):
            break
    special = {"C1": names[-1], "C2": names[-1], "D1": "~" + names[-1], "D2": "~" + names[-1], "nw": "operator new",
               "dl": "operator delete", "aS": "operator="}
    if match.group(1) and left[:2] in special:
        names.append(special[left[:2]])
    return "::".join(names)


# ---- the faults for the calls that a run made


def import_faults(counted: dict, language: str):
    calls, places = counted["calls"], counted["places"]
    for name, failures in import_table().items():
        if language == "zh" and not TEXT_FUNCTIONS.search(name):
            continue
        for number in range(1, calls.get(name, 0) + 1):
            seen = places[name][number - 1] in places[name][:number - 1]
            for variant, (text, failure) in enumerate(failures.items()):
                if failure["kind"] == "clock" and number not in (1, 2, calls[name] // 2):
                    continue # it stays wrong from there on
                yield dict(failure, function=name, call=number, text=text, order=AGAIN if seen else 2 if name == "malloc" else min(variant, 1))


def host_faults(counted: dict):
    table = host_table()
    for name, calls in counted.get("host_calls", {}).items():
        if "::" in name: # the others are imports
            for variant, (text, failure) in enumerate(table[name].items()):
                for number in range(1, calls + 1):
                    yield dict(failure, function=name, call=number, text=text, order=0)


def file_faults(counted: dict):
    wanted = [(file, action) for file in FILES for action in ACTIONS
              if (action != "replace" or file in FOLDERS) and (action != "read_only" or file not in FOLDERS)]
    for name in FILE_CALLS:
        places = counted["places"].get(name, [])
        for number in range(1, counted["calls"].get(name, 0) + 1):
            if places[number - 1] in places[:number - 1]:
                continue # a loop: what is taken away in it is taken away before it too
            for file, action in wanted:
                yield {"kind": "file", "function": name, "call": number, "action": action, "file": file,
                       "text": f"{file} {action}", "order": 1 if file.startswith("log") else 3}


def full_disk_faults(counted: dict):
    for number in range(1, sum(counted["calls"].get(name, 0) for name in WRITES) + 1):
        yield {"kind": "full", "function": FULL_DISK, "call": number, "text": "full from this write on", "order": 0}


def points(counted: dict, scenario: str, language: str) -> list:
    """Every fault for the calls that a counted run made."""
    faults = list(import_faults(counted, language))
    if language == "en":
        faults += list(host_faults(counted)) + list(full_disk_faults(counted))
        if scenario == "submit":
            faults += list(file_faults(counted))
    return faults
