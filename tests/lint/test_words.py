"""What the tree must not contain: paths of one machine, and remarks about how the work was organised."""
import re

import tree

# Split, so that this file does not contain what it searches for.
FORBIDDEN = [
    (re.compile(r"/(?:work|home|root|Users)" + r"/[a-z]", re.I), "a path of one machine"),
    (re.compile(r"\b[A-Z]:\\" + r"Users\\", re.I), "a path of one machine"),
    (re.compile(r"\bthe spec" + r"(?:ification)?\b", re.I), "say the rule itself, not where it was written"),
    (re.compile(r"\bspec" + r"\.md\b", re.I), "say the rule itself, not where it was written"),
    (re.compile(r"\bPart " + r"\d\.\d\b"), "say the rule itself, not where it was written"),
    (re.compile(r"\bissue " + r"#?\d+\b", re.I), "say what it is about"),
    (re.compile(r"\b(?:TO" + r"DO|FIX" + r"ME|XX" + r"X)\b"), "do it, or write down in docs what is missing"),
    (re.compile(r"\b(?:this|next|previous|earlier) ses" + r"sion\b", re.I), "the tree has no diary"),
]
BINARY = (".png", ".ico", ".bmp", ".dll", ".exe", ".zip")


def found_in(text):
    for number, line in enumerate(text.splitlines(), 1):
        for pattern, why in FORBIDDEN:
            match = pattern.search(line)
            if match:
                yield f"{number}: {match.group(0)!r}: {why}"


def test_no_file_says_what_only_its_writer_knew():
    found = [f"{name}:{hit}" for name in tree.files() if not name.endswith(BINARY) for hit in found_in(tree.text(name))]
    assert not found, "\n" + "\n".join(found)


def test_the_rule_itself_sees_a_forbidden_word():
    assert list(found_in("see /ho" + "me/someone/x"))
    assert list(found_in("as Part" + " 3.1 says"))
    assert not list(found_in("a user session ends; the special part 3 of the card"))
