"""Every shipped program and library is linked so that an attacker finds nothing to build on."""
import shutil
import subprocess

import pytest

from pe_protection import EXEMPT, faults
from tree import ROOT

STAGE = ROOT / "build" / "stage"
SHIPPED = sorted(path for path in STAGE.rglob("*") if path.suffix in (".exe", ".dll"))

def test_something_is_shipped():
    assert {"Fenwyn.exe", "CardArt.dll", "ZelMain.dll", "ZelEvnt.dll", "PrtHook.dll"} <= {path.name for path in SHIPPED}


@pytest.mark.parametrize("path", SHIPPED, ids=lambda path: path.name)
def test_is_linked_soundly(path):
    assert set(faults(path)) == EXEMPT.get(path.name, set())


# Each way to link a file badly is found, and only that one.
BAD = {
    "symbols": ["-Wl,--no-insert-timestamp"],
    "time of linking": ["-s"],
    "lack 0x60": ["-s", "-Wl,--no-insert-timestamp", "-Wl,--disable-dynamicbase"],
    "lack 0x20": ["-s", "-Wl,--no-insert-timestamp", "-Wl,--disable-high-entropy-va"],
    "lack 0x100": ["-s", "-Wl,--no-insert-timestamp", "-Wl,--disable-nxcompat"],
    "no relocations": ["-s", "-Wl,--no-insert-timestamp", "-Wl,--disable-reloc-section"],
    "can be written and executed": ["-s", "-Wl,--no-insert-timestamp", "-Wl,--omagic"],
    "debug information": ["-s", "-Wl,--no-insert-timestamp", "-Wl,--build-id"],
}


@pytest.mark.parametrize("fault", BAD)
def test_a_badly_linked_file_is_found(fault, tmp_path):
    compiler = shutil.which("x86_64-w64-mingw32-g++")
    source, program = tmp_path / "bad.cpp", tmp_path / "bad.exe"
    source.write_text("int main() {}\n", encoding="utf-8")
    subprocess.run([compiler, source, "-o", program, *BAD[fault]], check=True)
    assert any(fault in found for found in faults(program))
    assert "no stack protector" in faults(program) and "no version information" in faults(program)


def test_a_library_whose_address_follows_from_its_folder_is_found(tmp_path):
    compiler = shutil.which("x86_64-w64-mingw32-g++")
    source = tmp_path / "library.cpp"
    source.write_text("extern \"C\" __declspec(dllexport) int one() { return 1; }\n", encoding="utf-8")
    found = set()
    for folder in "here", "there":
        (tmp_path / folder).mkdir()
        library = tmp_path / folder / "library.dll"
        subprocess.run([compiler, "-shared", source, "-o", library, "-s", "-Wl,--no-insert-timestamp"], check=True)
        found.add(library.read_bytes())
        assert "an address that follows from the folder" in faults(library)
    assert len(found) == 2, "the linker has changed: it takes no address from the folder any more"


def protected(tmp_path, *canary):
    """What is wrong with a program that has a protected function and gets its canary from there."""
    compiler = shutil.which("x86_64-w64-mingw32-g++")
    source, program = tmp_path / "good.cpp", tmp_path / "good.exe"
    source.write_text("int main(int count, char** words) { char copy[99]; for (int i = 0; words[0][i]; ++i) copy[i] = words[0][i];"
                      " return copy[count]; }\n", encoding="utf-8")
    archive = []
    if canary:
        subprocess.run([compiler, "-c", *canary, "-o", tmp_path / "canary.o"], check=True)
        subprocess.run(["x86_64-w64-mingw32-ar", "rcs", tmp_path / "libcanary.a", tmp_path / "canary.o"], check=True)
        archive = [tmp_path / "libcanary.a", "-ladvapi32"]
    subprocess.run([compiler, source, *archive, "-o", program, "-s", "-Wl,--no-insert-timestamp", "-fstack-protector-strong",
                    "-static"], check=True)
    return faults(program)


def test_a_soundly_linked_file_lacks_only_what_its_sources_give(tmp_path):
    assert protected(tmp_path, ROOT / "cmake/StackGuard.cpp") == ["no version information"]


def test_the_compilers_own_canary_is_found(tmp_path):
    assert "the compiler's own canary" in protected(tmp_path)
