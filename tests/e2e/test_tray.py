"""The icon in the notification area: the shipped program, its menu by the mouse and by keys, beside a Fenwyn that runs or does not.

There is no notification area on the test's screen; the shell's messages about the icon are sent by the probe. Keys for
the menu are posted: the emulator's window manager gives no focus to the icon's window, which is never visible."""
import subprocess

import pytest
from harness import places
from harness.desktop import HOTKEY_EVENT
from harness.waiting import stays, wait_until

TRAY_CLASS = "FenwynTray"
SETTINGS_CLASS = "KESTOVA_Fenwyn_Settings"
END_EVENT = "Local\\KESTOVA_Fenwyn_Tray_End"
MENU_CLASS = "#32768"
MSG_ICON = 0x8001  # WM_APP + 1
WM_CONTEXTMENU, WM_LBUTTONDBLCLK, WM_CLOSE, WM_KEYDOWN = 0x7B, 0x203, 0x10, 0x100
VK_RETURN, VK_ESCAPE, VK_DOWN = 0x0D, 0x1B, 0x28
# How far down in the menu its three commands are; a line is above the last.
SETTINGS, CARDS, START_OR_END = 0.17, 0.44, 0.83


class Tray:
    def __init__(self, program):
        self.program = program
        self.probe = program.probe
        self.processes = []

    def start(self):
        process = subprocess.Popen([str(places.WINE), str(self.program.stage / "FenwynSettings.exe"), "/tray"],
                                   cwd=self.program.folder, env=self.program.desktop.environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.processes.append(process)
        return process

    def window(self):
        return next(iter(self.probe.windows(TRAY_CLASS)), None)

    def tell(self, event):
        self.probe.post(self.window().hwnd, MSG_ICON, (300 << 16) | 400, event | 1 << 16)

    def menu_is_open(self):
        return bool(self.probe.windows(MENU_CLASS, visible=True))

    def open_menu(self):
        self.tell(WM_CONTEXTMENU)
        wait_until(self.menu_is_open, "the menu is open")

    def choose(self, place):
        self.open_menu()
        rect = self.probe.windows(MENU_CLASS, visible=True)[0].rect
        self.program.keyboard.click((rect.left + rect.right) // 2, int(rect.top + place * (rect.bottom - rect.top)))
        wait_until(lambda: not self.menu_is_open(), "the menu is closed")

    def press(self, *keys):
        self.open_menu()
        for key in keys:
            self.probe.post(self.window().hwnd, WM_KEYDOWN, key)
        wait_until(lambda: not self.menu_is_open(), "the menu is closed")

    def end(self):
        for window in self.probe.windows(TRAY_CLASS) + self.probe.windows(SETTINGS_CLASS):
            self.probe.post(window.hwnd, WM_CLOSE)
        for process in self.processes:
            process.wait(20)
        wait_until(lambda: not self.probe.processes("FenwynSettings.exe"), "nothing is left behind")


@pytest.fixture
def tray(program):
    program.offer("Mute", "Lock")
    made = Tray(program)
    made.start()
    wait_until(made.window, "the icon's window is there", 20)
    yield made
    made.end()


def test_starts_ends_and_starts_fenwyn_again(program, tray):
    for _ in range(2):
        tray.choose(START_OR_END)
        wait_until(lambda: program.frame() and program.is_up(), "Fenwyn runs", 20)
        tray.choose(START_OR_END)
        wait_until(lambda: not program.probe.processes("Fenwyn.exe"), "Fenwyn has ended", 20)
    assert tray.window(), "the icon stays"


@pytest.mark.parametrize("settings", [{}, {"HideMainDlg": 1}, {"IgnoreFnKey": 1}, {"Disable": 1},
                                      {"ShowQrdAtLaunch": 1}])
def test_shows_the_cards_in_every_setting_and_they_go_again(program, tray, settings):
    program.configure(**settings)
    program.start("/hide")
    tray.choose(CARDS)
    program.expect_strip()
    wait_until(lambda: not program.strip_shown(), "they go again", 10)


def test_a_choice_of_keys_goes_on_after_the_cards_were_shown(program, tray):
    program.start("/hide")
    tray.choose(CARDS)
    program.expect_strip()
    strip, code = program.strip().hwnd, program.functions[0].codes[0]
    for event in ((0, 0), (code, 0), (code, 1)):
        program.probe.send(strip, HOTKEY_EVENT, *event)
    stays(lambda: not program.chosen("Mute"), "nothing is applied while the modifier is held", 5.5)
    program.probe.send(strip, HOTKEY_EVENT, 0, 1)
    wait_until(lambda: program.chosen("Mute"), "the choice is applied")


def test_opens_the_settings_and_only_once(program, tray):
    tray.tell(WM_LBUTTONDBLCLK)
    wait_until(lambda: program.probe.windows(SETTINGS_CLASS, visible=True), "the settings are open", 20)
    tray.choose(SETTINGS)
    stays(lambda: len(program.probe.windows(SETTINGS_CLASS)) == 1, "one window", 1)


def test_one_for_the_session(tray):
    assert tray.start().wait(20) == 0
    assert len(tray.probe.windows(TRAY_CLASS)) == 1


@pytest.mark.parametrize("menu", [False, True])
def test_ends_by_its_event_also_while_the_menu_is_open(tray, menu):
    if menu:
        tray.open_menu()
    assert tray.probe.set_event(END_EVENT)
    assert tray.processes[0].wait(20) == 0


def test_survives_a_new_shell(tray):
    tray.probe.post(tray.window().hwnd, tray.probe.register_message("TaskbarCreated"))
    tray.press(VK_ESCAPE)


def test_the_menu_works_with_keys(program, tray):
    tray.press(VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN)  # the cards are greyed, and still a step
    wait_until(lambda: program.frame() and program.is_up(), "Fenwyn runs", 20)
    tray.press(VK_DOWN, VK_DOWN, VK_RETURN)
    program.expect_strip()


def test_where_none_is_wanted_it_ends_at_once(program):
    program.offer("Mute")
    program.probe.set_dword("HKCU", "SOFTWARE\\KESTOVA\\Fenwyn", "TrayIcon", 0)
    assert Tray(program).start().wait(20) == 0
    assert not program.probe.windows(TRAY_CLASS)
