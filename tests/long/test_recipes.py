"""The recipes of CONTRIBUTING.md, followed on a copy of the tree: the files that they name are enough."""
import pathlib
import shutil
import sys

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "lint"))

import pe_resources  # noqa: E402
import recipes  # noqa: E402

PYTEST = [sys.executable, "-m", "pytest", "-q", "-p", "no:cacheprovider"]


@pytest.fixture(scope="module")
def copy(request):
    """A copy with the changes of all recipes, built."""
    made = recipes.Copy(ROOT / "build" / "long" / "tree")
    for recipe, _ in recipes.RECIPES.values():
        recipe(made)
    made.run("cmake", "--preset", "x64-release")
    made.run("cmake", "--build", "--preset", "x64-release", "--target", "stage", "e2e_probe")
    yield made
    if not request.session.testsfailed:
        shutil.rmtree(made.folder)


def test_the_new_card_is_shown_stepped_and_applied(copy):
    copy.run(*PYTEST, "tests/e2e/test_functions.py", "-k", "every_function_of_the_sample", timeout=600)


def test_the_new_setting_is_read(copy):
    copy.run(*PYTEST, "tests/e2e/test_log.py", "-k", "start_up_sequence", timeout=600)


def test_the_new_language_is_linked(copy):
    copy.run(*PYTEST, "tests/lint/test_art_resources.py", timeout=600)
    setup = pe_resources.strings(pe_resources.read(copy.folder / "build" / "stage" / "OutputSetup.exe"))
    assert sorted(setup[0x406]) == sorted(setup[0x409])
