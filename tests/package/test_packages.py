"""The packages as files: what they contain, their sums, manifests and signatures."""
import hashlib
import json
import re
import struct
import subprocess
import zipfile

import pytest
from harness import places
from signing import Certificate

CONTENTS = places.BUILD / "package-contents"
STAGES = {64: places.STAGE, 32: places.BUILD / "x86-release" / "stage"}
MACHINES = {64: 0x8664, 32: 0x14C}


def sha256(data):
    return hashlib.sha256(data).hexdigest()


def only(packages, pattern):
    file, = packages.glob(pattern)
    return file


def machine_of(data):
    """The processor that a program is for."""
    return struct.unpack_from("<H", data, struct.unpack_from("<I", data, 0x3C)[0] + 4)[0]


@pytest.mark.parametrize("bits", [64, 32])
def test_the_portable_zip_is_the_stage_folder_without_the_simulation(packages, bits):
    with zipfile.ZipFile(only(packages, f"*portable-{bits}.zip")) as archive:
        held = {name: archive.read(name) for name in archive.namelist()}
    shipped = {path.relative_to(STAGES[bits]).as_posix(): path.read_bytes()
               for path in STAGES[bits].rglob("*") if path.is_file()}
    of_the_simulation = {name for name in shipped if re.fullmatch(r"NotebookSim\.exe|plugins/Sim\w+\.dll", name)}
    assert len(of_the_simulation) > 10
    expected = {f"Fenwyn/{name}" for name in shipped.keys() - of_the_simulation}
    assert held.keys() == expected | {"Fenwyn/LICENSE.txt", "Fenwyn/PORTABLE.txt"}
    assert all(held[f"Fenwyn/{name}"] == data for name, data in shipped.items() if f"Fenwyn/{name}" in held)
    assert {machine_of(data) for name, data in held.items() if name.endswith((".exe", ".dll"))} == {MACHINES[bits]}


def test_the_sums_are_those_of_the_files(packages):
    lines = dict(reversed(line.split()) for line in (packages / "SHA256SUMS").read_text().splitlines())
    assert lines == {file.name: sha256(file.read_bytes())
                     for pattern in ("*.exe", "*.zip") for file in packages.glob(pattern)}
    assert len(lines) == 3


def test_the_manifests_name_the_files_and_their_hashes(packages):
    setup = only(packages, "*Setup.exe")
    text = only(packages / "winget", "*.installer.yaml").read_text()
    assert text.count(sha256(setup.read_bytes()).upper()) == 2 and text.count(f"/{setup.name}\n") == 2
    assert "Custom: /CurrentUser" in text and "Custom: /AllUsers" in text
    version = re.search(r"Fenwyn VERSION ([0-9.]+)", (places.ROOT / "CMakeLists.txt").read_text())[1]
    assert all(f"PackageVersion: {version}\n" in file.read_text() for file in (packages / "winget").iterdir())
    manifest = json.loads((packages / "fenwyn.json").read_text())
    for bits in (64, 32):
        entry, file = manifest["architecture"][f"{bits}bit"], only(packages, f"*portable-{bits}.zip")
        assert entry["hash"] == sha256(file.read_bytes()) and entry["url"].endswith(f"/{file.name}")
    assert manifest["version"] == version
    assert [program for program, _ in manifest["shortcuts"]] == ["Fenwyn.exe", "FenwynSettings.exe"]


def test_a_second_packaging_gives_the_same_bytes(packagings):
    first, second = ({str(file.relative_to(folder)): sha256(file.read_bytes())
                      for file in folder.rglob("*") if file.is_file()} for folder in packagings)
    assert any(name.endswith("Setup.exe") for name in first)
    assert second == first


def test_a_file_that_only_one_flavour_has_is_an_error(tmp_path):
    for bits in STAGES:
        (tmp_path / f"stage{bits}").mkdir()
    (tmp_path / "stage64" / "New.dll").write_bytes(b"")
    ended = subprocess.run([places.ROOT / "installer" / "contents.py", tmp_path / "out", tmp_path / "stage64",
                            tmp_path / "stage32"], check=False, capture_output=True, text=True)
    assert ended.returncode != 0 and "New.dll" in ended.stderr


def test_a_signature_is_made_and_verified(packages, tmp_path):
    """Of one file; tests/long/test_signing.py signs all that ships."""
    certificate = Certificate(tmp_path)
    file = tmp_path / "Setup.exe"
    file.write_bytes(only(packages, "*Setup.exe").read_bytes())
    assert not certificate.signed(file)
    subprocess.run([places.ROOT / "installer" / "sign", file], check=True,
                   env={"PATH": "/usr/bin:/bin", **certificate.environment})
    assert certificate.signed(file)
    data = bytearray(file.read_bytes())
    data[len(data) // 2] ^= 1
    file.write_bytes(data)
    assert not certificate.signed(file)
