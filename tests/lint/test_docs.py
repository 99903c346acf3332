"""Links between documents lead somewhere, and what the documents name exists."""
import posixpath
import re
import subprocess

import tree

LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")
# `tools/x`, `docs/x.md`, ... in backquotes must exist too.
QUOTED = re.compile(r"`((?:tools|docs|src|framework|companions|plugins|tests|cmake|installer|bench|art)/[\w./-]+)")


def heading_anchor(line):
    words = re.sub(r"[^\w\- ]", "", line.lstrip("#").strip().lower())
    return words.replace(" ", "-")


def anchors(name):
    return {heading_anchor(line) for line in tree.text(name).splitlines() if line.startswith("#")}


def test_links_lead_somewhere():
    known, broken = set(tree.files()), []
    for name in tree.files(".md"):
        for link in LINK.findall(tree.text(name)):
            if "://" in link or link.startswith("mailto:"):
                continue
            target, _, anchor = link.partition("#")
            path = posixpath.normpath(posixpath.join(posixpath.dirname(name), target)) if target else name
            if not (path in known or (tree.ROOT / path).is_dir()):
                broken.append(f"{name}: {link}")
            elif anchor and path.endswith(".md") and anchor not in anchors(path):
                broken.append(f"{name}: {link} (no such heading)")
    assert not broken, "\n" + "\n".join(broken)


def test_named_files_exist():
    broken = []
    for name in tree.files(".md"):
        for quoted in QUOTED.findall(tree.text(name)):
            path = quoted.rstrip("./")
            if "*" not in path and not (tree.ROOT / path).exists():
                broken.append(f"{name}: {quoted}")
    assert not broken, "\n" + "\n".join(broken)


# The blocks of C++ in the plug-in guide are taken from the tree.
CODE = re.compile(r"^```cpp\n(.*?)^```$", re.DOTALL | re.MULTILINE)


def blocks_that_stand_nowhere(document, sources):
    return [block for block in CODE.findall(document) if not any(block in source for source in sources)]


def test_code_of_the_plugin_guide_stands_in_the_tree():
    sources = [tree.text(name) for name in tree.files(".h", ".cpp") if name.startswith("plugins/windows/")]
    document = tree.text("docs/plugin-guide.md")
    assert len(CODE.findall(document)) >= 2
    wrong = blocks_that_stand_nowhere(document, sources)
    assert not wrong, "the code changed; take it over:\n" + "\n".join(wrong)


def test_code_that_stands_nowhere_is_found():
    document = "```cpp\nint a = 1;\n```\n\n```cpp\nint b = 2;\n```\n"
    assert blocks_that_stand_nowhere(document, ["int a = 1;\n"]) == ["int b = 2;\n"]


def listed_pictures():
    done = subprocess.run([str(tree.ROOT / "tools" / "pictures"), "--list"], capture_output=True, text=True, check=True)
    return done.stdout.split()


def test_every_picture_is_made_by_the_command_that_makes_all():
    """But the left halves of the sheets before and after, which an earlier tree drew."""
    there = {name.removeprefix("docs/pictures/") for name in tree.files(".png") if name.startswith("docs/pictures/")}
    data = {name for name in there if name.startswith("before-after/before/")}
    assert there - data == set(listed_pictures())


def test_a_person_can_compare_the_sheets():
    widest = {name: size_of(name)[0] for name in listed_pictures() if name.startswith(("looks/", "before-after/"))}
    assert widest and {name: width for name, width in widest.items() if width > 2300} == {}


def chunks_of(data):
    """(type, content) of each chunk of a PNG."""
    at = 8
    while at < len(data):
        length = int.from_bytes(data[at:at + 4], "big")
        yield data[at + 4:at + 8], data[at + 8:at + 8 + length]
        at += 12 + length


def frames_of(data):
    return next((int.from_bytes(content[:4], "big") for kind, content in chunks_of(data) if kind == b"acTL"), 1)


def test_the_animation_has_its_frames_and_is_small():
    data = (tree.ROOT / "docs/pictures/hold-step-let-go.png").read_bytes()
    assert frames_of(data) == 5
    assert len(data) < 500_000


def size_of(name):
    data = (tree.ROOT / "docs/pictures" / name).read_bytes()
    return int.from_bytes(data[16:20], "big"), int.from_bytes(data[20:24], "big")


def test_every_picture_has_its_full_size():
    """At an image ratio of 1: whole screens, and cards whose enlarged card (144 pixels) and items are not scaled down."""
    least_card = 144 + 10 + 16
    sheets = ("looks/", "before-after/", "settings/")
    sizes = {name: size_of(name) for name in listed_pictures() if not name.startswith(sheets)}
    for name, (width, height) in sizes.items():
        if name.startswith("cards/"):
            assert height >= least_card and width > 96, f"{name}: {width} x {height}"
        else:
            whole = (880, 495) if frames_of((tree.ROOT / "docs/pictures" / name).read_bytes()) > 1 else (1600, 900)
            assert (width, height) == whole, name


def test_no_picture_is_empty():
    empty = [name for name in tree.files(".png") if name.startswith("docs/") and colours_of(name) < 16]
    assert not empty, empty


def colours_of(name):
    return int(subprocess.run(["identify", "-format", "%k", str(tree.ROOT / name)], capture_output=True, text=True,
                              check=True).stdout)
