"""The table of pictures, the drawings and the built CardArt.dll agree with each other."""
import collections
import os
import struct
import sys
import zlib
from pathlib import Path

import pytest

import pe_resources

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "art"))
sys.dont_write_bytecode = True

import drawing  # noqa: E402
import render  # noqa: E402

BUILD = Path(os.environ.get("FENWYN_BUILD", ROOT / "build"))
STAGE = Path(os.environ.get("FENWYN_STAGE", BUILD / "stage"))
ROWS = render.read_table()

# Rows of a card picture that hold neither glyph nor anything else bright: the caption is drawn there, in the strip at the
# top of the screen from row 11, at the bottom from row 5, sixteen rows high. The strip shows rows 6-64 or 0-58.
CARD_GLYPH_ROWS = range(28, 58)
# On the enlarged card the description ends and the status begins at these rows.
LARGE_GLYPH_ROWS = range(66, 95)
BRIGHT = 120
# Mean difference of the colour channels, 0 to 255, below which two pictures look alike. The closest that are meant to
# differ are two flat connectors (1.7) and pairs of displays with one name exchanged (2.6).
LOOKS_ALIKE = 1.5


class Png:
    """A decoded picture; raises ValueError for anything but a sound 8-bit PNG with alpha."""

    def __init__(self, data):
        if data[:8] != b"\x89PNG\r\n\x1a\n":
            raise ValueError("no PNG signature")
        at, compressed, ended = 8, b"", False
        while at < len(data):
            length, = struct.unpack_from(">I", data, at)
            kind, body = data[at + 4:at + 8], data[at + 8:at + 8 + length]
            if struct.unpack_from(">I", data, at + 8 + length)[0] != zlib.crc32(kind + body):
                raise ValueError(f"checksum of {kind!r} is wrong")
            if kind == b"IHDR":
                self.width, self.height, depth, colours, _, _, interlaced = struct.unpack(">IIBBBBB", body)
                if (depth, colours, interlaced) != (8, 6, 0):
                    raise ValueError("not 8 bits per channel with alpha")
            elif kind == b"IDAT":
                compressed += body
            ended = kind == b"IEND"
            at += 12 + length
        if not ended:
            raise ValueError("ends early")
        self.rows = self._unfilter(zlib.decompress(compressed))

    def _unfilter(self, raw):
        stride, rows, above = self.width * 4, [], bytes(self.width * 4)
        if len(raw) != (stride + 1) * self.height:
            raise ValueError("wrong amount of pixels")
        for y in range(self.height):
            mode, line = raw[y * (stride + 1)], bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
            if mode == 2:
                line = bytearray((a + b) & 255 for a, b in zip(line, above))
            elif mode:
                for i in range(stride):
                    left = line[i - 4] if i >= 4 else 0
                    corner = above[i - 4] if i >= 4 else 0
                    line[i] = (line[i] + self._guess(mode, left, above[i], corner)) & 255
            above = bytes(line)
            rows.append(above)
        return rows

    @staticmethod
    def _guess(mode, left, up, corner):
        if mode == 1:
            return left
        if mode == 3:
            return (left + up) // 2
        return min((left, up, corner), key=lambda value: abs(left + up - corner - value))

    def bright_rows(self, margin):
        """Rows with a bright, opaque pixel, `margin` pixels from the left and right edge left aside."""
        for y, row in enumerate(self.rows):
            pixels = range(margin * 4, (self.width - margin) * 4, 4)
            if any(row[i + 3] > 200 and max(row[i:i + 3]) > BRIGHT for i in pixels):
                yield y

    def thumbnail(self, block=4):
        """Colours over black of every block x block pixels, as one flat list."""
        values = []
        for top in range(0, self.height, block):
            for left in range(0, self.width * 4, block * 4):
                for channel in range(3):
                    values.append(sum(row[i + channel] * row[i + 3] for row in self.rows[top:top + block]
                                      for i in range(left, min(left + block * 4, self.width * 4), 4)) // (255 * block * block))
        return values


@pytest.fixture(scope="module")
def library():
    path = STAGE / "CardArt.dll"
    assert path.is_file(), f"{path} is missing: build the target CardArt, or set FENWYN_STAGE"
    return pe_resources.read(path)


@pytest.fixture(scope="module")
def pictures(library):
    found = {}
    for (kind, name, _), data in library.items():
        if kind == "PNG":
            found[name] = Png(data)
    return found


def of_kind(kind):
    return [row for row in ROWS if row["kind"] == kind]


def look(row):
    return row["glyph"], row["tone"], row["badge"]


def test_ids_are_unique_and_fit_into_sixteen_bits():
    ids = [row["id"] for row in ROWS]
    assert not [i for i, count in collections.Counter(ids).items() if count > 1]
    assert all(0 < i < 0x10000 for i in ids)


def test_every_row_names_a_known_kind_tone_and_glyph():
    for row in ROWS:
        assert row["kind"] in drawing.PIXELS, row
        assert row["tone"] in drawing.TONES, row
        assert row["meaning"], row
        drawing.compose(row["kind"], *look(row))  # raises for a glyph or badge that does not exist


def test_no_glyph_is_left_unused():
    used = {row["glyph"] for row in ROWS} | {"badge-" + row["badge"] for row in ROWS if row["badge"]}
    present = {path.stem for path in (drawing.HERE / "glyphs").glob("*/*.svg")}
    assert present - used == set()


def test_small_and_large_pictures_come_in_pairs():
    small, large = (collections.Counter(look(row) for row in of_kind(kind)) for kind in ("item", "large-item"))
    assert small == large
    assert [key for key, count in small.items() if count > 1] == [], "two items with the same picture"
    assert {row["glyph"] for row in of_kind("card")} == {row["glyph"] for row in of_kind("large-card")}


def test_the_library_holds_exactly_the_pictures_of_the_table(library):
    present = sorted(name for kind, name, _ in library if kind == "PNG")
    assert present == [row["id"] for row in sorted(ROWS, key=lambda row: row["id"])]
    assert {kind for kind, _, _ in library} == {"PNG"}


def test_every_picture_is_a_sound_png_of_its_kinds_size(pictures):
    wrong = [row["id"] for row in ROWS
             if (pictures[row["id"]].width, pictures[row["id"]].height) != drawing.PIXELS[row["kind"]]]
    assert wrong == []


def test_no_two_pictures_are_the_same_bytes(library):
    seen = {}
    for (_, name, _), data in library.items():
        assert data not in seen, f"{name} is a copy of {seen[data]}"
        seen[data] = name


@pytest.mark.parametrize("kind,allowed,margin", [("card", CARD_GLYPH_ROWS, 8), ("large-card", LARGE_GLYPH_ROWS, 8)])
def test_the_glyph_of_a_card_leaves_the_rows_of_its_texts_free(pictures, kind, allowed, margin):
    for row in of_kind(kind):
        edge = {0, drawing.PIXELS[kind][1] - 1}
        bright = set(pictures[row["id"]].bright_rows(margin)) - edge
        assert bright, f"{row['id']} shows nothing"
        assert bright <= set(allowed), f"{row['id']}: rows {min(bright)} to {max(bright)}"


@pytest.mark.parametrize("kind", ["card", "large-card", "item", "large-item", "connector"])
def test_no_two_pictures_of_a_kind_look_alike(pictures, kind):
    rows = of_kind(kind)
    small = {row["id"]: pictures[row["id"]].thumbnail() for row in rows}
    alike = []
    for index, row in enumerate(rows):
        for other in rows[:index]:
            pairs = zip(small[row["id"]], small[other["id"]])
            difference = sum(abs(a - b) for a, b in pairs) / len(small[row["id"]])
            if difference < LOOKS_ALIKE:
                alike.append((round(difference, 2), other["id"], row["id"]))
    assert sorted(alike) == []


def test_a_broken_picture_is_noticed(library):
    data = bytearray(next(iter(library.values())))
    Png(bytes(data))
    data[len(data) // 2] ^= 1
    with pytest.raises(ValueError):
        Png(bytes(data))
