"""Installing, upgrading, uninstalling, silently, as a user and for the machine: what is there afterwards."""
import contextlib
import re
import shutil
import subprocess
import time
import zipfile

import pytest
from harness import desktop as desk
from harness import places
from harness.keyboard import MODIFIER
from harness.waiting import wait_until
from windows import Windows

UNINSTALL = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Fenwyn"
RUN = "Software\\Microsoft\\Windows\\CurrentVersion\\Run"
FOLDER = "C:\\Fenwyn"
INSTALLER = places.ROOT / "installer"
TRAY_CLASS = "FenwynTray"
SETTINGS_CLASS = "KESTOVA_Fenwyn_Settings"
WM_COMMAND, IDOK, IDRETRY = 0x111, 1, 4
IN_USE = 2
ROOTS = {"CurrentUser": "HKEY_CURRENT_USER", "AllUsers": "HKEY_LOCAL_MACHINE"}
OWN = ["Uninstall.exe", "installed.ini"]


@pytest.fixture
def windows(desktop):
    desktop.reset()
    desktop.take_focus()
    made = Windows(desktop)
    shutil.rmtree(made.path(FOLDER), ignore_errors=True)
    yield made
    desktop.keyboard.release_all()
    end_fenwyn(desktop)
    for mode in ROOTS:
        if (made.drive / "Fenwyn" / "Uninstall.exe").exists():
            uninstall(made, mode, "/REMOVESETTINGS")
    desktop.reset()


@pytest.fixture
def setup(packages):
    file, = packages.glob("*Setup.exe")
    return file


def end_fenwyn(desktop):
    for window in desktop.probe.windows(desk.FRAME_CLASS):
        desktop.probe.post(window.hwnd, desk.WM_CLOSE)
    wait_until(lambda: not desktop.probe.processes("Fenwyn.exe"), "Fenwyn has ended")


def install(windows, setup, *options):
    return windows.run(places.windows_path(setup), "/S", *options)


def uninstall(windows, mode="CurrentUser", *options):
    """The uninstaller goes on in a copy of itself, in another process."""
    code = windows.run(f"{FOLDER}\\Uninstall.exe", "/S", f"/{mode}", *options)
    gone = windows.path(FOLDER + "\\Uninstall.exe")
    wait_until(lambda: not gone.exists(), "it is uninstalled", 30)
    return code


def shipped():
    return (places.BUILD / "package-contents" / "files.txt").read_text().split()


def installed(windows):
    """{path: size} of what is in the folder."""
    return {path: size for path, size in windows.files().items() if path.startswith("Fenwyn/")}


def user_value(desktop, key, name):
    """The text or number of a value; None if there is none."""
    try:
        data = desktop.probe.get_value("HKCU", key, name)
    except AssertionError:
        return None
    return data[0] if len(data) == 4 else data.decode("utf-16-le").rstrip("\0")


def process_of(desktop, window_class):
    return next((window.pid for window in desktop.probe.windows(window_class)), None)


def expect_running(desktop, other_than=None):
    wait_until(lambda: process_of(desktop, desk.FRAME_CLASS) not in (None, other_than) and
               desktop.probe.windows(desk.STRIP_CLASS), "Fenwyn runs", 30)
    return process_of(desktop, desk.FRAME_CLASS)


def expect_icon(desktop, other_than=None):
    wait_until(lambda: process_of(desktop, TRAY_CLASS) not in (None, other_than), "the icon is there", 20)
    return process_of(desktop, TRAY_CLASS)


def offer_functions(desktop):
    """The user's own list: Fenwyn runs only with one, and making it takes the installer a second."""
    desktop.probe.set_text("HKCU", desk.LIST, "FuncList", "Zoom;Lock;")


def start_all(desktop, windows):
    """Fenwyn and the icon run, and the settings are open; returns the processes of the first two."""
    windows.start(f"{FOLDER}\\Fenwyn.exe")
    windows.start(f"{FOLDER}\\FenwynSettings.exe", "/tray")
    windows.start(f"{FOLDER}\\FenwynSettings.exe")
    wait_until(lambda: desktop.probe.windows(SETTINGS_CLASS, visible=True), "the settings are open", 20)
    return expect_running(desktop), expect_icon(desktop)


def expect_started_again(desktop, before):
    """Both run, in processes other than those before."""
    return expect_running(desktop, before[0]), expect_icon(desktop, before[1])


@contextlib.contextmanager
def program_in_use(desktop, windows):
    """A program of the folder that nobody can ask to end."""
    def runs():
        return desktop.probe.processes("OutputSetup.exe")
    process = windows.start(f"{FOLDER}\\OutputSetup.exe")
    wait_until(runs, "a program of the folder runs")
    try:
        yield
    finally:
        process.kill()
        wait_until(lambda: not runs(), "that has ended")


def expect_strip_by_key(desktop):
    def appears():
        # The program may have its windows before it hears keys.
        desktop.keyboard.up(MODIFIER)
        desktop.keyboard.down(MODIFIER)
        time.sleep(0.5)
        return any(window.visible for window in desktop.probe.windows(desk.STRIP_CLASS))
    wait_until(appears, "the strip is shown", 20)
    desktop.keyboard.up(MODIFIER)


@pytest.mark.parametrize("mode", ROOTS)
def test_what_is_installed_is_what_is_uninstalled(desktop, windows, setup, mode):
    files, registry = windows.files(), windows.registry()
    assert install(windows, setup, f"/{mode}", f"/D={FOLDER}") == 0
    folder = windows.path(FOLDER)
    assert sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.is_file()) == \
        sorted(shipped() + OWN)
    for name in shipped():
        source = places.ROOT / "LICENSE" if name == "LICENSE.txt" else places.STAGE / name
        assert (folder / name).read_bytes() == source.read_bytes(), name
    now = windows.registry(ROOTS[mode])
    entry = {name.strip('"'): value for (key, name), value in now.items()
             if name and key == f"{ROOTS[mode]}\\{UNINSTALL}"}
    quoted = FOLDER.replace("\\", "\\\\")
    assert entry["QuietUninstallString"] == f'"\\"{quoted}\\\\Uninstall.exe\\" /{mode} /S"'
    assert entry["DisplayName"] == '"Fenwyn"' and int(entry["EstimatedSize"][6:], 16) > 1000
    assert now[f"{ROOTS[mode]}\\{RUN}", '"Fenwyn"'] == f'"\\"{quoted}\\\\Fenwyn.exe\\""'
    assert now[f"{ROOTS[mode]}\\{RUN}", '"FenwynTray"'] == f'"\\"{quoted}\\\\FenwynSettings.exe\\" /tray"'
    menu = "ProgramData" if mode == "AllUsers" else "users"
    links = [path for path in windows.files() if path.endswith(".lnk") and "Fenwyn" in path]
    assert len(links) == 2 and all(link.startswith(menu) for link in links)
    assert {link.replace("\\", "/").rsplit("/", 1)[1] for link in links} == {"Fenwyn.lnk", "Fenwyn Settings.lnk"}
    # What this machine offers: at least the overlays.
    listed = now[f"{ROOTS[mode]}\\{desk.LIST.replace('SOFTWARE', 'Software')}", '"FuncList"']
    assert "CursorOverlay;NumericOverlay;" in listed
    windows.start(f"{FOLDER}\\Fenwyn.exe")
    expect_running(desktop)
    expect_strip_by_key(desktop)
    windows.start(f"{FOLDER}\\FenwynSettings.exe", "/tray")
    expect_icon(desktop)
    # Uninstalling ends both first.
    assert uninstall(windows, mode, "/REMOVESETTINGS") == 0
    assert not desktop.probe.processes("Fenwyn.exe") and not desktop.probe.processes("FenwynSettings.exe")
    assert windows.files() == files
    assert windows.registry() == registry


@pytest.fixture
def older_setup(tmp_path):
    """The installer of a version that had one file more."""
    stages = [tmp_path / "stage64", tmp_path / "stage32"]
    for stage, source in zip(stages, [places.STAGE, places.BUILD / "x86-release" / "stage"]):
        shutil.copytree(source, stage)
        (stage / "plugins" / "Former.dll").write_bytes(b"no longer needed")
    subprocess.run([INSTALLER / "contents.py", tmp_path, *stages], check=True)
    shutil.copy(places.BUILD / "package-contents" / "welcome.bmp", tmp_path)
    # Without compression, it is made in a moment.
    subprocess.run(["makensis", "-V1", "-INPUTCHARSET", "UTF8", "-XSetCompressor /FINAL zlib", "-XSetCompress off",
                    "-DVERSION=0.9.0", "-DVERSION_NUMBERS=0.9.0.0", f"-DCONTENTS={tmp_path}",
                    f"-DOUTPUT={tmp_path / 'FenwynOld.exe'}", INSTALLER / "Fenwyn.nsi"], check=True)
    return tmp_path / "FenwynOld.exe"


def test_an_upgrade_ends_the_running_program_and_keeps_what_is_the_users(desktop, windows, setup, older_setup):
    assert install(windows, older_setup, "/CurrentUser", "/NOLIST", f"/D={FOLDER}") == 0
    assert user_value(desktop, UNINSTALL, "DisplayVersion") == "0.9.0"
    folder = windows.path(FOLDER)
    desktop.probe.set_dword("HKCU", desk.CONFIG, "Position", 1)
    offer_functions(desktop)
    desktop.probe.delete_value("HKCU", RUN, "Fenwyn")
    (folder / "DbgLog.ini").write_text("[Config]\r\n")
    (folder / "PrtHook.dll").write_bytes(b"a maker's own")
    (folder / "plugins" / "Own.dll").write_bytes(b"the user's")
    before = start_all(desktop, windows)
    assert install(windows, setup, "/CurrentUser") == 0, "in the folder of the first time"
    expect_started_again(desktop, before)
    assert user_value(desktop, desk.CONFIG, "Position") == 1
    assert user_value(desktop, desk.LIST, "FuncList") == "Zoom;Lock;"
    assert user_value(desktop, RUN, "Fenwyn") is None, "it had been switched off"
    assert (folder / "PrtHook.dll").read_bytes() == b"a maker's own"
    assert (folder / "DbgLog.ini").exists() and (folder / "plugins" / "Own.dll").exists()
    assert not (folder / "plugins" / "Former.dll").exists()
    assert user_value(desktop, UNINSTALL, "DisplayVersion") != "0.9.0"
    assert (folder / "Fenwyn.exe").read_bytes() == (places.STAGE / "Fenwyn.exe").read_bytes()
    # The uninstaller leaves what it did not install.
    assert uninstall(windows) == 0
    assert sorted(path.name for path in folder.rglob("*") if path.is_file()) == ["DbgLog.ini", "Own.dll", "PrtHook.dll"]
    assert user_value(desktop, desk.CONFIG, "Position") == 1, "settings stay unless they are to go"


def test_a_file_in_use_stops_it_before_anything_is_changed(desktop, windows, setup):
    offer_functions(desktop)
    assert install(windows, setup, "/CurrentUser", "/NOLIST", f"/D={FOLDER}") == 0
    (windows.path(FOLDER) / "LICENSE.txt").unlink()
    before = start_all(desktop, windows)
    files, registry = installed(windows), windows.registry(ROOTS["CurrentUser"])
    with program_in_use(desktop, windows):
        assert install(windows, setup, "/CurrentUser") == IN_USE
        # What it had ended runs again, and does so after the uninstaller.
        before = expect_started_again(desktop, before)
        assert installed(windows) == files
        windows.run(f"{FOLDER}\\Uninstall.exe", "/S", "/CurrentUser")
        expect_started_again(desktop, before)
        assert installed(windows) == files and windows.registry(ROOTS["CurrentUser"]) == registry


def test_an_uninstaller_of_another_product_is_neither_run_nor_replaced(desktop, windows, setup, tmp_path):
    script = tmp_path / "other.nsi"
    script.write_text('Target amd64-unicode\nOutFile "other.exe"\nSilentInstall silent\n'
                      'Section\n  FileOpen $0 "C:\\it-ran.txt" w\n  FileClose $0\nSectionEnd\n')
    subprocess.run(["makensis", "-V1", script], check=True)
    windows.path(FOLDER).mkdir()
    shutil.copy(tmp_path / "other.exe", windows.path(FOLDER) / "Uninstall.exe")
    files = installed(windows)
    assert install(windows, setup, "/CurrentUser", f"/D={FOLDER}") == IN_USE
    assert installed(windows) == files
    assert user_value(desktop, UNINSTALL, "InstallLocation") is None
    # Alone, it would have left its trace.
    assert windows.run(f"{FOLDER}\\Uninstall.exe", "/S") == 0
    assert windows.path("C:\\it-ran.txt").exists()
    windows.path("C:\\it-ran.txt").unlink()
    shutil.rmtree(windows.path(FOLDER))


class Wizard:
    """The installer as a person sees it."""

    def __init__(self, desktop, windows, setup):
        self.probe = desktop.probe
        self.process = windows.start(places.windows_path(setup), "/CurrentUser", "/NOLIST")
        self.hwnd = wait_until(self._find, "the installer's window is there", 30).hwnd

    def _find(self):
        return next((window for window in self._windows() if any(
            control.id == IDOK for control in self.probe.controls(window.hwnd))), None)

    def _windows(self):
        return [window for window in self.probe.windows(desk.DIALOG_CLASS, visible=True)
                if window.title.startswith("Fenwyn Setup")]

    def next_button(self):
        return next(control for control in self.probe.controls(self.hwnd) if control.id == IDOK)

    def page(self):
        return [control.hwnd for control in self.probe.controls(self.hwnd)
                if control.cls == desk.DIALOG_CLASS and control.visible]

    def turn(self):
        page = wait_until(self.page, "there is a page")
        self.probe.post(self.hwnd, WM_COMMAND, IDOK)
        wait_until(lambda: self.page() not in ([], page), "the next page is shown")

    def install(self):
        """From the first page to the one that installs."""
        while self.next_button().title != "&Install":
            self.turn()
        self.turn()

    def message(self):
        return next((window for window in self._windows() if window.hwnd != self.hwnd), None)

    def finish(self):
        wait_until(lambda: self.next_button().title == "&Finish", "it is installed", 60)
        self.probe.post(self.hwnd, WM_COMMAND, IDOK)
        assert self.process.wait(30) == 0


def test_the_last_page_shows_the_icon_and_a_second_try_starts_again_what_ran(desktop, windows, setup):
    offer_functions(desktop)
    # Where it was before; nothing of it runs.
    desktop.probe.set_text("HKCU", UNINSTALL, "InstallLocation", FOLDER)
    first = Wizard(desktop, windows, setup)
    first.install()
    first.finish()
    before = expect_started_again(desktop, (None, None))
    with program_in_use(desktop, windows):
        second = Wizard(desktop, windows, setup)
        second.install()
        question = wait_until(second.message, "it says what is in use", 30)
        assert not desktop.probe.processes("Fenwyn.exe")
    desktop.probe.post(question.hwnd, WM_COMMAND, IDRETRY)
    now = expect_started_again(desktop, before)
    second.finish()
    assert (expect_running(desktop), expect_icon(desktop)) == now


def test_the_32_bit_programs_in_the_same_file(windows, setup):
    # Fenwyn's own, of the other kind, is no maker's own.
    windows.path(FOLDER).mkdir()
    shutil.copy(places.STAGE / "ZelMain.dll", windows.path(FOLDER))
    assert install(windows, setup, "/CurrentUser", "/32", "/NOLIST", "/NOMENU", "/NOAUTOSTART", f"/D={FOLDER}") == 0
    folder = windows.path(FOLDER)
    stage = places.BUILD / "x86-release" / "stage"
    assert all((folder / name).read_bytes() == (stage / name).read_bytes() for name in shipped()
               if name != "LICENSE.txt")
    registry = windows.registry()
    assert not any(name == '"Fenwyn"' and key.endswith("\\Run") for key, name in registry)
    assert not any("KESTOVA" in key for key, _ in registry)
    assert not any(path.endswith(".lnk") and "Fenwyn" in path for path in windows.files())
    assert install(windows, setup, "/CurrentUser", "/64", "/NOLIST") == 0
    assert (folder / "Fenwyn.exe").read_bytes() == (places.STAGE / "Fenwyn.exe").read_bytes()


def test_an_upgrade_for_the_machine_keeps_the_32_bit_programs_and_nothing_stays_in_the_end(desktop, windows, setup):
    files, registry = windows.files(), windows.registry()
    assert install(windows, setup, "/AllUsers", "/32", f"/D={FOLDER}") == 0
    # What the settings write, as a 32-bit program: the machine's values in its own part of the registry.
    desktop.probe.set_dword("HKLM", desk.CONFIG.replace("SOFTWARE", "SOFTWARE\\WOW6432Node"), "AutoHide", 1)
    (windows.path(FOLDER) / "DbgLog.ini").write_text("[LOG]\r\nLevel=3\r\n")
    # The machine does not start Fenwyn, but the user does.
    desktop.probe.delete_value("HKLM", RUN, "Fenwyn")
    desktop.probe.set_text("HKCU", RUN, "Fenwyn", f'"{FOLDER}\\Fenwyn.exe"')
    assert install(windows, setup, "/AllUsers") == 0
    stage = places.BUILD / "x86-release" / "stage"
    assert (windows.path(FOLDER) / "Fenwyn.exe").read_bytes() == (stage / "Fenwyn.exe").read_bytes()
    with pytest.raises(AssertionError):
        desktop.probe.get_value("HKLM", RUN, "Fenwyn")
    assert user_value(desktop, RUN, "Fenwyn") == f'"{FOLDER}\\Fenwyn.exe"'
    assert uninstall(windows, "AllUsers", "/REMOVESETTINGS") == 0
    assert windows.files() == files
    assert windows.registry() == registry


def test_the_portable_zip_runs_without_an_installation(desktop, windows, packages):
    archive, = packages.glob("*portable-64.zip")
    with zipfile.ZipFile(archive) as held:
        held.extractall(windows.drive)
    text = (windows.path(FOLDER) / "PORTABLE.txt").read_text()
    commands = re.findall(r"^ {7}(FenwynCheck .*)$", text, re.MULTILINE)
    program, *arguments = commands[0].split()
    assert windows.run(f"{FOLDER}\\{program}.exe", *arguments) == 0
    windows.start(f"{FOLDER}\\Fenwyn.exe")
    expect_running(desktop)
    expect_strip_by_key(desktop)
    end_fenwyn(desktop)
    program, *arguments = commands[1].split()
    assert windows.run(f"{FOLDER}\\{program}.exe", *arguments) == 0
    assert user_value(desktop, desk.LIST, "FuncList") is None
    # What the switches of the settings write.
    for name in ("Fenwyn", "FenwynTray"):
        desktop.probe.set_text("HKCU", RUN, name, "remains")
    for command in re.findall(r"^ {7}(reg delete .*)$", text, re.MULTILINE):
        assert windows.run(*command.split()) == 0
    assert [user_value(desktop, RUN, name) for name in ("Fenwyn", "FenwynTray")] == [None, None]
