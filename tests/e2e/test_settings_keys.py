"""The page Keys of the settings program, by real keys, beside a running Fenwyn."""
import os
import signal

import pytest
from harness.keyboard import MODIFIER
from harness.settings_window import TRIAL_EVENT, opening
from harness.waiting import stays, wait_until


@pytest.fixture
def settings(program):
    program.offer("Mute", "Lock")
    program.start("/hide")
    with opening(program, "Keys") as open_page:
        yield open_page()


def keys_are_heard(program):
    return program.probe.set_event(TRIAL_EVENT)


def kill(settings):
    os.killpg(settings.process.pid, signal.SIGKILL)
    settings.process.wait(10)


def codes_of(program, function):
    return program.probe.get_value("HKLM", f"SOFTWARE\\KESTOVA\\Fenwyn\\HotKey\\{function}", "Code").hex()


def expect_choice(program, key):
    def chosen():
        program.keyboard.down(MODIFIER)
        if program.strip_shown():
            program.keyboard.press(key)
        program.keyboard.up(MODIFIER)
        return program.chosen("Mute")
    wait_until(chosen, "the key opens the card of Mute, and the choice is applied", 20)


def test_a_pressed_key_opens_the_card_after_apply(program, settings):
    settings.keyboard.press("Alt_L+d")  # add a key, to the card that is selected
    wait_until(lambda: keys_are_heard(program), "the page asks for a key")
    program.keyboard.down(MODIFIER)
    settings.keyboard.press("F9")
    program.keyboard.up(MODIFIER)
    wait_until(lambda: not keys_are_heard(program), "the page has its key")
    assert not program.strip_shown() and not program.chosen("Mute")
    first, = program.running()
    settings.keyboard.press("space")  # with Fn, as the key was pressed
    settings.keyboard.press("Alt_L+a")
    wait_until(lambda: first.poll() is not None, "Fenwyn has ended", 20)
    wait_until(program.is_up, "Fenwyn has started again with the new key", 20)
    assert codes_of(program, "Mute") == "3b00000043000000"
    expect_choice(program, "F9")


def test_keys_are_tried_out_without_effect_and_work_when_the_settings_are_killed(program, settings):
    settings.keyboard.press("Alt_L+t")
    wait_until(lambda: keys_are_heard(program), "the field has the focus")
    for _ in range(3):  # a hook that is not called would come first again with one of them
        program.keyboard.down(MODIFIER)
        settings.keyboard.press("F1")
        program.keyboard.up(MODIFIER)
        stays(lambda: not program.strip_shown() and not program.shown_dialogs(), "no card is shown", 0.5)
    assert not program.chosen("Mute")
    assert not any("hook was lost" in text for text in program.log_texts())
    kill(settings)
    program.desktop.focus(program.desktop.window)
    expect_choice(program, "F1")
