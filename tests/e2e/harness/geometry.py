"""The expected places of the cards: plain arithmetic, independent of the program. Doubles are truncated toward zero."""
from math import trunc

from .probe import Rect

PICTURE_BAND = 59
CARD_WIDTH = 96
LARGE_HEIGHT = 144
CIRCLE = 72
PREVIEW_WIDTH = 120
PREVIEW_ROW = 40


def halved(value):
    """Integer division by two that truncates toward zero."""
    return trunc(value / 2)


def ratio(work, count, dpi=96):
    """The image scale for a number of cards on a work area."""
    if count == 0:
        return 1.0
    return min((work.right - work.left) * 0.85 / count / 96.0, dpi / 96, 1.25)


def strip(work, count, bottom=False, dpi=96):
    """The strip's window rectangle."""
    scale = ratio(work, count, dpi)
    width = trunc(scale * 96.0)
    total = count * width
    height = trunc(width * 0.615 * 1.9)
    left = work.left + halved(work.right - total - work.left)
    top = work.bottom - height if bottom else work.top
    return Rect(left, top, left + total, top + height)


def hover_strip(work, count, bottom=False, dpi=96):
    total = count * trunc(ratio(work, count, dpi) * 96.0)
    left = work.left + halved(work.right - total - work.left)
    top = work.bottom - 4 if bottom else work.top
    return Rect(left, top, left + total, top + 4)


def card(work, count, index, bottom=False, dpi=96):
    """One card's rectangle on the screen."""
    whole = strip(work, count, bottom, dpi)
    width = trunc(ratio(work, count, dpi) * 96.0)
    return Rect(whole.left + index * width, whole.top, whole.left + (index + 1) * width, whole.bottom)


def card_picture(work, count, index, bottom=False, dpi=96):
    """One card's picture on the screen."""
    whole = card(work, count, index, bottom, dpi)
    height = trunc((whole.right - whole.left) * 0.615)
    if bottom:
        return Rect(whole.left, whole.bottom - height, whole.right, whole.bottom)
    return Rect(whole.left, whole.top, whole.right, whole.top + height)


def large_card(work, count, index, bottom=False, dpi=96):
    """The enlarged card's window rectangle."""
    scale = ratio(work, count, dpi)
    small = card(work, count, index, bottom, dpi)
    top = small.bottom - trunc(scale * 300.0) if bottom else small.top
    return Rect(small.left, top, small.left + trunc(scale * 96.0), top + trunc(scale * 144.0))


def overhang(item_width, desc_max_width=100):
    """How far a caption box sticks out of its item on each side; unsigned 32-bit arithmetic."""
    return ((desc_max_width - item_width) & 0xFFFFFFFF) // 2


def item_row(work, large, item_size, count, scale, item_overhang):
    """The window rectangles of a row of items under an enlarged card."""
    gap = trunc(scale * 10.0)
    top = large.bottom + gap
    width, height = item_size
    pitch = width + gap
    all_width = pitch * count - gap
    first = large.left - halved(large.left - large.right + all_width)
    centre = large.left + halved(large.right - large.left)
    left_max = (centre - work.left - item_overhang) / pitch
    right_max = (work.right - centre - item_overhang) / pitch
    if count * 0.5 > left_max:
        first = centre - trunc(pitch * left_max) + item_overhang
    elif count * 0.5 > right_max:
        first = centre - trunc((count - right_max) * pitch) + item_overhang
    return [Rect(first + pitch * i, top, first + pitch * i + width, top + height) for i in range(count)]


def circle_items(work, cards, index, items, bottom=False, dpi=96, desc_max_width=100):
    """The circle items of a card's enlarged card."""
    scale = ratio(work, cards, dpi)
    side = trunc(scale * 72.0)
    return item_row(work, large_card(work, cards, index, bottom, dpi), (side, side), items, scale,
                    overhang(side, desc_max_width))


def output_items(work, cards, index, items, bottom=False):
    """The items of the display output with favourites: circles whose preview sticks out further than a caption."""
    scale = ratio(work, cards)
    side = trunc(scale * 72.0)
    return item_row(work, large_card(work, cards, index, bottom), (side, side), items, scale,
                    overhang(side, PREVIEW_WIDTH) + 5)


def preview(work, item, rows, bottom=False):
    """The list of displays of an output item."""
    left = halved(item.left + item.right) - PREVIEW_WIDTH // 2
    height = PREVIEW_ROW * rows
    top = work.bottom - height - 310 if bottom else item.bottom + 10
    return Rect(left, top, left + PREVIEW_WIDTH, top + height)


def slider(work, cards, index, bottom=False, thumb=20):
    scale = ratio(work, cards)
    size = trunc(scale * 200.0), trunc(scale * 1.2 * thumb)
    return item_row(work, large_card(work, cards, index, bottom), size, 1, scale, 0)[0]


def large_card_text(work, cards, index, bottom=False):
    """The place of the state on an enlarged card."""
    scale = ratio(work, cards)
    card = large_card(work, cards, index, bottom)
    side = trunc(scale * 4.0)
    return Rect(card.left + side, card.top + trunc(scale * 95.0), card.right - side, card.bottom - side)


def shrunk_circles(work, cards, index, items, bottom=False, desc_max_width=100):
    """The items of the older display output, which shrink if they would not fit."""
    scale = ratio(work, cards)
    sticks_out = overhang(trunc(scale * 72.0), desc_max_width)
    total = items * trunc(scale * 82.0) + 2 * sticks_out
    width = work.right - work.left
    side = trunc(scale * 72.0 * (width / total if total >= width else 1.0))
    return item_row(work, large_card(work, cards, index, bottom), (side, side), items, scale,
                    overhang(side, desc_max_width))
