"""Window rectangles against plain arithmetic, and what is visible on the screen."""
import pytest
from harness import geometry
from harness.desktop import DIALOG_CLASS, STRIP_CLASS
from harness.probe import Rect
from harness.waiting import wait_until
from test_keys import expect_card, item_rects, large_card_of

WS_EX_TOPMOST, WS_EX_TOOLWINDOW, WS_EX_LAYERED, WS_EX_TRANSPARENT = 0x8, 0x80, 0x80000, 0x20
WS_CAPTION = 0xC00000
ALL = ["Mute", "Lock", "PowerPlan", "Sleep", "Output_2", "Brightness", "Wireless", "Touchpad", "CursorOverlay",
       "NumericOverlay", "Hibernate", "Zoom", "KBB", "ODD", "Output"]


@pytest.mark.parametrize("count", range(1, 16))
def test_the_strip_stands_where_the_formulas_say(program, count):
    program.offer(*ALL[:count])
    program.start()
    area = program.desktop.work_area()
    ratio = geometry.ratio(area, count)
    width = (area.right - area.left) * 0.85 / count
    assert f"Card width:{width:f}, Ratio:{ratio:f}" in program.log_texts()
    # Any value but 0 means the bottom edge. The running program follows.
    for position in (0, 1, 7, 0):
        program.change("Position", position)
        strip = geometry.strip(area, count, bottom=position != 0)
        assert program.strip().rect == strip
        program.hold()
        program.expect_strip()
        # Its picture covers it exactly.
        wait_until(lambda: [w.rect for w in program.shown_layered()] == [strip],
                   lambda: f"one picture at {strip}: {program.shown_layered()}")
        program.let_go()
        program.expect_strip(shown=False)


def test_an_empty_list_gives_an_empty_strip_and_runs_on(program):
    program.offer()
    program.start()
    program.hold()
    program.expect_strip()
    assert program.strip().size[0] == 0
    program.keyboard.press("F1")
    program.let_go()
    program.expect_strip(shown=False)
    program.end()


def test_a_missing_list_ends_the_start(program):
    process = program.launch()
    program.wait_end(process)
    assert not program.windows()
    assert program.log_texts()[-1] == "LEAVE CZelMainApp::ExitInstance"


@pytest.mark.parametrize("position", [0, 1])
@pytest.mark.parametrize("count, index, items", [(1, 0, 3), (5, 0, 5), (5, 4, 5), (10, 0, 5), (10, 9, 5), (15, 0, 3),
                                                 (15, 14, 5), (15, 7, 2)])
def test_card_and_items_stand_where_the_formulas_say(program, count, index, items, position):
    program.configure(Position=position)
    wanted = {2: "Mute", 3: "Zoom", 5: "ODD"}[items]
    names = [name for name in ALL if name != wanted][:count - 1]
    names.insert(index, wanted)
    program.offer(*names)
    program.start()
    program.hold()
    program.press(wanted)
    expect_card(program, wanted)
    rects = item_rects(program, wanted, items)
    for rect in rects:
        wait_until(lambda: program.shown_with(rect), lambda: f"an item at {rect}: {program.shown_dialogs()}")
    # What the formulas yield for a row that does not fit under its card; truncation takes at most a pixel.
    area = program.desktop.work_area()
    if (count, index, items) in [(10, 0, 5)]:
        overhang = geometry.overhang(rects[0].right - rects[0].left)
        assert abs(rects[0].left - area.left - 2 * overhang) <= 1
    if (count, index, items) in [(10, 9, 5), (15, 14, 5)]:
        gap = rects[1].left - rects[0].right
        assert abs(area.right - rects[-1].right - gap) <= 1
    # The enlarged card's picture covers it.
    card = large_card_of(program, wanted)
    wait_until(lambda: card in [w.rect for w in program.shown_layered()], "the card's picture")


def test_windows_never_show_in_the_task_bar_and_stay_on_top(program):
    program.offer("Mute")
    program.start()
    program.hold()
    strip = program.strip()
    assert strip.cls == STRIP_CLASS and not strip.style & WS_CAPTION
    assert strip.exstyle & (WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_LAYERED) == 0x80088
    program.press("Mute")
    expect_card(program, "Mute")
    for window in program.shown_dialogs():
        assert window.cls == DIALOG_CLASS
        assert window.exstyle & WS_EX_TOOLWINDOW and window.exstyle & WS_EX_TOPMOST, window
    for window in program.shown_layered():
        assert window.exstyle & (WS_EX_LAYERED | WS_EX_TRANSPARENT) == 0x80020, window
        assert window.owner in [w.hwnd for w in program.windows()], window


# Pixels

def is_dark(rgb):
    return max(rgb) < 0x60


@pytest.mark.parametrize("position", [0, 1])
def test_the_strip_can_be_seen_at_its_edge_and_is_gone_afterwards(program, position):
    program.configure(Position=position)
    program.offer("Mute", "Lock", "Zoom")
    program.start()
    area = program.desktop.work_area()
    screen = program.desktop.screen
    strip = geometry.strip(area, 3, bottom=bool(position))
    beside = Rect(strip.right + 2, strip.top, strip.right + 40, strip.bottom)
    assert screen.picture(strip).is_plain(strip)
    program.hold()
    program.expect_strip()
    for index in range(3):
        card = geometry.card_picture(area, 3, index, bottom=bool(position))
        inner = Rect(card.left + 6, card.top + 4, card.right - 6, card.bottom - 4)
        wait_until(lambda: screen.picture(inner).share_of(inner, is_dark) > 0.5, f"card {index} is drawn dark")
        # White caption on it.
        assert screen.picture(inner).share_of(inner, lambda rgb: min(rgb) > 0xD0) > 0.005
    assert screen.picture(beside).is_plain(beside)
    program.let_go()
    wait_until(lambda: screen.picture(strip).is_plain(strip), "nothing of the strip is left on the screen")


@pytest.mark.parametrize("position", [0, 1])
def test_card_and_items_can_be_seen_and_are_gone_afterwards(program, position):
    program.configure(Position=position)
    program.offer("Mute", "Zoom", "Lock")
    program.start()
    screen = program.desktop.screen
    program.hold()
    program.press("Zoom")
    expect_card(program, "Zoom")
    card = large_card_of(program, "Zoom")
    inner = Rect(card.left + 8, card.top + 8, card.right - 8, card.bottom - 8)
    wait_until(lambda: screen.picture(inner).share_of(inner, is_dark) > 0.5, "the enlarged card is drawn dark")
    rects = item_rects(program, "Zoom", 3)
    for rect in rects:
        middle = Rect(rect.left + 20, rect.top + 20, rect.right - 20, rect.bottom - 20)
        wait_until(lambda: not screen.picture(middle).is_plain(middle), f"an item is drawn at {rect}")
        # Round: the background is visible at its corners.
        corner = Rect(rect.left, rect.top, rect.left + 4, rect.top + 4)
        assert screen.picture(corner).is_plain(corner), rect
    program.let_go()
    everything = Rect(min(card.left, rects[0].left), card.top, max(card.right, rects[-1].right), rects[0].bottom)
    wait_until(lambda: screen.picture(everything).is_plain(everything), "nothing of the card is left on the screen")


def test_the_selected_item_is_drawn_larger_and_moves_with_each_press(program):
    program.offer("Zoom")
    program.machine("Zoom", Item=0)
    program.start()
    screen = program.desktop.screen
    program.hold()
    rects = item_rects(program, "Zoom", 3)

    def large_ones():
        """Items whose picture reaches the middle of the window's left edge."""
        found = []
        for index, rect in enumerate(rects):
            rim = Rect(rect.left + 2, rect.top + 30, rect.left + 8, rect.top + 42)
            if not screen.picture(rim).is_plain(rim):
                found.append(index)
        return found
    for expected in (0, 1, 2, 0):
        program.press("Zoom")
        wait_until(lambda: large_ones() == [expected], lambda: f"item {expected} is large: {large_ones()}")
