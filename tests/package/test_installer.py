"""Installing, upgrading, uninstalling, silently, as a user and for the machine: what is there afterwards."""
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


def user_value(desktop, key, name):
    """The text or number of a value; None if there is none."""
    try:
        data = desktop.probe.get_value("HKCU", key, name)
    except AssertionError:
        return None
    return data[0] if len(data) == 4 else data.decode("utf-16-le").rstrip("\0")


def frame_of(desktop):
    return next(iter(desktop.probe.windows(desk.FRAME_CLASS)), None)


def expect_running(desktop):
    wait_until(lambda: frame_of(desktop) and desktop.probe.windows(desk.STRIP_CLASS), "Fenwyn runs", 30)
    return frame_of(desktop).pid


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
    now = windows.registry()
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
    wait_until(lambda: desktop.probe.windows(TRAY_CLASS), "the icon is there", 20)
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
    subprocess.run(["makensis", "-V1", "-INPUTCHARSET", "UTF8", "-XSetCompressor /FINAL zlib", "-DVERSION=0.9.0",
                    "-DVERSION_NUMBERS=0.9.0.0", f"-DCONTENTS={tmp_path}", f"-DOUTPUT={tmp_path / 'FenwynOld.exe'}",
                    INSTALLER / "Fenwyn.nsi"], check=True)
    return tmp_path / "FenwynOld.exe"


def test_an_upgrade_ends_the_running_program_and_keeps_what_is_the_users(desktop, windows, setup, older_setup):
    assert install(windows, older_setup, "/CurrentUser", f"/D={FOLDER}") == 0
    assert user_value(desktop, UNINSTALL, "DisplayVersion") == "0.9.0"
    folder = windows.path(FOLDER)
    desktop.probe.set_dword("HKCU", desk.CONFIG, "Position", 1)
    desktop.probe.set_text("HKCU", desk.LIST, "FuncList", "Zoom;Lock;")
    desktop.probe.delete_value("HKCU", RUN, "Fenwyn")
    (folder / "DbgLog.ini").write_text("[Config]\r\n")
    (folder / "PrtHook.dll").write_bytes(b"a maker's own")
    (folder / "plugins" / "Own.dll").write_bytes(b"the user's")
    windows.start(f"{FOLDER}\\Fenwyn.exe")
    windows.start(f"{FOLDER}\\FenwynSettings.exe", "/tray")
    wait_until(lambda: desktop.probe.windows(TRAY_CLASS), "the icon is there", 20)
    icon = desktop.probe.windows(TRAY_CLASS)[0].pid
    old = expect_running(desktop)
    assert install(windows, setup, "/CurrentUser") == 0, "in the folder of the first time"
    wait_until(lambda: frame_of(desktop) and frame_of(desktop).pid != old, "it was started again", 30)
    expect_running(desktop)
    wait_until(lambda: [window.pid for window in desktop.probe.windows(TRAY_CLASS)] not in ([], [icon]),
               "the icon was started again", 20)
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
    assert install(windows, setup, "/CurrentUser", f"/D={FOLDER}") == 0
    (windows.path(FOLDER) / "Fenwyn.exe").rename(windows.path(FOLDER) / "Kept.exe")
    files, registry = windows.files(), windows.registry()
    checker = windows.start(f"{FOLDER}\\OutputSetup.exe")
    wait_until(lambda: desktop.probe.processes("OutputSetup.exe"), "a program of the folder runs")
    assert install(windows, setup, "/CurrentUser") == IN_USE
    assert windows.files() == files and windows.registry() == registry
    checker.kill()
    (windows.path(FOLDER) / "Kept.exe").rename(windows.path(FOLDER) / "Fenwyn.exe")


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


def test_the_portable_zip_runs_without_an_installation(desktop, windows, packages):
    archive, = packages.glob("*portable-64.zip")
    with zipfile.ZipFile(archive) as held:
        held.extractall(windows.drive)
    commands = re.findall(r"^ {7}(FenwynCheck .*)$", (windows.path(FOLDER) / "PORTABLE.txt").read_text(), re.MULTILINE)
    program, *arguments = commands[0].split()
    assert windows.run(f"{FOLDER}\\{program}.exe", *arguments) == 0
    windows.start(f"{FOLDER}\\Fenwyn.exe")
    expect_running(desktop)
    expect_strip_by_key(desktop)
    end_fenwyn(desktop)
    program, *arguments = commands[1].split()
    assert windows.run(f"{FOLDER}\\{program}.exe", *arguments) == 0
    assert user_value(desktop, desk.LIST, "FuncList") is None
