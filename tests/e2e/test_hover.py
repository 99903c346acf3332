"""The hover strip: a thin line at the screen's edge on which the mouse rests to bring up the cards."""
import itertools
import time

import pytest
from harness import geometry, mouse
from harness.desktop import DIALOG_CLASS, HOTKEY_EVENT, STRIP_CLASS
from harness.probe import Rect
from harness.screen import BACKGROUND
from harness.waiting import allowed, stays, wait_until

WS_EX_TOPMOST, WS_EX_TOOLWINDOW, WS_EX_LAYERED = 0x8, 0x80, 0x80000
WM_MOUSEMOVE = 0x200


def hover_window(program):
    return wait_until(lambda: next(iter(program.shown_with(mouse.hover_rect(program))), None),
                      lambda: f"the hover strip is shown: {program.shown_dialogs()}")


@pytest.mark.parametrize("position", [0, 1])
def test_it_stands_at_the_edge_while_the_cards_are_hidden(program, position):
    program.configure(EnableHover=1, Position=position, MouseEnterIdle=60000)
    program.offer("Mute", "Lock", "Zoom")
    program.start()
    area, screen = program.desktop.work_area(), program.desktop.screen
    window = hover_window(program)
    assert window.rect.bottom - window.rect.top == 4
    assert (window.rect.bottom == area.bottom) if position else (window.rect.top == area.top)
    assert window.cls == DIALOG_CLASS and window.exstyle & WS_EX_TOOLWINDOW and window.exstyle & WS_EX_LAYERED
    # Each card has its part of the line, and nothing is drawn outside them.
    for index in range(3):
        card = geometry.card(area, 3, index, bottom=bool(position))
        piece = Rect(card.left, window.rect.top, card.right, window.rect.bottom)
        wait_until(lambda: screen.picture(piece).share_of(piece, lambda rgb: rgb != BACKGROUND) > 0.5,
                   f"piece {index} is drawn")
    around = Rect(window.rect.left - 8, area.bottom - 40 if position else area.top + 4,
                  window.rect.right + 8, area.bottom - 4 if position else area.top + 40)
    assert screen.picture(around).is_plain(around)
    program.hold()
    program.expect_strip()
    mouse.expect_hover_strip(program, shown=False)
    program.let_go()
    program.expect_strip(shown=False)
    mouse.expect_hover_strip(program)


def test_a_search_for_the_class_of_the_card_strip_finds_only_the_card_strip(program):
    program.configure(EnableHover=1)
    program.offer("Mute")
    program.start()
    found = program.probe.windows(STRIP_CLASS)
    assert [w.rect for w in found] == [geometry.strip(program.desktop.work_area(), 1)]
    assert hover_window(program).hwnd != found[0].hwnd


@pytest.mark.parametrize("position", [0, 1])
def test_the_mouse_resting_on_it_shows_the_cards_after_the_idle_time(program, position):
    program.configure(EnableHover=1, Position=position, MouseEnterIdle=700)
    program.offer("Mute", "Zoom")
    program.start()
    mouse.expect_hover_strip(program)
    began = time.monotonic()
    program.keyboard.move(*mouse.hover_point(program))
    program.expect_strip()
    assert 0.6 < time.monotonic() - began < 0.7 + allowed(1.0)
    mouse.expect_hover_strip(program, shown=False)
    assert not program.calls(export="SelectItem")


def test_leaving_it_before_the_idle_time_shows_nothing(program):
    program.configure(EnableHover=1, MouseEnterIdle=1500)
    program.offer("Mute", "Zoom")
    program.start()
    x, y = mouse.hover_point(program)
    for _ in range(3):
        # Together longer than the idle time: each stay counts separately.
        began = time.monotonic()
        program.keyboard.move(x, y)
        stays(lambda: not program.strip_shown(), "the cards came at once", 0.6)
        program.keyboard.move(x, y + 60)
        if time.monotonic() - began > 1.4:
            pytest.skip("the machine is too slow to leave in time")
        stays(lambda: not program.strip_shown(), "the cards came without the mouse", 0.3)
    stays(lambda: not program.strip_shown(), "the cards came without the mouse", 1.2)
    mouse.expect_hover_strip(program)


def test_moving_along_it_does_not_start_the_idle_time_anew(program):
    program.configure(EnableHover=1, MouseEnterIdle=1000)
    program.offer("Mute", "Zoom")
    program.start()
    x, y = mouse.hover_point(program)
    began = time.monotonic()
    for step in itertools.cycle((1, 2, 3, 2, 1, 0)):
        if program.strip_shown():
            break
        program.keyboard.move(x + step, y)
        assert time.monotonic() - began < 1.0 + allowed(2.0), "a mouse that moves on the line is on it"


def test_disabled_or_switched_off_there_is_no_line(program):
    program.configure(EnableHover=1, MouseEnterIdle=50)
    program.offer("Mute")
    program.start()
    hover = hover_window(program).hwnd
    for name, value in (("Disable", 1), ("Disable", 0), ("EnableHover", 0), ("EnableHover", 1)):
        program.change(name, value)
        there = (name, value) in (("Disable", 0), ("EnableHover", 1))
        mouse.expect_hover_strip(program, shown=there)
        if name == "Disable" and value:
            # A mouse message that arrives anyway is ignored.
            program.probe.send(hover, WM_MOUSEMOVE, 0, 0x00010010)
            program.expect_strip_stays(False)


@pytest.mark.parametrize("topmost", [0, 1])
def test_it_stands_above_other_windows_only_when_told(program, topmost):
    program.configure(EnableHover=1, Topmost=topmost)
    program.offer("Mute")
    program.start()
    assert bool(hover_window(program).exstyle & WS_EX_TOPMOST) == bool(topmost)
    assert program.strip().exstyle & WS_EX_TOPMOST
    program.change("Topmost", 1 - topmost)
    wait_until(lambda: bool(hover_window(program).exstyle & WS_EX_TOPMOST) != bool(topmost), "the change is followed")
    assert program.strip().exstyle & WS_EX_TOPMOST


def test_it_follows_the_position_of_the_cards(program):
    program.configure(EnableHover=1, MouseEnterIdle=50)
    program.offer("Mute", "Zoom")
    program.start()
    for position in (1, 0):
        program.change("Position", position)
        mouse.rest_on_hover_strip(program)
        program.expect_strip()
        assert program.strip().rect == geometry.strip(program.desktop.work_area(), 2, bool(position))
        program.keyboard.move(*mouse.away(program))
        program.expect_strip(shown=False)


def test_without_cards_there_is_nothing_to_see_and_nothing_to_rest_on(program):
    program.configure(EnableHover=1, MouseEnterIdle=0)
    program.offer()
    program.start()
    area = program.desktop.work_area()
    assert all(w.size[0] == 0 for w in program.shown_dialogs()), program.shown_dialogs()
    edge = Rect(area.left, area.top, area.right, area.top + 8)
    assert program.desktop.screen.picture(edge).is_plain(edge)
    program.keyboard.move((area.left + area.right) // 2, area.top)
    program.expect_strip_stays(False)
    # Keys still work as before.
    program.probe.send(program.strip().hwnd, HOTKEY_EVENT, 0, 0)
    program.expect_strip()
    program.probe.send(program.strip().hwnd, HOTKEY_EVENT, 0, 1)
    program.expect_strip(shown=False)
