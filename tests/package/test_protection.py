"""What protects the shipped files, of both flavours, from being misused; the installer has what its generator gives."""
import sys

import pytest
from harness import places

sys.path.insert(0, str(places.ROOT / "tests" / "lint"))

from pe_protection import EXEMPT, faults  # noqa: E402

STAGES = {64: places.STAGE, 32: places.BUILD / "x86-release" / "stage"}


@pytest.mark.parametrize("bits", STAGES)
def test_every_program_and_library_is_linked_soundly(bits):
    files = [path for path in STAGES[bits].rglob("*") if path.suffix in (".exe", ".dll")]
    assert {"Fenwyn.exe", "ZelMain.dll", "CardArt.dll"} <= {path.name for path in files}
    wrong = {path.name: faults(path) for path in files if set(faults(path)) != EXEMPT.get(path.name, set())}
    assert wrong == {}


def test_the_installer_has_what_its_generator_gives(packages):
    # Its stub was built with makensis: linked by Debian, with its time, without relocations and stack protector.
    installer, = packages.glob("*Setup.exe")
    assert set(faults(installer)) == {"time of linking", "no relocations", "no stack protector"}
