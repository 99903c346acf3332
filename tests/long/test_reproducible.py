"""Two builds of one commit, in folders of different names and one after the other, ship the same bytes: the programs of both
flavours, and the packages made of them."""
import hashlib
import pathlib
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
STAGES = {"x64-release": "build/stage", "x86-release": "build/x86-release/stage"}
PACKAGES = "build/package"


def run(folder, *command):
    done = subprocess.run(command, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    assert done.returncode == 0, done.stdout[-8000:]


def shipped(folder):
    """{name: digest} of what a build from nothing in that folder ships; the folder holds a clone of the last commit."""
    subprocess.run(["git", "clone", "--quiet", ROOT, folder], check=True)
    for preset in STAGES:
        run(folder, "cmake", "--preset", preset, "-DFENWYN_TESTS=OFF")
        run(folder, "cmake", "--build", "--preset", preset, "--target", "stage")
    run(folder, "./package", "--no-build")
    return {str(path.relative_to(folder)): hashlib.sha256(path.read_bytes()).hexdigest()
            for part in (*STAGES.values(), PACKAGES)
            for path in sorted((folder / part).rglob("*")) if path.is_file()}


@pytest.fixture(scope="module")
def builds(tmp_path_factory):
    return [shipped(tmp_path_factory.mktemp(name) / "tree") for name in ("one", "the-other-build")]


def test_both_builds_ship_the_same_bytes(builds):
    one, other = builds
    assert {f"{stage}/Fenwyn.exe" for stage in STAGES.values()} | {f"{PACKAGES}/SHA256SUMS"} <= one.keys()
    assert [name for name in {*one, *other} if one.get(name) != other.get(name)] == []
