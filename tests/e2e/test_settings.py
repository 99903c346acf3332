"""What each setting changes, end to end."""
import re
import subprocess

import pytest
from harness import geometry, places
from harness.desktop import CONFIG, LIST, MAKER, SHOW_OR_FLASH
from harness.waiting import stays, wait_until
from test_keys import expect_card, large_card_of


def texts_from(program, function):
    return [line.text for line in program.log() if line.function == function]


def test_disable_drops_every_event(program):
    program.configure(Disable=1)
    program.offer("Mute")
    program.start()
    program.keyboard.down("Control_R")
    program.keyboard.press("F1")
    program.keyboard.up("Control_R")
    wait_until(lambda: len(texts_from(program, "CHotkeyEventHandler::_hotkeyNotify")) == 4, "all events are reported")
    program.expect_strip_stays(False)
    assert texts_from(program, "CHotkeyEventHandler::_hotkeyNotify") == [
        "Get hotkey code:0x0, modifier:0x0", "Get hotkey code:0x3b, modifier:0x0",
        "Get hotkey code:0x3b, modifier:0x1", "Get hotkey code:0x0, modifier:0x1"]
    assert not texts_from(program, "CZelMainApp::handleHotkey")
    assert not program.chosen("Mute")


def test_without_a_full_screen_program_the_cards_show_as_always(program):
    program.configure(HideInFullScreen=1)
    program.offer("Mute")
    program.machine("Mute", Item=0)
    program.start()
    program.hold()
    program.expect_strip()
    program.press("Mute")
    expect_card(program, "Mute")
    program.let_go()
    wait_until(lambda: program.chosen("Mute") == ["1"], "the choice is applied")


def test_disable_of_the_user_wins_over_the_machine(program):
    program.offer("Mute")
    program.probe.set_dword("HKCU", CONFIG, "Disable", 1)
    program.start()
    program.keyboard.press("Control_R")
    wait_until(lambda: len(texts_from(program, "CHotkeyEventHandler::_hotkeyNotify")) == 2, "the events are reported")
    assert not texts_from(program, "CZelMainApp::handleHotkey")


def test_a_key_of_the_user_hides_the_machines_first_five_settings(program):
    program.configure(Position=1, Disable=1)
    program.offer("Mute")
    program.probe.set_dword("HKCU", CONFIG, "Topmost", 1)
    program.start()
    # Neither "Position" nor "Disable" of the machine applies.
    program.hold()
    program.expect_strip()
    assert program.strip().rect == geometry.strip(program.desktop.work_area(), 1)


def test_ignore_fn_key_leaves_the_modifier_alone(program):
    program.configure(IgnoreFnKey=1)
    program.offer("Mute", "Zoom")
    program.start()
    program.hold()
    program.expect_strip_stays(False)
    program.press("Mute")
    expect_card(program, "Mute")
    program.let_go()
    # The cards ignore the modifier's break too.
    stays(lambda: program.shown_with(large_card_of(program, "Mute")), "the card went away")
    assert not program.chosen("Mute")
    assert "Error Code: 0x80004001" in texts_from(program, "CZelMainDlg::handleHotkey")


def test_auto_hide_applies_and_hides_without_the_modifier(program):
    program.configure(IgnoreFnKey=1, AutoHide=1, AutoHideDelayTime=300)
    program.offer("Mute", "Zoom")
    program.machine("Zoom", Item=0)
    program.start()
    program.hold()
    program.press("Zoom")
    program.press("Zoom")
    expect_card(program, "Zoom")
    assert "set timer to hide QRD after 300 milliseconds." in program.log_texts()
    wait_until(lambda: program.chosen("Zoom") == ["1"], "the selection is applied by time")
    expect_card(program, "Zoom", shown=False)
    stays(lambda: program.chosen("Zoom") == ["1"], "it is applied again", 0.5)
    program.let_go()


def test_auto_hide_waits_for_its_delay_and_a_press_disarms_it(program):
    program.configure(IgnoreFnKey=1, AutoHide=1, AutoHideDelayTime=1500)
    program.offer("Zoom")
    program.machine("Zoom", Item=0)
    program.start()
    program.hold()
    program.press("Zoom")
    stays(lambda: not program.chosen("Zoom"), "applied too early", 0.9)
    # Held down: the timer that the release armed is stopped until the next release.
    program.keyboard.down("F1")
    stays(lambda: not program.chosen("Zoom"), "applied while a key is down", 1.8)
    program.keyboard.up("F1")
    wait_until(lambda: program.chosen("Zoom") == ["1"], "applied by time after the release")
    program.let_go()


def test_auto_hide_also_applies_while_the_modifier_is_still_held(program):
    program.configure(AutoHide=1, AutoHideDelayTime=200)
    program.offer("Mute")
    program.machine("Mute", Item=1)
    program.start()
    program.hold()
    program.press("Mute")
    wait_until(lambda: program.chosen("Mute") == ["0"], "the selection is applied by time")
    expect_card(program, "Mute", shown=False)
    program.let_go()
    stays(lambda: program.chosen("Mute") == ["0"], "it is applied again by the modifier's break")


def test_hide_main_dlg_shows_cards_without_the_strip(program):
    program.configure(HideMainDlg=1)
    program.offer("Mute", "Zoom")
    program.machine("Mute", Item=1)
    program.start()
    program.hold()
    program.expect_strip_stays(False)
    program.press("Mute")
    expect_card(program, "Mute")
    program.let_go()
    wait_until(lambda: program.chosen("Mute") == ["0"], "the choice is applied")
    expect_card(program, "Mute", shown=False)


@pytest.mark.parametrize("show_at_launch, arguments, shown", [
    (0, [], False), (1, [], True),
    (1, ["/hide"], False), (1, ["/HIDE"], False), (0, ["/hide"], False),
    (0, ["/x"], True), (1, ["/x"], True), (0, ["/hide", "/x"], True), (0, ["/hidden"], True)])
def test_what_shows_at_launch(program, show_at_launch, arguments, shown):
    program.configure(ShowQrdAtLaunch=show_at_launch)
    program.offer("Mute")
    program.start(*arguments)
    program.expect_strip(shown=shown)
    program.expect_strip_stays(shown)
    asked = [text for text in program.log_texts() if text.startswith("m_lpCmdLine = ")]
    assert asked == (["m_lpCmdLine = " + " ".join(arguments)] if arguments else [])


def test_a_changed_setting_takes_effect_in_the_running_program(program):
    program.offer("Mute", "Zoom")
    program.start()
    area = program.desktop.work_area()
    assert program.strip().rect == geometry.strip(area, 2)
    program.change("Position", 1)
    assert program.strip().rect == geometry.strip(area, 2, bottom=True)
    program.hold()
    program.expect_strip()


def test_a_removed_setting_keeps_its_last_value(program):
    program.configure(Position=1)
    program.offer("Mute")
    program.start()
    with program.taken_over():
        program.probe.delete_value("HKLM", CONFIG, "Position")
    assert program.strip().rect == geometry.strip(program.desktop.work_area(), 1, bottom=True)


def test_no_configuration_at_all_gives_the_defaults(program):
    program.probe.delete_key("HKLM", CONFIG)
    program.offer("Mute")
    program.start()
    program.hold()
    program.expect_strip()
    assert program.strip().rect == geometry.strip(program.desktop.work_area(), 1)


def test_losing_the_focus_hides_the_strip_when_asked_to(program):
    program.configure(ShowQrdAtLaunch=1, HideMainUIWhenLostFocus=1)
    program.offer("Mute")
    program.start()
    program.expect_strip()
    program.probe.ask("focus-window", program.strip().hwnd)
    wait_until(lambda: program.probe.foreground() == program.strip().hwnd, "the strip has the focus")
    program.desktop.keyboard.click(200, 700)
    program.expect_strip(shown=False)


def test_a_show_request_toggles_a_program_that_shows_at_launch(program):
    program.configure(ShowQrdAtLaunch=1)
    program.offer("Mute")
    program.start()
    program.expect_strip()
    frame = program.frame().hwnd
    program.probe.send(frame, SHOW_OR_FLASH)
    program.expect_strip(shown=False)
    program.probe.send(frame, SHOW_OR_FLASH)
    program.expect_strip()


def test_captions_can_be_hidden(program):
    program.configure(HideCaption=1)
    program.offer("Mute")
    program.start()
    assert "pszName = Caption" not in program.log_texts()
    assert "Hotkey  is supported." in program.log_texts()


def test_the_users_own_list_gives_cards_and_keys_where_the_machine_has_none(program):
    program.probe.delete_key("HKLM", MAKER)  # nobody with administrator rights was ever here
    program.offer("Mute", "Zoom", root="HKCU")
    program.machine("Mute", Item=1)
    program.start()
    program.hold()
    program.expect_strip()
    program.press("Mute")
    expect_card(program, "Mute")
    program.let_go()
    wait_until(lambda: program.chosen("Mute") == ["0"], "the choice is applied")
    assert "The machine has no function list; the user's own is read." in program.log_texts()


def test_the_users_own_list_is_not_looked_at_where_the_machine_has_one(program):
    program.offer("Zoom", root="HKCU")
    program.offer("Mute", root="HKLM")
    program.start()
    program.hold()
    program.expect_strip()
    assert program.calls("Mute") and not program.calls("Zoom")
    assert "The machine has no function list; the user's own is read." not in program.log_texts()


PAGE = places.ROOT / "docs" / "configuration.md"


def lines_to_type():
    """The lines of the section's blocks, block by block."""
    section = PAGE.read_text(encoding="utf-8").split("## Appendix: with a registry editor\n")[1].split("\n## ")[0]
    return [block.strip().splitlines() for block in re.findall(r"```bat\n(.*?)```", section, re.S)]


@pytest.mark.parametrize("typed", ["at a command prompt", "in a shell"])
def test_the_lines_of_the_documents_work_as_typed(program, typed, tmp_path):
    program.offer("Mute", "Lock")
    stage = "Z:" + str(program.stage).replace("/", "\\")

    def type_in(line):
        line = line.replace("C:\\Fenwyn", stage).replace("WinMute", "SimMute")
        if typed == "in a shell":
            line = re.sub(r'"?((?:HKLM|Z:)\\[^" ]*)"?', r"'\1'", line)
            command = f"{places.WINE} {line}"
        else:
            (tmp_path / "typed.bat").write_text(f"@{line}\r\n@exit /b %errorlevel%\r\n", encoding="ascii")
            command = f"{places.WINE} cmd /c typed.bat"
        done = subprocess.run(["sh", "-c", command], cwd=tmp_path, env=program.desktop.environment, check=False,
                              capture_output=True, timeout=30)
        assert done.returncode == 0, f"{line}: {done.stdout} {done.stderr}"

    def text(key, name):
        return program.probe.get_value("HKLM", key, name).decode("utf-16-le").rstrip("\0")
    bottom, back, mute, restart, before = lines_to_type()
    before_list = text(LIST, "FuncList")
    for block, expected in (bottom, 1), (back, 0):
        for line in block:
            type_in(line)
        for name in "Position", "ShowQrdAtLaunch":
            assert program.probe.get_value("HKLM", CONFIG, name) == expected.to_bytes(4, "little")
    for line in mute:
        type_in(line)
    assert text(LIST, "FuncList") == "Mute;"
    assert text(LIST + "\\Mute", "FuncDll").lower() == (stage + "\\plugins\\SimMute.dll").lower()
    program.functions = program.functions[:1]
    program.start()
    program.keyboard.down("Control_R")
    program.keyboard.press("F2")
    expect_card(program, "Mute")
    program.keyboard.up("Control_R")
    end, start = restart
    type_in(end)
    assert all(program.wait_end(process) == 0 for process in program.running())
    assert start == "start Fenwyn.exe"
    for line in before:
        type_in(line)
    assert text(LIST, "FuncList") == before_list
