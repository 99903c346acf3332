"""A Windows program and its threads, as the system below the emulated one counts them."""
import pathlib


def process_of(program):
    """The folder of the process that runs this program, or None. `program`: the path of its file, or its end."""
    for command in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
        try:
            text = command.read_bytes().decode(errors="replace").replace("\\", "/")
        except OSError:
            continue
        if text.split("\0")[0].endswith(str(program)):
            return command.parent
    return None


def wake_ups(process):
    """By thread: how often it waited for something that then happened."""
    counts = {}
    for status in (process / "task").glob("*/status"):
        for line in status.read_text().splitlines():
            if line.startswith("voluntary_ctxt_switches:"):
                counts[status.parent.name] = int(line.split()[1])
    return counts
