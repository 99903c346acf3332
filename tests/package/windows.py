"""A Windows on which something is installed: its files and its registry, as they are and as they were."""
import os
import pathlib
import re
import subprocess

from harness import places

# What Windows itself writes meanwhile.
OF_THE_SYSTEM = re.compile(r"\\(Wine|Explorer|Shell Folders|UserAssist|Fonts|Prefetcher|Tracing|MMDevices)(\\|$)", re.IGNORECASE)
ROOTS = ("HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE")


class Windows:
    def __init__(self, desktop):
        self.environment = desktop.environment
        self.drive = pathlib.Path(self.environment["WINEPREFIX"]) / "drive_c"

    def start(self, *command):
        return subprocess.Popen([str(places.WINE), *map(str, command)], env=self.environment,
                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def run(self, *command, timeout=120):
        return self.start(*command).wait(timeout)

    def path(self, windows_path):
        """Where a file on drive C is."""
        return self.drive / windows_path[3:].replace("\\", "/")

    def files(self):
        """{path below drive C: size}, without those of the system and temporary ones."""
        found = {}
        for folder, folders, names in os.walk(self.drive):
            system = folder == str(self.drive)
            folders[:] = [name for name in folders if name.lower() != ("windows" if system else "temp")]
            for name in names:
                path = pathlib.Path(folder) / name
                found[str(path.relative_to(self.drive))] = path.lstat().st_size
        return found

    def registry(self, *roots):
        """{(key, name): value} of the software's branches, and ours without values: {(key, None): ""}. The machine's takes
        seconds."""
        values = {}
        for root in roots or ROOTS:
            file = self.drive / "windows" / "temp" / "exported.reg"
            file.unlink(missing_ok=True)
            assert self.run("reg", "export", f"{root}\\Software", "C:\\windows\\temp\\exported.reg", "/y") == 0
            key = ""
            for line in file.read_text("utf-16").replace("\\\n  ", "").splitlines():
                if line.startswith("["):
                    key = line[1:-1]
                    if "KESTOVA" in key or "Fenwyn" in key:
                        values[key, None] = ""
                elif line:
                    name, _, value = line.partition("=")
                    values[key, name] = value
        return {(key, name): value for (key, name), value in values.items() if not OF_THE_SYSTEM.search(key)}
