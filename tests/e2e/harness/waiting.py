"""Waiting for conditions with a deadline."""
import os
import time

SOON = 10.0  # seconds; a condition normally holds within milliseconds, this is for a slow machine
PAUSE = 0.02
FIRST_PAUSE = 0.002  # most events are already on their way


def wait_until(condition, what, deadline=SOON):
    """Polls until condition() is true and returns its value. Fails with `what` after the deadline."""
    end = time.monotonic() + deadline
    pause = FIRST_PAUSE
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"not within {deadline:g} s: {what() if callable(what) else what}")
        time.sleep(pause)
        pause = min(1.5 * pause, PAUSE)


def stays(condition, what, seconds=0.4):
    """The condition holds now and for a while: this tests that an effect is absent."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        assert condition(), what() if callable(what) else what
        time.sleep(PAUSE)


def allowed(seconds):
    """The time limit on this machine, under its current load, for something that takes this long on a quiet one."""
    return seconds * max(1.0, 1 + os.getloadavg()[0] / (os.cpu_count() or 1))
