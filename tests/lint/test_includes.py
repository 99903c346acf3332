"""Dependencies point one way: UI -> Logic -> Data -> common, UI -> framework; companions and plug-ins are reached through
their published headers only, and see nothing of the program."""
import posixpath
import re

import pytest
import tree

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.M)

# Room -> rooms whose headers it may include beside its own. "core" is the application object, src/ZelMain.*, and the
# entry point.
MAY_INCLUDE = {
    "framework": set(),
    "common": set(),
    "res": set(),
    "Data": {"common"},
    "Logic": {"Data", "common", "framework", "core", "UI", "res", "published"},
    "UI": {"Logic", "Data", "common", "framework", "core", "res", "published"},
    "core": {"UI", "Logic", "Data", "common", "framework", "res", "published"},
    "companions": {"framework", "common", "published"},
    "plugins": {"framework", "common", "published"},
    "art": {"published"},
}
# Logic and UI know each other in both directions where the design makes a function create its item windows and the key
# events reach the strip. A header of Logic never shows a window class, though: that knot is tied in sources only.
SOURCES_ONLY = {("Logic", "UI"), ("Logic", "core"), ("UI", "core")}


def room(path):
    """The room of the house that a file lies in; None for what has no rule (tests, bench)."""
    parts = path.split("/")
    if parts[0] == "framework":
        return "framework"
    if parts[0] == "src":
        return parts[1] if len(parts) > 2 else "core"
    if parts[0] in ("companions", "plugins") and ("include" in parts or parts[1] == "sdk"):
        return "published"
    return parts[0] if parts[0] in MAY_INCLUDE else None


def resolve(includer, name, known):
    """The file that an include names, or None when it is not one of this tree."""
    beside = posixpath.normpath(posixpath.join(posixpath.dirname(includer), name))
    if beside in known:
        return beside
    roots = ["src/", "framework/include/", "plugins/sdk/", "art/", ""]
    roots += sorted({path.split("/include/")[0] + "/include/" for path in known if "/include/" in path})
    return next((root + name for root in roots if root + name in known), None)


def violations(paths, read):
    known = set(paths)
    found = []
    for path in paths:
        own = room(path)
        if own not in MAY_INCLUDE:
            continue
        for name in INCLUDE.findall(read(path)):
            target = resolve(path, name, known)
            other = room(target) if target else None
            if other in (None, own):
                continue
            if other not in MAY_INCLUDE[own]:
                found.append(f"{path} includes {target}: {own} must not know {other}")
            elif (own, other) in SOURCES_ONLY and path.endswith(".h"):
                found.append(f"{path} includes {target}: a forward declaration here, the include in the source")
    return found


def test_includes_point_one_way():
    found = violations(tree.files(".cpp", ".h", ".c"), tree.text)
    assert not found, "\n" + "\n".join(found)


@pytest.mark.parametrize(
    "path, include, wrong",
    [
        ("src/common/A.cpp", "UI/B.h", True),
        ("src/common/A.cpp", "ZelMain.h", True),
        ("framework/src/A.cpp", "common/B.h", True),
        ("src/Data/A.cpp", "Logic/B.h", True),
        ("src/Logic/A.h", "UI/B.h", True),
        ("src/Logic/A.cpp", "UI/B.h", False),
        ("src/UI/A.h", "Logic/B.h", False),
        ("src/Logic/A.cpp", "companions/hotkey/Secret.h", True),
        ("src/Logic/A.cpp", "Published.h", False),
        ("plugins/simulated/A.cpp", "Logic/B.h", True),
    ],
)
def test_the_rule_itself_sees_a_wrong_include(path, include, wrong):
    headers = ["src/UI/B.h", "src/ZelMain.h", "src/common/B.h", "src/Logic/B.h", "companions/hotkey/Secret.h",
               "companions/hotkey/include/Published.h"]
    found = violations([path] + headers, lambda name: f'#include "{include}"\n' if name == path else "")
    assert bool(found) == wrong, found
