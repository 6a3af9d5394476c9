#!/usr/bin/env python3
"""setup_test.py RELEASE BIN PREFIX OUT: installs the finished release into a Wine prefix and looks at what it does. The
tests stand on each other and run in the order of their names."""

import pathlib
import shutil
import socket
import sys
import unittest
import zipfile

from windows_machine import Machine, ROOT, wait_until

RELEASE, BIN, PREFIX, OUT = (pathlib.Path(argument) for argument in sys.argv[1:5])
MENU = "Microsoft/Windows/Start Menu/Programs/Tarvo Rendering"
PACKAGE = "Autodesk/ApplicationPlugins/TarvoRendering"
DATA = "Tarvo Rendering"
PROGRAM_FOLDERS = [f"{DATA}/7-Zip", PACKAGE, f"{PACKAGE}/Contents", f"{PACKAGE}/Diagnostics", f"{PACKAGE}/Licences",
                   f"{PACKAGE}/Guide", f"{PACKAGE}/Guide/en", f"{PACKAGE}/Guide/zh"]
FOLDERS = {"Autodesk", "Autodesk/ApplicationPlugins", *PROGRAM_FOLDERS, DATA, f"{DATA}/script", f"{DATA}/json",
           f"{DATA}/compress", f"{DATA}/log1.3.5", MENU}
MODULE = r"C:\ProgramData\Autodesk\ApplicationPlugins\TarvoRendering\Contents\TarvoRendering.gup"
EXIT_FAILED, EXIT_IN_USE, EXIT_IN_THE_WAY, EXIT_BAD_OPTION, EXIT_LINK = 2, 3, 4, 7, 8


def free_port() -> int:
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        return taken.getsockname()[1]


class SetupTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.machine = Machine(PREFIX)
        cls.machine.clean()
        cls.before = cls.machine.files()
        cls.before_elsewhere = cls.machine.names_elsewhere()
        cls.port = free_port()
        cls.setup = next(RELEASE.glob("*-setup.exe"))
        # With a blank the whole option comes in quotation marks.
        cls.logs = OUT / "the logs"
        cls.log = cls.logs / "setup.log"
        cls.logs.mkdir(parents=True, exist_ok=True)
        with zipfile.ZipFile(next(RELEASE.glob("*.zip"))) as archive:
            cls.wanted = {name[len("ProgramData/"):]: archive.read(name) for name in archive.namelist()
                          if name.startswith("ProgramData/")}

    def install(self, *options, language="en") -> int:
        self.log.unlink(missing_ok=True)
        return self.machine.run(self.setup, "/S", "/REHEARSAL", *options, f"/LOG={self.machine.windows_path(self.log)}",
                                language=language)[0]

    def uninstall(self, *options):
        """As Windows does it: the program copies itself, returns at once and goes on."""
        program = self.machine.package / "Uninstall.exe"
        log = self.logs / "uninstall.log"
        log.unlink(missing_ok=True)
        self.machine.run(program, "/S", f"/LOG={self.machine.windows_path(log)}", *options)
        wait_until(lambda: log.exists() and log.read_text().endswith("done\n"), "the uninstaller's end")
        wait_until(lambda: not program.exists(), "the uninstaller deletes itself")
        return log.read_text()

    def new_names(self) -> set:
        return set(self.machine.files()) - set(self.before)

    # --- installing

    def test_01_lays_down_what_the_zip_holds_and_nothing_else(self):
        self.assertEqual(self.install(f"/PORT={self.port}", "/LOWERVERSION=1.3.5"), 0)
        now = self.machine.files()
        expected = set(self.wanted) | FOLDERS | {f"{PACKAGE}/Uninstall.exe", f"{DATA}/script/qfx_plugin.ini",
                                                 f"{MENU}/Tarvo Rendering Diagnostics.lnk",
                                                 f"{MENU}/Tarvo Rendering Guide.lnk"}
        self.assertEqual(self.new_names(), expected)
        for name, content in self.wanted.items():
            self.assertEqual(now[name], content, name)
        self.assertEqual(now[f"{DATA}/script/qfx_plugin.ini"].decode(),
                         f"[general]\r\nip=127.0.0.1\r\nport={self.port}\r\nlowerversion=1.3.5\r\n")
        self.assertTrue(self.log.read_text().endswith("done\n"))
        for name in self.before:
            self.assertEqual(now.get(name), self.before[name], name)

    def test_02_windows_knows_how_to_remove_it(self):
        self.assertEqual(self.machine.registry_value("DisplayVersion"), "1.3.5")
        self.assertEqual(self.machine.registry_value("QuietUninstallString"),
                         r'"C:\ProgramData\Autodesk\ApplicationPlugins\TarvoRendering\Uninstall.exe" /S')

    def test_03_the_rights_reached_the_system(self):
        # Wine keeps of a list of rights only what owner, group and others may: what setup gives to administrators
        # becomes the group's. A folder whose rights were not set has no writing group.
        for name in (DATA, *PROGRAM_FOLDERS, f"{DATA}/script", f"{DATA}/json", f"{DATA}/compress", f"{DATA}/log1.3.5",
                     f"{DATA}/script/MaxRenderGlobalsParser.ms", f"{DATA}/script/qfx_plugin.ini"):
            mode = (self.machine.program_data / name).stat().st_mode & 0o777
            self.assertEqual(mode, 0o775, name)

    # --- using

    def test_10_a_scene_is_submitted_from_the_installed_files_alone(self):
        code, text = self.machine.run(
            BIN / "stage.exe", "--installed", "--scenario",
            self.machine.windows_path(ROOT / "tests/packaging/installed_job.json"),
            "--out", self.machine.windows_path(OUT / "stage"),
            "--module", MODULE)
        self.assertEqual(code, 0, text)
        self.assertTrue(list((self.machine.data / "log1.3.5").glob("qfx_*.log")))

    # --- upgrading

    def test_20_an_upgrade_renews_programs_and_keeps_what_is_the_users(self):
        ini = self.machine.data / "script/qfx_plugin.ini"
        ini.write_bytes(ini.read_bytes().replace(b"127.0.0.1", b"localhost") + b"; mine\r\n")
        kept = {name: content for name, content in self.machine.files().items()
                if name.startswith((f"{DATA}/json/", f"{DATA}/compress/", f"{DATA}/log1.3.5/")) or name.endswith(".ini")}
        self.assertEqual(len([name for name in kept if "/log" in name]), 3)
        for name in self.wanted:
            (self.machine.program_data / name).write_bytes(b"an older version")
        foreign = [self.machine.data / "7-Zip/version.dll", self.machine.package / "Contents/old.gup"]
        for file in foreign:
            file.write_bytes(b"not ours")
        script = self.machine.data / "script"
        (script / "MaxRenderGlobalsParser.mse.source").write_bytes(b"older")
        self.assertTrue((script / "MaxRenderGlobalsParser.mse").exists())

        self.assertEqual(self.install("/IP=10.0.0.1", "/PORT=1"), 0)
        now = self.machine.files()
        for name, content in {**self.wanted, **kept}.items():
            self.assertEqual(now[name], content, name)
        self.assertEqual(list(script.glob("*.mse*")), [])
        self.assertEqual([file for file in foreign if file.exists()], [])
        self.assertIn("kept, with its rights: ", self.log.read_text())

    def test_21_files_in_use_stop_it_before_anything_changes(self):
        scene = OUT / "held.max"
        self.machine.run(BIN / "make_scene.exe", self.machine.windows_path(scene))
        said = OUT / "host.txt"
        host = self.machine.start(BIN / "stage.exe", "--installed", "--scene", self.machine.windows_path(scene),
                                  "--module", MODULE, output=said)
        try:
            wait_until(lambda: "the menu is in" in said.read_text(), "the host has loaded the module")
            times = {path: path.stat().st_mtime_ns for path in self.machine.package.rglob("*")}
            self.assertEqual(self.install(), EXIT_IN_USE)
            self.assertIn("TarvoRendering.gup", self.log.read_text())
            code, _ = self.machine.run(self.machine.package / "Uninstall.exe", "/S",
                                       r"_?=C:\ProgramData\Autodesk\ApplicationPlugins\TarvoRendering")
            self.assertEqual(code, EXIT_IN_USE)
            self.assertEqual(times, {path: path.stat().st_mtime_ns for path in self.machine.package.rglob("*")})
        finally:
            # Closes its window; no other stage runs in this Wine.
            self.machine.run("taskkill", "/IM", "stage.exe")
            host.wait(60)

    def test_22_a_program_in_the_way_stops_it(self):
        for name in ("Tarvo.exe", "Tarvo"):
            obstacle = self.machine.program_data / name
            obstacle.write_bytes(b"MZ")
            (self.machine.data / "7-Zip/7z.exe").write_bytes(b"untouched")
            try:
                self.assertEqual(self.install(), EXIT_IN_THE_WAY)
                self.assertIn(f"in the way: C:\\ProgramData\\{name} ", self.log.read_text())
                self.assertEqual((self.machine.data / "7-Zip/7z.exe").read_bytes(), b"untouched")
                self.assertEqual(self.install("/ALLOWTARVOEXE"), 0)
                self.assertIn("because /ALLOWTARVOEXE was given", self.log.read_text())
                self.assertEqual(obstacle.read_bytes(), b"MZ")
            finally:
                obstacle.unlink()

    def test_23_a_folder_of_that_name_is_no_program(self):
        folder = self.machine.program_data / "Tarvo.exe"
        folder.mkdir()
        try:
            self.assertEqual(self.install(), 0)
        finally:
            folder.rmdir()

    def test_24_a_port_that_is_none_is_refused(self):
        for port in ("abc", "0", "65536", "80x", "-1", ""):
            self.assertEqual(self.install(f"/PORT={port}"), EXIT_BAD_OPTION, port)

    def test_25_an_option_that_is_not_known_is_refused(self):
        before = self.machine.files()
        for option in ("/NONSENSE", "/INIWRITEABLE", "/INIWRITABLE=1", "/IP", "/purge", "INIWRITABLE", "-S", "/s",
                       "/ALLOWTARVOEXE /NONSENSE"):
            self.assertEqual(self.install(option), EXIT_BAD_OPTION, option)
            self.assertIn(f"the option {option} is not known", self.log.read_text())
        self.assertEqual(self.machine.files(), before)

    def test_26_the_options_of_the_installer_program_itself_are_known(self):
        self.assertEqual(self.install("/NCRC", "/IP=::1", "/port=81"), 0)
        # This one has to be the last.
        self.assertEqual(self.machine.run(self.setup, "/S", "/REHEARSAL", r"/D=C:\elsewhere")[0], 0)

    def test_27_the_uninstaller_refuses_what_it_does_not_know(self):
        before = self.machine.files()
        code, _ = self.machine.run(self.machine.package / "Uninstall.exe", "/S", "/PURG",
                                   r"_?=C:\ProgramData\Autodesk\ApplicationPlugins\TarvoRendering")
        self.assertEqual(code, EXIT_BAD_OPTION)
        self.assertEqual(self.machine.files(), before)

    def test_28_a_lowest_version_leads_nowhere_else(self):
        outside = self.machine.program_data.parent / "Outside"
        outside.mkdir()
        self.addCleanup(outside.rmdir)
        outside.chmod(0o755)
        ini = self.machine.data / "script/qfx_plugin.ini"
        kept = ini.read_bytes()
        self.addCleanup(lambda: ini.write_bytes(kept))
        before = self.new_names()
        # A name that is too long for a folder is none either.
        for version in (r"x\..\..\..\Outside", "x/../../../Outside", r"a\b", "a/b", "a:b", "1..2", "1*", "a|b", "x" * 300):
            if len(version) < 300:
                self.assertEqual(self.install(f"/LOWERVERSION={version}"), EXIT_BAD_OPTION, version)
            ini.write_text(f"[general]\nlowerversion={version}\n")
            self.assertEqual(self.install(), 0, version)
            self.assertIn(f"no log folder: lowerversion={version}\n", self.log.read_text())
            self.assertEqual(outside.stat().st_mode & 0o777, 0o755, version)
            self.assertEqual(self.new_names(), before, version)

    def test_29_an_ini_file_that_is_there_keeps_its_rights(self):
        # Wine has of the rights what owner, group and others may: here what a client may have set, and what a setup
        # of before made of it.
        ini = self.machine.data / "script/qfx_plugin.ini"
        content, mode = ini.read_bytes(), ini.stat().st_mode
        self.addCleanup(lambda: (ini.write_bytes(content), ini.chmod(mode)))
        for rights in (0o666, 0o640, 0o600, 0o775):
            ini.chmod(rights)
            for options in ([], ["/INIWRITABLE", "/IP=10.0.0.1", "/LOWERVERSION=9"]):
                self.assertEqual(self.install(*options), 0)
                self.assertEqual((oct(ini.stat().st_mode & 0o777), ini.read_bytes()), (oct(rights), content))

    # --- removing

    def test_30_removing_leaves_settings_logs_documents_and_archives(self):
        (self.machine.data / "script/MaxRenderGlobalsParser.mse").write_bytes(b"made by the host")
        (self.machine.data / "script/MaxRenderGlobalsParser.mse.source").write_bytes(b"and its source")
        mine = {name for name in self.machine.files() if name.startswith(
            (f"{DATA}/json", f"{DATA}/compress", f"{DATA}/log1.3.5")) or name.endswith("qfx_plugin.ini")}
        self.assertGreaterEqual(len(mine), 3 + 1 + 1 + 1 + 3)
        self.uninstall()
        self.assertEqual(self.new_names(), mine | {DATA, f"{DATA}/script"})
        self.assertEqual(self.machine.registry_value("DisplayVersion"), "")

    def test_31_purging_leaves_nothing(self):
        self.assertEqual(self.install(language="zh"), 0)
        menu = self.machine.program_data / MENU
        self.assertEqual({path.name for path in menu.iterdir()}, {"Tarvo Rendering 诊断.lnk", "Tarvo Rendering 用户指南.lnk"})
        # What a link leads to stands in it as it is.
        for name, target in (("用户指南", r"Guide\zh\index.html"), ("诊断", "TarvoDiagnostics.cmd")):
            self.assertIn(target.encode("ascii"), (menu / f"Tarvo Rendering {name}.lnk").read_bytes())
        self.uninstall("/PURGE")
        self.assertEqual(self.new_names(), set())
        self.assertEqual(self.machine.names_elsewhere() - self.before_elsewhere, set())

    def test_32_purging_leaves_what_is_not_the_plugins(self):
        self.assertEqual(self.install("/LOWERVERSION=2.0"), 0)
        self.assertTrue((self.machine.data / "log2.0").is_dir())
        (self.machine.data / "json/notes.txt").write_text("mine")
        (self.machine.data / "json/1.json").write_text("{}")
        text = self.uninstall("/PURGE")
        self.assertEqual(self.new_names(), {DATA, f"{DATA}/json", f"{DATA}/json/notes.txt"})
        self.assertIn("left: ", text)
        shutil.rmtree(self.machine.data)

    def test_33_without_a_value_for_it_no_ini_file_is_made(self):
        ini = self.machine.data / "script/qfx_plugin.ini"
        self.assertEqual(self.install("/INIWRITABLE"), 0)
        self.assertFalse(ini.exists())
        self.assertIn("no ini file was made", self.log.read_text())
        # Where the plugin writes as long as there is no lowest version.
        self.assertTrue((self.machine.data / "log").is_dir())
        # What the client writes later is not touched again.
        ini.write_bytes(b"[general]\r\nlowerversion=1.3.5\r\n")
        ini.chmod(0o644)
        self.assertEqual(self.install("/PORT=81"), 0)
        self.assertEqual((ini.read_bytes(), ini.stat().st_mode & 0o777), (b"[general]\r\nlowerversion=1.3.5\r\n", 0o644))
        self.uninstall("/PURGE")
        # Only what was asked for, and the address that it needs: whether the client is set up, the client says.
        for options, expected in ((["/PORT=81"], "ip=127.0.0.1 port=81"), (["/IP=farm"], "ip=farm port=80"),
                                  (["/LOWERVERSION=1.3.5"], "ip=127.0.0.1 port=80 lowerversion=1.3.5")):
            self.assertEqual(self.install(*options), 0)
            self.assertEqual(ini.read_text().split(), ["[general]", *expected.split()])
            self.uninstall("/PURGE")

    def test_34_the_plugin_can_say_afterwards_that_the_client_is_not_set_up(self):
        # The stage wants a port for its client; without any ini file it is the scenario no_ini.
        self.assertEqual(self.install(f"/PORT={self.port}"), 0)
        code, text = self.machine.run(
            BIN / "stage.exe", "--installed", "--scenario",
            self.machine.windows_path(ROOT / "tests/packaging/client_not_set_up.json"),
            "--out", self.machine.windows_path(OUT / "not_set_up"), "--module", MODULE)
        self.assertEqual(code, 0, text)
        self.uninstall("/PURGE")

    def test_35_a_first_installation_that_fails_is_taken_back(self):
        # A folder stands where a script is to lie.
        obstacle = self.machine.data / "script/TarvoAntivirusCrp_UTF8.ms"
        (obstacle / "inside").mkdir(parents=True)
        self.assertEqual(self.install(), EXIT_FAILED)
        self.assertEqual(self.new_names(), {DATA, f"{DATA}/script", f"{DATA}/script/TarvoAntivirusCrp_UTF8.ms",
                                            f"{DATA}/script/TarvoAntivirusCrp_UTF8.ms/inside"})
        shutil.rmtree(self.machine.data)

    def test_36_an_entry_that_cannot_be_made_is_a_failure(self):
        # A folder stands where the start menu's link is to lie. The ini file goes only when setup made it.
        obstacle = self.machine.program_data / MENU / "Tarvo Rendering Diagnostics.lnk"
        obstacle.mkdir(parents=True)
        names = self.new_names()
        self.assertEqual(self.install(), EXIT_FAILED)
        self.assertIn("a link in the start menu could not be made", self.log.read_text())
        self.assertEqual(self.new_names(), names)
        self.assertEqual(self.machine.registry_value("DisplayVersion"), "")
        ini = self.machine.data / "script/qfx_plugin.ini"
        ini.parent.mkdir(parents=True)
        ini.write_text("[general]\nport=1\n")
        self.assertEqual(self.install(), EXIT_FAILED)
        self.assertEqual(ini.read_text(), "[general]\nport=1\n")
        shutil.rmtree(self.machine.data)
        shutil.rmtree(obstacle.parent)

    # --- links (Wine shows a symbolic link to a folder as Windows shows a junction)

    def make_victim(self) -> pathlib.Path:
        """Another user's folder, with a file of every name that setup or uninstaller deletes."""
        victim = self.machine.program_data.parent / "Victim"
        shutil.rmtree(victim, ignore_errors=True)
        victim.mkdir()
        for name in ("7z.exe", "version.dll", "qfx_plugin.ini", "1.json", "scene.7z", "qfx_1.log", "Uninstall.exe"):
            (victim / name).write_bytes(b"somebody else's")
        victim.chmod(0o755)
        self.addCleanup(shutil.rmtree, victim)
        return victim

    def state(self, folder: pathlib.Path) -> dict:
        return {path.name: (path.stat().st_mode, path.is_file() and path.read_bytes())
                for path in [folder, *folder.iterdir()]}

    def test_40_a_folder_that_is_a_link_stops_it(self):
        victim = self.make_victim()
        before = self.state(victim)
        for name in (DATA, f"{DATA}/7-Zip", f"{DATA}/script", f"{DATA}/json", f"{DATA}/compress", f"{DATA}/log1.3.5",
                     f"{DATA}/log0", *PROGRAM_FOLDERS[1:]):
            link = self.machine.program_data / name
            link.parent.mkdir(parents=True, exist_ok=True)
            link.symlink_to(victim)
            names = self.new_names()
            self.assertEqual(self.install(), EXIT_LINK, name)
            self.assertIn("a link: C:\\ProgramData\\" + name.replace("/", "\\") + "\n", self.log.read_text())
            self.assertEqual(self.state(victim), before, name)
            self.assertEqual(self.new_names(), names, name)
            link.unlink()
        shutil.rmtree(self.machine.data)
        shutil.rmtree(self.machine.program_data / "Autodesk")

    def test_41_removing_follows_no_link(self):
        # On Windows the link itself goes. Wine removes none, so that here the uninstaller stops.
        victim = self.make_victim()
        before = self.state(victim)
        self.assertEqual(self.install(), 0)
        log = self.logs / "uninstall.log"
        aside = OUT / "aside"
        shutil.rmtree(aside, ignore_errors=True)
        for name in (PACKAGE + "/Licences", f"{DATA}/json", f"{DATA}/compress", f"{DATA}/7-Zip", f"{DATA}/log2.0", DATA):
            link = self.machine.program_data / name
            if link.exists():
                shutil.move(link, aside)
            link.symlink_to(victim)
            names = self.new_names()
            code, _ = self.machine.run(self.machine.package / "Uninstall.exe", "/S", "/PURGE",
                                       f"/LOG={self.machine.windows_path(log)}",
                                       r"_?=C:\ProgramData\Autodesk\ApplicationPlugins\TarvoRendering")
            self.assertEqual(code, EXIT_LINK, name)
            self.assertIn("a link, removed and not followed: C:\\ProgramData\\" + name.replace("/", "\\") + "\n",
                          log.read_text())
            self.assertEqual(self.state(victim), before, name)
            self.assertEqual(self.new_names(), names, name)
            link.unlink()
            if aside.exists():
                shutil.move(aside, link)
        self.uninstall("/PURGE")
        self.assertEqual(self.new_names(), set())


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]], verbosity=2)
