#!/usr/bin/env python3
"""program_test.py CARVELOT LIBRARIES SAMPLE LOCALES: the program itself, from its command line to its exit code, on a screen
of its own.

LIBRARIES holds stand-ins for JDE's libraries, SAMPLE is a log, LOCALES a folder of locales that are no machine's own (or
nothing).
"""

import os
import shutil
import subprocess
import sys
import tempfile
import time

SECONDS = 60  # for what comes up; nothing is measured by it


def fail(message):
    sys.exit(f"failed: {message}")


class Screen:
    def __enter__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x900x24", "-nolisten", "tcp"],
                                       pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as answer:
            self.display = ":" + answer.readline().strip()
        return self

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()

    def tool(self, *words):
        return subprocess.run(["xdotool", *words], env=os.environ | {"DISPLAY": self.display}, capture_output=True,
                              text=True, check=False)

    def press(self, window, *keys):
        # There is no window manager: nobody else gives a window the keyboard.
        self.tool("windowfocus", "--sync", window)
        self.tool("key", "--delay", "100", *keys)

    def leave(self, window):
        self.press(window, "alt+f", "x")

    def window(self, running, title, count=1):
        """The last of the visible windows of this title, a regular expression, as soon as there are so many."""
        end = time.monotonic() + SECONDS
        while time.monotonic() < end:
            found = self.tool("search", "--onlyvisible", "--name", title).stdout.split()
            if len(found) == count:
                return found[-1]
            if running.poll() is not None:
                fail(f"the program ended with {running.returncode} before a window {title} came up")
            time.sleep(0.05)
        fail(f"no window {title}")


def ended(running, expected):
    try:
        if running.wait(SECONDS) != expected:
            fail(f"the program ended with {running.returncode} instead of {expected}")
    except subprocess.TimeoutExpired:
        running.kill()
        fail("the program does not end")


def main():
    program, libraries, sample, locales = sys.argv[1:]
    with Screen() as screen, tempfile.TemporaryDirectory() as scratch:
        environment = {name: value for name, value in os.environ.items() if not name.startswith(("LC_", "XDG_", "CARVELOT_"))}
        environment |= {"DISPLAY": screen.display, "QT_QPA_PLATFORM": "xcb", "HOME": scratch, "XDG_CONFIG_HOME": scratch,
                        "XDG_RUNTIME_DIR": scratch, "CARVELOT_LIBRARY_DIR": libraries}
        if locales:
            environment |= {"LOCPATH": locales, "LC_ALL": "tr_TR.UTF-8"}

        def start(*arguments, **more):
            return subprocess.Popen([program, *arguments], env=environment | more, cwd=scratch, stdin=subprocess.DEVNULL)

        # A log of the command line, whatever the bytes of its name; the toolkit's own switches are no file.
        log = os.path.join(os.fsencode(scratch), b"\xfforder.log")
        shutil.copy(sample, log)
        running = start("-style", "fusion", log)
        screen.leave(screen.window(running, r"order\.log - Carvelot$"))
        ended(running, 0)
        store = open(os.path.join(scratch, "carvelot", "registry.ini"), "rb").read()
        if b"order.log" not in store or b"\\x" not in store and b"\xff" not in store:
            fail(f"the log is no recent file: {store!r}")

        # Without one the window is empty.
        running = start()
        screen.leave(screen.window(running, "^Carvelot$"))
        ended(running, 0)

        # One that cannot be opened ends the run, after its message.
        running = start("missing.log")
        screen.press(screen.window(running, "^Carvelot$"), "Return")
        ended(running, 1)

        # Without JDE each of its libraries is missed with a message, the first before there is a window.
        running = start(CARVELOT_LIBRARY_DIR=scratch)
        box = screen.window(running, "^Carvelot$")
        screen.press(box, "Return")
        screen.press(screen.window(running, "^Carvelot$", 2), "Return")
        screen.leave(screen.window(running, "^Carvelot$", 1))
        ended(running, 0)
    print("the program starts and ends as it should")


if __name__ == "__main__":
    main()
