"""The configured modifier, with real keys: each that can be chosen works like the right Ctrl key, and keeps its usual
function when tapped."""
import contextlib

import pytest
from harness.desktop import LIST
from harness.waiting import stays, wait_until

KEY_DOWN, KEY_UP, CHARACTER, SYSTEM_KEY_DOWN, SYSTEM_KEY_UP = 0x100, 0x101, 0x102, 0x104, 0x105
CAPS_LOCK, MENU_KEY, F13 = 0x14, 0x5D, 0x7C

# The modifier's name for the X server, and its virtual-key code.
MODIFIERS = {"Control_R": 0xA3, "Alt_R": 0xA5, "Caps_Lock": CAPS_LOCK, "Menu": MENU_KEY, "Super_R": 0x5C,
             **{f"F{number}": F13 + number - 13 for number in range(13, 25)}}
# Other programs see these only when they were tapped.
WITHHELD = ["Menu", "Caps_Lock", *(f"F{number}" for number in range(13, 25))]


def use_modifier(program, name):
    program.probe.set_dword("HKLM", LIST, "ModifierKey", MODIFIERS[name])
    program.offer("Mute", "Zoom")
    program.machine("Mute", Item=0)


def reported(program, code, kind):
    return sum(1 for line in program.log() if line.text == f"Get hotkey code:{code:#x}, modifier:{kind:#x}")


def seen_of(program, key):
    """The messages of a key that the other program's window got since the last query."""
    return [message for message, value, _ in program.probe.received(program.desktop.window) if value == key]


def means_what_it_is(keyboard, name):
    return keyboard.plain_caps_lock() if name == "Caps_Lock" else contextlib.nullcontext()


@pytest.mark.parametrize("name", MODIFIERS)
def test_each_modifier_shows_the_cards_and_applies_the_choice(program, name):
    use_modifier(program, name)
    program.start()
    with means_what_it_is(program.keyboard, name):
        program.keyboard.down(name)
        program.expect_strip()
        program.press("Mute")
        program.keyboard.up(name)
    wait_until(lambda: program.chosen("Mute") == ["1"], "the choice is applied")
    program.expect_strip(shown=False)


@pytest.mark.parametrize("name", WITHHELD)
def test_other_programs_see_a_tap_of_the_key_and_nothing_of_its_use(program, name):
    use_modifier(program, name)
    program.configure(Disable=1)  # no window of ours between the keys and the other program
    program.start()
    program.probe.received(program.desktop.window)
    with means_what_it_is(program.keyboard, name):
        program.keyboard.down(name)
        program.keyboard.press("F1")
        program.keyboard.up(name)
        wait_until(lambda: reported(program, 0, 1) == 1, "the library has reported all")
        stays(lambda: not seen_of(program, MODIFIERS[name]), "the key came through", 0.2)
    program.keyboard.press(name)
    seen = []

    def whole_tap():
        seen.extend(seen_of(program, MODIFIERS[name]))
        return seen == [KEY_DOWN, KEY_UP]
    wait_until(whole_tap, "the tap comes through")


def character(program, key):
    """What the other program's window gets for a letter's key."""
    program.probe.received(program.desktop.window)
    program.keyboard.press(key)
    seen = []

    def arrived():
        seen.extend(chr(value) for message, value, _ in program.probe.received(program.desktop.window)
                    if message == CHARACTER)
        return seen
    wait_until(arrived, f"{key} is typed")
    return seen


def test_a_tapped_caps_lock_still_toggles(program):
    use_modifier(program, "Caps_Lock")
    program.start()
    before = character(program, "b")
    program.keyboard.press("Caps_Lock")
    wait_until(lambda: character(program, "b") == [before[0].swapcase()], "capital letters are switched")
    program.keyboard.press("Caps_Lock")
    wait_until(lambda: character(program, "b") == before, "and back")


@pytest.mark.parametrize("name, seen_as, messages", [
    ("Control_R", 0x11, [KEY_DOWN, KEY_UP]), ("Super_R", 0x5C, [KEY_DOWN, KEY_UP]),
    ("Alt_R", 0x12, [SYSTEM_KEY_DOWN, SYSTEM_KEY_UP])])
def test_other_programs_see_a_tap_of_a_modifier_that_they_know_themselves(program, name, seen_as, messages):
    use_modifier(program, name)
    program.configure(Disable=1)
    program.start()
    program.probe.received(program.desktop.window)
    program.keyboard.press(name)
    seen = []

    def whole_tap():
        seen.extend(seen_of(program, seen_as))
        return seen == messages
    wait_until(whole_tap, lambda: f"the tap comes through: {seen}")
