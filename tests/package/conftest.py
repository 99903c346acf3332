"""What the tests of the packages share: the packages of this build, and a Windows to install them on."""
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
def packages():
    """The folder of the packages that ./package makes of the stage folders."""
    subprocess.run([PACKAGE, "--no-build"], check=True, timeout=300)
    return places.BUILD / "package"


@pytest.fixture(scope="session")
def desktop():
    prefix = places.BUILD / "wineprefix-package"
    shutil.rmtree(prefix, ignore_errors=True)  # what an interrupted run installed
    made = Desktop(prefix=prefix)
    yield made
    made.close()
