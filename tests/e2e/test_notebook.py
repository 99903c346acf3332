"""The simulated notebook: its window shows what has a card and what changed, and it speaks the system's language."""
import contextlib
import os
import signal
import subprocess

import pytest
from harness import places
from harness.desktop import LIST
from harness.waiting import wait_until

NOTEBOOK_CLASS = "KestovaSimulatedNotebook"
MARK = (0x0A, 0x5F, 0xC4)
ENGLISH, GERMAN = "en_US.UTF-8", "de_DE.UTF-8"


def start(program, *arguments, language=ENGLISH):
    return subprocess.Popen([str(places.WINE), str(program.stage / "NotebookSim.exe"), *arguments],
                            env=dict(program.desktop.environment, LC_ALL=language), stdin=subprocess.DEVNULL,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)


def command(program, *arguments, language=ENGLISH):
    assert start(program, *arguments, language=language).wait(30) == 0, arguments


def window(program):
    return next((w for w in program.probe.windows(NOTEBOOK_CLASS) if w.visible), None)


@contextlib.contextmanager
def notebook(program, language=ENGLISH):
    process = start(program, language=language)
    try:
        wait_until(lambda: window(program), "the notebook's window", 20)
        yield
    finally:
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)
        process.wait(10)
        wait_until(lambda: not program.probe.processes("NotebookSim.exe"), "it is gone")


def marks(program):
    rect = window(program).rect
    return program.desktop.screen.picture(rect).share_of(rect, lambda rgb: rgb == MARK) > 0


def test_no_mark_stays_after_a_reset(program):
    program.offer("Mute", "Zoom")
    with notebook(program):
        assert not marks(program)
        command(program, "/set", "Mute", "Item", "0")
        wait_until(lambda: marks(program), "the change is marked")
        command(program, "/reset")
        wait_until(lambda: not marks(program), "a new machine has no marks")


def test_its_window_has_the_rows_of_the_list(program):
    program.offer("Mute", "Zoom")
    with notebook(program):
        low = window(program).rect
        program.offer("Mute", "Zoom", "Lock", "Touchpad", "Sleep", "Hibernate")
        wait_until(lambda: window(program).size[1] == low.bottom - low.top + 2 * 34,
                   lambda: f"two rows more: {window(program)}")


@pytest.mark.parametrize(("language", "caption", "plan", "title"), [
    (ENGLISH, "Power plan", "Balanced", "Simulated notebook"),
    (GERMAN, "Energieplan", "Ausbalanciert", "Simuliertes Notebook"),
])
def test_captions_plans_and_window_are_in_the_systems_language(program, monkeypatch, language, caption, plan, title):
    command(program, "/register", language=language)
    value = program.probe.get_value("HKLM", f"{LIST}\\PowerPlan", "Caption")
    assert value.decode("utf-16-le") == caption + "\0"
    program.offer("PowerPlan")
    monkeypatch.setitem(program.desktop.environment, "LC_ALL", language)
    program.start()
    program.hold()
    program.press("PowerPlan")
    wait_until(lambda: f"1, {plan}" in [call.arguments for call in program.calls("PowerPlan", "GetCustomItemText")],
               lambda: f"the plan {plan}: {program.calls('PowerPlan', 'GetCustomItemText')}")
    program.let_go()
    with notebook(program, language):
        assert window(program).title == title
