"""The page Buttons of the settings program, by real keys and a real mouse, beside a running Fenwyn."""
import pytest
from harness.settings_window import APPLY, CANCEL, IDS, TRIAL_EVENT, opening
from harness.waiting import wait_until
from test_custom_keys import SHELL, lines_of, writes


@pytest.fixture
def window(program):
    program.offer("Mute", "Lock")
    program.start("/hide")
    with opening(program) as open_window:
        yield open_window()


def apply_and_await_restart(program, window):
    before = program.pid
    window.click(APPLY)
    wait_until(lambda: program.frame() and program.pid != before and program.strip(), "Fenwyn has started again", 30)


def test_switched_on_without_any_key_fenwyn_starts_again(program, window):
    window.turn_to("Buttons")
    window.click(IDS["IDS_PROGRAMMABLE"])
    apply_and_await_restart(program, window)


def test_a_key_gets_a_program_that_is_tried_out_and_starts_after_apply(program, window):
    parameters, file = writes(program, "started")
    window.turn_to("Buttons")
    window.click(IDS["IDS_BUTTONS_PRESS"])
    wait_until(lambda: program.probe.set_event(TRIAL_EVENT), "the page asks for a key")
    window.keyboard.press("F1")
    wait_until(lambda: "Mute" in window.control(IDS["IDC_BUTTONS_SAID"]).title, "it says whose key that was")
    window.keyboard.type(SHELL)
    window.keyboard.press("Tab")
    window.keyboard.press("Tab")
    window.keyboard.type(parameters)
    window.click(IDS["IDS_BUTTONS_TRY"])
    wait_until(lambda: lines_of(file) == ["started"], lambda: f"the trial starts it: {lines_of(file)}")
    window.click(IDS["IDS_BUTTONS_SET"])
    window.click(IDS["IDS_PROGRAMMABLE"])
    apply_and_await_restart(program, window)
    window.click(CANCEL)
    window.expect_end()
    program.desktop.take_focus()
    program.hold()
    program.expect_strip()
    program.keyboard.press("F1")
    wait_until(lambda: lines_of(file) == ["started"] * 2, lambda: f"the key starts it: {lines_of(file)}")
    assert not program.shown_dialogs(), "a card is shown"
    program.let_go()
    assert not program.chosen("Mute")
