#!/usr/bin/env python3
"""The package on a Debian 12 that has nothing but its base: installed by apt, used, and removed without a trace.

deb_test.py PACKAGE REPORT SAMPLE CACHE

REPORT is the carvelot-report that the package was made with, CACHE a folder that keeps the base system between runs (remove
base.tar there for a new one). It must run as root. The mirrors and the way to them are those of this machine's apt. Exit 77: no
such system can be made or run here; the reason is printed.
"""

import hashlib
import os
import re
import shutil
import stat
import subprocess
import sys
import tempfile

import spdx

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../program"))
import program_test  # the screen

CODENAME = "bookworm"
USER = "nobody"
PATH = "/usr/sbin:/usr/bin:/sbin:/bin"
# What dpkg, apt and the loader write down of what they have done, and what is nobody's file.
STATE = re.compile(r"(dev|proc|run|sys|tmp|var/cache/(apt|debconf|ldconfig)|var/lib/(apt|dpkg)|var/log)(/|$)")


def fail(message):
    sys.exit(f"failed: {message}")


def skip(reason):
    print(f"skipped: {reason}", flush=True)
    sys.exit(77)


def run(*command, **more):
    done = subprocess.run(command, capture_output=True, text=True, check=False, **{"stdin": subprocess.DEVNULL} | more)
    if done.returncode != 0:
        fail(f"{' '.join(command)} ended with {done.returncode}:\n{done.stdout[-4000:]}{done.stderr[-4000:]}")
    return done.stdout


def archives():
    """The lines of the distribution's archives, as this machine's apt knows them, for apt."""
    told = run("apt-get", "indextargets", "Created-By: Packages", "Origin: Debian", "--format",
               "$(CODENAME) $(REPO_URI) $(RELEASE) $(COMPONENT)")
    found = sorted({line.split(" ", 1)[1] for line in told.splitlines() if line.startswith(CODENAME)})
    if not found:
        fail(f"apt knows no archive of {CODENAME}")
    return found


def make_base(cache):
    kept = os.path.join(cache, "base.tar")
    if os.path.exists(kept):
        return kept
    print("== making a base system", flush=True)
    with tempfile.TemporaryDirectory(dir=cache) as scratch:
        root = os.path.join(scratch, "root")
        mirror = next(line.split()[0] for line in archives() if line.split()[1] == CODENAME)
        made = subprocess.run(["debootstrap", "--variant=minbase", CODENAME, root, mirror], capture_output=True, text=True,
                              stdin=subprocess.DEVNULL, check=False)
        if made.returncode != 0:
            skip(f"no base system can be made here:\n{made.stdout[-1000:]}{made.stderr[-1000:]}")
        run("tar", "-C", root, "-cf", kept + ".new", ".")
    os.rename(kept + ".new", kept)
    return kept


class Debian:
    """A system in a folder."""

    def __init__(self, root):
        self.root = root

    def command(self, *words, user="root"):
        # What is mounted is gone with the process; $0 is the folder.
        inside = 'mount -t proc proc "$0/proc" && exec chroot --userspec="$1" "$0" "${@:2}"'
        return ["unshare", "--mount", "--pid", "--fork", "--kill-child", "bash", "-c", inside, self.root, user, *words]

    def run(self, *words, user="root", stdin=subprocess.DEVNULL, **environment):
        clean = {"PATH": PATH, "LC_ALL": "C.UTF-8", "HOME": "/root",
                 "DEBIAN_FRONTEND": "noninteractive"}
        return run(*self.command(*words, user=user), env=clean | environment, stdin=stdin)

    def path(self, name):
        return os.path.join(self.root, name.lstrip("/"))

    def files(self):
        """Every file with its kind, rights and content."""
        found = {}
        for folder, names, files in os.walk(self.root):
            within = os.path.relpath(folder, self.root)
            names[:] = [name for name in names if not STATE.match(os.path.normpath(os.path.join(within, name)))]
            for name in names + files:
                path = os.path.join(folder, name)
                status = os.lstat(path)
                content = ""
                if stat.S_ISLNK(status.st_mode):
                    content = os.readlink(path)
                elif stat.S_ISREG(status.st_mode):
                    with open(path, "rb") as file:
                        content = hashlib.sha256(file.read()).hexdigest()
                found[os.path.normpath(os.path.join(within, name))] = (oct(status.st_mode), status.st_uid, status.st_gid, content)
        return found


def check_package(package):
    said = subprocess.run(["lintian", "--allow-root", "--fail-on", "error,warning", package], capture_output=True, text=True,
                          check=False)
    if said.returncode != 0:
        fail(f"lintian:\n{said.stdout}{said.stderr}")
    with tempfile.TemporaryDirectory() as scratch:
        run("dpkg-deb", "-x", package, scratch)
        root = os.path.join(scratch, "usr")
        wrong = spdx.problems(os.path.join(root, "share/doc/carvelot/carvelot.spdx.json"), root)
        if wrong:
            fail("\n".join(wrong))
        if set(os.listdir(scratch)) != {"usr"}:
            fail("there is something outside of /usr")
    # What the tables of contents of this machine's packages say of the programs is what apt must bring.
    needs = run("dpkg-deb", "-f", package, "Depends")
    for library in ("libarchive13", "libsqlite3-0", "libzstd1", "libqt6widgets6", "libc6"):
        if library not in needs:
            fail(f"the package does not depend on {library}: {needs}")


def use_window(debian, home):
    with program_test.Screen() as screen:
        environment = {"PATH": PATH, "LC_ALL": "C.UTF-8", "HOME": home, "DISPLAY": screen.display,
                       "QT_QPA_PLATFORM": "xcb", "XDG_RUNTIME_DIR": home}
        running = subprocess.Popen(debian.command("carvelot", "--", "/usr/share/doc/carvelot/examples/order-entry.log", user=USER),
                                   env=environment, stdin=subprocess.DEVNULL)
        # There is no JDE: each of its libraries is missed with a message, the first before there is a window.
        screen.press(screen.window(running, "^Carvelot$"), "Return")
        window = screen.window(running, r"order-entry\.log - Carvelot$")
        screen.press(screen.window(running, "^Carvelot$"), "Return")
        screen.leave(window)
        program_test.ended(running, 0)


def main():
    package, report, sample, cache = sys.argv[1:]
    if os.geteuid() != 0:
        fail("this must run as root")
    check_package(package)
    print("== lintian finds nothing, and the bill of materials is whole", flush=True)

    if subprocess.run(["unshare", "--mount", "--pid", "--fork", "--kill-child", "true"], check=False).returncode != 0:
        skip("no system can be run in a folder here")
    os.makedirs(cache, exist_ok=True)
    with tempfile.TemporaryDirectory(dir=cache) as scratch:
        root = os.path.join(scratch, "root")
        os.mkdir(root)
        run("tar", "-C", root, "-xf", make_base(cache))
        os.chmod(scratch, 0o755)
        debian = Debian(root)
        with open(debian.path("etc/apt/sources.list"), "w", encoding="utf-8") as file:
            file.writelines(f"deb {line}\n" for line in archives())
        with open(debian.path("etc/apt/apt.conf.d/90way"), "w", encoding="utf-8") as file:
            file.write("".join(line + "\n" for line in run("apt-config", "dump").splitlines() if re.match(r"Acquire::https?::", line)))
        if os.path.exists("/etc/resolv.conf"):
            shutil.copy("/etc/resolv.conf", debian.path("etc/resolv.conf"))
        debian.run("apt-get", "-qq", "update")
        # What is out of date would come anew with what the package needs.
        debian.run("apt-get", "-qq", "-y", "dist-upgrade")
        before = debian.files()

        print("== installing", flush=True)
        name = os.path.basename(package)
        shutil.copy(package, debian.path("tmp"))
        debian.run("apt-get", "-qq", "-y", "install", "--no-install-recommends", "/tmp/" + name)
        if debian.run("dpkg", "--verify", "carvelot"):
            fail("what was installed differs from what the package says")

        print("== using it", flush=True)
        home = "/tmp/home"
        os.mkdir(debian.path(home), 0o700)
        shutil.chown(debian.path(home), USER)
        for options in ([], ["--explore"], ["--json"]):
            with open(sample, "rb") as log, open(sample, "rb") as again:
                told = debian.run("carvelot-report", *options, "-", user=USER, stdin=log, HOME=home)
                if told != run(report, *options, "-", stdin=again):
                    fail(f"carvelot-report {options} tells something else than where it was built")
        use_window(debian, home)
        with open(debian.path(home + "/.config/carvelot/registry.ini"), encoding="utf-8") as store:
            if "order-entry.log" not in store.read():
                fail("the window kept no recent file")

        print("== removing it", flush=True)
        debian.run("apt-get", "-qq", "-y", "purge", "carvelot")
        left = [path for path in debian.files() if "carvelot" in path.lower()]
        if left:
            fail(f"left behind: {left}")
        debian.run("apt-get", "-qq", "-y", "autoremove", "--purge")
        after = debian.files()
        differences = [path for path in sorted(before.keys() | after.keys()) if before.get(path) != after.get(path)]
        if differences:
            fail("other than before: " + ", ".join(f"{path} {before.get(path)} {after.get(path)}" for path in differences))
        print(f"== {len(after)} files are as they were before")


if __name__ == "__main__":
    main()
