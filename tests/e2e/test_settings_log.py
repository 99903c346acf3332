"""The page Log and help of the settings program, by real keys and a real mouse."""
import pytest
from harness import geometry, places
from harness.desktop import PRODUCT
from harness.settings_window import APPLY, CANCEL, IDS, WS_DISABLED, opening
from harness.waiting import wait_until

FAULTS = f"{PRODUCT}\\PluginFaults"
TITLE = "Fenwyn settings"


@pytest.fixture
def settings(program):
    """Opens the page when it is called; closes the window after the test."""
    program.offer("Mute", "Zoom")
    with opening(program, "Log") as open_page:
        yield open_page


def log_settings(program):
    lines = (program.stage / "DbgLog.ini").read_text(encoding="ascii").split()
    assert lines[0] == "[LOG]"
    return dict(line.split("=", 1) for line in lines[1:])


def test_a_level_that_is_chosen_is_in_the_file_after_apply(program, settings):
    before = log_settings(program)
    assert before["Level"] == "3"
    window = settings()
    window.keyboard.press("Up")
    wait_until(lambda: not window.control(APPLY).style & WS_DISABLED, "the level above is chosen")
    assert log_settings(program) == before
    window.click(APPLY)
    wait_until(lambda: log_settings(program) == dict(before, Level="2"), lambda: f"{log_settings(program)}")
    window.click(CANCEL)
    window.expect_end()
    assert log_settings(program)["Level"] == "2"


def test_a_plugin_that_was_set_aside_is_allowed_again(program, settings):
    plugin = places.windows_path(program.stage / "plugins" / "SimMute.dll")
    key = FAULTS + "\\" + plugin.replace("\\", "/")
    program.probe.set_text("HKCU", key, "Function", "Mute")
    program.probe.set_text("HKCU", key, "Reason", "an access violation")
    program.probe.set_dword("HKCU", key, "SetAside", 1)
    program.start("/hide")
    area = program.desktop.work_area()
    assert program.strip().rect == geometry.strip(area, 1), "the plug-in is set aside"
    window = settings()
    window.click(IDS["IDS_LOG_FORGIVE"])
    wait_until(lambda: [each for each in program.probe.windows("#32770", visible=True) if each.title == TITLE],
               "it says when the plug-in is used again")
    window.keyboard.press("Return")
    window.click(CANCEL)
    window.expect_end()
    program.end()
    program.start("/hide")
    assert program.strip().rect == geometry.strip(area, 2), "the card of the plug-in is there again"
