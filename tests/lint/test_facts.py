"""Facts that several programs share are written once; everybody else includes that header."""
import re

import pytest
import tree

REGISTRY = "companions/include/FenwynRegistry.h"
OUTPUT_SETUP = "companions/OutputSetup/include/OutputSetup.h"

# Fact -> the one file of the program, its companions and its plug-ins that contains it.
FACTS = {
    r'L"SOFTWARE': REGISTRY,
    r'L"InstallPath"': REGISTRY,
    r'"_DCWNDCLS_': OUTPUT_SETUP,
    r'L"OutputSetup\.exe"': OUTPUT_SETUP,
    r'L"DisplaySource"': "companions/OutputSetup/include/DisplaySource.h",
    r'L"\\\\OutputConf': OUTPUT_SETUP,
    r"WM_USER \+ 101|0x0?465": None,  # see below
}
# The strip's message for key events has the same number as the one that closes the display-configuration program.
NUMBER_0X465 = {OUTPUT_SETUP, "src/Messages.h"}


def writers(pattern):
    found = re.compile(pattern)
    sources = tree.files(".h", ".c", ".cpp", ".rc")
    return {name for name in sources if name.split("/")[0] in ("src", "companions", "plugins", "framework", "settings")
            and found.search(tree.text(name))}


@pytest.mark.parametrize("pattern", FACTS)
def test_fact_stands_in_one_place(pattern):
    wrong = writers(pattern) - (NUMBER_0X465 if FACTS[pattern] is None else {FACTS[pattern]})
    assert not wrong, f"include {FACTS[pattern] or sorted(NUMBER_0X465)} there: {sorted(wrong)}"


@pytest.mark.parametrize("pattern", [pattern for pattern, place in FACTS.items() if place])
def test_fact_is_written_where_it_is_said_to_be(pattern):
    assert FACTS[pattern] in writers(pattern)
