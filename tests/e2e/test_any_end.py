"""After any end of the program, a kill above all: no mutex is left, no key is swallowed or stays down, and the next start
works."""
import os
import random
import signal
import time

import pytest
from harness import geometry, tasks
from harness.desktop import LIST, MUTEX
from harness.waiting import wait_until
from test_failures import the_other_card_works
from test_faults import FAULTS_KEY
from test_modifier import MODIFIERS, means_what_it_is

KEY_DOWN, KEY_UP, SYSTEM_KEY_DOWN, SYSTEM_KEY_UP = 0x100, 0x101, 0x104, 0x105
KILLS = int(os.environ.get("FENWYN_KILLS", 6))


def kill(program):
    """Without any warning, as the system ends a process."""
    task = tasks.process_of(program.stage / "Fenwyn.exe")
    os.kill(int(task.name), signal.SIGKILL)
    wait_until(lambda: not program.probe.processes("Fenwyn.exe"), "it is gone")


def nothing_is_left(program):
    """The emulated system keeps the hooks of a killed process in its table for a while, and asks nobody about them: that
    keys arrive is what counts."""
    assert not program.probe.hold("mutex", MUTEX), "the mutex is left"
    program.probe.release()


def keys_seen(program):
    return [(message, key) for message, key, _ in program.probe.received(program.desktop.window)
            if KEY_DOWN <= message <= SYSTEM_KEY_UP]


def plain_key_arrives(program, name="F1", code=0x70):
    """A function's key, as everybody else sees it; nothing else stays down."""
    program.probe.focus(program.desktop.window)
    keys_seen(program)
    program.keyboard.press(name)
    seen = []

    def both():
        seen.extend(keys_seen(program))
        return (KEY_DOWN, code) in seen and (KEY_UP, code) in seen
    wait_until(both, lambda: f"the other program gets the key as it is: {seen}")


@pytest.mark.parametrize("name", ["Control_R", "Caps_Lock", "Menu", "F13", "F24", "Alt_R"])
def test_a_kill_while_the_modifier_is_held(program, name):
    program.probe.set_dword("HKLM", LIST, "ModifierKey", MODIFIERS[name])
    program.offer("Mute", "Zoom")
    program.start()
    with means_what_it_is(program.keyboard, name):
        program.keyboard.down(name)
        program.expect_strip()
        program.keyboard.down("F1")
        kill(program)
        program.keyboard.up("F1")
        program.keyboard.up(name)
        nothing_is_left(program)
        plain_key_arrives(program)
        # Not even one that was withheld: it works as always.
        keys_seen(program)
        program.keyboard.press(name)
        wait_until(lambda: any(message in (KEY_UP, SYSTEM_KEY_UP) for message, _ in keys_seen(program)),
                   "the key itself arrives")
        program.start()
        program.keyboard.down(name)
        program.expect_strip()
        program.keyboard.up(name)
        program.expect_strip(shown=False)
    program.end()


def test_kills_at_any_moment(program):
    """During the start, a rebuild, an opened card, the end."""
    seed = int(os.environ.get("FENWYN_TEST_SEED", random.SystemRandom().randrange(1 << 32)))
    print(f"FENWYN_TEST_SEED={seed}")
    chance = random.Random(seed)
    program.offer("Mute", "Zoom")
    for _ in range(KILLS):
        program.launch()
        wait_until(lambda: program.probe.processes("Fenwyn.exe"), "it starts")
        if chance.randrange(3):
            wait_until(program.is_up, "it runs")
            chance.choice((lambda: program.probe.post(program.frame().hwnd, 0x464),
                           lambda: program.probe.post(program.strip().hwnd, 0x465, 0x3B, 0),
                           lambda: program.probe.post(program.frame().hwnd, 0x10)))()
        time.sleep(chance.random() / 5)
        for process in program.probe.processes("Fenwyn.exe"):
            task = tasks.process_of(program.stage / "Fenwyn.exe")
            if task is not None:
                os.kill(int(task.name), signal.SIGKILL)
        wait_until(lambda: not program.probe.processes("Fenwyn.exe"), "it is gone")
        nothing_is_left(program)
        plain_key_arrives(program)
    # Whoever was killed while it initialised a plug-in blames that one.
    program.probe.delete_key("HKCU", FAULTS_KEY)
    program.start()
    assert program.strip().rect == geometry.strip(program.desktop.work_area(), 2), "both cards are there"
    the_other_card_works(program)
    program.end()
    nothing_is_left(program)
    plain_key_arrives(program)
