"""The page Keys of the settings program, by real keys, beside a running Fenwyn."""
import os
import signal
import subprocess

import pytest
from harness import places
from harness.keyboard import MODIFIER
from harness.waiting import stays, wait_until

SETTINGS_CLASS = "KESTOVA_Fenwyn_Settings"
TRIAL_EVENT = "Local\\KESTOVA_Fenwyn_KeyTrial"
WM_CLOSE = 0x10


class Settings:
    def __init__(self, program):
        self.program = program
        self.probe = program.probe
        self.process = subprocess.Popen([str(places.WINE), str(program.stage / "FenwynSettings.exe")],
                                        cwd=program.folder, env=program.desktop.environment,
                                        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL, start_new_session=True)
        wait_until(lambda: self.window() and self.probe.foreground() == self.window().hwnd, "the settings are open", 20)

    def window(self):
        return next(iter(self.probe.windows(SETTINGS_CLASS, visible=True)), None)

    def keys_are_heard(self):
        return self.probe.set_event(TRIAL_EVENT)

    def press(self, keys):
        self.program.keyboard.press(keys)

    def open_keys(self):
        rect = self.window().rect
        self.program.keyboard.click((rect.left + rect.right) // 2, rect.top + 10)  # keys reach it from here on
        self.press("Control_L+Tab")

    def kill(self):
        os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait(10)


@pytest.fixture
def settings(program):
    program.offer("Mute", "Lock")
    program.start("/hide")
    made = Settings(program)
    yield made
    if made.window():
        program.probe.post(made.window().hwnd, WM_CLOSE)
    wait_until(lambda: not program.probe.processes("FenwynSettings.exe"), "the settings are closed", 20)


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
    settings.open_keys()
    settings.press("Alt_L+d")  # add a key, to the card that is selected
    wait_until(settings.keys_are_heard, "the page asks for a key")
    program.keyboard.down(MODIFIER)
    settings.press("F9")
    program.keyboard.up(MODIFIER)
    wait_until(lambda: not settings.keys_are_heard(), "the page has its key")
    assert not program.strip_shown() and not program.chosen("Mute")
    # Numbers of processes and windows are used again, but hardly all of them at once.
    before = program.frame(), program.strip().hwnd
    settings.press("space")  # with Fn, as the key was pressed
    settings.press("Alt_L+a")
    wait_until(lambda: program.frame() and program.strip() and (program.frame(), program.strip().hwnd) != before,
               "Fenwyn has started again with the new key", 30)
    assert codes_of(program, "Mute") == "3b00000043000000"
    expect_choice(program, "F9")


def test_keys_are_tried_out_without_effect_and_work_when_the_settings_are_killed(program, settings):
    settings.open_keys()
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
