"""The texts of all programs in all languages: every language has every text, with the same marks for what is filled in,
and the letters that the access keys of a window promise are different ones."""
import collections
import re
from pathlib import Path

import pytest
from test_art_resources import LANGUAGES, TEXT_FOLDERS

ROOT = Path(__file__).resolve().parents[2]
ENTRY = re.compile(r'^\s+(IDS_\w+(?: \+ \d+)?),\s+"((?:[^"]|"")*)"$', re.M)
# What the program fills in, and what it shows in another place of its text.
MARK = re.compile(r"%\d|\\\\OutputConf|\\\\Config|\\\\Save|FenwynCheck --forgive")
TEXT_ID = re.compile(r"\bIDS_\w+")
ACCESS_KEY = re.compile(r"&(\w)")

# Texts with access keys that are in a window at the same time.
WINDOWS = [
    {"IDS_MODES_LABEL", "IDS_DISPLAYS_LABEL", "IDS_APPLY"},
    {"IDS_NAME_LABEL", "IDS_DISPLAYS_LABEL", "IDS_SAVE"},
    {"IDS_DISPLAYS_LABEL", "IDS_FAVOURITES_LABEL", "IDS_RENAME", "IDS_DELETE"},
    {"IDS_KEEP", "IDS_GO_BACK"},
]


def settings_windows():
    """Each page of the settings program with the frame around it. The page Behaviour has no template: it shows every
    value that no other page shows."""
    sources = {name: (ROOT / "settings" / name).read_text(encoding="utf-8")
               for name in ("FenwynSettings.rc", "Values.cpp", "BehaviourPage.cpp")}
    dialogs = {name: set(TEXT_ID.findall(body)) for name, body in
               re.findall(r"^(IDD_\w+) DIALOGEX.*?^BEGIN\n(.*?)^END", sources["FenwynSettings.rc"], re.M | re.S)}
    frame = dialogs.pop("IDD_SETTINGS")
    dialogs["IDD_PAGE_BEHAVIOUR"] = set(TEXT_ID.findall(sources["Values.cpp"] + sources["BehaviourPage.cpp"]))
    dialogs["IDD_PAGE_BEHAVIOUR"] -= dialogs["IDD_PAGE_KEYS"]
    # The button has one text or the other.
    return [(page | frame) - {"IDS_APPLY_FOR_ALL"} for page in dialogs.values()] + [
        (page | frame | {"IDS_APPLY_FOR_ALL"}) - {"IDS_APPLY"} for page in dialogs.values()]


WINDOWS += settings_windows()


def blocks(source):
    """The string tables of a file, one {id: text} for each."""
    return [dict(ENTRY.findall(part)) for part in source.split("STRINGTABLE")[1:]]


def problems(english, other):
    """What is wrong with a file, compared with the English one."""
    found = []
    if len(blocks(english)) != len(blocks(other)):
        return [f"{len(blocks(other))} string tables instead of {len(blocks(english))}"]
    for wanted, texts in zip(blocks(english), blocks(other)):
        found += [f"{name} is missing" for name in wanted.keys() - texts.keys()]
        found += [f"{name} is unknown" for name in texts.keys() - wanted.keys()]
        for name in wanted.keys() & texts.keys():
            if not texts[name].strip():
                found.append(f"{name} is empty")
            if collections.Counter(MARK.findall(wanted[name])) != collections.Counter(MARK.findall(texts[name])):
                found.append(f"{name} fills in something else")
            if len(ACCESS_KEY.findall(wanted[name])) != len(ACCESS_KEY.findall(texts[name])):
                found.append(f"{name} has another number of access keys")
        for window in WINDOWS:
            letters = [ACCESS_KEY.search(texts[name])[1].lower() for name in sorted(window & texts.keys())
                       if ACCESS_KEY.search(texts[name])]
            found += [f"{letter} is promised twice by {sorted(name for name in window & texts.keys() if '&' in texts[name])}"
                      for letter, count in collections.Counter(letters).items() if count > 1]
    # Two rows of the same text would hide one of them.
    names = [name for name, _ in ENTRY.findall(other)]
    rows = len(re.findall(r"^\s+IDS_", other, re.M))
    return found + ([f"{rows - len(names)} rows cannot be read"] if rows != len(names) else [])


def source(folder, language):
    return (ROOT / folder / "strings" / f"{language}.rc").read_text(encoding="utf-8")


@pytest.mark.parametrize("folder", TEXT_FOLDERS)
@pytest.mark.parametrize("language", LANGUAGES)
def test_texts_agree_with_the_english_ones(folder, language):
    assert problems(source(folder, "en"), source(folder, language)) == []


@pytest.mark.parametrize(("before", "after", "problem"), [
    ('    IDS_SAVE,                "&Save"\n', "", "IDS_SAVE is missing"),
    ("IDS_SAVE, ", "IDS_SAVED, ", "IDS_SAVED is unknown"),
    ("Arrangement %1", "Arrangement %2", "IDS_MODE_OTHER fills in something else"),
    ("Delete the favorite", "%1 Delete the favorite", "IDS_ASK_DELETE fills in something else"),
    ('"&Rename"', '"Rename"', "IDS_RENAME has another number of access keys"),
    ('"&Delete"', '"&Fdelete"', "f is promised twice"),
    ('"Cancel"', '""', "IDS_CANCEL is empty"),
    ('"Cancel"', '"Cancel', "1 rows cannot be read"),
])
def test_what_disagrees_is_found(before, after, problem):
    english = source("companions/OutputSetup", "en")
    assert before in english
    assert any(line.startswith(problem) for line in problems(english, english.replace(before, after)))


def test_every_language_has_its_number_once():
    assert len(LANGUAGES) >= 14
    assert len(set(LANGUAGES.values())) == len(LANGUAGES)
