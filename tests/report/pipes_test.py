"""carvelot-report over pipes and archives that other programs make.

usage: pipes_test.py CARVELOT_REPORT LOG...
"""

import gzip
import io
import os
import shutil
import subprocess
import sys
import tempfile
import threading
import zipfile

REPORT, LOGS = sys.argv[1], sys.argv[2:]


def zipped(content, method):
    out = io.BytesIO()
    with zipfile.ZipFile(out, "w", method) as archive:
        archive.writestr("folder/a.log", content)
    return out.getvalue()


def program(command, content):
    return subprocess.run(command, input=content, stdout=subprocess.PIPE, check=True).stdout


def kinds(content):
    yield "plain", content
    yield "gzip", gzip.compress(content)
    yield "zip", zipped(content, zipfile.ZIP_DEFLATED)
    yield "stored zip", zipped(content, zipfile.ZIP_STORED)
    if shutil.which("gzip"):
        yield "gzip -9", program(["gzip", "-9"], content)
    if shutil.which("zstd"):
        yield "zstd", program(["zstd", "-q"], content)
        yield "zstd -19", program(["zstd", "-q", "-19"], content)
    if shutil.which("zip"):
        yield "zip of a pipe", program(["zip", "-q", "-", "-"], content)


def report(*arguments, **options):
    done = subprocess.run([REPORT, "--json", *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)
    return done.returncode, done.stdout, done.stderr


def through_fifo(path, content):
    def write():
        with open(path, "wb") as pipe:
            pipe.write(content)

    os.mkfifo(path)
    writer = threading.Thread(target=write)
    writer.start()
    try:
        return report(path)
    finally:
        writer.join()
        os.remove(path)


def main():
    failed = []
    runs = 0

    def expect(what, got, wanted):
        nonlocal runs
        runs += 1
        if got != wanted:
            failed.append(f"{what}: {got!r:.300} instead of {wanted!r:.300}")

    with tempfile.TemporaryDirectory() as folder:
        empty = os.path.join(folder, "empty")
        os.mkdir(empty)
        for log in LOGS:
            with open(log, "rb") as file:
                content = file.read()
            path = os.path.join(folder, "log")
            with open(path, "wb") as file:
                file.write(content)
            status, wanted, err = report(path)
            expect(log, (status, err), (0, b""))
            for kind, packed in kinds(content):
                with open(path, "wb") as file:
                    file.write(packed)
                expect(f"{log}, {kind}, file", report(path), (0, wanted, b""))
                from_pipe = wanted.replace(path.encode(), b"-")
                environment = {**os.environ, "TMPDIR": empty}
                expect(f"{log}, {kind}, pipe", report("-", input=packed, env=environment), (0, from_pipe, b""))
                with open(path, "rb") as file:
                    expect(f"{log}, {kind}, standard input", report("-", stdin=file), (0, from_pipe, b""))
                fifo = os.path.join(folder, "fifo")
                expect(f"{log}, {kind}, fifo", through_fifo(fifo, packed),
                       (0, wanted.replace(path.encode(), fifo.encode()), b""))
        expect("copies on the disk", os.listdir(empty), [])
        expect("no bytes", report("-", input=b""), (1, b"", b"Error: Cannot determine tracing log format\n"))
        cut = gzip.compress(content)[:-8]
        expect("a cut pipe", report("-", input=cut)[::2],
               (1, b"The archive is damaged: %d bytes were read.\n" % len(content)))
    for line in failed:
        print(line)
    print(f"{runs} runs, {len(failed)} failed")
    sys.exit(1 if failed else 0)


main()
