"""Two builds of one commit, in folders of different names and one after the other, ship the same bytes."""
import hashlib
import pathlib
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]


def shipped(folder):
    """{name: digest} of what a build from nothing in that folder ships; the folder holds a clone of the last commit."""
    subprocess.run(["git", "clone", "--quiet", ROOT, folder], check=True)
    for command in (["cmake", "--preset", "x64-release", "-DFENWYN_TESTS=OFF"],
                    ["cmake", "--build", "--preset", "x64-release", "--target", "stage"]):
        done = subprocess.run(command, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        assert done.returncode == 0, done.stdout[-8000:]
    stage = folder / "build" / "stage"
    return {str(path.relative_to(stage)): hashlib.sha256(path.read_bytes()).hexdigest()
            for path in sorted(stage.rglob("*")) if path.is_file()}


@pytest.fixture(scope="module")
def builds(tmp_path_factory):
    return [shipped(tmp_path_factory.mktemp(name) / "tree") for name in ("one", "the-other-build")]


def test_both_builds_ship_the_same_bytes(builds):
    one, other = builds
    assert "Fenwyn.exe" in one
    assert [name for name in {*one, *other} if one.get(name) != other.get(name)] == []
