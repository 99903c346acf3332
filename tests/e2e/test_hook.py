"""The keyboard hook: it comes back when the system has dropped it, and the program sleeps while no key is used."""
import pathlib
import time

from harness.keyboard import MODIFIER
from harness.waiting import wait_until

LOST = "The keyboard hook was lost. It has been installed anew."


def reported(program):
    return sum(1 for line in program.log() if line.text.startswith("Get hotkey code:0x0, modifier:0x0"))


def works_again(program):
    """Presses the modifier until the library reports it; returns how long that took."""
    before, begin = reported(program), time.monotonic()

    def pressed():
        program.keyboard.press(MODIFIER)
        return reported(program) > before
    wait_until(pressed, "the modifier is reported")
    return time.monotonic() - begin


def test_keys_work_again_within_two_seconds_after_the_hook_was_taken_away(program):
    program.offer("Mute", "Zoom")
    program.machine("Mute", Item=0)
    program.start()
    assert works_again(program) < 2
    assert program.probe.take_hooks() >= 1
    assert works_again(program) < 2
    wait_until(lambda: LOST in program.log_texts(), "the log tells of it")
    assert program.log_texts().count(LOST) == 1
    program.hold()
    program.press("Mute")
    program.let_go()
    wait_until(lambda: program.chosen("Mute") == ["1"], "cards work as before")


def switches(process_id):
    """How often the threads of a process waited for something that then happened."""
    total = 0
    for status in pathlib.Path(f"/proc/{process_id}/task").glob("*/status"):
        for line in status.read_text().splitlines():
            if line.startswith("voluntary_ctxt_switches:"):
                total += int(line.split()[1])
    return total


def linux_process(program):
    file = str(program.stage / "Fenwyn.exe")
    for command in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
        try:
            text = command.read_bytes().decode(errors="replace").replace("\\", "/")
        except OSError:
            continue
        if file in text and "python" not in text:
            return int(command.parent.name)
    return 0


def test_nothing_wakes_the_program_while_no_key_is_used(program):
    program.offer("Mute", "Zoom")
    program.start()
    program.hold()
    program.let_go()
    program.expect_strip(shown=False)
    process_id = linux_process(program)
    assert process_id
    quiet = 1.5  # seconds

    def sleeps():
        before = switches(process_id)
        time.sleep(quiet)
        return switches(process_id) - before <= 3
    wait_until(sleeps, "no thread wakes up", 20)
