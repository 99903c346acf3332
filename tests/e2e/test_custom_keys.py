"""Keys that the user has assigned to other programs, in the button utility's registry keys."""
import pytest
from harness import geometry, places
from harness.desktop import LIST
from harness.functions import Function
from harness.keyboard import CODES
from harness.waiting import stays, wait_until
from test_frame import BUTTONS_CHANGED
from test_keys import expect_card

BUTTONS = "SOFTWARE\\KESTOVA\\HBQ\\Buttons"
SETTING = "SOFTWARE\\KESTOVA\\HBQ\\UserSetting"
SHELL = "C:\\windows\\system32\\cmd.exe"


def button(program, name, key, number, file=None, param=None, controlled=1):
    """A button as the utility describes it; with a file, also the user's choice for it."""
    path = f"{BUTTONS}\\{name}"
    program.probe.set_dword("HKLM", path, "IsQRDControl", controlled)
    program.probe.set_dword("HKLM", path, "MakeFunction", number)
    # The utility stores more than the code in this value.
    program.probe.set_dword("HKLM", path, "MakeValue", 0x180 | CODES[key])
    if file is not None:
        program.probe.set_text("HKLM", f"{SETTING}\\{number}", "OPT1", file)
    if param is not None:
        program.probe.set_text("HKLM", f"{SETTING}\\{number}", "OPT2", param)


def writes(program, words):
    """Parameters that make the shell append a line of words to a file, and the file."""
    file = program.folder / "started.txt"
    return f"/c echo {words}>>{places.windows_path(file)}", file


def lines_of(file):
    return [line.strip() for line in file.read_text().splitlines()] if file.exists() else []


def announce(program):
    program.probe.send(program.frame().hwnd, program.probe.register_message(BUTTONS_CHANGED))


def expect_cards(program, count):
    wanted = geometry.strip(program.desktop.work_area(), count)
    wait_until(lambda: program.strip().rect == wanted, lambda: f"{count} cards: {program.strip()}")


def test_a_customised_key_starts_its_program_with_its_parameters(program):
    program.configure(Programmable=1)
    program.offer("Mute", "Zoom")
    param, file = writes(program, "one \"two three\" four")
    button(program, "First", "F1", 41, SHELL, param)
    program.start()
    expect_cards(program, 1)
    program.hold()
    program.expect_strip()
    program.keyboard.press("F1")
    wait_until(lambda: lines_of(file) == ['one "two three" four'], lambda: f"started: {lines_of(file)}")
    # The cards do not receive it.
    program.expect_strip_stays(True, 0.2)
    assert f"File:{SHELL}, param:{param}." in program.log_texts()
    program.keyboard.press("F1")
    wait_until(lambda: len(lines_of(file)) == 2, "each press starts it once")
    program.let_go()
    program.expect_strip(shown=False)
    stays(lambda: len(lines_of(file)) == 2, "releasing the key starts it", 0.2)
    assert not program.calls("Mute")


def test_a_program_that_is_not_there_is_logged_and_nothing_else_happens(program):
    program.configure(Programmable=1)
    program.offer("Mute", "Zoom")
    program.machine("Zoom", Item=0)
    button(program, "First", "F1", 1, "Z:\\no such folder\\editor.exe", "-x")
    process = program.start()
    program.hold()
    program.keyboard.press("F1")
    wait_until(lambda: "File:Z:\\no such folder\\editor.exe, param:-x." in program.log_texts(), "the try is logged")
    wait_until(lambda: any(line.function == "CCustomHotkey::handleHotkey" and int(line.text.split("0x")[1], 16) <= 32
                           for line in program.errors()), lambda: f"the reason is logged: {program.errors()}")
    program.keyboard.press("F2")
    program.let_go()
    wait_until(lambda: program.chosen("Zoom") == ["0"], "the other card works")
    assert process.poll() is None


def test_cards_go_and_come_back_when_the_buttons_change(program):
    program.configure(Programmable=1)
    program.offer("Mute", "Lock", "Zoom")
    param, file = writes(program, "changed")
    button(program, "First", "F2", 7)
    program.start()
    expect_cards(program, 3)
    program.probe.set_text("HKLM", f"{SETTING}\\7", "OPT1", SHELL)
    program.probe.set_text("HKLM", f"{SETTING}\\7", "OPT2", param)
    # The program only learns of it from the utility's notification; that also closes an open card.
    program.hold()
    program.press("Lock")
    expect_card(program, "Lock")
    announce(program)
    expect_cards(program, 2)
    assert "Refersh the fenwyn because hotkey is customized." in program.log_texts()
    wait_until(lambda: not program.shown_layered(), "the card is gone")
    program.let_go()
    assert not program.chosen("Lock")
    program.hold()
    program.keyboard.press("F2")
    wait_until(lambda: lines_of(file) == ["changed"], "the key starts the program")
    program.let_go()
    program.probe.delete_key("HKLM", f"{SETTING}\\7")
    announce(program)
    expect_cards(program, 3)
    program.hold()
    program.press("Lock")
    expect_card(program, "Lock")
    program.let_go()
    wait_until(lambda: len(program.chosen("Lock")) == 1, "the card works as before")
    assert lines_of(file) == ["changed"]


def test_nothing_is_customised_while_that_is_switched_off(program):
    program.offer("Mute", "Zoom")
    param, file = writes(program, "never")
    button(program, "First", "F1", 1, SHELL, param)
    program.start()
    expect_cards(program, 2)
    announce(program)
    expect_cards(program, 2)
    program.hold()
    program.press("Mute")
    expect_card(program, "Mute")
    program.let_go()
    wait_until(lambda: program.chosen("Mute"), "the card works")
    assert not lines_of(file)
    # If switched on while the program runs, it takes effect at the next notification.
    program.change("Programmable", 1)
    expect_cards(program, 2)
    announce(program)
    expect_cards(program, 1)


@pytest.mark.parametrize("controlled, file, param", [(0, SHELL, "/c exit"), (1, None, None), (1, SHELL, None),
                                                     (1, None, "/c exit")])
def test_a_button_that_is_not_ours_or_not_wholly_set_keeps_its_card(program, controlled, file, param):
    program.configure(Programmable=1)
    program.offer("Mute", "Zoom")
    button(program, "First", "F1", 1, file, param, controlled)
    program.start()
    expect_cards(program, 2)
    program.hold()
    program.press("Mute")
    expect_card(program, "Mute")


def test_a_function_keeps_its_card_as_long_as_one_of_its_keys_is_its_own(program):
    program.configure(Programmable=1)
    program.offer(Function("Zoom", "Zoom", None, "F1", (CODES["F1"], CODES["F2"]), 3),
                  Function("Mute", "Mute", None, "F3", (CODES["F3"],), 2))
    param, file = writes(program, "first")
    button(program, "First", "F1", 1, SHELL, param)
    program.start()
    expect_cards(program, 2)
    program.hold()
    program.keyboard.press("F1")
    wait_until(lambda: lines_of(file) == ["first"], "the customised key starts the program")
    program.keyboard.press("F2")
    expect_card(program, "Zoom")
    program.let_go()
    wait_until(lambda: program.chosen("Zoom"), "the other key works the card")
    button(program, "Second", "F2", 2, SHELL, param)
    announce(program)
    expect_cards(program, 1)


def test_without_any_button_the_program_does_not_start_customisable(program):
    program.configure(Programmable=1)
    program.offer("Mute")
    process = program.launch()
    program.wait_end(process)
    assert not program.windows()
    assert "ERR CCustomHotkey::getCustomizedHotkeys: Error Code: 0x80004005" in [line.short for line in program.log()]
    assert program.log_texts()[-1] == "LEAVE CZelMainApp::ExitInstance"


def test_buttons_that_vanish_leave_the_cards_as_they_are(program):
    program.configure(Programmable=1)
    program.offer("Mute", "Zoom")
    param, file = writes(program, "still")
    button(program, "First", "F1", 1, SHELL, param)
    program.start()
    expect_cards(program, 1)
    program.probe.delete_key("HKLM", "SOFTWARE\\KESTOVA\\HBQ")
    announce(program)
    expect_cards(program, 1)
    program.hold()
    program.keyboard.press("F1")
    wait_until(lambda: lines_of(file) == ["still"], "the key still starts the program")
    assert program.probe.get_value("HKLM", LIST, "FuncList")
