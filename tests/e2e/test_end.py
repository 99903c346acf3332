"""The end of the program in any state: nothing remains, and it does not take long."""
import shutil
import time

import pytest
from harness import geometry, mouse, places
from harness.desktop import END_EVENT, FRAME_CLASS, LAYERED_PREFIX, LIST, STRIP_CLASS
from harness.functions import Function, sample
from harness.keyboard import CODES, MODIFIER
from harness.probe import WM_CLOSE, Rect
from harness.waiting import allowed, wait_until
from test_keys import expect_card

INSTRUMENTED = "SOFTWARE\\KESTOVA\\Fenwyn Test\\Plugin\\InstrPlugin"
SOON_ENOUGH = 2.0  # seconds


def end_and_expect_nothing(program, patience=SOON_ENOUGH):
    """Ends it in the documented way; `patience` is added to SOON_ENOUGH if a plug-in delays it."""
    process = program.running()[0]
    screen = program.desktop.screen
    assert program.probe.set_event(END_EVENT)
    began = time.monotonic()
    assert program.wait_end(process, 20) == 0
    assert time.monotonic() - began < allowed(patience)
    program.keyboard.release_all()
    left = [w for w in program.probe.windows()
            if w.cls in (STRIP_CLASS, FRAME_CLASS) or w.cls.startswith(LAYERED_PREFIX)]
    assert not left and not program.probe.processes("Fenwyn.exe")
    edge = Rect(0, 0, screen.width, 300)
    wait_until(lambda: screen.picture(edge).is_plain(edge), "nothing is left on the screen")


def test_with_the_strip_shown(program):
    program.offer("Mute", "Zoom")
    program.start()
    program.hold()
    program.expect_strip()
    end_and_expect_nothing(program)


def test_with_a_card_opened_by_keys(program):
    program.offer("Mute", "Zoom")
    program.start()
    program.hold()
    program.press("Zoom")
    expect_card(program, "Zoom")
    end_and_expect_nothing(program)
    assert not program.chosen("Zoom")


def test_while_the_mouse_works_the_cards(program):
    program.configure(EnableHover=1, MouseEnterIdle=50)
    program.offer("Mute", "Zoom")
    program.start()
    mouse.call_cards(program, 1)
    end_and_expect_nothing(program)


def test_with_a_card_opened_by_mouse(program):
    program.configure(EnableHover=1, MouseEnterIdle=50)
    program.offer("Mute", "Zoom")
    program.start()
    mouse.open_card(program, 1)
    expect_card(program, "Zoom")
    end_and_expect_nothing(program)
    assert not program.chosen("Zoom")


def test_while_the_idle_time_of_the_hover_strip_runs(program):
    program.configure(EnableHover=1, MouseEnterIdle=30000)
    program.offer("Mute", "Zoom")
    program.start()
    mouse.rest_on_hover_strip(program)
    end_and_expect_nothing(program)


def test_while_a_flash_lasts(program):
    program.offer("Mute")
    program.start()
    program.probe.send(program.frame().hwnd, 0x466)
    end_and_expect_nothing(program)


def test_while_the_slider_is_dragged(program):
    program.configure(EnableHover=1, MouseEnterIdle=50)
    program.offer(*sample("Mute", "Brightness"))
    program.start()
    mouse.open_card(program, 1)
    expect_card(program, "Brightness")
    slider = geometry.slider(program.desktop.work_area(), 2, 1)
    wait_until(lambda: program.shown_with(slider), lambda: f"the slider at {slider}: {program.shown_dialogs()}")
    before = len(program.calls("Brightness", "FocusItem"))
    x, y = mouse.middle(slider)
    program.keyboard.mouse_down(x, y)
    for step in (20, 40, 60):
        program.keyboard.move(x + step, y)
    wait_until(lambda: len(program.calls("Brightness", "FocusItem")) > before, "the level follows the slider")
    end_and_expect_nothing(program)


@pytest.mark.parametrize("function", ["Output", "Output_2"])
def test_while_a_key_is_held_and_its_panic_timer_runs(program, function):
    program.offer(*sample("Mute", function))
    program.start()
    program.hold()
    program.keyboard.down(program.key_of(function))
    expect_card(program, function)
    end_and_expect_nothing(program)


def test_while_a_plugin_applies_a_choice(program):
    plugin = places.windows_path(places.PLUGINS / "InstrPlugin.dll")
    record = places.windows_path(program.record_file)
    program.probe.set_text("HKCU", INSTRUMENTED, "RecordFile", record)
    program.probe.set_dword("HKCU", INSTRUMENTED, "SelectItem.Delay", 2500)
    program.offer(Function("Mute", "Mute", plugin, "F1", (CODES["F1"],), 2),
                  Function("Zoom", "Zoom", None, "F2", (CODES["F2"],), 3))
    program.start()
    program.hold()
    program.press("Mute")
    program.keyboard.up(MODIFIER)
    wait_until(lambda: program.chosen("InstrPlugin"), "the choice is being applied")
    # The call is not interrupted; the end follows right after it.
    end_and_expect_nothing(program, 2.5 + SOON_ENOUGH)
    assert [call.export for call in program.calls("InstrPlugin")][-2:] == ["SelectItem", "FinalizeHotkeyDll"]
    assert len(program.calls("Zoom", "FinalizeHotkeyDll")) == 1


def test_with_the_modifier_latched(program):
    program.probe.set_dword("HKLM", LIST, "StickyModifier", 1)
    program.offer("Mute")
    program.start()
    program.keyboard.press(MODIFIER)
    program.expect_strip()
    end_and_expect_nothing(program)


@pytest.mark.parametrize("where", ["folder", "missing folder", "no name at all"])
def test_with_a_log_that_cannot_be_written(program, where):
    place = {"folder": program.folder, "missing folder": program.folder / "none" / "log.txt",
             "no name at all": program.folder / ("x" * 300)}[where]
    program.write_log_settings(Level=3, Destination=2, LogFile=places.windows_path(place), Flush=1)
    program.offer("Mute")
    program.start()
    program.keyboard.down(MODIFIER)
    program.expect_strip()
    end_and_expect_nothing(program)
    shutil.rmtree(program.folder / "none", ignore_errors=True)


def test_asked_many_times_at_once(program):
    program.offer("Mute", "Zoom")
    process = program.start()
    program.hold()
    frame = program.frame().hwnd
    for _ in range(10):
        program.probe.ask("message", "post", frame, WM_CLOSE, 0, 0)
    assert program.wait_end(process) == 0
    assert len(program.calls("Mute", "FinalizeHotkeyDll")) == 1
    assert not program.probe.processes("Fenwyn.exe")


WM_QUERYENDSESSION, WM_ENDSESSION, ENDSESSION_LOGOFF = 0x11, 0x16, 0x80000000


def test_with_the_session(program):
    """The system asks every window, notifies every window, and ends the process as soon as they have answered."""
    program.offer("Mute", "Zoom")
    process = program.start()
    program.hold()
    program.press("Zoom")
    expect_card(program, "Zoom")
    for window in program.windows():
        assert program.probe.send(window.hwnd, WM_QUERYENDSESSION, 0, ENDSESSION_LOGOFF) != 0
    for window in program.windows():
        program.probe.send(window.hwnd, WM_ENDSESSION, 0, ENDSESSION_LOGOFF)
    assert process.poll() is None and program.strip(), "another program refused"
    program.probe.send(program.frame().hwnd, WM_ENDSESSION, 1, ENDSESSION_LOGOFF)
    # Everything must be done when the message is answered.
    assert len(program.calls("Mute", "FinalizeHotkeyDll")) == len(program.calls("Zoom", "FinalizeHotkeyDll")) == 1
    assert program.log_texts()[-1] == "LEAVE CZelMainApp::ExitInstance"
    assert not program.probe.windows(STRIP_CLASS)
    assert program.wait_end(process) == 0
    assert program.log_texts()[-1] == "LEAVE CZelMainApp::ExitInstance", "it is ended once"
    program.keyboard.release_all()
    assert len(program.calls("Mute", "FinalizeHotkeyDll")) == 1
    assert not program.chosen("Zoom")
