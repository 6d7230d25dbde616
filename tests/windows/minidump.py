"""What a minidump holds: the streams of its directory, the crash, the threads, the modules."""

import struct
from dataclasses import dataclass, field

THREADS, MODULES, MEMORY, EXCEPTION, SYSTEM, MEMORY64, THREAD_INFO = 3, 4, 5, 6, 7, 9, 17
WITH_THREAD_INFO = 0x1000


@dataclass
class Minidump:
    flags: int
    streams: dict = field(default_factory=dict)  # kind to bytes
    code: int = 0  # of the exception
    thread: int = 0  # that it came from
    threads: list = field(default_factory=list)
    modules: list = field(default_factory=list)  # names
    stack: bytes = b""  # of the thread with the exception


def read(path):
    with open(path, "rb") as file:
        data = file.read()
    signature, version, count, directory, _, _, flags = struct.unpack_from("<4s5IQ", data)
    assert signature == b"MDMP", f"begins with {signature}"
    assert version & 0xFFFF == 0xA793, f"version {version:x}"
    dump = Minidump(flags)

    def part(at, size):
        assert at + size <= len(data), f"{size} bytes at {at} of {len(data)}"
        return data[at:at + size]

    for n in range(count):
        kind, size, at = struct.unpack_from("<3I", data, directory + 12 * n)
        dump.streams[kind] = part(at, size)

    dump.thread, _, dump.code = struct.unpack_from("<3I", dump.streams[EXCEPTION])
    context_size, context = struct.unpack_from("<2I", dump.streams[EXCEPTION], 160)
    assert context_size >= 1232 and part(context, context_size), "the registers at the crash"

    threads = dump.streams[THREADS]
    for n in range(struct.unpack_from("<I", threads)[0]):
        number = struct.unpack_from("<I", threads, 4 + 48 * n)[0]
        size, at = struct.unpack_from("<2I", threads, 4 + 48 * n + 32)
        dump.threads.append(number)
        if number == dump.thread:
            dump.stack = part(at, size)

    modules = dump.streams[MODULES]
    for n in range(struct.unpack_from("<I", modules)[0]):
        name = struct.unpack_from("<I", modules, 4 + 108 * n + 20)[0]
        size = struct.unpack_from("<I", data, name)[0]
        dump.modules.append(part(name + 4, size).decode("utf-16-le"))
    return dump
