"""Real keys and a real mouse, through the X server."""
import subprocess

MODIFIER = "Control_R"  # what stands in for Fn; its code is 0

# Key name -> PC set-1 scan code, which is the code of the key.
CODES = {"F1": 0x3B, "F2": 0x3C, "F3": 0x3D, "F4": 0x3E, "F5": 0x3F, "F6": 0x40, "F7": 0x41, "F8": 0x42, "F9": 0x43,
         "F10": 0x44, "F11": 0x57, "F12": 0x58, "b": 0x30, "e": 0x12, "p": 0x19, "a": 0x1E, "q": 0x10,
         "space": 0x39}


class Keyboard:
    def __init__(self, environment):
        self._environment = environment
        self._down = []
        self._button = False

    def _do(self, *words):
        subprocess.run(["xdotool", *(str(word) for word in words)], env=self._environment, check=True, timeout=30)

    def down(self, key):
        self._do("keydown", key)
        self._down.append(key)

    def up(self, key):
        self._do("keyup", key)
        if key in self._down:
            self._down.remove(key)

    def press(self, key):
        """Down and up again."""
        self._do("key", key)

    def release_all(self):
        if self._button:
            self.mouse_up()
        for key in reversed(self._down[:]):
            self.up(key)

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
