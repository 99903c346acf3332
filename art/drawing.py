"""Composes the SVG text of one picture of the card art from its row in images.csv.

A picture is a background (card, large card, round item or none) with one glyph on it. Glyphs are drawn on a grid of 24 x 24
units; the glyph of a small and of a large picture is the same file, so a pair can never drift apart.
"""
import re
from pathlib import Path

import displays

HERE = Path(__file__).resolve().parent

# One palette for everything: light strokes on near-black, one accent for "on", a muted tone for "off".
STROKE = "#f3f5f7"
ACCENT = "#5fd0f5"
MUTED = "#a3acb5"
CONNECTOR = "#23272b"
TONES = {"": STROKE, "on": ACCENT, "off": MUTED}

# Pixels of the finished picture, and the units that its drawing is laid out in.
PIXELS = {"card": (96, 65), "large-card": (96, 144), "item": (100, 100), "large-item": (144, 144), "connector": (64, 64)}
UNITS = {"card": (96, 65), "large-card": (96, 144), "item": (50, 50), "large-item": (72, 72), "connector": (32, 32)}

# Where the glyph stands: centre x, centre y, scale of the 24-unit grid. The strip shows rows 6 to 64 of a card at the top
# of the screen and rows 0 to 58 at the bottom, the caption above; the large card has its text above and its status below.
GLYPH = {
    "card": (48, 42.5, 1.12),
    "large-card": (48, 79.5, 1.2),
    "item": (25, 25, 1.18),
    "large-item": (36, 36, 1.72),
    "connector": (16, 16, 32 / 24),
}

# A badge stands in the lower right corner. Glyphs that leave room beside or below themselves move there, so that the
# badge bites nothing out of them.
BADGE_SHIFT = {
    "mode-clone": (0, -3.4), "mode-extend-right": (0, -3.4), "mode-extend-left": (0, -3.4),
    "mode-extend-above": (-3.8, 0), "mode-extend-below": (-3.8, 0),
}

GRADIENTS = (
    '<linearGradient id="card" x1="0" y1="0" x2="0" y2="1"><stop offset="0" stop-color="#26292d"/>'
    '<stop offset=".4" stop-color="#111315"/><stop offset="1" stop-color="#020203"/></linearGradient>'
    '<linearGradient id="disc" x1="0" y1="0" x2="0" y2="1"><stop offset="0" stop-color="#2c3035"/>'
    '<stop offset="1" stop-color="#060708"/></linearGradient>'
)


def _card(width, height):
    # One unit of air on both sides keeps neighbouring cards apart; the light edge is a line of one pixel.
    return (f'<rect x="1" y="0" width="{width - 2}" height="{height}" rx="6" fill="url(#card)"/>'
            f'<rect x="1.5" y=".5" width="{width - 3}" height="{height - 1}" rx="5.5" fill="none" '
            'stroke="#fff" stroke-opacity=".36"/>')


def _disc(size, rim, opacity):
    # The thin dark line around the ring keeps it visible on a light wallpaper.
    centre = size / 2
    return (f'<circle cx="{centre}" cy="{centre}" r="{centre - .3}" fill="#000" fill-opacity=".55"/>'
            f'<circle cx="{centre}" cy="{centre}" r="{centre - 1.2 - rim / 2}" fill="url(#disc)" '
            f'stroke="#fff" stroke-opacity="{opacity}" stroke-width="{rim}"/>')


BACKGROUND = {
    "card": lambda: _card(96, 65),
    "large-card": lambda: _card(96, 144),
    "item": lambda: _disc(50, 1.3, .55),
    "large-item": lambda: _disc(72, 3, .95),
    "connector": lambda: "",
}


def glyph_path(name):
    """The file of a glyph; both folders are searched because a name exists only once."""
    for folder in ("own", "lucide"):
        path = HERE / "glyphs" / folder / f"{name}.svg"
        if path.is_file():
            return path
    raise FileNotFoundError(f"no glyph named {name!r} below {HERE / 'glyphs'}")


def _glyph_body(name):
    if name.startswith("displays:"):
        return displays.body(name)
    return re.search(r"<svg[^>]*>(.*)</svg>", glyph_path(name).read_text(encoding="utf-8"), re.S)[1].strip()


def _layer(body, colour, extra=""):
    return (f'<g color="{colour}" fill="none" stroke="currentColor" stroke-width="2" stroke-linecap="round" '
            f'stroke-linejoin="round"{extra}>{body}</g>')


def _glyph(glyph, tone, badge):
    """The glyph with its slash ("off") and its badge, each cut free from the lines under it."""
    cuts, over = "", ""
    if tone == "off":
        cuts += '<path d="M3 3 21 21" stroke="#000" stroke-width="6" stroke-linecap="round"/>'
        over += _layer('<path d="M3.5 3.5 20.5 20.5"/>', STROKE)
    body = _glyph_body(glyph)
    if badge:
        x, y = BADGE_SHIFT.get(glyph, (0, 0))
        body = f'<g transform="translate({x - 1.2} {y - 1.2}) scale(.88)">{body}</g>'
        cuts += '<circle cx="19" cy="19.3" r="7.3" fill="#000"/>'
        over += _layer(f'<g transform="translate(13.2 13.4) scale(.5)">{_glyph_body("badge-" + badge)}</g>', STROKE)
    layer = _layer(body, TONES[tone], ' mask="url(#cut)"' if cuts else "")
    mask = f'<mask id="cut" maskUnits="userSpaceOnUse" x="-9" y="-9" width="42" height="42">' \
           f'<rect x="-9" y="-9" width="42" height="42" fill="#fff"/>{cuts}</mask>' if cuts else ""
    return mask + layer + over


def compose(kind, glyph, tone, badge):
    """The complete SVG text of a picture; the same arguments always give the same text."""
    width, height = UNITS[kind]
    x, y, scale = GLYPH[kind]
    drawing = _glyph(glyph, tone, badge)
    if kind == "connector":
        drawing = drawing.replace(STROKE, CONNECTOR)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}"><defs>{GRADIENTS}</defs>'
            f'{BACKGROUND[kind]()}<g transform="translate({x} {y}) scale({scale}) translate(-12 -12)">{drawing}</g></svg>\n')
