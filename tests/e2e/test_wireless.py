"""Wireless: the states that can be switched to, and the notice when there is nothing to switch."""
from harness import geometry
from harness.functions import sample
from harness.probe import Rect
from harness.screen import BACKGROUND
from harness.waiting import wait_until
from test_functions import state_text
from test_keys import expect_card, expect_selected, item_rects, large_card_of

ALL_STATES = 15


def show_card(program):
    program.hold()
    program.press("Wireless")
    expect_card(program, "Wireless")


def ready(program, **state):
    program.offer(*sample("Mute", "Wireless", "Zoom"))
    program.machine("Wireless", **state)
    program.start()


def apply(program, chosen):
    program.let_go()
    wait_until(lambda: program.chosen("Wireless") == chosen, lambda: f"{chosen}: {program.calls('Wireless')}")


def test_devices_are_switched_and_the_card_follows(program):
    ready(program, Fitted=0x7, Radios=0x1)
    # One is on, two are off: LAN off, two on, cancel, which is the default.
    show_card(program)
    expect_selected(program, "Wireless", 4, 3)
    on = state_text(program, "Wireless")
    for index in (0, 1):
        program.press("Wireless")
        expect_selected(program, "Wireless", 4, index)
    apply(program, ["3"])
    show_card(program)
    expect_selected(program, "Wireless", 4, 3)
    assert state_text(program, "Wireless") == on, "something is on"
    apply(program, ["3", "14"])
    # All off: only odd states are left.
    program.machine("Wireless", Radios=0)
    show_card(program)
    expect_selected(program, "Wireless", 4, 3)
    assert state_text(program, "Wireless") != on, "nothing is on"
    program.press("Wireless")
    apply(program, ["3", "14", "1"])


def test_all_fifteen_states_are_offered_and_chosen_by_their_numbers(program):
    ready(program, Items=0x7FFF, Fitted=0x3F)
    chosen = []
    # The last one is selected; presses start with the first.
    for presses, state in ((0, 14), (1, 0), (13, 12), (14, 13)):
        show_card(program)
        expect_selected(program, "Wireless", ALL_STATES, 14)
        for press in range(presses):
            program.press("Wireless")
        expect_selected(program, "Wireless", ALL_STATES, (14 + presses) % ALL_STATES)
        chosen.append(str(state))
        apply(program, chosen)
    # The last two: all on, all off.
    assert program.probe.get_value("HKCU", "SOFTWARE\\KESTOVA\\Simulated Notebook\\Wireless", "Radios") == b"\0" * 4


def notice(program):
    """The window under the card, as wide as a centred notice is."""
    card = large_card_of(program, "Wireless")
    found = [w.rect for w in program.shown_dialogs() if w.rect != card]
    return found[0] if len(found) == 1 else None


def is_white(rgb):
    return min(rgb) > 0xA8


def is_black(rgb):
    return max(rgb) < 0x28


def is_screen(rgb):
    """The screen, seen through nearly transparent windows."""
    return all(abs(a - b) <= 3 for a, b in zip(rgb, BACKGROUND))


def expect_notice_pixels(program, rect):
    """White letters, each with a black outline, on a transparent background: the screen is visible between them."""
    screen = program.desktop.screen
    wait_until(lambda: screen.picture(rect).share_of(rect, is_white) > 0.02, "white letters")
    picture = screen.picture(rect)
    assert picture.share_of(rect, is_black) > 0.02, "black outlines"
    assert picture.share_of(rect, is_screen) > 0.2, "the screen between them"
    # White never touches the screen itself.
    for y in range(rect.top, rect.bottom):
        row = [picture.at(x, y) for x in range(rect.left, rect.right)]
        for left, right in zip(row, row[1:]):
            assert not (is_white(left) and is_screen(right) or is_screen(left) and is_white(right)), f"row {y}"


def test_without_states_a_notice_is_shown_and_nothing_is_chosen(program):
    for position in (0, 1):
        program.configure(Position=position)
        ready(program, ErrorMode=1)
        show_card(program)
        rect = wait_until(lambda: notice(program), lambda: f"one window under the card: {program.shown_dialogs()}")
        card = large_card_of(program, "Wireless")
        assert rect.top == card.bottom + 10
        assert abs((rect.left + rect.right) - (card.left + card.right)) <= 2, "centred under the card"
        assert rect.right - rect.left <= 288 + 2
        expect_notice_pixels(program, rect)
        # Stepping leads from the notice to the notice.
        program.press("Wireless")
        assert notice(program) == rect
        program.let_go()
        expect_card(program, "Wireless", shown=False)
        wait_until(lambda: program.desktop.screen.picture(rect).is_plain(rect), "nothing of the notice is left")
        assert not program.chosen("Wireless")
        # What can be switched again is offered again.
        program.machine("Wireless", ErrorMode=0)
        show_card(program)
        places = item_rects(program, "Wireless", 3)
        wait_until(lambda: set(places) <= {w.rect for w in program.shown_dialogs()}, "the states are back")
        program.press("Wireless")
        program.let_go()
        wait_until(lambda: program.chosen("Wireless"), "and can be chosen")
        program.end()
        program.record_file.unlink()


def test_the_notice_fits_beside_a_narrow_card(program):
    names = ["Mute", "Lock", "PowerPlan", "Sleep", "Touchpad", "CursorOverlay", "NumericOverlay", "Hibernate", "Zoom",
             "KBB", "ODD", "Output", "Output_2", "Wireless"]
    program.offer(*sample(*names))
    program.machine("Wireless", ErrorMode=1)
    program.start()
    show_card(program)
    rect = wait_until(lambda: notice(program), lambda: f"one window under the card: {program.shown_dialogs()}")
    area = program.desktop.work_area()
    assert area.left <= rect.left and rect.right <= area.right, "wholly on the screen"
    scale = geometry.ratio(area, len(names))
    assert rect.right - rect.left <= int(288 * scale) + 2
    expect_notice_pixels(program, Rect(*rect))
    program.let_go()
    assert not program.chosen("Wireless")
