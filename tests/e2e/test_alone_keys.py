"""Keys that act without the modifier, with real keys: media keys open their card, step and apply by themselves."""
import time

import pytest
from harness.desktop import LIST
from harness.functions import CIRCLE_ITEMS, Function
from harness.waiting import stays, wait_until

ALONE, VIRTUAL_KEY = 0x10000, 0xF000
VK_VOLUME_MUTE, VK_VOLUME_DOWN = 0xAD, 0xAE
KEY_DOWN, KEY_UP = 0x100, 0x101
DELAY = 2500  # milliseconds; on a busy machine cards take their time


def alone(name, key, virtual_key):
    return Function(name, name, None, key, (ALONE | VIRTUAL_KEY | virtual_key,), CIRCLE_ITEMS[name])


@pytest.fixture
def media(program):
    """The program with two media keys."""
    program.offer(alone("Mute", "XF86AudioMute", VK_VOLUME_MUTE), alone("Zoom", "XF86AudioLowerVolume", VK_VOLUME_DOWN))
    program.probe.set_dword("HKLM", LIST, "ReleaseDelay", DELAY)
    program.machine("Mute", Item=0)
    program.machine("Zoom", Item=0)
    return program


def seen_of(program, key):
    """What the other program's window got of a key since the last asking."""
    return [message for message, value, _ in program.probe.received(program.desktop.window) if value == key]


def test_a_media_key_opens_its_card_and_the_choice_is_applied_after_the_delay(media):
    program = media
    program.start()
    pressed = time.monotonic()
    program.press("Mute")
    assert not program.strip_shown()
    wait_until(program.shown_dialogs, "the card is open")
    wait_until(lambda: program.chosen("Mute") == ["1"], "the choice is applied")
    assert time.monotonic() - pressed >= DELAY / 1000
    wait_until(lambda: not program.shown_layered(), "the card has gone")
    assert not seen_of(program, VK_VOLUME_MUTE), "other programs see nothing of the key"


def test_a_further_press_steps_and_the_last_release_counts(media):
    program = media
    program.start()
    for _ in range(3):
        program.press("Zoom")
    wait_until(lambda: program.chosen("Zoom"), "the choice is applied")
    assert len(program.chosen("Zoom")) == 1
    first = program.chosen("Zoom")[0]
    program.machine("Zoom", Item=0)
    program.press("Zoom")
    wait_until(lambda: len(program.chosen("Zoom")) == 2, "the next choice is applied")
    assert program.chosen("Zoom")[1] != first or CIRCLE_ITEMS["Zoom"] <= 2


def test_a_held_key_keeps_its_card(media):
    program = media
    program.probe.set_dword("HKLM", LIST, "ReleaseDelay", 0)
    program.start()
    program.keyboard.down("XF86AudioMute")
    wait_until(program.shown_dialogs, "the card is open")
    stays(lambda: program.shown_dialogs() and not program.chosen("Mute"), "the card went away", 0.5)
    program.keyboard.up("XF86AudioMute")
    wait_until(lambda: program.chosen("Mute") == ["1"], "the choice is applied at once")


def test_another_media_key_takes_its_place(media):
    program = media
    program.start()
    program.press("Mute")
    program.press("Zoom")
    wait_until(lambda: program.chosen("Zoom"), "the second choice is applied")
    assert not program.chosen("Mute")


def test_the_modifier_applies_the_choice_at_once(media):
    program = media
    program.probe.set_dword("HKLM", LIST, "ReleaseDelay", 60000)
    program.start()
    program.press("Mute")
    assert not program.chosen("Mute")
    program.hold()
    wait_until(lambda: program.chosen("Mute") == ["1"], "the choice is applied")
    program.expect_strip()
    program.let_go()
    program.expect_strip(shown=False)


def test_with_the_modifier_the_key_opens_its_card_as_well(media):
    program = media
    program.start()
    program.hold()
    program.press("Mute")
    assert not program.chosen("Mute")
    program.let_go()
    wait_until(lambda: program.chosen("Mute") == ["1"], "the choice is applied with the modifier's release")


def test_while_disabled_other_programs_get_the_key(media):
    program = media
    program.configure(Disable=1)
    program.start()
    program.probe.received(program.desktop.window)
    program.keyboard.press("XF86AudioMute")
    seen = []

    def whole_key():
        seen.extend(seen_of(program, VK_VOLUME_MUTE))
        return seen == [KEY_DOWN, KEY_UP]
    wait_until(whole_key, "the key comes through")
    assert not program.chosen("Mute")
