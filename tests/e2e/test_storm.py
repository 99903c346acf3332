"""Everything at once, in random order: the program survives it and is unchanged afterwards."""
import os
import random
import time
from collections import Counter

from harness import geometry, mouse
from harness.desktop import CONFIG, HIDE_STRIP, HOTKEY_EVENT, LAYERED_PREFIX, SHOW_OR_FLASH
from harness.keyboard import MODIFIER
from harness.waiting import SOON, wait_until
from test_custom_keys import SETTING, SHELL, announce, button
from test_frame import (BUTTONS_CHANGED, RELOAD, RESUME, SET_WORK_AREA, UNLOCK, WM_DISPLAYCHANGE, WM_POWERBROADCAST,
                        WM_SESSION_CHANGE, WM_SETTINGCHANGE, WM_SYSCOMMAND, SC_CLOSE)

MESSAGES, INPUTS = 120, 40  # of one storm
STORMS = 6


class Storm:
    def __init__(self, program, seed):
        self.program, self.random = program, random.Random(seed)
        self.frame, self.strip = program.frame().hwnd, program.strip().hwnd
        self.changed = program.probe.register_message(BUTTONS_CHANGED)
        area = program.desktop.work_area()
        self.points = [mouse.away(program), ((area.left + area.right) // 2, 1), ((area.left + area.right) // 2, 200),
                       *[mouse.middle(mouse.card_picture(program, i)) for i in range(len(program.functions))],
                       *[mouse.middle(r) for r in geometry.circle_items(area, len(program.functions), 1, 3)]]

    def message(self):
        post = self.program.probe.post
        kind = self.random.choice(("frame", "frame", "frame", "key", "key", "setting", "button"))
        if kind == "frame":
            post(self.frame, *self.random.choice((
                (RELOAD, 0), (SHOW_OR_FLASH, 0), (HIDE_STRIP, 0), (HIDE_STRIP, 1), (WM_DISPLAYCHANGE, 32),
                (WM_POWERBROADCAST, RESUME), (WM_SESSION_CHANGE, UNLOCK), (WM_SETTINGCHANGE, SET_WORK_AREA),
                (WM_SYSCOMMAND, SC_CLOSE), (self.changed, 0))))
        elif kind == "key":
            post(self.strip, HOTKEY_EVENT, self.random.choice((0, 0x3B, 0x3C, 0x3D, 0x7777, 0xFFFFFFFF)),
                 self.random.randrange(2))
        elif kind == "setting":
            name, values = self.random.choice((("Position", 2), ("EnableHover", 2), ("Topmost", 2), ("AutoHide", 2),
                                               ("HideMainDlg", 2), ("ShowQrdAtLaunch", 2), ("MouseEnterIdle", 90)))
            self.program.probe.set_dword("HKLM", CONFIG, name, self.random.randrange(values))
        elif self.random.randrange(2):
            self.program.probe.set_text("HKLM", f"{SETTING}\\9", "OPT1", SHELL)
        else:
            self.program.probe.delete_key("HKLM", f"{SETTING}\\9")

    def input(self):
        keyboard = self.program.keyboard
        kind = self.random.choice(("move", "move", "click", "key", "modifier"))
        if kind == "move":
            keyboard.move(*self.random.choice(self.points))
        elif kind == "click":
            keyboard.click(*self.random.choice(self.points))
        elif kind == "key":
            keyboard.press(self.random.choice(("F1", "F2", "F3", "F9")))
        else:
            (keyboard.down if self.random.randrange(2) else keyboard.up)(MODIFIER)

    def blow(self):
        order = [self.message] * MESSAGES + [self.input] * INPUTS
        self.random.shuffle(order)
        for event in order:
            event()


def at_rest(program):
    area, count = program.desktop.work_area(), len(program.functions)
    return (program.strip().rect == geometry.strip(area, count) and not program.strip_shown()
            and [w.rect for w in program.shown_dialogs()] == [geometry.hover_strip(area, count)])


def settle(program):
    """Back to rest: nothing pressed, the first settings, the cards rebuilt."""
    program.keyboard.release_all()
    program.keyboard.up(MODIFIER)
    program.keyboard.move(*mouse.away(program))
    program.configure(Programmable=1, EnableHover=1, MouseEnterIdle=30)
    program.probe.delete_key("HKLM", f"{SETTING}\\9")
    program.probe.focus(program.desktop.window)
    # Posted, because sent messages would overtake the storm.
    program.probe.post(program.frame().hwnd, RELOAD)
    quiet_since = [time.monotonic()]

    def calm():
        # Pending effects appear within this time: a flash, the last settings, the last keys.
        if not at_rest(program):
            quiet_since[0] = time.monotonic()
        if program.strip_shown():
            # A mouse that jumped off the cards before it was noticed there does not count as leaving them; this one
            # does.
            program.keyboard.move(*mouse.middle(mouse.card_picture(program, 0)))
            program.keyboard.move(*mouse.away(program))
        return time.monotonic() - quiet_since[0] > 0.8
    wait_until(calm, lambda: f"only the hover strip is left: {program.windows()}", 3 * SOON)
    announce(program)
    wait_until(lambda: at_rest(program), lambda: f"only the hover strip is left: {program.windows()}")


def windows_of(program):
    """Its windows by class, except pictures, which are created when they are first painted."""
    windows = program.windows()
    assert sum(w.cls.startswith(LAYERED_PREFIX) for w in windows) <= 2, f"more than the strips' pictures: {windows}"
    return Counter(w.cls for w in windows if not w.cls.startswith(LAYERED_PREFIX))


def test_a_storm_of_messages_keys_and_mouse_leaves_everything_as_it_was(program):
    seed = int(os.environ.get("FENWYN_STORM_SEED", random.SystemRandom().randrange(1 << 32)))
    print(f"FENWYN_STORM_SEED={seed}")
    program.write_log_settings(Level=0)
    program.log_file.unlink(missing_ok=True)
    program.configure(Programmable=1, EnableHover=1, MouseEnterIdle=30)
    program.offer("Mute", "Zoom", "Lock")
    button(program, "Ninth", "F3", 9)
    program.probe.set_text("HKLM", f"{SETTING}\\9", "OPT2", "/c exit")
    program.probe.delete_key("HKLM", f"{SETTING}\\9")
    process = program.start()
    storm = Storm(program, seed)
    counts, windows = [], []
    # Fonts and the like are created once and kept; a leak grows with every storm.
    while len(counts) < 2 or any(counts[-1][kind] > counts[-2][kind] for kind in counts[-1]):
        assert len(counts) < STORMS, f"handles grow from storm to storm: {counts}"
        storm.blow()
        settle(program)
        windows.append(windows_of(program))
        counts.append(program.probe.handles(program.pid))
    assert windows[-1] == windows[-2], f"windows are left over: {windows[-1] - windows[-2]}"
    assert process.poll() is None
    assert program.strip().rect == geometry.strip(program.desktop.work_area(), 3)
    # It works as at the beginning.
    program.keyboard.down(MODIFIER)
    program.expect_strip()
    program.machine("Zoom", Item=0)
    chosen = len(program.chosen("Zoom"))
    program.keyboard.press("F2")
    program.keyboard.up(MODIFIER)
    wait_until(lambda: program.chosen("Zoom")[chosen:] == ["0"], lambda: f"{program.chosen('Zoom')[chosen:]}")
    program.end()
