"""The Wine prefix of a test run as a machine that things are installed on. Everything runs through tools/in_wine.sh, so
one Wine must be up."""

import pathlib
import re
import shutil
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
SECONDS = 60
KEY = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\TarvoRendering"


class Machine:
    def __init__(self, prefix: pathlib.Path):
        self.program_data = prefix / "drive_c/ProgramData"
        self.data = self.program_data / "Tarvo Rendering"
        self.package = self.program_data / "Autodesk/ApplicationPlugins/TarvoRendering"

    def clean(self):
        """Takes away what other tests, or a run that was cut off, left behind."""
        for folder in (self.data, self.program_data / "Autodesk",
                       self.program_data / "Microsoft/Windows/Start Menu/Programs/Tarvo Rendering"):
            if folder.is_symlink():
                folder.unlink()
            shutil.rmtree(folder, ignore_errors=True)
        self.run("reg", "delete", KEY, "/f", "/reg:64")

    @staticmethod
    def windows_path(path: pathlib.Path) -> str:
        return "Z:" + str(path).replace("/", "\\")

    def command(self, program, arguments, language="en") -> list:
        program = self.windows_path(program) if isinstance(program, pathlib.Path) else program
        return ["bash", str(ROOT / "tools/in_wine.sh"), language, program, *arguments]

    def run(self, program, *arguments, language="en"):
        """The exit code and what was printed."""
        done = subprocess.run(self.command(program, arguments, language), stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, timeout=SECONDS * 3, check=False)
        return done.returncode, done.stdout.decode("utf-8", "replace")

    def start(self, program, *arguments, output: pathlib.Path) -> subprocess.Popen:
        """Leaves the program running; what it prints is in `output` at once."""
        line = '. "$0/tools/lib/common.sh"; . "$0/tools/lib/wine.sh"; wine_environment; in_wine en "$@"'
        with output.open("wb") as file:
            return subprocess.Popen(["bash", "-c", line, str(ROOT), self.windows_path(program), *arguments],
                                    stdout=file, stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL)

    def files(self) -> dict:
        """Every file and folder under C:\\ProgramData: its content, or None for a folder."""
        return {path.relative_to(self.program_data).as_posix(): path.read_bytes() if path.is_file() else None
                for path in self.program_data.rglob("*")}

    def names_elsewhere(self) -> set:
        """Every file and folder of the disk outside C:\\ProgramData, but for temporary ones."""
        disk = self.program_data.parent
        names = {path.relative_to(disk).as_posix() for path in disk.rglob("*")}
        return {name for name in names if not name.startswith("ProgramData/") and "/Temp/" not in name
                and "/temp/" not in name}

    def registry_value(self, name: str) -> str:
        code, text = self.run("reg", "query", KEY, "/v", name, "/reg:64")
        return re.split(r"REG_(?:SZ|DWORD)", text)[-1].strip() if code == 0 else ""


def wait_until(condition, what: str):
    """Polls; what never becomes true is a failure with a name."""
    end = time.monotonic() + SECONDS
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f"this did not happen within {SECONDS} seconds: {what}")
        time.sleep(0.05)
