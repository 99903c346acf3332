"""Reads the import table of a Windows executable or library of 32 or 64 bit, without any package."""
import struct
from pathlib import Path

PE32_PLUS = 0x20B
IMPORTS, DELAYED_IMPORTS = 1, 13
BY_NUMBER = "by number"


class _Image:
    def __init__(self, path):
        self.data = Path(path).read_bytes()
        header, = struct.unpack_from("<I", self.data, 0x3C)
        if self.data[header:header + 4] != b"PE\0\0":
            raise ValueError(f"{path} is not a Windows executable")
        self._sections, = struct.unpack_from("<H", self.data, header + 6)
        optional_size, = struct.unpack_from("<H", self.data, header + 20)
        optional = header + 24
        magic, = struct.unpack_from("<H", self.data, optional)
        self.wide = magic == PE32_PLUS
        self._directories = optional + (112 if self.wide else 96)
        self._table = optional + optional_size

    def directory(self, index):
        """The address, 0 if there is none."""
        return struct.unpack_from("<I", self.data, self._directories + 8 * index)[0]

    def place(self, address):
        """Where in the file an address is."""
        for index in range(self._sections):
            _, memory, raw_size, raw = struct.unpack_from("<IIII", self.data, self._table + 40 * index + 8)
            if memory <= address < memory + raw_size:
                return raw + address - memory
        raise ValueError(f"address {address:#x} is in no section")

    def text(self, address):
        start = self.place(address)
        return self.data[start:self.data.index(b"\0", start)].decode("ascii")


def _names(image, thunks):
    size, layout, number = (8, "<Q", 1 << 63) if image.wide else (4, "<I", 1 << 31)
    at = image.place(thunks)
    while (value := struct.unpack_from(layout, image.data, at)[0]):
        yield BY_NUMBER if value & number else image.text(value + 2)  # after the hint
        at += size


def read(path):
    """{library in lower case: set of names}, functions without a name as BY_NUMBER."""
    image, found = _Image(path), {}
    if image.directory(DELAYED_IMPORTS):
        raise ValueError(f"{path} loads libraries late, which is not read here")
    if not image.directory(IMPORTS):
        return found
    at = image.place(image.directory(IMPORTS))
    while True:
        names, _, _, library, bound = struct.unpack_from("<5I", image.data, at)
        if not library:
            return found
        found.setdefault(image.text(library).lower(), set()).update(_names(image, names or bound))
        at += 20
