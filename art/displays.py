"""Pictures of the display combinations: one or two plates that carry the names of the connectors.

The letters are strokes, not a font, so that a picture looks the same wherever it is rendered. A solid plate is the primary
display, an outlined one the secondary; two plates of the same kind joined by bars show the same picture.
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
PLATE_INK = "#121416"


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


def _plate(text, x, y, width, height, solid, cap):
    fill = "currentColor" if solid else "none"
    colour = PLATE_INK if solid else "currentColor"
    ink = _word(text, x, y, cap, colour, 1.25)
    return (f'<rect x="{x - width / 2}" y="{y - height / 2}" width="{width}" height="{height}" rx="1.8" fill="{fill}" '
            f'stroke-width="1.3"/>{ink}')


def _single(text):
    return (_plate(text, 12, 10, 28, 14.5, True, 7.2) +
            '<path d="M12 18v3.6M6.5 22.2h11" stroke-width="1.8"/>')


def _clone(first, second):
    bars = '<path d="M4.5 11V13M19.5 11V13" stroke-width="2" stroke-linecap="butt"/>'
    return bars + _plate(first, 12, 5.4, 24, 10.6, True, 5.9) + _plate(second, 12, 18.6, 24, 10.6, True, 5.9)


def _extend(first, second):
    return _plate(first, 9, 5.4, 24, 10.6, True, 5.9) + _plate(second, 15, 18.6, 24, 10.6, False, 5.9)


LAYOUTS = {"single": _single, "clone": _clone, "extend": _extend}


def body(name):
    """The drawing of "displays:<layout>:<name>[:<name>]", made to fill a round item; it reaches a little over the grid."""
    _, layout, *names = name.split(":")
    return f'<g transform="translate(12 12) scale(.92) translate(-12 -12)">{LAYOUTS[layout](*names)}</g>'
