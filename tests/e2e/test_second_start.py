"""The effect of another start in every state of the first program."""
import time

import pytest
from harness.desktop import DIALOG_CLASS, FRAME_CLASS, FRAME_TITLE, HOTKEY_EVENT, MUTEX, SHOW_OR_FLASH, STRIP_CLASS
from harness.keyboard import MODIFIER
from harness.probe import WM_CLOSE
from harness.waiting import SOON, allowed, wait_until

STRIP_IS_A_WINDOW = "ASSERT( ::IsWindow(hWndQRDMainDlg) )"


@pytest.mark.parametrize("lost_focus", [0, 1])
@pytest.mark.parametrize("at_launch", [0, 1])
def test_hidden_or_shown_the_first_answers_once_and_the_second_ends(program, at_launch, lost_focus):
    program.configure(ShowQrdAtLaunch=at_launch, HideMainUIWhenLostFocus=lost_focus)
    program.offer("Mute")
    first = program.start("/hide")
    strip = program.strip().hwnd
    for shown in (False, True):
        program.probe.send(strip, HOTKEY_EVENT, 0, 0 if shown else 1)
        assert program.strip_shown() == shown
        texts, answer = program.second_start()
        assert texts.count("Mutex already exists.") == 1
        assert answer.count("ENTER CZelMainApp::showMainDlgAlt") == at_launch
        assert answer.count("ENTER CSysMsgHandlerFrame::flashMainDlg") == 1 - at_launch
        assert texts.count("Need to hide main UI when lost focus.") == lost_focus
        assert STRIP_IS_A_WINDOW not in texts
        assert first.poll() is None and program.strip().hwnd == strip
        # At launch or not: what was visible is hidden in the end, and what appears automatically hides automatically.
        if not (at_launch and not shown):
            program.expect_strip(shown=False)
        elif lost_focus:
            wait_until(lambda: program.probe.foreground() == strip, "the strip has the focus")
            program.probe.focus(program.desktop.window)
            program.expect_strip(shown=False)
        else:
            assert program.strip_shown()
    assert len(program.probe.processes("Fenwyn.exe")) == 1


@pytest.mark.parametrize("lost_focus", [0, 1])
def test_the_first_hears_exactly_one_message(program, lost_focus):
    """A window of the same name plays the first instance, and the mutex is held."""
    program.configure(HideMainUIWhenLostFocus=lost_focus)
    program.probe.hold("mutex", MUTEX)
    frame = program.probe.make_window(cls=FRAME_CLASS, title=FRAME_TITLE)
    try:
        program.probe.received(frame)
        process = program.launch()
        seen = []

        def ended():
            seen.extend(entry for entry in program.probe.received(frame) if entry[0] == SHOW_OR_FLASH)
            return process.poll() is not None
        wait_until(ended, "the second start has ended", 20)
        seen.extend(entry for entry in program.probe.received(frame) if entry[0] == SHOW_OR_FLASH)
        assert seen == [(SHOW_OR_FLASH, 0, 0)]
        # There is no strip; this is only logged.
        assert program.log_texts().count(STRIP_IS_A_WINDOW) == lost_focus
    finally:
        program.probe.destroy(frame)


def test_a_start_while_the_first_is_ending_leaves_it_alone(program):
    program.offer("Mute")
    program.machine("Mute", FinalizeHotkeyDll__Delay=4000)
    first = program.start()
    program.probe.post(program.frame().hwnd, WM_CLOSE)
    wait_until(lambda: not program.frame(), "the first is ending")
    texts, _ = program.second_start()
    assert first.poll() is None, "the machine was too slow to catch the first while it ended"
    assert texts.count("Mutex really exists.") == 1
    assert program.wait_end(first) == 0
    program.machine("Mute", FinalizeHotkeyDll__Delay=0)
    program.start()


def test_a_start_that_outlives_the_ending_first_takes_its_place(program):
    program.offer("Mute")
    for _ in range(8):
        program.probe.hold("mutex", MUTEX)
        process = program.launch()
        wait_until(lambda: process.poll() is not None or "Mutex already exists." in program.log_texts(),
                   "the second start has seen the mutex", 20)
        program.probe.release()
        wait_until(lambda: process.poll() is not None or program.is_up(), "it ends, or takes over", 20)
        if process.poll() is None:
            break
        # It checked a second time before this slow test had released the mutex.
        assert "Mutex really exists." in program.log_texts()
    assert program.is_up()
    assert "Mutex really exists." not in program.log_texts()
    program.hold()
    program.expect_strip()


def test_of_twenty_starts_at_once_exactly_one_stays(program):
    program.write_log_settings(Level=0)
    program.offer("Mute", "Zoom")
    began = time.monotonic()
    processes = [program.launch() for _ in range(20)]
    wait_until(lambda: len(program.running()) == 1, lambda: f"{len(program.running())} are still there", 6 * SOON)
    took = time.monotonic() - began
    print(f"the others left within {took:.1f} s")
    assert took < allowed(6)
    wait_until(program.is_up, "the one is up", 20)
    assert [process.poll() for process in processes].count(None) == 1
    # Without visible effect, except that the strip of the remaining one shows for half a second.
    ours = [w for w in program.probe.windows() if w.cls in (FRAME_CLASS, STRIP_CLASS, DIALOG_CLASS)]
    assert {w.pid for w in ours} == {program.pid}
    assert program.probe.processes("Fenwyn.exe") == [program.pid]
    program.expect_strip(shown=False)
    program.keyboard.down(MODIFIER)
    program.expect_strip()
    program.keyboard.up(MODIFIER)
    program.expect_strip(shown=False)
    program.end()
