"""The probe: a program inside the desktop that lists windows, sends messages and writes the registry (probe/*.cpp)."""
import collections
import json
import subprocess

from . import places

Rect = collections.namedtuple("Rect", "left top right bottom")

WM_CLOSE = 0x0010
WM_KEYDOWN = 0x0100
WM_USER = 0x0400
KEY_WINDOW_CLASS = "FenwynTestsOtherProgram"


class Window:
    """A top-level window at the time of listing."""

    def __init__(self, entry):
        self.hwnd = entry["hwnd"]
        self.pid = entry["pid"]
        self.cls = entry["class"]
        self.title = entry["title"]
        self.rect = Rect(*entry["rect"])
        self.visible = entry["visible"]
        self.style = entry["style"]
        self.exstyle = entry["exstyle"]
        self.owner = entry["owner"]
        self.id = entry["id"]  # of a control

    @property
    def size(self):
        return self.rect.right - self.rect.left, self.rect.bottom - self.rect.top

    def __repr__(self):
        shown = "shown" if self.visible else "hidden"
        return f"<{self.cls} {self.title!r} {tuple(self.rect)} {shown} ex=0x{self.exstyle:x} pid={self.pid}>"


Heard = collections.namedtuple("Heard", "event hwnd object child name value")


class Accessible:
    """An accessible object or a part of one, with what is below it."""

    def __init__(self, entry):
        self.role = entry["role"]
        self.name = entry["name"]
        self.value = entry["value"]
        self.description = entry["description"]
        self.state = entry["state"]
        self.action = entry["action"]
        self.rect = Rect(*entry["rect"])
        self.children = [Accessible(child) for child in entry["children"]]

    def __repr__(self):
        return (f"<role {self.role} {self.name!r} value {self.value!r} ({self.description!r}) state 0x{self.state:x} "
                f"{tuple(self.rect)} {self.children}>")


class Probe:
    def __init__(self, environment):
        assert places.PROBE.exists(), "there is no probe yet: tools/build x64-release"
        self._process = subprocess.Popen([str(places.WINE), str(places.PROBE)], env=environment,
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)

    def ask(self, *words):
        line = "\t".join(str(word) for word in words)
        self._process.stdin.write(line.encode() + b"\n")
        self._process.stdin.flush()
        answer = self._process.stdout.readline()
        if not answer:
            raise AssertionError(f"the probe ended at: {line}")
        value = json.loads(answer)
        if isinstance(value, dict) and "error" in value:
            raise AssertionError(f"{value['error']}: {line}")
        return value

    def end(self):
        self._process.stdin.close()
        self._process.wait(20)

    # Windows
    def windows(self, cls=None, pid=None, visible=None):
        """Top-level windows, topmost first."""
        found = [Window(entry) for entry in self.ask("windows")]
        return [w for w in found if (cls is None or w.cls == cls) and (pid is None or w.pid == pid)
                and (visible is None or w.visible == visible)]

    def controls(self, hwnd):
        """All windows inside this one."""
        return [Window(entry) for entry in self.ask("controls", hwnd)]

    def work_area(self):
        return Rect(*self.ask("work-area")["rect"])

    def dpi(self):
        return self.ask("work-area")["dpi"]

    def foreground(self):
        return self.ask("foreground")["window"]

    def text_field(self, hwnd):
        """The text in the window's text field."""
        return self.ask("text-field", hwnd)

    def post(self, hwnd, message, w_param=0, l_param=0):
        return self.ask("message", "post", hwnd, message, w_param, l_param)

    def send(self, hwnd, message, w_param=0, l_param=0):
        return self.ask("message", "send", hwnd, message, w_param, l_param)

    def register_message(self, name):
        return self.ask("register-message", name)

    # A window of another program
    def make_window(self, cls=KEY_WINDOW_CLASS, title="Other program", rect=Rect(40, 560, 440, 760)):
        return self.ask("make-window", cls, title, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top)

    def received(self, hwnd):
        """(message, wParam, lParam) that the window got since the last query."""
        return [tuple(entry) for entry in self.ask("received", hwnd)]

    def focus(self, hwnd):
        """0 is the desktop: no program has the focus."""
        return self.ask("focus-window", hwnd)

    def destroy(self, hwnd):
        return self.ask("destroy-window", hwnd)

    # Accessible objects
    def read(self, hwnd):
        return Accessible(self.ask("read", hwnd))

    def read_at(self, x, y):
        return Accessible(self.ask("read-at", x, y))

    def press(self, hwnd, part=0):
        """Its status."""
        return self.ask("press", hwnd, part)

    def set_value(self, hwnd, value):
        return self.ask("set", hwnd, value)

    def listen(self):
        assert self.ask("listen")

    def heard(self):
        """The events since listen(), in order."""
        return [Heard(*(entry[field] for field in Heard._fields)) for entry in self.ask("heard")]

    # Processes and objects
    def processes(self, file):
        return [entry["pid"] for entry in self.ask("processes") if entry["file"].lower() == file.lower()]

    def handles(self, pid):
        """{"kernel": n, "gdi": n}"""
        return {kind: count for kind, count in self.ask("count-handles", pid).items() if kind != "gdi kinds"}

    def gdi_kinds(self, pid):
        """{"device contexts": n, ...}"""
        return self.ask("count-handles", pid)["gdi kinds"]

    def user_objects(self):
        """Windows, menus, cursors, hooks and the like, of all processes."""
        return self.ask("count-user-objects")

    def send_nonsense(self, pid, seed, count):
        """Random messages to all windows of a process; fails if one is not answered within five seconds."""
        return self.ask("send-nonsense", pid, seed, count)

    def play_rounds(self, strip, codes):
        """For each code: the strip comes, then the card of the code (0: none), then both go, by messages."""
        return self.ask("play-rounds", strip, *codes)

    def hold(self, kind, name):
        return self.ask("hold-object", kind, name)

    def release(self):
        return self.ask("release-objects")

    def take_hooks(self):
        """Takes the hooks of all processes away; their number."""
        return self.ask("take-hooks")

    def set_event(self, name):
        return self.ask("set-event", name)

    # Registry
    def set_dword(self, root, key, name, value):
        self.ask("set-value", root, key, name, "dword", value)

    def set_text(self, root, key, name, value):
        self.ask("set-value", root, key, name, "sz", value)

    def set_binary(self, root, key, name, value):
        self.ask("set-value", root, key, name, "hex", bytes(value).hex())

    def get_value(self, root, key, name):
        """The stored bytes."""
        return bytes.fromhex(self.ask("get-value", root, key, name)["hex"])

    def delete_key(self, root, key):
        self.ask("delete-key", root, key)

    def delete_value(self, root, key, name):
        self.ask("delete-value", root, key, name)
