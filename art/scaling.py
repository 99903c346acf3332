"""Scales pictures as the program does: by area, with premultiplied alpha, in linear light.

Plain Python, so that the sheet and the tests need no image library. A picture is a list of rows, a row one flat list of
red, green, blue and alpha per pixel: linear light from 0 to 1, multiplied by alpha.
"""
import struct
import zlib

_LINEAR = [value / 255 / 12.92 if value <= 10 else ((value / 255 + .055) / 1.055) ** 2.4 for value in range(256)]
_STEPS = 4096
_ENCODED = [round(255 * (step / _STEPS * 12.92 if step <= .0031308 * _STEPS
                         else 1.055 * (step / _STEPS) ** (1 / 2.4) - .055)) for step in range(_STEPS + 1)]


def from_bytes(rows):
    """Converts rows of straight 8-bit RGBA bytes to a picture."""
    picture = []
    for row in rows:
        line = []
        for at in range(0, len(row), 4):
            alpha = row[at + 3] / 255
            line += (_LINEAR[row[at]] * alpha, _LINEAR[row[at + 1]] * alpha, _LINEAR[row[at + 2]] * alpha, alpha)
        picture.append(line)
    return picture


def to_bytes(picture):
    """The opposite of from_bytes()."""
    rows = []
    for line in picture:
        row = bytearray()
        for at in range(0, len(line), 4):
            alpha = min(line[at + 3], 1)
            if alpha < 1 / 512:
                row += b"\0\0\0\0"
                continue
            for value in line[at:at + 3]:
                row.append(_ENCODED[min(_STEPS, round(value / alpha * _STEPS))])
            row.append(round(alpha * 255))
        rows.append(bytes(row))
    return rows


def _shares(source, target):
    """For each target row the source rows that it covers, with the share of each; the shares of a row sum to 1."""
    step = source / target
    for index in range(target):
        start, end = index * step, (index + 1) * step
        shares = []
        for row in range(int(start), min(source, int(end) + 1)):
            covered = min(end, row + 1) - max(start, row)
            if covered > 1e-9:
                shares.append((row, covered / step))
        yield shares


def _scale_rows(lines, count):
    scaled = []
    for shares in _shares(len(lines), count):
        row, weight = shares[0]
        line = [weight * value for value in lines[row]]
        for row, weight in shares[1:]:
            line = [value + weight * other for value, other in zip(line, lines[row])]
        scaled.append(line)
    return scaled


def _turned(lines):
    """Swaps rows and columns of pixels."""
    pixels = [list(zip(*[iter(line)] * 4)) for line in lines]
    return [[value for pixel in column for value in pixel] for column in zip(*pixels)]


def scale(picture, width, height):
    """The picture averaged by area onto width x height pixels."""
    return _turned(_scale_rows(_turned(_scale_rows(picture, height)), width))


def write_png(path, rows):
    """Writes rows of straight 8-bit RGBA bytes."""
    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))

    header = struct.pack(">IIBBBBB", len(rows[0]) // 4, len(rows), 8, 6, 0, 0, 0)
    data = zlib.compress(b"".join(b"\0" + row for row in rows))
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", data) + chunk(b"IEND", b""))


def read_png(data):
    """(width, height, rows of straight 8-bit RGBA bytes); raises ValueError for anything but a valid 8-bit PNG with
    alpha."""
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("no PNG signature")
    at, compressed, ended, width, height = 8, b"", False, 0, 0
    while at < len(data):
        length, = struct.unpack_from(">I", data, at)
        kind, body = data[at + 4:at + 8], data[at + 8:at + 8 + length]
        if struct.unpack_from(">I", data, at + 8 + length)[0] != zlib.crc32(kind + body):
            raise ValueError(f"checksum of {kind!r} is wrong")
        if kind == b"IHDR":
            width, height, depth, colours, _, _, interlaced = struct.unpack(">IIBBBBB", body)
            if (depth, colours, interlaced) != (8, 6, 0):
                raise ValueError("not 8 bits per channel with alpha")
        elif kind == b"IDAT":
            compressed += body
        ended = kind == b"IEND"
        at += 12 + length
    if not ended:
        raise ValueError("ends early")
    return width, height, _unfiltered(zlib.decompress(compressed), width, height)


def _unfiltered(raw, width, height):
    stride, rows, above = width * 4, [], bytes(width * 4)
    if len(raw) != (stride + 1) * height:
        raise ValueError("wrong amount of pixels")
    for y in range(height):
        mode, line = raw[y * (stride + 1)], bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        if mode == 2:
            line = bytearray((a + b) & 255 for a, b in zip(line, above))
        elif mode:
            for i in range(stride):
                left = line[i - 4] if i >= 4 else 0
                corner = above[i - 4] if i >= 4 else 0
                line[i] = (line[i] + _guess(mode, left, above[i], corner)) & 255
        above = bytes(line)
        rows.append(above)
    return rows


def _guess(mode, left, up, corner):
    if mode == 1:
        return left
    if mode == 3:
        return (left + up) // 2
    return min((left, up, corner), key=lambda value: abs(left + up - corner - value))
