"""A desktop for one run of the tests: screen, Wine prefix, probe, keyboard; and the program started on it."""
import collections
import contextlib
import os
import shutil
import signal
import subprocess
import time

from . import log, places, record
from .functions import numbered
from .keyboard import MODIFIER, Keyboard
from .probe import WM_CLOSE, WM_KEYDOWN, WM_USER, Probe, Rect
from .screen import Screen
from .waiting import stays, wait_until

STRIP_CLASS = "ZelMainDlgCls_A4E19C07-6B3D-4D52-8F0A-91C3E57D2B68"
FRAME_CLASS, FRAME_TITLE = "ZelMainCls", "KESTOVA Fenwyn"
LAYERED_PREFIX = "QRD_LayeredWnd"
DIALOG_CLASS = "#32770"
MUTEX = "_ZelMain_Mutex_"
END_EVENT = "Local\\KESTOVA_Fenwyn_End"

PRODUCT = "SOFTWARE\\KESTOVA\\Fenwyn"
CONFIG = "SOFTWARE\\KESTOVA\\Fenwyn\\Config"
LIST = "SOFTWARE\\KESTOVA\\Fenwyn\\HotKey"
MAKER = "SOFTWARE\\KESTOVA"
NOTEBOOK = "SOFTWARE\\KESTOVA\\Simulated Notebook"  # in HKCU; one subkey per function

SHOW_OR_FLASH = WM_USER + 102
HIDE_STRIP = WM_USER + 104
HOTKEY_EVENT = WM_USER + 101

WS_EX_NOACTIVATE = 0x08000000
# In reading order. A user's values override the machine's.
Setting = collections.namedtuple("Setting", "name default scope")
USER, MACHINE = "user", "machine"
SETTINGS = [
    Setting("Disable", 0, USER),
    Setting("Position", 0, USER),
    Setting("EnableHover", 0, USER),
    Setting("MouseEnterIdle", 0, USER),
    Setting("Topmost", 0, USER),
    Setting("MonitorOfActiveWindow", 0, USER),
    Setting("HideInFullScreen", 0, USER),
    Setting("HideMainDlg", 0, MACHINE),
    Setting("IgnoreFnKey", 0, MACHINE),
    Setting("AutoHide", 0, MACHINE),
    Setting("AutoHideDelayTime", 2000, MACHINE),
    Setting("HideCaption", 0, MACHINE),
    Setting("Programmable", 0, MACHINE),
    Setting("ShowQrdAtLaunch", 0, MACHINE),
    Setting("AlwaysShowItemsCaption", 0, MACHINE),
    Setting("ItemDescMaxWidth", 100, MACHINE),
    Setting("SliderThumbSize", 20, MACHINE),
    Setting("HideMainUIWhenLostFocus", 0, MACHINE),
    Setting("PluginPatience", 3000, MACHINE),
    Setting("PluginEndTime", 20000, MACHINE),
]
CONFIG_DEFAULTS = {setting.name: setting.default for setting in SETTINGS}


class Desktop:
    """Created once per run. A desktop on another screen needs its own prefix, because Wine has one desktop per
    prefix."""

    def __init__(self, screen=None, prefix=places.PREFIX):
        self.screen = screen or Screen()
        self.environment = dict(os.environ, DISPLAY=self.screen.display, WINEPREFIX=str(prefix))
        subprocess.run([str(places.ROOT / "tools" / "prefix")], env=self.environment, check=True, timeout=120)
        self.probe = Probe(self.environment)
        self.keyboard = Keyboard(self.environment)
        self.window = 0

    def work_area(self):
        return self.probe.work_area()

    def take_focus(self):
        """Gives a window of another program the focus: keys reach the keyboard hook only while some window has it."""
        self.window = self.probe.make_window()
        self.focus(self.window)

    def focus(self, window):
        """Gives a window of the probe the focus; returns when keys really reach it."""
        def arrives_within(seconds):
            end = time.monotonic() + seconds
            while time.monotonic() < end:
                self.keyboard.press_if_heard("Scroll_Lock")
                if any(message == WM_KEYDOWN for message, _, _ in self.probe.received(window)):
                    return True
            return False

        def takes_it():
            # A window that has just gone may take the focus of the X server with it, while Wine believes that this one
            # still has it. Therefore it is passed round.
            self.probe.focus(0)
            self.probe.focus(window)
            wait_until(lambda: self.probe.foreground() == window, "the other program's window has the focus")
            return arrives_within(0.5)
        wait_until(takes_it, "keys reach the other program's window")

    def reset(self):
        """A clean state: no settings, no keys down, no windows of ours."""
        self.keyboard.release_all()
        self.keyboard.move(self.screen.width - 2, self.screen.height // 2)
        for root in ("HKLM", "HKCU"):
            self.probe.delete_key(root, MAKER)
        self.probe.release()
        self.leave_alone()

    def leave_alone(self):
        """Closes the window of the other program."""
        if self.window:
            self.probe.destroy(self.window)
            self.window = 0

    def close(self):
        self.probe.end()
        self.keyboard.close()
        subprocess.run([str(places.ROOT / "tools" / "wine-end")], env=self.environment, check=False, timeout=60)
        self.screen.stop()


class Program:
    """Fenwyn in a folder of its own, with its settings; one per test. Nothing runs before start()."""

    def __init__(self, desktop, folder):
        self.desktop = desktop
        self.probe = desktop.probe
        self.keyboard = desktop.keyboard
        self.folder = folder
        self.stage = folder / "stage"
        self.log_file = folder / "log.txt"
        self.record_file = folder / "calls.txt"
        self.functions = []
        self.bottom = False
        self._settings = {}
        self._started = []
        self._log = log.Growing(self.log_file)
        shutil.rmtree(folder, ignore_errors=True)
        # Hard links: copying the stage folder costs nothing, and each copy has its own DbgLog.ini.
        shutil.copytree(places.STAGE, self.stage, copy_function=_link)
        (self.stage / "DbgLog.ini").unlink(missing_ok=True)
        self._log_to(self.log_file)
        self.renew_machine()

    # Configuration before the start
    def write_log_settings(self, **values):
        text = "[LOG]\r\n" + "".join(f"{key}={value}\r\n" for key, value in values.items())
        (self.stage / "DbgLog.ini").write_bytes(text.encode())

    def _log_to(self, file):
        self.write_log_settings(Level=3, Destination=2, LogFile=places.windows_path(file), Flush=1)

    def configure(self, **values):
        """All settings in the machine key: defaults, except those given. There is no key of the user."""
        unknown = set(values) - set(CONFIG_DEFAULTS)
        assert not unknown, unknown
        self._settings = dict(CONFIG_DEFAULTS, **values)
        for name, value in self._settings.items():
            self.probe.set_dword("HKLM", CONFIG, name, value)
        self.bottom = self._settings["Position"] != 0

    def offer(self, *functions, root="HKLM"):
        """Writes the function list: names of circle functions (keys F1, F2, ...), or Function records. HKCU: the
        user's own list."""
        names = [entry for entry in functions if isinstance(entry, str)]
        self.functions = numbered(names) if names else list(functions)
        for function in self.functions:
            key = f"{LIST}\\{function.name}"
            plugin = function.plugin or places.windows_path(self.stage / "plugins" / f"Sim{function.name}.dll")
            self.probe.set_text(root, key, "Caption", function.caption)
            self.probe.set_binary(root, key, "Code", b"".join(code.to_bytes(4, "little") for code in function.codes))
            self.probe.set_text(root, key, "FuncDll", plugin)
        # The display outputs search for the display-configuration program there.
        self.probe.set_text(root, PRODUCT, "InstallPath", places.windows_path(self.stage))
        self.probe.set_text(root, LIST, "FuncList", "".join(f"{function.name};" for function in self.functions))

    def machine(self, function, **values):
        """State of the simulated notebook: machine("Mute", Item=1)."""
        for name, value in values.items():
            self.probe.set_dword("HKCU", f"{NOTEBOOK}\\{function}", name.replace("__", "."), value)

    def renew_machine(self):
        """The simulated notebook as it is delivered."""
        self.probe.delete_key("HKCU", NOTEBOOK)
        self.probe.set_text("HKCU", NOTEBOOK, "RecordFile", places.windows_path(self.record_file))

    def machine_item(self, function):
        return int.from_bytes(self.probe.get_value("HKCU", f"{NOTEBOOK}\\{function}", "Item"), "little")

    # Configuration while it runs
    @contextlib.contextmanager
    def taken_over(self):
        """Encloses one change of something that the program watches; returns when the change is in force.

        That takes a moment and hides the cards: keys that are pressed earlier would find them hidden."""
        seen = self.count_of("CZelMainApp::refreshCards", "LEAVE")
        yield
        wait_until(lambda: self.count_of("CZelMainApp::refreshCards", "LEAVE") > seen, "the change is in force")

    def change(self, name, value):
        """Changes a setting of the running program; returns when it is in force."""
        # Writing the same value again is no change, so nobody is notified.
        same = self._settings.get(name) == value
        with contextlib.nullcontext() if same else self.taken_over():
            self.probe.set_dword("HKLM", CONFIG, name, value)
        self._settings[name] = value
        self.bottom = self._settings["Position"] != 0

    # Running
    def launch(self, *arguments):
        """Starts the program without waiting for anything."""
        output = open(self.folder / "output.txt", "ab")
        process = subprocess.Popen([str(places.WINE), str(self.stage / "Fenwyn.exe"), *arguments], cwd=self.folder,
                                   env=self.desktop.environment, stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                                   start_new_session=True)
        output.close()
        self._started.append(process)
        return process

    def start(self, *arguments):
        """Starts the program and waits until it is up."""
        process = self.launch(*arguments)
        wait_until(lambda: process.poll() is not None or self.is_up(),
                   lambda: f"start-up is complete; windows: {self.windows()}", 20)
        assert process.poll() is None, f"the program ended with status {process.returncode}: {self.errors()}"
        return process

    def second_start(self, meanwhile=lambda: None):
        """Starts the program once more and waits for its end; returns what it wrote, and what the first wrote in that
        time. Each has its own log, because two processes that append to one file overwrite each other's lines."""
        file = self.folder / "second.txt"
        before = len(self.log())
        self._log_to(file)
        process = self.launch()
        meanwhile()
        assert self.wait_end(process) == 0
        self._log_to(self.log_file)
        return [line.text for line in log.parse(file.read_bytes())], [line.text for line in self.log()[before:]]

    def is_up(self):
        # The hover strip, created last, is a second dialog besides the strip; the log says when the rest is done.
        frame = self.frame()
        if not frame or not self.strip():
            return False
        if self.log_file.exists():
            return any(line.text == "LEAVE CZelMainApp::InitInstance" for line in self.log())
        return len(self.probe.windows(DIALOG_CLASS, frame.pid)) >= 1

    @property
    def pid(self):
        return self.frame().pid

    def running(self):
        return [process for process in self._started if process.poll() is None]

    def wait_end(self, process, deadline=15):
        wait_until(lambda: process.poll() is not None, "the program has ended", deadline)
        print(f"the program ended with status {process.returncode}")
        return process.returncode

    def end(self):
        """Ends the program in the documented way."""
        assert self.probe.set_event(END_EVENT), "nobody listens to the end event"
        for process in self.running():
            assert self.wait_end(process) == 0

    def cleanup(self):
        """Clean-up after the test, whatever happened in it."""
        self.keyboard.release_all()
        if self.frame():  # possibly of a successor, which nobody here has started
            self.probe.post(self.frame().hwnd, WM_CLOSE)
        for process in self.running():
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait(5)
        wait_until(lambda: not self.probe.processes("Fenwyn.exe"), "no program is left behind")

    # Windows
    def frame(self):
        return next((w for w in self.probe.windows(FRAME_CLASS) if w.title == FRAME_TITLE), None)

    def strip(self):
        return next(iter(self.probe.windows(STRIP_CLASS)), None)

    def windows(self):
        frame = self.frame()
        return self.probe.windows(pid=frame.pid) if frame else []

    def strip_shown(self):
        window = self.strip()
        return window is not None and window.visible

    def shown_dialogs(self):
        """Visible dialogs except the strip: enlarged cards, items, caption boxes, hover strip."""
        return [w for w in self.windows() if w.cls == DIALOG_CLASS and w.visible]

    def shown_layered(self):
        return [w for w in self.windows() if w.cls.startswith(LAYERED_PREFIX) and w.visible]

    def shown_with(self, rect):
        return [w for w in self.shown_dialogs() if w.rect == rect]

    # Keys
    def key_of(self, name):
        return next(function.key for function in self.functions if function.name == name)

    def index_of(self, name):
        return [function.name for function in self.functions].index(name)

    def hold(self):
        """Holds the modifier until the strip has responded."""
        seen = self.count_of("CZelMainDlg::handleHotkey", "LEAVE")
        self.keyboard.down(MODIFIER)
        self._handled(seen + 1)

    def let_go(self):
        seen = self.count_of("CZelMainDlg::handleHotkey", "LEAVE")
        self.keyboard.up(MODIFIER)
        self._handled(seen + 1)

    def press(self, name):
        """Presses a function's key and releases it once the strip has handled the press; waits until the release is
        handled too.

        While the cards change, no window may have the focus for a moment: a release at that moment would be lost."""
        seen = self.count_of("CZelMainDlg::handleHotkey", "LEAVE")
        self.keyboard.down(self.key_of(name))
        self._handled(seen + 1)
        self.keyboard.up(self.key_of(name))
        self._handled(seen + 2)

    def count_of(self, function, word):
        return sum(1 for line in self.log() if line.text == f"{word} {function}")

    def _handled(self, count):
        wait_until(lambda: self.count_of("CZelMainDlg::handleHotkey", "LEAVE") >= count,
                   "the strip has handled the key")

    # Output
    def log(self):
        return self._log.lines()

    def log_texts(self):
        return [line.text for line in self.log()]

    def errors(self):
        return [line for line in self.log() if line.level == "ERR"]

    def calls(self, function=None, export=None):
        return [call for call in record.read(self.record_file)
                if function in (None, call.function) and export in (None, call.export)]

    def chosen(self, function):
        """Arguments of the SelectItem calls of a function, in order."""
        return [call.arguments for call in self.calls(function, "SelectItem")]

    # Expectations that many tests share
    def expect_strip(self, shown=True):
        wait_until(lambda: self.strip_shown() == shown,
                   lambda: f"the strip is {'shown' if shown else 'hidden'}: {self.strip()}")

    def expect_strip_stays(self, shown, seconds=0.4):
        stays(lambda: self.strip_shown() == shown, lambda: f"the strip changed: {self.strip()}", seconds)


def _link(source, target):
    try:
        os.link(source, target)
    except OSError:
        shutil.copy2(source, target)
    return target


def around(rect, by):
    return Rect(rect.left - by, rect.top - by, rect.right + by, rect.bottom + by)
