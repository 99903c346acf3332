"""The threads of a Windows program, as the system below the emulated one counts them."""
import pathlib


def tasks_of(program):
    """The folder of its threads, or None if it does not run. `program`: the path of its file."""
    for command in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
        try:
            text = command.read_bytes().decode(errors="replace").replace("\\", "/")
        except OSError:
            continue
        if str(program) in text and "python" not in text:
            return command.parent / "task"
    return None


def wake_ups(folder):
    """By thread: how often it waited for something that then happened."""
    counts = {}
    for status in folder.glob("*/status"):
        for line in status.read_text().splitlines():
            if line.startswith("voluntary_ctxt_switches:"):
                counts[status.parent.name] = int(line.split()[1])
    return counts
