"""One program per session: what a second start does, and how the program ends."""
import time

from harness.desktop import END_EVENT, MUTEX, SHOW_OR_FLASH
from harness.probe import WM_CLOSE
from harness.waiting import stays, wait_until


def test_a_second_start_flashes_the_strip_of_the_first(program):
    program.offer("Mute")
    first = program.start()
    shown = []

    def flashes():
        program.expect_strip()
        shown.append(time.monotonic())
    texts, answer = program.second_start(meanwhile=flashes)
    program.expect_strip(shown=False)
    assert 0.2 < time.monotonic() - shown[0] < 3
    assert first.poll() is None
    assert texts.count("Mutex already exists.") == 1
    assert answer.count("ENTER CSysMsgHandlerFrame::flashMainDlg") == 1
    assert len(program.probe.processes("Fenwyn.exe")) == 1


def test_a_flash_within_the_flash_begins_it_anew(program):
    program.offer("Mute")
    program.start()
    frame = program.frame().hwnd
    for _ in range(4):
        program.probe.send(frame, SHOW_OR_FLASH)
        begin = time.monotonic()
        stays(program.strip_shown, "the flash ended early", 0.3)
    program.expect_strip(shown=False)
    assert 0.3 < time.monotonic() - begin < 2


def test_a_second_start_toggles_when_the_cards_show_at_launch(program):
    program.configure(ShowQrdAtLaunch=1)
    program.offer("Mute")
    program.start()
    program.expect_strip()
    program.second_start()
    program.expect_strip(shown=False)
    program.second_start()
    program.expect_strip()


def test_cards_shown_by_a_second_start_go_after_five_seconds(program):
    program.configure(ShowQrdAtLaunch=1)
    program.offer("Mute")
    program.start("/hide")
    program.expect_strip(shown=False)
    program.second_start()
    program.expect_strip()
    shown = time.monotonic()
    program.expect_strip(shown=False)
    assert 4.0 < time.monotonic() - shown < 8


def test_a_second_start_brings_a_shown_strip_to_the_foreground(program):
    # With the focus it can hide when it loses it.
    program.configure(HideMainUIWhenLostFocus=1, ShowQrdAtLaunch=1)
    program.offer("Mute")
    program.start("/hide")
    other = program.desktop.window
    assert program.probe.foreground() == other
    texts, _ = program.second_start()
    assert "Need to hide main UI when lost focus." in texts
    assert not any(text.startswith("ASSERT") for text in texts)
    program.expect_strip()
    shown = time.monotonic()
    wait_until(lambda: program.probe.foreground() == program.strip().hwnd,
               lambda: f"the strip is in the foreground, not {program.probe.foreground():x}")
    program.probe.focus(other)
    program.expect_strip(shown=False)
    assert time.monotonic() - shown < 4, "it went for the lost focus, not when its time was over"


def test_a_second_start_while_the_first_has_no_window_yet_ends_quietly(program):
    program.offer("Mute")
    program.probe.hold("mutex", MUTEX)
    texts, _ = program.second_start()
    assert texts.count("Mutex already exists.") == 1
    assert texts.count("Mutex really exists.") == 1
    assert not program.windows()
    program.probe.release()
    program.start()


def test_the_end_event_ends_the_program_in_good_order(program):
    program.offer("Mute", "Lock", "Zoom")
    program.start()
    program.end()
    assert [call.function for call in program.calls(export="FinalizeHotkeyDll")] == ["Mute", "Lock", "Zoom"]
    assert not program.windows()
    assert program.log_texts()[-1] == "LEAVE CZelMainApp::ExitInstance"


def test_closing_the_frame_ends_the_program(program):
    program.offer("Mute")
    process = program.start()
    program.probe.post(program.frame().hwnd, WM_CLOSE)
    assert program.wait_end(process) == 0
    assert len(program.calls(export="FinalizeHotkeyDll")) == 1


def test_ending_while_a_card_is_open_leaves_nothing(program):
    program.offer("Mute", "Zoom")
    process = program.start()
    program.hold()
    program.press("Zoom")
    assert program.probe.set_event(END_EVENT)
    assert program.wait_end(process) == 0
    assert not program.chosen("Zoom")
    program.keyboard.release_all()
    # Another program has the keyboard again.
    window = program.desktop.window
    program.probe.focus(window)
    wait_until(lambda: program.probe.foreground() == window, "the other program has the focus again")
    program.probe.received(window)
    program.keyboard.press("F2")
    wait_until(lambda: any(entry[:2] == (0x101, 0x71) for entry in program.probe.received(window)), "F2 passes")


def test_the_program_starts_again_after_its_end(program):
    program.offer("Mute")
    program.start()
    program.end()
    program.start()
    program.hold()
    program.expect_strip()
