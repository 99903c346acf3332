"""Just enough of the syntax of C++ to find the declarations of a file and the members of its classes."""
import dataclasses
import re

# What declarations are read without: comments, texts, directives.
_NOISE = re.compile(r'//[^\n]*|/\*.*?\*/'
                    r'|R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"'
                    r"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])*'"
                    r'|^[ \t]*#(?:\\\n|[^\n])*', re.S | re.M)
_CLASS = re.compile(r'^(?:template\s*<.*>\s*)?(?:typedef\s+)?(?P<kind>class|struct|union)\s+(?:\[\[.*?\]\]\s*)?'
                    r'(?P<name>[\w:]+)(?:\s*<[^{}]*>)?\s*(?:final\s*)?(?::(?!:).*)?$', re.S)
_TRANSPARENT = re.compile(r'(?:inline\s+)?namespace\b|extern\s*""$')
_ACCESS = re.compile(r'(?:public|protected|private)$')
_NO_FUNCTION = re.compile(r'(?:using|friend|typedef|static_assert|enum|goto|return|,|\))')
_FUNCTION = re.compile(r'^(?P<before>.*?)(?P<name>~?[\w:]+)\s*\((?!\s*(?:\w+\s*)?\*)', re.S)


@dataclasses.dataclass(frozen=True)
class Class:
    kind: str         # class, struct or union
    name: str
    outer: tuple      # names of the classes around it, the outermost first


@dataclasses.dataclass(frozen=True)
class Declaration:
    owner: tuple      # names of the classes around it; empty at namespace level
    access: str       # public, protected or private
    text: str         # without its body
    line: int

    def function(self):
        """(what stands before the name, name) of a function with a name; None for anything else."""
        text = self.text
        if _NO_FUNCTION.match(text) or re.search(r'\boperator\b', text):
            return None
        while (plain := re.sub(r'<[^<>()]*(?:\([^<>()]*\)[^<>()]*)?>', ' ', text)) != text:
            text = plain
        hit = _FUNCTION.match(text)
        before = hit["before"].strip() if hit else ""
        return (before, hit["name"]) if before and "=" not in before else None


def code(text):
    """Without comments, texts and directives; lines keep their numbers."""
    return _NOISE.sub(lambda hit: ('""' if hit[0][0] in "R\"'" else " ") + "\n" * hit[0].count("\n"), text)


def _past(text, begin):
    """Where the brace or parenthesis that opens at `begin` is closed, and a step further."""
    depth = 0
    for place in range(begin, len(text)):
        depth += (text[place] in "{(") - (text[place] in "})")
        if depth == 0:
            return place + 1
    return len(text)


def parse(text):
    """([Class], [Declaration]) of a source, those in the bodies of functions left out."""
    text = code(text)
    classes, declarations = [], []
    scopes = [((), "public")]  # names of the classes around, access
    begin = place = 0

    def declare(head):
        if head:
            line = text.count("\n", 0, text.index(head, begin)) + 1
            declarations.append(Declaration(scopes[-1][0], scopes[-1][1], " ".join(head.split()), line))

    while place < len(text):
        letter, head = text[place], text[begin:place].strip()
        if letter == "(":
            place = _past(text, place)
            continue
        if letter == "{":
            kind = _CLASS.match(head)
            if kind:
                classes.append(Class(kind["kind"], kind["name"], scopes[-1][0]))
                scopes.append((scopes[-1][0] + (kind["name"],), "private" if kind["kind"] == "class" else "public"))
            elif _TRANSPARENT.match(head):
                scopes.append(scopes[-1])
            else:
                declare(head)
                place = _past(text, place) - 1
            begin = place + 1
        elif letter == "}":
            scopes.pop()
            begin = place + 1
        elif letter == ";":
            declare(head)
            begin = place + 1
        elif letter == ":" and _ACCESS.match(head):
            scopes[-1] = (scopes[-1][0], head)
            begin = place + 1
        place += 1
    return classes, declarations
