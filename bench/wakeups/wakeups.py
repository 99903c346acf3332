#!/usr/bin/python3
"""How often the threads of Fenwyn wake up while nobody uses it, and while somebody types in another program.

    tools/build x64-release && /usr/bin/python3 bench/wakeups/wakeups.py [SECONDS] [ZelMain.dll]

With a second argument, Fenwyn runs with that hotkey library in place of its own."""
import pathlib
import shutil
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "e2e"))

from harness.desktop import Desktop, Program  # noqa: E402
from harness.places import BUILD  # noqa: E402
from harness.tasks import process_of, wake_ups  # noqa: E402

KEYS_PER_SECOND = 4


def measure(name, program, seconds, act):
    process = process_of(program.stage / "Fenwyn.exe")
    if process is None:
        raise SystemExit("Fenwyn does not run")
    before, begin = wake_ups(process), time.monotonic()
    act(begin + seconds)
    after, passed = wake_ups(process), time.monotonic() - begin
    woken = sorted((after[thread] - before.get(thread, 0) for thread in after), reverse=True)
    print(f"{name:8}  {sum(woken):5} wake-ups in {passed:.0f} s, {len(after)} threads, {sum(1 for count in woken if count)} "
          f"of them woken")


def type_until(program, end):
    while time.monotonic() < end:
        program.keyboard.press("b")
        time.sleep(1 / KEYS_PER_SECOND)


def main():
    seconds = float(sys.argv[1]) if len(sys.argv) > 1 else 60
    desktop = Desktop()
    folder = BUILD / "wakeups"
    program = None
    try:
        desktop.reset()
        desktop.take_focus()
        program = Program(desktop, folder)
        if len(sys.argv) > 2:
            library = program.stage / "ZelMain.dll"
            library.unlink()
            shutil.copy(sys.argv[2], library)
        program.offer("Mute", "Zoom")
        program.start()
        time.sleep(5)  # what follows the start
        measure("unused", program, seconds, lambda end: time.sleep(max(end - time.monotonic(), 0)))
        measure("typing", program, seconds, lambda end: type_until(program, end))
    finally:
        if program:
            program.cleanup()
        desktop.close()
        shutil.rmtree(folder, ignore_errors=True)


main()
