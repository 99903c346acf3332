"""What the tests of the packages share: the packages of this build, and a Windows to install them on."""
import os
import pathlib
import shutil
import subprocess
import sys

import pytest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "e2e"))

from harness import places  # noqa: E402
from harness.desktop import Desktop  # noqa: E402

PACKAGE = places.ROOT / "package"


@pytest.fixture(scope="session")
def packagings():
    """The folders of the packages that ./package makes of the stage folders, made twice at the same time."""
    folders = [places.BUILD / "package", places.BUILD / "package-again"]
    made = [subprocess.Popen([PACKAGE, "--no-build"], env=dict(os.environ, FENWYN_PACKAGE_OUT=str(folder)))
            for folder in folders]
    assert [process.wait(300) for process in made] == [0, 0]
    return folders


@pytest.fixture(scope="session")
def packages(packagings):
    return packagings[0]


@pytest.fixture(scope="session")
def desktop():
    prefix = places.BUILD / "wineprefix-package"
    shutil.rmtree(prefix, ignore_errors=True)  # what an interrupted run installed
    made = Desktop(prefix=prefix)
    yield made
    made.close()
