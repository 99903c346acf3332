"""Real keys and a real mouse, through the X server."""
import contextlib
import re
import subprocess
import time

from .waiting import wait_until
from .xserver import PRESSED, RELEASED, XServer

MODIFIER = "Control_R"  # what stands in for Fn; its code is 0

# Key name -> PC set-1 scan code, which is the code of the key.
CODES = {"F1": 0x3B, "F2": 0x3C, "F3": 0x3D, "F4": 0x3E, "F5": 0x3F, "F6": 0x40, "F7": 0x41, "F8": 0x42, "F9": 0x43,
         "F10": 0x44, "F11": 0x57, "F12": 0x58, "b": 0x30, "e": 0x12, "p": 0x19, "a": 0x1E, "q": 0x10,
         "space": 0x39}


class Keyboard:
    """A key waits until a window receives it: while windows open and close, the window manager has the focus for
    moments."""

    TAP = 0.012  # minimum seconds that a key stays down, and up

    def __init__(self, environment):
        self._environment = environment
        self._server = XServer(environment["DISPLAY"])
        self._down = []
        self._button = False

    def close(self):
        self._server.close()

    def _do(self, *words):
        subprocess.run(["xdotool", *(str(word) for word in words)], env=self._environment, check=True, timeout=30)

    def _key(self, key, action):
        wait_until(lambda: self._server.key_if_heard(key, action), "a window that hears keys has the focus")

    def press_if_heard(self, key):
        """Without waiting: False, and no key, if no window would receive it now."""
        if not self._server.key_if_heard(key, PRESSED):
            return False
        time.sleep(self.TAP)
        self._server.key(key, RELEASED)
        time.sleep(self.TAP)
        return True

    def down(self, key):
        self._key(key, PRESSED)
        self._down.append(key)

    def up(self, key):
        self._key(key, RELEASED)
        if key in self._down:
            self._down.remove(key)

    def press(self, keys):
        """Down and up again; "a+b" holds a meanwhile."""
        names = keys.split("+")
        for name in names:
            self.down(name)
        time.sleep(self.TAP)
        for name in reversed(names):
            self.up(name)
        time.sleep(self.TAP)

    @contextlib.contextmanager
    def plain_caps_lock(self):
        """Caps Lock as a key like every other. The emulated system takes the state of the server's lock for its own as
        soon as another key is pressed, and cannot know that a hook has swallowed the key."""
        usual = self._keymap("-xkb", self._environment["DISPLAY"], "-")
        plain = re.sub(r"key <CAPS> \{[^}]*\}", "key <CAPS> { symbols[Group1]=[Caps_Lock], actions[Group1]=[NoAction()] }",
                       usual)
        assert plain != usual
        self._keymap("-", self._environment["DISPLAY"], keymap=plain)
        try:
            yield
        finally:
            self.release_all()
            self._keymap("-", self._environment["DISPLAY"], keymap=usual)

    def _keymap(self, *words, keymap=""):
        return subprocess.run(["xkbcomp", "-w", "0", *words], env=self._environment, input=keymap, text=True,
                              capture_output=True, check=True, timeout=30).stdout

    def release_all(self):
        """Whether or not a window receives it."""
        if self._button:
            self.mouse_up()
        while self._down:
            self._server.key(self._down.pop(), RELEASED)

    def move(self, x, y):
        self._do("mousemove", x, y)

    def click(self, x, y, button=1):
        self._do("mousemove", x, y, "click", button)

    def mouse_down(self, x, y):
        self._button = True
        self._do("mousemove", x, y, "mousedown", 1)

    def mouse_up(self):
        self._button = False
        self._do("mouseup", 1)

    def type(self, text):
        self._do("type", "--delay", 20, text)
