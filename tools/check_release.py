#!/usr/bin/env python3
"""check_release.py RELEASE VERSION: looks at a finished release from outside: the checksums, what the zip holds, whether
PackageContents.xml says what 3ds Max 2019 needs to find the plugin, and whether a rehearsal says that it is one."""

import hashlib
import pathlib
import re
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
import zipfile

from check_module import STANDIN
from html_guide import LANGUAGE_FILES, PAGES, page_file
from module_image import Image

PACKAGE = "ProgramData/Autodesk/ApplicationPlugins/TarvoRendering/"
DATA = "ProgramData/Tarvo Rendering/"
MANIFEST = PACKAGE + "Diagnostics/manifest.txt"
MODULE = PACKAGE + "Contents/TarvoRendering.gup"
REHEARSAL_NOTE = "REHEARSAL.txt"
LICENCES = ["7-Zip", "GCC-runtime", "GPL-3", "JsonCpp", "LGPL-2.1", "NOTICE", "NSIS", "mingw-w64", "zlib"]
WANTED = sorted(
    ["INSTALL.txt", "qfx_plugin.ini.sample"]
    + [PACKAGE + name for name in ["PackageContents.xml", "INSTALL.txt", "Contents/TarvoRendering.gup",
                                   "Contents/PrepareAnalysisScript.ms", "Diagnostics/tarvo_diagnostics.exe",
                                   "Diagnostics/TarvoDiagnostics.cmd", "Diagnostics/manifest.txt"]]
    + [PACKAGE + f"Licences/{name}.txt" for name in LICENCES]
    + [PACKAGE + f"Guide/{name}" for name in ("guide.css", "search.js")]
    + [PACKAGE + f"Guide/{language}/{name}" for language in ("en", "zh")
       for name in [page_file(page) for page in PAGES] + LANGUAGE_FILES]
    + [DATA + name for name in ["7-Zip/7z.exe", "7-Zip/7z.dll", "7-Zip/License.txt",
                                "script/MaxRenderGlobalsParser.ms", "script/TarvoAntivirusAdsl_UTF8.ms",
                                "script/TarvoAntivirusAlc_UTF8.ms", "script/TarvoAntivirusCrp_UTF8.ms"]])
GUID = re.compile(r"\{[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\}")
# What each kind of component is called, and how its file ends.
COMPONENTS = {"plugin parts": ".gup", "post-start-up scripts parts": ".ms"}
SERIES = {"OS": "Win64", "Platform": "3ds Max", "SeriesMin": "2019", "SeriesMax": "2019"}
# What must be in the licence texts for the notice to be worth something.
LICENCE_WORDS = {"7-Zip": "unRAR license restriction", "JsonCpp": "Permission is hereby granted", "zlib": "zlib",
                 "mingw-w64": "winpthreads", "GCC-runtime": "Runtime Library Exception", "NSIS": "Common Public License",
                 "LGPL-2.1": "GNU LESSER GENERAL PUBLIC LICENSE", "GPL-3": "GNU GENERAL PUBLIC LICENSE"}


def check_checksums(release: pathlib.Path) -> list[str]:
    problems = []
    named = {}
    for line in (release / "SHA256SUMS").read_text(encoding="ascii").splitlines():
        digest, name = line.split("  ", 1)
        named[name] = digest
    present = {path.name for path in release.iterdir()} - {"SHA256SUMS"}
    if present != set(named):
        problems.append(f"SHA256SUMS names {sorted(named)}, the folder holds {sorted(present)}")
    for name, digest in named.items():
        if name in present and hashlib.sha256((release / name).read_bytes()).hexdigest() != digest:
            problems.append(f"{name}: the checksum differs")
    return problems


def check_package(text: bytes, version: str, files: list[str]) -> list[str]:
    package = ElementTree.fromstring(text)
    problems = []

    def expect(what, wanted, got):
        if wanted != got:
            problems.append(f"PackageContents.xml: {what} is {got!r}, not {wanted!r}")

    expect("the root", "ApplicationPackage", package.tag)
    for name, wanted in {"AutodeskProduct": "3ds Max", "ProductType": "Application", "AppVersion": version}.items():
        expect(name, wanted, package.get(name))
    for name in ("ProductCode", "UpgradeCode"):
        if not GUID.fullmatch(package.get(name, "")):
            problems.append(f"PackageContents.xml: {name} is no GUID: {package.get(name)}")
    if package.get("ProductCode") == package.get("UpgradeCode"):
        problems.append("PackageContents.xml: ProductCode and UpgradeCode are the same")
    if package.find("CompanyDetails") is None:
        problems.append("PackageContents.xml: without CompanyDetails 3ds Max does not load the package")
    expect("RuntimeRequirements", SERIES, dict(package.find("RuntimeRequirements").attrib))
    groups = package.findall("Components")
    expect("the components", sorted(COMPONENTS), sorted(group.get("Description") for group in groups))
    for group in groups:
        expect("RuntimeRequirements", SERIES, dict(group.find("RuntimeRequirements").attrib))
        for entry in group.findall("ComponentEntry"):
            module = entry.get("ModuleName")
            expect("Version", version, entry.get("Version"))
            if not module.startswith("./") or PACKAGE + module[2:] not in files:
                problems.append(f"PackageContents.xml: {module} is not in the package")
            if not module.endswith(COMPONENTS.get(group.get("Description"), "?")):
                problems.append(f"PackageContents.xml: {module} is no {group.get('Description')}")
    return problems


# The diagnostics call a file damaged that is not as listed.
def check_manifest(archive: zipfile.ZipFile) -> list[str]:
    listed = archive.read(MANIFEST).decode("utf-8").splitlines()
    below = "ProgramData/"
    found = [f"{hashlib.sha256(archive.read(name)).hexdigest()} {archive.getinfo(name).file_size} {name[len(below):]}"
             for name in sorted(archive.namelist()) if name.startswith(below) and name != MANIFEST]
    return [f"{MANIFEST}: listed or found, not both: {line}" for line in sorted(set(listed) ^ set(found))]


def imports_standin(module: bytes) -> bool:
    with tempfile.NamedTemporaryFile() as file:
        file.write(module)
        file.flush()
        return STANDIN in Image(file.name).imports()


def check_label(release: pathlib.Path, module: bytes, files: list[str]) -> list[str]:
    """What 3ds Max cannot load is called a rehearsal, and nothing else is."""
    rehearsal = imports_standin(module)
    names = [path.name for path in release.iterdir() if path.name != "SHA256SUMS"]
    problems = [f"{name}: the module {'imports' if rehearsal else 'does not import'} {STANDIN}"
                for name in names if ("-rehearsal" in name) != rehearsal]
    if (REHEARSAL_NOTE in files) != rehearsal:
        problems.append(f"{REHEARSAL_NOTE}: {'missing' if rehearsal else 'not wanted'}")
    for path in release.glob("*-setup.exe"):
        # The block of a setup with its version is not packed.
        if ("(rehearsal)".encode("utf-16-le") in path.read_bytes()) != rehearsal:
            problems.append(f"{path.name}: its title {'does not say' if rehearsal else 'says'} that it is a rehearsal")
    return problems


def check_zip(path: pathlib.Path, version: str) -> list[str]:
    problems = []
    with zipfile.ZipFile(path) as archive:
        if archive.testzip() is not None:
            problems.append(f"{path.name}: {archive.testzip()} is damaged")
        files = archive.namelist()
        for name in sorted(set(WANTED) - set(files)):
            problems.append(f"{path.name}: {name} is missing")
        for name in sorted(set(files) - set(WANTED) - {REHEARSAL_NOTE}):
            # The pictures are those that the pages show; tests/packaging holds the two against each other.
            if not (name.startswith(PACKAGE + "Guide/") and name.endswith(".png")):
                problems.append(f"{path.name}: {name} is not wanted")
        if problems:
            return problems
        for name, words in LICENCE_WORDS.items():
            if words not in archive.read(PACKAGE + f"Licences/{name}.txt").decode("utf-8"):
                problems.append(f"{name}.txt does not speak of '{words}'")
        if version.encode() not in archive.read("INSTALL.txt"):
            problems.append(f"INSTALL.txt speaks of another version than {version}")
        for name in (MODULE, PACKAGE + "Diagnostics/tarvo_diagnostics.exe"):
            if f"\0{version}\0".encode("utf-16-le") not in archive.read(name):
                problems.append(f"{name}: its version is not {version}")
        problems += check_manifest(archive)
        problems += check_label(path.parent, archive.read(MODULE), files)
        problems += check_package(archive.read(PACKAGE + "PackageContents.xml"), version, files)
    return problems


def main() -> int:
    release, version = pathlib.Path(sys.argv[1]), sys.argv[2]
    problems = check_checksums(release)
    zips = list(release.glob(f"TarvoRendering-{version}*.zip"))
    problems += check_zip(zips[0], version) if len(zips) == 1 else [f"there are {len(zips)} zips"]
    for problem in problems:
        print(problem, file=sys.stderr)
    print(f"release {version} checked: {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
