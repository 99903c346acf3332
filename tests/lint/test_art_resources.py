"""The texts, dialogs and version that are linked into the program agree with their sources, in every language."""
import os
import re
from pathlib import Path

import pytest

import pe_resources

ROOT = Path(__file__).resolve().parents[2]
RES = ROOT / "src" / "res"
BUILD = Path(os.environ.get("FENWYN_BUILD", ROOT / "build"))
STAGE = Path(os.environ.get("FENWYN_STAGE", BUILD / "stage"))

DEFINE = re.compile(r"^#define (\w+)\s+(\d+)\b", re.M)
# {language: its number}, from the list that all programs include.
LANGUAGES = {language: int(number, 16) for language, number in re.findall(
    r"^#include <strings/([\w-]+)\.rc> +// (0x[0-9a-fA-F]+)$", (RES / "Languages.rc").read_text(encoding="utf-8"), re.M)}
# Every program with texts: the folder of its resources.
TEXT_FOLDERS = ["src/res", "companions/OutputSetup", "settings"]
# Under a card 96 pixels wide a description fits on three lines at most.
LONGEST_DESCRIPTION = 28
# Texts that are the same in every language: names of connectors, alone or with a sign between them.
CONNECTOR = "(LCD|CRT|DVI|HDMI|DP|TV)"
SAME_IN_EVERY_LANGUAGE = re.compile(
    rf"IDS_OUTPUT_{CONNECTOR}(_{CONNECTOR}_(CLONE|EXTEND))?$|IDS_WIRELESS_ARROW$")
# Words that other languages share with English. Any other identical text was forgotten by a translator.
SHARED_WORDS = {"Normal"}

WS_POPUP, WS_SYSMENU, DS_SETFONT, DS_FIXEDSYS, WS_EX_TOOLWINDOW = 0x80000000, 0x80000, 0x40, 0x8, 0x80
WS_CHILD_VISIBLE_TABSTOP, TBS_BOTH_NOTICKS = 0x50010000, 0x18
BORDERLESS = WS_POPUP | DS_SETFONT | DS_FIXEDSYS
# The resource compiler writes class names in capitals; Windows ignores their case.
STRIP_CLASS = "ZelMainDlgCls_A4E19C07-6B3D-4D52-8F0A-91C3E57D2B68".upper()

# Dialog -> (style, extended style, window class, size where it matters).
DIALOGS = {
    "IDD_CARD_STRIP": (BORDERLESS, WS_EX_TOOLWINDOW, STRIP_CLASS, None),
    "IDD_LARGE_CARD": (BORDERLESS, 0, "", None),
    "IDD_CIRCLE_ITEM": (BORDERLESS, 0, "", None),
    "IDD_SLIDER_ITEM": (BORDERLESS, 0, "", (132, 50)),
    "IDD_ERROR_ITEM": (BORDERLESS, 0, "", None),
    "IDD_ITEM_DESC": (BORDERLESS, 0, "", None),
    "IDD_HOVER_STRIP": (BORDERLESS, WS_EX_TOOLWINDOW, "", None),
    "IDD_OUTPUT_PREVIEW": (BORDERLESS | WS_SYSMENU, 0, "", (87, 49)),
}


def defines(name):
    return {key: int(value) for key, value in DEFINE.findall((RES / name).read_text(encoding="utf-8"))}


# Bases are the first number of a range, not texts.
TEXTS = {name: value for name, value in defines("StringIds.h").items() if not name.endswith("_BASE")}


def source_texts(language):
    """{id name: text} as in the source of the string table."""
    source = (RES / "strings" / f"{language}.rc").read_text(encoding="utf-8")
    return {name: text.replace("\\n", "\n") for name, text in re.findall(r'^\s+(IDS_\w+),\s+"(.*)"$', source, re.M)
            if not name.startswith("IDS_CAPTION_")}


@pytest.fixture(scope="module")
def program():
    path = STAGE / "Fenwyn.exe"
    assert path.is_file(), f"{path} is missing: build the target Fenwyn, or set FENWYN_STAGE"
    return pe_resources.read(path)


@pytest.mark.parametrize("folder", TEXT_FOLDERS)
def test_every_language_has_its_file_and_every_file_its_language(folder):
    assert sorted(path.stem for path in (ROOT / folder / "strings").glob("*.rc")) == sorted(LANGUAGES)
    including = [path.name for path in (ROOT / folder).glob("*.rc")
                 if '#include "Languages.rc"' in path.read_text(encoding="utf-8")]
    assert len(including) == 1, including


@pytest.mark.parametrize("library", ["WinOutput.dll", "WinOutput_2.dll"])
def test_the_question_about_a_picture_speaks_every_language(library):
    header = (ROOT / "plugins" / "windows" / "question" / "QuestionIds.h").read_text(encoding="utf-8")
    numbers = sorted(int(number) for number in re.findall(r"^#define IDS_\w+ (\d+)", header, re.M))
    linked = pe_resources.strings(pe_resources.read(STAGE / "plugins" / library))
    assert {language: sorted(texts) for language, texts in linked.items()} == dict.fromkeys(LANGUAGES.values(), numbers)


def test_text_numbers_are_unique():
    assert len(set(TEXTS.values())) == len(TEXTS)


@pytest.mark.parametrize("language", LANGUAGES)
def test_every_text_exists_in_every_language(program, language):
    linked = pe_resources.strings(program).get(LANGUAGES[language], {})
    assert sorted(set(TEXTS.values()) - set(linked)) == [], "missing"
    assert sorted(set(linked) - set(TEXTS.values())) == [], "without a name"


@pytest.mark.parametrize("language", LANGUAGES)
def test_the_linked_text_is_the_written_one(program, language):
    linked = pe_resources.strings(program)[LANGUAGES[language]]
    assert {name: linked[TEXTS[name]] for name in TEXTS} == source_texts(language)


@pytest.mark.parametrize("language", LANGUAGES)
def test_descriptions_are_short_enough_for_a_card(language):
    texts = source_texts(language)
    assert [name for name in texts if name.endswith("_DESC") and len(texts[name]) > LONGEST_DESCRIPTION] == []


@pytest.mark.parametrize("language", sorted(set(LANGUAGES) - {"en"}))
def test_no_text_was_left_in_english(language):
    english, texts = source_texts("en"), source_texts(language)
    assert [name for name in english if english[name] == texts[name] and not SAME_IN_EVERY_LANGUAGE.match(name)
            and texts[name] not in SHARED_WORDS] == []


@pytest.mark.parametrize("language", LANGUAGES)
def test_items_that_stand_side_by_side_differ(language):
    texts = source_texts(language)
    # The ids of one function's texts share their tens; the display outputs use several tens.
    groups = {}
    for name, text in texts.items():
        group = TEXTS[name] // 10 if not 310 <= TEXTS[name] <= 376 else "outputs"
        groups.setdefault(group, []).append(text)
    assert [group for group, members in groups.items() if len(set(members)) != len(members)] == []


def test_dialogs_are_what_the_windows_expect(program):
    ids = defines("DialogIds.h")
    linked = {name: pe_resources.Dialog(data) for (kind, name, _), data in program.items()
              if kind == pe_resources.DIALOG}
    assert sorted(linked) == sorted(value for name, value in ids.items() if name.startswith("IDD_"))
    assert sorted(DIALOGS) == sorted(name for name in ids if name.startswith("IDD_"))
    for name, (style, exstyle, window_class, size) in DIALOGS.items():
        dialog = linked[ids[name]]
        assert (dialog.style, dialog.exstyle, dialog.window_class) == (style, exstyle, window_class), name
        assert (dialog.font, dialog.font_size) == ("MS Shell Dlg", 8), name
        assert size is None or (dialog.width, dialog.height) == size, name
        assert dialog.controls == [] or name == "IDD_SLIDER_ITEM", name


def test_the_slider_dialog_holds_its_two_trackbars(program):
    ids = defines("DialogIds.h")
    template, = [data for (kind, name, _), data in program.items()
                 if (kind, name) == (pe_resources.DIALOG, ids["IDD_SLIDER_ITEM"])]
    style = WS_CHILD_VISIBLE_TABSTOP | TBS_BOTH_NOTICKS
    assert pe_resources.Dialog(template).controls == [
        {"id": ids["IDC_SLIDER"], "class": "MSCTLS_TRACKBAR32", "style": style, "place": (39, 9, 81, 15)},
        {"id": ids["IDC_SLIDER_UNUSED"], "class": "MSCTLS_TRACKBAR32", "style": style, "place": (39, 26, 82, 15)},
    ]


def test_the_version_is_the_projects():
    project = re.search(r"project\(\w+ VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
    header = (RES / "Version.h").read_text(encoding="utf-8")
    assert re.search(r'FENWYN_VERSION_TEXT\s+"(.*)"', header)[1] == project
    numbers = [int(number) for number in re.search(r"FENWYN_VERSION_NUMBERS (.*)", header)[1].split(",")]
    assert numbers == [int(number) for number in project.split(".")] + [0]


def test_the_program_carries_version_manifest_and_icon(program):
    kinds = {kind for kind, _, _ in program}
    assert {pe_resources.VERSION, pe_resources.MANIFEST} <= kinds
    assert 14 in kinds, "no icon group"
