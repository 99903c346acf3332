"""A modifier that a tap latches, for people who cannot hold two keys."""
import subprocess
from math import trunc

import pytest
from harness import geometry, mouse, places
from harness.desktop import LIST
from harness.keyboard import MODIFIER
from harness.probe import Rect
from harness.waiting import stays, wait_until
from test_keys import expect_card, expect_selected, item_rects

UTILITY_CLASS, UTILITY_TITLE = "Dravik", "Dravik Window"
CANCEL = "KESTOVA Fenwyn-WM_CANCEL_STICKY"
STATE = "SOFTWARE\\KESTOVA\\Fenwyn\\State"
LATCH_COLOUR = (0xC2, 0x41, 0x0C)


def sticky(program, on):
    program.probe.set_dword("HKLM", LIST, "StickyModifier", on)


def utility(program):
    return next((w for w in program.probe.windows(UTILITY_CLASS) if w.title == UTILITY_TITLE), None)


def latched(program):
    try:
        return program.probe.get_value("HKCU", STATE, "Latched") == b"\x01\x00\x00\x00"
    except AssertionError:
        return False


def expect_latch(program, on=True):
    wait_until(lambda: latched(program) == on, f"the modifier is {'latched' if on else 'released'}")


def tap(program):
    program.keyboard.press(MODIFIER)


@pytest.fixture
def latching(program):
    """The program, started with the sticky modifier switched on."""
    sticky(program, 1)
    program.offer("Mute", "Zoom", "Lock")
    program.machine("Zoom", Item=0)
    return program


def test_a_tap_latches_and_a_further_tap_applies(latching):
    program = latching
    program.start()
    assert not latched(program)
    tap(program)
    expect_latch(program)
    program.expect_strip()
    program.expect_strip_stays(True, 0.2)
    program.press("Zoom")
    program.press("Zoom")
    expect_selected(program, "Zoom", 3, 1)
    stays(lambda: not program.chosen("Zoom"), "it is applied before the second tap", 0.2)
    tap(program)
    wait_until(lambda: program.chosen("Zoom") == ["1"], lambda: f"{program.chosen('Zoom')}")
    expect_latch(program, False)
    expect_card(program, "Zoom", shown=False)
    # And again.
    tap(program)
    expect_latch(program)
    program.expect_strip()
    tap(program)
    program.expect_strip(shown=False)
    expect_latch(program, False)
    assert program.chosen("Zoom") == ["1"]


def test_held_with_other_keys_the_modifier_acts_as_ever(latching):
    program = latching
    program.start()
    program.hold()
    program.press("Zoom")
    program.let_go()
    wait_until(lambda: program.chosen("Zoom") == ["0"], "the choice is applied at once")
    expect_latch(program, False)


def test_the_utility_is_told_when_the_cards_are_put_away(latching):
    program = latching
    program.start()
    assert utility(program) and not utility(program).visible
    tap(program)
    expect_latch(program)
    program.expect_strip()
    program.probe.send(program.frame().hwnd, 0x468, 1)
    expect_latch(program, False)
    program.expect_strip(shown=False)


def test_the_message_of_the_utility_releases_the_latch(latching):
    program = latching
    program.start()
    tap(program)
    expect_latch(program)
    program.expect_strip()
    program.probe.post(utility(program).hwnd, program.probe.register_message(CANCEL))
    expect_latch(program, False)
    program.expect_strip(shown=False)
    # Cancelling has no effect while nothing is latched.
    program.probe.post(utility(program).hwnd, program.probe.register_message(CANCEL))
    program.expect_strip_stays(False, 0.2)
    program.keyboard.press("F2")
    stays(lambda: not program.chosen("Zoom"), "a key alone works the cards", 0.2)


def test_a_choice_applied_by_mouse_releases_the_latch(latching):
    program = latching
    program.start()
    tap(program)
    expect_latch(program)
    program.expect_strip()
    program.keyboard.click(*mouse.middle(mouse.card_picture(program, 1)))
    expect_card(program, "Zoom")
    program.keyboard.move(*mouse.middle(item_rects(program, "Zoom", 3)[2]))
    expect_selected(program, "Zoom", 3, 2)
    program.keyboard.click(*mouse.middle(item_rects(program, "Zoom", 3)[2]))
    wait_until(lambda: program.chosen("Zoom") == ["2"], lambda: f"{program.chosen('Zoom')}")
    expect_latch(program, False)
    expect_card(program, "Zoom", shown=False)


def test_a_choice_applied_by_waiting_releases_the_latch(latching):
    program = latching
    program.configure(AutoHide=1, AutoHideDelayTime=300)
    program.start()
    tap(program)
    expect_latch(program)
    program.press("Zoom")
    wait_until(lambda: program.chosen("Zoom"), "the choice is applied after a while")
    expect_latch(program, False)
    expect_card(program, "Zoom", shown=False)
    assert program.chosen("Zoom") == ["0"]


def test_it_is_off_unless_switched_on_and_can_be_switched_while_running(program):
    program.offer("Mute", "Zoom")
    program.start()
    assert not utility(program)
    tap(program)
    wait_until(lambda: program.count_of("CZelMainDlg::handleHotkey", "LEAVE") >= 2, "the tap is over")
    program.expect_strip(shown=False)
    assert not latched(program)
    with program.taken_over():
        sticky(program, 1)
    wait_until(lambda: utility(program), "the utility's window is there")
    tap(program)
    expect_latch(program)
    program.expect_strip()
    sticky(program, 0)
    expect_latch(program, False)
    program.expect_strip(shown=False)
    wait_until(lambda: not utility(program), "the utility's window is gone")


def test_the_end_of_the_program_releases_the_latch(latching):
    program = latching
    program.start()
    tap(program)
    expect_latch(program)
    program.end()
    assert not latched(program) and not utility(program)


def latch_mark(program):
    """The place of the mark: the lower right corner of the last card's picture."""
    work, count = program.desktop.work_area(), 3
    picture, scale = geometry.card_picture(work, count, count - 1), geometry.ratio(work, count)
    size, margin = trunc(scale * 16.0), trunc(scale * 5.0)
    return Rect(picture.right - margin - size, picture.bottom - margin - size, picture.right - margin,
                picture.bottom - margin)


def test_a_latched_modifier_is_told_from_a_held_one(latching):
    program = latching
    program.start()
    mark = latch_mark(program)

    def blue():
        return program.desktop.screen.picture(mark).share_of(mark, lambda rgb: rgb[2] > 0x90 and rgb[2] > rgb[0] + 0x50)
    program.hold()
    program.expect_strip()
    program.expect_strip_stays(True, 0.2)
    assert blue() == 0, "a held modifier shows the mark"
    # Another key in between, so that letting go latches nothing.
    program.press("Zoom")
    program.let_go()
    program.expect_strip(shown=False)
    tap(program)
    expect_latch(program)
    program.expect_strip()
    wait_until(lambda: blue() > 0.1, "the latched modifier shows no mark")
    program.desktop.screen.save(program.folder / "latched-strip.png")
    tap(program)
    expect_latch(program, False)
    program.expect_strip(shown=False)
    # Held once more: the mark is gone.
    program.hold()
    program.expect_strip()
    program.expect_strip_stays(True, 0.2)
    assert blue() == 0, "the mark stays after the latch"
    program.press("Zoom")
    program.let_go()


def test_the_simulated_notebook_shows_the_latch(latching):
    program = latching
    notebook = subprocess.Popen([str(places.WINE), str(program.stage / "NotebookSim.exe")], cwd=program.folder,
                                env=program.desktop.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL)
    try:
        def window():
            pids = program.probe.processes("NotebookSim.exe")
            return next((w for w in program.probe.windows(visible=True) if w.pid in pids and w.title), None)
        wait_until(window, "the notebook is shown", 20)
        program.start()
        rect = window().rect

        def warns():
            picture = program.desktop.screen.picture(rect)
            return picture.share_of(rect, lambda rgb: rgb == LATCH_COLOUR) > 0
        assert not warns()
        tap(program)
        expect_latch(program)
        wait_until(warns, "the notebook says that the modifier is latched")
        program.desktop.screen.save(program.folder / "latched.png")
        tap(program)
        expect_latch(program, False)
        wait_until(lambda: not warns(), "the notebook says nothing any more")
    finally:
        for w in program.probe.windows():
            if w.pid in program.probe.processes("NotebookSim.exe") and w.title:
                program.probe.post(w.hwnd, 0x10)
        try:
            notebook.wait(10)
        finally:
            if notebook.poll() is None:
                notebook.kill()
