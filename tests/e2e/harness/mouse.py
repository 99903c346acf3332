"""Working with the cards by mouse: the hover strip brings them up, pixels tell which card the mouse is on."""
from statistics import median

from . import geometry
from .probe import Rect
from .screen import BACKGROUND
from .waiting import wait_until

BRIGHT, DIMMED = 220, 150  # opacities of a card's picture
CLEARLY = 30  # the minimum difference of a colour from the screen's for measuring an opacity


def middle(rect):
    return (rect.left + rect.right) // 2, (rect.top + rect.bottom) // 2


def hover_rect(program):
    return geometry.hover_strip(program.desktop.work_area(), len(program.functions), program.bottom)


def hover_shown(program):
    return bool(program.shown_with(hover_rect(program)))


def expect_hover_strip(program, shown=True):
    wait_until(lambda: hover_shown(program) == shown,
               lambda: f"the hover strip is {'shown' if shown else 'hidden'}: {program.shown_dialogs()}")


def card_picture(program, index):
    """The visible part of a card's picture, next to the screen's edge."""
    rect = geometry.card_picture(program.desktop.work_area(), len(program.functions), index, program.bottom)
    rows = geometry.PICTURE_BAND - 1
    if program.bottom:
        return Rect(rect.left, rect.bottom - rows, rect.right, rect.bottom)
    return Rect(rect.left, rect.top, rect.right, rect.top + rows)


def hover_point(program, index=0):
    """On the hover strip, at the future place of the card `index`."""
    x, _ = middle(card_picture(program, index))
    return x, hover_rect(program).top + 1


def away(program):
    """A point outside all windows of the program."""
    return program.desktop.screen.width - 2, program.desktop.screen.height // 2


def rest_on_hover_strip(program, index=0):
    expect_hover_strip(program)
    program.keyboard.move(*hover_point(program, index))


def call_cards(program, index=0):
    """Rests on the hover strip until the cards are shown, with the mouse on one of them."""
    rest_on_hover_strip(program, index)
    program.expect_strip()
    wait_until(lambda: "The mouse is  operating." in program.log_texts(), "the mouse works the cards")
    program.keyboard.move(*middle(card_picture(program, index)))


def open_card(program, index):
    """Opens a card with a click, from hidden cards."""
    call_cards(program, index)
    program.keyboard.click(*middle(card_picture(program, index)))
    program.expect_strip(shown=False)


class CardsAsShown:
    """The cards without mouse operation: the reference for their opacities."""

    def __init__(self, program):
        self._program = program
        self._rects = [card_picture(program, index) for index in range(len(program.functions))]
        self._whole = Rect(self._rects[0].left, self._rects[0].top, self._rects[-1].right, self._rects[0].bottom)
        self._picture = wait_until(self._drawn, "all cards are drawn")

    def _drawn(self):
        # The window that takes the mouse appears before the pictures, and is nearly transparent.
        def is_drawn(rgb):
            return any(abs(new - back) >= CLEARLY for new, back in zip(rgb, BACKGROUND))
        picture = self._program.desktop.screen.picture(self._whole)
        return picture if all(picture.share_of(rect, is_drawn) > 0.5 for rect in self._rects) else None

    def opacities(self):
        """One number per card, from the pixels on the screen."""
        now = self._program.desktop.screen.picture(self._whole)
        return [self._opacity(now, rect) for rect in self._rects]

    def _opacity(self, now, rect):
        shares = [(new - back) / (old - back)
                  for y in range(rect.top + 2, rect.bottom - 2, 3) for x in range(rect.left + 4, rect.right - 4, 3)
                  for new, old, back in zip(now.at(x, y), self._picture.at(x, y), BACKGROUND)
                  if abs(old - back) >= CLEARLY]
        return BRIGHT * median(shares) if shares else 0

    def expect(self, *wanted):
        seen = []

        def as_wanted():
            seen[:] = self.opacities()
            return all(abs(a - b) < 15 for a, b in zip(seen, wanted))
        wait_until(as_wanted, lambda: f"opacities {wanted}: {[round(value) for value in seen]}")
