"""Builds that are not made for every change: for debugging, and without the precompiled headers, which hide what a
source forgets to include."""
import pathlib
import shutil
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]


def test_what_ships_compiles_for_debugging():
    done = subprocess.run([ROOT / "tools" / "presets", "x64-debug"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True)
    assert done.returncode == 0, done.stdout[-8000:]


def test_what_ships_compiles_without_precompiled_headers():
    folder = ROOT / "build" / "long" / "alone"
    shutil.rmtree(folder, ignore_errors=True)
    for command in (["cmake", "--preset", "x86-release", "-B", folder, "-DFENWYN_PRECOMPILE=OFF", "-DFENWYN_TESTS=OFF"],
                    ["cmake", "--build", folder, "--target", "stage"]):
        done = subprocess.run(command, cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        assert done.returncode == 0, done.stdout[-8000:]
    shutil.rmtree(folder)
