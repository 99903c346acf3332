"""The recipes of CONTRIBUTING.md, followed on a copy of the tree: a function, a setting and a language need few files,
and the named files are enough."""
import pathlib
import re
import shutil
import subprocess
import sys

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "lint"))

import pe_resources  # noqa: E402

COPY = ROOT / "build" / "long" / "tree"
PYTEST = [sys.executable, "-m", "pytest", "-q", "-p", "no:cacheprovider"]

NAME, KEY = "Example", ("0x1E", "A")
DESCRIPTION = "Show how a card is made"
ITEMS = ["One", "Two", "Three"]
PICTURES = {"card": 801, "large-card": 800, "item": 803, "large-item": 802}


def run(*command, timeout=3600):
    done = subprocess.run([str(part) for part in command], cwd=COPY, timeout=timeout, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
    assert done.returncode == 0, f"{command}:\n{done.stdout[-8000:]}"
    return done.stdout


def touched():
    """The files changed since the last call; commits them."""
    run("git", "add", "-A")
    files = run("git", "diff", "--cached", "--name-only").split()
    run("git", "-c", "user.name=recipe", "-c", "user.email=recipe@localhost", "commit", "-qm", "recipe")
    return files


def insert(path, before, text):
    """Inserts the text before the last occurrence of `before`."""
    file = COPY / path
    content = file.read_text(encoding="utf-8")
    at = content.rindex(before)
    file.write_text(content[:at] + text + content[at:], encoding="utf-8")


def append(path, text):
    with open(COPY / path, "a", encoding="utf-8") as file:
        file.write(text)


def add_function():
    insert("plugins/sdk/FenwynFunctions.h", "};\n// clang-format on",
           f'    {{L"{NAME}", {{FENWYN_EXPORTS_STATE}}, InfoRule::Mask, 0x7, 0, CurrentRule::State, 3}},\n')
    append("plugins/simulated/Functions.inc",
           f'FUNCTION({NAME}, "{NAME}", {KEY[0]}, "{KEY[1]}", 0, "", Positions, 0x7, 0, 0, 1, L"one", L"two", L"three")\n'
           f'WORD_ROW("{NAME}", "Beispiel")\n' +
           "".join(f'WORD_ROW("{item.lower()}", "{item} (de)")\n' for item in ITEMS))
    table = "src/Logic/FuncX/FunctionTables.h"
    rows = "".join(f"    {{0x{1 << i:x}, {i}, IDS_EXAMPLE_{item.upper()}, {PICTURES['item'] + 2 * i}, "
                   f"{PICTURES['large-item'] + 2 * i}}},\n" for i, item in enumerate(ITEMS))
    status = ", ".join(f"IDS_EXAMPLE_{item.upper()}" for item in ITEMS)
    insert(table, "// The functions that their description specifies completely",
           f"inline constexpr std::array<Item, 3> kExampleItems{{{{\n{rows}}}}};\n"
           f"inline constexpr std::array<UINT, 3> kExampleStatus{{{status}}};\n"
           f'inline constexpr CircleDescription kExample{{.pszName = L"{NAME}",\n'
           f'.pszClass = L"CFx{NAME}",\n'
           f".look = {{{PICTURES['card']}, {PICTURES['large-card']}, IDS_EXAMPLE_DESC}},\n"
           ".itemRule = ItemRule::Mask,\n.items = kExampleItems,\n.defaultRule = DefaultRule::Current,\n"
           ".statusTexts = kExampleStatus};\n\n")
    insert(table, "};\ninline constexpr std::array kExtendedFunctions", ", &kExample")
    append("src/res/StringIds.h", "".join(f"#define IDS_EXAMPLE_{name} {591 + i}\n" for i, name in
                                          enumerate(["DESC", *(item.upper() for item in ITEMS)])))
    for language, description, mark in (("en", DESCRIPTION, ""), ("de", "Zeigt, wie Karten entstehen", " (de)")):
        insert(f"src/res/strings/{language}.rc", "END", f'    IDS_EXAMPLE_DESC, "{description}"\n' + "".join(
            f'    IDS_EXAMPLE_{item.upper()}, "{item}{mark}"\n' for item in ITEMS))
    badges = ["star", "setup", ""]
    append("art/images.csv",
           f"{PICTURES['large-card']},large-card,moon,,,{NAME}\n{PICTURES['card']},card,moon,,,{NAME}\n" +
           "".join(f"{PICTURES[kind] + 2 * i},{kind},scale,on,{badges[i]},{NAME} {item}\n"
                   for i, item in enumerate(ITEMS) for kind in ("large-item", "item")))
    insert("docs/plugin-guide.md", "| ODD | B,",
           f"| {NAME} | B, `GetCurrentItem`, `SelectItem` | bits 0–2: items that exist | 0–2 | position among those that "
           "exist |\n")


def add_setting():
    insert("src/Data/ZelConfig.h", "    CConfigValue bLoaded;", "    CConfigValue uExample;  // a value that nothing uses\n\n")
    insert("src/Data/ZelConfig.cpp", "};\n\nvoid readSettings",
           '    {L"ExampleSetting", &QrdConfig::uExample, 17, Scope::Machine},\n')
    insert("docs/configuration.md", "| `HideMainUIWhenLostFocus`", "| `ExampleSetting` | `REG_DWORD` | 17 | none |\n")
    insert("tests/e2e/harness/desktop.py", "]\nCONFIG_DEFAULTS", '    Setting("ExampleSetting", 17, MACHINE),\n')
    insert("tests/unit/Data/ZelConfigTest.cpp", "};\n\nDWORD rowOf(",
           '    {L"ExampleSetting", &QrdConfig::uExample, 17, false},\n')


def add_language():
    for folder in ("src/res/strings", "companions/OutputSetup/strings"):
        english = (COPY / folder / "en.rc").read_text(encoding="utf-8")
        french, count = re.subn(r"^LANGUAGE .*$", "LANGUAGE LANG_FRENCH, SUBLANG_FRENCH", english, flags=re.M)
        assert count == 1
        (COPY / folder / "fr.rc").write_text(french, encoding="utf-8")
    append("src/res/Languages.rc", "#include <strings/fr.rc>  // 0x40C\n")


@pytest.fixture(scope="module")
def copy(request):
    """A copy of the tree as git has it, with the changes of all three recipes, built; and the files that each has
    touched."""
    if COPY.exists():
        shutil.rmtree(COPY)
    COPY.mkdir(parents=True)
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                            capture_output=True).stdout.decode().split("\0")
    for name in filter(None, listed):
        if (ROOT / name).is_file():
            (COPY / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(ROOT / name, COPY / name)
    run("git", "init", "-q")
    touched()
    files = {}
    for recipe in (add_function, add_setting, add_language):
        recipe()
        files[recipe] = touched()
    run("cmake", "--preset", "x64-release")
    run("cmake", "--build", "--preset", "x64-release", "--target", "stage", "e2e_probe")
    yield files
    if not request.session.testsfailed:
        shutil.rmtree(COPY)


@pytest.mark.parametrize("recipe,most", [(add_function, 8), (add_setting, 5), (add_language, 3)],
                         ids=["function", "setting", "language"])
def test_a_recipe_touches_few_files(copy, recipe, most):
    assert 0 < len(copy[recipe]) <= most, copy[recipe]


def test_the_new_card_is_shown_stepped_and_applied(copy):
    run(*PYTEST, "tests/e2e/test_functions.py", "-k", "every_function_of_the_sample", timeout=600)


def test_the_new_setting_is_read(copy):
    run(*PYTEST, "tests/e2e/test_log.py", "-k", "start_up_sequence", timeout=600)


def test_the_new_language_is_linked(copy):
    run(*PYTEST, "tests/lint/test_art_resources.py", timeout=600)
    setup = pe_resources.strings(pe_resources.read(COPY / "build" / "stage" / "OutputSetup.exe"))
    assert sorted(setup[0x40C]) == sorted(setup[0x409])
