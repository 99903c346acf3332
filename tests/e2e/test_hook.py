"""The keyboard hook: it comes back when the system has dropped it, and the program sleeps while no key is used."""
import time

from harness.keyboard import MODIFIER
from harness.tasks import process_of, wake_ups
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


def test_nothing_wakes_the_program_while_no_key_is_used(program):
    program.offer("Mute", "Zoom")
    program.start()
    program.hold()
    program.let_go()
    program.expect_strip(shown=False)
    process = process_of(program.stage / "Fenwyn.exe")
    assert process
    quiet = 1.5  # seconds

    def sleeps():
        before = sum(wake_ups(process).values())
        time.sleep(quiet)
        return sum(wake_ups(process).values()) - before <= 3
    wait_until(sleeps, "no thread wakes up", 20)
