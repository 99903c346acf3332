"""The configured modifier, with real keys: it works like the right Ctrl key, and keeps its usual function when
tapped."""
import pytest
from harness.desktop import LIST
from harness.waiting import stays, wait_until

KEY_DOWN, KEY_UP = 0x100, 0x101
MENU_KEY = 0x5D


@pytest.fixture
def menu_key(program):
    """The program with the menu key as its modifier."""
    program.probe.set_dword("HKLM", LIST, "ModifierKey", MENU_KEY)
    program.offer("Mute", "Zoom")
    return program


def reported(program, code, kind):
    return sum(1 for line in program.log() if line.text == f"Get hotkey code:{code:#x}, modifier:{kind:#x}")


def seen_of(program, key):
    """The messages of a key that the other program's window got since the last query."""
    return [message for message, value, _ in program.probe.received(program.desktop.window) if value == key]


def test_the_menu_key_shows_the_cards_and_applies_the_choice(menu_key):
    program = menu_key
    program.start()
    program.keyboard.down("Menu")
    program.expect_strip()
    program.press("Mute")
    program.press("Mute")
    program.keyboard.up("Menu")
    wait_until(lambda: program.chosen("Mute") == ["1"], "the choice is applied")


def test_other_programs_see_a_tap_of_the_menu_key_and_nothing_of_its_use(menu_key):
    program = menu_key
    program.configure(Disable=1)  # no window of ours between the keys and the other program
    program.start()
    program.probe.received(program.desktop.window)
    program.keyboard.down("Menu")
    program.keyboard.press("F1")
    program.keyboard.up("Menu")
    wait_until(lambda: reported(program, 0, 1) == 1, "the library has reported all")
    stays(lambda: not seen_of(program, MENU_KEY), "the menu key came through", 0.2)
    program.keyboard.press("Menu")
    seen = []

    def whole_tap():
        seen.extend(seen_of(program, MENU_KEY))
        return seen == [KEY_DOWN, KEY_UP]
    wait_until(whole_tap, "the tap comes through")
