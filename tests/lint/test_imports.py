"""Every plug-in for real machines loads on Windows 7: each of its imports is in a list of what that system exports, with
its reason. $FENWYN_PRESET says which build is meant; without it, the 64-bit one. tools/presets comes with the 32-bit one."""
import os
import shutil
import subprocess

import pytest

import pe_imports
import windows7_exports
from tree import ROOT

PRESET = os.environ.get("FENWYN_PRESET", "x64-release")
STAGES = {"x64-release": ROOT / "build" / "stage", "x86-release": ROOT / "build" / "x86-release" / "stage"}
PLUGINS = sorted((STAGES[PRESET] / "plugins").glob("Win*.dll"))
FUNCTIONS = len(list((ROOT / "plugins" / "windows" / "libraries").glob("*.cpp")))
COMPILERS = {"x64-release": "x86_64-w64-mingw32-g++", "x86-release": "i686-w64-mingw32-g++"}


def unlisted(path, preset):
    """The imports that are not in the list."""
    allowed = windows7_exports.exports(preset)
    return {f"{name} of {library}" for library, names in pe_imports.read(path).items()
            for name in names - allowed.get(library, set())}


def test_every_plugin_was_built():
    assert len(PLUGINS) == FUNCTIONS > 0


@pytest.mark.parametrize("path", PLUGINS, ids=lambda path: path.name)
def test_every_import_is_exported_by_windows_7_and_has_its_reason_in_the_list(path):
    assert not unlisted(path, PRESET), ("when Windows 7 exports it, give it a row with its reason in "
                                        "tests/lint/windows7_exports.py; otherwise bind it at run time")


def test_nothing_is_in_the_list_that_no_plugin_needs_any_more():
    used = {}
    for path in PLUGINS:
        for library, names in pe_imports.read(path).items():
            used.setdefault(library, set()).update(names)
    listed = windows7_exports.exports(PRESET)
    assert {library: names - used.get(library, set()) for library, names in listed.items()
            if names - used.get(library, set())} == {}


# A function of Windows 8, one that no plug-in needs, and one without a name are found in libraries of either kind.
@pytest.mark.parametrize("preset", COMPILERS)
def test_a_library_that_would_not_load_is_found(preset, tmp_path):
    compiler, source, library = shutil.which(COMPILERS[preset]), tmp_path / "bad.cpp", tmp_path / "bad.dll"
    numbered = tmp_path / "numbered.def"
    numbered.write_text("LIBRARY other.dll\nEXPORTS\nwithoutName @7 NONAME\n", encoding="utf-8")
    tool = shutil.which(COMPILERS[preset].replace("g++", "dlltool"))
    subprocess.run([tool, "-d", numbered, "-l", tmp_path / "libother.a"], check=True)
    source.write_text("#include <windows.h>\n"
                      'extern "C" __declspec(dllimport) void withoutName();\n'
                      'extern "C" __declspec(dllexport) void useThem() {\n'
                      "    FILETIME time;\n"
                      "    GetSystemTimePreciseAsFileTime(&time);\n"
                      "    Beep(1, 1);\n"
                      "    withoutName();\n"
                      "}\n", encoding="utf-8")
    subprocess.run([compiler, "-shared", "-D_WIN32_WINNT=0x0602", source, "-o", library, f"-L{tmp_path}", "-lother"],
                   check=True)
    found = unlisted(library, preset)
    assert {"GetSystemTimePreciseAsFileTime of kernel32.dll", "Beep of kernel32.dll", "by number of other.dll"} <= found
