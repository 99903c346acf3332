"""Paths."""
import os
import pathlib

ROOT = pathlib.Path(__file__).resolve().parents[3]
BUILD = ROOT / "build"
STAGE = pathlib.Path(os.environ.get("FENWYN_STAGE", BUILD / "stage"))
OUT = BUILD / "x64-release"
PROBE = pathlib.Path(os.environ.get("FENWYN_PROBE", OUT / "e2e" / "probe.exe"))
PLUGINS = pathlib.Path(os.environ.get("FENWYN_TEST_PLUGINS", OUT / "unit" / "plugins"))
# Each worker has its own prefix.
PREFIX = pathlib.Path(os.environ.get("WINEPREFIX", str(BUILD / "wineprefix-e2e")) + "-" +
                      os.environ.get("PYTEST_XDIST_WORKER", "gw0"))
WINE = ROOT / "tools" / "wine"
# One folder per test below it, replaced at each run; a failed test leaves its files there.
TESTS = pathlib.Path(os.environ.get("FENWYN_E2E_OUT", BUILD / "e2e"))


def windows_path(path):
    """The path as a program in the prefix sees it."""
    return "Z:" + str(path).replace("/", "\\")
