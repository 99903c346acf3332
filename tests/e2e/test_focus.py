"""The focus stays with the program that the user works in; windows only hide on a focus loss that they did not
cause."""
import pytest
from harness import mouse
from harness.functions import sample
from harness.waiting import stays, wait_until
from test_keys import expect_card

STICKY_CANCELLED = "ENTER CZelMainApp::_cancelFnSticky"


def other_program_has_it(program):
    return program.probe.foreground() == program.desktop.window


def expect_it_stays(program):
    assert other_program_has_it(program)
    stays(lambda: other_program_has_it(program), lambda: f"it went to {program.probe.foreground():#x}", 0.3)


@pytest.mark.parametrize("function", ["Zoom", "Brightness", "Output", "Output_2"])
def test_keys_leave_the_focus_where_it_is(program, function):
    program.offer(*sample("Mute", function))
    program.start()
    assert other_program_has_it(program)
    program.hold()
    program.expect_strip()
    expect_it_stays(program)
    program.press(function)
    expect_card(program, function)
    expect_it_stays(program)
    program.press(function)
    expect_it_stays(program)
    program.let_go()
    wait_until(lambda: not [w for w in program.shown_dialogs() if w.size[1] > 4], "the card is put away")
    expect_it_stays(program)


def test_a_click_on_the_hover_strip_leaves_the_focus_where_it_is(program):
    program.configure(EnableHover=1, MouseEnterIdle=30000)
    program.offer("Mute", "Zoom")
    program.start()
    mouse.rest_on_hover_strip(program)
    program.keyboard.click(*mouse.hover_point(program))
    expect_it_stays(program)


@pytest.fixture
def strip_with_focus(program):
    """As after a second start: the strip is shown, has the focus and hides when it loses it."""
    program.configure(EnableHover=1, MouseEnterIdle=30000, HideMainUIWhenLostFocus=1, ShowQrdAtLaunch=1)
    program.offer("Mute", "Zoom")
    program.start("/hide")
    program.second_start()
    program.expect_strip()
    wait_until(lambda: program.probe.foreground() == program.strip().hwnd, "the strip has the focus")
    return program


def cancelled(program):
    return program.log_texts().count(STICKY_CANCELLED)


def test_the_first_key_does_not_count_as_lost_focus(strip_with_focus):
    program = strip_with_focus
    before = cancelled(program)
    program.hold()
    program.press("Zoom")
    expect_card(program, "Zoom")
    stays(lambda: not mouse.hover_shown(program), "the hover strip is beside the enlarged card", 0.3)
    expect_card(program, "Zoom")
    assert cancelled(program) == before, "a latched modifier was cancelled in the middle of the sequence"
    program.press("Zoom")
    program.let_go()
    wait_until(lambda: program.chosen("Zoom"), "the choice is applied")
    mouse.expect_hover_strip(program)


def test_the_first_click_does_not_count_as_lost_focus(strip_with_focus):
    program = strip_with_focus
    before = cancelled(program)
    program.keyboard.click(*mouse.middle(mouse.card_picture(program, 1)))
    program.expect_strip(shown=False)
    expect_card(program, "Zoom")
    stays(lambda: not mouse.hover_shown(program), "the hover strip is beside the enlarged card", 0.5)
    expect_card(program, "Zoom")
    assert cancelled(program) == before


def test_another_program_that_takes_the_focus_still_hides_the_strip(strip_with_focus):
    program = strip_with_focus
    program.probe.focus(program.desktop.window)
    program.expect_strip(shown=False)
    mouse.expect_hover_strip(program)
