"""The table of pictures, the drawings and the built CardArt.dll agree with each other."""
import collections
import math
import operator
import os
import sys
from pathlib import Path

import pytest

import pe_resources

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "art"))
sys.dont_write_bytecode = True

import drawing  # noqa: E402
import render  # noqa: E402
import scaling  # noqa: E402

BUILD = Path(os.environ.get("FENWYN_BUILD", ROOT / "build"))
STAGE = Path(os.environ.get("FENWYN_STAGE", BUILD / "stage"))
ROWS = render.read_table()

# The rows of a card picture that may contain the glyph or anything else bright. The caption is drawn outside them: in
# the strip at the top of the screen from row 11, at the bottom from row 5, sixteen rows high. The strip shows rows 6-64
# or 0-58.
CARD_GLYPH_ROWS = range(28, 58)
# On the enlarged card three lines of description end above these rows, and the field of the status begins below them.
LARGE_GLYPH_ROWS = range(70, 92)
BRIGHT = 120
# The card whose edge is also the hover strip's picture.
HOVER_STRIP = 131
# Mean difference of the colour channels, 0 to 255, below which two pictures look alike. The closest intentionally
# different ones are two flat connectors (1.7) and pairs of displays with one name exchanged (2.6).
LOOKS_ALIKE = 1.5


class Png:
    """A decoded picture; raises ValueError for anything but a valid 8-bit PNG with alpha."""

    def __init__(self, data):
        self.width, self.height, self.rows = scaling.read_png(data)

    def bright_rows(self, margin):
        """Rows with a bright, opaque pixel, ignoring `margin` pixels at the left and right edge."""
        for y, row in enumerate(self.rows):
            pixels = range(margin * 4, (self.width - margin) * 4, 4)
            if any(row[i + 3] > 200 and max(row[i:i + 3]) > BRIGHT for i in pixels):
                yield y

    def thumbnail(self, rows, block=4):
        """Colours over black of every block x block pixels of the rows, as one flat list."""
        values = []
        for top in range(rows.start, rows.stop, block):
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
    assert {kind for kind, _, _ in library} == {"PNG", pe_resources.VERSION}


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
        height = drawing.PIXELS[kind][1]
        edge = {0, 1, height - 2, height - 1}
        bright = set(pictures[row["id"]].bright_rows(margin)) - edge
        assert bright, f"{row['id']} shows nothing"
        assert bright <= set(allowed), f"{row['id']}: rows {min(bright)} to {max(bright)}"


@pytest.mark.parametrize("kind", ["card", "large-card", "item", "large-item", "connector"])
def test_no_two_pictures_of_a_kind_look_alike(pictures, kind):
    rows = of_kind(kind)
    glyph = {"card": CARD_GLYPH_ROWS, "large-card": LARGE_GLYPH_ROWS}.get(kind, range(drawing.PIXELS[kind][1]))
    small = {row["id"]: pictures[row["id"]].thumbnail(glyph) for row in rows}
    # Averages differ less than their pixels: a few coarse blocks distinguish most pairs.
    coarse = {row["id"]: pictures[row["id"]].thumbnail(glyph, 20) for row in rows}

    def difference(pictures, row, other):
        one, two = pictures[row["id"]], pictures[other["id"]]
        return sum(map(abs, map(operator.sub, one, two))) / len(one)

    alike = []
    for index, row in enumerate(rows):
        for other in rows[:index]:
            if difference(coarse, row, other) < 2 * LOOKS_ALIKE and difference(small, row, other) < LOOKS_ALIKE:
                alike.append((round(difference(small, row, other), 2), other["id"], row["id"]))
    assert sorted(alike) == []


# The image ratios of the contact sheet, without those at which a small item has only a few pixels.
RATIOS = (.6, .8, 1, 1.25)
# The opacity of the program's pictures, and wallpapers as linear light.
OPACITY = 220 / 255
WALLPAPERS = {"white": 1.0, "black": 0.0, "photograph": .18}
# The minimum contrast of graphics and of texts (WCAG 2).
SEEN, READ = 3, 4.5


def contrast(one, other):
    return (max(one, other) + .05) / (min(one, other) + .05)


def luminances(picture, wallpaper):
    """Rows of the relative luminance of each pixel as seen on a wallpaper."""
    def seen(red, green, blue, alpha):
        # The screen blends in its own colour space, not in linear light.
        colour = .2126 * red + .7152 * green + .0722 * blue
        mixed = (colour / alpha if alpha else 0) ** (1 / 2.2) * alpha * OPACITY
        return (mixed + wallpaper ** (1 / 2.2) * (1 - alpha * OPACITY)) ** 2.2
    return [[seen(*line[at:at + 4]) for at in range(0, len(line), 4)] for line in picture]


def at_ratio(png, ratio, kind):
    """The picture as the program shows it, using the formulas of the item windows and of the strip."""
    picture = scaling.from_bytes(png.rows)
    if kind == "card":
        return scaling.scale(picture[6:], int(96 * ratio), int(int(96 * ratio) * .615))
    size = int(72 * ratio) - (22 if kind == "item" else 0)
    return scaling.scale(picture, size, size)


def along_radius(seen):
    """The mean luminance on circles around the centre, each a pixel smaller, from the edge half way inwards."""
    size = len(seen)
    for step in range(size // 4):
        values = []
        for angle in range(0, 360, 15):
            radius = size / 2 - .5 - step
            x, y = size / 2 - .5 + radius * math.cos(math.radians(angle)), size / 2 - .5 + radius * math.sin(math.radians(angle))
            values.append(seen[min(size - 1, round(y))][min(size - 1, round(x))])
        yield sum(values) / len(values)


@pytest.mark.parametrize("wallpaper", WALLPAPERS)
@pytest.mark.parametrize("ratio", RATIOS)
def test_the_ring_of_the_chosen_item_is_seen_on_any_wallpaper(pictures, wallpaper, ratio):
    seen = luminances(at_ratio(pictures[100], ratio, "large-item"), WALLPAPERS[wallpaper])
    radius = list(along_radius(seen))
    ring = radius.index(max(radius[:len(radius) // 2 + 1]))
    inside = min(radius[ring:])
    assert contrast(radius[ring], inside) > SEEN, "the ring against the disc"
    # Outside the ring, either the wallpaper is dark or the dark line is.
    assert contrast(radius[ring], min(radius[:ring] + [WALLPAPERS[wallpaper]])) > SEEN, "the ring against what is around it"


@pytest.mark.parametrize("ratio", RATIOS)
def test_the_chosen_item_is_told_without_colour_and_without_size(pictures, ratio):
    """The other picture, scaled to the same size, has a ring that is less than half as bright or as broad."""
    width = int(72 * ratio)

    def light_of_ring(picture):
        seen = luminances(scaling.scale(picture, width, width), WALLPAPERS["black"])
        return sum(list(along_radius(seen))[:max(3, width // 10)])
    chosen, other = (light_of_ring(scaling.from_bytes(pictures[name].rows)) for name in (100, 101))
    assert chosen > 2 * other


@pytest.mark.parametrize("kind,ratio", [("card", .45), ("item", .6)])
def test_lines_keep_their_contrast_when_the_picture_is_small(pictures, kind, ratio):
    """The item that is not chosen has 21 pixels at this ratio: too few for letters, so names only need to be
    visible."""
    faint = []
    for row in of_kind(kind):
        if row["tone"] == "off":
            continue
        seen = luminances(at_ratio(pictures[row["id"]], ratio, kind), WALLPAPERS["black"])
        # Away from the edges, so that neither rim nor ring counts.
        height, width = len(seen), len(seen[0])
        inner = [value for line in seen[height // 4:height * 3 // 4] for value in line[width // 4:width * 3 // 4]]
        if contrast(max(inner), min(inner)) < (SEEN if row["glyph"].startswith("displays:") else READ):
            faint.append((row["id"], round(contrast(max(inner), min(inner)), 1)))
    assert faint == []


# The inner edge of the ring, in pixels of the picture, and the least distance of a glyph from it, as a share of the
# radius: at ratio 0.8, where the item that is not chosen has 35 pixels, more than a pixel.
RING = {"item": (44.4, .06), "large-item": (61.2, .08)}


def inwards(size, ring):
    """(distance from the centre, x, y) of the pixels within the ring, the outermost first."""
    found = ((math.hypot(x + .5 - size / 2, y + .5 - size / 2), x, y) for y in range(size) for x in range(size))
    # What belongs to the ring begins a pixel before its edge.
    return sorted((place for place in found if place[0] < ring - 1), reverse=True)


@pytest.mark.parametrize("kind", RING)
def test_glyphs_do_not_touch_their_ring(pictures, kind):
    ring, least = RING[kind]
    size, _ = drawing.PIXELS[kind]
    places = inwards(size, ring)
    air = {}
    for row in of_kind(kind):
        pixels = pictures[row["id"]].rows
        outermost = next(away for away, x, y in places if max(pixels[y][x * 4:x * 4 + 3]) > BRIGHT)
        air[row["id"]] = round((ring - outermost) / (size / 2), 3)
    assert {name: found for name, found in air.items() if found < least} == {}


def test_glyphs_look_centred_in_their_ring(pictures):
    """The picture's centre is half-way between the centre of the glyph's outline and its centre of weight.

    Plates with names are as wide as the ring allows and two-toned; they are centred by their outline.
    """
    aside = {}
    for row in of_kind("item"):
        if row["badge"] or row["tone"] == "off" or row["glyph"].startswith("displays:"):
            continue
        seen = luminances(scaling.from_bytes(pictures[row["id"]].rows), WALLPAPERS["black"])
        ink = [(x + .5 - 50, y + .5 - 50, light) for y, line in enumerate(seen) for x, light in enumerate(line)
               if light > .12 and math.hypot(x + .5 - 50, y + .5 - 50) < 42]
        total = sum(light for _, _, light in ink)
        unit = 2 * drawing.GLYPH["item"][2]
        for axis in (0, 1):
            places = [point[axis] for point in ink]
            middle = (min(places) + max(places)) / 2
            weight = sum(point[axis] * point[2] for point in ink) / total
            if abs(middle + weight) / 2 > .85 * unit:
                aside[row["id"], row["glyph"], "xy"[axis]] = round((middle + weight) / 2 / unit, 2)
    assert aside == {}


@pytest.mark.parametrize("kind", ["card", "item", "large-item"])
def test_what_is_off_is_lighter_than_its_slash(pictures, kind):
    """Lighter in weight: dimmer and thinner strokes, so that the slash is read first."""
    rows = [row for row in of_kind(kind) if row["tone"] == "off"]
    assert rows
    x, y, scale = (value * drawing.PIXELS[kind][0] / drawing.UNITS[kind][0] for value in drawing.GLYPH[kind])
    for row in rows:
        seen = luminances(scaling.from_bytes(pictures[row["id"]].rows), WALLPAPERS["black"])
        slash = [seen[round(y + step * scale)][round(x + step * scale)] for step in (-8, -4, 0, 4, 8)]
        glyph = [seen[round(y + down * scale)][round(x + right * scale)]
                 for down in range(-10, 11) for right in range(-10, 11) if abs(down - right) > 4 and down ** 2 + right ** 2 < 144]
        assert max(glyph) > .1, row
        assert min(slash) > 1.5 * max(glyph), row
    assert drawing.OFF_WEIGHT < drawing.SLASH_WEIGHT


@pytest.mark.parametrize("wallpaper", WALLPAPERS)
@pytest.mark.parametrize("place,rows", [("top", range(61, 65)), ("bottom", range(4))])
def test_the_hover_strip_is_seen_on_any_wallpaper(pictures, wallpaper, place, rows):
    """Only four rows of the edge of one card are shown."""
    picture = scaling.from_bytes(pictures[HOVER_STRIP].rows)
    for ratio in RATIOS:
        strip = scaling.scale([picture[row] for row in rows], int(96 * ratio), 4)
        seen = luminances(strip, WALLPAPERS[wallpaper])
        middle = [line[len(line) // 2] for line in seen]
        assert max(contrast(value, WALLPAPERS[wallpaper]) for value in middle) > SEEN
        assert max(contrast(one, other) for one, other in zip(middle, middle[1:])) > SEEN, "a line within it"


def test_scaling_is_by_area_in_linear_light_with_premultiplied_alpha():
    white, black, clear = b"\xff\xff\xff\xff", b"\0\0\0\xff", b"\xff\0\0\0"

    def one_pixel(*pixels):
        return tuple(scaling.to_bytes(scaling.scale(scaling.from_bytes([b"".join(pixels)]), 1, 1))[0])
    assert one_pixel(white, black) == (188, 188, 188, 255), "half of the light, not half of the number"
    assert one_pixel(white, clear) == (255, 255, 255, 128), "the colour of a clear pixel does not count"
    # Three pixels scaled to two: the middle one is shared.
    row, = scaling.to_bytes(scaling.scale(scaling.from_bytes([white + white + black]), 2, 1))
    assert row[0] == 255 and row[4] == 156
    for pixels in (white, black, b"\x80\x40\x20\xc8"):
        assert one_pixel(pixels) == tuple(pixels)


def test_a_broken_picture_is_noticed(library):
    data = bytearray(next(iter(library.values())))
    Png(bytes(data))
    data[len(data) // 2] ^= 1
    with pytest.raises(ValueError):
        Png(bytes(data))
