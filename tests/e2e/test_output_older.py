"""The older display output: arrangements from two masks as circles, which shrink if there are many."""
import pytest
from harness import geometry
from harness.functions import sample
from harness.waiting import wait_until
from test_functions import state_text
from test_keys import expect_card, large_card_of

KEY = "Output"


def open_card(program, mask, mask2, current, count):
    """Opens the card; returns the rectangles of its items. The modifier is held."""
    program.offer(*sample("Mute", "Output", "Zoom"))
    program.machine(KEY, Items=mask, Items2=mask2, Item=current)
    program.start()
    return show_card(program, count)


def show_card(program, count):
    program.hold()
    program.press(KEY)
    expect_card(program, KEY)
    rects = geometry.shrunk_circles(program.desktop.work_area(), 3, 1, count)
    wait_until(lambda: set(rects) <= {w.rect for w in program.shown_dialogs()},
               lambda: f"{count} items at {rects}: {program.shown_dialogs()}")
    return rects


def expect_selected(program, rects, index):
    """The selected item shows its large picture, which fills it."""
    corner = rects[index].left, rects[index].top
    others = {(rect.left, rect.top) for rect in rects} - {corner}

    def chosen():
        corners = {(w.rect.left, w.rect.top) for w in program.shown_layered()}
        return corner in corners and not corners & others
    wait_until(chosen, lambda: f"item {index} is selected: {program.shown_layered()}")


def test_arrangements_of_both_masks_are_offered_stepped_and_chosen(program):
    rects = open_card(program, 0x5, 0x80000001, 32, 4)
    expect_selected(program, rects, 2)
    before = state_text(program, KEY)
    program.press(KEY)
    expect_selected(program, rects, 3)
    program.let_go()
    wait_until(lambda: program.chosen(KEY) == ["63"], lambda: f"{program.calls(KEY)}")
    assert program.machine_item(KEY) == 63
    # From there it wraps to the first.
    rects = show_card(program, 4)
    expect_selected(program, rects, 3)
    assert state_text(program, KEY) != before
    program.press(KEY)
    expect_selected(program, rects, 0)
    program.let_go()
    wait_until(lambda: program.chosen(KEY) == ["63", "0"], lambda: f"{program.calls(KEY)}")
    # Unknown bits are ignored silently.
    program.machine(KEY, Items=0xFFF80001, Items2=0x7C000000)
    rects = show_card(program, 1)
    expect_selected(program, rects, 0)
    program.let_go()


@pytest.mark.parametrize("items, mask, mask2, side", [(15, 0x7FFF, 0, 72), (20, 0x7FFFF, 0x1, 55),
                                                      (46, 0x7FFFF, 0x83FFFFFF, 24)])
def test_items_shrink_when_the_screen_is_too_narrow(program, items, mask, mask2, side):
    rects = open_card(program, mask, mask2, 2, items)
    assert {(rect.right - rect.left, rect.bottom - rect.top) for rect in rects} == {(side, side)}
    expect_selected(program, rects, 2)
    program.press(KEY)
    expect_selected(program, rects, 3)
    program.let_go()
    wait_until(lambda: program.chosen(KEY) == ["3"], lambda: f"{program.calls(KEY)}")


@pytest.mark.parametrize("mask, mask2, current, items", [(0, 0, 0, 0), (0x3, 0, 33, 2), (0x3, 0, 0xFFFFFFFF, 2)])
def test_without_a_current_arrangement_nothing_is_chosen(program, mask, mask2, current, items):
    open_card(program, mask, mask2, current, items)
    assert len(program.shown_with(large_card_of(program, KEY))) == 1
    program.let_go()
    expect_card(program, KEY, shown=False)
    assert not program.chosen(KEY)
