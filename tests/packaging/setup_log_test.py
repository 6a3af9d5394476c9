#!/usr/bin/env python3
"""setup_log_test.py RELEASE BIN PREFIX OUT: whatever happens to the log, setup and uninstaller end as they would without
it. Prints a table of what was tried."""

import contextlib
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

from windows_machine import Machine, wait_until

RELEASE, BIN, PREFIX, OUT = (pathlib.Path(argument) for argument in sys.argv[1:5])
PACKAGE = r"C:\ProgramData\Autodesk\ApplicationPlugins\TarvoRendering"
DATA = r"C:\ProgramData\Tarvo Rendering"
ELSEWHERE, ANYWHERE = "in the folder for temporary files", "there, or in the folder for temporary files"


class SetupLogTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.machine = Machine(PREFIX)
        cls.setup = next(RELEASE.glob("*-setup.exe"))
        OUT.mkdir(parents=True, exist_ok=True)
        # Some of the paths lead to where the programs are started.
        os.chdir(OUT)
        cls.folder = pathlib.Path(tempfile.mkdtemp(dir=OUT))
        cls.table = []
        cls.temporary = cls.ask_for_temporary_folder()

    @classmethod
    def tearDownClass(cls):
        cls.machine.clean()
        shutil.rmtree(cls.folder)
        print("\n" + "\n".join("| " + " | ".join(row) + " |" for row in cls.table))

    @classmethod
    def ask_for_temporary_folder(cls) -> pathlib.Path:
        _, text = cls.machine.run("cmd", "/c", "echo %TEMP%")
        path = text.strip().split(":", 1)[1].replace("\\", "/")
        return next(path_on_disk for path_on_disk in [PREFIX / ("drive_c" + path)] if path_on_disk.is_dir())

    def windows(self, path) -> str:
        return self.machine.windows_path(path)

    def outcome(self, program, log: str, *options, expected=0) -> str:
        """Runs setup or uninstaller and gives what its log in the folder for temporary files says, or ""."""
        name = "TarvoRendering-uninstall.log" if program.name == "Uninstall.exe" else "TarvoRendering-setup.log"
        usual = self.temporary / name
        usual.unlink(missing_ok=True)
        more = [] if program.name == "Uninstall.exe" else ["/REHEARSAL"]
        code, text = self.machine.run(program, "/S", *more, f"/LOG={log}", *options)
        said = usual.read_text(encoding="cp1252") if usual.exists() else ""
        self.assertEqual(code, expected, f"{log}: {text}\n{said}")
        return said

    def try_log(self, what: str, log: str, where=ELSEWHERE):
        """A first installation, an upgrade and a removal with this log path."""
        self.machine.clean()
        self.install_with(what, log, where)
        self.install_with(what, log, where)
        self.outcome(self.machine.package / "Uninstall.exe", log)
        wait_until(lambda: not self.machine.package.exists(), f"the uninstaller's end with {what}")
        self.table.append([what, f"`{log}`", "0", "0", "removed", where])

    def try_upgrade(self, what: str, logs: list, where=ELSEWHERE):
        """Only an upgrade, for more paths of a kind."""
        for log in logs:
            with self.subTest(log=log):
                self.install_with(what, log, where)
                self.table.append([what, f"`{log[:60]}`", "", "0", "", where])

    def install_with(self, what: str, log: str, where: str):
        said = self.outcome(self.setup, log)
        if where != ANYWHERE:
            self.assertEqual(said.endswith("done\n"), where == ELSEWHERE, f"{what}: {said}")
            self.assertEqual(f"no log can be written to {log}" in said, where == ELSEWHERE and log != "", what)
        self.assertTrue((self.machine.package / "PackageContents.xml").exists(), what)

    @contextlib.contextmanager
    def small_disk(self):
        """A folder on a disk of its own, of 4 KB."""
        folder = self.folder / "disk"
        folder.mkdir()
        if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=4k", "tmpfs", str(folder)], check=False,
                          stderr=subprocess.DEVNULL).returncode != 0:
            self.skipTest("a disk can only be made by root")
        try:
            yield folder
        finally:
            # Programs of the emulator may still look at it.
            subprocess.run(["umount", "--lazy", str(folder)], check=True)
            folder.rmdir()

    # --- paths that take no log

    def test_01_a_folder_that_is_not_there(self):
        self.try_log("folder missing", self.windows(self.folder / "none" / "setup.log"))

    def test_02_a_share_that_is_not_there(self):
        self.try_log("share not there", r"\\no.such.server.invalid\share\setup.log")

    def test_03_a_drive_that_is_not_there(self):
        self.try_log("drive not there", r"Q:\setup.log")

    def test_04_a_folder_in_its_place(self):
        self.try_log("a folder", self.windows(self.folder))

    def test_05_a_file_that_is_not_writable(self):
        with self.small_disk() as folder:
            file = folder / "setup.log"
            file.write_text("mine")
            # The rights of a file do not stop root.
            subprocess.run(["mount", "-o", "remount,ro", str(folder)], check=True)
            self.try_log("not writable", self.windows(file))
            self.assertEqual(file.read_text(), "mine")

    def test_06_a_file_that_another_program_holds(self):
        file = self.folder / "held.log"
        # Another setup, which waits for the choice of a language.
        holder = self.machine.start(self.setup, "/REHEARSAL", f"/LOG={self.windows(file)}", output=OUT / "holder.txt")
        try:
            wait_until(lambda: file.exists() and file.stat().st_size > 0, "the other program writes")
            self.try_log("locked", self.windows(file))
        finally:
            self.machine.run("taskkill", "/F", "/IM", self.setup.name)
            holder.wait(60)

    def test_07_device_names(self):
        self.try_log("a device name", "NUL")
        self.machine.run(self.setup, "/S", "/REHEARSAL")
        self.try_upgrade("a device name", ["CON", "COM1", "LPT1", r"\\.\COM1", r"\\.\NUL", r"\\.\pipe\no_such_pipe",
                                           r"\\.\PhysicalDrive0", "Z:\\dev\\full"])

    def test_08_names_that_are_none(self):
        self.try_log("no name", "")
        # Which of them the emulator's disk takes is its own affair.
        self.try_upgrade("no name", ["?", "a|b", "C:", "\\", "::", r"C:\nul:\x", "C:\\" + "y" * 900 + ".log"], ANYWHERE)

    def test_09_our_own_folders(self):
        # The log would be in the way of what is emptied and closed.
        self.try_log("our own folder", rf"{PACKAGE}\setup.log")
        self.machine.run(self.setup, "/S", "/REHEARSAL")
        self.try_upgrade("our own folder", [rf"{DATA}\7-Zip\setup.log", rf"{DATA}\script\qfx_plugin.ini",
                                            r"C:\ProgramData\x\..\Tarvo Rendering\setup.log"])

    def test_10_an_ini_file_that_is_named_as_the_log_stays(self):
        self.machine.clean()
        ini = self.machine.data / "script/qfx_plugin.ini"
        ini.parent.mkdir(parents=True)
        ini.write_text("[general]\nport=1\n")
        self.outcome(self.setup, rf"{DATA}\script\qfx_plugin.ini")
        self.assertEqual(ini.read_text(), "[general]\nport=1\n")

    # --- logs that fail later

    def test_20_a_disk_that_is_full(self):
        with self.small_disk() as folder:
            (folder / "rest").write_bytes(b"x" * 4096)
            self.try_log("disk full", self.windows(folder / "setup.log"), "an empty file where it was asked for")
            self.assertEqual((folder / "setup.log").read_bytes(), b"")

    # --- and what a failure was stays one

    def test_30_without_a_log_a_failure_is_still_a_failure(self):
        self.machine.clean()
        obstacle = self.machine.data / "script/TarvoAntivirusCrp_UTF8.ms"
        (obstacle / "inside").mkdir(parents=True)
        said = self.outcome(self.setup, self.windows(self.folder / "none" / "setup.log"), expected=2)
        self.assertIn("stopped (exit code 2): a file could not be written", said)
        self.assertFalse(self.machine.package.exists())

    def test_31_not_even_the_usual_log(self):
        self.machine.clean()
        usual = self.temporary / "TarvoRendering-setup.log"
        usual.unlink(missing_ok=True)
        usual.mkdir()
        try:
            code, _ = self.machine.run(self.setup, "/S", "/REHEARSAL", r"/LOG=Q:\setup.log")
            self.assertEqual(code, 0)
            code, _ = self.machine.run(self.setup, "/S", "/REHEARSAL")
            self.assertEqual(code, 0)
        finally:
            usual.rmdir()
        self.table.append(["no log at all", r"Q:\setup.log, and a folder in place of the usual one", "0", "0", "-", "none"])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]], verbosity=2)
