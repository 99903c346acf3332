"""Two monitors: the cards are on the primary one, or with "MonitorOfActiveWindow" on the one where the user works."""
import subprocess

import pytest
from harness import geometry, places
from harness.desktop import Desktop
from harness.probe import Rect
from harness.screen import Screen
from harness.waiting import wait_until

FIRST, SECOND = Rect(0, 0, 1280, 800), Rect(1280, 0, 2304, 768)


@pytest.fixture(scope="module")
def desktop():
    """A screen with two monitors, instead of the usual one."""
    prefix = places.PREFIX.with_name(places.PREFIX.name + "-two-monitors")
    made = Desktop(Screen((1280, 800), second=(1024, 768)), prefix)
    yield made
    made.close()


def work_on(program, monitor):
    """Moves the other program's window, which has the focus, to that monitor."""
    desktop = program.desktop
    subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Other program$", "windowmove",
                    str(monitor.left + 60), str(monitor.top + 400)], env=desktop.environment, check=True, timeout=20)

    def there():
        place = next(w.rect for w in desktop.probe.windows() if w.hwnd == desktop.window)
        return monitor.left <= place.left and place.right <= monitor.right
    wait_until(there, lambda: f"the other program's window on {monitor}: {desktop.probe.windows()}")
    wait_until(lambda: desktop.probe.foreground() == desktop.window, "the other program's window has the focus")


def expect_strip_on(program, monitor, bottom=False):
    wanted = geometry.strip(monitor, len(program.functions), bottom=bottom)
    program.expect_strip()
    wait_until(lambda: program.strip().rect == wanted, lambda: f"the strip at {wanted}: {program.strip()}")
    wait_until(lambda: wanted in [w.rect for w in program.shown_layered()], lambda: f"its picture: {program.windows()}")
    return wanted


def test_the_screen_has_two_monitors_and_the_first_is_the_primary_one(program):
    assert program.desktop.work_area() == FIRST


def test_the_cards_lie_on_the_primary_monitor_wherever_the_user_works(program):
    program.offer("Mute", "Zoom")
    work_on(program, SECOND)
    program.start()
    program.hold()
    expect_strip_on(program, FIRST)


@pytest.mark.parametrize("position", [0, 1])
def test_the_cards_follow_the_user_to_the_other_monitor_and_back(program, position):
    program.configure(MonitorOfActiveWindow=1, Position=position)
    program.offer("Mute", "Zoom", "Lock")
    program.start()
    for monitor in (SECOND, FIRST, SECOND):
        work_on(program, monitor)
        program.hold()
        strip = expect_strip_on(program, monitor, bool(position))
        # It is visible there.
        pictures = program.desktop.screen
        wait_until(lambda: not pictures.picture(strip).is_plain(strip), f"cards in {strip}")
        program.press("Zoom")
        card = geometry.large_card(monitor, 3, 1, bool(position))
        wait_until(lambda: program.shown_with(card), lambda: f"the card at {card}: {program.shown_dialogs()}")
        for item in geometry.circle_items(monitor, 3, 1, 3, bool(position)):
            wait_until(lambda: program.shown_with(item), lambda: f"an item at {item}: {program.shown_dialogs()}")
        before = len(program.chosen("Zoom"))
        program.let_go()
        wait_until(lambda: len(program.chosen("Zoom")) == before + 1, "the choice is applied")


def test_a_card_at_the_edge_between_the_monitors_keeps_its_items_on_its_own(program):
    program.configure(MonitorOfActiveWindow=1)
    names = ["Mute", "Lock", "Sleep", "Touchpad", "Hibernate", "CursorOverlay", "NumericOverlay", "KBB", "Zoom", "ODD"]
    program.offer(*names)
    program.start()
    for monitor in (FIRST, SECOND):
        work_on(program, monitor)
        program.hold()
        program.press("ODD")
        row = geometry.circle_items(monitor, 10, 9, 5)
        assert row[-1].right <= monitor.right
        for item in row:
            wait_until(lambda: program.shown_with(item), lambda: f"an item at {item}: {program.shown_dialogs()}")
        program.let_go()
        wait_until(lambda: not program.shown_dialogs(), "the cards are gone")


def test_the_setting_is_taken_over_while_the_program_runs(program):
    program.offer("Mute", "Zoom")
    program.start()
    work_on(program, SECOND)
    program.hold()
    expect_strip_on(program, FIRST)
    program.let_go()
    program.expect_strip(shown=False)
    program.change("MonitorOfActiveWindow", 1)
    program.hold()
    expect_strip_on(program, SECOND)


def test_each_monitor_has_its_own_ratio(program):
    """So many cards that their share of the screen's width decides."""
    program.configure(MonitorOfActiveWindow=1)
    names = ["Mute", "Lock", "Sleep", "Touchpad", "Hibernate", "CursorOverlay", "NumericOverlay", "KBB", "Zoom", "ODD",
             "PowerPlan", "Output"]
    program.offer(*names)
    program.start()
    widths = []
    for monitor in (FIRST, SECOND, FIRST):
        work_on(program, monitor)
        program.hold()
        strip = expect_strip_on(program, monitor)
        widths.append(strip.right - strip.left)
        program.press("Zoom")
        card = geometry.large_card(monitor, len(names), names.index("Zoom"))
        wait_until(lambda: program.shown_with(card), lambda: f"the card at {card}: {program.shown_dialogs()}")
        for item in geometry.circle_items(monitor, len(names), names.index("Zoom"), 3):
            wait_until(lambda: program.shown_with(item), lambda: f"an item at {item}: {program.shown_dialogs()}")
        program.let_go()
        wait_until(lambda: not program.shown_dialogs(), "the cards are gone")
    assert widths[0] == widths[2] == 12 * 90 and widths[1] == 12 * 72
