#!/usr/bin/env python3
"""diagnostics_broken_test.py RELEASE BIN PREFIX OUT: what the diagnostics say about broken installations, in both
languages, and that what they advise is a cure. OUT/answers.md lists what they answered."""

import pathlib
import socket
import sys
import unittest

from diagnosed_machine import DATA, DiagnosedMachine, FINE, PACKAGE, PROBLEMS, STAMP, Server

GUP = PACKAGE + r"\Contents\TarvoRendering.gup"
PREPARE = "Contents/PrepareAnalysisScript.ms"
REINSTALL = "run the setup of Tarvo Rendering again"
MARK = "问题  "


def half(content: bytes) -> bytes:
    return content[:len(content) // 2]


def flipped(content: bytes) -> bytes:
    middle = len(content) // 2
    return content[:middle] + bytes([content[middle] ^ 1]) + content[middle + 1:]


def rewritten(file: pathlib.Path, change):
    file.write_bytes(change(file.read_bytes()))


class BrokenTest(DiagnosedMachine):
    answers = {}

    @classmethod
    def tearDownClass(cls):
        super().tearDownClass()
        rows = "".join(f"| {name} | {'<br>'.join(found)} |\n" for name, found in cls.answers.items())
        (cls.out / "answers.md").write_text("| installation | answer |\n|---|---|\n" + rows, encoding="utf-8")

    def setUp(self):
        self.restore()

    def finds(self, expected: str, *cure: str, label="PROBLEM  ", chinese=None):
        """Exactly one finding of this label, with its cure; the same number in Chinese."""
        code, text = self.diagnose("--language", "zh")
        zh = self.blocks(text, MARK if label.startswith("PROBLEM") else "警告  ")
        self.assertEqual(code, PROBLEMS if label.startswith("PROBLEM") else FINE, text)
        code, text = self.diagnose()
        found = [block for block in self.blocks(text, label) if "3ds Max 2019 is not registered" not in block[0]]
        zh = [block for block in zh if "没有注册 3ds Max" not in block[0]]
        self.answers[self.id().rsplit(".", 1)[1]] = [f"{label.strip()}: {what} -> {how}" for what, how in found]
        self.assertEqual(len(found), 1, text)
        self.assertEqual(len(zh), 1, zh)
        self.assertIn(expected, found[0][0])
        for part in cure:
            self.assertIn(part, found[0][1])
        self.assertTrue(any("\u4e00" <= letter <= "\u9fff" for letter in zh[0][0]) and zh[0][1], zh)
        if chinese:
            self.assertIn(chinese, zh[0][0])
        packed = self.packed()["summary.txt"]
        self.assertEqual([block[1] for block in self.blocks(packed, label) if "registered" not in block[0]],
                         [found[0][1]])
        self.assertEqual(code, PROBLEMS if label.startswith("PROBLEM") else FINE)

    # --- files

    def test_01_a_module_of_no_bytes(self):
        self.module.write_bytes(b"")
        self.finds(f"{GUP} is empty: 0 of {len(self.rehearsal)} bytes are there.", REINSTALL, chinese="空文件")

    def test_02_a_module_cut_in_half(self):
        rewritten(self.module, half)
        self.finds(f"{GUP} is damaged: {len(self.rehearsal) // 2} of {len(self.rehearsal)} bytes", REINSTALL)

    def test_03_a_module_with_one_bit_changed(self):
        rewritten(self.module, flipped)
        self.finds(f"{GUP} is not as it was released", REINSTALL)

    def test_04_a_module_of_a_rehearsal(self):
        self.replace_listed(self.module, self.rehearsal)
        self.finds(f"{GUP} is a rehearsal: it was built against a stand-in of 3ds Max (host_standin.dll)",
                   "built against 3ds Max itself", chinese="演练版本")

    def test_05_a_listed_module_that_is_none(self):
        self.replace_listed(self.module, half(self.rehearsal))
        self.finds("is damaged: it is no complete Windows module", REINSTALL)

    def test_06_no_module(self):
        self.module.unlink()
        self.finds(f"{GUP} is missing: 3ds Max has no plugin to load.", REINSTALL)

    def test_07_a_damaged_package_file(self):
        rewritten(self.machine.package / "PackageContents.xml", lambda text: text.replace(b"<Comp", b"<Cmop"))
        self.finds(r"PackageContents.xml is not as it was released", REINSTALL, chinese="与发布时不同")

    def test_08_a_package_file_cut_in_half(self):
        rewritten(self.machine.package / "PackageContents.xml", half)
        self.finds(r"PackageContents.xml is damaged: ", REINSTALL)

    def test_09_no_list_of_the_released_files(self):
        (self.machine.package / "Diagnostics/manifest.txt").unlink()
        self.finds(r"manifest.txt is missing: damaged files cannot be recognised.", REINSTALL)

    def test_10_a_damaged_list(self):
        (self.machine.package / "Diagnostics/manifest.txt").write_bytes(b"rubbish")
        self.finds(r"manifest.txt cannot be read: damaged files cannot be recognised.", REINSTALL)

    def test_11_a_missing_file_of_the_package(self):
        (self.machine.package / PREPARE).unlink()
        self.finds(rf"{PACKAGE}\Contents\PrepareAnalysisScript.ms is missing", REINSTALL)
        self.assertNotIn("PrepareAnalysisScript.ms", self.packed()["files.txt"])

    def test_12_a_missing_licence(self):
        (self.machine.package / "Licences/zlib.txt").unlink()
        self.finds(rf"{PACKAGE}\Licences\zlib.txt is missing.", REINSTALL)

    def test_13_a_changed_script(self):
        rewritten(self.machine.data / "script/TarvoAntivirusAlc_UTF8.ms", lambda text: text + b"--")
        self.finds(rf"{DATA}\script\TarvoAntivirusAlc_UTF8.ms is not as it was released", REINSTALL)

    # --- the prepared script

    def test_20_an_empty_prepared_script_beside_a_matching_source(self):
        prepared = self.machine.data / "script/MaxRenderGlobalsParser.mse"
        prepared.write_bytes(b"")
        self.finds(rf"{DATA}\script\MaxRenderGlobalsParser.mse is empty: scenes cannot be analysed",
                   "delete the file as an administrator and start 3ds Max again", chinese="空文件")

    def test_21_a_stale_prepared_script(self):
        (self.machine.data / "script/MaxRenderGlobalsParser.mse.source").write_bytes(b"older")
        self.finds("was made from another version of the script", "delete the file")

    def test_22_no_prepared_script_yet(self):
        (self.machine.data / "script/MaxRenderGlobalsParser.mse").unlink()
        self.finds("MaxRenderGlobalsParser.mse is not there yet", "Start 3ds Max 2019 once", label="warning  ")

    # --- the client

    def answered_by(self, server: Server, expected: str, *cure: str, **more):
        with server:
            self.write_ini(server.port)
            self.finds(expected.replace("PORT", str(server.port)), *cure, **more)

    def test_30_a_foreign_web_server(self):
        page = Server(b"<!DOCTYPE html><title>It works</title>", 404, "text/html")
        self.answered_by(page, "The program at 127.0.0.1 port PORT is not the desktop client: it answers with status 404, "
                         "with a web page.", "netstat -ano", "qfx_plugin.ini", chinese="不是桌面客户端")

    def test_31_a_server_of_another_json(self):
        self.answered_by(Server(b'{"status": "up"}'), "with JSON that holds no code (ret)", "netstat")

    def test_32_a_server_that_answers_nothing(self):
        self.answered_by(Server(b"", 204), "status 204, without a text", "netstat")

    def test_33_a_server_of_another_protocol(self):
        self.answered_by(Server(reads=False), "takes the connection, but gives no answer", "netstat")

    def test_34_a_client_that_takes_everything(self):
        self.answered_by(Server(b'{"ret": 10001}'), "accepted a request that names no scene", "delete an empty job",
                         label="warning  ")

    def test_35_a_client_of_another_project(self):
        self.answered_by(Server(b'{"ret": 10002}'), "with code 10002: The current project of the desktop client is not a "
                         "3ds Max render project.", "desktop client", label="warning  ", chinese="不是 3ds Max 渲染项目")

    def test_36_nobody_listens(self):
        with socket.socket() as silent:
            silent.bind(("127.0.0.1", 0))
            self.write_ini(silent.getsockname()[1])
            self.finds("No program listens", "Start the desktop client")

    def test_37_an_address_that_is_none(self):
        self.write_ini(80, ip="no.such.machine.invalid")
        self.finds("is not known", "Correct ip")

    def test_38_a_newer_plugin_is_wanted(self):
        (self.machine.data / "log1.4.0").mkdir()
        self.write_ini(self.client.port, version="1.4.0")
        self.finds("wants the plugin in version 1.4.0", "Install a newer version")

    def test_39_no_ini_file(self):
        (self.machine.data / "script/qfx_plugin.ini").unlink()
        self.finds(rf"{DATA}\script\qfx_plugin.ini is missing: the desktop client has not written its address there",
                   "Start the desktop client and log in once", "/PORT=", chinese="桌面客户端尚未")

    def test_40_an_ini_file_of_rubbish(self):
        (self.machine.data / "script/qfx_plugin.ini").write_bytes(b"\x00\x01rubbish")
        code, text = self.diagnose()
        self.assertEqual(code, PROBLEMS)
        self.assertEqual([problem.split(" (")[0] for problem in self.problems(text)], [
            "The settings name no address of the desktop client",
            "The settings name no usable port of the desktop client",
            "The settings name no lowest plugin version"])

    # --- 7-Zip

    def test_50_no_seven_zip(self):
        (self.machine.data / "7-Zip/7z.exe").unlink()
        self.finds("7z.exe is missing: scenes cannot be packed.", REINSTALL)

    def test_51_a_seven_zip_that_is_no_program(self):
        self.replace_listed(self.machine.data / "7-Zip/7z.exe", b"no program")
        self.finds("7z.exe cannot be started", "virus scanner")

    def test_52_a_seven_zip_cut_in_half(self):
        rewritten(self.machine.data / "7-Zip/7z.dll", half)
        self.finds(rf"{DATA}\7-Zip\7z.dll is damaged: ", REINSTALL)

    def test_53_a_program_in_the_way(self):
        program = self.machine.program_data / "Tarvo.exe"
        program.write_bytes(b"MZ")
        try:
            self.finds(r"C:\ProgramData\Tarvo.exe would be started in place of 7-Zip", "Do not submit")
        finally:
            program.unlink()

    # --- folders and rights

    def test_60_a_file_in_place_of_a_folder_and_its_cure(self):
        for name in ("json", "compress", "log1.3.5"):
            folder = self.machine.data / name
            folder.rmdir()
            folder.write_bytes(b"in the way")
            path = DATA + "\\" + name
            self.finds(f"{path} is a file; the plugin needs a folder of that name", f"move the file {path} elsewhere or "
                       "delete it", "then run the setup", chinese="是文件")
            # What is advised.
            folder.unlink()
            setup = next(self.release.glob("*-setup.exe"))
            code, text = self.machine.run(setup, "/S", "/REHEARSAL")
            self.assertEqual(code, FINE, text)
            self.assertTrue(folder.is_dir())
            self.restore()

    def test_61_a_program_that_everybody_can_change(self):
        # The right of others to write is one of the few that Wine passes on.
        (self.machine.data / "7-Zip/7z.exe").chmod(0o777)
        self.finds("7z.exe can be changed by every user", "sets the rights")

    def test_62_a_folder_that_everybody_can_change(self):
        package = self.machine.package
        for folder, name in ((self.machine.data / "7-Zip", DATA + r"\7-Zip"), (package, PACKAGE),
                             (package / "Contents", PACKAGE + r"\Contents")):
            folder.chmod(0o777)
            self.finds(f"{name} can be changed by every user of this computer.", "sets the rights")
            self.restore()

    def test_63_nothing_installed(self):
        aside = self.machine.data.with_name("aside")
        self.machine.data.rename(aside)
        try:
            self.finds(rf"{DATA} is missing: Tarvo Rendering is not installed.", REINSTALL)
        finally:
            aside.rename(self.machine.data)

    # --- the last submission

    def test_70_a_damaged_archive(self):
        archive = self.pack("Lobby_aaaaaa.7z", 1_700_000_000, b"0123456789" * 100)
        rewritten(archive, half)
        self.write_document(1, r'{"name": "D:\\a\\Lobby.max"}', archive.stat().st_mtime_ns // 10**9 + 2)
        self.finds('is damaged: 7-Zip says "Unexpected end of archive"', "submit the scene again")

    def test_71_a_document_cut_in_half(self):
        self.write_document(1, r'{"name": "D:\\a\\Lob', 1_700_000_002)
        self.finds("is damaged (20 bytes, no whole JSON)", "submit the scene again")

    def test_72_a_document_without_its_archive(self):
        self.write_document(1, r'{"name": "D:\\a\\Lobby.max"}', 1_700_000_002)
        self.finds("The packed scene that belongs to it is not there", "submit the scene again", label="warning  ")

    def test_73_a_submission_that_the_client_refused(self):
        line = "The client rendering version is not match!"
        (self.machine.data / "log1.3.5/qfx_http.log").write_text(
            STAMP + "Http read data successfully.\n" + STAMP.replace("INFO", "ERROR") + line + "\n")
        self.finds(f"with: {line} That means: The rendering version of the desktop client does not match this scene.",
                   "submit again", label="warning  ", chinese="桌面客户端的渲染版本与此场景不匹配。")


if __name__ == "__main__":
    DiagnosedMachine.release, _, DiagnosedMachine.prefix, DiagnosedMachine.out = map(pathlib.Path, sys.argv[1:5])
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]], verbosity=2)
