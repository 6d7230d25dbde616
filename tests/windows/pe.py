"""What a Windows program's file says of itself: kind, imports, resources."""

import struct
from dataclasses import dataclass, field

GUI, CONSOLE = 2, 3
ICON, GROUP_ICON, VERSION, MANIFEST = 3, 14, 16, 24
HIGH_ENTROPY, DYNAMIC_BASE, NX = 0x20, 0x40, 0x100


@dataclass
class Program:
    machine: int
    subsystem: int
    protection: int
    imports: dict = field(default_factory=dict)  # library, as it is written, to names
    resources: dict = field(default_factory=dict)  # (type, name) to bytes
    sections: list = field(default_factory=list)
    data: bytes = b""

    def file_version(self):
        """The four numbers of the fixed version."""
        block = next(data for (kind, _), data in self.resources.items() if kind == VERSION)
        at = block.index(struct.pack("<I", 0xFEEF04BD))
        most, least = struct.unpack_from("<2I", block, at + 8)
        return most >> 16, most & 0xFFFF, least >> 16, least & 0xFFFF

    def version_text(self, name):
        block = next(data for (kind, _), data in self.resources.items() if kind == VERSION)
        at = block.index((name + "\0").encode("utf-16-le")) + 2 * len(name) + 2
        while block[at:at + 2] == b"\0\0":
            at += 2
        return block[at:].decode("utf-16-le", "replace").split("\0", 1)[0]

    def icon_sizes(self):
        group = next(data for (kind, _), data in self.resources.items() if kind == GROUP_ICON)
        count = struct.unpack_from("<3H", group)[2]
        return sorted(group[6 + 14 * n] or 256 for n in range(count))


def read(path):
    with open(path, "rb") as file:
        data = file.read()
    header = struct.unpack_from("<I", data, 0x3C)[0]
    assert data[:2] == b"MZ" and data[header:header + 4] == b"PE\0\0", f"{path} is no Windows program"
    machine, count, _, _, _, size, _ = struct.unpack_from("<2H3I2H", data, header + 4)
    optional = header + 24
    assert struct.unpack_from("<H", data, optional)[0] == 0x20B, f"{path} is not a 64-bit program"
    subsystem, protection = struct.unpack_from("<2H", data, optional + 68)
    directories = [struct.unpack_from("<2I", data, optional + 112 + 8 * n) for n in range(3)]
    program = Program(machine, subsystem, protection, data=data)
    sections = []
    for n in range(count):
        at = optional + size + 40 * n
        virtual_size, virtual, raw_size, raw = struct.unpack_from("<4I", data, at + 8)
        sections.append((virtual, max(virtual_size, raw_size), raw))
        program.sections.append(data[at:at + 8].rstrip(b"\0").decode("latin-1"))

    def offset(address):
        for virtual, length, raw in sections:
            if virtual <= address < virtual + length:
                return address - virtual + raw
        raise AssertionError(f"{path}: address {address:x} lies nowhere")

    def text(address):
        at = offset(address)
        return data[at:data.index(b"\0", at)].decode("latin-1")

    if directories[1][0]:
        at = offset(directories[1][0])
        while True:
            lookup, _, _, name, first = struct.unpack_from("<5I", data, at)
            if name == 0:
                break
            names = program.imports.setdefault(text(name), [])
            entry = offset(lookup or first)
            while (value := struct.unpack_from("<Q", data, entry)[0]) != 0:
                names.append(text((value & 0x7FFFFFFF) + 2) if not value >> 63 else value & 0xFFFF)
                entry += 8
            at += 20

    def walk(base, at, path_so_far):
        named, numbered = struct.unpack_from("<2H", data, base + at + 12)
        for n in range(named + numbered):
            name, target = struct.unpack_from("<2I", data, base + at + 16 + 8 * n)
            if target >> 31:
                walk(base, target & 0x7FFFFFFF, path_so_far + [name])
            else:
                address, length = struct.unpack_from("<2I", data, base + target)
                begin = offset(address)
                program.resources[tuple(path_so_far[:2])] = data[begin:begin + length]

    if directories[2][0]:
        walk(offset(directories[2][0]), 0, [])
    return program
