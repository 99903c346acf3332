"""The conventions of CONTRIBUTING.md that a compiler does not hold."""
import posixpath
import re

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


FOLDERS = ("src/", "framework/", "companions/", "plugins/")

# A message table, and how a header declares that its class has one.
MESSAGE_TABLE = re.compile(
    r"^const MessageMap& \w+::messageMap\(\) const \{\n"
    r"    static constexpr MessageEntry kEntries\[\] = \{\n"
    r"(?:        [^\n]+\n)+"
    r"    \};\n"
    r"    static const MessageMap kMap\{&\w+::messageMap\(\), kEntries\};\n"
    r"    return kMap;\n"
    r"\}\n", re.M)
MESSAGE_MAP_DECLARED = "[[nodiscard]] const MessageMap& messageMap() const override;"
# What the tables are made of, and the end of their chain.
MESSAGE_MAP_ITSELF = {"framework/include/framework/MessageMap.h", "framework/include/framework/Wnd.h",
                      "framework/src/Wnd.cpp"}


def sources():
    return [name for name in tree.files(".h", ".cpp") if name.startswith(FOLDERS)]


def other_message_tables(source):
    """The lines of a source that deal with message tables in any other way than the one that is written down."""
    rest = MESSAGE_TABLE.sub("", source).replace(MESSAGE_MAP_DECLARED, "")
    code = [line.split("//")[0].strip() for line in rest.splitlines()]
    return [line for line in code if re.search(r"\bMessage(Entry|Map)\b", line) and not line.startswith("#include")]


def test_message_tables_are_written_in_one_way():
    wrong = {name: lines for name in sources() if name not in MESSAGE_MAP_ITSELF
             and (lines := other_message_tables(tree.text(name)))}
    assert not wrong, f"write the table inside messageMap(), as CONTRIBUTING.md says: {wrong}"


def test_every_class_that_declares_a_message_map_has_its_table():
    declared = sum(tree.text(name).count(MESSAGE_MAP_DECLARED) for name in sources())
    tables = sum(len(MESSAGE_TABLE.findall(tree.text(name))) for name in sources())
    assert declared == tables > 10


GOOD_TABLE = """\
const MessageMap& CAWnd::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onPaint<&CAWnd::OnPaint>(),
    };
    static const MessageMap kMap{&CWnd::messageMap(), kEntries};
    return kMap;
}
"""


def test_the_way_to_write_a_message_table_is_accepted():
    assert not other_message_tables(GOOD_TABLE)


@pytest.mark.parametrize("wrong", [
    GOOD_TABLE.replace("&CWnd::messageMap()", "nullptr"),
    GOOD_TABLE.replace("static const MessageMap", "static constexpr MessageMap"),
    GOOD_TABLE + "const MessageMap CAWnd::kMap{nullptr, Entries::kEntries};\n",
    "struct Entries {\n    static constexpr MessageEntry kEntries[] = {\n        onPaint<&CAWnd::OnPaint>(),\n    };\n};\n",
    "    static const MessageEntry kEntries[];\n",
    MESSAGE_MAP_DECLARED.replace(";", " { return kMap; }"),
], ids=["no base", "constexpr", "member", "struct", "declared", "inline"])
def test_another_way_to_write_a_message_table_is_found(wrong):
    assert other_message_tables(wrong)
