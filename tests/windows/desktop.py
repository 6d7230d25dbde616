"""A Windows desktop for a test: a display of its own, a Wine prefix on it, and the windows of the programs there."""

import os
import shutil
import struct
import subprocess
import tempfile
import time
import zlib
from dataclasses import dataclass

SOURCE = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
SCREEN = (1280, 900)


class Picture:
    """What stands on a screen, from the file that Xvfb keeps of it."""

    def __init__(self, path):
        with open(path, "rb") as file:
            data = file.read()
        header = struct.unpack(">25I", data[:100])
        self.width, self.height, self.line = header[4], header[5], header[12]
        assert header[11] == 32, "a screen of 32 bits a pixel"
        self.pixels = data[header[0] + header[19] * 12:]

    def colours(self, rect):
        """The colours within left, top, right, bottom, with how often each stands there."""
        left, top, right, bottom = max(rect[0], 0), max(rect[1], 0), min(rect[2], self.width), min(rect[3], self.height)
        found = {}
        for y in range(top, bottom):
            row = memoryview(self.pixels)[y * self.line + left * 4:y * self.line + right * 4].cast("I")
            for pixel in row:
                found[pixel & 0xFFFFFF] = found.get(pixel & 0xFFFFFF, 0) + 1
        return found

    def save(self, path):
        rows = bytearray()
        for y in range(self.height):
            row = self.pixels[y * self.line:y * self.line + self.width * 4]
            rgb = bytearray(self.width * 3)
            rgb[0::3], rgb[1::3], rgb[2::3] = row[2::4], row[1::4], row[0::4]
            rows += b"\0" + rgb

        def chunk(kind, content):
            body = kind + content
            return struct.pack(">I", len(content)) + body + struct.pack(">I", zlib.crc32(body))

        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">2I5B", self.width, self.height, 8, 2, 0, 0, 0)) +
                       chunk(b"IDAT", zlib.compress(bytes(rows), 6)) + chunk(b"IEND", b""))


@dataclass
class Window:
    handle: int
    rect: tuple
    process: int
    title: str


class Desktop:
    """Use it as a context: the display ends with it, and so does everything that runs on it."""

    def __init__(self, prefix, helper, screen=SCREEN):
        self.prefix, self.helper, self.screen = os.path.abspath(prefix), os.path.abspath(helper), screen

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix="carvelot-desktop-")
        made = subprocess.run(
            ["bash", "-c", '. "$1/cmake/wine-setup.sh" && prepare_wine "$2" && env -0', "-", SOURCE, self.prefix],
            capture_output=True, check=True).stdout
        self.environment = dict(entry.split("=", 1) for entry in made.decode().split("\0") if entry)
        self.wine = self.environment["WINE"]
        reading, writing = os.pipe()
        self.display = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-nolisten", "tcp", "-noreset", "-fbdir", self.folder,
             "-screen", "0", "%dx%dx24" % self.screen], pass_fds=[writing],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        number = b""
        while not number.endswith(b"\n"):
            got = os.read(reading, 16)
            assert got, "Xvfb does not start"
            number += got
        os.close(reading)
        self.environment["DISPLAY"] = ":" + number.decode().strip()
        self.started = []
        # A Wine without the faces of Windows falls back to one with serifs.
        for face, other in (("Tahoma", "DejaVu Sans"), ("Segoe UI", "DejaVu Sans"), ("Courier New", "Liberation Mono")):
            self.run("reg", "add", r"HKCU\Software\Wine\Fonts\Replacements", "/v", face, "/d", other, "/f")
        return self

    def __exit__(self, *_):
        for process in self.started:
            if process.poll() is None:
                process.kill()
        # A server of Wine serves one prefix: ours.
        server = os.path.join(os.path.dirname(self.wine), "wineserver")
        subprocess.run([server if os.path.exists(server) else "wineserver", "-k"], env=self.environment, check=False)
        self.display.terminate()
        self.display.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def run(self, *command, check=True, **options):
        """Runs a Windows program to its end and returns what it prints."""
        status, printed = self.output(*command, **options)
        assert status == 0 or not check, f"{command} ends with {status}: {printed}"
        return printed

    def output(self, *command, **options):
        # By a file: the services that the first program of a prefix starts would keep a pipe open.
        with tempfile.TemporaryFile() as printed:
            status = subprocess.run([self.wine, *command], env=self.environment, stdin=subprocess.DEVNULL,
                                    stdout=printed, stderr=subprocess.DEVNULL, timeout=300, **options).returncode
            printed.seek(0)
            return status, printed.read().decode(errors="replace").replace("\r", "")

    def start(self, *command, environment=None, messages=None, **options):
        """Starts a Windows program. messages: a file for what Wine says of calls that it only pretends to do."""
        variables = self.environment | (environment or {}) | ({"WINEDEBUG": "fixme+all"} if messages else {})
        process = subprocess.Popen([self.wine, *command], env=variables, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=messages or subprocess.DEVNULL, **options)
        self.started.append(process)
        return process

    def windows(self, kind="list"):
        found = []
        for line in self.run(self.helper, kind).splitlines():
            handle, left, top, right, bottom, process, title = line.split("\t", 6)
            found.append(Window(int(handle), (int(left), int(top), int(right), int(bottom)), int(process), title))
        return found

    def boxes(self):
        """The system's own dialogs."""
        return self.windows("boxes")

    def window(self, title, seconds=60, kind="list"):
        """Waits for the window whose title this is."""
        end = time.monotonic() + seconds
        while True:
            found = self.windows(kind)
            for window in found:
                if window.title == title:
                    return window
            assert time.monotonic() < end, f"no window {title!r}, but {[window.title for window in found]}"
            time.sleep(0.2)

    def gone(self, window, seconds=30):
        end = time.monotonic() + seconds
        while any(other.handle == window.handle for other in self.windows()):
            assert time.monotonic() < end, f"the window {window.title!r} stays"
            time.sleep(0.2)

    def close(self, window):
        self.run(self.helper, "close", str(window.handle))

    def key(self, window, key):
        self.run(self.helper, "key", str(window.handle), str(key))

    def picture(self, seconds=10):
        """What the screen shows once nothing changes on it any more."""
        end = time.monotonic() + seconds
        last = None
        while True:
            picture = Picture(os.path.join(self.folder, "Xvfb_screen0"))
            if (last is not None and picture.pixels == last.pixels) or time.monotonic() > end:
                return picture
            last = picture
            time.sleep(0.5)

    def registry(self, key):
        """The values of a key below HKCU or HKLM: name to (type, text), in the registry's order. None without the key."""
        status, printed = self.output("reg", "query", key)
        if status != 0:
            return None
        values = {}
        for line in printed.splitlines():
            parts = line.strip().split("    ", 2)
            if line.startswith("    ") and len(parts) >= 2:
                values[parts[0]] = (parts[1], parts[2] if len(parts) > 2 else "")
        return values

    def path(self, windows_path):
        """Where a path of drive C lies."""
        assert windows_path[:3].upper() == "C:\\"
        return os.path.join(self.prefix, "drive_c", *windows_path[3:].split("\\"))


def windows_path(path):
    """The path by which Wine's programs see a file of this machine."""
    return "Z:" + os.path.abspath(path).replace("/", "\\")
