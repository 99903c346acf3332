"""When a picture is on the screen: rows of pixels, asked of the X server until they are those that were learnt."""
import ctypes
import time

ZPIXMAP, ALL_PLANES = 2, 0xFFFFFFFF
PAUSE = 0.0001  # seconds between two questions
SETTLED = 0.5  # a picture that stayed for so long is complete
ROWS = 7  # of a rectangle, spread over it


def alike(row, wanted):
    """Whether no byte differs by more than a few steps: the window behind a picture, which only takes the mouse, has an
    alpha of 1. All bytes at once, because a loop over them would take longer than what is measured."""
    if row == wanted:
        return True
    ones = int.from_bytes(b"\1" * len(row), "little")
    halves = [int.from_bytes(text, "little") >> 1 & 0x7F * ones for text in (row, wanted)]
    # Per byte 0x80 and the difference of the halves, which borrows nothing from its neighbour.
    difference = (halves[0] | 0x80 * ones) - halves[1] + 2 * ones
    return difference & 0xF8 * ones == 0x80 * ones


class _Image(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int), ("format", ctypes.c_int),
                ("data", ctypes.c_void_p), ("byte_order", ctypes.c_int), ("unit", ctypes.c_int),
                ("bit_order", ctypes.c_int), ("pad", ctypes.c_int), ("depth", ctypes.c_int), ("stride", ctypes.c_int)]


class Pixels:
    def __init__(self, display):
        self._x = ctypes.CDLL("libX11.so.6")
        self._x.XOpenDisplay.restype = ctypes.c_void_p
        self._x.XDefaultRootWindow.restype = ctypes.c_ulong
        self._x.XGetImage.restype = ctypes.POINTER(_Image)
        self._x.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int, ctypes.c_uint,
                                      ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]
        self._x.XFree.argtypes = [ctypes.c_void_p]
        self._display = ctypes.c_void_p(self._x.XOpenDisplay(display.encode()))
        self._root = self._x.XDefaultRootWindow(self._display)

    def close(self):
        self._x.XCloseDisplay(self._display)

    def row(self, left, top, width):
        image = self._x.XGetImage(self._display, self._root, left, top, width, 1, ALL_PLANES, ZPIXMAP)
        try:
            return ctypes.string_at(image.contents.data, image.contents.stride)
        finally:
            self._x.XFree(image.contents.data)
            self._x.XFree(image)

    def rows(self, rect):
        """Descriptions of some rows of a rectangle."""
        height = rect.bottom - rect.top
        return [(rect.left, rect.top + height * (2 * i + 1) // (2 * ROWS), rect.right - rect.left) for i in range(ROWS)]

    def of(self, rows):
        return [self.row(*row) for row in rows]

    def learn(self, rows, before, deadline=10):
        """The pixels once they have changed from those before, and no longer change."""
        end, last, since = time.monotonic() + deadline, before, None
        while time.monotonic() < end:
            time.sleep(0.01)
            now = self.of(rows)
            if now != last:
                last, since = now, time.monotonic()
            elif since and time.monotonic() - since > SETTLED:
                return last
        raise SystemExit("the screen does not change, or does not come to rest")

    def wait(self, rows, wanted, deadline=3):
        """Returns when all of them are there, or None after the deadline."""
        end, index = time.monotonic() + deadline, 0
        while index < len(rows):
            if alike(self.row(*rows[index]), wanted[index]):
                index += 1
                continue
            now = time.monotonic()
            if now > end:
                return None
            time.sleep(PAUSE)
        return time.monotonic()
