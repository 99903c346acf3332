"""The recipes of CONTRIBUTING.md can be followed on this tree, and a function, a setting and a language need few files.
That the named files are enough is tested by tests/long, which builds the result."""
import pytest
import recipes


@pytest.fixture(scope="module")
def copy(tmp_path_factory):
    return recipes.Copy(tmp_path_factory.mktemp("recipes") / "tree")


@pytest.mark.parametrize("name", recipes.RECIPES)
def test_a_recipe_touches_few_files(copy, name):
    recipe, most = recipes.RECIPES[name]
    recipe(copy)
    files = copy.touched()
    assert 0 < len(files) <= most, files
