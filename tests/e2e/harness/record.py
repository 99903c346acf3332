"""What the plug-ins of the simulated notebook recorded: one line per call of an export."""
import collections

Call = collections.namedtuple("Call", "time function export arguments result thread")


def read(path):
    if not path.exists():
        return []
    calls = []
    for line in path.read_text(encoding="utf-8").splitlines():
        fields = line.split("\t")
        # A line that is just being written is read the next time.
        if len(fields) == 6:
            calls.append(Call(*fields[:4], int(fields[4]), int(fields[5])))
    return calls
