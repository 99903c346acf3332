"""tests/coverage.md says which tests cover which behaviour: the tests it names exist, and ran in a complete run."""
import collections
import os
import pathlib
import posixpath
import re

import pytest

import tree

PAGE = "tests/coverage.md"
# No behaviour may get lost: the number of rows on the page. Add to it with new rows.
ROWS = 119
GTEST = re.compile(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", re.M)
PLACES = ("tests/unit/", "tests/fuzz/", "tests/looks/", "tests/e2e/", "tests/package/", "tests/lint/")
PYTEST = re.compile(r"^def (test_\w+)\(", re.M)


def rows_of(text):
    """(behaviour, names of its tests) of every table row of a page."""
    rows = []
    for line in text.splitlines():
        cells = [cell.strip() for cell in line.strip().split("|")[1:-1]]
        if not cells or cells[0] == "Behaviour" or set(cells[0]) <= set("-: "):
            continue
        rows.append((cells[0], re.findall(r"`([^`]+)`", cells[1]) if len(cells) == 2 else []))
    return rows


def names_in(path, text):
    """Names of the tests in a source, as the page writes them."""
    if path.endswith(".py"):
        return {f"{posixpath.basename(path)}::{name}" for name in PYTEST.findall(text)}
    return {f"{suite}.{name}" for suite, name in GTEST.findall(text)}


def missing_from(names, rows):
    return [f"{name} ({behaviour})" for behaviour, tests in rows for name in tests if name not in names]


@pytest.fixture(scope="module")
def rows():
    return rows_of(tree.text(PAGE))


def test_every_behaviour_is_there_once_with_its_tests(rows):
    assert len(rows) >= ROWS
    assert not [behaviour for behaviour, count in collections.Counter(row[0] for row in rows).items() if count > 1]
    assert not [behaviour for behaviour, tests in rows if not tests]
    assert not [behaviour for behaviour, tests in rows if len(tests) != len(set(tests))]


def test_named_tests_exist(rows):
    sources = [path for path in tree.files(".cpp", ".py") if path.startswith(PLACES)]
    names = set().union(*(names_in(path, tree.text(path)) for path in sources))
    missing = missing_from(names, rows)
    assert not missing, "\n" + "\n".join(missing)


def test_the_rule_itself_sees_what_is_wrong():
    page = "\n".join(["| Behaviour | Tests |", "|---|---|", "| one | `A.B`, `test_x.py::test_y` |", "| two | none |",
                      "| three |", "", "text with `A.C`"])
    rows = rows_of(page)
    assert rows == [("one", ["A.B", "test_x.py::test_y"]), ("two", []), ("three", [])]
    unit = names_in("tests/unit/a/AText.cpp", "TEST_P(A,\n       B) {\n// TEST(A, C)\n")
    keys = names_in("tests/e2e/test_x.py", "def test_y(program):\n    def test_z():\n")
    assert (unit, keys) == ({"A.B"}, {"test_x.py::test_y"})
    assert missing_from(unit | keys, rows) == []
    assert missing_from(unit, rows) == ["test_x.py::test_y (one)"]


@pytest.mark.skipif("FENWYN_RAN" not in os.environ, reason="only a whole run can tell; ./test asks at its end")
def test_named_tests_ran(rows):
    ran = set(pathlib.Path(os.environ["FENWYN_RAN"]).read_text(encoding="utf-8").split())
    missing = missing_from(ran, rows)
    assert not missing, "\n" + "\n".join(missing)
