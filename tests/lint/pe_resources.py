"""Reads the resources of a Windows executable: as much of the format as the lint tests need, without any package."""
import struct
from pathlib import Path

DIALOG, STRING, VERSION, MANIFEST = 5, 6, 16, 24


def _section_of(data):
    """Start in the file, start in memory and size of the resource section."""
    header = struct.unpack_from("<I", data, 0x3C)[0]
    if data[header:header + 4] != b"PE\0\0":
        raise ValueError("not a Windows executable")
    sections, = struct.unpack_from("<H", data, header + 6)
    optional, = struct.unpack_from("<H", data, header + 20)
    for index in range(sections):
        at = header + 24 + optional + 40 * index
        if data[at:at + 8].rstrip(b"\0") == b".rsrc":
            size, memory, raw_size, raw = struct.unpack_from("<IIII", data, at + 8)
            return raw, memory, min(size, raw_size)
    raise ValueError("no resources")


def _entries(section, offset):
    named, numbered = struct.unpack_from("<HH", section, offset + 12)
    for index in range(named + numbered):
        key, target = struct.unpack_from("<II", section, offset + 16 + 8 * index)
        if key & 0x80000000:
            at = key & 0x7FFFFFFF
            length, = struct.unpack_from("<H", section, at)
            key = section[at + 2:at + 2 + 2 * length].decode("utf-16-le")
        yield key, target & 0x7FFFFFFF


def read(path):
    """{(type, name, language): bytes}; types and names are numbers, or texts where the file has texts."""
    data = Path(path).read_bytes()
    raw, memory, size = _section_of(data)
    section, found = data[raw:raw + size], {}
    for kind, names in _entries(section, 0):
        for name, languages in _entries(section, names):
            for language, leaf in _entries(section, languages):
                address, length = struct.unpack_from("<II", section, leaf)
                found[kind, name, language] = section[address - memory:address - memory + length]
    return found


def strings(resources):
    """{language: {id: text}} of every string table; absent and empty texts are omitted, as the loader does."""
    tables = {}
    for (kind, block, language), data in resources.items():
        if kind != STRING:
            continue
        at = 0
        for index in range(16):
            length, = struct.unpack_from("<H", data, at)
            if length:
                text = data[at + 2:at + 2 + 2 * length].decode("utf-16-le")
                tables.setdefault(language, {})[(block - 1) * 16 + index] = text
            at += 2 + 2 * length
    return tables


class Dialog:
    """The head of an extended dialog template and its controls."""

    def __init__(self, data):
        self._data = data
        version, signature, _, self.exstyle, self.style, count, _, _, self.width, self.height = \
            struct.unpack_from("<HHIIIHhhhh", data, 0)
        if (version, signature) != (1, 0xFFFF):
            raise ValueError("not an extended dialog template")
        self._at = 26
        self.menu, self.window_class, self.title = self._text(), self._text(), self._text()
        self.font_size, _, _, _ = self._take("<HHBB")
        self.font = self._text()
        self.controls = [self._control() for _ in range(count)]

    def _take(self, layout):
        values = struct.unpack_from(layout, self._data, self._at)
        self._at += struct.calcsize(layout)
        return values

    def _text(self):
        first, = self._take("<H")
        if first == 0xFFFF:
            return self._take("<H")[0]
        text = ""
        while first:
            text += chr(first)
            first, = self._take("<H")
        return text

    def _control(self):
        self._at = (self._at + 3) & ~3
        _, _, style, x, y, width, height, identifier = self._take("<IIIhhhhI")
        window_class, _ = self._text(), self._text()
        extra, = self._take("<H")
        self._at += extra
        return {"id": identifier, "class": window_class, "style": style, "place": (x, y, width, height)}
