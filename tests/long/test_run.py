"""What ./run promises: pictures of every state, and a plug-in of your own with its card."""
import os
import pathlib
import re
import signal
import subprocess
import time

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
MINIMAL = ROOT / "build/x64-release/plugins/sdk/MinimalPlugin.dll"


def wait_for(condition, what, seconds):
    deadline = time.monotonic() + seconds
    while not condition():
        assert time.monotonic() < deadline, what()
        time.sleep(0.1)


def test_screenshots_show_something_in_every_state(tmp_path):
    environment = {name: value for name, value in os.environ.items() if name not in ("WINEPREFIX", "DISPLAY")}
    done = subprocess.run([str(ROOT / "run"), "--screenshot", str(tmp_path)], env=environment, capture_output=True,
                          text=True, timeout=600)
    assert done.returncode == 0, done.stdout + done.stderr
    names = {picture.stem for picture in tmp_path.glob("*.png")}
    assert {"1-hidden", "2-strip", "3-card", "6-hover-strip", "9-flash", "10-custom-key"} <= names
    assert sum(1 for name in names if name.startswith("card-")) == 16


@pytest.fixture
def running(tmp_path):
    """./run with options, in its own prefix; yields a function that starts it and returns (process, its output)."""
    environment = dict(os.environ, WINEPREFIX=str(tmp_path / "prefix"))
    environment.pop("DISPLAY", None)
    output = tmp_path / "run.txt"
    started = []

    def start(*options):
        with output.open("wb") as file:
            started.append(subprocess.Popen([str(ROOT / "run"), "--virtual", *options], env=environment, stdout=file,
                                            stderr=file, stdin=subprocess.DEVNULL, start_new_session=True))
        wait_for(lambda: "ends the program" in output.read_text() or started[-1].poll() is not None,
                 lambda: f"it did not come up: {output.read_text()}", 300)  # it may have to build first
        return started[-1], output.read_text()

    yield start
    for process in started:
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGINT)
            process.wait(60)


def registry(tmp_path, key, value):
    done = subprocess.run([str(ROOT / "tools/wine"), "reg", "query", "HKLM\\SOFTWARE\\KESTOVA\\Fenwyn\\HotKey" + key, "/v",
                           value], env=dict(os.environ, WINEPREFIX=str(tmp_path / "prefix")), capture_output=True,
                          text=True, timeout=60)
    found = re.search(r"REG_\w+\s+(.*)", done.stdout)
    return found[1].strip() if found else None


def test_a_plugin_of_ones_own_is_registered_and_stays_until_the_sample_comes_back(running, tmp_path):
    process, said = running("--plugin", str(MINIMAL), "Touchpad")
    assert "The plug-in keeps the contract." in said
    assert registry(tmp_path, "\\Touchpad", "FuncDll").endswith("MinimalPlugin.dll")
    os.killpg(process.pid, signal.SIGINT)
    process.wait(60)

    process, said = running()
    assert "./run --sample" in said
    assert registry(tmp_path, "\\Touchpad", "FuncDll").endswith("MinimalPlugin.dll")
    os.killpg(process.pid, signal.SIGINT)
    process.wait(60)

    running("--sample")
    assert registry(tmp_path, "\\Touchpad", "FuncDll").endswith("SimTouchpad.dll")


def change(tmp_path, key, value, kind, data):
    subprocess.run([str(ROOT / "tools/wine"), "reg", "add", "HKLM\\SOFTWARE\\KESTOVA\\Fenwyn\\HotKey" + key, "/v", value, "/t",
                    kind, "/d", data, "/f"], env=dict(os.environ, WINEPREFIX=str(tmp_path / "prefix")), check=True,
                   capture_output=True, timeout=60)


def stop(process):
    os.killpg(process.pid, signal.SIGINT)
    process.wait(60)


def test_a_plugin_of_ones_own_changes_nothing_else_in_a_changed_list(running, tmp_path):
    stop(running()[0])
    change(tmp_path, "\\Mute", "Code", "REG_DWORD", "0x3C")
    change(tmp_path, "", "FuncList", "REG_SZ", "Mute;")

    process, said = running("--plugin", str(MINIMAL), "Touchpat")
    assert process.wait(60) != 0
    assert 'There is no function "Touchpat"' in said
    assert registry(tmp_path, "", "FuncList") == "Mute;"

    # Its key is there and the list lacks it; the other one has no key either.
    for function, names in (("Touchpad", "Mute;Touchpad;"), ("Output", "Mute;Touchpad;Output;")):
        stop(running("--plugin", str(MINIMAL), function)[0])
        assert registry(tmp_path, "", "FuncList") == names
        assert registry(tmp_path, "\\" + function, "FuncDll").endswith("MinimalPlugin.dll")
        assert registry(tmp_path, "\\" + function, "Code")
    assert registry(tmp_path, "\\Mute", "Code") == "0x3c"


def test_the_lines_that_a_virtual_screen_prints_work_as_they_stand(running, tmp_path):
    process, said = running()
    lines = [line.split("#")[0].strip() for line in said.splitlines() if line.startswith("    ") and "#" in line or
             "export DISPLAY" in line]
    assert [line.split()[0] for line in lines] == ["export", "xdotool", "xdotool", "xdotool", "tools/screenshot", "xdotool"]
    script = "\nsleep 1\n".join(lines).replace("card.png", str(tmp_path / "card.png"))
    subprocess.run(["sh", "-e", "-c", script], cwd=ROOT, check=True, timeout=60)
    assert (tmp_path / "card.png").stat().st_size > 1000
