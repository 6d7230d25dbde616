#!/usr/bin/env python3
"""window_smoke.py PROGRAM HELPER PREFIX LIBRARIES SCREENSHOTS: the real window on a screen, and what it leaves in the registry.

Starts on an emptied settings store and without any library of JDE, with a log on the command line, then again with the
libraries and with settings that somebody else wrote.
"""

import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop import SOURCE, Desktop, windows_path  # noqa: E402

ROOT = r"HKCU\Software\Tamrisk\Carvelot"
APPS = ["activconsole.exe", "utbrowse.exe", "oexplore.exe", "objectbrowser.exe", "fda.exe", "BusBuild+.exe"]
RETURN = 13


def equal(what, found, expected):
    assert found == expected, f"{what}: {found!r} instead of {expected!r}"
    print(f"ok: {what}")


def answer(desktop, box):
    desktop.key(box, RETURN)
    desktop.gone(box)


def not_blank(desktop, window, name, screenshots):
    picture = desktop.picture()
    picture.save(os.path.join(screenshots, name + ".png"))
    colours = picture.colours(window.rect)
    pixels = sum(colours.values())
    most = max(colours.values())
    assert pixels > 300 * 200, f"{name}: the window lies outside of the screen: {window.rect}"
    assert len(colours) > 40 and most < 0.9 * pixels, f"{name}: {len(colours)} colours, one of them on {most} of {pixels}"
    print(f"ok: {name} shows a picture ({len(colours)} colours)")


def first_start(desktop, program, log, screenshots, name="log", current_folder=None):
    """Both messages in their order, six applications, the settings' defaults, and the window's own state at the end.

    Libraries that somebody has planted in the current folder are not found: it is none of the places to look.
    """
    desktop.run("reg", "delete", r"HKCU\Software\Tamrisk", "/f", check=False)
    messages = tempfile.TemporaryFile()
    running = desktop.start(program, windows_path(log), messages=messages, cwd=current_folder)
    box = desktop.window("Carvelot")
    equal("the message about Skelmond.DLL comes before the window", [w.title for w in desktop.windows()], ["Carvelot"])
    # The settings are read before the library is looked for.
    values = desktop.registry(ROOT + r"\JDEApps")
    equal("the first start turns the six applications on", values, {name: ("REG_DWORD", "0x1") for name in values})
    equal("the applications' names", sorted(values), sorted(APPS))
    equal("the first start writes the settings' defaults", desktop.registry(ROOT + r"\Settings"),
          {"AutoRefresh": ("REG_DWORD", "0x1"), "Rate": ("REG_DWORD", "0xa"),
           "Threshold": ("REG_DWORD", "0x%x" % struct.unpack("<I", struct.pack("<f", 1.0)))})
    equal("nothing else is written before the window", desktop.registry(ROOT + r"\Workspace"), None)
    answer(desktop, box)

    title = windows_path(log) + " - Carvelot"
    window = desktop.window(title)
    box = desktop.window("Carvelot")
    equal("the message about jdekrnl.dll comes when the window shows", sorted(w.title for w in desktop.windows()),
          ["Carvelot", title])
    answer(desktop, box)
    not_blank(desktop, window, name, screenshots)
    desktop.close(window)
    equal("the program ends when its window closes", running.wait(60), 0)

    messages.seek(0)
    said = messages.read().decode(errors="replace")
    if "SetCurrentProcessExplicitAppUserModelID" in said and "RegisterApplicationRestart" in said:
        equal("the program's identifier", re.findall(r'AppUserModelID\W+L"([^"]*)"', said), ["Tamrisk.Carvelot.2.0"])
        file = windows_path(log).replace("\\", "\\\\")
        equal("a restart would open the log in front, and nothing once it is closed",
              re.findall(r'RegisterApplicationRestart \(L"(.*)",0\)', said), [f'\\"{file}\\"', ""])
    else:
        print("not seen in this Wine: the program's identifier and its registration for a restart")

    workspace = desktop.registry(ROOT + r"\Workspace")
    equal("what is only ever set from outside is not written",
          sorted(set(workspace) & {"FontName", "FontHeight", "CacheAnalysis"}), [])
    equal("the window's creation applies the look, which is written", workspace["ApplicationLook"], ("REG_DWORD", "0xd2"))
    equal("the window keeps its place and layout as texts", {name: workspace[name][0] for name in ("Geometry", "Layout")},
          {"Geometry": "REG_SZ", "Layout": "REG_SZ"})
    equal("the window keeps its switches as numbers", {name: workspace[name] for name in ("StatusBar", "ToolTips")},
          {"StatusBar": ("REG_DWORD", "0x1"), "ToolTips": ("REG_DWORD", "0x1")})
    equal("the log is the one recent file", desktop.registry(ROOT + r"\Recent File List"),
          {"File1": ("REG_SZ", windows_path(log))})


def second_start(desktop, program, log, libraries, screenshots):
    """Settings that are there stay as they are, and with both libraries found no message comes up."""
    stored = {"AutoRefresh": "0", "Rate": "3", "Threshold": str(struct.unpack("<I", struct.pack("<f", 0.25))[0])}
    for name, number in stored.items():
        desktop.run("reg", "add", ROOT + r"\Settings", "/v", name, "/t", "REG_DWORD", "/d", number, "/f")
    desktop.run("reg", "delete", ROOT + r"\JDEApps", "/f")
    desktop.run("reg", "add", ROOT + r"\JDEApps", "/v", "own.exe", "/t", "REG_DWORD", "/d", "2", "/f")
    settings, apps = desktop.registry(ROOT + r"\Settings"), desktop.registry(ROOT + r"\JDEApps")
    recent = desktop.registry(ROOT + r"\Recent File List")

    # A copy of the program with both libraries beside it, as they stand on a workstation.
    folder = tempfile.mkdtemp(prefix="carvelot-beside-")
    try:
        for name in os.listdir(os.path.dirname(program)):
            if name.endswith(".dll") or name in ("platforms", "styles", os.path.basename(program)):
                os.symlink(os.path.join(os.path.dirname(program), name), os.path.join(folder, name))
        for name in ("Skelmond.dll", "jdekrnl.dll"):
            shutil.copy(os.path.join(libraries, name), folder)
        running = desktop.start(os.path.join(folder, os.path.basename(program)))
        window = desktop.window("Carvelot")
        equal("with both libraries beside the program no message comes up", len(desktop.windows()), 1)
        assert window.rect[2] - window.rect[0] > 600, f"that is no main window: {window}"
        not_blank(desktop, window, "empty", screenshots)
        desktop.close(window)
        equal("the program ends again", running.wait(60), 0)
    finally:
        shutil.rmtree(folder, ignore_errors=True)
    equal("settings that are there stay", desktop.registry(ROOT + r"\Settings"), settings)
    equal("a list of applications that is there stays", desktop.registry(ROOT + r"\JDEApps"), apps)
    equal("the recent files stay", desktop.registry(ROOT + r"\Recent File List"), recent)


def failed_start(desktop, program):
    """A log that cannot be opened ends the run before there is a window."""
    running = desktop.start(program, r"C:\no\such.log")
    answer(desktop, desktop.window("Carvelot"))  # Skelmond.DLL
    answer(desktop, desktop.window("Carvelot"))  # the file
    equal("a log that cannot be opened ends the start", running.wait(60), 1)


def main():
    program, helper, prefix, libraries, screenshots = map(os.path.abspath, sys.argv[1:])
    os.makedirs(screenshots, exist_ok=True)
    log = os.path.join(SOURCE, "samples", "order-entry.log")
    with Desktop(prefix, helper) as desktop:
        try:
            first_start(desktop, program, log, screenshots, current_folder=libraries)
            second_start(desktop, program, log, libraries, screenshots)
            failed_start(desktop, program)
        except BaseException:
            desktop.picture().save(os.path.join(screenshots, "failed.png"))
            print(f"what the screen showed: {screenshots}/failed.png")
            raise


if __name__ == "__main__":
    try:
        main()
    except (AssertionError, subprocess.TimeoutExpired) as error:
        sys.exit(f"failed: {error}")
