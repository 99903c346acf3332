"""Composes the SVG text of one picture of the card art from its row in images.csv.

A picture is a background (card, large card, round item or none) with one glyph on it. Glyphs are drawn on a grid of 24
x 24 units; the glyph of a small and of a large picture is the same file, so the two always match. The sizes differ in
the weight of the strokes, and small ones omit details that would blur.
"""
import re
from pathlib import Path

import displays

HERE = Path(__file__).resolve().parent

# One palette for everything: light strokes on near-black, one accent for "on", a muted tone for "off".
STROKE = "#f3f5f7"
ACCENT = "#5fd0f5"
MUTED = "#99a3ad"
CONNECTOR = "#23272b"
TONES = {"": STROKE, "on": ACCENT, "off": MUTED}

# Pixels of the finished picture, and the units of its drawing.
PIXELS = {"card": (96, 65), "large-card": (96, 144), "item": (100, 100), "large-item": (144, 144), "connector": (64, 64),
          "mark": (32, 32)}
UNITS = {"card": (96, 65), "large-card": (96, 144), "item": (50, 50), "large-item": (72, 72), "connector": (32, 32),
         "mark": (16, 16)}

# The glyph's position: centre x, centre y, scale of the 24-unit grid. The strip shows rows 6 to 64 of a card at the top
# of the screen and rows 0 to 58 at the bottom, the caption above; the large card has its text above and its status
# below.
GLYPH = {
    "card": (48, 42.5, 1.2),
    "large-card": (48, 80.8, .86),
    "item": (25, 25, 1.36),
    "large-item": (36, 36, 1.7),
    "connector": (16, 16, 32 / 24),
    "mark": (8, 7.8, .42),
}

# The weight of a stroke, in grid units. A round item that is not chosen is shown at a third of its picture's size, so
# it needs the heaviest strokes; the chosen one is large and needs light ones.
WEIGHT = {"card": 2, "large-card": 2.15, "item": 2.35, "large-item": 1.85, "connector": 1.5, "mark": 3}
# What an element of a glyph may specify with class="...": factors of the weight.
CLASSES = {"bold": 1.3, "light": .9, "fine": .78, "dot": 1.5, "hair": .4}
# These omit elements of class "detail".
WITHOUT_DETAIL = ("item", "large-card")
# An "off" glyph is drawn with lighter strokes than the slash that crosses it, so that the slash is read first.
OFF_WEIGHT, SLASH_WEIGHT, SLASH_GAP = .84, 1.08, 1

# Optical centring: a glyph whose weight is on one side is moved a little to the other (grid units).
OPTICAL_SHIFT = {
    "broadband": (-.8, -.8), "gauge": (0, .7), "keyboard-light": (0, -.6), "lock": (0, -.4), "mode-extend-below": (0, .4),
    "positioning": (0, .4), "volume-x": (.4, 0), "zoom-larger": (.5, 0),
}

# A badge is in the lower right corner. Glyphs with free space beside or below them are moved there, so that the badge
# does not cover them.
BADGE_SHIFT = {
    "mode-extend-right": (0, -3), "mode-extend-left": (0, -3),
    "mode-extend-above": (-3.8, 0), "mode-extend-below": (-3.8, 0),
}
# Glyphs with a badge and plates side by side are as wide as the ring; within it they are this much smaller, so that there
# is air between them and the ring at small ratios too. Their strokes keep their weight.
WITHIN_RING = {"item": .87, "large-item": .95}
BADGE_CENTRE, BADGE_SCALE, BADGE_CUT = 19.2, .5, 7.2

GRADIENTS = (
    '<linearGradient id="card" x1="0" y1="0" x2="0" y2="1"><stop offset="0" stop-color="#24272b"/>'
    '<stop offset=".45" stop-color="#121416"/><stop offset="1" stop-color="#08090a"/></linearGradient>'
    '<linearGradient id="disc" x1="0" y1="0" x2="0" y2="1"><stop offset="0" stop-color="#2a2e33"/>'
    '<stop offset="1" stop-color="#08090a"/></linearGradient>'
    '<linearGradient id="field" x1="0" y1="0" x2="0" y2="1"><stop offset="0" stop-color="#fff" stop-opacity=".13"/>'
    '<stop offset="1" stop-color="#fff" stop-opacity=".03"/></linearGradient>'
)


def _card(width, height):
    # A margin of one unit on both sides separates neighbouring cards. The edge is a light line within a dark one, so
    # that one of the two is visible on any wallpaper, even where only the four rows at the edge are shown (the hover
    # strip).
    return (f'<rect x="1" y="0" width="{width - 2}" height="{height}" rx="6" fill="#000"/>'
            f'<rect x="2" y="1" width="{width - 4}" height="{height - 2}" rx="5" fill="url(#card)"/>'
            f'<rect x="2.5" y="1.5" width="{width - 5}" height="{height - 3}" rx="4.5" fill="none" '
            'stroke="#fff" stroke-opacity=".48"/>')


def _large_card():
    # The status has its own field, from above the first row of its text to the edge.
    return (_card(96, 144) + '<path d="M3 93H93V137.5A3.5 3.5 0 0 1 89.5 141H6.5A3.5 3.5 0 0 1 3 137.5Z" fill="url(#field)"/>'
            '<path d="M3 93.5H93" stroke="#fff" stroke-opacity=".1"/>')


def _disc():
    # The thin dark line around the ring keeps it visible on a light wallpaper.
    return ('<circle cx="25" cy="25" r="24.7" fill="#000" fill-opacity=".6"/>'
            '<circle cx="25" cy="25" r="22.9" fill="url(#disc)" stroke="#fff" stroke-opacity=".62" stroke-width="1.4"/>')


def _chosen():
    # Distinguished from the others without colour and size: a broad bright ring, which stands out on dark wallpapers,
    # next to a solid dark line, which stands out on light ones.
    return ('<circle cx="36" cy="36" r="36" fill="#000"/><circle cx="36" cy="36" r="33.8" fill="#fff"/>'
            '<circle cx="36" cy="36" r="30.6" fill="url(#disc)"/>')


def _mark():
    # Drawn on a card or on the wallpaper; the dark line separates it from a light one.
    return f'<circle cx="8" cy="8" r="8" fill="#000"/><circle cx="8" cy="8" r="7" fill="{ACCENT}"/>'


BACKGROUND = {
    "card": lambda: _card(96, 65),
    "large-card": _large_card,
    "item": _disc,
    "large-item": _chosen,
    "connector": lambda: "",
    "mark": _mark,
}


def glyph_path(name):
    """The file of a glyph; both folders are searched because names are unique."""
    for folder in ("own", "lucide"):
        path = HERE / "glyphs" / folder / f"{name}.svg"
        if path.is_file():
            return path
    raise FileNotFoundError(f"no glyph named {name!r} below {HERE / 'glyphs'}")


def _glyph_body(name, kind, weight):
    if name.startswith("displays:"):
        return displays.body(name)
    text = glyph_path(name).read_text(encoding="utf-8")
    if kind in WITHOUT_DETAIL:
        text = re.sub(r'<\w+ class="detail[^>]*/>', "", text)

    def weighted(match):
        parts = [CLASSES[word] for word in match[1].split() if word in CLASSES]
        return f'stroke-width="{weight * parts[0]:.3f}"' if parts else ""
    text = re.sub(r'class="([^"]*)"', weighted, text)
    return re.search(r"<svg[^>]*>(.*)</svg>", text, re.S)[1].strip()


def _layer(body, colour, weight, extra=""):
    return (f'<g color="{colour}" fill="none" stroke="currentColor" stroke-width="{weight:.3f}" stroke-linecap="round" '
            f'stroke-linejoin="round"{extra}>{body}</g>')


def within_ring(kind, glyph, badge):
    """How much smaller a glyph is because it would otherwise touch the ring of its kind."""
    return WITHIN_RING.get(kind, 1) if badge or glyph.startswith("displays:") else 1


def _glyph(kind, glyph, tone, badge):
    """The glyph with its slash ("off") and its badge, each cut out of the lines under it."""
    cuts, over = "", ""
    weight = own_weight = WEIGHT[kind] / within_ring(kind, glyph, badge)
    if tone == "off":
        own_weight *= OFF_WEIGHT
        slash = weight * SLASH_WEIGHT
        line = 'd="M3 3 21 21"'
        cuts += f'<path {line} stroke="#000" stroke-width="{slash + 2 * SLASH_GAP:.3f}" stroke-linecap="round"/>'
        over += _layer(f'<path {line}/>', STROKE, slash)
    body = _glyph_body(glyph, kind, own_weight)
    if glyph in OPTICAL_SHIFT and not badge:
        x, y = OPTICAL_SHIFT[glyph]
        body = f'<g transform="translate({x} {y})">{body}</g>'
    if badge:
        x, y = BADGE_SHIFT.get(glyph, (0, 0))
        body = f'<g transform="translate({x - 1.2} {y - 1.2}) scale(.88)">{body}</g>'
        cuts += f'<circle cx="{BADGE_CENTRE}" cy="{BADGE_CENTRE}" r="{BADGE_CUT}" fill="#000"/>'
        corner = BADGE_CENTRE - 12 * BADGE_SCALE
        over += _layer(f'<g transform="translate({corner} {corner}) scale({BADGE_SCALE})">'
                       f'{_glyph_body("badge-" + badge, kind, 2)}</g>', STROKE, 2)
    layer = _layer(body, TONES[tone], own_weight, ' mask="url(#cut)"' if cuts else "")
    mask = f'<mask id="cut" maskUnits="userSpaceOnUse" x="-9" y="-9" width="42" height="42">' \
           f'<rect x="-9" y="-9" width="42" height="42" fill="#fff"/>{cuts}</mask>' if cuts else ""
    return mask + layer + over


def compose(kind, glyph, tone, badge):
    """The complete SVG text of a picture; the same arguments always give the same text."""
    width, height = UNITS[kind]
    x, y, scale = GLYPH[kind]
    scale *= within_ring(kind, glyph, badge)
    drawing = _glyph(kind, glyph, tone, badge)
    if kind in ("connector", "mark"):
        drawing = drawing.replace(STROKE, CONNECTOR)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}"><defs>{GRADIENTS}</defs>'
            f'{BACKGROUND[kind]()}<g transform="translate({x} {y}) scale({scale}) translate(-12 -12)">{drawing}</g></svg>\n')
