#!/usr/bin/env python3
"""check_windows_target.py STAMPS BUILD: every source of the product, the probe, the stand-ins and the diagnostics as clang
reads it for the host's platform and toolset: target x86_64-pc-windows-msvc with the rules and the version number of Visual
Studio 2015 Update 3 (v140). What that toolset does not know is refused. Sources are read in batches (source_batches.py);
the files of a batch that does not pass are read one by one.

The headers are those of MinGW and GCC, which have to be told a few things to be read for that target: Visual Studio's own
headers and library are not tried by this. BUILD is a configured cross build. As in clang_checks.py, a file that passed is
not read again while it and the project's headers that it includes stay the same."""

import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from clang_checks import ROOT, TRIPLE, content, installed_tools, key_of, output_of
from source_batches import batches, write_batch

FOLDERS = ("common/", "host/", "scene/", "submit/", "dialog/", "plugin/", "probe/", "standin/", "packaging/")
TARGET = ["clang++", "--target=x86_64-pc-windows-msvc", "-fsyntax-only", "-std=c++14", "-fexceptions", "-fcxx-exceptions",
          "-fms-compatibility", "-fms-extensions", "-fms-compatibility-version=19.00.24215", "-fdelayed-template-parsing",
          "-DUNICODE", "-D_UNICODE"]
# What makes the borrowed headers readable for this target.
BORROWED = ["-fgnuc-version=12.2.0", "-D__STRICT_ANSI__=1", "-D__MINGW32__=1", "-D__MINGW64__=1",
            "-D__declspec(x)=__declspec(x)", "-D__uuidof(x)=IID_NULL", "-nostdinc"]
# GNU extensions in our own files are refused although the headers need them. The warnings for C++11 show what v140 lacks.
STRICT = ["-Wall", "-Wextra", "-Wpedantic", "-Wgnu", "-Wshadow", "-Wnon-virtual-dtor", "-Woverloaded-virtual", "-Wundef",
          "-Werror", "-Wc++98-c++11-compat-pedantic", "-Wno-error=pre-c++14-compat",
          "-Wno-error=c++98-c++11-compat-pedantic"]
# Read as C++11, an aggregate whose members have values of their own is none, as for v140.
ELEVEN = ["-w", "-std=c++11", "-ferror-limit=0"]

# What v140 lacks of the standards up to C++14, after "Microsoft C/C++ language conformance by Visual Studio version" and
# "C++ conformance improvements in Visual Studio 2017" (learn.microsoft.com); later standards are refused by -std=c++14.
EXTENDED_CONSTEXPR = ("N3652, extended constexpr (VS 2017)", re.compile(r"warning: .*constexpr function"))
AGGREGATE = ("N3653, aggregates whose members have values of their own (VS 2017)",
             re.compile(r"error: (?:no matching constructor for initialization|no viable conversion)"))
WORDS = {
    "expression SFINAE (N2634, VS 2017 15.7)": r"->\s*decltype\s*\(|\benable_if_t?\s*<[^;]*decltype|\bdeclval\b",
    "the C99 preprocessor (N1653, VS 2019 16.6)": r"__VA_OPT__|,\s*##\s*__VA_ARGS__",
    "__has_include (VS 2017 15.3)": r"\b__has_include\b",
    "attributes of C++17 (VS 2017 15.3)": r"\[\[\s*(?:fallthrough|nodiscard|maybe_unused)",
    "static_assert without a text (N3928, VS 2017)": r"\bstatic_assert\s*\(\s*[^\",]*\)\s*;",
}


def system_folders() -> list[str]:
    gcc = pathlib.Path(output_of(f"{TRIPLE}-g++-posix", "-print-file-name=include").strip()).parent
    clang = output_of("clang++", "-print-resource-dir").strip()
    folders = [f"{gcc}/include/c++", f"{gcc}/include/c++/{TRIPLE}", f"{clang}/include", f"/usr/{TRIPLE}/include"]
    return [f"-isystem{folder}" for folder in folders]


def sources(build: pathlib.Path) -> dict[str, list[str]]:
    """Source: its own definitions and include folders in the cross build."""
    found = {}
    for entry in json.loads((build / "compile_commands.json").read_text(encoding="utf-8")):
        name = os.path.relpath(entry["file"], ROOT)
        if not name.startswith(FOLDERS) or not name.endswith(".cpp") or name in found:
            continue
        words = shlex.split(entry["command"])
        own = [word for word in words if word.startswith(("-D", "-I", "-U"))]
        found[name] = own + [f"-isystem{words[i + 1]}" for i, word in enumerate(words) if word == "-isystem"]
    return found


def without_text(code: str) -> str:
    """Strings and comments hold no code; the lines stay."""
    pattern = re.compile(r'R"\((?:.|\n)*?\)"|"(?:[^"\\\n]|\\.)*"|//[^\n]*|/\*(?:.|\n)*?\*/')
    return pattern.sub(lambda match: '""' if match.group()[0] in 'R"' else re.sub(r"[^\n]", " ", match.group()), code)


def words_in(name: str) -> list[str]:
    code = without_text(content(name).decode("utf-8"))
    return [f"{name}:{code.count(chr(10), 0, match.start()) + 1}: v140 lacks {feature}"
            for feature, pattern in WORDS.items() for match in re.finditer(pattern, code)]


def messages(command: list[str]) -> tuple[int, str]:
    done = subprocess.run(command, cwd=ROOT, capture_output=True, text=True, errors="replace", check=False)
    return done.returncode, done.stderr


def lacking(said: str, feature) -> list[str]:
    name, pattern = feature
    return [f"v140 lacks {name}: {line}" for line in said.splitlines()
            if pattern.search(line) and not line.startswith("/usr")]


def check(command: list[str], path: str) -> list[str]:
    code, said = messages([*command, *STRICT, path])
    problems = [said] if code != 0 else lacking(said, EXTENDED_CONSTEXPR)
    return problems or lacking(messages([*command, *ELEVEN, path])[1], AGGREGATE)


def check_batch(command: list[str], names: list[str], path: pathlib.Path) -> dict[str, list[str]]:
    """What is wrong in each file."""
    together = check([*command, f"-iquote{ROOT / os.path.dirname(names[0])}"], str(path))
    return {name: check(command, name) if together else [] for name in names}


def main() -> int:
    stamps, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    stamps.mkdir(parents=True, exist_ok=True)
    known = sources(build)
    base = [*TARGET, *BORROWED]
    system = system_folders()
    rules = installed_tools() + content("tools/check_windows_target.py")
    commands = {name: [*base, *own, *system] for name, own in known.items()}
    keys = {name: key_of(name, command, rules) for name, command in commands.items()}
    todo = [name for name in known if not (stamps / keys[name]).exists()]
    listed = output_of("git", "ls-files", "--cached", "--others", "--exclude-standard", "*.cpp", "*.h").splitlines()
    problems = [problem for name in listed if name.startswith(FOLDERS) and (ROOT / name).is_file()
                for problem in words_in(name)]

    texts = {name: content(name).decode("utf-8") for name in todo}
    together = batches(todo, texts, lambda name: tuple(commands[name]))
    found = {}
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        looks = [pool.submit(check_batch, commands[names[0]], names, write_batch(stamps / "batches", number, names, texts))
                 for number, names in enumerate(together)]
        for look in looks:
            found.update(look.result())
    for name in todo:
        if not found[name]:
            (stamps / keys[name]).touch()
    problems += dict.fromkeys(problem for name in todo for problem in found[name])
    for problem in problems:
        print(problem)
    print(f"clang for the host's platform: {len(known)} files, {len(todo)} of them read in this run, "
          f"{len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
