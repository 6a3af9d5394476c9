#!/usr/bin/env python3
"""deployment_test.py RELEASE BIN PREFIX OUT: the commands of the guide's page on deployment and of the installation
notes, run as they stand there, as far as the emulator has the programs."""

import os
import pathlib
import re
import sys
import unittest

from windows_machine import Machine, ROOT, wait_until

RELEASE, BIN, PREFIX, OUT = (pathlib.Path(argument) for argument in sys.argv[1:5])
SETUP = r"\\server\share\TarvoRendering-1.3.5-setup.exe"
EXIT_BAD_OPTION = 7
# Programs of Windows that the emulator does not have, or that it only pretends to have.
NOT_TRIED = ("icacls", "netsh", "certutil")


def commands(language: str) -> list:
    page = (ROOT / f"docs/guide/{language}/deployment.md").read_text(encoding="utf-8")
    return re.findall(r"^```bat\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)


class DeploymentTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.machine = Machine(PREFIX)
        cls.machine.clean()
        cls.setup = cls.machine.windows_path(next(RELEASE.glob("*-setup.exe")))
        OUT.mkdir(parents=True, exist_ok=True)
        tried = [command for command in commands("en") if not command.startswith(NOT_TRIED)]
        cls.detect, cls.script, cls.clean_up = tried

    @classmethod
    def tearDownClass(cls):
        cls.machine.clean()

    def batch(self, text: str, name="command.bat"):
        file = OUT / name
        file.write_bytes(text.replace("\n", "\r\n").encode("ascii"))
        return self.machine.run("cmd", "/c", self.machine.windows_path(file))

    def deploy(self, *options: str):
        """The script of the page, with this machine's path in place of the share's."""
        self.assertIn(f'"{SETUP}" /S ', self.script)
        return self.batch(self.script.replace(f'"{SETUP}" /S', " ".join([f'"{self.setup}" /S /REHEARSAL', *options])))

    def test_01_both_languages_have_the_same_commands(self):
        self.assertEqual(commands("en"), commands("zh"))

    def test_02_what_is_not_installed_is_not_detected(self):
        self.assertNotEqual(self.batch(self.detect)[0], 0)

    def test_03_the_script_passes_the_setups_exit_code_on(self):
        self.assertEqual(self.deploy("/NONSENSE")[0], EXIT_BAD_OPTION)
        self.assertFalse(self.machine.package.exists())

    def test_04_the_script_installs_and_waits_for_the_end(self):
        self.assertEqual(self.deploy()[0], 0)
        code, text = self.batch(self.detect)
        self.assertEqual(code, 0)
        self.assertRegex(text, r"DisplayVersion\s+REG_SZ\s+1\.3\.5\r?\n")

    def test_05_once_installed_the_script_does_nothing(self):
        module = self.machine.package / "Contents/TarvoRendering.gup"
        before = module.stat().st_mtime_ns
        self.assertEqual(self.deploy()[0], 0)
        self.assertEqual(module.stat().st_mtime_ns, before)

    def test_06_the_script_upgrades(self):
        key = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\TarvoRendering"
        self.machine.run("reg", "add", key, "/v", "DisplayVersion", "/d", "1.3.4", "/f", "/reg:64")
        self.assertEqual(self.deploy()[0], 0)
        self.assertEqual(self.machine.registry_value("DisplayVersion"), "1.3.5")

    def test_07_cleaning_up_deletes_what_is_old_but_for_the_newest(self):
        names = [f"json/{letter * 8}-AAAA-AAAA-AAAA-AAAAAAAAAAAA.json" for letter in "AB"]
        names += [f"compress/Villa Nova_{letter * 6}.7z" for letter in "AB"]
        files = [self.machine.data / name for name in names]
        for file in files:
            file.write_bytes(b"{}")
            if "B" in file.name:
                os.utime(file, (1_700_000_000, 1_700_000_000))
        code, text = self.batch(self.clean_up)
        self.assertEqual(code, 0, text)
        self.assertEqual([file for file in files if file.exists()], [files[0], files[2]], text)

    def test_08_the_language_of_the_first_installation_stays(self):
        menu = self.machine.program_data / "Microsoft/Windows/Start Menu/Programs/Tarvo Rendering"
        self.machine.run(next(RELEASE.glob("*-setup.exe")), "/S", "/REHEARSAL", language="zh")
        self.assertTrue((menu / "Tarvo Rendering Guide.lnk").exists())

    def test_09_removing_can_be_waited_for(self):
        notes = (ROOT / "packaging/INSTALL.txt").read_text(encoding="utf-8")
        program = re.search(r'^    ("C:.*\\Uninstall\.exe" /S)$', notes, re.MULTILINE).group(1)
        here = re.search(r"^    (_\?=C:.*)$", notes, re.MULTILINE).group(1)
        code, _ = self.batch(f'start /wait "" {program} {here}\nexit /b %ERRORLEVEL%\n')
        self.assertEqual(code, 0)
        self.assertEqual([path.name for path in self.machine.package.iterdir()], ["Uninstall.exe"])
        self.assertNotEqual(self.batch(self.detect)[0], 0)

    def test_10_without_waiting_it_goes_on_in_a_copy(self):
        self.assertEqual(self.deploy()[0], 0)
        self.machine.run(self.machine.package / "Uninstall.exe", "/S")
        wait_until(lambda: not self.machine.package.exists(), "the uninstaller's end")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]], verbosity=2)
