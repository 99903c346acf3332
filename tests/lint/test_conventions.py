"""The conventions of CONTRIBUTING.md that a compiler does not hold."""
import posixpath

import pytest
import tree

UNIT = "tests/unit/"


def unknown_test_folders(paths):
    """Folders below tests/unit that are no folder of the sources: those of src without that name, the others with theirs."""
    folders, sources = set(), set()
    for path in paths:
        folder = posixpath.dirname(path)
        while folder:
            (folders if folder.startswith(UNIT) else sources).add(folder)
            folder = posixpath.dirname(folder)
    names = {folder.removeprefix(UNIT) for folder in folders}
    return sorted(name for name in names if not {name, "src/" + name} & sources)


def test_unit_tests_lie_in_folders_named_as_those_of_the_sources():
    assert not unknown_test_folders(tree.files())


@pytest.mark.parametrize(
    "test, wrong",
    [
        ("tests/unit/ATest.cpp", []),
        ("tests/unit/UI/ATest.cpp", []),
        ("tests/unit/UI/ItemDlg/ATest.cpp", []),
        ("tests/unit/companions/ATest.cpp", []),
        ("tests/unit/companions/hotkey/ATest.cpp", []),
        ("tests/unit/items/ATest.cpp", ["items"]),
        ("tests/unit/hotkey/ATest.cpp", ["hotkey"]),
        ("tests/unit/UI/cards/ATest.cpp", ["UI/cards"]),
        ("tests/unit/old/hotkey/ATest.cpp", ["old", "old/hotkey"]),
    ],
)
def test_the_rule_of_the_folders_sees_a_wrong_one(test, wrong):
    assert unknown_test_folders(["src/UI/ItemDlg/A.h", "companions/hotkey/A.h", test]) == wrong
