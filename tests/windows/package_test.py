#!/usr/bin/env python3
"""package_test.py PACKAGES BIN PREFIX SCREENSHOTS: the zip and the installers in the hands of a user or an administrator.

BIN is the build's folder of programs, for the helper and the stand-in libraries. PREFIX is made anew.
"""

import glob
import hashlib
import os
import shutil
import subprocess
import sys
import tempfile
import time
import zipfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../packaging"))
import pe  # noqa: E402
import spdx  # noqa: E402
from desktop import SOURCE, Desktop  # noqa: E402
from window_smoke import answer, equal, first_start, not_blank  # noqa: E402

# What a 64-bit Windows 10 has.
SYSTEM = {name + ".dll" for name in """advapi32 authz comdlg32 d3d9 d3d11 dwmapi dwrite dxgi gdi32 imm32 kernel32 mpr msvcrt
netapi32 ole32 oleaut32 psapi shcore shell32 shlwapi user32 userenv uxtheme version winmm ws2_32 wtsapi32""".split()}
FOLDER = "C:\\Program Files\\Carvelot"
UNINSTALL = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Carvelot"


def native(desktop, path):
    return desktop.path(path)


def names_below(folder):
    return sorted(os.path.relpath(os.path.join(root, name), folder).replace(os.sep, "/")
                  for root, _, files in os.walk(folder) for name in files)


def digest(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


def check_content(folder):
    """Every library that a file of the package needs is Windows' own or in the package, and nothing is there in vain."""
    names = names_below(folder)
    programs = {name.lower(): pe.read(os.path.join(folder, name)) for name in names if name.endswith((".exe", ".dll"))}
    needed = {"carvelot.exe", "carvelot-report.exe", "platforms/qwindows.dll", "styles/qwindowsvistastyle.dll"}
    missing = set()
    for name, program in programs.items():
        for library in map(str.lower, program.imports):
            if library in programs:
                needed.add(library)
            elif library not in SYSTEM and not library.startswith("api-ms-win-"):
                missing.add(f"{library} of {name}")
    equal("nothing that a program needs is missing", missing, set())
    equal("no program is there in vain", set(programs), needed)
    equal("the other files", [name for name in names if name.lower() not in programs],
          ["LICENSE.txt", "README.txt", "carvelot.spdx.json", "licenses/CLI11.txt", "licenses/GCC-runtime.txt", "licenses/GPL-3.txt", "licenses/LGPL-3.txt",
           "licenses/Qt.txt", "licenses/RapidJSON.txt", "licenses/SQLite.txt", "licenses/libarchive.txt", "licenses/mingw-w64.txt", "licenses/zlib.txt",
           "licenses/zstd.txt"])
    equal("what is wrong with the bill of materials", spdx.problems(os.path.join(folder, "carvelot.spdx.json"), folder), [])
    for name in names:
        if name.endswith(".txt"):
            with open(os.path.join(folder, name), "rb") as file:
                text = file.read()
            assert len(text) > 400 and b"@" + b"VERSION@" not in text, f"{name} is no finished text"


def check_report(desktop, folder):
    with open(os.path.join(SOURCE, "tests", "golden", "order-entry.json"), encoding="utf-8") as file:
        expected = file.read()
    printed = desktop.run(os.path.join(folder, "carvelot-report.exe"), "--json", "samples/order-entry.log",
                          cwd=SOURCE)
    assert printed.strip() == expected.strip(), f"the report of a sample is another: {printed[:300]}"
    print("ok: the report of a sample is the one it should be")


def check_companion(desktop, folder, libraries, screenshots, name):
    """With Skelmond.DLL beside it the program finds it; only JDE's own library is still missed."""
    shutil.copy(os.path.join(libraries, "Skelmond.dll"), os.path.join(folder, "Skelmond.DLL"))
    running = desktop.start(os.path.join(folder, "carvelot.exe"))
    end = time.monotonic() + 60
    while len(found := desktop.windows()) < 2:
        assert time.monotonic() < end, f"the windows are {found}"
        time.sleep(0.2)
    box, window = sorted(found, key=lambda one: one.rect[2] - one.rect[0])
    assert window.rect[2] - window.rect[0] > 600, f"that is no main window: {window}"
    answer(desktop, box)
    not_blank(desktop, window, name, screenshots)
    desktop.close(window)
    equal("Skelmond.DLL is found beside the program", running.wait(60), 0)


def machine_registry(desktop):
    """Every value of the machine's software: key to lines. (Wine writes of its own among those of the system.)"""
    exported = native(desktop, "C:\\machine.reg")
    desktop.run("reg", "export", r"HKLM\Software", "C:\\machine.reg", "/y")
    with open(exported, encoding="utf-16") as file:
        text = file.read()
    os.remove(exported)
    keys, key = {}, None
    for line in text.replace("\\\n", "").splitlines():
        if line.startswith("["):
            key = keys.setdefault(line.strip("[]"), [])
        elif line and key is not None:
            key.append(line.strip())
    assert len(keys) > 1000, f"that is no export of a registry: {len(keys)} keys"
    return keys


def machine_files(desktop):
    drive = os.path.join(desktop.prefix, "drive_c")
    return {name: digest(os.path.join(drive, name)) for name in names_below(drive)
            if os.path.isfile(os.path.join(drive, name)) and "/Temp/" not in name}


def difference(before, after):
    return {key: (before.get(key), after.get(key)) for key in sorted(set(before) | set(after))
            if before.get(key) != after.get(key)}


def uninstall(desktop, folder, *options):
    # It works on a copy of itself and its own call returns at once.
    desktop.run(folder + "\\uninstall.exe", "/S", *options)
    end = time.monotonic() + 60
    while os.path.exists(native(desktop, folder + "\\uninstall.exe")) or desktop.registry(UNINSTALL) is not None:
        assert time.monotonic() < end, "the uninstaller does not come to an end"
        time.sleep(0.3)
    time.sleep(1)


def check_zip(desktop, archive, libraries, screenshots):
    target = native(desktop, "C:\\Meine Programme\\Prüfung")
    with zipfile.ZipFile(archive) as packed:
        equal("the archive is whole", packed.testzip(), None)
        name = os.path.basename(archive)[:-len(".zip")]
        equal("the archive unpacks into one folder", {entry.split("/")[0] for entry in packed.namelist()}, {name})
        packed.extractall(target)
    folder = os.path.join(target, name)
    check_content(folder)
    check_report(desktop, folder)
    before = machine_registry(desktop)
    log = os.path.join(SOURCE, "samples", "jas-web.log")
    first_start(desktop, os.path.join(folder, "carvelot.exe"), log, screenshots, "zip")
    check_companion(desktop, folder, libraries, screenshots, "zip-companion")
    equal("the portable program leaves the machine's registry alone", difference(before, machine_registry(desktop)), {})
    shutil.rmtree(os.path.dirname(target))
    return name


def check_installer(desktop, installer, stage, libraries, screenshots):
    # A program that already opens logs must go on doing so.
    desktop.run("reg", "add", r"HKLM\Software\Classes\.log", "/ve", "/d", "txtfile", "/f")
    files, registry = machine_files(desktop), machine_registry(desktop)
    desktop.run(installer, "/S")
    installed = native(desktop, FOLDER)
    equal("the installer lays down the package and its uninstaller", names_below(installed),
          sorted(names_below(stage) + ["uninstall.exe"]))
    for name in names_below(stage):
        assert digest(os.path.join(stage, name)) == digest(os.path.join(installed, name)), name
    entry = desktop.registry(UNINSTALL)
    equal("it is listed among the programs", {name: entry[name] for name in (
        "DisplayName", "DisplayVersion", "Publisher", "InstallLocation", "UninstallString", "NoModify")},
          {"DisplayName": ("REG_SZ", "Carvelot"), "DisplayVersion": ("REG_SZ", os.path.basename(stage).split("-")[1]),
           "Publisher": ("REG_SZ", "Tamrisk"), "InstallLocation": ("REG_SZ", FOLDER),
           "UninstallString": ("REG_SZ", f'"{FOLDER}\\uninstall.exe"'), "NoModify": ("REG_DWORD", "0x1")})
    command = {"(Default)": ("REG_SZ", f'"{FOLDER}\\carvelot.exe" "%1"')}
    equal("it can open logs", [desktop.registry(rf"HKLM\Software\Classes\{name}\shell\open\command")
                               for name in ("Carvelot.Log", r"Applications\carvelot.exe")], [command, command])
    equal("it is offered for logs", list(desktop.registry(r"HKLM\Software\Classes\.log\OpenWithProgids")), ["Carvelot.Log"])
    equal("what opened logs before still does", desktop.registry(r"HKLM\Software\Classes\.log")["(Default)"],
          ("REG_SZ", "txtfile"))
    link = native(desktop, "C:\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs\\Carvelot.lnk")
    with open(link, "rb") as file:
        content = file.read()
    assert "carvelot.exe".encode("utf-16-le") in content or b"carvelot.exe" in content, "the link leads elsewhere"
    print("ok: it stands in the start menu of all users")

    check_report(desktop, installed)
    first_start(desktop, os.path.join(installed, "carvelot.exe"), os.path.join(SOURCE, "samples", "ube-batch.log"),
                screenshots, "installed")
    settings = r"HKCU\Software\Tamrisk\Carvelot\Settings"
    kept = desktop.registry(settings)
    assert kept, "the program has written no settings"
    uninstall(desktop, FOLDER)
    equal("the uninstaller leaves the user's settings", desktop.registry(settings), kept)
    equal("the uninstaller leaves the files as they were", difference(files, machine_files(desktop)), {})
    equal("the uninstaller leaves no folder", os.path.exists(installed), False)
    equal("the uninstaller leaves the machine's registry as it was", difference(registry, machine_registry(desktop)), {})

    elsewhere = "C:\\Tools\\Carvelot"  # without blanks: Wine would set the argument in quotes, which /D= never has
    desktop.run(installer, "/S", "/D=" + elsewhere)
    folder = native(desktop, elsewhere)
    check_companion(desktop, folder, libraries, screenshots, "installed-companion")
    running = desktop.start(elsewhere + "\\carvelot.exe")
    desktop.window("Carvelot")
    equal("while the program runs nothing is installed", desktop.output(installer, "/S")[0], 2)
    equal("and nothing is removed", names_below(folder), sorted(names_below(stage) + ["Skelmond.DLL", "uninstall.exe"]))
    while running.poll() is None:
        for window in desktop.windows():
            desktop.close(window)
        time.sleep(0.5)
    desktop.run(installer, "/S")
    equal("a second installation stays in the place of the first", desktop.registry(UNINSTALL)["InstallLocation"],
          ("REG_SZ", elsewhere))
    equal("it keeps what the user has put there", names_below(folder),
          sorted(names_below(stage) + ["Skelmond.DLL", "uninstall.exe"]))
    equal("an update keeps the user's settings", desktop.registry(settings), kept)
    uninstall(desktop, elsewhere, "/SETTINGS")
    equal("the uninstaller removes nothing that it did not bring", names_below(folder), ["Skelmond.DLL"])
    equal("it removes the settings when it is told to", desktop.registry(r"HKCU\Software\Tamrisk"), None)


def windows_installer(desktop, package, way="/i"):
    equal(f"msiexec {way} {os.path.basename(package)}", desktop.output("msiexec", way, "Z:" + package.replace("/", "\\"), "/qn")[0], 0)


def check_msi(desktop, package, stage):
    installed = native(desktop, FOLDER)
    desktop.run("reg", "add", r"HKCU\Software\Tamrisk\Carvelot\Settings", "/v", "RefreshRate", "/t", "REG_DWORD", "/d", "7", "/f")
    with tempfile.TemporaryDirectory() as folder:
        # An older one, with a file that the newer one has no more.
        older, old_stage = os.path.join(folder, "older.msi"), os.path.join(folder, "stage")
        shutil.copytree(stage, old_stage)
        with open(os.path.join(old_stage, "gone.txt"), "w", encoding="utf-8") as file:
            file.write("gone")
        subprocess.run([os.path.join(SOURCE, "packaging/windows/make-msi"), old_stage,
                        os.path.join(SOURCE, "src/resources/Carvelot.ico"), "1.9.0.0", older], check=True)
        windows_installer(desktop, older)
        equal("the older one is there", "gone.txt" in names_below(installed), True)
    with open(os.path.join(installed, "Skelmond.DLL"), "wb") as file:
        file.write(b"the user's own")
    windows_installer(desktop, package)
    equal("the newer one takes its place, and leaves what is the user's", names_below(installed),
          sorted(names_below(stage) + ["Skelmond.DLL"]))
    for name in names_below(stage):
        assert digest(os.path.join(stage, name)) == digest(os.path.join(installed, name)), name
    command = {"(Default)": ("REG_SZ", f'"{FOLDER}\\carvelot.exe" "%1"')}
    equal("it can open logs", [desktop.registry(rf"HKLM\Software\Classes\{name}\shell\open\command")
                               for name in ("Carvelot.Log", r"Applications\carvelot.exe")], [command, command])
    equal("it is offered for logs", list(desktop.registry(r"HKLM\Software\Classes\.log\OpenWithProgids")), ["Carvelot.Log"])
    check_report(desktop, installed)
    windows_installer(desktop, package, "/x")
    equal("removed, it leaves what is the user's", names_below(installed), ["Skelmond.DLL"])
    equal("and no way to open logs with it", [desktop.registry(rf"HKLM\Software\Classes\{name}")
                                              for name in ("Carvelot.Log", r"Applications\carvelot.exe")], [None, None])
    equal("and the user's settings", desktop.registry(r"HKCU\Software\Tamrisk\Carvelot\Settings")["RefreshRate"],
          ("REG_DWORD", "0x7"))


def check_winget(folder, packages):
    """Each address ends with the name of a package that is here, whose sum stands below it."""
    (name,) = glob.glob(os.path.join(folder, "*", "*.installer.yaml"))
    with open(name, encoding="utf-8") as file:
        lines = [line.strip() for line in file]
    named = {}
    for line, after in zip(lines, lines[1:]):
        if line.startswith("InstallerUrl: "):
            named[line.rsplit("/", 1)[1]] = after.removeprefix("InstallerSha256: ")
    equal("what winget is told of", named, {os.path.basename(path): digest(path).upper() for path in packages})
    version = os.path.basename(os.path.dirname(name))
    for other in glob.glob(os.path.join(folder, "*", "*.yaml")):
        with open(other, encoding="utf-8") as file:
            text = file.read()
        assert f"\nPackageVersion: {version}\n" in text and "ManifestVersion: 1.6.0\n" in text, other


def main():
    packages, binaries, prefix, screenshots = map(os.path.abspath, sys.argv[1:])
    (archive,), (installer,), (msi,) = (glob.glob(os.path.join(packages, pattern)) for pattern in ("*.zip", "*-setup.exe", "*.msi"))
    libraries = os.path.join(binaries, "simulator", "libraries")
    os.makedirs(screenshots, exist_ok=True)
    check_winget(os.path.join(packages, "winget"), [installer, msi])
    shutil.rmtree(prefix, ignore_errors=True)
    with Desktop(prefix, os.path.join(binaries, "window_helper.exe")) as desktop:
        try:
            name = check_zip(desktop, archive, libraries, screenshots)
            check_installer(desktop, installer, os.path.join(packages, name), libraries, screenshots)
            check_msi(desktop, msi, os.path.join(packages, name))
        except BaseException:
            desktop.picture().save(os.path.join(screenshots, "package-failed.png"))
            raise
    shutil.rmtree(prefix, ignore_errors=True)


if __name__ == "__main__":
    try:
        main()
    except (AssertionError, subprocess.TimeoutExpired) as error:
        sys.exit(f"failed: {error}")
