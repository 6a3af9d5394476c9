#!/usr/bin/env python3
"""module_test.py RELEASE BIN PREFIX OUT: what is released, and what is only a rehearsal: the check of a module before its
release, and setups that bring one module or the other. The modules are made here, see host_shaped_module.py."""

import pathlib
import shutil
import subprocess
import sys
import unittest
import zipfile

import host_shaped_module
from host_shaped_module import HOST, RUNTIME
from windows_machine import Machine, ROOT, wait_until

RELEASE, BIN, PREFIX, OUT = (pathlib.Path(argument) for argument in sys.argv[1:5])
PYTHON = "/usr/bin/python3"
EXIT_REHEARSAL = 9
WINDOWS = ["kernel32.dll", "user32.dll"]
HOST_KEY = r"HKLM\Software\Autodesk\3dsMax\21.0"


def check(module: pathlib.Path) -> tuple:
    done = subprocess.run([PYTHON, str(ROOT / "tools/check_module.py"), "--host", str(module)], check=False,
                          capture_output=True, text=True, timeout=60)
    return done.returncode, [line for line in done.stdout.splitlines() if line.startswith("FAILED")]


def shell(command: str, *arguments: str):
    """A command with the functions of the release at hand."""
    line = f'. "{ROOT}/tools/lib/common.sh"; . "{ROOT}/tools/lib/release.sh"; {command}'
    return subprocess.run(["bash", "-c", line, "bash", *arguments], check=False, capture_output=True, text=True,
                          timeout=300)


class CheckOfAModule(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.builder = host_shaped_module.Builder(OUT / "modules")

    def test_01_a_module_that_the_host_can_load_passes(self):
        self.assertEqual(check(self.builder.build("good")), (0, []))

    def refused(self, problem: str, **how):
        code, failed = check(self.builder.build("bad", **how))
        self.assertEqual(code, 1)
        self.assertEqual(len(failed), 1, failed)
        self.assertIn(problem, failed[0])

    def test_02_a_module_against_the_standin_is_refused(self):
        self.refused("host_standin.dll", libraries=["host_standin.dll", *WINDOWS])
        code, failed = check(BIN / "TarvoRendering.gup")
        self.assertEqual((code, len(failed)), (1, 1))
        self.assertIn("3ds Max cannot load it", failed[0])

    def test_03_other_libraries_are_refused(self):
        # The debug runtime, that of later toolsets, that of the cross build, and what the plugin has no use for.
        for library in ("msvcp140d.dll", "ucrtbased.dll", "vcruntime140_1.dll", "msvcrt.dll", "libstdc++-6.dll",
                        "Qt5Core.dll", "geom.dll", "core.exe", "ws2_32.dll"):
            self.refused(f"not wanted: {library.lower()}", libraries=[*HOST, *RUNTIME, *WINDOWS, library])

    def test_04_nothing_from_the_host_is_refused(self):
        self.refused("nothing from the host", libraries=[*RUNTIME, *WINDOWS])

    def test_05_the_exports_are_those_six(self):
        good = host_shaped_module.EXPORTS
        self.refused("missing: LibShutdown", exports=good[:-1])
        self.refused("not wanted: CanAutoDefer", exports=[*good, "CanAutoDefer=LibNumberClasses"])

    def test_06_the_version_is_that_of_the_host(self):
        self.refused("it returns 0x52083401", version="0x52083401u")
        self.refused("more than the return of a number", version="*reinterpret_cast<volatile unsigned*>(16)")

    def test_07_how_it_may_be_loaded(self):
        flags = host_shaped_module.FLAGS
        for left_out, name in zip(flags, ("DYNAMIC_BASE", "NX_COMPAT", "HIGH_ENTROPY_VA")):
            code, failed = check(self.builder.build("bad", flags=[flag for flag in flags if flag != left_out]))
            self.assertEqual(code, 1)
            self.assertIn(f"FAILED: flag {name}: not set", failed)

    def test_08_resources_that_are_missing_or_stale(self):
        _, failed = check(self.builder.build("bad", resources=False))
        self.assertEqual(len(failed), 6, failed)
        module = self.builder.build("stale")
        data = module.read_bytes()
        changed = data.replace("渲染".encode("utf-16-le"), "渲漏".encode("utf-16-le"))
        self.assertNotEqual(data, changed)
        module.write_bytes(changed)
        _, failed = check(module)
        self.assertTrue(failed and failed[0].startswith("FAILED: every text in 'zh'"), failed)

    def test_09_what_is_no_module_is_refused_in_one_line(self):
        whole = self.builder.build("good").read_bytes()
        broken = OUT / "broken.gup"
        for content in (b"", b"MZ", b"text", whole[:300], whole[:len(whole) // 2], whole[:-1],
                        (BIN / "stage.exe").read_bytes()):
            broken.write_bytes(content)
            code, failed = check(broken)
            self.assertEqual((code, len(failed)), (1, 1), content[:20])
        self.assertEqual(check(OUT / "none.gup")[0], 1)


class SetupOfAModule(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.machine = Machine(PREFIX)
        cls.machine.clean()
        cls.module = host_shaped_module.Builder(OUT / "modules").build("good")
        cls.log = OUT / "setup.log"
        cls.reader = OUT / "windows.exe"
        host_shaped_module.Builder.run("g++-posix", "-O2", "-static", "-o", str(cls.reader),
                                       str(pathlib.Path(__file__).with_name("windows.cpp")), "-luser32")

    def tearDown(self):
        self.machine.clean()

    def install(self, setup: pathlib.Path, *options: str) -> tuple:
        self.log.unlink(missing_ok=True)
        code, _ = self.machine.run(setup, "/S", *options, f"/LOG={self.machine.windows_path(self.log)}")
        return code, self.log.read_text()

    def test_11_with_the_hosts_module_a_release_is_made_and_installs(self):
        release = OUT / "release"
        done = shell('make_release "$1" "$ROOT/scripts" "$2" "$3"', str(BIN), str(release), str(self.module))
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual({path.name for path in release.iterdir()},
                         {"TarvoRendering-1.3.5-setup.exe", "TarvoRendering-1.3.5.zip", "SHA256SUMS"})
        done = subprocess.run([PYTHON, str(ROOT / "tools/check_release.py"), str(release), "1.3.5"], check=False,
                              capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        with zipfile.ZipFile(release / "TarvoRendering-1.3.5.zip") as archive:
            self.assertNotIn("REHEARSAL.txt", archive.namelist())
        code, log = self.install(release / "TarvoRendering-1.3.5-setup.exe")
        self.assertEqual(code, 0, log)
        self.assertEqual((self.machine.package / "Contents/TarvoRendering.gup").read_bytes(), self.module.read_bytes())
        self.assertEqual(self.machine.registry_value("DisplayName"), "Tarvo Rendering 1.3.5")
        self.assertTrue(log.startswith("Tarvo Rendering 1.3.5: "))

    def test_12_a_rehearsal_installs_only_when_asked_to(self):
        setup = next(RELEASE.glob("*-rehearsal-setup.exe"))
        before = self.machine.files()
        code, log = self.install(setup)
        self.assertEqual(code, EXIT_REHEARSAL)
        self.assertIn("the module imports host_standin.dll: 3ds Max cannot load it", log)
        self.assertIn("stopped (exit code 9): this is a rehearsal and no installation", log)
        self.assertEqual(self.machine.files(), before)
        code, log = self.install(setup, "/REHEARSAL")
        self.assertEqual(code, 0)
        self.assertIn("going on with the rehearsal, because /REHEARSAL was given", log)
        self.assertEqual(self.machine.registry_value("DisplayName"), "Tarvo Rendering (rehearsal) 1.3.5")

    def test_13_a_setup_with_the_wrong_label_installs_no_rehearsal_at_all(self):
        # As if the label had been forgotten: the setup itself looks at the module.
        work = OUT / "mislabelled"
        shutil.rmtree(work, ignore_errors=True)
        work.mkdir()
        done = shell('release_time; lay_files "$1" "$1/TarvoRendering.gup" "$ROOT/scripts" "$2/layout"; '
                     'is_rehearsal() { return 1; }; make_setup "$2/layout" "$2/mislabelled-setup.exe" "$2"', str(BIN), str(work))
        self.assertEqual(done.returncode, 0, done.stderr)
        before = self.machine.files()
        for options in ([], ["/REHEARSAL"]):
            self.assertEqual(self.install(work / "mislabelled-setup.exe", *options)[0], EXIT_REHEARSAL, options)
        self.assertEqual(self.machine.files(), before)

    def press_until(self, text: str) -> str:
        """Presses the first button of whatever dialog shows, until it was one with the text."""
        seen = []

        def shows():
            seen.append(self.machine.run(self.reader, "ok")[1])
            return text in seen[-1]

        try:
            wait_until(shows, f"a dialog with '{text}'")
        except AssertionError as late:
            raise AssertionError(f"{late}; what was there: {set(seen)}") from late
        return seen[-1]

    def test_14_the_pages_of_a_rehearsal_say_so(self):
        setup = next(RELEASE.glob("*-rehearsal-setup.exe"))
        log = self.machine.windows_path(self.log)
        for options, steps in ((["/REHEARSAL"], [("Please choose a language", "Tarvo Rendering (rehearsal)"),
                                                 ("3ds Max 2019 was not found", "You can install it all the same"),
                                                 ("A rehearsal: not for 3ds Max", "3ds Max cannot load it"),
                                                 ("The rehearsal is installed", "Remove it before you install a release")]),
                               ([], [("so this is no installation. Nothing has been changed", "/REHEARSAL")])):
            process = self.machine.start(setup, f"/LOG={log}", *options, output=OUT / "setup.txt")
            try:
                for text, more in steps:
                    self.assertIn(more, self.press_until(text))
                wait_until(lambda: process.poll() is not None, "the setup's end")
            finally:
                if process.poll() is None:
                    self.machine.run("taskkill", "/F", "/IM", setup.name)
                    process.wait(60)

    def test_15_a_machine_without_the_host_is_told_and_is_no_failure(self):
        setup = next(RELEASE.glob("*-rehearsal-setup.exe"))
        code, log = self.install(setup, "/REHEARSAL")
        self.assertEqual(code, 0)
        self.assertIn("3ds Max 2019 was not found on this computer\n", log)
        self.machine.run("reg", "add", HOST_KEY, "/v", "Installdir", "/d", "D:\\3ds Max 2019\\", "/f", "/reg:64")
        try:
            code, log = self.install(setup, "/REHEARSAL")
        finally:
            self.machine.run("reg", "delete", HOST_KEY, "/f", "/reg:64")
        self.assertEqual(code, 0)
        self.assertIn("3ds Max 2019: D:\\3ds Max 2019\\\n", log)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]], verbosity=2)
