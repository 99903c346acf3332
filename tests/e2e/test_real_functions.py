"""Plug-ins for real machines: their observable effects, with real keys."""
import os
import re
import signal
import subprocess

import pytest
from harness import geometry, places
from harness.desktop import FRAME_CLASS, LIST, STRIP_CLASS
from harness.functions import sample
from harness.keyboard import MODIFIER, Keyboard
from harness.probe import Probe, Rect
from harness.screen import Screen
from harness.waiting import wait_until

KEY_DOWN, KEY_UP = 0x100, 0x101
VK_J, VK_NUMPAD1, VK_UP, VK_LEFT = 0x4A, 0x61, 0x26, 0x25
# The modifier, and the key by which the harness detects that keys arrive.
NOT_TYPED = (0x11, 0x91)


def offer_real(program, *names):
    """The functions of the sample list with the plug-ins for real machines."""
    program.offer(*(function._replace(plugin=places.windows_path(program.stage / "plugins" / f"Win{function.name}.dll"))
                    for function in sample(*names)))


def choose_next(program, name):
    """Opens the card of a function that is off, steps to "on" and applies it."""
    program.hold()
    program.press(name)
    program.press(name)
    program.let_go()


def typed(program, key, count=2):
    """The key messages that the other program gets for one press, without the modifier's."""
    window = program.desktop.window
    program.probe.received(window)
    program.keyboard.press(key)
    seen = []

    def arrived():
        seen.extend(entry[:2] for entry in program.probe.received(window)
                    if entry[0] in (KEY_DOWN, KEY_UP) and entry[1] not in NOT_TYPED)
        return len(seen) >= count
    wait_until(arrived, lambda: f"{count} key messages for {key}: {seen}")
    return seen


def pair(key):
    return [(KEY_DOWN, key), (KEY_UP, key)]


def becomes(program, key, expected):
    """The choice is applied a moment after the modifier's release; until then, keys behave as before."""
    wait_until(lambda: typed(program, key) == pair(expected), f"{key} becomes {expected:#x}")


def test_an_overlay_types_and_goes_off_when_the_other_comes_on(program):
    offer_real(program, "CursorOverlay", "NumericOverlay")
    program.start()
    assert typed(program, "j") == pair(VK_J)
    choose_next(program, "NumericOverlay")
    becomes(program, "j", VK_NUMPAD1)
    choose_next(program, "CursorOverlay")
    becomes(program, "i", VK_UP)
    assert typed(program, "j") == pair(VK_LEFT), "the number pad went off"
    assert typed(program, "q") == pair(ord("Q")), "other keys stay as they are"
    program.end()
    becomes(program, "j", VK_J)


def test_functions_that_the_machine_lacks_have_no_card_and_a_line_that_says_why(program):
    offer_real(program, "ODD", "Zoom", "Touchpad", "Brightness")
    program.start()
    program.hold()
    program.expect_strip()
    texts = program.log_texts()
    assert "Hotkey Optical drive has no card: There is no optical drive (mounted images are none)." in texts
    assert "Hotkey Touchpad has no card: There is no precision touchpad." in texts
    assert ("Hotkey Brightness has no card: There is no built-in screen whose brightness the system can set, and no "
            "other that you allow.") in texts
    assert "Hotkey Zoom is supported." in texts


def hear_interrupts():
    """A shell that was started in the background passes Ctrl+C on as ignored, and then no script can hear it."""
    signal.signal(signal.SIGINT, signal.SIG_DFL)


class Shown:
    """./run --real on a virtual screen of its own, or on the given one, looked at from inside."""

    def __init__(self, folder, screen=None):
        self._output = folder / "run.txt"
        environment = dict(os.environ, WINEPREFIX=str(folder / "prefix"))
        environment.pop("DISPLAY", None)
        command = [str(places.ROOT / "run"), "--real"]
        if screen:
            environment["DISPLAY"] = screen.display
        else:
            command.append("--virtual")
        with self._output.open("wb") as file:
            self._process = subprocess.Popen(command, env=environment, stdout=file, stderr=file,
                                             stdin=subprocess.DEVNULL, start_new_session=True,
                                             preexec_fn=hear_interrupts)
        self.probe = None
        try:
            wait_until(lambda: "ends the program" in self.said() or self._process.poll() is not None,
                       lambda: f"it comes up: {self.said()}", 240)
            assert self._process.poll() is None, self.said()
            display = screen.display if screen else re.search(r"export DISPLAY=(\S+)", self.said())[1]
            self.environment = dict(environment, DISPLAY=display, WINEPREFIX=str(folder / "prefix-real"))
            self.probe = Probe(self.environment)
            self.keyboard = Keyboard(self.environment)
        except BaseException:
            self.end()
            raise

    def said(self):
        return self._output.read_text(errors="replace")

    def listed(self):
        """The names of the function list."""
        text = bytes(self.probe.get_value("HKLM", LIST, "FuncList")).decode("utf-16-le")
        return text.rstrip("\0;").split(";")

    def window(self, cls):
        return next(iter(self.probe.windows(cls)), None)

    def hold(self):
        """The hook of a program that has just started may not be there yet: pressed until it answers."""
        def strip_comes():
            self.keyboard.up(MODIFIER)
            self.keyboard.down(MODIFIER)
            return self.window(STRIP_CLASS).visible
        wait_until(strip_comes, "the cards come", 30)

    def end(self):
        """As Ctrl+C does."""
        if self.probe:
            self.probe.end()
            self.keyboard.close()
            self.probe = None
        if self._process.poll() is None:
            os.killpg(self._process.pid, signal.SIGINT)
        return self._process.wait(90)


@pytest.fixture
def shown(tmp_path):
    made = Shown(tmp_path)
    yield made
    made.end()


def test_run_real_shows_what_this_system_offers_and_an_overlay_types_into_a_text_field(shown):
    probe, keyboard = shown.probe, shown.keyboard
    names = shown.listed()
    assert {"CursorOverlay", "NumericOverlay", "Lock"} <= set(names)
    assert not {"ODD", "Touchpad", "KBB"} & set(names)
    assert "not offered: There is no" in shown.said()
    wait_until(lambda: shown.window(FRAME_CLASS) and shown.window(STRIP_CLASS), "Fenwyn runs", 30)
    notepad = wait_until(lambda: shown.window("Notepad"), "there is a notepad to type in")
    probe.focus(notepad.hwnd)

    keyboard.press("Num_Lock")  # without it the emulated system makes no digits of the keys of a number pad

    shown.hold()
    # On a busy machine the desktop may answer too late, and Zoom then has no card this time.
    counts = {len(names), len(names) - 1} if "Zoom" in names else {len(names)}
    area = probe.work_area()
    assert shown.window(STRIP_CLASS).rect in [geometry.strip(area, count) for count in counts], "a card for each function"
    keyboard.press("F11")
    keyboard.press("F11")
    keyboard.up(MODIFIER)

    def typed(key):
        keyboard.press(key)
        return probe.text_field(notepad.hwnd)

    wait_until(lambda: typed("j").endswith("1"), lambda: f"J types 1: {probe.text_field(notepad.hwnd)!r}", 30)
    assert set(probe.text_field(notepad.hwnd)) <= {"j", "1"}
    assert shown.end() == 130, "ended as by Ctrl+C"


@pytest.fixture
def shown_on_two_monitors(tmp_path):
    screen = Screen((1280, 800), second=(1024, 768))
    try:
        made = Shown(tmp_path, screen)
        yield made
        made.end()
    finally:
        screen.stop()


def test_run_real_offers_the_displays_where_there_are_two(shown_on_two_monitors):
    shown = shown_on_two_monitors
    assert "Output_2" in shown.listed(), shown.said()
    wait_until(lambda: shown.window(FRAME_CLASS) and shown.window(STRIP_CLASS), "Fenwyn runs", 30)
    shown.hold()
    first = Rect(0, 0, 1280, 800)
    assert shown.window(STRIP_CLASS).rect == geometry.strip(first, len(shown.listed())), "a card for each function"
    shown.keyboard.up(MODIFIER)
    assert shown.end() == 130, "ended as by Ctrl+C"
