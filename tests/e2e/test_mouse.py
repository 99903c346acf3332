"""Working with the cards by real mouse: pointing, clicking, leaving."""
import itertools

import pytest
from harness import geometry, mouse
from harness.desktop import DIALOG_CLASS, HOTKEY_EVENT
from harness.mouse import BRIGHT, DIMMED
from harness.probe import Rect
from harness.waiting import stays, wait_until
from test_keys import expect_card, expect_selected, item_rects, large_card_of, selected

WM_MOUSEMOVE, WM_LBUTTONDOWN = 0x200, 0x201
INSET = 11  # pixels by which a small item's picture is smaller on each side


def ready(program, *functions, **settings):
    program.configure(**{"EnableHover": 1, "MouseEnterIdle": 100, **settings})
    program.offer(*(functions or ("Mute", "Zoom", "Lock")))
    program.start()


def expect_nothing_left(program):
    program.expect_strip(shown=False)
    wait_until(lambda: [w.rect for w in program.shown_dialogs()] == [mouse.hover_rect(program)],
               lambda: f"only the hover strip is shown: {program.shown_dialogs()}")


@pytest.mark.parametrize("position", [0, 1])
def test_the_cards_that_the_mouse_is_not_on_are_dimmed(program, position):
    ready(program, Position=position)
    program.hold()
    program.expect_strip()
    cards = mouse.CardsAsShown(program)
    cards.expect(BRIGHT, BRIGHT, BRIGHT)
    program.let_go()
    mouse.call_cards(program, 1)
    cards.expect(DIMMED, BRIGHT, DIMMED)
    program.keyboard.move(*mouse.middle(mouse.card_picture(program, 2)))
    cards.expect(DIMMED, DIMMED, BRIGHT)
    program.keyboard.move(*mouse.middle(mouse.card_picture(program, 0)))
    cards.expect(BRIGHT, DIMMED, DIMMED)


def test_no_card_is_dimmed_when_the_cards_show_at_launch(program):
    ready(program, ShowQrdAtLaunch=1)
    program.expect_strip()
    cards = mouse.CardsAsShown(program)
    program.probe.post(program.strip().hwnd, HOTKEY_EVENT, 0, 1)
    program.expect_strip(shown=False)
    mouse.call_cards(program, 1)
    cards.expect(BRIGHT, BRIGHT, BRIGHT)
    stays(lambda: min(cards.opacities()) > 200, lambda: f"a card is dimmed: {cards.opacities()}", 0.5)


@pytest.mark.parametrize("position", [0, 1])
def test_a_click_opens_a_card_with_nothing_selected(program, position):
    ready(program, Position=position)
    program.machine("Zoom", Item=1)
    mouse.open_card(program, 1)
    expect_card(program, "Zoom")
    for rect in item_rects(program, "Zoom", 3):
        wait_until(lambda: program.shown_with(rect), lambda: f"an item at {rect}: {program.shown_dialogs()}")
    rects = item_rects(program, "Zoom", 3)
    small = {(rect.left + INSET, rect.top + INSET) for rect in rects}
    wait_until(lambda: small <= {(w.rect.left, w.rect.top) for w in program.shown_layered()}, "three small items")
    assert selected(program, "Zoom", 3) is None
    assert not program.chosen("Zoom")


def test_an_item_grows_and_shrinks_with_a_hysteresis(program):
    ready(program, "Mute", "Zoom")
    mouse.open_card(program, 1)
    expect_card(program, "Zoom")
    rect = item_rects(program, "Zoom", 3)[1]
    x, y = mouse.middle(rect)
    rim = rect.left + 5  # inside the large disc, outside the small one

    def is_large():
        return selected(program, "Zoom", 3) == 1
    program.keyboard.move(rim, y)
    stays(lambda: not is_large(), "it grew on its rim", 0.3)
    program.keyboard.move(x, y)
    expect_selected(program, "Zoom", 3, 1)
    program.keyboard.move(rim, y)
    stays(is_large, "it shrank on its rim", 0.3)
    program.keyboard.move(rect.left + INSET + 4, y)
    stays(is_large, "it shrank on its way back", 0.2)
    program.keyboard.move(x, rect.bottom + 60)
    wait_until(lambda: selected(program, "Zoom", 3) is None and not is_large(), "it is small again")
    program.keyboard.move(*mouse.middle(item_rects(program, "Zoom", 3)[2]))
    expect_selected(program, "Zoom", 3, 2)
    assert not program.chosen("Zoom")


@pytest.mark.parametrize("position", [0, 1])
def test_a_click_on_an_item_applies_it_and_hides_everything(program, position):
    ready(program, Position=position)
    program.machine("Zoom", Item=1)
    for item in (2, 0):
        mouse.open_card(program, 1)
        expect_card(program, "Zoom")
        rect = item_rects(program, "Zoom", 3)[item]
        program.keyboard.move(*mouse.middle(rect))
        expect_selected(program, "Zoom", 3, item)
        before = len(program.chosen("Zoom"))
        program.keyboard.click(*mouse.middle(rect))
        wait_until(lambda: program.chosen("Zoom")[before:] == [str(item)], lambda: f"{program.chosen('Zoom')}")
        assert program.machine_item("Zoom") == item
        expect_nothing_left(program)
        program.keyboard.move(*mouse.away(program))
    assert not program.chosen("Mute") and not program.chosen("Lock")


def test_leaving_the_cards_hides_them(program):
    ready(program)
    mouse.call_cards(program, 1)
    # Moving from card to card does not count as leaving.
    for index in (0, 1, 2):
        program.keyboard.move(*mouse.middle(mouse.card_picture(program, index)))
        program.expect_strip_stays(True, 0.2)
    program.keyboard.move(*mouse.away(program))
    expect_nothing_left(program)
    assert not program.calls(export="SelectItem")


def test_the_mouse_passes_through_the_descriptions(program):
    ready(program)
    strip = geometry.strip(program.desktop.work_area(), 3)
    behind = program.probe.make_window(title="Behind", rect=Rect(strip.left - 60, 40, strip.right + 60, 400))
    point = (strip.left + strip.right) // 2, strip.bottom - 8
    seen = set()

    def hears(message):
        seen.update(entry[0] for entry in program.probe.received(behind))
        return message in seen
    steps = itertools.cycle((1, 0))

    def is_there():
        # The strip takes the mouse only once it is painted; a pointer that already rests there is not noticed
        # afterwards.
        program.keyboard.move(point[0] + next(steps), point[1])
        return hears(WM_MOUSEMOVE)
    try:
        program.desktop.focus(behind)
        program.hold()
        program.expect_strip()
        wait_until(is_there, "the mouse is on the window behind")
        program.keyboard.click(*point)
        wait_until(lambda: hears(WM_LBUTTONDOWN), "the window behind is clicked")
        assert program.strip_shown()
    finally:
        program.probe.destroy(behind)


def test_another_program_taking_the_focus_hides_a_card_opened_by_mouse(program):
    ready(program)
    mouse.open_card(program, 1)
    expect_card(program, "Zoom")
    wait_until(lambda: program.probe.foreground() in [w.hwnd for w in program.windows()], "the card has the focus")
    window = next(w for w in program.probe.windows() if w.hwnd == program.desktop.window)
    program.keyboard.click((window.rect.left + window.rect.right) // 2, window.rect.bottom - 40)
    wait_until(lambda: program.probe.foreground() == window.hwnd, "the other program has the focus")
    expect_nothing_left(program)
    assert not program.calls(export="SelectItem")


def test_another_program_taking_the_focus_leaves_a_card_opened_by_keys(program):
    ready(program)
    program.hold()
    program.press("Zoom")
    expect_card(program, "Zoom")
    program.probe.focus(program.desktop.window)
    wait_until(lambda: program.probe.foreground() == program.desktop.window, "the other program has the focus")
    stays(lambda: program.shown_with(large_card_of(program, "Zoom")), "the card went", 0.4)
    program.let_go()
    wait_until(lambda: program.chosen("Zoom"), "the choice is applied")


def test_the_strip_that_loses_the_focus_hides_only_when_told(program):
    ready(program, HideMainUIWhenLostFocus=0)
    for told in (0, 1):
        program.change("HideMainUIWhenLostFocus", told)
        program.hold()
        program.expect_strip()
        program.probe.focus(program.strip().hwnd)
        wait_until(lambda: program.probe.foreground() == program.strip().hwnd, "the strip has the focus")
        program.probe.focus(program.desktop.window)
        wait_until(lambda: program.probe.foreground() == program.desktop.window, "the other program has the focus")
        if told:
            program.expect_strip(shown=False)
        else:
            program.expect_strip_stays(True)
        program.let_go()
        program.expect_strip(shown=False)


def test_the_modifier_released_leaves_the_cards_to_the_mouse(program):
    ready(program)
    mouse.call_cards(program, 0)
    program.probe.send(program.strip().hwnd, HOTKEY_EVENT, 0, 1)
    program.expect_strip_stays(True)


def test_the_modifier_pressed_takes_the_cards_from_the_mouse(program):
    ready(program)
    program.hold()
    program.expect_strip()
    cards = mouse.CardsAsShown(program)
    program.let_go()
    mouse.call_cards(program, 1)
    cards.expect(DIMMED, BRIGHT, DIMMED)
    program.hold()
    program.expect_strip_stays(True, 0.2)
    cards.expect(BRIGHT, BRIGHT, BRIGHT)
    program.let_go()
    expect_nothing_left(program)


def test_keys_go_on_where_the_mouse_began(program):
    """Keys take over a card opened by mouse: the modifier and a press select, releasing the modifier applies."""
    ready(program)
    program.machine("Zoom", Item=0)
    mouse.open_card(program, 1)
    expect_card(program, "Zoom")
    program.keyboard.move(*mouse.away(program))
    program.hold()
    program.press("Zoom")
    expect_selected(program, "Zoom", 3, 0)
    program.press("Zoom")
    expect_selected(program, "Zoom", 3, 1)
    program.let_go()
    wait_until(lambda: program.chosen("Zoom") == ["1"], lambda: f"{program.chosen('Zoom')}")
    assert all(w.cls == DIALOG_CLASS for w in program.shown_dialogs())
    expect_nothing_left(program)
