"""The virtual screen and its pixels."""
import os
import shlex
import subprocess

from . import places

BACKGROUND = (0x30, 0x60, 0x90)
WIDTH, HEIGHT = 1280, 800


class Picture:
    """Pixels of a part of the screen, addressed by screen coordinates."""

    def __init__(self, left, top, width, height, data):
        assert len(data) == width * height * 3, (width, height, len(data))
        self.left, self.top, self.width, self.height = left, top, width, height
        self.data = data

    def at(self, x, y):
        offset = ((y - self.top) * self.width + (x - self.left)) * 3
        return tuple(self.data[offset:offset + 3])

    def share_of(self, rect, wanted):
        """The share of the rectangle's pixels for which wanted(rgb) is true."""
        hits = total = 0
        for y in range(max(rect.top, self.top), min(rect.bottom, self.top + self.height)):
            for x in range(max(rect.left, self.left), min(rect.right, self.left + self.width)):
                total += 1
                hits += 1 if wanted(self.at(x, y)) else 0
        return hits / total if total else 0.0

    def is_plain(self, rect, colour=BACKGROUND):
        return self.share_of(rect, lambda rgb: rgb == colour) == 1.0

    def __eq__(self, other):
        return self.data == other.data


class Screen:
    """The tests' own X server; tools/virtual-screen starts and stops it. With a second size it has a second monitor, to
    the right of the first."""

    def __init__(self, size=(WIDTH, HEIGHT), second=None):
        monitors = [size] + ([second] if second else [])
        self.width, self.height = sum(width for width, _ in monitors), max(height for _, height in monitors)
        colour = "#%02x%02x%02x" % BACKGROUND
        sizes = "+".join(f"{width}x{height}" for width, height in monitors)
        text = subprocess.run([str(places.ROOT / "tools" / "virtual-screen"), "start", sizes],
                              capture_output=True, text=True, check=True, timeout=60,
                              env=dict(os.environ, SCREEN_BACKGROUND=f"-solid {colour}")).stdout
        values = dict(line.split("=", 1) for line in text.splitlines())
        self.display = values["DISPLAY"]
        self._pids = shlex.split(values["SCREEN_PIDS"])[0].split()

    def picture(self, rect=None):
        left, top, right, bottom = rect or (0, 0, self.width, self.height)
        left, top, right, bottom = max(left, 0), max(top, 0), min(right, self.width), min(bottom, self.height)
        width, height = right - left, bottom - top
        data = subprocess.run(["import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}",
                               "-depth", "8", "rgb:-"], capture_output=True, check=True, timeout=30,
                              env=dict(os.environ, DISPLAY=self.display)).stdout
        return Picture(left, top, width, height, data)

    def save(self, path):
        subprocess.run([str(places.ROOT / "tools" / "screenshot"), str(path)], check=False, timeout=30,
                       env=dict(os.environ, DISPLAY=self.display))

    def stop(self):
        subprocess.run([str(places.ROOT / "tools" / "virtual-screen"), "stop", *self._pids], check=True, timeout=60)
