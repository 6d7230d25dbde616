"""Cache definition files: a reader and a writer of their own, to hold the program's against.

A member is a tuple (pointer, unsigned, type, count, size, name, type name).
"""

import struct

CLASS = b"CMember"


class BadFile(Exception):
    """Carries the members that were whole before the file turned bad, and in what way it did."""

    def __init__(self, kind, members):
        super().__init__(kind)
        self.kind = kind
        self.members = members


def units(text):
    return text.encode("utf-16-le", "surrogatepass")


def write_count(count):
    if count < 0xFFFF:
        return struct.pack("<H", count)
    if count < 0xFFFFFFFF:
        return struct.pack("<HI", 0xFFFF, count)
    return struct.pack("<HIQ", 0xFFFF, 0xFFFFFFFF, count)


def write_string(text):
    data = units(text)
    length = len(data) // 2
    if length < 255:
        header = bytes([length])
    elif length < 0xFFFE:
        header = b"\xff" + struct.pack("<H", length)
    else:
        header = b"\xff\xff\xff" + struct.pack("<I", length)
    return b"\xff\xfe\xff" + header + data


def write_narrow(text):
    """The 8-bit form, which is only ever read."""
    data = text.encode("ascii")
    if len(data) < 255:
        return bytes([len(data)]) + data
    if len(data) < 0xFFFE:
        return b"\xff" + struct.pack("<H", len(data)) + data
    return b"\xff\xff\xff" + struct.pack("<I", len(data)) + data


def write(members, string=write_string):
    out = bytearray(write_count(len(members)))
    for number, (pointer, unsigned, kind, count, size, name, type_name) in enumerate(members):
        if number == 0:
            out += struct.pack("<HHH", 0xFFFF, 1, len(CLASS)) + CLASS
        else:
            out += struct.pack("<H", 0x8001)
        out += struct.pack("<BBiii", pointer, unsigned, kind, count, size)
        out += string(name) + string(type_name)
    return bytes(out)


class Reader:
    def __init__(self, data):
        self.data = data
        self.at = 0
        self.members = []

    def bad(self, kind):
        raise BadFile(kind, self.members)

    def take(self, count):
        if self.at + count > len(self.data):
            self.bad("end")
        piece = self.data[self.at : self.at + count]
        self.at += count
        return piece

    def number(self, form):
        return struct.unpack("<" + form, self.take(struct.calcsize("<" + form)))[0]

    def string(self):
        wide = False
        length = self.number("B")
        if length == 0xFF:
            length = self.number("H")
            if length == 0xFFFE:
                wide = True
                length = self.number("B")
                if length == 0xFF:
                    length = self.number("H")
                    if length == 0xFFFF:
                        length = self.number("I")
            elif length == 0xFFFF:
                length = self.number("I")
        if wide:
            return self.take(2 * length).decode("utf-16-le", "surrogatepass")
        return self.take(length).decode("ascii")

    def read(self):
        count = self.number("H")
        if count == 0xFFFF:
            count = self.number("I")
            if count == 0xFFFFFFFF:
                count = self.number("Q")
        for number in range(count):
            tag = self.number("H")
            if number == 0:
                if tag != 0xFFFF:
                    self.bad("format")
                schema, length = self.number("H"), self.number("H")
                if self.take(length) != CLASS:
                    self.bad("class")
                if schema != 1:
                    self.bad("schema")
            elif tag != 0x8001:
                self.bad("format")
            pointer, unsigned = self.number("B"), self.number("B")
            kind, elements, size = self.number("i"), self.number("i"), self.number("i")
            name, type_name = self.string(), self.string()
            self.members.append((pointer, unsigned, kind, elements, size, name, type_name))
        return self.members


def read(data):
    return Reader(data).read()
