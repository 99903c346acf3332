"""The program's log, line by line."""
import re

LINE = re.compile(r"^(?P<stamp>(?:\d{4}-\d\d-\d\d )?\d\d:\d\d:\d\d\.\d{3}: |\d+\.\d{3}: )?"
                  r"(?P<file>[^()]+)\((?P<line>\d+)\):  \[(?P<level>ERR|WRN|INF|TRC)\] \((?P<function>[^)]*)\): "
                  r"(?P<text>.*)$", re.S)


class Line:
    def __init__(self, raw):
        match = LINE.match(raw)
        assert match, f"not a log line: {raw!r}"
        self.raw = raw
        self.stamp = match["stamp"] or ""
        self.file = match["file"]
        self.line = int(match["line"])
        self.level = match["level"]
        self.function = match["function"]
        self.text = match["text"]

    @property
    def short(self):
        """The fields that a test compares: level, function, message."""
        return f"{self.level} {self.function}: {self.text}"

    def __repr__(self):
        return self.short


def parse(data):
    """Lines of a log file's bytes. Text mode ends each with CR LF; a message may contain a line feed of its own."""
    text = data.decode("utf-8", "replace")
    return [Line(raw) for raw in text.split("\r\n") if raw]


class Growing:
    """A log file that is read repeatedly while it grows: each line is parsed once."""

    def __init__(self, file):
        self._file = file
        self._parsed = b""
        self._lines = []

    def lines(self):
        """All complete lines; a line that is just being written is read the next time."""
        data = self._file.read_bytes() if self._file.exists() else b""
        if not data.startswith(self._parsed):
            # Another start has truncated the file.
            self._parsed, self._lines = b"", []
        whole = b"".join(data.rpartition(b"\r\n")[:2])
        self._lines += parse(whole[len(self._parsed):])
        self._parsed = whole
        return self._lines[:]
