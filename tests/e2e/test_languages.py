"""The language of texts: a setting overrides the system's, for the function list that is written and for windows."""
import contextlib
import os
import signal
import subprocess

import pytest
from harness import places
from harness.desktop import LIST, PRODUCT
from harness.waiting import wait_until

SETUP_CLASS = "_DCWNDCLS_CONFIG_"


@contextlib.contextmanager
def started(program, name, *arguments):
    process = subprocess.Popen([str(places.WINE), str(program.stage / name), *arguments],
                               env=program.desktop.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, start_new_session=True)
    try:
        yield process
    finally:
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)
        process.wait(10)
        wait_until(lambda: not program.probe.processes(name), "it is gone")


def setup_titles(program):
    return [window.title for window in program.probe.windows() if window.cls == SETUP_CLASS]


@pytest.mark.parametrize(("language", "caption", "title"), [
    ("fr", "Alimentation", "Paramètres d’affichage"),
    ("ja", "電源プラン", "ディスプレイの詳細設定"),
    ("cy", "Power plan", "Display settings"),
], ids=["fr", "ja", "another"])
def test_the_setting_overrides_the_language_of_the_system(program, language, caption, title):
    program.probe.set_text("HKCU", PRODUCT, "Language", language)
    with started(program, "NotebookSim.exe", "/register") as process:
        assert process.wait(60) == 0
    assert program.probe.get_value("HKLM", f"{LIST}\\PowerPlan", "Caption").decode("utf-16-le") == caption + "\0"
    with started(program, "OutputSetup.exe", "\\Config"):
        wait_until(lambda: setup_titles(program) == [title], lambda: f"its title: {setup_titles(program)}", 20)
