#!/usr/bin/env python3
"""diagnostics_test.py RELEASE BIN PREFIX OUT: the installed diagnostics on a whole installation: what they say, what
their zip holds, what it does not, and that nothing that they only report with makes them fail."""

import getpass
import os
import pathlib
import random
import re
import shutil
import sys
import time
import unittest

from diagnosed_machine import DATA, DiagnosedMachine, FINE, NOT_UNDERSTOOD, PACKAGE, PROBLEMS, STAMP
from windows_machine import wait_until

BIN = pathlib.Path(sys.argv[2])
LOG_BYTES = 256 * 1024
DAY = 24 * 60 * 60


class DiagnosticsTest(DiagnosedMachine):
    def setUp(self):
        self.restore()
        self.client.requests.clear()

    def write_traces(self):
        user = getpass.getuser()
        log = self.machine.data / "log1.3.5/qfx_data.log"
        lines = [STAMP + "No errors!",
                 STAMP + rf"Backup file from D:\张氏\Villa Nova.max to C:\users\{user}\Villa Nova_1.max Success!",
                 STAMP + r"Write json file at: C:\ProgramData/Tarvo Rendering/json/0A1B.json successfully.",
                 STAMP + f"told {user} so"]
        log.write_bytes("\r\n".join(lines).encode("utf-8") + b"\r\n"
                        + (STAMP + "Get scene name text down, it is : 别墅.max.").encode("gbk") + b"\r\n")
        self.pack("Villa Nova_k3ZpQa.7z", 1_700_000_000)
        self.write_document(1, r'{"name": "D:\\张氏\\Villa Nova.max", "cameras": [{}, {}]}', 1_700_000_002)
        return user

    def test_01_a_whole_installation_has_no_problem(self):
        code, text = self.diagnose()
        self.assertEqual(self.problems(text), [])
        self.assertEqual(code, FINE)
        self.assertRegex(text, r"ok       7-Zip runs: 7-Zip \d+\.\d+ \(x64\)")
        self.assertRegex(text, r"ok       All \d+ installed files are as they were released\.")
        self.assertIn(f"The desktop client answers at 127.0.0.1 port {self.client.port} (code 10006).", text)
        self.assertIn("The plugin 1.3.5 is installed", text)
        self.assertIn("The analysis script is prepared.", text)
        packed = self.packed()
        self.assertEqual(set(packed), {"summary.txt", "files.txt", "qfx_plugin.ini"})
        self.assertIn("MaxRenderGlobalsParser.mse.source", packed["files.txt"])
        self.assertIn(rf"{PACKAGE}\Contents\TarvoRendering.gup", packed["files.txt"])
        self.assertIn(rf"The plugin 1.3.5 is installed: {PACKAGE}\Contents\TarvoRendering.gup", packed["summary.txt"])
        self.assertNotIn("<path>", packed["summary.txt"] + packed["files.txt"])
        self.assertIn("lowerversion=1.3.5", packed["qfx_plugin.ini"])
        self.assertFalse((self.machine.data / "json/tarvo_diagnostics.tmp").exists())

    def test_02_the_client_is_asked_as_the_plugin_asks_but_for_no_job(self):
        self.diagnose()
        self.assertEqual(len(self.client.requests), 1)
        path, headers, body = self.client.requests[0]
        self.assertEqual(path, "/")
        self.assertEqual(headers["Content-Type"], "application/json;charset=utf-8")
        self.assertEqual(headers["User-Agent"], "A WinHTTP Program For Marrowby/1.0")
        self.assertEqual(body.decode(), '{\n   "compressPath" : "",\n   "filePath" : "",\n   "maxVersion" : "3ds Max 2019",'
                                        '\n   "scenePath" : ""\n}\n')

    def test_03_the_last_submission_in_words(self):
        user = self.write_traces()
        (self.machine.data / "log1.3.5/qfx_http.log").write_text(STAMP + "Submit successfully.\r\n")
        code, text = self.diagnose()
        self.assertEqual(code, FINE, text)
        self.assertIn("The newest submit document is of 20", text)
        self.assertIn(r"scene D:\张氏\Villa Nova.max, cameras: 2.", text)
        self.assertIn("Its packed scene is whole: Villa Nova_k3ZpQa.7z", text)
        self.assertIn("qfx_data.log ends at 2024-03-07 09:05:02:045 with: Get scene name text down, it is : 别墅.max.", text)
        self.assertIn("qfx_http.log ends at 2024-03-07 09:05:02:045 with: Submit successfully. That means: The scene has "
                      "been submitted.", text)
        self.assertIn("qfx_ui.log has no lines yet.", text)
        self.assertNotIn(user, self.packed()["summary.txt"])

    def test_04_names_of_people_and_scenes_stay_here(self):
        user = self.write_traces()
        # Only the line's own words tell that a name follows.
        (self.machine.data / "log1.3.5/qfx_ui.log").write_bytes(
            (STAMP + "Get scene name text down, it is : 湖景房").encode("gbk"))
        for options in ([], ["--language", "zh"]):
            code, text = self.diagnose(*options)
            self.assertEqual(code, FINE, text)
            packed = self.packed()
            everything = "\n".join(packed.values())
            for secret in ("Villa", "张氏", "别墅", "湖景房", "D:\\"):
                self.assertNotIn(secret, everything)
            self.assertIsNone(re.search(rf"\b{re.escape(user)}\b", everything, re.IGNORECASE))
        log = packed["log1.3.5/qfx_data.log"].splitlines()
        self.assertEqual(log[0], STAMP + "No errors!")
        self.assertIn("Backup file from <scene ", log[1])
        self.assertIn("json/0A1B.json", log[2])
        self.assertEqual(log[3], STAMP + "told <user> so")
        self.assertRegex(log[4], r"it is : <scene \d>$")
        self.assertIn("compress\\<archive>", packed["files.txt"])
        self.assertIn("Its packed scene is whole: <archive>, of 20", packed["summary.txt"])

    def test_05_unless_it_is_told_otherwise(self):
        user = self.write_traces()
        code, text = self.diagnose("--unredacted")
        self.assertEqual(code, FINE, text)
        packed = self.packed()
        for secret in (f"C:\\users\\{user}", r"D:\张氏\Villa Nova.max", "别墅.max", f"told {user} so"):
            self.assertIn(secret, packed["log1.3.5/qfx_data.log"])
        self.assertIn("Villa Nova_k3ZpQa.7z", packed["summary.txt"])

    def test_06_where_the_host_lies_may_be_said(self):
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

    def test_07_of_a_long_log_the_last_whole_lines_are_gathered(self):
        rest = "张氏\\Meier\\Villa Nova.max to D:\\Villa Nova.max Success!\r\n".encode()[1:]
        whole = f"{STAMP}No errors!\r\n" * 1000
        whole += STAMP + "x" * (LOG_BYTES - len(rest) - len(whole) - len(STAMP) - 2) + "\r\n"
        log = self.machine.data / "log1.3.5/qfx_data.log"
        # Of this line the last 256 KB begin within the first character of the customer's folder.
        log.write_bytes(f"{STAMP}Backup file from D:\\客".encode()[:-2] + rest + whole.encode())
        code, text = self.diagnose()
        self.assertEqual(code, FINE, text)
        self.assertTrue(self.packed()["log1.3.5/qfx_data.log"] == whole, "another text")

    def test_10_the_language_is_that_of_windows_unless_one_is_given(self):
        for language, options, title in (("en", [], "Tarvo Rendering diagnostics"), ("zh", [], "Tarvo Rendering 诊断"),
                                         ("en", ["--language", "zh"], "Tarvo Rendering 诊断"),
                                         ("zh", ["--language", "en"], "Tarvo Rendering diagnostics")):
            code, text = self.diagnose(*options, language=language)
            self.assertEqual(code, FINE, text)
            self.assertEqual(text.splitlines()[0], title)
            chinese = "诊断" in title
            self.assertEqual("summary_zh.txt" in self.packed(), chinese)
            self.assertIn("Problems: 0", self.packed()["summary.txt"])
            self.assertEqual("分析脚本已准备好。" in text, chinese)

    def test_20_a_file_that_cannot_be_written_fails_nothing(self):
        held = self.out / "held.zip"
        holder = self.held_open(held)
        try:
            wait_until(held.exists, "the file is held open")
            places = {r"C:\no\such\folder\x.zip": "Windows error 3", r"Z:\proc\x.zip": "Windows error",
                      r"C:\ProgramData": "a folder or a device", "NUL": "a folder or a device",
                      r"C:\ProgramData\CON": "", r"\\.\PhysicalDrive0": "a folder or a device",
                      self.machine.windows_path(held): "Windows error 32"}
            for place, why in places.items():
                code, text = self.diagnose(out=place)
                self.assertEqual(code, FINE, text)
                written = re.search(r"^Everything is gathered in (.*?)\r?$", text, re.MULTILINE)
                self.assertTrue(written, text)
                if why:
                    self.assertIn(f"{place} cannot be written: ", text)
                    self.assertIn(why, text)
                    self.assertRegex(written[1], r"\\TarvoDiagnostics-\d{8}-\d{6}\.zip$")
                if "TarvoDiagnostics-" in written[1]:
                    self.machine.run("cmd", "/c", "del", written[1])
        finally:
            holder.communicate(b"\n")
        self.assertEqual(list(self.machine.program_data.glob("CON*")), [])

    def test_21_a_full_disk_fails_nothing_and_leaves_no_part(self):
        log = self.machine.data / "log1.3.5/qfx_data.log"
        log.write_bytes(random.Random(1).randbytes(200_000).hex().encode()[:LOG_BYTES - 1000] + b"\r\n")
        output = self.out / "full.txt"
        self.zip.unlink(missing_ok=True)
        code = self.diagnose_limited(output, "--out", self.machine.windows_path(self.zip), most_bytes=65536)
        text = output.read_text("utf-8")
        self.assertEqual(code, FINE, text)
        self.assertEqual(text.count("cannot be written: Windows error"), 3, text)
        self.assertIn("Nothing could be gathered in a file.", text)
        self.assertFalse(self.zip.exists())

    def test_22_an_output_that_takes_nothing_fails_nothing(self):
        self.zip.unlink(missing_ok=True)
        code = self.diagnose_limited("/dev/full", "--out", self.machine.windows_path(self.zip))
        self.assertEqual(code, FINE)
        self.assertIn("Problems: 0", self.packed()["summary.txt"])

    def test_23_an_option_that_is_not_known(self):
        for bad in (["--everything"], ["--language", "fr"], ["--clean-older-than", "0"],
                    ["--clean-older-than", "-1"], ["--clean-older-than", "x"], ["--clean-older-than"]):
            code, text = self.diagnose(*bad)
            self.assertEqual(code, NOT_UNDERSTOOD, bad)
            self.assertIn(f"error: '{bad[0]}' is not understood", text)
            self.assertIn("--unredacted", text)

    def test_24_the_command_file_passes_options_and_the_exit_code_on(self):
        code, text = self.machine.run("cmd", "/c", PACKAGE + r"\Diagnostics\TarvoDiagnostics.cmd", "--everything")
        self.assertEqual(code, NOT_UNDERSTOOD, text)
        self.assertIn("'--everything' is not understood", text)

    def test_30_cleaning_takes_the_old_and_leaves_the_newest_and_what_is_open(self):
        now = int(time.time())
        scene = r'{"name": "D:\\a\\Lobby.max"}'
        newest = self.write_document(3, scene, now - 100 * DAY)
        its_archive = self.pack("Lobby_aaaaaa.7z", now - 100 * DAY - 2)
        newest_archive = self.pack("Other_bbbbbb.7z", now - 50 * DAY)
        old = [self.write_document(1, scene, now - 200 * DAY), self.pack("Lobby_cccccc.7z", now - 200 * DAY),
               self.machine.data / "compress/Lobby_dddddd.7z.tmp"]
        old[2].write_bytes(b"x")
        os.utime(old[2], (now - 31 * DAY,) * 2)
        young = self.machine.data / "compress/Lobby_eeeeee.7z.tmp"
        young.write_bytes(b"x")
        os.utime(young, (now - 29 * DAY,) * 2)
        foreign = [self.machine.data / name for name in ("compress/notes.txt", "json/notes.json", "json/old.7z")]
        for file in foreign:
            file.write_bytes(b"x")
            os.utime(file, (now - 999 * DAY,) * 2)
        held = self.machine.data / "compress/Held_ffffff.7z"
        holder = self.held_open(held)
        try:
            # Empty it is only created; what the program then writes would make it the newest again.
            wait_until(lambda: held.exists() and held.stat().st_size > 0, "the archive is held open")
            os.utime(held, (now - 300 * DAY,) * 2)
            code, text = self.diagnose("--clean-older-than", "30")
        finally:
            holder.communicate(b"\n")
        self.assertEqual(code, FINE, text)
        self.assertEqual([file for file in old if file.exists()], [])
        for file in [newest, its_archive, newest_archive, young, held, *foreign]:
            self.assertTrue(file.exists(), f"{file}\n{text}")
        self.assertIn(rf"kept: {DATA}\compress\Held_ffffff.7z (a program has it open)", text)
        self.assertIn(rf"deleted: {DATA}\compress\Lobby_cccccc.7z (200 days, ", text)
        self.assertIn(rf"kept: {DATA}\compress\Other_bbbbbb.7z (it belongs to the newest)", text)
        self.assertIn("Deleted: 3 files, 0 MB. Kept although old: 4. Could not be deleted: 0.", text)
        self.assertFalse(self.zip.exists())

    def test_31_cleaning_follows_no_link(self):
        elsewhere = self.out / "elsewhere"
        shutil.rmtree(elsewhere, ignore_errors=True)
        elsewhere.mkdir()
        victims = [elsewhere / f"Lobby_{letter * 6}.7z" for letter in "ab"]
        for victim in victims:
            victim.write_bytes(b"x")
            os.utime(victim, (1_500_000_000,) * 2)
        (self.machine.data / "compress").rmdir()
        (self.machine.data / "compress").symlink_to(elsewhere)
        try:
            code, text = self.diagnose("--clean-older-than", "1")
        finally:
            (self.machine.data / "compress").unlink()
        self.assertEqual(code, FINE, text)
        self.assertTrue(all(victim.exists() for victim in victims), text)


if __name__ == "__main__":
    DiagnosedMachine.release, _, DiagnosedMachine.prefix, DiagnosedMachine.out = map(pathlib.Path, sys.argv[1:5])
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]], verbosity=2)
