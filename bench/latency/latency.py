#!/usr/bin/python3
"""How long Fenwyn takes from a key to its pixels, beside a bare program that shows prepared pictures upon the same key.

    bench/run [--short] [--json FILE] [--lives N] [--rounds N] [ROW...]

The two programs take turns: each is started, shown for the first time, then used for some rounds, and ended. All times are
from the key at the X server to the complete picture on the screen, where a compositor blends it; medians and 99th
percentiles. With names of rows, only those are measured. --short: in less than a minute; it exits with 1 if the
ratio of the medians is 1.5 times its goal or more (a row that misses its goal: 1.5 times its present ratio) twice in
succession, and never because of an absolute time. The first show is not among it, because one start says too little."""
import argparse
import contextlib
import json
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "e2e"))
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

from harness import places  # noqa: E402
from harness.desktop import HOTKEY_EVENT, STRIP_CLASS, Desktop, Program  # noqa: E402
from harness.functions import SAMPLE, sample  # noqa: E402
from harness.keyboard import MODIFIER  # noqa: E402
from harness.probe import Rect  # noqa: E402
from harness.tasks import process_of, wake_ups  # noqa: E402
from harness.waiting import wait_until  # noqa: E402
from harness.xserver import PRESSED, RELEASED  # noqa: E402
from screen import Pixels  # noqa: E402

OUT = places.OUT / "bench"
REST = 0.06  # seconds between two actions, so that both programs, the X server and the compositor are idle
IDLE = 1.5  # after a start
PRESSED_CARD, ITEMS = "Zoom", 3
KEY = next(function.key for function in SAMPLE if function.name == PRESSED_CARD)
FRAME_MS = 1000 / 60
TOO_FAR = 1.5  # times the goal
# What rows that still miss their goals are held at instead, so that they do not become worse: the ratio of today.
HELD = {"show": 1.9, "first-press": 4.5, "hide": 1.6}
BUTTONS, SETTING = "SOFTWARE\\KESTOVA\\HBQ\\Buttons", "SOFTWARE\\KESTOVA\\HBQ\\UserSetting"
# Lines that are logged by design: at the start, that the user has no settings of their own; at each hide, that there is no
# utility for the Fn key.
ORDERED = ("(RegConfigAccess::Open)", "_cancelFnSticky")
UNUSED_CODE = 0x7F  # no key of the strip

# name: text, unit, goal as a multiple of what it is compared with, limit of the 99th percentile or of the value
ROWS = {
    "show": ("strip, warm: key to pixels", "ms", 1.5, FRAME_MS),
    "first-show": ("strip, first time after start", "ms", 2, FRAME_MS),
    "first-press": ("first press: enlarged card and items", "ms", 3, FRAME_MS),
    "step": ("step to the next item", "ms", 2, None),
    "hide": ("strip hides", "ms", 1.5, None),
    "wake-ups": ("wake-ups while the strip stands still", "/s", None, 0),
    "log-filtered": ("filtered log call (beside one atomic comparison)", "ns", None, 1.3),
    "log-scope": ("filtered scope (beside one atomic comparison)", "ns", None, 2),
    "log-written": ("written log line, buffered (beside a logging library)", "ns", 1.3, None),
    "log-lines": ("lines of the default log while shown and hidden 2,000 times", "", None, 0),
    "first-press-60": ("first press with 60 cards (beside 15 cards)", "ms", 1, None),
    "first-press-trace": ("first press with a full trace log (beside none)", "ms", 1.2, None),
    "memory": ("private memory, 15 cards, in use", "MB", None, 14),
    "start": ("start to ready (beside a text editor of the system)", "ms", 0.8, None),
    "hook": ("hook: the whole chain with the library (beside none)", "us", 3, None),
    "hook-idle": ("hook: the whole chain with the library (beside an idle hook)", "us", None, None),
    "hook-own": ("hook: the library's own work", "us", None, 100),
    "start-customised": ("start with 10,000 customised keys", "ms", None, 1000),
}
KEYED = ("show", "first-show", "first-press", "step", "hide")


def median(values):
    return statistics.median(values)


def p99(values):
    return sorted(values)[min(len(values) - 1, int(0.99 * len(values)))]


def running(file):
    """The process of that program."""
    return process_of(file) or sys.exit(f"{file} does not run")


def private_megabytes(process):
    text = (process / "smaps_rollup").read_text()
    return int(re.search(r"^Private_Dirty:\s+(\d+) kB", text, re.M)[1]) / 1024


class Side:
    """One of two programs, or of two configurations, that take turns."""

    def __init__(self, who, areas):
        self.who, self.areas = who, areas
        self.learnt = {}  # what is to be seen -> its pixels


class Bench:
    def __init__(self, lives, rounds):
        self.lives, self.rounds = lives, rounds
        self.desktop = Desktop()
        self.pixels = Pixels(self.desktop.screen.display)
        self.server = self.desktop.keyboard._server
        self.folder = places.BUILD / "latency"
        self.values = {}  # row -> {"ours": [...], "theirs": [...]}

    def close(self):
        self.pixels.close()
        self.desktop.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def note(self, row, who, value):
        self.values.setdefault(row, {}).setdefault(who, []).append(value)

    # Programs
    @contextlib.contextmanager
    def fenwyn(self, functions=SAMPLE, trace=False, prepare=lambda program: None, **settings):
        """Yields the program, at rest, and the milliseconds until it was ready."""
        self.desktop.reset()
        self.desktop.take_focus()
        program = Program(self.desktop, self.folder)
        try:
            program.configure(**settings)
            program.offer(*functions)
            # Otherwise as a user has it: errors only.
            program.write_log_settings(LogFile=places.windows_path(program.log_file), **({"Level": 3} if trace else {}))
            prepare(program)
            ready = float(self.run_tool("latency/LatencyStart.exe", STRIP_CLASS, program.stage / "Fenwyn.exe"))
            wait_until(lambda: program.frame() and program.strip(), "Fenwyn runs", 20)
            time.sleep(IDLE)
            yield program, ready
        finally:
            program.cleanup()

    @contextlib.contextmanager
    def bare(self, areas):
        self.desktop.reset()
        self.desktop.take_focus()
        words = [places.windows_path(places.STAGE / "CardArt.dll"), *areas["strip"], *areas["card"]]
        process = subprocess.Popen([str(places.WINE), str(OUT / "latency/LatencyBare.exe"), *map(str, words)],
                                   env=self.desktop.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        try:
            wait_until(lambda: len(self.desktop.probe.windows("LatencyBare")) == 2, "the bare program runs")
            time.sleep(IDLE)
            yield
        finally:
            process.kill()
            process.wait()
            wait_until(lambda: not self.desktop.probe.windows("LatencyBare"), "the bare program has ended")

    def run_tool(self, tool, *words):
        places.BUILD.mkdir(exist_ok=True)
        answer = self.folder.with_suffix(".txt")  # not a pipe, which a program that is left running would keep open
        with open(answer, "wb") as file:
            subprocess.run([str(places.WINE), str(OUT / tool), *map(str, words)],
                           stdout=file, stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL, check=True, timeout=300,
                           env=self.desktop.environment)
        text = answer.read_text()
        answer.unlink()
        return text

    # Keys and pixels
    def act(self, side, what, area, key, action, row=None):
        """One action. At its first time the picture is learnt, later its time is noted."""
        rows = self.pixels.rows(side.areas[area])
        if what not in side.learnt:
            before = self.pixels.of(rows)
            self.send(key, action)
            side.learnt[what] = self.pixels.learn(rows, before)
            return
        begin = self.send(key, action)
        seen = self.pixels.wait(rows, side.learnt[what])
        if seen is None:
            self.desktop.screen.save(places.BUILD / "latency-screen.png")
            raise SystemExit(f"{side.who}: '{what}' did not come; build/latency-screen.png shows what did")
        if row:
            self.note(row, side.who, 1000 * (seen - begin))
        time.sleep(REST)

    def send(self, key, action):
        """When it was sent: as soon as a window has the focus, because the window manager has it for moments while
        windows open and close, and a key would be lost then."""
        for _ in range(2000):
            begin = time.monotonic()
            if self.server.key_if_heard(key, action):
                return begin
            time.sleep(0.002)
        raise SystemExit("no window has the focus")

    def tap_up(self, key):
        self.send(key, RELEASED)
        time.sleep(REST)

    def show_and_hide(self, side, first):
        self.act(side, "strip", "strip", MODIFIER, PRESSED, "first-show" if first else "show")
        self.act(side, "no strip", "strip", MODIFIER, RELEASED, None if first else "hide")

    def open_and_close(self, side, row="first-press", step=None):
        self.act(side, "strip", "strip", MODIFIER, PRESSED)
        self.act(side, "item 0", "card", KEY, PRESSED, row)
        self.tap_up(KEY)
        for item in range(1, ITEMS + 1) if step else ():  # round to the first
            self.act(side, f"item {item % ITEMS}", "card", KEY, PRESSED, step)
            self.tap_up(KEY)
        self.act(side, "no card", "card", MODIFIER, RELEASED)

    def areas_of(self, program):
        """Where the strip is, and an enlarged card with its items."""
        self.send(MODIFIER, PRESSED)
        wait_until(program.shown_layered, "the strip is shown")
        strip = program.shown_layered()[0].rect
        time.sleep(0.3)
        self.send(KEY, PRESSED)
        time.sleep(1)
        rects = [window.rect for window in program.shown_layered() + program.shown_dialogs()]
        card = Rect(min(r.left for r in rects), min(r.top for r in rects), max(r.right for r in rects),
                    max(r.bottom for r in rects))
        self.send(KEY, RELEASED)
        self.send(MODIFIER, RELEASED)
        time.sleep(0.3)
        return {"strip": strip, "card": card}

    # Rows
    def measure_keys(self):
        with self.fenwyn() as (program, _):
            areas = self.areas_of(program)
        ours, theirs = Side("ours", areas), Side("theirs", areas)
        for life in range(self.lives + 1):  # the first one learns the pictures
            with self.fenwyn() as (program, _):
                self.live(ours, life)
                if life:
                    self.note("memory", "ours", private_megabytes(running(program.stage / "Fenwyn.exe")))
                    self.measure_wake_ups(program)
            with self.bare(areas):
                self.live(theirs, life)
                if life:
                    self.note("memory", "theirs", private_megabytes(running("LatencyBare.exe")))

    def live(self, side, life):
        if life == 0:
            self.show_and_hide(side, False)
            self.open_and_close(side, step="step")
            return
        self.show_and_hide(side, True)
        self.open_and_close(side, None)  # what is slow once; the row is about every day
        for _ in range(self.rounds):
            self.show_and_hide(side, False)
            self.open_and_close(side, step="step")

    def measure_wake_ups(self, program):
        seconds = 3
        self.send(MODIFIER, PRESSED)
        time.sleep(1)
        process = running(program.stage / "Fenwyn.exe")
        before = sum(wake_ups(process).values())
        time.sleep(seconds)
        self.note("wake-ups", "ours", (sum(wake_ups(process).values()) - before) / seconds)
        self.tap_up(MODIFIER)

    def measure_log(self):
        found = {name: float(value) for name, value in
                 (line.split() for line in self.run_tool("latency/LatencyLog.exe").splitlines())}
        for row in ("filtered", "scope"):
            self.note(f"log-{row}", "ours", found[row] - found["loop"])
            self.note(f"log-{row}", "theirs", found["comparison"] - found["loop"])
        self.note("log-written", "ours", found["written"])
        if "written-peer" in found:
            self.note("log-written", "theirs", found["written-peer"])

    def measure_log_lines(self, times):
        with self.fenwyn() as (program, _):
            strip = program.strip().hwnd
            for _ in range(times):
                for lifted in (0, 1):
                    self.desktop.probe.send(strip, HOTKEY_EVENT, 0, lifted)
        text = program.log_file.read_text() if program.log_file.exists() else ""
        self.note("log-lines", "ours", sum(1 for line in text.splitlines() if not any(part in line for part in ORDERED)))

    def measure_first_presses(self, row, ours):
        """Fenwyn as the argument says, beside Fenwyn with fifteen cards and no log."""
        sides = {}
        for _ in range(3):
            for who, how in (("theirs", {}), ("ours", ours)):
                with self.fenwyn(**how) as (program, _ready):
                    if who not in sides:
                        sides[who] = Side(who, self.areas_of(program))
                    self.open_and_close(sides[who], None)
                    for _ in range(max(self.rounds // 2, 3)):
                        self.open_and_close(sides[who], row)

    def measure_start(self, times):
        for _ in range(times):
            with self.fenwyn() as (_, ready):
                self.note("start", "ours", ready)
            editor = self.run_tool("latency/LatencyStart.exe", "/end", "Notepad", "C:\\windows\\system32\\notepad.exe")
            self.note("start", "theirs", float(editor))

    def measure_hook(self):
        words = self.run_tool("hooktiming/HookTiming.exe", places.windows_path(places.STAGE / "ZelMain.dll"))
        found = {name.strip(): (float(middle), float(worst)) for name, middle, worst in
                 re.findall(r"^(.{20}).*median +([\d.]+) us +p99 +([\d.]+) us", words, re.M)}
        for row, beside in ("hook", "chain, bare"), ("hook-idle", "chain, idle hook"):
            self.note(row, "ours", found["chain, ZelMain.dll"][0])
            self.note(row, "theirs", found[beside][0])
        self.note("hook-own", "ours", found["own work"][1])

    def measure_customised(self, count=10000):
        def prepare(program):
            for number in range(1, count + 1):
                button, choice = f"{BUTTONS}\\B{number}", f"{SETTING}\\{number}"
                for name, value in (("IsQRDControl", 1), ("MakeFunction", number), ("MakeValue", UNUSED_CODE)):
                    program.probe.set_dword("HKLM", button, name, value)
                for name in ("OPT1", "OPT2"):
                    program.probe.set_text("HKLM", choice, name, "C:\\program.exe")
        with self.fenwyn(prepare=prepare, Programmable=1) as (_, ready):
            self.note("start-customised", "ours", ready)


def sixty():
    """Sixty cards; the one that is opened is among them once."""
    others = [function for function in SAMPLE if function.name != PRESSED_CARD]
    return (sample(PRESSED_CARD) + 5 * others)[:60]


def judged(row, values):
    """What the table says of a row."""
    text, unit, ratio_goal, limit = ROWS[row]
    ours, theirs = values["ours"], values.get("theirs")
    result = {"text": text, "unit": unit, "median": median(ours), "p99": p99(ours), "count": len(ours)}
    met = []
    if theirs:
        result.update(theirs=median(theirs), theirs_p99=p99(theirs), ratio=median(ours) / median(theirs))
    if ratio_goal and theirs:
        result["ratio_goal"] = ratio_goal
        met.append(result["ratio"] <= ratio_goal)
    if limit is not None:
        result["limit"] = limit
        met.append((result["p99"] if row in KEYED else result["median"]) <= limit)
    result["met"] = all(met)
    return result


def figure(value):
    return "" if value is None else f"{value:.0f}" if value >= 100 else f"{value:.3g}"


def print_table(results):
    print("| | median | p99 | beside it | ratio | goal | met |\n|---|---|---|---|---|---|---|")
    for row in results.values():
        goal = [f"<= {row['ratio_goal']}x"] if "ratio_goal" in row else []
        goal += [f"<= {figure(row['limit'])} {row['unit']}"] if "limit" in row else []
        print(f"| {row['text']} | {figure(row['median'])} {row['unit']} | {figure(row['p99'])} | "
              f"{figure(row.get('theirs'))} | {figure(row.get('ratio'))} | {', '.join(goal)} | "
              f"{'' if not goal else 'yes' if row['met'] else 'no'} |")


def too_slow(results):
    def limit(name, row):
        return TOO_FAR * HELD.get(name, row["ratio_goal"])
    return [f"{row['text']}: {row['ratio']:.2f} times, at most {limit(name, row):.2f} are allowed"
            for name, row in results.items() if "ratio_goal" in row and row["ratio"] >= limit(name, row)]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--short", action="store_true")
    parser.add_argument("--json", type=pathlib.Path)
    parser.add_argument("--lives", type=int, default=8)
    parser.add_argument("--rounds", type=int, default=15)
    parser.add_argument("rows", nargs="*", metavar="ROW")
    words = parser.parse_args()
    if words.short:
        words.lives, words.rounds, words.rows = 1, 6, [row for row in KEYED if row != "first-show"]
    wanted = set(words.rows or ROWS)
    bench = Bench(words.lives, words.rounds)
    try:
        steps = [
            ({*KEYED, "memory", "wake-ups"}, bench.measure_keys),
            ({"log-filtered", "log-scope", "log-written"}, bench.measure_log),
            ({"log-lines"}, lambda: bench.measure_log_lines(2000)),
            ({"first-press-60"}, lambda: bench.measure_first_presses("first-press-60", {"functions": sixty()})),
            ({"first-press-trace"}, lambda: bench.measure_first_presses("first-press-trace", {"trace": True})),
            ({"start"}, lambda: bench.measure_start(2 * words.lives)),
            ({"hook", "hook-idle", "hook-own"}, bench.measure_hook),
            ({"start-customised"}, bench.measure_customised),
        ]
        for rows, measure in steps:
            if rows & wanted:
                measure()
    finally:
        bench.close()
    results = {row: judged(row, bench.values[row]) for row in ROWS if row in bench.values and row in wanted}
    print_table(results)
    print(f"\nload {os.getloadavg()[0]:.1f} on {os.cpu_count()} cores")
    if words.json:
        words.json.write_text(json.dumps({"results": results, "values": bench.values}, indent=1))
    slow = too_slow(results) if words.short else []
    print("\n".join(slow))
    return 1 if slow else 0


if __name__ == "__main__":
    sys.exit(main() and "--short" in sys.argv and main())
