"""A whole packaging with a certificate: every program and library that a user gets is signed, and the signed installer works."""
import os
import pathlib
import subprocess
import sys
import zipfile

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests" / "e2e"), str(ROOT / "tests" / "package")]

from harness import places  # noqa: E402
from harness.desktop import Desktop  # noqa: E402
from harness.waiting import wait_until  # noqa: E402
from signing import Certificate  # noqa: E402
from windows import Windows  # noqa: E402

FOLDER = "C:\\Fenwyn"


@pytest.fixture
def windows(tmp_path):
    desktop = Desktop(prefix=tmp_path / "prefix")
    yield Windows(desktop)
    desktop.close()


def programs(folder):
    """{name: file}"""
    return {path.relative_to(folder).as_posix(): path for path in folder.rglob("*") if path.suffix in (".exe", ".dll")}


def test_everything_that_a_signed_packaging_ships_is_signed(windows, tmp_path):
    certificate = Certificate(tmp_path)
    out = tmp_path / "package"
    unsigned = programs(places.STAGE)
    subprocess.run([ROOT / "package", "--no-build"], check=True,
                   env={**os.environ, **certificate.environment, "FENWYN_PACKAGE_OUT": str(out)})
    assert not any(certificate.signed(file) for file in unsigned.values()), "the stage folder stays as it was built"
    setup, = out.glob("*Setup.exe")
    assert certificate.signed(setup)
    for archive in out.glob("*.zip"):
        with zipfile.ZipFile(archive) as held:
            held.extractall(tmp_path / archive.stem)
        inside = programs(tmp_path / archive.stem)
        assert "Fenwyn/Fenwyn.exe" in inside
        assert [name for name, file in inside.items() if not certificate.signed(file)] == []
    assert windows.run(places.windows_path(setup), "/S", "/CurrentUser", f"/D={FOLDER}") == 0
    installed = programs(windows.path(FOLDER))
    assert {"Fenwyn.exe", "Uninstall.exe"} <= installed.keys()
    assert [name for name, file in installed.items() if not certificate.signed(file)] == []
    assert windows.run(f"{FOLDER}\\Uninstall.exe", "/S", "/CurrentUser") == 0
    wait_until(lambda: not windows.path(FOLDER).exists(), "it is uninstalled", 30)
