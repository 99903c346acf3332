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


def test_no_picture_is_empty():
    empty = [name for name in tree.files(".png") if name.startswith("docs/") and colours_of(name) < 64]
    assert not empty, empty


def colours_of(name):
    return int(subprocess.run(["identify", "-format", "%k", str(tree.ROOT / name)], capture_output=True, text=True,
                              check=True).stdout)
