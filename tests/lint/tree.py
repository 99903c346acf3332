"""The tree as the lint tests see it: tracked files, and new files that are not ignored."""
import pathlib
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]


def files(*suffixes):
    """Paths relative to the root, sorted; without suffixes, every file."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                            capture_output=True, check=True).stdout.decode().split("\0")
    return [name for name in sorted(filter(None, listed))
            if (not suffixes or name.endswith(suffixes)) and (ROOT / name).is_file()]


def text(name):
    return (ROOT / name).read_text(encoding="utf-8", errors="replace")
