"""Plug-ins that crash, end the process or do not return: the program starts again by itself, the user is told which
function it was, and a plug-in that does it twice, or at its initialisation, is set aside."""
import collections
import os
import subprocess

import pytest
from harness import geometry, places
from harness.desktop import HIDE_STRIP
from harness.functions import Function
from harness.keyboard import CODES, MODIFIER
from harness.waiting import stays, wait_until
from test_failures import INSTRUMENTED, the_other_card_works

WM_ENDSESSION = 0x16
FAULTS_KEY = "SOFTWARE\\KESTOVA\\Fenwyn\\PluginFaults"
NOTICE = "FenwynNotice"
(VIOLATION, THROW, ABORT, EXIT, EXIT_PROCESS, KILL, OVERFLOW, LOOP, WAIT, OWN_THREAD, ASK_USER,
 FIVE_SECONDS, LEAK_GDI, LEAK_HANDLE, LEAK_USER, LEAK_MEMORY, CHANGE_CALLER,
 LOSE_HEAP, LOCK_HEAP) = range(1, 20)
WORDS = {VIOLATION: "an access violation (0xC0000005)", THROW: "a C++ exception", ABORT: "abort()", EXIT: "exit()",
         OVERFLOW: "a stack overflow (0xC00000FD)"}
PLUGIN = "InstrPlugin"
OTHER = Function("Zoom", "Zoom", None, "F2", (CODES["F2"],), 3)


def offer(program, function="Mute", **faults):
    """A function of the instrumented plug-in on F1 that fails as told, and Zoom on F2."""
    for export, fault in faults.items():
        program.probe.set_dword("HKCU", f"{INSTRUMENTED}\\{PLUGIN}", f"{export}.Fault", fault)
    codes = (CODES["F1"], CODES["F3"]) if function == "Brightness" else (CODES["F1"],)
    program.offer(Function(function, "Bad", places.windows_path(places.PLUGINS / f"{PLUGIN}.dll"), "F1", codes, 2),
                  OTHER)


def heal(program):
    program.probe.delete_key("HKCU", INSTRUMENTED)


def use_bad(program):
    """Opens the card and applies its choice; the program may end at any moment."""
    keyboard = program.keyboard
    keyboard.down(MODIFIER)
    keyboard.press("F1")
    keyboard.up(MODIFIER)


def is_new(program, old):
    frame = program.frame()
    return frame is not None and frame.pid != old and program.strip() is not None and \
        program.log_texts()[-1:] != [] and "LEAVE CZelMainApp::InitInstance" in program.log_texts()


def wait_for_successor(program, old):
    wait_until(lambda: is_new(program, old), lambda: f"it was started again: {program.windows()}", 40)
    return program.pid


def crash(program, **faults):
    """Uses the function once, which ends the program, and waits for the next one."""
    offer(program, **faults)
    program.start()
    old = program.pid
    use_bad(program)
    wait_for_successor(program, old)


def notice(program):
    return next((window.title for window in program.probe.windows(NOTICE) if window.visible), "")


def wait_for_notice(program, *words):
    wait_until(lambda: all(word in notice(program) for word in words), lambda: f"the user is told: {notice(program)!r}")


def last_run(program):
    """What the program wrote of its last run."""
    return [text for text in program.log_texts() if text.startswith("The last run ended in ")]


@pytest.fixture
def dumps():
    """For tests of the dump itself: writing one takes seconds here, so that all others do without."""


@pytest.fixture(autouse=True)
def surroundings(program, request):
    environment = program.desktop.environment
    if "dumps" not in request.fixturenames:
        environment["WINEDLLOVERRIDES"] = "winedbg.exe=d;dbghelp=d"
    yield
    environment.pop("WINEDLLOVERRIDES", None)
    heal(program)


def key_arrives(program):
    """Whether a function's key, with the modifier, reaches the other program."""
    program.probe.received(program.desktop.window)
    use_bad(program)
    return any(message == 0x100 and key == 0x70
               for message, key, _ in program.probe.received(program.desktop.window))


def run_check(program, *arguments):
    return subprocess.run([str(places.WINE), str(program.stage / "FenwynCheck.exe"), *arguments], check=False,
                          env=program.desktop.environment, stdout=subprocess.DEVNULL, timeout=60).returncode


def expect_end(program, process):
    wait_until(lambda: process.poll() is not None, "the program has ended", 30)


def test_a_crash_leaves_a_dump(program, dumps):
    crash(program, SelectItem=VIOLATION)
    dump, = program.folder.glob("fault-*.dmp")
    assert dump.read_bytes()[:4] == b"MDMP" and dump.stat().st_size > 10000


@pytest.mark.parametrize("fault", [VIOLATION, THROW, ABORT, OVERFLOW])
def test_a_crash_is_named_and_the_program_goes_on(program, fault):
    crash(program, SelectItem=fault)
    wait_for_notice(program, "Bad", f"{PLUGIN}.dll", "once more")
    said = last_run(program)[0]
    assert "SelectItem of function Mute" in said and WORDS[fault] in said and said.endswith("loaded again.")
    # The log that the fault ended is kept with the dump; its last line names the plug-in.
    kept, = program.folder.glob("fault-*.txt")
    last = kept.read_text(errors="replace").strip().splitlines()[-1]
    assert f"The program ends: {WORDS[fault]} in SelectItem of function Mute" in last and f"{PLUGIN}.dll" in last
    heal(program)
    # Nothing of the first run is left: no key is down, the cards answer.
    the_other_card_works(program)


def test_a_plugin_that_crashes_twice_is_set_aside_until_it_is_forgiven(program):
    offer(program, GetDisplayItemInfo=VIOLATION)
    program.start()
    for _ in range(2):
        old = program.pid
        use_bad(program)
        wait_for_successor(program, old)
    wait_for_notice(program, "Bad", "switched off", "--forgive")
    assert any(text.startswith("Plug-in ") and "is set aside since" in text for text in program.log_texts())
    assert program.strip().rect == geometry.strip(program.desktop.work_area(), 1), "one card is left"
    program.functions = [OTHER]
    the_other_card_works(program)
    program.probe.post(program.frame().hwnd, 0x10)
    wait_until(lambda: not program.probe.processes("Fenwyn.exe"), "it has ended")
    heal(program)
    assert run_check(program, "--forgive") == 0
    program.start()
    assert program.strip().rect == geometry.strip(program.desktop.work_area(), 2)


def test_a_crash_at_the_start_is_enough(program):
    offer(program, InitializeHotkeyDll=VIOLATION)
    program.launch()
    wait_until(lambda: is_new(program, 0) and last_run(program), "it was started again", 40)
    wait_for_notice(program, "Bad", "switched off")
    assert "InitializeHotkeyDll of function Mute" in last_run(program)[0]
    assert last_run(program)[0].endswith("set aside.")
    assert program.strip().rect == geometry.strip(program.desktop.work_area(), 1)


def test_the_end_of_the_process_while_a_library_is_loaded_is_enough(program):
    offer(program, DllMain=KILL)
    expect_end(program, program.launch())
    program.launch()
    wait_until(lambda: is_new(program, 0) and last_run(program), "it starts", 20)
    wait_for_notice(program, "Mute", "switched off")
    assert last_run(program)[0].endswith("the process ended. The plug-in is set aside.")


@pytest.mark.parametrize("fault", [EXIT_PROCESS, KILL])
def test_who_ends_the_process_is_seen_by_the_next_start(program, fault):
    offer(program, SelectItem=fault)
    process = program.start()
    use_bad(program)
    expect_end(program, process)
    wait_until(lambda: not program.probe.processes("Fenwyn.exe"), "nobody starts it again")
    program.launch()
    wait_until(lambda: is_new(program, 0) and last_run(program), "it starts", 20)
    assert last_run(program)[0].startswith("The last run ended in SelectItem of function Mute")
    assert last_run(program)[0].endswith("the process ended. The plug-in is loaded again.")
    wait_for_notice(program, "Mute")
    heal(program)
    the_other_card_works(program)


def test_a_crash_at_the_end_ends_it_all_the_same(program):
    offer(program, FinalizeHotkeyDll=VIOLATION)
    program.start()
    program.probe.post(program.frame().hwnd, 0x10)
    wait_until(lambda: not program.probe.processes("Fenwyn.exe"), "it has ended, and nobody starts it again", 30)
    stays(lambda: not program.probe.processes("Fenwyn.exe"), "it came back", 1)
    assert len(list(program.folder.glob("fault-*.txt"))) == 1
    program.start()
    assert "FinalizeHotkeyDll of function Mute" in last_run(program)[0]


def test_a_safe_start_loads_no_plugin(program):
    offer(program, DllMain=VIOLATION)
    program.start("/safe")
    assert len([text for text in program.log_texts() if text.startswith("A start without plug-ins: ")]) == 2
    assert not program.calls()
    program.end()


@pytest.mark.parametrize("fault", [LOOP, WAIT])
def test_a_hang_gives_the_keys_back_and_is_ended(program, fault):
    program.configure(PluginPatience=500, PluginEndTime=4000)
    offer(program, SelectItem=fault)
    program.start()
    old = program.pid
    use_bad(program)
    wait_for_notice(program, "Bad", f"{PLUGIN}.dll", "does not answer")
    # A function's key reaches the other program, with the modifier held.
    wait_until(lambda: key_arrives(program), "keys are not swallowed")
    assert all(window.size == (1, 1) for window in program.shown_layered()), "the cards are not in the way"
    wait_for_successor(program, old)
    assert "a call that did not return. The plug-in is set aside." in last_run(program)[0]
    assert program.strip().rect == geometry.strip(program.desktop.work_area(), 1)
    program.functions = [OTHER]
    the_other_card_works(program)


def only_the_notice_is_seen(program, before):
    """Whether the screen is as it was before the cards appeared, except where the notice is."""
    place = next(window.rect for window in program.probe.windows(NOTICE) if window.visible)
    now = program.desktop.screen.picture()

    def same(y):
        row = [picture.data[y * 3 * now.width:(y + 1) * 3 * now.width] for picture in (now, before)]
        if place.top <= y < place.bottom:
            row = [pixels[:place.left * 3] + pixels[place.right * 3:] for pixels in row]
        return row[0] == row[1]
    return all(same(y) for y in range(now.height))


# What is on the screen when the call hangs: the function and its export, the card that is opened, what it shows, and
# what is done then.
State = collections.namedtuple("State", "function export opened shown act info", defaults=[3])
STATES = {
    "captions": State("Mute", "SelectItem", "Mute", lambda size: 10 < size[1] < 45 < size[0],
                      lambda keyboard: keyboard.up(MODIFIER)),
    "preview": State("Output_2", "SelectItem", "Output_2", lambda size: size == (120, 80),
                     lambda keyboard: keyboard.up(MODIFIER)),
    "slider": State("Brightness", "FocusItem", "Brightness", lambda size: size == (200, 24),
                    lambda keyboard: [keyboard.press("F3") for _ in range(2)], 10),
    "another card": State("Mute", "GetDisplayItemInfo", "Zoom", lambda size: 10 < size[1] < 45 < size[0],
                          lambda keyboard: keyboard.press("F1")),
}


def alike(first, second):
    """Apart from what the surfaces that take the mouse, with their opacity of 1 of 255, add to a colour."""
    return all(abs(one - other) <= 1 for one, other in zip(first.data, second.data) if one != other)


def open_card(program, state):
    """Returns what the screen shows then."""
    program.hold()
    program.press(state.opened)
    wait_until(lambda: any(state.shown(window.size) for window in program.shown_dialogs()),
               lambda: f"it is shown: {program.shown_dialogs()}")
    pictures = [program.desktop.screen.picture()]

    def is_complete():
        pictures.append(program.desktop.screen.picture())
        return pictures[-2] == pictures[-1]
    wait_until(is_complete, "it is painted")
    return pictures[-1]


@pytest.mark.parametrize("state", STATES)
@pytest.mark.parametrize("position", [0, 1])
def test_nothing_of_the_cards_is_seen_while_a_call_hangs(program, state, position):
    state = STATES[state]
    program.configure(PluginPatience=500, AlwaysShowItemsCaption=1, Position=position)
    for name, value in {"ItemCount": 2, "Info": state.info, "CurrentItem": 1, "Entry0.Records": 2, "Entry1.Records": 2,
                        "FocusItem.Every": 2}.items():  # the release of the modifier would hang again
        program.probe.set_dword("HKCU", f"{INSTRUMENTED}\\{PLUGIN}", name, value)
    offer(program, state.function, **{state.export: FIVE_SECONDS})
    program.start()
    before = program.desktop.screen.picture()
    opened = open_card(program, state)
    state.act(program.keyboard)
    wait_for_notice(program, "Bad", "does not answer")
    wait_until(lambda: only_the_notice_is_seen(program, before),
               lambda: f"nothing but the notice is seen: {program.shown_dialogs()}", 3)
    assert "The plug-in has returned: the cards answer again." not in program.log_texts(), "it was seen too late"
    program.keyboard.release_all()
    wait_until(lambda: "LEAVE CHotkeyEventHandler::takeKeysAgain" in program.log_texts(), "keys are taken again", 20)
    wait_until(lambda: not notice(program), "the notice goes")
    program.expect_strip(shown=False)
    assert program.desktop.screen.picture() == before, "the cards stay hidden"
    # They look as ever when they are opened again.
    if state.function != "Brightness":  # its level is another now
        assert alike(open_card(program, state), opened)
        program.probe.post(program.frame().hwnd, HIDE_STRIP)
        program.expect_strip(shown=False)
        wait_until(lambda: program.desktop.screen.picture() == before, "they hide as ever")


def test_a_call_that_returns_after_all_takes_the_keys_again(program):
    program.configure(PluginPatience=500)
    offer(program, SelectItem=FIVE_SECONDS)
    program.start()
    pid = program.pid
    use_bad(program)
    wait_for_notice(program, "Bad", "does not answer")
    wait_until(lambda: not notice(program), "it has come back", 20)
    wait_until(lambda: "LEAVE CHotkeyEventHandler::takeKeysAgain" in program.log_texts(), "keys are taken again")
    program.expect_strip(shown=False)
    the_other_card_works(program)
    assert program.pid == pid and not program.probe.windows(NOTICE)


@pytest.mark.parametrize("fault", [LOSE_HEAP, LOCK_HEAP])
@pytest.mark.parametrize("destination", [2, 3], ids=["log is open", "log is opened for each line"])
def test_without_the_heap_the_keys_go_back_and_the_program_ends(program, fault, destination):
    """No thread gets the lock of the process heap any more, so that nothing can be shown, and nobody started."""
    program.configure(PluginPatience=500, PluginEndTime=3000)
    program.write_log_settings(LogFile=places.windows_path(program.log_file), Level=3, Flush=1, Destination=destination)
    offer(program, SelectItem=fault)
    process = program.start()
    use_bad(program)
    wait_until(lambda: program.log_file.exists() and any("does not return" in text for text in program.log_texts()),
               "the line is written")
    wait_until(lambda: key_arrives(program), "keys are not swallowed")
    wait_until(lambda: process.poll() is not None, "the program has ended", 15)
    assert any(f"The program ends: {ENDINGS[LOOP]} in SelectItem of function Mute" in text
               for text in program.log_texts())
    assert not program.probe.processes("Fenwyn.exe")
    heal(program)
    program.write_log_settings(LogFile=places.windows_path(program.log_file), Flush=1, Level=3, Destination=2)
    program.start()
    assert last_run(program)[0].endswith("a call that did not return. The plug-in is set aside.")
    wait_for_notice(program, "Bad", f"{PLUGIN}.dll", "switched off")
    program.functions = [OTHER]
    the_other_card_works(program)


def test_a_message_box_is_no_hang(program):
    program.configure(PluginPatience=500, PluginEndTime=1000)
    offer(program, SelectItem=ASK_USER)
    program.start()
    pid = program.pid
    use_bad(program)
    box = wait_until(lambda: next((w for w in program.windows() if w.title == "Fenwyn test"), None), "it asks")
    stays(lambda: not notice(program) and program.pid == pid, "it was taken for a hang", 3)
    program.probe.post(box.hwnd, 0x10)
    wait_until(lambda: not any(w.title == "Fenwyn test" for w in program.windows()), "it is answered")
    heal(program)
    the_other_card_works(program)


@pytest.mark.parametrize("at_work", [False, True])
def test_a_fault_at_the_end_of_the_session_starts_nothing_again(program, at_work):
    """Zoom's plug-in crashes when it is ended; that of Mute may be asking the user at that moment."""
    offer(program, SelectItem=ASK_USER)
    other = "InstrNoFocusItem"
    library = places.windows_path(places.PLUGINS / f"{other}.dll")
    program.offer(program.functions[0], OTHER._replace(plugin=library))
    program.probe.set_dword("HKCU", f"{INSTRUMENTED}\\{other}", "FinalizeHotkeyDll.Fault", VIOLATION)
    process = program.start()
    if at_work:
        use_bad(program)
        wait_until(lambda: any(w.title == "Fenwyn test" for w in program.windows()), "it asks")
    program.probe.post(program.frame().hwnd, WM_ENDSESSION, 1)
    expect_end(program, process)
    stays(lambda: not program.probe.processes("Fenwyn.exe"), "it was started again", 3)


def test_what_a_plugin_changes_around_it_is_put_back(program):
    offer(program, GetDisplayItemInfo=CHANGE_CALLER)
    program.probe.set_dword("HKCU", f"{INSTRUMENTED}\\{PLUGIN}", "Beyond", 4)
    program.start()
    pid = program.pid
    use_bad(program)
    wait_until(lambda: any("SelectItem" in text or "Select item" in text for text in program.log_texts()), "it is used")
    who = f"GetDisplayItemInfo of function Mute, plug-in {places.windows_path(places.PLUGINS / PLUGIN)}.dll, has "
    for what in ("changed the priority of the thread. It is put back.", "changed the error mode of the thread. It is put back.",
                 "changed the COM apartment of the thread. It is put back.", "changed the current folder. It is put back.",
                 "changed the error mode of the process. It is put back.",
                 "written more than its out value has room for."):
        assert program.log_texts().count(who + what) == 1, what
    heal(program)
    the_other_card_works(program)
    assert program.pid == pid


def test_no_key_is_left_down(program):
    """The process ends while the modifier and a function's key are down."""
    offer(program, GetDisplayItemInfo=VIOLATION)
    program.start()
    old = program.pid
    window = program.desktop.window
    program.probe.received(window)
    program.keyboard.down(MODIFIER)
    program.keyboard.down("F1")
    wait_for_successor(program, old)
    program.keyboard.up("F1")
    program.keyboard.up(MODIFIER)
    program.keyboard.press("F5")
    seen = []

    def complete():
        seen.extend((message, key) for message, key, _ in program.probe.received(window) if 0x100 <= message <= 0x105)
        return (0x101, 0x74) in seen
    wait_until(complete, lambda: f"the other program gets its key: {seen}")
    down = set()
    for message, key in seen:
        (down.add if message in (0x100, 0x104) else down.discard)(key)
    assert not down, seen


# Every export with every fault. Usually a few of them; all with FENWYN_ALL_FAULTS, which takes minutes.

OWNERS = {"InitializeHotkeyDll": "Mute", "GetUnsupportedReason": "Mute", "GetDisplayItemInfo": "Mute",
          "GetCurrentItem": "Mute", "SelectItem": "Mute", "FinalizeHotkeyDll": "Mute", "FocusItem": "Brightness",
          "IsDualBrtCtrl": "Brightness", "GetCustomItemText": "PowerPlan", "FnF5_InitializeHotkeyDll": "Output_2",
          "FnF5_GetDisplayItemCount": "Output_2", "FnF5_GetDisplayItemInfo": "Output_2",
          "FnF5_SetCurrentForPanic": "Output_2"}
AT_START = {"InitializeHotkeyDll", "GetUnsupportedReason", "FnF5_InitializeHotkeyDll"}
ENDINGS = dict(WORDS) | {EXIT_PROCESS: "the process ended", KILL: "the process ended",
                         LOOP: "a call that did not return"}
ALL = [(export, fault) for export in OWNERS for fault in ENDINGS
       # The panic thread holds nobody up, and is cut off at the end.
       if (export, fault) != ("FnF5_SetCurrentForPanic", LOOP)]
SOME = [("FocusItem", THROW), ("GetCustomItemText", OVERFLOW), ("FnF5_GetDisplayItemInfo", EXIT),
        ("GetUnsupportedReason", ABORT), ("FnF5_SetCurrentForPanic", VIOLATION), ("FinalizeHotkeyDll", LOOP)]


@pytest.mark.parametrize("export, fault", ALL if os.environ.get("FENWYN_ALL_FAULTS") else SOME)
def test_each_export_with_each_fault(program, export, fault):
    owner = OWNERS[export]
    key = f"{INSTRUMENTED}\\{PLUGIN}"
    if fault == LOOP:
        program.configure(PluginPatience=500, PluginEndTime=1500)
    program.probe.set_dword("HKCU", key, "ItemCount", 2)
    if export == "GetUnsupportedReason":
        program.probe.set_dword("HKCU", key, "InitializeHotkeyDll.Result", 1)
    offer(program, owner, **{export: fault})
    process = program.launch()
    old = 0
    if export not in AT_START:
        wait_until(lambda: is_new(program, 0), "it runs", 20)
        old = program.pid
        if export == "FinalizeHotkeyDll":
            program.probe.post(program.frame().hwnd, 0x10)
        elif export == "FnF5_SetCurrentForPanic":
            program.probe.set_event("FnF5Panic")
        else:
            use_bad(program)
    if fault == LOOP:
        wait_for_notice(program, "Bad", "does not answer")
    expect_end(program, process)
    if fault in (EXIT_PROCESS, KILL) or export == "FinalizeHotkeyDll":
        wait_until(lambda: not program.probe.processes("Fenwyn.exe"), "it has ended")
        heal(program)
        program.launch()
    wait_until(lambda: is_new(program, old) and last_run(program), "it was started again", 40)
    said, = last_run(program)
    assert f"in {export} of function {owner}, plug-in " in said
    # Where the system leaves the handlers no stack at all, the overflow does not end: then it is a hang.
    hung = ENDINGS[LOOP] in said and fault in (LOOP, OVERFLOW)
    assert hung or ENDINGS[fault] in said
    assert said.endswith("set aside." if export in AT_START or hung else "loaded again.")
    if not hung:
        wait_for_notice(program, owner if fault in (EXIT_PROCESS, KILL) else "Bad", f"{PLUGIN}.dll")


def test_a_fault_on_a_thread_of_the_plugin_counts(program):
    crash(program, SelectItem=OWN_THREAD)
    assert "a thread of its own of function Mute" in last_run(program)[0]
    wait_for_notice(program, "Bad")


@pytest.mark.parametrize("bad", [1, 2], ids=["no memory", "end of a page"])
@pytest.mark.parametrize("export", ["GetUnsupportedReason", "GetCustomItemText"])
def test_a_bad_text_is_the_fault_of_its_plugin(program, export, bad):
    """It is read when the export has returned already."""
    for name, value in {"BadText": bad, "InitializeHotkeyDll.Result": int(export in AT_START)}.items():
        program.probe.set_dword("HKCU", f"{INSTRUMENTED}\\{PLUGIN}", name, value)
    offer(program, OWNERS[export])
    program.launch()
    old = 0
    if export not in AT_START:
        wait_until(lambda: is_new(program, 0), "it runs", 20)
        old = program.pid
        use_bad(program)
    wait_until(lambda: is_new(program, old) and last_run(program), "it was started again", 40)
    said, = last_run(program)
    assert f"in {export} of function {OWNERS[export]}, plug-in " in said and WORDS[VIOLATION] in said
    wait_for_notice(program, "Bad", f"{PLUGIN}.dll")
