"""The long run: the strip comes and goes, every card opens, with keys, mouse, changes of the screen and new cards in
between, and nothing of what the program holds becomes more.

A part of the rounds uses real keys and the real mouse. For the others the probe posts what the hotkey library's thread
posts (probe/Rounds.cpp), because real keys need most of their time outside the program. FENWYN_SOAK_SHOWS is the number
of rounds, FENWYN_SOAK_OPENS how often each card opens; tests/long has more of both."""
import os
import random
import time

import pytest
from harness import geometry, mouse, places, tasks
from harness.desktop import CONFIG, HIDE_STRIP
from harness.functions import SAMPLE, Function, sample
from harness.keyboard import CODES, MODIFIER
from harness.waiting import SOON, wait_until
from test_custom_keys import button
from test_failures import INSTRUMENTED
from test_faults import LEAK_GDI, LEAK_HANDLE, LEAK_MEMORY, LEAK_USER
from test_frame import (BUTTONS_CHANGED, RELOAD, RESUME, SET_WORK_AREA, UNLOCK, WM_DISPLAYCHANGE, WM_POWERBROADCAST,
                        WM_SESSION_CHANGE, WM_SETTINGCHANGE)

LONG = "FENWYN_SOAK_SHOWS" in os.environ
SHOWS = int(os.environ.get("FENWYN_SOAK_SHOWS", 2000))
OPENS = int(os.environ.get("FENWYN_SOAK_OPENS", 5))
FIRST = 1000  # rounds in which everything may be made that is made once
# Of private memory, after more rounds than the short form has: until then the heap finds its size.
ALLOWED_KB = 256
SETTLED = 20000
LOST = 0.5  # seconds after which a key was lost
AT_A_TIME = 100  # rounds without anything in between
# In the first rounds: the heap has found its size after about two hundred rebuilds, with a few hundred KB more.
FIRST_AT_A_TIME = 5 if LONG else AT_A_TIME
KINDS = ("Mute", "PowerPlan", "Output_2", "Brightness", "Wireless", "Output")  # a card of each


class Soak:
    def __init__(self, program, seed):
        self.program, self.random = program, random.Random(seed)
        self.frame, self.strip = program.frame().hwnd, program.strip().hwnd
        self.process = tasks.process_of(program.stage / "Fenwyn.exe")
        self.changed = program.probe.register_message(BUTTONS_CHANGED)
        self.done = {"messages": 0, "keys": 0, "mouse": 0, "screen": 0, "rebuilds": 0, "lost keys": 0}
        self.interludes = [self.keys, self.keys, self.keys, self.mouse, self.screen, self.rebuild, self.other_edge]

    # What comes between the rounds by messages
    def at_rest(self):
        return not self.program.strip_shown() and mouse.hover_shown(self.program)

    def modifier_is_seen(self):
        """A key in the moment in which no window has the focus, or in which the machine was too busy for the hook, is
        lost; the next one is not. Some entries of the cards start another program, which takes the focus."""
        self.program.probe.focus(self.program.desktop.window)
        self.program.keyboard.down(MODIFIER)
        end = time.monotonic() + LOST
        while time.monotonic() < end:
            if self.program.strip_shown():
                return True
            time.sleep(0.002)
        self.program.keyboard.up(MODIFIER)
        self.done["lost keys"] += 1
        return False

    def keys(self):
        """A round with real keys, in which a card opens and perhaps steps."""
        keyboard = self.program.keyboard
        function = self.random.choice(self.program.functions)
        wait_until(self.modifier_is_seen, "the strip is shown", 3 * SOON)
        # Only the first entry of this one does not start another program.
        steps = 1 if function.name == "Output_2" else self.random.randrange(1, 4)
        for _ in range(steps):
            keyboard.press(function.key)
        keyboard.up(MODIFIER)
        wait_until(self.at_rest, "the cards are hidden")
        self.done["keys"] += 1

    def mouse(self):
        """The hover strip brings the cards, and a click opens one."""
        program = self.program
        index = self.random.randrange(len(program.functions))
        program.keyboard.move(*mouse.hover_point(program, index))
        wait_until(program.strip_shown, "the strip is shown")
        program.keyboard.click(*mouse.middle(mouse.card_picture(program, index)))
        wait_until(lambda: not program.strip_shown(), "the card is opened")
        program.keyboard.move(*mouse.away(program))
        program.probe.send(self.frame, HIDE_STRIP)
        wait_until(self.at_rest, "the cards are hidden")
        program.probe.focus(program.desktop.window)
        self.done["mouse"] += 1

    def screen(self):
        message, w_param = self.random.choice(((WM_DISPLAYCHANGE, 32), (WM_SETTINGCHANGE, SET_WORK_AREA),
                                               (WM_POWERBROADCAST, RESUME), (WM_SESSION_CHANGE, UNLOCK)))
        self.program.probe.send(self.frame, message, w_param)
        self.done["screen"] += 1

    def rebuild(self):
        self.program.probe.send(self.frame, self.random.choice((RELOAD, self.changed)))
        self.done["rebuilds"] += 1

    def other_edge(self):
        """The cards move to the other edge of the screen, where they are built anew."""
        program = self.program
        program.bottom = not program.bottom
        program.probe.set_dword("HKLM", CONFIG, "Position", int(program.bottom))
        wanted = geometry.strip(program.desktop.work_area(), len(program.functions), program.bottom)
        wait_until(lambda: program.strip().rect == wanted, "the strip has moved", 2 * SOON)
        wait_until(self.at_rest, "the cards are hidden")
        self.done["rebuilds"] += 1

    # The rounds
    def first_time(self):
        """Each thing once, each card at both edges: what is made once exists then."""
        for _ in range(2):
            self.one_of_each()
            for interlude in self.interludes:
                interlude()

    def one_of_each(self):
        self.program.probe.play_rounds(self.strip, [function.codes[0] for function in self.program.functions] + [0])

    def rounds(self, codes, at_a_time=AT_A_TIME):
        """A round for each code; 0 opens no card. Something else comes after every few of them."""
        for first in range(0, len(codes), at_a_time):
            part = codes[first:first + at_a_time]
            self.program.probe.play_rounds(self.strip, part)
            self.done["messages"] += len(part)
            self.random.choice(self.interludes)()

    def counts(self):
        """What the program holds when each card has been opened once, at the same edge, with the notebook as it is
        delivered: which entries there are, and which of them have been chosen, decides how many windows exist."""
        if self.program.bottom:
            self.other_edge()
        self.program.renew_machine()
        self.program.probe.send(self.frame, self.changed)
        self.one_of_each()
        wait_until(self.at_rest, "the cards are hidden")
        rollup = (self.process / "smaps_rollup").read_text()
        private = sum(int(line.split()[1]) for line in rollup.splitlines() if line.startswith(("Private_Dirty", "Swap:")))
        return dict(self.program.probe.handles(self.program.pid), user=self.program.probe.user_objects(),
                    threads=len(list((self.process / "task").iterdir())), windows=len(self.program.windows()),
                    private=private)


def growth(before, after):
    """What differs, or is more than it may be, by kind."""
    return {kind: after[kind] - before[kind] for kind in after
            if (after[kind] != before[kind] if kind != "private" else LONG and after[kind] > before[kind] + ALLOWED_KB)}


def soak(program, seed, shows, opens, first=FIRST):
    """What became more, after the first rounds."""
    run = Soak(program, seed)
    codes = [function.codes[0] for function in program.functions for _ in range(opens)]
    codes += [0] * (shows - len(codes))
    run.random.shuffle(codes)
    table, began = [], time.monotonic()
    run.first_time()
    for start in range(0, len(codes), first):
        run.rounds(codes[start:start + first], AT_A_TIME if start else FIRST_AT_A_TIME)
        table.append(run.counts())
        kinds = program.probe.gdi_kinds(program.pid)
        print(f"{time.monotonic() - began:6.0f} s, {start + first} rounds: {table[-1]}, {kinds}, {run.done}", flush=True)
    before = dict(table[0], private=table[min(SETTLED // first, len(table)) - 1]["private"])
    # A thread or a handle of the system's may just be ending.
    for _ in range(3):
        if not growth(before, table[-1]):
            break
        table.append(run.counts())
        print(f"once more: {table[-1]}")
    return growth(before, table[-1])


def prepare(program, *functions):
    seed = int(os.environ.get("FENWYN_TEST_SEED", random.SystemRandom().randrange(1 << 32)))
    print(f"FENWYN_TEST_SEED={seed}")
    program.write_log_settings(Level=0)
    program.log_file.unlink(missing_ok=True)
    program.configure(EnableHover=1, MouseEnterIdle=30, Programmable=1)
    program.keyboard.move(*mouse.away(program))
    program.offer(*functions)
    button(program, "Ninth", "F9", 9)  # a button that may be customised, and is not
    program.start()
    return seed


def test_nothing_grows(program):
    seed = prepare(program, *(SAMPLE if LONG else sample(*KINDS)))
    grown = soak(program, seed, SHOWS, OPENS)
    assert not grown, f"more than after the first {FIRST} rounds: {grown}"
    program.end()


# A leak is seen: one object at every so manieth round, 300 bytes at every round.
LEAKS = {LEAK_GDI: "gdi", LEAK_HANDLE: "kernel", LEAK_USER: "user", LEAK_MEMORY: "private"}


@pytest.mark.parametrize("leak", LEAKS if LONG else [LEAK_GDI])
def test_a_planted_leak_is_seen(program, leak):
    rounds = FIRST if LONG else FIRST // 20
    key = f"{INSTRUMENTED}\\InstrPlugin"
    program.probe.set_dword("HKCU", key, "SelectItem.Fault", leak)
    program.probe.set_dword("HKCU", key, "SelectItem.Every", 1 if leak == LEAK_MEMORY else rounds)
    library = places.windows_path(places.PLUGINS / "InstrPlugin.dll")
    try:
        seed = prepare(program, Function("Mute", "Mute", library, "F1", (CODES["F1"],), 2))
        run = Soak(program, seed)
        program.probe.play_rounds(run.strip, [CODES["F1"]] * 20)
        before = run.counts()
        # Without rebuilds, with which the plug-in would count anew.
        program.probe.play_rounds(run.strip, [CODES["F1"]] * rounds)
        assert LEAKS[leak] in growth(before, run.counts())
    finally:
        program.probe.delete_key("HKCU", INSTRUMENTED)
