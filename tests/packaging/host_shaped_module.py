"""Builds small modules that look from outside as the build against the SDK of 3ds Max gives them: exports, imports, flags
and the real resources. They do nothing; they serve to try what looks at a module before it is released."""

import pathlib
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOLS = "x86_64-w64-mingw32-"
HOST = ["core.dll", "maxutil.dll", "maxscrpt.dll", "gup.dll", "paramblk2.dll", "menus.gup"]
RUNTIME = ["msvcp140.dll", "vcruntime140.dll", "api-ms-win-crt-runtime-l1-1-0.dll"]
EXPORTS = ["LibDescription", "LibNumberClasses", "LibClassDesc", "LibVersion", "LibInitialize=LibNumberClasses",
           "LibShutdown=LibNumberClasses"]
FLAGS = ["dynamicbase", "nxcompat", "high-entropy-va"]
SOURCE = """
{declarations}
extern "C" int LibNumberClasses() {{ return 1; }}
extern "C" unsigned LibVersion() {{ return {version}; }}
extern "C" const wchar_t* LibDescription() {{ return L""; }}
// Its address has to be relocated.
int (*g_used)() = &LibNumberClasses;
extern "C" void* LibClassDesc(int) {{ return reinterpret_cast<void*>(g_used); }}
extern "C" int start(void*, unsigned, void*) {{ return {calls}; }}
"""


class Builder:
    def __init__(self, folder: pathlib.Path):
        self.folder = folder
        folder.mkdir(parents=True, exist_ok=True)
        self.resources = folder / "resources.o"
        self.run("windres", "-c", "65001", "-I", str(ROOT), str(ROOT / "resources/tarvo_rendering.rc"), str(self.resources))

    @staticmethod
    def run(tool: str, *arguments: str) -> None:
        subprocess.run([TOOLS + tool, *arguments], check=True, capture_output=True, text=True, timeout=120)

    def import_library(self, library: str, function: str) -> str:
        definition, made = self.folder / f"{function}.def", self.folder / f"lib{function}.a"
        definition.write_text(f"LIBRARY {library}\nEXPORTS\n{function}\n", encoding="ascii")
        self.run("dlltool", "-d", str(definition), "-l", str(made))
        return str(made)

    def build(self, name: str, libraries=None, exports=None, flags=None, version="0x52083400u",
              resources=True) -> pathlib.Path:
        libraries = [*HOST, *RUNTIME, "kernel32.dll"] if libraries is None else libraries
        functions = [f"used_{number}" for number in range(len(libraries))]
        source, definition, module = (self.folder / f"{name}{ending}" for ending in (".cpp", ".def", ".gup"))
        source.write_text(SOURCE.format(
            declarations="".join(f'extern "C" __declspec(dllimport) int {function}();\n' for function in functions),
            calls=" + ".join(f"{function}()" for function in functions) or "1", version=version), encoding="ascii")
        definition.write_text("EXPORTS\n" + "\n".join(EXPORTS if exports is None else exports) + "\n", encoding="ascii")
        self.run("g++-posix", "-O2", "-s", "-shared", "-nostdlib", "-Wl,--entry=start",
                 *[f"-Wl,--{flag}" for flag in (FLAGS if flags is None else flags)],
                 *[f"-Wl,--disable-{flag}" for flag in FLAGS if flags is not None and flag not in flags],
                 str(source), str(definition), *([str(self.resources)] if resources else []),
                 *[self.import_library(library, function) for library, function in zip(libraries, functions)],
                 "-o", str(module))
        return module
