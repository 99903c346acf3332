"""The page Keys of the settings program, by real keys, beside a running Fenwyn."""
import os
import signal

import pytest
from harness.keyboard import MODIFIER
from harness.settings_window import SettingsWindow
from harness.waiting import stays, wait_until

TRIAL_EVENT = "Local\\KESTOVA_Fenwyn_KeyTrial"


class KeysPage(SettingsWindow):
    def __init__(self, program):
        super().__init__(program)
        self.turn_to("Keys")

    def keys_are_heard(self):
        return self.probe.set_event(TRIAL_EVENT)

    def press(self, keys):
        self.keyboard.press(keys)

    def kill(self):
        os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait(10)


@pytest.fixture
def settings(program):
    program.offer("Mute", "Lock")
    program.start("/hide")
    page = KeysPage(program)
    yield page
    page.close()


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
    settings.press("Alt_L+d")  # add a key, to the card that is selected
    wait_until(settings.keys_are_heard, "the page asks for a key")
    program.keyboard.down(MODIFIER)
    settings.press("F9")
    program.keyboard.up(MODIFIER)
    wait_until(lambda: not settings.keys_are_heard(), "the page has its key")
    assert not program.strip_shown() and not program.chosen("Mute")
    first, = program.running()
    settings.press("space")  # with Fn, as the key was pressed
    settings.press("Alt_L+a")
    wait_until(lambda: first.poll() is not None, "Fenwyn has ended", 20)
    wait_until(program.is_up, "Fenwyn has started again with the new key", 20)
    assert codes_of(program, "Mute") == "3b00000043000000"
    expect_choice(program, "F9")


def test_keys_are_tried_out_without_effect_and_work_when_the_settings_are_killed(program, settings):
    settings.press("Alt_L+t")
    wait_until(settings.keys_are_heard, "the field has the focus")
    for _ in range(3):  # a hook that is not called would come first again with one of them
        program.keyboard.down(MODIFIER)
        settings.press("F1")
        program.keyboard.up(MODIFIER)
        stays(lambda: not program.strip_shown() and not program.shown_dialogs(), "no card is shown", 0.5)
    assert not program.chosen("Mute")
    assert not any("hook was lost" in text for text in program.log_texts())
    settings.kill()
    program.desktop.focus(program.desktop.window)
    expect_choice(program, "F1")
