"""A machine with the plugin installed and the diagnostics on it, and servers that play the desktop client."""

import hashlib
import http.server
import os
import pathlib
import re
import shutil
import signal
import socketserver
import subprocess
import threading
import unittest
import zipfile

from windows_machine import Machine, ROOT, SECONDS

FINE, PROBLEMS, NOT_UNDERSTOOD = 0, 1, 2
PACKAGE = r"C:\ProgramData\Autodesk\ApplicationPlugins\TarvoRendering"
DATA = r"C:\ProgramData\Tarvo Rendering"
MANIFEST = "Diagnostics/manifest.txt"
# What the module of a rehearsal imports, and what one for the host does; of one length.
STAND_IN, HOST = b"host_standin.dll\0", b"core.dll\0\0\0\0\0\0\0\0\0"
STAMP = "2024-03-07 09:05:02:045 [INFO] "
NO_DOCUMENT = b'{"ret": 10006}'


class Server:
    """Answers every request with `body`, and keeps what it was asked."""

    def __init__(self, body=NO_DOCUMENT, status=200, content_type="application/json", reads=True):
        server = self
        self.body, self.status, self.content_type, self.reads, self.requests = body, status, content_type, reads, []

        class Handler(http.server.BaseHTTPRequestHandler):
            def handle(self):
                if server.reads:
                    super().handle()

            def do_POST(self):
                text = self.rfile.read(int(self.headers.get("Content-Length", 0)))
                server.requests.append((self.path, dict(self.headers), text))
                self.send_response(server.status)
                self.send_header("Content-Type", server.content_type)
                self.send_header("Content-Length", str(len(server.body)))
                self.end_headers()
                self.wfile.write(server.body)

            def log_message(self, *_):
                pass

        class Listener(socketserver.ThreadingTCPServer):
            daemon_threads = True

        self.listener = Listener(("127.0.0.1", 0), Handler)
        self.port = self.listener.server_address[1]

    def __enter__(self):
        threading.Thread(target=self.listener.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.listener.shutdown()
        self.listener.server_close()


def sha256(content: bytes) -> str:
    return hashlib.sha256(content).hexdigest()


class DiagnosedMachine(unittest.TestCase):
    """With the release installed, and a module that does not import the stand-in."""
    release = prefix = out = None  # set before the tests run

    @classmethod
    def setUpClass(cls):
        cls.out.mkdir(parents=True, exist_ok=True)
        cls.machine = Machine(cls.prefix)
        cls.machine.clean()
        cls.client = Server().__enter__()
        setup = next(cls.release.glob("*-setup.exe"))
        code, text = cls.machine.run(setup, "/S", "/REHEARSAL", "/IP=127.0.0.1", f"/PORT={cls.client.port}",
                                     "/LOWERVERSION=1.3.5",
                                     f"/LOG={cls.machine.windows_path(cls.out / 'setup.log')}")
        assert code == 0, text
        script = cls.machine.data / "script"
        # As the host makes them at its start.
        shutil.copy(script / "MaxRenderGlobalsParser.ms", script / "MaxRenderGlobalsParser.mse")
        shutil.copy(script / "MaxRenderGlobalsParser.ms", script / "MaxRenderGlobalsParser.mse.source")
        cls.module = cls.machine.package / "Contents/TarvoRendering.gup"
        cls.rehearsal = cls.module.read_bytes()
        cls.replace_listed(cls.module, cls.rehearsal.replace(STAND_IN, HOST))
        cls.zip = cls.out / "diagnostics.zip"
        for folder, aside in cls.aside():
            shutil.rmtree(aside, ignore_errors=True)
            shutil.copytree(folder, aside)

    @classmethod
    def tearDownClass(cls):
        cls.client.__exit__()
        cls.machine.clean()

    @classmethod
    def aside(cls) -> list:
        return [(cls.machine.data, cls.out / "aside/data"), (cls.machine.package, cls.out / "aside/package")]

    def restore(self):
        """The whole installation again."""
        for folder, aside in self.aside():
            if folder.is_file():
                folder.unlink()
            shutil.rmtree(folder, ignore_errors=True)
            shutil.copytree(aside, folder)

    @classmethod
    def replace_listed(cls, file: pathlib.Path, content: bytes):
        """Another content, in the list of released files too."""
        name = file.relative_to(cls.machine.program_data).as_posix()
        manifest = cls.machine.package / MANIFEST
        lines = [f"{sha256(content)} {len(content)} {name}" if line.endswith(" " + name) else line
                 for line in manifest.read_text().splitlines()]
        file.write_bytes(content)
        manifest.write_bytes("".join(line + "\r\n" for line in lines).encode())

    def diagnose(self, *options, language="en", out=None):
        self.zip.unlink(missing_ok=True)
        return self.machine.run(self.machine.package / "Diagnostics/tarvo_diagnostics.exe",
                                "--out", out or self.machine.windows_path(self.zip), *options, language=language)

    def diagnose_limited(self, output, *options, most_bytes=None) -> int:
        """With the output led elsewhere, and no file of its longer than so many bytes."""
        def limit():
            if most_bytes:
                import resource
                signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
                resource.setrlimit(resource.RLIMIT_FSIZE, (most_bytes, most_bytes))

        line = '. "$0/tools/lib/common.sh"; . "$0/tools/lib/wine.sh"; wine_environment; in_wine en "$@"'
        program = self.machine.windows_path(self.machine.package / "Diagnostics/tarvo_diagnostics.exe")
        with open(output, "wb") as file:
            return subprocess.run(["bash", "-c", line, str(ROOT), program, *options], stdout=file, timeout=SECONDS * 3,
                                  stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL, preexec_fn=limit, check=False,
                                  restore_signals=False).returncode

    def packed(self) -> dict:
        with zipfile.ZipFile(self.zip) as archive:
            self.assertIsNone(archive.testzip())
            return {name: archive.read(name).decode("utf-8") for name in archive.namelist()}

    @staticmethod
    def problems(text: str) -> list:
        return re.findall(r"^PROBLEM  (.*?)\r?$", text, re.MULTILINE)

    @staticmethod
    def blocks(text: str, label: str) -> list:
        """Each finding with this label, and its cure."""
        return re.findall(rf"^{label}(.*?)\r?\n(?:         -> (.*?)\r?$)?", text, re.MULTILINE)

    def write_ini(self, port, ip="127.0.0.1", version="1.3.5"):
        text = f"[general]\r\nip={ip}\r\nport={port}\r\nlowerversion={version}\r\n"
        (self.machine.data / "script/qfx_plugin.ini").write_text(text)

    def pack(self, name: str, written: int, content=b"a scene") -> pathlib.Path:
        """A real archive in compress, with a time of its own."""
        scene = self.out / "packed.max"
        scene.write_bytes(content)
        archive = self.machine.data / "compress" / name
        archive.unlink(missing_ok=True)
        code, text = self.machine.run(self.machine.data / "7-Zip/7z.exe", "a", "-t7z",
                                      self.machine.windows_path(archive), self.machine.windows_path(scene))
        self.assertEqual(code, 0, text)
        os.utime(archive, (written, written))
        return archive

    def write_document(self, number: int, text: str, written: int) -> pathlib.Path:
        document = self.machine.data / f"json/{number:08X}-0000-4000-8000-000000000000.json"
        document.write_text(text, encoding="utf-8")
        os.utime(document, (written, written))
        return document

    @staticmethod
    def held_open(path: pathlib.Path) -> subprocess.Popen:
        """A program that has the file open until its input ends."""
        line = '. "$0/tools/lib/common.sh"; . "$0/tools/lib/wine.sh"; wine_environment; in_wine en "$@"'
        return subprocess.Popen(["bash", "-c", line, str(ROOT), "cmd", "/c", f"pause >{path.name}"], cwd=path.parent,
                                stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
