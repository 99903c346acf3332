"""The settings program, with real keys and a real mouse."""
import contextlib
import re
import subprocess

from . import places
from .waiting import wait_until

WINDOW_CLASS = "KESTOVA_Fenwyn_Settings"
TRIAL_EVENT = "Local\\KESTOVA_Fenwyn_KeyTrial"  # there while a page listens to keys
IDS = {name: int(number) for name, number in re.findall(
    r"^#define (ID[CS]_\w+) (\d+)", (places.ROOT / "settings" / "SettingsIds.h").read_text(encoding="utf-8"), re.M)}
OK, CANCEL, APPLY = IDS["IDS_OK"], IDS["IDS_CANCEL"], IDS["IDS_APPLY"]
# Of each page a control that no other one has.
PAGES = {"Cards": "IDC_CARDS", "Keys": "IDC_KEYS_LIST", "Behaviour": "IDC_FIRST_ROW", "Buttons": "IDC_BUTTONS_LIST",
         "Log": "IDC_LOG_FAULTS"}
WS_DISABLED, WS_VISIBLE = 0x08000000, 0x10000000


class SettingsWindow:
    """Opened beside the program of a test, from the same folder."""

    def __init__(self, program):
        self.program = program
        self.probe = program.probe
        self.keyboard = program.keyboard
        self.process = self.start()
        self.hwnd = wait_until(self._find, "the settings window is open", 20).hwnd
        wait_until(self._is_focused, "keys reach the settings window")

    def start(self):
        """Starts the program (once more)."""
        return subprocess.Popen([str(places.WINE), str(self.program.stage / "FenwynSettings.exe")],
                                cwd=self.program.folder, env=self.program.desktop.environment,
                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                start_new_session=True)

    def _is_focused(self):
        # The screen gives a window the focus a moment after the system does.
        name = subprocess.run(["xdotool", "getwindowfocus", "getwindowname"], env=self.program.desktop.environment,
                              check=False, capture_output=True, text=True, timeout=10).stdout.strip()
        return self.probe.foreground() == self.hwnd and name == "Fenwyn settings"

    def windows(self):
        return [window for window in self.probe.windows(WINDOW_CLASS) if window.visible]

    def _find(self):
        return next(iter(self.windows()), None)

    def controls(self):
        """Those that can be seen."""
        return [control for control in self.probe.controls(self.hwnd) if control.visible]

    def control(self, number):
        return next((control for control in self.controls() if control.id == number), None)

    def turn_to(self, page):
        """By keys, from the first page; each press turns one page."""
        names = list(PAGES)
        for name in names[1:names.index(page) + 1]:
            self.keyboard.press("Control_L+Tab")
            self.expect_page(name)

    def expect_page(self, name):
        wait_until(lambda: self.control(IDS[PAGES[name]]), f"the page {name} is shown")

    def click(self, number):
        control = wait_until(lambda: self.control(number), f"the control {number} can be seen")
        wait_until(lambda: not self.control(number).style & WS_DISABLED, f"the control {number} can be pressed")
        self.keyboard.click((control.rect.left + control.rect.right) // 2, (control.rect.top + control.rect.bottom) // 2)

    def row(self, index, part=1):
        """The number of a control of the page Behaviour: `index` counts its headings too."""
        return IDS["IDC_FIRST_ROW"] + 7 * index + part

    def expect_end(self):
        wait_until(lambda: self.process.poll() is not None, "the settings program has ended", 20)
        assert self.process.returncode == 0

    def close(self):
        """Whatever happened."""
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait(10)
        for pid in self.probe.processes("FenwynSettings.exe"):
            for window in self.probe.windows(pid=pid):
                self.probe.post(window.hwnd, 0x0010)
        wait_until(lambda: not self.probe.processes("FenwynSettings.exe"), "no settings program is left behind", 20)


@contextlib.contextmanager
def opening(program, page="Cards"):
    """Yields a function that opens the window and turns to the page; all of them are closed in the end."""
    opened = []

    def open_window():
        opened.append(SettingsWindow(program))
        opened[-1].turn_to(page)
        return opened[-1]
    try:
        yield open_window
    finally:
        for window in opened:
            window.close()
