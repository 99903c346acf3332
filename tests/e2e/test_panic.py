"""A held output key restores a picture: three seconds after the last key event, on a thread of its own."""
import datetime
import time

import pytest
from harness.functions import sample
from harness.waiting import stays, wait_until
from test_keys import expect_card

HELD = 3.0  # seconds from the last key event
PANIC = {"Output_2": ("FnF5_SetCurrentForPanic", "_fnF5PanicTimerProc_2"),
         "Output": ("SelectItem", "_fnF5PanicTimerProc")}
BOTH = pytest.mark.parametrize("function", ["Output_2", "Output"])


def ready(program, function, **state):
    program.offer(*sample("Mute", function, "Zoom"))
    program.machine(function, **state)
    program.start()


def panics(program, function):
    """The calls of the panic export; for the older output, choices that were not made by the user's keys."""
    user = {call.thread for call in program.calls("Mute")}
    return [call for call in program.calls(function, PANIC[function][0]) if call.thread not in user]


def seconds(call):
    return datetime.datetime.fromisoformat(call.time).timestamp()


def key_down(program, key):
    """Presses a key; returns the time just before."""
    seen = program.count_of("CZelMainDlg::handleHotkey", "LEAVE")
    begin = time.time()
    program.keyboard.down(key)
    wait_until(lambda: program.count_of("CZelMainDlg::handleHotkey", "LEAVE") > seen, "the key is handled")
    return begin


def key_up(program, key):
    seen = program.count_of("CZelMainDlg::handleHotkey", "LEAVE")
    program.keyboard.up(key)
    wait_until(lambda: program.count_of("CZelMainDlg::handleHotkey", "LEAVE") > seen, "the key is handled")


def hold_and_open(program, function):
    """Holds the modifier and the output key; returns the time just before the key."""
    program.hold()
    program.expect_strip()
    begin = key_down(program, program.key_of(function))
    expect_card(program, function)
    return begin


@BOTH
def test_a_held_key_panics_once_after_three_seconds_on_another_thread(program, function):
    items = {"Item": 2} if function == "Output_2" else {"Item": 1, "Items": 0xE}
    ready(program, function, **items)
    begin = hold_and_open(program, function)
    wait_until(lambda: panics(program, function), lambda: f"the panic call: {program.calls(function)}", HELD + 10)
    call = panics(program, function)[0]
    waited = seconds(call) - begin
    assert HELD - 0.1 <= waited < HELD + 5, waited
    assert call.result == 0
    # For the older output, it is the choice of the first arrangement.
    assert call.arguments == ("1" if function == "Output" else call.arguments)
    assert call.thread not in {other.thread for other in program.calls() if other != call}
    # Once, however long the key is held.
    stays(lambda: len(panics(program, function)) == 1, "it panics again", HELD + 0.5)
    assert program.count_of(PANIC[function][1], "LEAVE") == 1
    program.keyboard.up(program.key_of(function))
    program.let_go()


@BOTH
def test_another_key_event_within_three_seconds_prevents_it(program, function):
    ready(program, function)
    key = program.key_of(function)
    # The release of the key itself.
    hold_and_open(program, function)
    time.sleep(1)
    key_up(program, key)
    stays(lambda: not panics(program, function), "it panics after the key's release", HELD + 0.5)
    # The key of another function; the output key is still held.
    key_down(program, key)
    time.sleep(1)
    program.press("Mute")
    stays(lambda: not panics(program, function), "it panics after another key", HELD + 0.5)
    key_up(program, key)
    # The release of the modifier, which applies the choice. The time before it does not count.
    key_down(program, key)
    time.sleep(1)
    program.let_go()
    stays(lambda: not panics(program, function), "it panics after the modifier's release", HELD + 0.5)
    assert program.count_of(PANIC[function][1], "ENTER") == 0
    assert not panics(program, function)


def test_a_further_press_starts_the_three_seconds_anew(program):
    ready(program, "Output_2")
    key = program.key_of("Output_2")
    first = hold_and_open(program, "Output_2")
    # Half of the time, counted from the key: on a busy machine, the card takes some of it to open.
    time.sleep(max(first + HELD / 2 - time.time(), 0))
    key_up(program, key)
    begin = key_down(program, key)
    wait_until(lambda: panics(program, "Output_2"), "the panic call", HELD + 10)
    assert seconds(panics(program, "Output_2")[0]) - begin >= HELD - 0.1
    assert program.probe.get_value("HKCU", "SOFTWARE\\KESTOVA\\Simulated Notebook\\Output_2", "PanicCount")[0] == 1


@BOTH
def test_a_slow_panic_holds_nothing_up(program, function):
    """While the plug-in is busy, cards open and close; when the program ends, the thread is terminated after the
    wait."""
    export, timer = PANIC[function]
    # Much longer than the rest of the test takes, even on a busy machine.
    ready(program, function, **{f"{export}__Delay": 60000})
    hold_and_open(program, function)
    wait_until(lambda: program.count_of(timer, "LEAVE"), "the three seconds are over", HELD + 10)
    began = time.monotonic()
    key_up(program, program.key_of(function))
    program.press("Mute")
    expect_card(program, "Mute")
    program.let_go()
    wait_until(lambda: program.chosen("Mute"), "Mute is switched")
    program.hold()
    program.expect_strip()
    program.let_go()
    program.expect_strip(shown=False)
    worked = time.monotonic() - began
    assert not panics(program, function), f"the call has come back: {worked:.1f} s"
    program.end()
    took = time.monotonic() - began - worked
    # The wait is one or two seconds; the rest is the time of shutdown on a busy machine.
    assert took < (1 if function == "Output_2" else 2) + 5, f"{took:.1f} s for the end"
    assert not panics(program, function), "the call was cut off"
    assert program.log_texts()[-1] == "LEAVE CZelMainApp::ExitInstance"
    assert ("Wait for FnF5 panic thread time out." in program.log_texts()) == (function == "Output")
    assert [call.export for call in program.calls(function)][-1] == "FinalizeHotkeyDll"
    assert len(program.calls("Zoom", "FinalizeHotkeyDll")) == 1, "the functions after it end as ever"


def test_a_panic_of_five_seconds_ends_by_itself(program):
    ready(program, "Output_2", FnF5_SetCurrentForPanic__Delay=5000)
    begin = hold_and_open(program, "Output_2")
    wait_until(lambda: panics(program, "Output_2"), "the panic call has come back", HELD + 15)
    assert seconds(panics(program, "Output_2")[0]) - begin >= HELD + 5 - 0.1
    program.end()
    assert [call.export for call in program.calls("Output_2")][-2:] == ["FnF5_SetCurrentForPanic", "FinalizeHotkeyDll"]


def test_a_panic_that_fails_is_logged_and_the_next_one_works(program):
    ready(program, "Output_2", FnF5_SetCurrentForPanic__Result=1)
    hold_and_open(program, "Output_2")
    wait_until(lambda: panics(program, "Output_2"), "the panic call", HELD + 10)
    wait_until(lambda: "ASSERT( FUNCX_S_OK == nRet )" in program.log_texts(), "the failure is logged")
    program.machine("Output_2", FnF5_SetCurrentForPanic__Result=0)
    key_up(program, program.key_of("Output_2"))
    key_down(program, program.key_of("Output_2"))
    wait_until(lambda: [call.result for call in panics(program, "Output_2")] == [1, 0], "the next panic", HELD + 10)
    program.end()
