"""What came of a fault, by the stage's results with it and without it."""

import collections
import json
import re

GUID = re.compile(r"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}")


def plain(value):
    """Without what differs from run to run."""
    if isinstance(value, str):
        value = GUID.sub("GUID", value)
        value = re.sub(r"_[A-Za-z0-9]{6}\.7z", "_TAG.7z", value)
        value = re.sub(r"127\.0\.0\.1:\d+", "127.0.0.1:PORT", value)
        return re.sub(r"_\d{6}(\.max)?", r"_NUMBER\1", value)
    if isinstance(value, (list, tuple)):
        return [plain(entry) for entry in value]
    if isinstance(value, dict):
        return {key: plain(entry) for key, entry in value.items()}
    return value


def log_lines(part: dict) -> collections.Counter:
    return collections.Counter(f"{channel} [{line['level']}] {plain(line['message'])}"
                               for channel, lines in part["logs"].items() for line in lines)


def documents(part: dict) -> list:
    return sorted((json.dumps(plain(file["json"]), sort_keys=True) for file in part["files"]
                   if file["name"].startswith("json/") and "json" in file))


def request_view(request: dict) -> dict:
    return {"ok": request["ok"], "json": plain(request["json"]), "headers": plain(request["headers"]),
            "cameras": request["job"]["cameras"]}


def job_view(request: dict) -> dict:
    """What makes it this job, whatever the archive is called and however the request came."""
    return {"scene": request["job"]["scene"], "version": request["job"]["maxVersion"], "cameras": request["job"]["cameras"]}


def control_view(dialog: dict) -> dict:
    view = plain({key: dialog.get(key) for key in ("open", "rows", "columns", "title")})
    view["controls"] = {number: {key: control.get(key) for key in ("text", "checked", "lines", "items", "selected",
                                                                  "enabled", "position")}
                        for number, control in plain(dialog.get("controls", {})).items()}
    return view


def views(part: dict) -> dict:
    """What a user, the client or the disk sees of a run, log lines apart."""
    return {
        "boxes": [(box["text_numbers"][:1] or [box["text"][:40]], box["answer"]) for box in part["boxes"]],
        "dialogs": [(dialog["template"], dialog["result"]) for dialog in part["dialogs"]],
        "main": control_view(part["dialog_state"]["main"]),
        "edit": control_view(part["dialog_state"]["edit"]),
        "requests": [request_view(request) for request in part["requests"]],
        "files": sorted(plain(file["name"]) for file in part["files"]),
        "documents": documents(part),
        "scripts": plain([script["command"] for script in part["scripts"]]),
        "processes": plain([[process["command"], process["started"]] for process in part["processes"]]),
        "opened": part["opened"], "menus": part["menus"], "plugin": [step["event"] for step in part["plugin"]],
    }


def is_failed_recovery(result: dict) -> str:
    undone = [step["place"] for step in result["steps"] if step["place"].startswith("recovery") and not step["done"]]
    broken = [f"{outcome['place']}: {outcome.get('expected')} / {outcome.get('got')}" for outcome in result["outcomes"]
              if outcome["place"].startswith("recovery") and not outcome["held"]]
    return "; ".join(undone + broken)


def lie(normal: dict, part: dict) -> str:
    """Told that the job was accepted, and the client cannot use it, or it is not the job that was wanted."""
    told = sum(1 for box in part["boxes"] if 45 in box["text_numbers"])
    accepted = sum(1 for line in part["logs"].get("qfx_http", []) if line["message"] == "Submit successfully.")
    if told == 0 and accepted == 0:
        return ""
    bad = [check for request in part["requests"] for check in request["checks"] if not check["ok"]]
    if bad or len(part["requests"]) < told:
        return "; ".join(f"{check['check']}: {check['detail']}" for check in bad) or "no request"
    if documents(part) != documents(normal):
        return "another document: " + difference(documents(normal), documents(part))
    before, now = ([job_view(request) for request in run["requests"]] for run in (normal, part))
    return "another job: " + difference(before, now) if before != now else ""


def difference(one, other) -> str:
    one, other = json.dumps(one, sort_keys=True), json.dumps(other, sort_keys=True)
    start = next((i for i, (a, b) in enumerate(zip(one, other)) if a != b), min(len(one), len(other)))
    return f"…{one[max(0, start - 30):start + 50]}… → …{other[max(0, start - 30):start + 50]}…"


def outcome(normal: dict, result: dict) -> tuple:
    """(outcome, detail)."""
    if "trouble" in result:
        return ("hang" if "time limit" in result["trouble"] or "137" in result["trouble"] else "crash"), result["trouble"]
    if not result["faults"]["hit"]:
        return "not reached", ""
    kept = result["heap_blocks_kept"] - normal["heap_blocks_kept"]
    if result["leaks"] or kept > 0:
        return "kept", f"{kept} blocks, {result['leaks']}"
    if result["exceptions"] or result["escaped"]:
        return "escaped", str(result["exceptions"])
    if "before_recovery" not in result: # the plugin was not created: the host lists it as one that cannot be loaded
        return "told", "; ".join(f"{found['place']}: {found['got']}" for found in result["outcomes"])
    part, whole = result["before_recovery"], normal["before_recovery"]
    untrue = lie(whole, part)
    before, now = views(whole), views(part)
    more_lines, fewer_lines = log_lines(part) - log_lines(whole), log_lines(whole) - log_lines(part)
    reports = [line for line in more_lines if "[INFO]" not in line]
    reports += [f"box {box}" for box in now["boxes"] if box not in before["boxes"]]
    if untrue:
        return ("lie, but logged" if reports else "lie"), untrue
    problem = is_failed_recovery(result)
    if problem:
        return "not usable afterwards", problem
    if reports:
        return "told", "; ".join(sorted(reports))
    changed = [key for key in before if before[key] != now[key]]
    if changed:
        return "silent", "; ".join(f"{key} {difference(before[key], now[key])}" for key in changed)
    if fewer_lines:
        return "log lines lost", f"{sum(fewer_lines.values())} lines"
    return "as if nothing had happened", ""


SEVERE = ("crash", "hang", "kept", "escaped", "lie", "lie, but logged")
BAD = ("crash", "hang", "kept", "escaped", "lie", "lie, but logged", "not usable afterwards", "silent", "log lines lost")


def judged(scenario: str, language: str, normal: dict, result: dict) -> dict:
    kind, detail = outcome(normal, result)
    fault = result["fault"]
    return {"scenario": scenario, "language": language, "function": fault["function"], "call": fault["call"],
            "text": fault["text"], "place": result.get("place", ""), "outcome": kind, "detail": detail[:400]}
