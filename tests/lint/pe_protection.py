"""What protects a shipped program or library from being misused, read from its file."""
import hashlib
import struct

import pe_resources

PE32_PLUS = 0x20B
HIGH_ENTROPY_VA, DYNAMIC_BASE, NX_COMPAT = 0x20, 0x40, 0x100
RELOCS_STRIPPED, LIBRARY = 0x1, 0x2000
WRITE, EXECUTE = 0x80000000, 0x20000000
BASE_RELOCATIONS, DEBUG = 5, 6

# The linker takes cmake/StackGuard.cpp, and with it this import, for files with protected functions only.
CANARY = b"SystemFunction036"
# The compiler's own canary opens a cryptographic provider at each start.
SLOW_CANARY = b"CryptGenRandom"


def base_of(data, optional, magic):
    return struct.unpack_from("<Q", data, optional + 24)[0] if magic == PE32_PLUS else struct.unpack_from("<I", data, optional + 28)[0]


def base_by_name(name, magic):
    """The preferred address that the build gives to a library; without one, the linker takes the path of its file."""
    digest = hashlib.md5(name.encode()).hexdigest()
    return int(f"3{digest[:4]}0000" if magic == PE32_PLUS else f"6{digest[:3]}0000", 16)


def faults(path):
    """What is wrong with the file, in words; empty for a file as it should be. Source of the layout: the PE format."""
    data = path.read_bytes()
    header = struct.unpack_from("<I", data, 0x3C)[0]
    sections, stamp, symbols, _, optional_size, characteristics = struct.unpack_from("<HIIIHH", data, header + 6)
    optional = header + 24
    magic, = struct.unpack_from("<H", data, optional)
    flags, = struct.unpack_from("<H", data, optional + 70)
    directories = optional + (112 if magic == PE32_PLUS else 96)
    found = []
    if stamp:
        found.append("time of linking")
    if symbols:
        found.append("symbols")
    if characteristics & RELOCS_STRIPPED or not struct.unpack_from("<I", data, directories + 8 * BASE_RELOCATIONS)[0]:
        found.append("no relocations")
    if struct.unpack_from("<I", data, directories + 8 * DEBUG)[0]:
        found.append("debug information")
    wanted = DYNAMIC_BASE | NX_COMPAT | (HIGH_ENTROPY_VA if magic == PE32_PLUS else 0)
    if flags & wanted != wanted:
        found.append(f"flags {flags:#x} lack {wanted & ~flags:#x}")
    for index in range(sections):
        at = optional + optional_size + 40 * index
        if (rights := struct.unpack_from("<I", data, at + 36)[0]) & WRITE and rights & EXECUTE:
            found.append(f"{data[at:at + 8]} can be written and executed")
    if characteristics & LIBRARY and base_of(data, optional, magic) != base_by_name(path.stem, magic):
        found.append("an address that follows from the folder")
    if CANARY not in data:
        found.append("no stack protector")
    if SLOW_CANARY in data:
        found.append("the compiler's own canary")
    try:
        kinds = {kind for kind, _, _ in pe_resources.read(path)}
    except ValueError:
        kinds = set()
    if pe_resources.VERSION not in kinds:
        found.append("no version information")
    return found


# What needs no protection: the pictures have no code and no address; the one function of the other keeps no buffer.
EXEMPT = {"CardArt.dll": {"no stack protector", "no relocations"}, "ZelEvnt.dll": {"no stack protector"}}
