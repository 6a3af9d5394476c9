#!/usr/bin/env python3
"""diagnostics_test.py RELEASE BIN PREFIX OUT: the installed diagnostics on a whole installation and on broken ones: what
they say, what their zip holds, and what it does not."""

import getpass
import pathlib
import re
import shutil
import socket
import sys
import threading
import unittest
import zipfile

from windows_machine import Machine

RELEASE, BIN, PREFIX, OUT = (pathlib.Path(argument) for argument in sys.argv[1:5])
FINE, PROBLEMS, NOT_DONE = 0, 1, 2
PACKAGE = r"C:\ProgramData\Autodesk\ApplicationPlugins\TarvoRendering"
LOG_BYTES = 256 * 1024
STAMP = "2024-03-07 09:05:02:045 [INFO] "


class Listener:
    """A program that takes connections on a port and says nothing."""

    def __enter__(self):
        self.socket = socket.create_server(("127.0.0.1", 0))
        self.connections = 0
        threading.Thread(target=self.serve, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.socket.shutdown(socket.SHUT_RDWR)
        self.socket.close()

    def serve(self):
        try:
            while True:
                self.socket.accept()[0].close()
                self.connections += 1
        except OSError:
            pass

    @property
    def port(self):
        return self.socket.getsockname()[1]


class DiagnosticsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        OUT.mkdir(parents=True, exist_ok=True)
        cls.machine = Machine(PREFIX)
        cls.machine.clean()
        cls.setup = next(RELEASE.glob("*-setup.exe"))
        cls.listener = Listener().__enter__()
        code, text = cls.machine.run(cls.setup, "/S", f"/PORT={cls.listener.port}",
                                     f"/LOG={cls.machine.windows_path(OUT / 'setup.log')}")
        assert code == 0, text
        script = cls.machine.data / "script"
        # As the host makes them at its start.
        shutil.copy(script / "MaxRenderGlobalsParser.ms", script / "MaxRenderGlobalsParser.mse")
        shutil.copy(script / "MaxRenderGlobalsParser.ms", script / "MaxRenderGlobalsParser.mse.source")
        cls.zip = OUT / "diagnostics.zip"

    @classmethod
    def tearDownClass(cls):
        cls.listener.__exit__()
        cls.machine.clean()

    def diagnose(self, *options):
        self.zip.unlink(missing_ok=True)
        return self.machine.run(self.machine.package / "Diagnostics/tarvo_diagnostics.exe",
                                "--out", self.machine.windows_path(self.zip), *options)

    def packed(self) -> dict:
        with zipfile.ZipFile(self.zip) as archive:
            self.assertIsNone(archive.testzip())
            return {name: archive.read(name).decode("utf-8") for name in archive.namelist()}

    def problems(self, text: str) -> list:
        return re.findall(r"^PROBLEM  (.*?)\r?$", text, re.MULTILINE)

    def test_01_a_whole_installation_has_no_problem(self):
        code, text = self.diagnose()
        self.assertEqual(self.problems(text), [])
        self.assertEqual(code, FINE)
        self.assertRegex(text, r"ok       7-Zip runs: 7-Zip \d+\.\d+ \(x64\)")
        self.assertIn(f"The desktop client answers at 127.0.0.1 port {self.listener.port}.", text)
        self.assertIn("The plugin 1.3.5 is installed", text)
        self.assertIn("The analysis script is prepared.", text)
        self.assertEqual(self.listener.connections, 1)
        packed = self.packed()
        self.assertEqual(set(packed), {"summary.txt", "files.txt", "qfx_plugin.ini"})
        self.assertIn("MaxRenderGlobalsParser.mse.source", packed["files.txt"])
        self.assertIn(rf"{PACKAGE}\Contents\TarvoRendering.gup", packed["files.txt"])
        self.assertIn(rf"The plugin 1.3.5 is installed: {PACKAGE}\Contents\TarvoRendering.gup", packed["summary.txt"])
        self.assertNotIn("<path>", packed["summary.txt"] + packed["files.txt"])
        self.assertIn("lowerversion=1.3.5", packed["qfx_plugin.ini"])
        self.assertFalse((self.machine.data / "json/tarvo_diagnostics.tmp").exists())

    def write_traces(self):
        user = getpass.getuser()
        log = self.machine.data / "log1.3.5/qfx_data.log"
        lines = [STAMP + "No errors!",
                 STAMP + rf"Backup file from D:\客户\Villa Nova.max to C:\users\{user}\Villa Nova_1.max Success!",
                 STAMP + r"Write json file at: C:\ProgramData/Tarvo Rendering/json/0A1B.json successfully.",
                 STAMP + f"told {user} so"]
        log.write_bytes("\r\n".join(lines).encode("utf-8") + b"\r\n"
                        + (STAMP + "Get scene name text down, it is : 别墅.max.").encode("gbk") + b"\r\n")
        (self.machine.data / "compress/Villa Nova_k3ZpQa.7z").write_bytes(b"7z")
        return user

    def test_02_names_of_people_and_scenes_stay_here(self):
        user = self.write_traces()
        code, text = self.diagnose()
        self.assertEqual(code, FINE, text)
        packed = self.packed()
        everything = "\n".join(packed.values())
        for secret in ("Villa", "客户", "别墅", "D:\\"):
            self.assertNotIn(secret, everything)
        self.assertIsNone(re.search(rf"\b{re.escape(user)}\b", everything, re.IGNORECASE))
        log = packed["log1.3.5/qfx_data.log"].splitlines()
        self.assertEqual(log[0], STAMP + "No errors!")
        self.assertIn("Backup file from <scene ", log[1])
        self.assertIn("json/0A1B.json", log[2])
        self.assertEqual(log[3], STAMP + "told <user> so")
        self.assertRegex(log[4], r"it is : <scene \d>$")
        self.assertIn("compress\\<archive>", packed["files.txt"])

    def test_03_unless_it_is_told_otherwise(self):
        user = self.write_traces()
        code, text = self.diagnose("--unredacted")
        self.assertEqual(code, FINE, text)
        log = self.packed()["log1.3.5/qfx_data.log"]
        for secret in (f"C:\\users\\{user}", r"D:\客户\Villa Nova.max", "别墅.max", f"told {user} so"):
            self.assertIn(secret, log)

    def test_04_where_the_host_lies_may_be_said(self):
        host = r"D:\Programs\3ds Max 2019"
        key = r"HKLM\SOFTWARE\Autodesk\3dsMax\21.0"
        self.machine.run("reg", "add", key, "/v", "Installdir", "/d", host + "\\", "/f", "/reg:64")
        try:
            code, text = self.diagnose()
        finally:
            self.machine.run("reg", "delete", key, "/f", "/reg:64")
        self.assertEqual(code, FINE)
        for said in (text, self.packed()["summary.txt"]):
            self.assertIn(f"ok       3ds Max 2019 is in {host}\\", said)

    def test_05_of_a_long_log_the_last_whole_lines_are_gathered(self):
        rest = "客户\\Meier\\Villa Nova.max to D:\\Villa Nova.max Success!\r\n".encode()[1:]
        whole = f"{STAMP}No errors!\r\n" * 1000
        whole += STAMP + "x" * (LOG_BYTES - len(rest) - len(whole) - len(STAMP) - 2) + "\r\n"
        log = self.machine.data / "log1.3.5/qfx_data.log"
        # Of this line the last 256 KB begin within the first character of the customer's folder.
        log.write_bytes(f"{STAMP}Backup file from D:\\客".encode()[:-2] + rest + whole.encode())
        code, text = self.diagnose()
        log.unlink()
        self.assertEqual(code, FINE, text)
        self.assertTrue(self.packed()["log1.3.5/qfx_data.log"] == whole, "another text")

    def broken(self, path: str, content, expected: str):
        """With a file changed (None: deleted; a number: its rights), exactly this one problem is named, twice."""
        file = self.machine.data / path if not path.startswith("..") else self.machine.program_data / path[3:]
        before = file.read_bytes() if file.exists() else None
        mode = file.stat().st_mode if before is not None else None
        if content is None:
            file.unlink()
        elif isinstance(content, int):
            file.chmod(content)
        else:
            file.write_bytes(content)
        try:
            code, text = self.diagnose()
        finally:
            if before is None:
                file.unlink()
            else:
                file.write_bytes(before)
                file.chmod(mode)
        problems = self.problems(text)
        self.assertEqual(len(problems), 1, text)
        self.assertIn(expected, problems[0])
        self.assertEqual(self.problems(self.packed()["summary.txt"]), problems)
        self.assertEqual(code, PROBLEMS)

    def test_10_nobody_listens(self):
        with socket.socket() as silent:
            silent.bind(("127.0.0.1", 0))
            ini = f"[general]\r\nip=127.0.0.1\r\nport={silent.getsockname()[1]}\r\nlowerversion=1.3.5\r\n"
            self.broken("script/qfx_plugin.ini", ini.encode(), "No program listens")

    def test_11_an_address_that_is_none(self):
        ini = "[general]\r\nip=no.such.machine.invalid\r\nport=80\r\nlowerversion=1.3.5\r\n"
        self.broken("script/qfx_plugin.ini", ini.encode(), "is not known")

    def test_12_a_newer_plugin_is_wanted(self):
        (self.machine.data / "log1.4.0").mkdir()
        ini = f"[general]\r\nip=127.0.0.1\r\nport={self.listener.port}\r\nlowerversion=1.4.0\r\n"
        self.broken("script/qfx_plugin.ini", ini.encode(), "wants the plugin in version 1.4.0")

    def test_13_an_ini_file_of_rubbish(self):
        code, text = self.run_with_ini(b"\x00\x01rubbish")
        self.assertEqual(code, PROBLEMS)
        self.assertEqual([problem.split(" (")[0] for problem in self.problems(text)], [
            "The settings name no address of the desktop client",
            "The settings name no usable port of the desktop client",
            "The settings name no lowest plugin version"])

    def run_with_ini(self, content):
        ini = self.machine.data / "script/qfx_plugin.ini"
        before = ini.read_bytes()
        ini.write_bytes(content)
        try:
            return self.diagnose()
        finally:
            ini.write_bytes(before)

    def test_14_no_ini_file(self):
        self.broken("script/qfx_plugin.ini", None, "qfx_plugin.ini is missing")

    def test_15_no_seven_zip(self):
        self.broken("7-Zip/7z.exe", None, "7z.exe is missing")

    def test_16_a_seven_zip_that_does_not_start(self):
        self.broken("7-Zip/7z.exe", b"no program", "cannot be started")

    def test_17_a_program_in_the_way(self):
        self.broken("../Tarvo.exe", b"MZ", r"C:\ProgramData\Tarvo.exe would be started in place of 7-Zip")

    def test_18_a_stale_analysis_script(self):
        self.broken("script/MaxRenderGlobalsParser.mse.source", b"older", "another version of the script")

    def test_19_a_program_that_everybody_can_change(self):
        # The right of others to write is one of the few that Wine passes on.
        self.broken("7-Zip/7z.exe", 0o777, "7z.exe can be changed by every user")

    def test_20_a_file_of_the_package_is_missing(self):
        contents = "../Autodesk/ApplicationPlugins/TarvoRendering/Contents"
        self.broken(f"{contents}/PrepareAnalysisScript.ms", None,
                    rf"{PACKAGE}\Contents\PrepareAnalysisScript.ms is missing")
        self.assertNotIn("PrepareAnalysisScript.ms", self.packed()["files.txt"])

    def test_21_a_folder_that_everybody_can_change(self):
        package = self.machine.package
        for folder, name in ((self.machine.data / "7-Zip", r"C:\ProgramData\Tarvo Rendering\7-Zip"),
                             (package, PACKAGE), (package / "Contents", PACKAGE + r"\Contents")):
            mode = folder.stat().st_mode
            folder.chmod(0o777)
            try:
                code, text = self.diagnose()
            finally:
                folder.chmod(mode)
            self.assertEqual(code, PROBLEMS)
            self.assertEqual(self.problems(text), [f"{name} can be changed by every user of this computer."])

    def test_30_nothing_installed(self):
        aside = OUT / "aside"
        shutil.rmtree(aside, ignore_errors=True)
        shutil.move(self.machine.data, aside)
        try:
            code, text = self.diagnose()
        finally:
            shutil.move(aside, self.machine.data)
        self.assertEqual(code, PROBLEMS)
        self.assertEqual(self.problems(text),
                         [r"C:\ProgramData\Tarvo Rendering is missing: Tarvo Rendering is not installed."])
        self.assertEqual(self.problems(self.packed()["summary.txt"]), self.problems(text))

    def test_31_a_zip_that_cannot_be_written(self):
        code, text = self.diagnose("--out", r"C:\no\such\folder\x.zip")
        self.assertEqual(code, NOT_DONE)
        self.assertIn("cannot be written", text)

    def test_32_an_unknown_option(self):
        code, text = self.diagnose("--everything")
        self.assertEqual(code, NOT_DONE)
        self.assertIn("--unredacted", text)

    def test_33_the_command_file_passes_options_and_the_exit_code_on(self):
        self.zip.unlink(missing_ok=True)
        code, text = self.machine.run(
            "cmd", "/c", r"C:\ProgramData\Autodesk\ApplicationPlugins\TarvoRendering\Diagnostics\TarvoDiagnostics.cmd",
            "--everything")
        self.assertEqual(code, NOT_DONE, text)
        self.assertIn("unknown argument '--everything'", text)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]], verbosity=2)
