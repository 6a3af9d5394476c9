#!/usr/bin/env python3
"""Writes docs/host-beliefs.md, and the table in docs/building-with-the-sdk.md, from tests/data/host_facts.
With --check it only looks whether both are up to date."""

import collections
import sys

import host_facts

DOCS = host_facts.ROOT / "docs"
PAGE = DOCS / "host-beliefs.md"
BUILDING = DOCS / "building-with-the-sdk.md"
BEGIN = "<!-- From tests/data/host_facts/sdk.json by tools/make_belief_tables.py: begin -->"
END = "<!-- end -->"
CHECKERS = {"build": "the build", "probe": "the probe", "eye": "a person, [first contact](first-contact.md)"}


def row(*cells: str) -> str:
    return "| " + " | ".join(cell.replace("|", "\\|").replace("\n", "⏎") for cell in cells) + " |"


def code(text: str) -> str:
    ticks = "``" if "`" in text else "`"
    return f"{ticks} {text} {ticks}" if "`" in text else f"`{text}`" if text else "(empty)"


def checked_by(belief) -> str:
    return ", ".join(CHECKERS[name] for name in belief["checked_by"])


def sdk_table() -> list[str]:
    return ["| place | what is expected | if it differs | who notices |", "|---|---|---|---|"] + [
        row(belief["place"], belief["expected"], belief["if_different"], checked_by(belief))
        for belief in host_facts.sdk_beliefs()]


def sdk_section() -> list[str]:
    lines = ["## The SDK and the running host", "",
             "What is expected and what to do when it differs: [building with the SDK](building-with-the-sdk.md).", "",
             "| belief | checked by | answers of the probe | how sure |", "|---|---|---|---|"]
    for belief in host_facts.sdk_beliefs():
        keys = list(belief.get("probe", {}))
        shown = ", ".join(code(key) for key in keys[:3]) + (f" and {len(keys) - 3} more" if len(keys) > 3 else "")
        lines.append(row(code(belief["id"]), checked_by(belief), shown or "none", belief["level"]))
    return lines


def facts_section() -> list[str]:
    lines = ["## What the scripts ask the host", "", "Each is one line of HostCheck.ms.", "",
             "| belief | asked | expected | only when | rests on it | how sure |", "|---|---|---|---|---|---|"]
    for fact in host_facts.host_facts():
        lines.append(row(code(fact["id"]), code(fact["run"]), code(fact["prints"]),
                         code(fact["when"]) if "when" in fact else "always", fact["where"], fact["level"]))
    return lines


def language_section() -> list[str]:
    groups = collections.OrderedDict()
    for name, case in host_facts.language_cases():
        _, topic, group, _ = name.split(".")
        count = groups.setdefault((topic, group), [0, 0])
        count[0 if host_facts.is_asked(case) else 1] += 1
    lines = ["## The script language", "",
             "The same cases are the tests of the evaluator (`MaxscriptLanguage.CasesGiveTheirExpectedResults`) and "
             "lines of HostCheck.ms. What is believed of an error is that there is one; its text is in the report.", "",
             "| belief | cases asked | not asked |", "|---|---|---|"]
    lines += [row(code(f"language.{topic}.{group}"), str(asked), str(other))
              for (topic, group), (asked, other) in groups.items()]
    lines += ["", "Not asked:", ""]
    reasons = collections.OrderedDict()
    for _, case in host_facts.language_cases():
        if not host_facts.is_asked(case):
            reasons.setdefault(case.get("not_asked", "what the host lets pass and the evaluator does only when told"),
                               []).append(code(case["run"]))
    lines += [f"- {reason}: {len(cases)}, such as {cases[0].replace(chr(10), '⏎')}"
              for reason, cases in sorted(reasons.items())]
    return lines


def unchecked_section() -> list[str]:
    lines = ["## What neither report shows", ""]
    lines += [f"- `{name}`: {why}" for name, why in host_facts.unasked_names().items()]
    lines += [f"- `{belief['id']}`: {belief['expected']}" for belief in host_facts.sdk_beliefs()
              if "probe" not in belief and belief["checked_by"] == ["eye"]]
    return lines


def page() -> str:
    cases = list(host_facts.language_cases())
    asked = sum(host_facts.is_asked(case) for _, case in cases)
    facts = list(host_facts.host_facts())
    sdk = host_facts.sdk_beliefs()
    answers = sum(len(belief.get("probe", {})) for belief in sdk)
    lines = ["# What is believed of 3ds Max", "",
             "Made by `tools/make_belief_tables.py` from `tests/data/host_facts`. How each is proved or corrected in an "
             "afternoon: [first contact](first-contact.md).", "",
             f"{len(sdk)} beliefs about the SDK and the running host, {answers} answers of the probe; {len(facts)} "
             f"questions of the scripts; {len(cases)} cases of the script language, {asked} of them asked.", ""]
    for section in (sdk_section(), facts_section(), language_section(), unchecked_section()):
        lines += section + [""]
    return "\n".join(lines)


def building() -> str:
    text = BUILDING.read_text(encoding="utf-8")
    before, rest = text.split(BEGIN)
    after = rest.split(END, 1)[1]
    return before + BEGIN + "\n" + "\n".join(sdk_table()) + "\n" + END + after


def main() -> int:
    only_looks = sys.argv[1:] == ["--check"]
    stale = []
    for path, text in ((PAGE, page()), (BUILDING, building())):
        if not path.exists() or path.read_text(encoding="utf-8") != text:
            stale.append(path.name)
            if not only_looks:
                path.write_text(text, encoding="utf-8")
    if only_looks and stale:
        print(f"not up to date: {', '.join(stale)}; run tools/make_belief_tables.py", file=sys.stderr)
        return 1
    print("the tables of beliefs are up to date" if only_looks else "the tables of beliefs are written")
    return 0


if __name__ == "__main__":
    sys.exit(main())
