#!/usr/bin/env python3
"""keyed.py FOLDER --reads PATH… -- COMMAND…: runs a test, unless it has passed with the very same content before.

The key is the command, the variables TARVO_… and GTEST_…, Wine's version, the real scenes and the content of the files and
directories that the test reads, which must exist. FOLDER keeps an empty file for each key that passed, and the digests of
unchanged files. Only ./test asks for it (TARVO_KEYED=1): a test that is started by
hand always runs, and so does everything with TARVO_AGAIN=1."""

import hashlib
import json
import os
import pathlib
import subprocess
import sys


class Digests:
    """Content of files by path, size and time; kept from run to run."""

    def __init__(self, kept: pathlib.Path):
        self.kept = kept
        try:
            self.known = json.loads(kept.read_text(encoding="utf-8"))
        except (OSError, ValueError):
            self.known = {}
        self.changed = False

    def of_file(self, path: pathlib.Path) -> str:
        state = path.stat()
        name = f"{path} {state.st_size} {state.st_mtime_ns}"
        if name not in self.known:
            self.known[name] = hashlib.sha256(path.read_bytes()).hexdigest()
            self.changed = True
        return self.known[name]

    def of(self, path: pathlib.Path) -> list[str]:
        if not path.is_dir():
            return [f"{path.name} {self.of_file(path)}"]
        files = sorted(file for file in path.rglob("*") if file.is_file() and "__pycache__" not in file.parts)
        return [f"{file.relative_to(path)} {self.of_file(file)}" for file in files]

    def keep(self) -> None:
        if self.changed:
            # Tests run side by side: the last one wins, and what it lacks is read again.
            own = self.kept.with_suffix(f".{os.getpid()}")
            own.write_text(json.dumps(self.known), encoding="utf-8")
            own.replace(self.kept)


def wine_version() -> str:
    done = subprocess.run(["dpkg-query", "-W", "wine*", "libwine*"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          text=True, check=False)
    return done.stdout


def key_of(folder: pathlib.Path, reads: list[str], command: list[str]) -> str:
    digests = Digests(folder / "digests.json")
    parts = [*command, wine_version(), pathlib.Path(__file__).read_text(encoding="utf-8")]
    parts += [f"{name}={value}" for name, value in sorted(os.environ.items())
              if name.startswith(("TARVO_", "GTEST_")) and name not in ("TARVO_KEYED", "TARVO_AGAIN")]
    scenes = os.environ.get("TARVO_REAL_SCENES")
    missing = [path for path in reads if not os.path.exists(path)]
    if missing:
        sys.exit(f"error: the test is said to read what does not exist: {', '.join(missing)}")
    for path in [*reads, *([scenes] if scenes and os.path.isdir(scenes) else [])]:
        parts += digests.of(pathlib.Path(path))
    digests.keep()
    return hashlib.sha256("\0".join(parts).encode("utf-8", "surrogateescape")).hexdigest()[:40]


def main() -> int:
    folder = pathlib.Path(sys.argv[1])
    rest = sys.argv[2:]
    split = rest.index("--")
    reads, command = [path for path in rest[:split] if path != "--reads"], rest[split + 1:]
    if os.environ.get("TARVO_KEYED") != "1":
        return subprocess.call(command)
    folder.mkdir(parents=True, exist_ok=True)
    stamp = folder / key_of(folder, reads, command)
    if stamp.exists() and os.environ.get("TARVO_AGAIN") != "1":
        with open(folder / "left_out", "a", encoding="utf-8") as list_of_tests:
            print(" ".join(command), file=list_of_tests)
        print("It passed before, and nothing that it reads has changed. TARVO_AGAIN=1 runs it again.")
        return 0
    status = subprocess.call(command)
    if status == 0:
        stamp.touch()
    return status


if __name__ == "__main__":
    sys.exit(main())
