"""Plug-ins for real machines: their observable effects, with real keys."""
from harness import places
from harness.functions import sample
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
    assert ("Hotkey Brightness has no card: There is no built-in screen whose brightness the system can set.") in texts
    assert "Hotkey Zoom is supported." in texts
