"""Pictures of the display combinations: one or two plates with the names of the connectors.

The letters are strokes, not a font, so that a picture looks the same wherever it is rendered. A light plate is the
primary display, a dim one the display that it is extended to; two joined light plates show the same picture.
"""

# Letter -> (advance width, path), on a grid 6 units high.
LETTERS = {
    "A": (4.2, "M0 6 2.1 0 4.2 6M.9 4H3.3"),
    "C": (4, "M4 1.2C3.5.4 2.9 0 2.1 0 .8 0 0 1.2 0 3 0 4.8.8 6 2.1 6 2.9 6 3.5 5.6 4 4.8"),
    "D": (4, "M0 0H1.5C3.2 0 4 1.2 4 3 4 4.8 3.2 6 1.5 6H0Z"),
    "H": (4, "M0 0V6M4 0V6M0 3H4"),
    "I": (0, "M0 0V6"),
    "L": (3.2, "M0 0V6H3.2"),
    "M": (4.8, "M0 6V0L2.4 3.8 4.8 0V6"),
    "O": (4.4, "M2.2 0C3.6 0 4.4 1.3 4.4 3 4.4 4.7 3.6 6 2.2 6 .8 6 0 4.7 0 3 0 1.3.8 0 2.2 0Z"),
    "P": (3.8, "M0 6V0H2.1C3.2 0 3.8.7 3.8 1.7 3.8 2.7 3.2 3.4 2.1 3.4H0"),
    "R": (3.9, "M0 6V0H2.1C3.2 0 3.8.7 3.8 1.7 3.8 2.7 3.2 3.4 2.1 3.4H0M2 3.4 3.9 6"),
    "T": (4, "M0 0H4M2 0V6"),
    "U": (4, "M0 0V3.9C0 5.3.8 6 2 6 3.2 6 4 5.3 4 3.9V0"),
    "V": (4.2, "M0 0 2.1 6 4.2 0"),
}
SPACING = 1.9
LIGHT, INK, DIM = "#f3f5f7", "#0c0d0f", "#565f69"
PLATE, CAP, INK_WEIGHT, MARGIN = (27.5, 11), 7, .19, 4.4


def _word(text, x, y, height, colour, weight):
    """The text with its centre at (x, y), `height` units high, drawn with strokes of `weight` units."""
    scale = height / 6
    width = sum(LETTERS[c][0] for c in text) + SPACING * (len(text) - 1)
    at, parts = 0.0, []
    for c in text:
        parts.append(f'<path transform="translate({at:.2f} 0)" d="{LETTERS[c][1]}"/>')
        at += LETTERS[c][0] + SPACING
    return (f'<g color="{colour}" stroke-width="{weight / scale:.3f}" transform="translate({x - width * scale / 2:.3f} '
            f'{y - height / 2:.3f}) scale({scale:.4f})">{"".join(parts)}</g>')


def _plate(text, x, y, size, colour, ink, cap):
    """A plate with its name in letters of `cap` units, or smaller ones if the name is long."""
    width, height = size
    units = sum(LETTERS[c][0] for c in text) + SPACING * (len(text) - 1)
    cap = min(cap, (width - MARGIN) * 6 / units)
    return (f'<rect x="{x - width / 2:.3f}" y="{y - height / 2:.3f}" width="{width}" height="{height}" rx="2.2" '
            f'fill="{colour}" stroke="none"/>{_word(text, x, y, cap, ink, INK_WEIGHT * cap)}')


def _single(text):
    return (_plate(text, 12, 10.4, (29, 15), LIGHT, INK, 8.4) +
            f'<path d="M12 17.9v4M7 22.4h10" stroke="{LIGHT}" stroke-width="2.2"/>')


def _pair(first, second, second_colour, second_ink):
    return _plate(first, 12, 5.8, PLATE, LIGHT, INK, CAP) + _plate(second, 12, 18.2, PLATE, second_colour, second_ink, CAP)


def _clone(first, second):
    link = f'<path d="M5 10.5v3M19 10.5v3" stroke="{LIGHT}" stroke-width="2.4" stroke-linecap="butt"/>'
    return _pair(first, second, LIGHT, INK) + link


def _extend(first, second):
    return _pair(first, second, DIM, LIGHT)


LAYOUTS = {"single": _single, "clone": _clone, "extend": _extend}


def body(name):
    """The drawing of "displays:<layout>:<name>[:<name>]", sized to fill a round item; it exceeds the grid."""
    _, layout, *names = name.split(":")
    return f'<g transform="translate(12 12) scale(.93) translate(-12 -12)">{LAYOUTS[layout](*names)}</g>'
