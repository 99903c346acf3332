"""Messages of the system and of other programs to the hidden frame, and the strip's reactions."""
import time

import pytest
from harness import geometry, mouse
from harness.desktop import HIDE_STRIP, HOTKEY_EVENT, SHOW_OR_FLASH
from harness.probe import WM_USER
from harness.waiting import allowed, stays, wait_until
from test_keys import expect_card

RELOAD = WM_USER + 100
WM_SETTINGCHANGE, WM_DISPLAYCHANGE, WM_SYSCOMMAND = 0x1A, 0x7E, 0x112
WM_POWERBROADCAST, WM_SESSION_CHANGE = 0x218, 0x2B1
SC_CLOSE, SC_MINIMIZE, SC_MAXIMIZE, SC_MOVE, SC_RESTORE = 0xF060, 0xF020, 0xF030, 0xF010, 0xF120
RESUME = 7
CONNECT, DISCONNECT, LOCK, UNLOCK = 1, 2, 7, 8
SET_WORK_AREA = 47
BUTTONS_CHANGED = "KESTOVA_HBQ_NOTIFY_5B0C7D2A-3E41-4F8B-9A16-2C7E0D94B1F3"

# message, wParam, effect on a visible strip, additional log lines
HIDDEN_AND_RELEASED = {"CZelMainApp::_cancelFnSticky": 1}
REFRESHED = {"CZelMainDlg::refreshCards": 1, "CZelMainApp::_cancelFnSticky": 1, "CZelMainDlg::initialize": 0}
NOTHING = {"CZelMainDlg::refreshCards": 0, "CZelMainApp::_cancelFnSticky": 0, "CZelMainApp::showMainDlg": 0}
ROWS = [
    (RELOAD, 0, False, {**REFRESHED, "CZelConfig::_initQrdConfig": 1}),
    (HIDE_STRIP, 1, False, HIDDEN_AND_RELEASED),
    (HIDE_STRIP, 0, False, {"CZelMainApp::_cancelFnSticky": 0}),
    (HIDE_STRIP, 2, False, {"CZelMainApp::_cancelFnSticky": 0}),
    (WM_DISPLAYCHANGE, 32, False, {**REFRESHED, "CSysMsgHandlerFrame::OnDisplayChange": 1}),
    (WM_POWERBROADCAST, RESUME, False, {**HIDDEN_AND_RELEASED, "CSysMsgHandlerFrame::OnResume": 1}),
    *[(WM_POWERBROADCAST, other, True, NOTHING) for other in (0, 4, 6, 8, 10, 18, 0x8013)],
    *[(WM_SESSION_CHANGE, kind, False, {**HIDDEN_AND_RELEASED, "CSysMsgHandlerFrame::OnSessionConnect": 1})
      for kind in (CONNECT, DISCONNECT)],
    (WM_SESSION_CHANGE, UNLOCK, False, {**HIDDEN_AND_RELEASED, "CSysMsgHandlerFrame::OnSessionUnlock": 1}),
    *[(WM_SESSION_CHANGE, other, True, NOTHING) for other in (0, 3, 4, 5, 6, LOCK, 9)],
    (WM_SETTINGCHANGE, SET_WORK_AREA, False, REFRESHED),
    *[(WM_SETTINGCHANGE, other, True, NOTHING) for other in (0, 20, 46, 48)],
    *[(WM_SYSCOMMAND, command, True, NOTHING) for command in (SC_CLOSE, SC_MINIMIZE, SC_MAXIMIZE, SC_MOVE, SC_RESTORE)],
]


def counts(program, functions):
    texts = program.log_texts()
    return {function: texts.count(f"LEAVE {function}") for function in functions}


def show_strip(program):
    program.probe.send(program.strip().hwnd, HOTKEY_EVENT, 0, 0)
    assert program.strip_shown()


def test_each_message_does_what_it_says_and_no_more(program):
    program.offer("Mute", "Zoom")
    process = program.start()
    frame, placement = program.frame().hwnd, program.strip().rect
    for message, w_param, shown, counted in ROWS:
        show_strip(program)
        before = counts(program, counted)
        program.probe.send(frame, message, w_param, 0)
        after = counts(program, counted)
        row = f"message {message:#x}, {w_param:#x}"
        assert program.strip_shown() == shown, row
        assert {name: after[name] - before[name] for name in counted} == counted, row
        assert program.strip().rect == placement, row
    assert process.poll() is None
    assert program.log_texts().count("Workarea change event.") == 1
    program.end()


@pytest.mark.parametrize("message, w_param", [(WM_POWERBROADCAST, RESUME), (WM_SESSION_CHANGE, UNLOCK),
                                              (WM_DISPLAYCHANGE, 32), (RELOAD, 0)])
def test_an_open_card_goes_unapplied_and_the_next_keys_work(program, message, w_param):
    program.offer("Mute", "Zoom")
    program.machine("Zoom", Item=0)
    program.start()
    program.hold()
    program.press("Zoom")
    expect_card(program, "Zoom")
    program.probe.send(program.frame().hwnd, message, w_param, 0)
    expect_card(program, "Zoom", shown=False)
    wait_until(lambda: not program.shown_layered(), "nothing is left on the screen")
    program.let_go()
    stays(lambda: not program.chosen("Zoom"), "a choice that was taken back is applied", 0.2)
    program.hold()
    program.press("Zoom")
    program.press("Zoom")
    program.let_go()
    wait_until(lambda: program.chosen("Zoom") == ["1"], "the next choice is applied")


def test_system_commands_leave_the_strip_alone(program):
    program.offer("Mute")
    process = program.start()
    show_strip(program)
    for command in (SC_CLOSE, SC_MINIMIZE, SC_MAXIMIZE, SC_MOVE):
        assert program.probe.send(program.strip().hwnd, WM_SYSCOMMAND, command, 0) is not None
        assert program.strip_shown()
        assert program.strip().rect == geometry.strip(program.desktop.work_area(), 1)
    assert process.poll() is None and not program.frame().visible


def test_a_flash_shows_the_strip_for_half_a_second(program):
    program.offer("Mute")
    program.start()
    began = time.monotonic()
    program.probe.send(program.frame().hwnd, SHOW_OR_FLASH)
    assert program.strip_shown()
    program.expect_strip(shown=False)
    assert 0.45 < time.monotonic() - began < 0.5 + allowed(0.5)
    program.expect_strip_stays(False, 0.3)


def test_a_flash_ends_what_the_mouse_was_doing(program):
    program.configure(EnableHover=1, MouseEnterIdle=50)
    program.offer("Mute", "Zoom")
    program.start()
    mouse.call_cards(program, 0)
    program.keyboard.move(*mouse.middle(mouse.card_picture(program, 1)))
    program.probe.send(program.frame().hwnd, SHOW_OR_FLASH)
    assert program.strip_shown()
    program.expect_strip(shown=False)
    # The strip responds to the modifier again: released, it hides.
    show_strip(program)
    program.probe.send(program.strip().hwnd, HOTKEY_EVENT, 0, 1)
    program.expect_strip(shown=False)


def test_when_the_cards_show_at_launch_the_same_message_toggles(program):
    program.configure(ShowQrdAtLaunch=1)
    program.offer("Mute")
    program.start("/hide")
    frame = program.frame().hwnd
    for shown in (True, False, True, False):
        program.probe.send(frame, SHOW_OR_FLASH)
        assert program.strip_shown() == shown
    assert not any("flashMainDlg" in text for text in program.log_texts())


def test_changed_buttons_are_minded_only_while_keys_may_be_customised(program):
    program.offer("Mute", "Zoom")
    program.start()
    changed = program.probe.register_message(BUTTONS_CHANGED)
    show_strip(program)
    before = counts(program, NOTHING)
    program.probe.send(program.frame().hwnd, changed, 3, 4)
    assert program.strip_shown() and counts(program, NOTHING) == before
    assert not any("customized" in text for text in program.log_texts())
