"""Twenty thousand inputs that make no sense, and random messages to every window."""
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = ROOT / "build/x64-release/unit/fuzz_test.exe"


def test_inputs_for_the_code():
    environment = {"FENWYN_FUZZ_INPUTS": "20000", **os.environ}
    environment["WINEPREFIX"] = str(ROOT / "build/wineprefix-fuzz")
    subprocess.run([str(ROOT / "tools/prefix")], env=environment, check=True, timeout=120)
    screen = subprocess.run([str(ROOT / "tools/virtual-screen"), "start"], capture_output=True, text=True, check=True,
                            timeout=60).stdout
    values = dict(line.split("=", 1) for line in screen.splitlines())
    environment["DISPLAY"] = values["DISPLAY"]
    try:
        done = subprocess.run([str(ROOT / "tools/wine"), str(PROGRAM)], env=environment, cwd=PROGRAM.parent,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=3600)
    finally:
        subprocess.run([str(ROOT / "tools/wine-end")], env=environment, check=False, timeout=60)
        subprocess.run([str(ROOT / "tools/virtual-screen"), "stop", *values["SCREEN_PIDS"].strip("'").split()], check=False,
                       timeout=60)
    assert done.returncode == 0, done.stdout.decode(errors="replace")[-8000:]


def test_the_shipped_program():
    environment = {"FENWYN_LONG": "1", "FENWYN_FUZZ_MESSAGES": "80000", "FENWYN_FUZZ_STARTS": "60", **os.environ}
    done = subprocess.run([sys.executable, "-m", "pytest", "-q", "-s", "-p", "no:cacheprovider", "tests/e2e/test_fuzz.py"],
                          cwd=ROOT, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          timeout=3600)
    assert done.returncode == 0, done.stdout[-8000:]
