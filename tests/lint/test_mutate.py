"""What tools/mutate changes, and what it leaves alone."""
import importlib.machinery
import importlib.util
import random

import pytest

from tree import ROOT


def load():
    loader = importlib.machinery.SourceFileLoader("mutate", str(ROOT / "tools" / "mutate"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("mutate", loader))
    loader.exec_module(module)
    return module


MUTATE = load()


def changed(text):
    return {text[:begin] + replacement + text[end:] for _, begin, end, replacement in MUTATE.candidates(text)}


@pytest.mark.parametrize(("before", "after"), [
    ("if (a == b) {\n", {"if (a != b) {\n", "if (false && a == b) {\n"}),
    ("x = a <= b;", {"x = a < b;"}),
    ("x = a && !b;", {"x = a || !b;", "x = a && b;"}),
    ("x += y * 2;", {"x -= y * 2;", "x += y / 2;", "x += y * 3;"}),
    ("return true;", {"return false;"}),
    ("x = A | B;", {"x = A & B;"}),
    ("{\n    m_strip.hide(one, two);\n}", {"{\n\n}"}),
])
def test_changes_code(before, after):
    assert changed(before) == after


@pytest.mark.parametrize("text", [
    "// a == b, 1\n", "/* true\n && false */", 'const wchar_t* t = L"a == \\" 1 && true";', "#if A == 1 && \\\n    B == 2\n",
    "std::vector<T> f(T&& t, const T* p);", "double d = 0.5;", "DWORD code = 0x13;", "wchar_t c = L'1';", "x = u8;",
    "    return f(x);\n", "auto y = f(x);\n",
])
def test_leaves_alone_what_is_no_change(text):
    assert changed(text) == set()


def test_the_same_seed_makes_the_same_changes():
    sources = {str(path): path.read_text() for path in sorted((ROOT / "src" / "Data").glob("*.cpp"))}
    first, again = ([MUTATE.draw(sources, numbers) for _ in range(20)]
                    for numbers in (random.Random(5), random.Random(5)))
    assert first == again
    assert len({change[1] for change in first if change}) > 4
