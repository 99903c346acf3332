"""Who may include whose headers. Dependencies point one way: UI -> Logic -> Data -> common. Companions and plug-ins are
reached through their published headers only, and use nothing of the program but common and res. docs/architecture.md
shows the same table."""
import posixpath
import re

import pytest
import tree

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.M)

# A part of the tree -> the parts whose headers it may include in addition to its own. A file belongs to the part with
# the longest name that its path begins with; "src" itself is the application object and the entry point. A part named
# "include" is what its neighbour publishes.
PARTS = {
    "framework": [],
    "src/common": ["companions/include"],
    "src/res": [],
    "src/Messages.h": [],
    "src/Data/RegistryPaths.h": ["companions/include"],
    "src/Data": ["src/Data/RegistryPaths.h", "src/common", "companions/include"],
    "src/Logic/FuncX/FunctionTables.h": ["plugins/sdk", "src/res"],
    "src/Logic/HbqNotify.h": [],
    "src/Logic": ["src/Logic/FuncX/FunctionTables.h", "src/Logic/HbqNotify.h", "src/Data", "src/Data/RegistryPaths.h", "src/common", "src/res", "src/Messages.h", "framework", "companions/hotkey/include",
                  "companions/OutputSetup/include", "plugins/sdk"],
    "src/UI": ["src/Logic", "src/Data", "src/common", "src/res", "src/Messages.h", "framework",
               "companions/OutputSetup/include", "plugins/sdk"],
    "src": ["src/UI", "src/Logic", "src/Data", "src/common", "src/res", "src/Messages.h", "framework",
            "companions/hotkey/include", "companions/prtscreen/include", "src/Logic/HbqNotify.h"],
    "companions/include": [],
    "companions/keyboard": ["src/common"],
    "companions/hotkey/include": ["companions/include"],
    "companions/hotkey": ["companions/hotkey/include", "companions/include", "companions/keyboard", "src/common"],
    "companions/prtscreen/include": [],
    "companions/prtscreen": ["companions/prtscreen/include", "companions/keyboard", "src/common"],
    "companions/OutputSetup/include": ["companions/include", "plugins/sdk"],
    "companions/OutputSetup": ["companions/OutputSetup/include", "companions/include", "plugins/sdk", "framework",
                               "src/common", "src/res"],
    "companions/captions/include": [],
    "companions/captions": ["companions/captions/include", "src/common", "src/res"],
    "companions/FenwynCheck": ["companions/include", "companions/hotkey/include", "companions/captions/include",
                               "plugins/sdk", "plugins/sdk/check", "src/common", "src/res"],
    "plugins/sdk": [],
    "plugins/sdk/check": ["plugins/sdk", "src/common"],
    "plugins/simulated": ["plugins/sdk", "companions/include", "companions/hotkey/include",
                          "companions/OutputSetup/include", "companions/captions/include", "framework", "src/common"],
    "plugins/windows": ["plugins/sdk", "companions/include", "companions/keyboard", "companions/OutputSetup/include",
                        "framework", "src/common", "src/res"],
    "settings": ["companions/include", "companions/hotkey/include", "companions/hotkey", "companions/keyboard",
                 "companions/OutputSetup/include", "plugins/sdk",
                 "framework", "src/common", "src/res", "src/Messages.h", "src/Data/RegistryPaths.h",
                 "src/Logic/FuncX/FunctionTables.h", "src/Logic/HbqNotify.h", "companions/captions/include"],
}

# Includes against the direction of the table. (from, to): why. Allowed in sources only: a header uses a forward
# declaration instead.
KNOTS = {
    ("src/Logic/FuncX", "src/UI/ItemDlg"): "a function makes its card's item windows",
    ("src/Logic", "src"): "the application object's services",
    ("src/UI", "src"): "the application object's services",
}

# These may include everything, but the files must exist.
FREE = ("tests", "bench", "cmake")

# The compiler finds headers in these folders, in the including file's own folder and in that of its part.
FOLDERS = ["", "src", "src/res", "framework/include", "plugins/sdk"]


def inside(path, folder):
    return path == folder or path.startswith(folder + "/")


def sources():
    return tree.files(".cpp", ".h", ".c", ".rc")


def part(path):
    """The part that a file belongs to; None if there is none."""
    return max((name for name in PARTS if inside(path, name)), key=len, default=None)


def folders(includer, known):
    own = part(includer)
    found = FOLDERS + sorted({path[:path.index("/include/") + 8] for path in known if "/include/" in path})
    if own is not None:
        # For "plugins/sdk/check" the folder itself, for "companions/hotkey/include" also that of the neighbour.
        found += [own, posixpath.dirname(own)]
    else:
        found += ["tests", "tests/unit"] + sorted({posixpath.dirname(path) for path in known})
    return found


def resolve(includer, name, known):
    """The file that an include names; None if the including file cannot see it."""
    places = [posixpath.dirname(includer)] + folders(includer, known)
    candidates = (posixpath.normpath(posixpath.join(place, name)) for place in places)
    return next((path for path in candidates if path in known), None)


def knot(path, target):
    return next((pair for pair in KNOTS if inside(path, pair[0]) and inside(target, pair[1])
                 and part(target) == part(pair[1])), None)


def complaint(path, name, known):
    """What is wrong with one include, or None."""
    target = resolve(path, name, known)
    if target is None:
        return f'{path} includes "{name}": no such file that it may see'
    own, other = part(path), part(target)
    if own is None:
        return None if path.split("/")[0] in FREE else f"{path} belongs to no part of the tree's table"
    if other == own or other in PARTS[own]:
        return None
    if knot(path, target) is None:
        return f"{path} includes {target}: {own} must not know {other}"
    if path.endswith(".h"):
        return f"{path} includes {target}: a forward declaration here, the include in the source"
    return None


def violations(paths, read, known):
    found = (complaint(path, name, known) for path in paths for name in INCLUDE.findall(read(path)))
    return [text for text in found if text]


def test_includes_follow_the_table():
    found = violations(sources(), tree.text, set(tree.files()))
    assert not found, "\n" + "\n".join(found)


def test_every_knot_is_used():
    known = set(tree.files())
    tied = {knot(path, target) for path in sources() for name in INCLUDE.findall(tree.text(path))
            if (target := resolve(path, name, known)) is not None}
    assert set(KNOTS) <= tied


def test_table_has_no_circle():
    def below(name, way):
        assert name not in way, " -> ".join([*way, name])
        for other in PARTS[name]:
            below(other, [*way, name])
    for name in PARTS:
        below(name, [])


def test_every_source_belongs_to_a_part():
    lost = [path for path in sources() if part(path) is None and path.split("/")[0] not in FREE]
    assert not lost, lost
    # A new companion or family of plug-ins needs its own line.
    families = {"/".join(path.split("/")[:2]) for path in sources() if path.startswith(("companions/", "plugins/"))}
    assert families <= set(PARTS), sorted(families - set(PARTS))


def test_architecture_shows_the_same_table():
    rows = re.findall(r"^\| ([\w/.]+) \| ([^|]*) \|$", tree.text("docs/architecture.md").split("## Dependencies")[1]
                      .split("\n## ")[0], re.M)
    drawn = {name: [] if uses == "nothing" else uses.split(", ") for name, uses in rows if name != "part"}
    assert drawn == PARTS
    knots = re.findall(r"^- ([\w/]+) → ([\w/]+): (.*)\.$", tree.text("docs/architecture.md"), re.M)
    assert {(one, other): why for one, other, why in knots} == KNOTS


HEADERS = ["src/UI/B.h", "src/UI/ItemDlg/Item.h", "src/ZelMain.h", "src/common/B.h", "src/Logic/B.h",
           "companions/hotkey/Secret.h", "companions/hotkey/include/Published.h",
           "companions/keyboard/include/keyboard/Hook.h", "plugins/simulated/Machine.h", "plugins/sdk/FenwynPlugin.h",
           "plugins/sdk/check/Report.h"]


@pytest.mark.parametrize(
    "path, include, wrong",
    [
        ("src/common/A.cpp", "UI/B.h", True),
        ("src/common/A.cpp", "ZelMain.h", True),
        ("src/common/A.cpp", "common/Gone.h", True),
        ("src/common/A.cpp", "common/B.h", False),
        ("framework/src/A.cpp", "common/B.h", True),
        ("src/Data/A.cpp", "Logic/B.h", True),
        ("src/Logic/A.h", "UI/B.h", True),
        ("src/Logic/A.cpp", "UI/B.h", True),
        ("src/Logic/FuncX/A.cpp", "UI/ItemDlg/Item.h", False),
        ("src/Logic/FuncX/A.h", "UI/ItemDlg/Item.h", True),
        ("src/Logic/FuncX/A.cpp", "UI/B.h", True),
        ("src/Logic/A.cpp", "ZelMain.h", False),
        ("src/Logic/A.h", "ZelMain.h", True),
        ("src/UI/A.h", "Logic/B.h", False),
        ("src/Logic/A.cpp", "companions/hotkey/Secret.h", True),
        ("src/Logic/A.cpp", "Secret.h", True),
        ("src/Logic/A.cpp", "Published.h", False),
        ("src/UI/A.cpp", "Published.h", True),
        ("companions/prtscreen/A.cpp", "companions/hotkey/Secret.h", True),
        ("companions/prtscreen/A.cpp", "Secret.h", True),
        ("companions/prtscreen/A.cpp", "Published.h", True),
        ("companions/prtscreen/A.cpp", "keyboard/Hook.h", False),
        ("companions/hotkey/A.cpp", "Secret.h", False),
        ("companions/keyboard/src/A.cpp", "companions/hotkey/Secret.h", True),
        ("companions/OutputSetup/A.cpp", "plugins/simulated/Machine.h", True),
        ("companions/OutputSetup/A.cpp", "Machine.h", True),
        ("plugins/simulated/A.cpp", "Logic/B.h", True),
        ("plugins/simulated/plugin/A.cpp", "Machine.h", False),
        ("plugins/windows/A.cpp", "plugins/simulated/Machine.h", True),
        ("plugins/sdk/check/A.cpp", "FenwynPlugin.h", False),
        ("plugins/sdk/minimal/A.c", "plugins/sdk/check/Report.h", True),
        ("settings/A.cpp", "Logic/B.h", True),
        ("elsewhere/A.cpp", "common/B.h", True),
        ("tests/unit/hotkey/A.cpp", "Secret.h", False),
        ("tests/unit/hotkey/A.cpp", "Gone.h", True),
    ],
)
def test_the_rule_itself_sees_a_wrong_include(path, include, wrong):
    text = f'#include "{include}"\n'
    found = violations([path], lambda _: text, {path, *HEADERS})
    assert bool(found) == wrong, found
